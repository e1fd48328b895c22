#include "platform/sql/value.h"

#include <charconv>
#include <cmath>

namespace kaunter {
namespace {

// Fifteen digits are what a double holds of any decimal: 0.1 + 0.2 shows as 0.3.
std::string DoubleText(double number) {
  if (number == 0) return "0";  // a negative zero shows no sign
  char buffer[400];
  const double size = std::fabs(number);
  if (!(size < 1e16) || size < 1e-15) {
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::scientific, 14);
    std::string text(buffer, end.ptr);
    const std::size_t e = text.find('e');
    if (e == std::string::npos) return text;  // inf, nan
    std::string mantissa = text.substr(0, e);
    while (mantissa.back() == '0') mantissa.pop_back();
    if (mantissa.back() == '.') mantissa.pop_back();
    return mantissa + "E" + text.substr(e + 1);
  }
  const int whole_digits = static_cast<int>(std::floor(std::log10(size))) + 1;
  const int decimals = whole_digits >= 15 ? 0 : 15 - whole_digits;
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::fixed, decimals);
  std::string text(buffer, end.ptr);
  if (text.find('.') != std::string::npos) {
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
  }
  return text;
}

struct TextOf {
  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(std::int64_t integer) const { return std::to_string(integer); }
  std::string operator()(double number) const { return DoubleText(number); }
  std::string operator()(Money money) const { return money.ToText(); }
  std::string operator()(const DateTime& date) const { return date.ToCanonical(); }
};

}  // namespace

std::string Value::ToText() const { return std::visit(TextOf{}, data_); }

}  // namespace kaunter
