#include "screen/wait_bar.h"

#include <utility>

namespace kaunter {
namespace {

constexpr auto kShortWait = std::chrono::milliseconds(400);

}  // namespace

WaitBar::WaitBar(Desk& desk, std::string title, std::string text, std::string stop)
    : desk_(desk), title_(std::move(title)), text_(std::move(text)), stop_(std::move(stop)) {}

WaitBar::~WaitBar() = default;

bool WaitBar::StopAsked() {
  if (!bar_ && std::chrono::steady_clock::now() - begun_ < kShortWait) return false;
  if (!bar_) {
    bar_ = desk_.Progress(title_);
    bar_->SetRange(0);
    offer_ = OfferCancel(*bar_, stop_);
  }
  bar_->SetText(text_);
  stopped_ = stopped_ || (offer_ != nullptr && offer_->Cancelled());
  return stopped_;
}

bool WaitBar::StopAsked(int done, int total) {
  StopAsked();
  if (bar_) {
    if (std::exchange(total_, total) != total) bar_->SetRange(total);
    bar_->SetPosition(done);
  }
  return stopped_;
}

}  // namespace kaunter
