#include "platform/money.h"

#include <cmath>
#include <limits>
#include <stdexcept>

#include "fmt/format.h"

namespace kaunter {
namespace {

__extension__ using Int128 = __int128;

constexpr std::int64_t kScale = 10000;
constexpr int kDecimals = 4;

std::int64_t Fit(Int128 units) {
  if (units > std::numeric_limits<std::int64_t>::max() ||
      units < std::numeric_limits<std::int64_t>::min()) {
    throw std::overflow_error("The amount is too large");
  }
  return static_cast<std::int64_t>(units);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view WithoutBlanksAround(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// The digits of a number text as a count of ten-thousandths, with what lies behind the fourth
// decimal kept apart for the rounding.
class DecimalReader {
 public:
  // False when `text` is no number.
  bool Read(std::string_view text) {
    text = WithoutBlanksAround(text);
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
      negative_ = text.front() == '-';
      text.remove_prefix(1);
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
      const char c = text[i];
      if (IsDigit(c)) {
        Take(c - '0');
      } else if (c == '.' && !point_) {
        point_ = true;
      } else if (c == ',' && !point_ && i > 0 && IsDigit(text[i - 1]) && i + 1 < text.size() &&
                 IsDigit(text[i + 1])) {
        // A thousands comma; where it stands among the digits does not matter.
      } else {
        return false;
      }
    }
    return any_digit_;
  }

  Int128 Units() const {
    Int128 units = units_;
    for (int i = decimals_; i < kDecimals; ++i) units = Capped(units * 10);
    const bool above_half = first_dropped_ > 5 || (first_dropped_ == 5 && rest_);
    const bool tie = first_dropped_ == 5 && !rest_;
    if (above_half || (tie && units % 2 != 0)) ++units;
    return negative_ ? -units : units;
  }

 private:
  // Beyond 64 bits the exact size no longer matters: Fit refuses it.
  static Int128 Capped(Int128 units) {
    const Int128 ceiling = Int128{1} << 100;
    return units > ceiling ? ceiling : units;
  }
  void Take(int digit) {
    any_digit_ = true;
    if (!point_ || decimals_ < kDecimals) {
      units_ = Capped(units_ * 10 + digit);
      if (point_) ++decimals_;
    } else if (first_dropped_ < 0) {
      first_dropped_ = digit;
    } else if (digit != 0) {
      rest_ = true;
    }
  }

  Int128 units_ = 0;
  int decimals_ = 0;
  int first_dropped_ = -1;
  bool rest_ = false;
  bool point_ = false;
  bool negative_ = false;
  bool any_digit_ = false;
};

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
  DecimalReader reader;
  if (!reader.Read(text)) {
    throw std::invalid_argument(fmt::format("\"{}\" is not an amount", text));
  }
  return FromTenThousandths(Fit(reader.Units()));
}

std::optional<Money> Money::TryText(std::string_view text) {
  DecimalReader reader;
  if (!reader.Read(text)) return std::nullopt;
  const Int128 units = reader.Units();
  if (units > std::numeric_limits<std::int64_t>::max() ||
      units < std::numeric_limits<std::int64_t>::min()) {
    return std::nullopt;
  }
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
