#include "platform/sql/decimal.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace kaunter::sql {
namespace {

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool TakeSign(std::string_view* text) {
  if (text->empty() || (text->front() != '-' && text->front() != '+')) return false;
  const bool negative = text->front() == '-';
  text->remove_prefix(1);
  return negative;
}

// Collects decimal digits into units and rounds by the first digit that does not count.
class Collector {
 public:
  explicit Collector(int places) : places_(places) {}
  void Add(int digit, bool fraction) {
    if (fraction && places_ == 0) {
      if (!cut_seen_) round_up_ = digit >= 5;
      cut_seen_ = true;
      return;
    }
    if (fraction) --places_;
    too_large_ |= __builtin_mul_overflow(units_, 10, &units_) ||
                  __builtin_add_overflow(units_, digit, &units_);
  }
  bool Finish(bool negative, std::int64_t* units) {
    for (; places_ > 0; --places_) too_large_ |= __builtin_mul_overflow(units_, 10, &units_);
    if (round_up_) too_large_ |= __builtin_add_overflow(units_, 1, &units_);
    *units = negative ? -units_ : units_;
    return !too_large_;
  }

 private:
  std::int64_t units_ = 0;
  int places_;
  bool cut_seen_ = false;
  bool round_up_ = false;
  bool too_large_ = false;
};

// The amounts of the business: digits and a point that fit as they stand. False sends all else on.
bool ParsePlain(std::string_view text, int scale, std::int64_t* units) {
  if (scale < 0 || text.size() + static_cast<std::size_t>(scale) > 18) return false;
  std::int64_t value = 0;
  std::size_t point = text.size();
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsDigit(text[i])) {
      value = value * 10 + (text[i] - '0');
    } else if (text[i] == '.' && point == text.size()) {
      point = i;
    } else {
      return false;
    }
  }
  const std::size_t decimals = point == text.size() ? 0 : text.size() - point - 1;
  if (text.size() == (point == text.size() ? 0U : 1U)) return false;  // not a digit
  if (decimals > static_cast<std::size_t>(scale)) return false;
  *units = value * PowerOfTen(scale - static_cast<int>(decimals));
  return true;
}

// Rounds `x` by the 15 significant digits of its decimal text.
bool ScaleByDigits(double x, int scale, std::int64_t* units) {
  char text[400];
  const auto end = std::to_chars(text, text + sizeof text, x, std::chars_format::scientific, 14);
  return ParseDecimal({text, end.ptr}, scale, units, /*exponent=*/true) == DecimalResult::kOk;
}

// How near to a tie the product may be and still be one that binary arithmetic has missed.
double TieWindow(double product) {
  constexpr double kWidest = 0.05;
  return std::fmin(kWidest, std::fmax(1e-9, std::fabs(product) * 2e-15));
}

// A number of more digits than these is no longer told apart by its first 15.
constexpr double kDecidedByDigits = 1e14;

constexpr double kLimit = 9.2e18;

}  // namespace

std::int64_t PowerOfTen(int n) {
  static constexpr auto kPowers = [] {
    struct Table {
      std::int64_t at[19];
    } table{};
    std::int64_t power = 1;
    for (int i = 0; i < 19; ++i) {
      table.at[i] = power;
      if (i < 18) power *= 10;
    }
    return table;
  }();
  return kPowers.at[n];
}

bool ScaleDouble(double x, int scale, std::int64_t* units) {
  const double product = x * static_cast<double>(PowerOfTen(scale));
  if (!(std::fabs(product) < kLimit)) return false;
  const double fraction = std::fabs(product - std::trunc(product));
  if (std::fabs(fraction - 0.5) <= TieWindow(product) && std::fabs(product) < kDecidedByDigits) {
    return ScaleByDigits(x, scale, units);
  }
  *units = std::llround(product);
  return true;
}

bool CutDouble(double x, int scale, std::int64_t* units) {
  const double product = x * static_cast<double>(PowerOfTen(scale));
  if (!(std::fabs(product) < kLimit)) return false;
  const double nearest = std::round(product);
  *units = static_cast<std::int64_t>(
      std::fabs(product - nearest) <= TieWindow(product) ? nearest : std::trunc(product));
  return true;
}

double Unscale(std::int64_t units, int scale) {
  return static_cast<double>(units) / static_cast<double>(PowerOfTen(scale));
}

std::int64_t DivideHalfAway(std::int64_t units, std::int64_t divisor) {
  const std::int64_t whole = units / divisor;
  const std::int64_t rest = units % divisor;
  if (rest >= divisor - divisor / 2) return whole + 1;
  return -rest >= divisor - divisor / 2 ? whole - 1 : whole;
}

