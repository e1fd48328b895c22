#include "core/identity.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/values.h"

namespace kaunter {
namespace {

constexpr int kLastYearOfThisCentury = 29;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

bool IsNewIc(std::string_view text) {
  if (text.size() != kNewIcMask.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (kNewIcMask[i] == '#' ? !IsDigit(text[i]) : text[i] != kNewIcMask[i]) return false;
  }
  return true;
}

std::string MaskNewIc(std::string_view text) {
  if (text.size() != 12 || !std::all_of(text.begin(), text.end(), IsDigit))
    return std::string(text);
  return fmt::format("{}-{}-{}", text.substr(0, 6), text.substr(6, 2), text.substr(8));
}

std::optional<std::string> BirthDateOfIc(std::string_view new_ic) {
  if (!IsNewIc(new_ic)) return std::nullopt;
  const int year = CLng(new_ic.substr(0, 2));
  const std::string date = fmt::format("{}-{}-{}{:02}", new_ic.substr(4, 2), new_ic.substr(2, 2),
                                       year <= kLastYearOfThisCentury ? "20" : "19", year);
  if (!IsDate(date)) return std::nullopt;
  return date;
}

std::string NormaliseMobile(std::string_view number) {
  std::string digits;
  for (char c : number) {
    if (c != '-' && c != ' ' && c != '+') digits += c;
  }
  if (!digits.empty() && digits[0] == '0') digits.insert(digits.begin(), '6');
  return std::all_of(digits.begin(), digits.end(), IsDigit) ? digits : std::string();
}

}  // namespace kaunter
