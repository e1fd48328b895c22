// What no amount of this room exceeds: sums of a few thousand of them still fit.
#pragma once

#include "platform/money.h"

namespace kaunter {

inline bool IsTooLarge(Money amount) {
  const Money largest = Money::FromInteger(100'000'000'000);
  return amount > largest || -amount > largest;
}

}  // namespace kaunter
