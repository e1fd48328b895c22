// A server on this machine that takes requests and gives bytes as they stand, so that a test
// decides what goes wrong on the line.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace kaunter {

// A whole reply of a status; the line stays open.
inline std::string Reply(const std::string& body, const std::string& status = "200 OK",
                         const std::string& headers = {}) {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" +
         headers + "\r\n" + body;
}

class RawServer {
 public:
  // What is sent for the nth request (from 0); empty closes the line without a word, and so does a
  // reply that ends with kCut, behind its other bytes.
  using Answer = std::function<std::string(int number, const std::string& request)>;
  static constexpr const char* kCut =
      "\x01"
      "cut";

  explicit RawServer(Answer answer) : answer_(std::move(answer)) {
    listener_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* any = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, any, size) != 0 || listen(listener_, 16) != 0 ||
        getsockname(listener_, any, &size) != 0) {
      throw std::runtime_error("no port");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
  }
  ~RawServer() {
    stop_ = true;
    thread_.join();
    close(listener_);
  }
  RawServer(const RawServer&) = delete;
  RawServer& operator=(const RawServer&) = delete;

  std::string Url(const std::string& path = "/") const {
    return "http://127.0.0.1:" + std::to_string(port_) + path;
  }
  int port() const { return port_; }
  std::vector<std::string> requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
  }
  int lines() const { return lines_; }  // that were opened
  bool stopped() const { return stop_; }

 private:
  bool Ready(int fd) const {
    while (!stop_) {
      pollfd wait{fd, POLLIN, 0};
      if (poll(&wait, 1, 5) > 0) return true;
    }
    return false;
  }

  void Serve() {
    while (Ready(listener_)) {
      const int line = accept(listener_, nullptr, nullptr);
      ++lines_;
      talks_.emplace_back([this, line] {
        Talk(line);
        close(line);
      });
    }
    for (std::thread& talk : talks_) talk.join();
  }

  void Talk(int line) {
    std::string unread;
    while (ReadRequest(line, unread)) {
      int number = 0;
      {
        const std::lock_guard lock(mutex_);
        number = static_cast<int>(requests_.size());
        requests_.push_back(unread);
      }
      std::string reply = answer_(number, unread);
      unread.clear();
      const bool cut = reply.empty() || reply.ends_with(kCut);
      if (!reply.empty() && cut) reply.resize(reply.size() - std::string(kCut).size());
      if (send(line, reply.data(), reply.size(), MSG_NOSIGNAL) < 0 || cut) return;
    }
  }

  bool ReadRequest(int line, std::string& text) const {
    for (;;) {
      const std::size_t head = text.find("\r\n\r\n");
      if (head != std::string::npos) {
        const std::size_t length = text.find("Content-Length: ");
        const std::size_t body =
            length < head ? std::strtoul(text.c_str() + length + 16, nullptr, 10) : 0;
        if (text.size() >= head + 4 + body) return true;
      }
      if (!Ready(line)) return false;
      char bytes[65536];
      const ssize_t count = recv(line, bytes, sizeof bytes, 0);
      if (count <= 0) return false;
      text.append(bytes, static_cast<std::size_t>(count));
    }
  }

  Answer answer_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<bool> stop_ = false;
  std::atomic<int> lines_ = 0;
  mutable std::mutex mutex_;
  std::vector<std::string> requests_;
  std::vector<std::thread> talks_;
  std::thread thread_;
};

}  // namespace kaunter
