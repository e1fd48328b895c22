// The decimal numbers of the lax parser.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kaunter {

enum class DecimalFault { none, no_number, overflow };

// Plain digits of "-12.50e3": a minus, no blanks, no trailing zeros behind the point, never "-0".
// Up to 29 digits before the point; of those behind it 28 are kept, half to even.
std::string JsonDecimal(std::string_view text, DecimalFault& fault);

}  // namespace kaunter
