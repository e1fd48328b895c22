// The stand-in of the e-invoicing service (service.py), for the time of a test. It stops with the
// test, however the test ends.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/script_beside.h"

namespace kaunter {

// A request as the service noted it.
struct Asked {
  int number = 0;
  std::string method, path, bearer, about, fault, uuid;
  bool taken = false;  // it did what was asked, whatever came back
};

class StandIn {
 public:
  std::string Url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(port()) + path;
  }
  // What the service does beside the usual, as service.py tells.
  void Plan(const std::string& plan) { Speak("PUT", "/stand-in/plan", plan); }
  void Forget() { Speak("PUT", "/stand-in/forget", "{}"); }
  std::vector<Asked> Received() {
    std::vector<Asked> all;
    std::istringstream lines(Speak("GET", "/stand-in/lines", ""));
    for (std::string line; std::getline(lines, line);) {
      std::istringstream fields(line);
      std::array<std::string, 8> field;
      for (std::string& text : field) std::getline(fields, text, '\t');
      all.push_back({std::stoi(field[0]), field[1], field[2], field[3], field[4], field[5],
                     field[6], field[7] == "1"});
    }
    return all;
  }
  // The body of a request as it came.
  std::string Body(int number) {
    return Speak("GET", "/stand-in/body?n=" + std::to_string(number), "");
  }

 private:
  [[noreturn]] static void Fail(const std::string& why) {
    throw std::runtime_error("The stand-in of the e-invoicing service: " + why);
  }
  std::string Speak(const std::string& method, const std::string& path, const std::string& body) {
    const int line = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(static_cast<std::uint16_t>(port()));
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(line, reinterpret_cast<sockaddr*>(&place), sizeof place) != 0) Fail("is gone");
    const std::string request =
        method + " " + path +
        " HTTP/1.1\r\nConnection: close\r\nContent-Length: " + std::to_string(body.size()) +
        "\r\n\r\n" + body;
    std::string reply;
    if (write(line, request.data(), request.size()) < 0) Fail("does not listen");
    std::array<char, 65536> part;
    for (ssize_t got = 0; (got = read(line, part.data(), part.size())) > 0;) {
      reply.append(part.data(), static_cast<std::size_t>(got));
    }
    close(line);
    const std::size_t head = reply.find("\r\n\r\n");
    if (head == reply.npos || !reply.starts_with("HTTP/1.1 200")) Fail("refuses " + path + reply);
    return reply.substr(head + 4);
  }

  int port() const { return script_.port(); }

  test::ScriptBeside script_{"tests/einvoice/service.py", {"--until-input-ends"}};
};

}  // namespace kaunter
