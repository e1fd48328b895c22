#include "einvoice/json_decimal.h"

#include <algorithm>

namespace kaunter {
namespace {

constexpr long kMostWhole = 29;
constexpr long kMostDecimals = 28;
constexpr long kFarExponent = 1'000'000;  // what is beyond it overflows or vanishes all the same

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The number is 0.<digits> times ten to the power of `point`.
struct Read {
  bool negative = false;
  std::string digits;
  long point = 0;
};

std::optional<Read> ReadNumber(std::string_view text) {
  Read read;
  std::size_t at = 0;
  const auto sign = [&] {
    if (at >= text.size() || (text[at] != '+' && text[at] != '-')) return false;
    return text[at++] == '-';
  };
  read.negative = sign();
  const std::size_t begin = at;
  bool behind_point = false;
  for (; at < text.size() && (IsDigit(text[at]) || (text[at] == '.' && !behind_point)); ++at) {
    if (text[at] == '.') {
      behind_point = true;
      continue;
    }
    read.digits += text[at];
    if (!behind_point) ++read.point;
  }
  if (read.digits.empty() || at == begin) return std::nullopt;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    const bool down = sign();
    if (at >= text.size()) return std::nullopt;
    long exponent = 0;
    for (; at < text.size() && IsDigit(text[at]); ++at) {
      exponent = std::min(exponent * 10 + (text[at] - '0'), kFarExponent);
    }
    read.point += down ? -exponent : exponent;
  }
  if (at < text.size()) return std::nullopt;
  return read;
}

// One more in the last digit. True when the number became longer by a digit.
bool Increment(std::string& digits) {
  for (std::size_t i = digits.size(); i-- > 0;) {
    if (digits[i] != '9') {
      ++digits[i];
      return false;
    }
    digits[i] = '0';
  }
  digits.insert(digits.begin(), '1');
  return true;
}

void RoundDecimals(Read& read) {
  const long kept = read.point + kMostDecimals;
  if (kept >= static_cast<long>(read.digits.size())) return;
  if (kept < 0) {
    read.digits.clear();
    return;
  }
  const std::string cut = read.digits.substr(static_cast<std::size_t>(kept));
  read.digits.resize(static_cast<std::size_t>(kept));
  const bool half = cut[0] == '5' && cut.find_first_not_of('0', 1) == std::string::npos;
  const bool odd = !read.digits.empty() && (read.digits.back() - '0') % 2 == 1;
  const bool up = half ? odd : cut[0] >= '5';
  if (up && Increment(read.digits)) ++read.point;
}

}  // namespace

std::string JsonDecimal(std::string_view text, DecimalFault& fault) {
  std::optional<Read> read = ReadNumber(text);
  fault = read ? DecimalFault::none : DecimalFault::no_number;
  if (!read) return {};
  const std::size_t zeros = std::min(read->digits.find_first_not_of('0'), read->digits.size());
  read->digits.erase(0, zeros);
  read->point -= static_cast<long>(zeros);
  if (read->digits.empty()) return "0";
  if (read->point > kMostWhole) {
    fault = DecimalFault::overflow;
    return {};
  }
  RoundDecimals(*read);
  std::string& digits = read->digits;
  if (read->point > static_cast<long>(digits.size())) {
    digits.append(static_cast<std::size_t>(read->point) - digits.size(), '0');
  }
  if (read->point < 0) {
    digits.insert(0, static_cast<std::size_t>(-read->point), '0');
    read->point = 0;
  }
  const auto whole = static_cast<std::size_t>(read->point);
  std::string decimals = digits.substr(whole);
  decimals.erase(decimals.find_last_not_of('0') + 1);
  digits.resize(whole);
  if (digits.empty()) digits = "0";
  if (digits == "0" && decimals.empty()) return "0";
  return (read->negative ? "-" : "") + digits + (decimals.empty() ? "" : "." + decimals);
}

}  // namespace kaunter
