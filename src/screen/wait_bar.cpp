#include "screen/wait_bar.h"

#include <utility>

namespace kaunter {
namespace {

constexpr auto kShortWait = std::chrono::milliseconds(400);

}  // namespace

WaitBar::WaitBar(Desk& desk, std::string title, std::string text, std::string stop)
    : desk_(desk), title_(std::move(title)), text_(std::move(text)), stop_(std::move(stop)) {}

bool WaitBar::StopAsked() { return StopAsked(0, 0); }

bool WaitBar::StopAsked(int done, int total) {
  if (!bar_ && std::chrono::steady_clock::now() - begun_ < kShortWait) return false;
  if (!bar_) bar_.emplace(desk_, title_, stop_);
  stopped_ = !bar_->GoOn(done, total, text_);
  return stopped_;
}

}  // namespace kaunter
