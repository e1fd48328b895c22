// A bar whose Stop a person has pressed.
#pragma once

#include "screen/cancel_offer.h"
#include "tests/screen/silent_desk.h"

namespace kaunter {

class StoppedBar : public SilentBar, public CancelOffer {
 public:
  void OfferCancel(std::string_view) override {}
  bool Cancelled() const override { return true; }
};

}  // namespace kaunter
