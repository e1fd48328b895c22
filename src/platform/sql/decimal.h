// Decimals of the embedded database: numbers that hold exactly the decimals their column declares.
// SQLite keeps them as integers or doubles; what decides a rounding here is never the binary value
// but the decimal that it stands for (the 15 digits that a double holds of any decimal).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kaunter::sql {

inline constexpr int kMaxScale = 10;
// Up to here a double holds two decimals exactly.
inline constexpr std::int64_t kLargestAmount = 90'000'000'000'000;

// 10^n, n from 0 to 18.
std::int64_t PowerOfTen(int n);

// x * 10^scale as a whole number, half away from zero. False when it does not fit 64 bits.
bool ScaleDouble(double x, int scale, std::int64_t* units);
// As ScaleDouble, but what is behind the last place is cut.
bool CutDouble(double x, int scale, std::int64_t* units);
// units / 10^scale; never a negative zero.
double Unscale(std::int64_t units, int scale);
// units / divisor, rounded half away from zero.
std::int64_t DivideHalfAway(std::int64_t units, std::int64_t divisor);

enum class DecimalResult { kOk, kNoNumber, kTooLarge };
// Blanks around, sign, digits and one point; exact, half away from zero. With `exponent` also
// "1.5e3" (a floating literal).
DecimalResult ParseDecimal(std::string_view text, int scale, std::int64_t* units,
                           bool exponent = false);
// Digits with blanks and a sign around them, the whole part only up to a point when `cut`.
DecimalResult ParseInteger(std::string_view text, bool cut, std::int64_t* value);
// Whether an integer type of so many digits (3 tinyint, 5 smallint, 10 int) holds the value; others
// hold all.
bool FitsInteger(std::int64_t value, int digits);
inline constexpr int kBitDigits = 1;  // a bit takes any number: 0 or not 0
// A number with an optional exponent, blanks around.
bool ParseDouble(std::string_view text, double* value);

// units / 10^scale with exactly `scale` decimals: "-0.50", "983.30", never "-0.00".
std::string DecimalText(std::int64_t units, int scale);

}  // namespace kaunter::sql
