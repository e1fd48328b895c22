// Loosely typed numbers: their roundings, and the way between a number and its text.
//
// Round, Round2, CLng and CInt take ties to even, on what the double really holds once it is
// scaled. The display formats (core/formats.h) take ties away from zero. Both are wanted; which one
// a step of the business uses belongs to that step.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/money.h"

namespace kaunter {

// Scales by 10^decimals in double, takes ties to even on that product, divides back.
double Round(double x, int decimals);
double Round2(double x);
Money Round2(Money x);

// To 32 and 16 bits, ties to even. Throw std::overflow_error for a number that does not fit, and
// for a text what CDbl throws.
std::int32_t CLng(double x);
std::int16_t CInt(double x);
std::int32_t CLng(std::string_view text);
std::int16_t CInt(std::string_view text);

double Fix(double x);  // toward zero
double Int(double x);  // toward minus infinity

// The double of a number text: sign, digits, one point, thousands commas, blanks around it. Throws
// std::invalid_argument for anything else, "" included.
double CDbl(std::string_view text);
double CDbl(Money x);
// True for a text that CDbl takes.
bool IsNumeric(std::string_view text);
// The same text without blanks around it and without commas; throws what CDbl throws.
std::string PlainNumber(std::string_view text);

// A double as a loosely typed number shows itself: 15 significant digits, no trailing zeros, no
// exponent below 1E+16 ("150", "276.92", "-0.5").
std::string NumberText(double x);

}  // namespace kaunter
