#include "core/shown.h"

#include <optional>

#include "core/formats.h"
#include "core/numbers.h"

namespace kaunter {
namespace {

constexpr std::size_t kDateLength = 10;  // dd-mm-yyyy

std::optional<DateTime> DateOf(const Value& value) {
  if (const DateTime* date = value.AsDate()) return *date;
  if (const std::string* text = value.AsText()) {
    if (std::optional<DateTime> date = DateTime::FromCanonical(*text)) return date;
    return DateTime::FromDisplay(*text);
  }
  return std::nullopt;
}

std::string ShowNumber(const Value& value, std::string_view pattern, const char* blank) {
  if (const Money* money = value.AsMoney()) return Format(*money, pattern);
  if (const double* number = value.AsDouble()) return Format(*number, pattern);
  std::string text = value.ToText();
  if (text.empty()) return blank;
  return IsNumeric(text) ? FormatNumber(text, pattern) : text;
}

std::string ShowDateUnless(const Value& value, bool (*hidden)(int year)) {
  const std::optional<DateTime> date = DateOf(value);
  if (!date) return value.ToText();
  return hidden(date->year) ? "" : Format(*date, "dd-mm-yyyy");
}

}  // namespace

std::string NullToEmpty(const Value& value) { return value.ToText(); }

std::string ShowDate(const Value& value) {
  return ShowDateUnless(value, [](int year) { return year < 2000; });
}

std::string ShowBirthDate(const Value& value) {
  return ShowDateUnless(value, [](int year) { return year == 1900; });
}

std::string ShowDateTime(const Value& value) {
  const std::optional<DateTime> date = DateOf(value);
  return date ? Format(*date, "dd-mm-yyyy hh:nn:ss") : value.ToText();
}

std::string ShowMoney(const Value& value) { return ShowNumber(value, "#,##0.00", "0.00"); }
std::string Show2dp(const Value& value) { return ShowNumber(value, "0.00", ""); }
std::string Show4dp(const Value& value) { return ShowNumber(value, "#,##0.0000", ""); }
std::string ShowInt(const Value& value) { return ShowNumber(value, "0", "0"); }

bool IsDate(std::string_view display_text) {
  return display_text.size() == kDateLength && DateTime::FromDisplay(display_text).has_value();
}

}  // namespace kaunter
