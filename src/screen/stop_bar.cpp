#include "screen/stop_bar.h"

#include <utility>

#include "screen/cancel_offer.h"
#include "screen/screen.h"

namespace kaunter {

StopBar::StopBar(Desk& desk, std::string_view title, std::string_view stop)
    : bar_(desk.Progress(title)), offer_(OfferCancel(*bar_, stop)) {}

StopBar::StopBar(const Screen& screen) : StopBar(screen, screen.title()) {}

StopBar::StopBar(const Screen& screen, const Caption& title)
    : StopBar(screen.desk(), title.In(screen.chinese()), kStop.In(screen.chinese())) {}

bool StopBar::GoOn(std::int64_t done, std::int64_t total, std::string_view text) {
  // A new range is drawn at once, a new position only now and then.
  if (std::exchange(total_, total) != total) bar_->SetRange(static_cast<int>(total));
  if (!text.empty()) bar_->SetText(text);
  bar_->SetPosition(static_cast<int>(done));
  return !Stopped();
}

bool StopBar::Stopped() const { return offer_ != nullptr && offer_->Cancelled(); }

}  // namespace kaunter
