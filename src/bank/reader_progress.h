// The bar over a long work with the lines of the payment reader, which a person may stop between
// two of them.
#pragma once

#include <memory>
#include <string>

#include "screen/cancel_offer.h"
#include "screen/desk.h"

namespace kaunter {

class ReaderProgress {
 public:
  ReaderProgress(Desk& desk, const std::string& title, const std::string& stop)
      : bar_(desk.Progress(title)), offer_(OfferCancel(*bar_, stop)) {}

  void At(int done, int of, const std::string& text) {
    bar_->SetRange(of > 0 ? of : 1);
    bar_->SetText(text);
    bar_->SetPosition(done);
  }
  bool Stopped() const { return offer_ != nullptr && offer_->Cancelled(); }

 private:
  std::unique_ptr<ProgressBar> bar_;
  CancelOffer* offer_;
};

}  // namespace kaunter
