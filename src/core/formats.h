// The display formats of numbers and dates.
//
// A number format rounds half away from zero at the digits shown; a value that goes through a
// display text and back has taken that rounding. A figure that shows as zero has no sign.
#pragma once

#include <string>
#include <string_view>

#include "platform/date_time.h"
#include "platform/money.h"

namespace kaunter {

// Patterns: "0", "0000", "0.00", "#,##0.00", "#,##0.0000", "#,###.00", "0.##" and their like: '0'
// always shows a digit, '#' only when there is one, ',' parts the thousands. A pattern without any
// digit place is a fault (std::invalid_argument). A double is rounded on its 15 significant digits,
// so that 1.005 shows as 1.01; money exactly.
std::string Format(double x, std::string_view pattern);
std::string Format(Money x, std::string_view pattern);
// Of a number text, exact whatever its length. Throws std::invalid_argument when it is no number.
std::string FormatNumber(std::string_view number, std::string_view pattern);

// Parts of a pattern: d dd ddd dddd, m mm mmm mmmm (minutes behind h or hh), yy yyyy, h hh, n nn,
// s ss, AMPM am/pm (which make the hour one of twelve), each in either case; the rest stands as it
// is written. "long date" is "Wednesday, 31 January 2024".
std::string Format(const DateTime& when, std::string_view pattern);

}  // namespace kaunter
