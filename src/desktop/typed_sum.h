// Reckoning in an amount box: "100+20.50" is 120.50 when the box is left.
#pragma once

#include <optional>
#include <string_view>

#include "platform/money.h"

namespace kaunter {

// The value of a text that adds, subtracts or multiplies amounts ("1,200 - 3*55.50"), products
// first. Nothing for a plain amount and for a text that cannot be read: such stay as they are.
std::optional<Money> TypedSum(std::string_view text);

}  // namespace kaunter
