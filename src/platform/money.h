// Money: ringgit as a 64-bit count of ten-thousandths (four decimals).
//
// Conversions from a double or a text round to four decimals, ties to even. Addition, subtraction
// and multiplication stay in money; a division is the caller's, in double. Nothing wraps: a result
// that does not fit throws std::overflow_error.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kaunter {

class Money {
 public:
  constexpr Money() = default;
  static constexpr Money FromTenThousandths(std::int64_t units) {
    Money money;
    money.units_ = units;
    return money;
  }
  static Money FromInteger(std::int64_t ringgit);
  // Scales by 10,000 in double, then ties to even. Refuses NaN and infinities
  // (std::overflow_error).
  static Money FromDouble(double value);
  // An exact decimal: sign, digits, one point, thousands commas, blanks around it. Digits past the
  // fourth round, ties to even. Throws std::invalid_argument for any other text, the empty one
  // included.
  static Money FromText(std::string_view text);
  // As FromText, but nothing for a text that is no number or does not fit.
  static std::optional<Money> TryText(std::string_view text);

  constexpr std::int64_t ten_thousandths() const { return units_; }
  double ToDouble() const { return static_cast<double>(units_) / 10000.0; }
  // Plain text as a statement or a loosely typed value carries it: no commas, no trailing zeros
  // ("983.33", "150", "-0.5"). Never "-0".
  std::string ToText() const;
  constexpr bool IsZero() const { return units_ == 0; }

  Money operator-() const;
  Money& operator+=(Money other);
  Money& operator-=(Money other);
  friend Money operator+(Money a, Money b) { return a += b; }
  friend Money operator-(Money a, Money b) { return a -= b; }
  // Exact product through 128 bits, rounded to four decimals, ties to even.
  friend Money operator*(Money a, Money b);
  friend Money operator*(std::int64_t count, Money amount);
  constexpr auto operator<=>(const Money&) const = default;

 private:
  std::int64_t units_ = 0;
};

}  // namespace kaunter
