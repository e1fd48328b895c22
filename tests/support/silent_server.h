// A host on loopback that never speaks: it takes the call, or swallows even that.
#pragma once

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace kaunter::test {

class SilentServer {
 public:
  enum class Manner { takes_the_call, swallows };

  explicit SilentServer(Manner manner) {
    const int ear = Open();
    socklen_t length = sizeof address_;
    if (bind(ear, Address(), length) != 0 ||
        listen(ear, manner == Manner::swallows ? 0 : 16) != 0 ||
        getsockname(ear, Address(), &length) != 0) {
      throw std::runtime_error("no silent server");
    }
    if (manner == Manner::takes_the_call) return;
    // With its queue full the machine drops what else calls.
    for (int i = 0; i < 3; ++i) {
      const int caller = Open();
      fcntl(caller, F_SETFL, O_NONBLOCK);
      connect(caller, Address(), sizeof address_);
    }
  }
  ~SilentServer() {
    for (const int file : files_) close(file);
  }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;

  std::string port() const { return std::to_string(ntohs(address_.sin_port)); }

 private:
  static sockaddr_in Loopback() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
  }
  sockaddr* Address() { return reinterpret_cast<sockaddr*>(&address_); }
  int Open() {
    files_.push_back(socket(AF_INET, SOCK_STREAM, 0));
    return files_.back();
  }

  sockaddr_in address_ = Loopback();
  std::vector<int> files_;
};

}  // namespace kaunter::test
