// A desk at which a person goes on while something is done behind the windows, and hears of its end
// later (Screen::Tick). Not every desk is one: a script waits.
#pragma once

#include "screen/desk.h"

namespace kaunter {

class MeanwhileDesk {
 public:
  virtual ~MeanwhileDesk() = default;
};

inline bool GoesOnMeanwhile(const Desk& desk) {
  return dynamic_cast<const MeanwhileDesk*>(&desk) != nullptr;
}

}  // namespace kaunter
