// Long work that a person may end before its time. Not every work can be: it says so by offering.
#pragma once

#include <string_view>

#include "screen/desk.h"

namespace kaunter {

// A bar that some faces give; a script, that cannot press a key meanwhile, has none.
class CancelOffer {
 public:
  virtual ~CancelOffer() = default;
  virtual void OfferCancel(std::string_view caption) = 0;
  virtual bool Cancelled() const = 0;
};

// Puts a button of this caption on the bar. Null where the face has none.
inline CancelOffer* OfferCancel(ProgressBar& bar, std::string_view caption) {
  auto* offer = dynamic_cast<CancelOffer*>(&bar);
  if (offer != nullptr) offer->OfferCancel(caption);
  return offer;
}

}  // namespace kaunter
