#include "core/formats.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

#include "core/numbers.h"
#include "core/texts.h"

namespace kaunter {
namespace {

struct NumberPattern {
  std::size_t whole_digits = 0;  // shown whatever the number
  std::size_t least_decimals = 0;
  std::size_t most_decimals = 0;
  bool thousands = false;
};

NumberPattern ReadPattern(std::string_view pattern) {
  NumberPattern read;
  bool point = false;
  bool place = false;
  for (const char c : pattern) {
    if (c == '.') {
      point = true;
    } else if (c == ',') {
      read.thousands = true;
    } else if (c == '0' || c == '#') {
      place = true;
      if (point) {
        ++read.most_decimals;
        if (c == '0') read.least_decimals = read.most_decimals;
      } else if (c == '0') {
        ++read.whole_digits;
      }
    } else {
      throw std::invalid_argument(fmt::format("\"{}\" is no number format", pattern));
    }
  }
  if (!place) throw std::invalid_argument(fmt::format("\"{}\" is no number format", pattern));
  return read;
}

// Adds one to a row of digits, the last one being the smallest.
void CountUp(std::string* digits) {
  for (auto digit = digits->rbegin(); digit != digits->rend(); ++digit) {
    if (*digit != '9') {
      ++*digit;
      return;
    }
    *digit = '0';
  }
  digits->insert(0, 1, '1');
}

std::string WithThousands(const std::string& whole) {
  std::string parted;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    if (i > 0 && (whole.size() - i) % 3 == 0) parted += ',';
    parted += whole[i];
  }
  return parted;
}

// `plain`: a sign, digits, one point, nothing else.
std::string FormatPlain(std::string_view plain, const NumberPattern& pattern) {
  const bool negative = !plain.empty() && plain.front() == '-';
  if (negative) plain.remove_prefix(1);
  const std::size_t point = std::min(plain.find('.'), plain.size());
  std::string digits(plain.substr(0, point));
  const std::string_view tail = point < plain.size() ? plain.substr(point + 1) : "";
  std::string decimals(tail.substr(0, pattern.most_decimals));
  decimals.resize(pattern.most_decimals, '0');
  digits += decimals;
  const bool up = tail.size() > pattern.most_decimals && tail[pattern.most_decimals] >= '5';
  if (up) CountUp(&digits);

  std::string whole = digits.substr(0, digits.size() - pattern.most_decimals);
  decimals = digits.substr(digits.size() - pattern.most_decimals);
  while (decimals.size() > pattern.least_decimals && decimals.back() == '0') decimals.pop_back();
  whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size()));
  if (whole.size() < pattern.whole_digits) {
    whole.insert(0, pattern.whole_digits - whole.size(), '0');
  }
  const bool zero = digits.find_first_not_of('0') == std::string::npos;
  std::string text = negative && !zero ? "-" : "";
  text += pattern.thousands ? WithThousands(whole) : whole;
  if (!decimals.empty()) text += "." + decimals;
  return text;
}

// The fifteen significant digits of a double, written without an exponent.
std::string FixedDigits(double x) {
  const std::string text = NumberText(x);
  const std::size_t e = text.find('E');
  if (e == std::string::npos) return text;
  const auto exponent = static_cast<std::size_t>(std::stoi(text.substr(e + 1)));
  std::string digits;
  for (const char c : text.substr(0, e)) {
    if (c >= '0' && c <= '9') digits += c;
  }
  digits.resize(exponent + 1, '0');
  return text.front() == '-' ? "-" + digits : digits;
}

constexpr std::array<const char*, 12> kMonths = {"January",   "February", "March",    "April",
                                                 "May",       "June",     "July",     "August",
                                                 "September", "October",  "November", "December"};
constexpr std::array<const char*, 7> kDays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                              "Thursday", "Friday", "Saturday"};

char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool StartsWith(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && SameText(text.substr(0, start.size()), start);
}

bool HasHalfDayMark(std::string_view pattern) {
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (StartsWith(pattern.substr(i), "ampm") || StartsWith(pattern.substr(i), "am/pm")) {
      return true;
    }
  }
  return false;
}

std::string Number(int value, std::size_t width) {
  return width == 1 ? fmt::format("{}", value) : fmt::format("{:02}", value);
}

std::string DayPart(const DateTime& when, std::size_t width) {
  if (width <= 2) return Number(when.day, width);
  const std::string name = kDays.at(static_cast<std::size_t>(when.Weekday()));
  return width == 3 ? name.substr(0, 3) : name;
}

std::string MonthPart(const DateTime& when, std::size_t width) {
  if (width <= 2) return Number(when.month, width);
  const std::string name = kMonths.at(static_cast<std::size_t>(when.month - 1));
  return width == 3 ? name.substr(0, 3) : name;
}

std::string YearPart(const DateTime& when, std::size_t width) {
  return width <= 2 ? fmt::format("{:02}", when.year % 100) : fmt::format("{:04}", when.year);
}

// Writes a date pattern from left to right; what stood before decides what "m" means.
class DateWriter {
 public:
  DateWriter(const DateTime& when, std::string_view pattern)
      : when_(when), rest_(pattern), half_days_(HasHalfDayMark(pattern)) {}

  std::string Write() {
    while (!rest_.empty()) Step();
    return text_;
  }

 private:
  void Step() {
    if (StartsWith(rest_, "am/pm")) return HalfDay(5, rest_.front() == 'a');
    if (StartsWith(rest_, "ampm")) return HalfDay(4, rest_.front() == 'a');
    const char kind = LowerCase(rest_.front());
    if (std::string_view("dmyhns").find(kind) == std::string_view::npos) {
      text_ += rest_.front();
      rest_.remove_prefix(1);
      return;
    }
    std::size_t width = 1;
    while (width < rest_.size() && LowerCase(rest_[width]) == kind) ++width;
    rest_.remove_prefix(width);
    text_ += Part(kind, width);
    before_ = kind;
  }

  void HalfDay(std::size_t length, bool small) {
    const bool morning = when_.hour < 12;
    text_ += small ? (morning ? "am" : "pm") : (morning ? "AM" : "PM");
    rest_.remove_prefix(length);
  }

  std::string Part(char kind, std::size_t width) const {
    switch (kind) {
      case 'd':
        return DayPart(when_, width);
      case 'm':
        return before_ == 'h' && width <= 2 ? Number(when_.minute, width) : MonthPart(when_, width);
      case 'y':
        return YearPart(when_, width);
      case 'h':
        return Number(half_days_ ? (when_.hour + 11) % 12 + 1 : when_.hour, width);
      case 'n':
        return Number(when_.minute, width);
      default:
        return Number(when_.second, width);
    }
  }

  const DateTime& when_;
  std::string_view rest_;
  bool half_days_;
  char before_ = ' ';
  std::string text_;
};

}  // namespace

std::string Format(double x, std::string_view pattern) {
  return FormatPlain(FixedDigits(x), ReadPattern(pattern));
}

std::string Format(Money x, std::string_view pattern) {
  return FormatPlain(x.ToText(), ReadPattern(pattern));
}

std::string FormatNumber(std::string_view number, std::string_view pattern) {
  return FormatPlain(PlainNumber(number), ReadPattern(pattern));
}

std::string Format(const DateTime& when, std::string_view pattern) {
  if (SameText(pattern, "long date")) pattern = "dddd, d mmmm yyyy";
  return DateWriter(when, pattern).Write();
}

}  // namespace kaunter