DecimalResult ParseDecimal(std::string_view text, int scale, std::int64_t* units, bool exponent) {
  if (ParsePlain(text, scale, units)) return DecimalResult::kOk;
  text = Trimmed(text);
  const bool negative = TakeSign(&text);
  int shift = 0;
  if (exponent) {
    const std::size_t e = text.find_first_of("eE");
    if (e != std::string_view::npos) {
      std::string_view power = text.substr(e + 1);
      if (!power.empty() && power.front() == '+') power.remove_prefix(1);
      const auto read = std::from_chars(power.data(), power.data() + power.size(), shift);
      if (power.empty() || read.ec != std::errc() || read.ptr != power.data() + power.size()) {
        return DecimalResult::kNoNumber;
      }
      text = text.substr(0, e);
    }
  }
  int places = scale + shift;  // digits behind the written point that still count
  int skip_below = 0;          // places left of the point that round away
  if (places < 0) {
    skip_below = -places;
    places = 0;
  }
  if (places > 400) return DecimalResult::kTooLarge;
  std::size_t whole = 0;
  while (whole < text.size() && IsDigit(text[whole])) ++whole;
  std::size_t fraction = 0;
  if (whole < text.size()) {
    if (text[whole] != '.') return DecimalResult::kNoNumber;
    while (whole + 1 + fraction < text.size() && IsDigit(text[whole + 1 + fraction])) ++fraction;
    if (whole + 1 + fraction != text.size()) return DecimalResult::kNoNumber;
  }
  if (whole + fraction == 0) return DecimalResult::kNoNumber;
  Collector collector(places);
  const std::size_t kept = whole > static_cast<std::size_t>(skip_below)
                               ? whole - static_cast<std::size_t>(skip_below)
                               : 0;
  // All digits of a number far below the last place stand behind a zero.
  if (static_cast<std::size_t>(skip_below) > whole) collector.Add(0, true);
  for (std::size_t i = 0; i < whole; ++i) collector.Add(text[i] - '0', i >= kept);
  for (std::size_t i = 0; i < fraction; ++i) collector.Add(text[whole + 1 + i] - '0', true);
  return collector.Finish(negative, units) ? DecimalResult::kOk : DecimalResult::kTooLarge;
}

DecimalResult ParseInteger(std::string_view text, bool cut, std::int64_t* value) {
  text = Trimmed(text);
  const bool negative = TakeSign(&text);
  std::size_t digits = 0;
  while (digits < text.size() && IsDigit(text[digits])) ++digits;
  if (digits < text.size()) {
    if (!cut || text[digits] != '.') return DecimalResult::kNoNumber;
    for (std::size_t i = digits + 1; i < text.size(); ++i) {
      if (!IsDigit(text[i])) return DecimalResult::kNoNumber;
    }
    if (digits == 0 && text.size() == 1) return DecimalResult::kNoNumber;
  } else if (digits == 0) {
    return DecimalResult::kNoNumber;
  }
  Collector collector(0);
  for (std::size_t i = 0; i < digits; ++i) collector.Add(text[i] - '0', false);
  return collector.Finish(negative, value) ? DecimalResult::kOk : DecimalResult::kTooLarge;
}

bool FitsInteger(std::int64_t value, int digits) {
  switch (digits) {
    case 3:
      return value >= 0 && value <= 255;
    case 5:
      return value == static_cast<std::int16_t>(value);
    case 10:
      return value == static_cast<std::int32_t>(value);
    default:
      return true;
  }
}

bool ParseDouble(std::string_view text, double* value) {
  text = Trimmed(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  if (text.empty() || text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) {
    return false;
  }
  const auto read = std::from_chars(text.data(), text.data() + text.size(), *value);
  return read.ec == std::errc() && read.ptr == text.data() + text.size();
}

std::string DecimalText(std::int64_t units, int scale) {
  const bool negative = units < 0;
  std::uint64_t rest =
      negative ? 0 - static_cast<std::uint64_t>(units) : static_cast<std::uint64_t>(units);
  char text[40];
  char* at = text + sizeof text;
  for (int i = 0; i < scale; ++i) {
    *--at = static_cast<char>('0' + rest % 10);
    rest /= 10;
  }
  if (scale > 0) *--at = '.';
  do {
    *--at = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (negative) *--at = '-';
  return {at, text + sizeof text};
}

}  // namespace kaunter::sql
