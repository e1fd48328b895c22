// Wrong passwords, counted by the user they were tried for. Nobody is ever locked out, but after
// five within a minute each further try waits, a little longer each time: whoever guesses gets
// nowhere, and whoever has forgotten does.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <thread>

namespace kaunter {

class Session;

class PasswordTries {
 public:
  using Time = std::chrono::steady_clock::time_point;
  using Span = std::chrono::milliseconds;

  // Before a password of the user is compared: waits as long as it has to.
  void Wait(std::string_view user_id);
  // How many were wrong within the last minute, this one included.
  int Failed(std::string_view user_id);
  void Passed(std::string_view user_id);

  // The clock and a piece of the waiting; a test sets its own.
  std::function<Time()> now = [] { return std::chrono::steady_clock::now(); };
  std::function<void(Span)> sleep = [](Span span) { std::this_thread::sleep_for(span); };

 private:
  void Forget();

  std::map<std::string, std::deque<Time>> failed_;  // by the user in capitals
};

// Compares a typed password by `passes`, which answers whether it is the user's: waits before it
// where it has to, and writes a log line that names the user and the prompt for each wrong one.
bool TryPassword(Session& session, std::string_view user_id, std::string_view prompt,
                 const std::function<bool()>& passes);

}  // namespace kaunter
