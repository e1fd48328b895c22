// What stands between a desktop and its PostgreSQL server on loopback, and cuts the line at a
// commit or at other words, or lets nothing more through.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace kaunter::test {

class CuttingProxy {
 public:
  enum class Cut {
    never,
    before,         // the commit does not reach the server, which hears of the end
    behind,         // the server commits, its answer does not come back
    before_unseen,  // neither the commit nor the end of the desktop's line reaches the server
    silence,        // from then on nothing passes, as by Hold
  };

  explicit CuttingProxy(int server_port) : server_port_(server_port) {
    ear_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = Loopback(0);
    socklen_t length = sizeof address;
    if (bind(ear_, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(ear_, 16) != 0 ||
        getsockname(ear_, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
      throw std::runtime_error("no cutting proxy");
    }
    port_ = ntohs(address.sin_port);
    listener_ = std::thread([this] { Listen(); });
  }
  ~CuttingProxy() {
    ends_ = true;
    listener_.join();
    for (std::thread& line : lines_) line.join();
    for (const int file : left_open_) close(file);
    close(ear_);
  }
  CuttingProxy(const CuttingProxy&) = delete;
  CuttingProxy& operator=(const CuttingProxy&) = delete;

  int port() const { return port_; }
  // At the next commit that passes; with `and_away` nobody gets through from then on.
  void CutAtCommit(Cut cut, bool and_away = false) {
    and_away_ = and_away;
    cut_ = cut;
  }
  void CutAt(std::string words, Cut cut) {
    words_ = std::move(words);
    CutAtCommit(cut);
  }
  void ComeBack() { away_ = false; }
  // Calls are taken and lines stay open, but nothing passes, as at a server whose processes stand
  // still.
  void Hold(bool hold) { holds_ = hold; }
  int cuts() const { return cuts_; }

 private:
  static sockaddr_in Loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
  }

  bool Readable(int file) const {
    pollfd wait{file, POLLIN, 0};
    return poll(&wait, 1, 20) > 0;
  }

  void Listen() {
    while (!ends_) {
      if (!Readable(ear_)) continue;
      const int desktop = accept(ear_, nullptr, nullptr);
      if (away_) {
        close(desktop);
      } else {
        lines_.emplace_back([this, desktop] { Carry(desktop); });
      }
    }
  }

  static bool Pass(int from, int to, std::string_view* seen, std::array<char, 65536>& buffer) {
    const ssize_t got = recv(from, buffer.data(), buffer.size(), 0);
    if (got <= 0) return false;
    *seen = {buffer.data(), static_cast<std::size_t>(got)};
    return to < 0 || send(to, buffer.data(), static_cast<std::size_t>(got), MSG_NOSIGNAL) == got;
  }

  void Carry(int desktop) {
    const int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = Loopback(server_port_);
    bool open = connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    bool keep_server = false;
    std::array<char, 65536> buffer{};
    while (open && !ends_) {
      if (holds_) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        continue;
      }
      pollfd both[] = {{desktop, POLLIN, 0}, {server, POLLIN, 0}};
      if (poll(both, 2, 20) <= 0) continue;
      std::string_view seen;
      if (both[1].revents != 0) open = Pass(server, desktop, &seen, buffer);
      if (!open || both[0].revents == 0) continue;
      const ssize_t got = recv(desktop, buffer.data(), buffer.size(), 0);
      if (got <= 0) break;
      const std::string_view asked(buffer.data(), static_cast<std::size_t>(got));
      Cut cut = Cut::never;
      if (asked.find(words_) != std::string_view::npos) cut = cut_.exchange(Cut::never);
      if (cut != Cut::never) {
        ++cuts_;
        away_ = and_away_.load();
        holds_ = holds_ || cut == Cut::silence;
        if (holds_) continue;
      }
      keep_server = cut == Cut::before_unseen;
      if (cut == Cut::before || keep_server) break;
      open = send(server, asked.data(), asked.size(), MSG_NOSIGNAL) == got;
      if (cut == Cut::behind) {
        while (!Readable(server)) {
        }
        break;
      }
    }
    close(desktop);
    if (keep_server) {
      const std::lock_guard lock(mutex_);
      left_open_.push_back(server);
    } else {
      close(server);
    }
  }

  int server_port_;
  int ear_ = -1;
  int port_ = 0;
  std::atomic<Cut> cut_ = Cut::never;
  std::atomic<bool> and_away_ = false;
  std::atomic<bool> away_ = false;
  std::atomic<bool> holds_ = false;
  std::string words_ = "COMMIT";
  std::atomic<bool> ends_ = false;
  std::atomic<int> cuts_ = 0;
  std::mutex mutex_;
  std::vector<int> left_open_;
  std::vector<std::thread> lines_;
  std::thread listener_;
};

}  // namespace kaunter::test
