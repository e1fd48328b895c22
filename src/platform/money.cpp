#include "platform/money.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "platform/number_text.h"

namespace kaunter {
namespace {

__extension__ using Int128 = __int128;

constexpr std::int64_t kScale = 10000;
constexpr std::size_t kDecimals = 4;

bool Fits(Int128 units) {
  return units <= std::numeric_limits<std::int64_t>::max() &&
         units >= std::numeric_limits<std::int64_t>::min();
}

std::int64_t Fit(Int128 units) {
  if (!Fits(units)) throw std::overflow_error("The amount is too large");
  return static_cast<std::int64_t>(units);
}

// The ten-thousandths of a bare number: a minus, digits, one point. What lies behind the fourth
// decimal decides the rounding. Beyond 100 bits the exact size no longer matters: Fit refuses it.
Int128 UnitsOf(std::string_view number) {
  const bool negative = !number.empty() && number.front() == '-';
  if (negative) number.remove_prefix(1);
  const std::size_t point = std::min(number.find('.'), number.size());
  const std::string_view decimals = point < number.size() ? number.substr(point + 1) : "";
  const Int128 ceiling = Int128{1} << 100;
  Int128 units = 0;
  const auto take = [&](char digit) { units = std::min(units * 10 + (digit - '0'), ceiling); };
  for (const char digit : number.substr(0, point)) take(digit);
  for (std::size_t i = 0; i < kDecimals; ++i) take(i < decimals.size() ? decimals[i] : '0');
  if (decimals.size() > kDecimals && decimals[kDecimals] >= '5') {
    const bool tie = decimals[kDecimals] == '5' &&
                     decimals.find_first_not_of('0', kDecimals + 1) == std::string_view::npos;
    if (!tie || units % 2 != 0) ++units;
  }
  return negative ? -units : units;
}

}  // namespace

Money Money::FromInteger(std::int64_t ringgit) {
  return FromTenThousandths(Fit(Int128{ringgit} * kScale));
}

Money Money::FromDouble(double value) {
  // The default rounding mode of the processor is ties to even.
  const double scaled = std::nearbyint(value * static_cast<double>(kScale));
  // 2^63 is exactly a double; NaN fails both comparisons.
  if (!(scaled >= -9223372036854775808.0 && scaled < 9223372036854775808.0)) {
    throw std::overflow_error("The amount is too large");
  }
  return FromTenThousandths(static_cast<std::int64_t>(scaled));
}

Money Money::FromText(std::string_view text) {
  const std::optional<std::string> number = ReadNumberText(text);
  if (!number) throw std::invalid_argument(fmt::format("\"{}\" is not an amount", text));
  return FromTenThousandths(Fit(UnitsOf(*number)));
}

std::optional<Money> Money::TryText(std::string_view text) {
  const std::optional<std::string> number = ReadNumberText(text);
  if (!number) return std::nullopt;
  const Int128 units = UnitsOf(*number);
  if (!Fits(units)) return std::nullopt;
  return FromTenThousandths(static_cast<std::int64_t>(units));
}

std::string Money::ToText() const {
  const bool negative = units_ < 0;
  // Through unsigned, so that the lowest value of all has a text too.
  const std::uint64_t size =
      negative ? 0 - static_cast<std::uint64_t>(units_) : static_cast<std::uint64_t>(units_);
  std::string text = fmt::format("{}{}", negative ? "-" : "", size / kScale);
  const std::uint64_t fraction = size % kScale;
  if (fraction != 0) {
    text += fmt::format(".{:04}", fraction);
    text.erase(text.find_last_not_of('0') + 1);
  }
  return text;
}

Money Money::operator-() const { return FromTenThousandths(Fit(-Int128{units_})); }

Money& Money::operator+=(Money other) {
  units_ = Fit(Int128{units_} + other.units_);
  return *this;
}

Money& Money::operator-=(Money other) {
  units_ = Fit(Int128{units_} - other.units_);
  return *this;
}

Money operator*(Money a, Money b) {
  const Int128 product = Int128{a.units_} * b.units_;
  Int128 units = product / kScale;
  const Int128 rest = product % kScale;  // carries the sign of the product
  const Int128 twice = 2 * (rest < 0 ? -rest : rest);
  if (twice > kScale || (twice == kScale && units % 2 != 0)) units += product < 0 ? -1 : 1;
  return Money::FromTenThousandths(Fit(units));
}

Money operator*(std::int64_t count, Money amount) {
  return Money::FromTenThousandths(Fit(Int128{count} * amount.units_));
}

}  // namespace kaunter
