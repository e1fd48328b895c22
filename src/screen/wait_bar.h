// WaitBar: the bar of a wait of which nobody knows how long it takes. It comes only when the wait
// becomes long, and a person may end it there.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "screen/stop_bar.h"

namespace kaunter {

class WaitBar {
 public:
  WaitBar(Desk& desk, std::string title, std::string text, std::string stop);

  // Asked again and again while it lasts; true from the moment on in which a person wants the end.
  bool StopAsked();
  // The same between two steps of a known number.
  bool StopAsked(int done, int total);
  bool stopped() const { return stopped_; }

 private:
  Desk& desk_;
  std::string title_;
  std::string text_;
  std::string stop_;
  std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
  std::optional<StopBar> bar_;
  bool stopped_ = false;
};

}  // namespace kaunter
