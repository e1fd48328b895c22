#include "core/numbers.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <stdexcept>

#include "platform/number_text.h"

namespace kaunter {
namespace {

// The processor's own rounding mode is ties to even.
double TiesToEven(double x) { return std::nearbyint(x); }

template <typename Integer>
Integer ToInteger(double x) {
  const double whole = TiesToEven(x);
  if (!(whole >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
        whole <= static_cast<double>(std::numeric_limits<Integer>::max()))) {
    throw std::overflow_error(fmt::format("{} does not fit a whole number", x));
  }
  return static_cast<Integer>(whole);
}

}  // namespace

double Round(double x, int decimals) {
  const double scale = std::pow(10.0, decimals);
  return TiesToEven(x * scale) / scale;
}

double Round2(double x) { return TiesToEven(x * 100.0) / 100.0; }

Money Round2(Money x) {
  const std::int64_t units = x.ten_thousandths();
  const std::int64_t rest = units % 100;  // carries the sign
  std::int64_t sen = units / 100;
  const std::int64_t size = rest < 0 ? -rest : rest;
  if (size > 50 || (size == 50 && sen % 2 != 0)) sen += units < 0 ? -1 : 1;
  return std::int64_t{100} * Money::FromTenThousandths(sen);
}

std::int32_t CLng(double x) { return ToInteger<std::int32_t>(x); }
std::int16_t CInt(double x) { return ToInteger<std::int16_t>(x); }
std::int32_t CLng(std::string_view text) { return CLng(CDbl(text)); }
std::int16_t CInt(std::string_view text) { return CInt(CDbl(text)); }

double Fix(double x) { return std::trunc(x); }
double Int(double x) { return std::floor(x); }

std::string PlainNumber(std::string_view text) {
  std::optional<std::string> plain = ReadNumberText(text);
  if (!plain) throw std::invalid_argument(fmt::format("\"{}\" is not a number", text));
  return *std::move(plain);
}

double CDbl(std::string_view text) {
  const std::string plain = PlainNumber(text);
  double value = 0;
  const auto [end, error] =
      std::from_chars(plain.data(), plain.data() + plain.size(), value, std::chars_format::fixed);
  if (error == std::errc::result_out_of_range && std::fabs(value) < 1) return 0;  // too small
  if (error != std::errc() || end != plain.data() + plain.size()) {
    throw std::invalid_argument(fmt::format("\"{}\" is not a number", text));
  }
  return value;
}

double CDbl(Money x) { return x.ToDouble(); }

bool IsNumeric(std::string_view text) { return ReadNumberText(text).has_value(); }

std::string NumberText(double x) {
  if (!std::isfinite(x)) throw std::overflow_error("a number that is not finite");
  if (x == 0) return "0";
  // d.dddddddddddddde+xx: the fifteen digits and the place of the point.
  const std::string scientific = fmt::format("{:.14e}", std::fabs(x));
  const int exponent = std::stoi(scientific.substr(scientific.find('e') + 1));
  std::string digits = scientific.substr(0, 1) + scientific.substr(2, 14);
  digits.erase(digits.find_last_not_of('0') + 1);
  std::string text;
  if (exponent >= 16) {
    text = digits.substr(0, 1);
    if (digits.size() > 1) text += "." + digits.substr(1);
    text += fmt::format("E+{}", exponent);
  } else if (exponent < 0) {
    text = "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  } else {
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= whole) {
      text = digits + std::string(whole - digits.size(), '0');
    } else {
      text = digits.substr(0, whole) + "." + digits.substr(whole);
    }
  }
  return x < 0 ? "-" + text : text;
}

}  // namespace kaunter
