#include "platform/number_text.h"

namespace kaunter {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::optional<std::string> ReadNumberText(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  std::string plain;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    if (text.front() == '-') plain = "-";
    text.remove_prefix(1);
  }
  bool point = false;
  bool digit = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (IsDigit(c)) {
      digit = true;
      plain += c;
    } else if (c == '.' && !point) {
      point = true;
      plain += c;
    } else if (c == ',' && !point && i > 0 && IsDigit(text[i - 1]) && i + 1 < text.size() &&
               IsDigit(text[i + 1])) {
      // A thousands comma.
    } else {
      return std::nullopt;
    }
  }
  if (!digit) return std::nullopt;
  return plain;
}

}  // namespace kaunter
