#include "movein/cell_values.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>
#include <vector>

#include "core/texts.h"

namespace kaunter {
namespace {

bool IsDigit(char sign) { return sign >= '0' && sign <= '9'; }
bool IsLetter(char sign) { return std::isalpha(static_cast<unsigned char>(sign)) != 0; }

int Number(std::string_view digits) {
  int number = 0;
  for (const char digit : digits.substr(0, 9)) number = number * 10 + (digit - '0');
  return number;
}

Caption NoDay(std::string_view cell) {
  return {fmt::format("\"{}\" is no date", cell), fmt::format("“{}”不是日期", cell)};
}

// --- days

int MonthNamed(std::string_view word) {
  static constexpr std::array<std::pair<std::string_view, int>, 17> kMonths = {{{"jan", 1},
                                                                                {"feb", 2},
                                                                                {"mar", 3},
                                                                                {"mac", 3},
                                                                                {"apr", 4},
                                                                                {"may", 5},
                                                                                {"mei", 5},
                                                                                {"jun", 6},
                                                                                {"jul", 7},
                                                                                {"aug", 8},
                                                                                {"ogo", 8},
                                                                                {"sep", 9},
                                                                                {"oct", 10},
                                                                                {"okt", 10},
                                                                                {"nov", 11},
                                                                                {"dec", 12},
                                                                                {"dis", 12}}};
  const std::string lower = Lower(word.substr(0, 3));
  for (const auto& [name, month] : kMonths) {
    if (name == lower) return month;
  }
  return 0;
}

int WholeYear(std::string_view digits) {
  const int year = Number(digits);
  if (digits.size() > 2) return year;
  return year < 30 ? 2000 + year : 1900 + year;
}

// Digits and words, without the signs between them and without a time of day.
std::vector<std::string_view> PartsOf(std::string_view cell) {
  std::vector<std::string_view> parts;
  std::size_t at = 0;
  while (at < cell.size()) {
    const std::size_t begin = at;
    if (IsDigit(cell[at])) {
      while (at < cell.size() && IsDigit(cell[at])) ++at;
      if (at < cell.size() && cell[at] == ':') break;
    } else if (IsLetter(cell[at])) {
      while (at < cell.size() && IsLetter(cell[at])) ++at;
      if (parts.size() >= 3) break;  // the T before a time, AM
    } else {
      ++at;
      continue;
    }
    parts.push_back(cell.substr(begin, at - begin));
  }
  return parts;
}

std::variant<DateTime, Caption> DayOf(int year, int month, int day, std::string_view cell) {
  const DateTime date{year, month, day};
  if (year >= 1900 && date.IsValid()) return date;
  if (month > 12 && day <= 12) {
    return Caption{
        fmt::format("\"{}\" has no month {}: choose the other order of day and month", cell, month),
        fmt::format("“{}”没有 {} 月：请选择另一种日月次序", cell, month)};
  }
  return Caption{fmt::format("\"{}\" is no day of the calendar", cell),
                 fmt::format("“{}”不是日历上的日期", cell)};
}

std::variant<DateTime, Caption> DayOfDigits(std::string_view digits, DayOrder order) {
  if (digits.size() == 5 && Number(digits) >= 10000 && Number(digits) <= 80000) {
    // Days since the end of 1899.
    return DateTime{1899, 12, 30}.AddDays(Number(digits));
  }
  if (digits.size() != 8) return NoDay(digits);
  const int year = Number(digits.substr(0, 4));
  if (order == DayOrder::year_month_day || (year >= 1900 && year <= 2099)) {
    return DayOf(year, Number(digits.substr(4, 2)), Number(digits.substr(6)), digits);
  }
  int first = Number(digits.substr(0, 2));
  int second = Number(digits.substr(2, 2));
  if (order == DayOrder::month_day_year) std::swap(first, second);
  return DayOf(Number(digits.substr(4)), second, first, digits);
}

// --- amounts

Caption NoAmount(std::string_view cell) {
  return {fmt::format("\"{}\" is no amount", cell), fmt::format("“{}”不是金额", cell)};
}

void TakeAway(std::string* text, std::string_view word) {
  if (SameText(std::string_view(*text).substr(0, word.size()), word)) text->erase(0, word.size());
  if (text->size() >= word.size() &&
      SameText(std::string_view(*text).substr(text->size() - word.size()), word)) {
    text->erase(text->size() - word.size());
  }
  *text = Trim(*text);
}

// Takes what says less than nothing away.
bool TakeMinus(std::string* text) {
  if (text->size() > 2 && text->front() == '(' && text->back() == ')') {
    *text = Trim(text->substr(1, text->size() - 2));
    return true;
  }
  if (!text->empty() && text->front() == '+') text->erase(0, 1);
  if (text->size() > 1 && text->front() == '-') {
    *text = Trim(text->substr(1));
    return true;
  }
  if (text->size() > 1 && text->back() == '-') {
    *text = Trim(text->substr(0, text->size() - 1));
    return true;
  }
  return false;
}

// "1,234" without its comma; nothing where the groups are not of three.
std::optional<std::string> Ungrouped(std::string_view whole, char thousands) {
  std::string digits;
  std::size_t group = 0;
  bool grouped = false;
  for (const char sign : whole) {
    if (IsDigit(sign)) {
      digits.push_back(sign);
      ++group;
      continue;
    }
    const bool parts = sign == thousands || sign == ' ' || sign == '\'';
    if (!parts || group == 0 || group > 3 || (grouped && group != 3)) return std::nullopt;
    grouped = true;
    group = 0;
  }
  if (grouped && group != 3) return std::nullopt;
  return digits;
}

}  // namespace

std::string_view DayOrderName(DayOrder order) {
  static constexpr std::array<std::string_view, 3> kNames = {"dd-mm-yyyy", "mm-dd-yyyy",
                                                             "yyyy-mm-dd"};
  return kNames[static_cast<std::size_t>(order)];
}

std::optional<DayOrder> DayOrderNamed(std::string_view name) {
  for (const DayOrder order :
       {DayOrder::day_month_year, DayOrder::month_day_year, DayOrder::year_month_day}) {
    if (SameText(DayOrderName(order), name)) return order;
  }
  return std::nullopt;
}

std::string TidyCell(std::string_view cell) {
  std::string text;
  for (std::size_t at = 0; at < cell.size(); ++at) {
    if (cell.substr(at, 2) == "\xC2\xA0") {
      text.push_back(' ');
      ++at;
    } else if (static_cast<unsigned char>(cell[at]) < ' ' && cell[at] != '\n') {
      text.push_back(' ');
    } else {
      text.push_back(cell[at]);
    }
  }
  const auto first = text.find_first_not_of(" \n");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \n") - first + 1);
}

std::variant<DateTime, Caption> ReadDay(std::string_view cell, DayOrder order) {
  const std::vector<std::string_view> parts = PartsOf(cell);
  if (parts.size() == 1 && IsDigit(parts[0].front())) return DayOfDigits(parts[0], order);
  if (parts.size() < 3) return NoDay(cell);
  for (const std::size_t word : {std::size_t{1}, std::size_t{0}}) {
    if (!IsLetter(parts[word].front())) continue;
    const int month = MonthNamed(parts[word]);
    const std::string_view day = parts[1 - word];
    if (month == 0 || !IsDigit(day.front()) || !IsDigit(parts[2].front())) return NoDay(cell);
    return DayOf(WholeYear(parts[2]), month, Number(day), cell);
  }
  if (!IsDigit(parts[2].front())) return NoDay(cell);
  if (order == DayOrder::year_month_day || parts[0].size() == 4) {
    return DayOf(WholeYear(parts[0]), Number(parts[1]), Number(parts[2]), cell);
  }
  if (order == DayOrder::month_day_year) {
    return DayOf(WholeYear(parts[2]), Number(parts[0]), Number(parts[1]), cell);
  }
  return DayOf(WholeYear(parts[2]), Number(parts[1]), Number(parts[0]), cell);
}

std::variant<Money, Caption> ReadAmount(std::string_view cell, char decimal, int decimals) {
  std::string text(cell);
  for (const char* sign : {"RM", "MYR", "%"}) TakeAway(&text, sign);
  const bool minus = TakeMinus(&text);
  TakeAway(&text, "RM");
  const auto point = text.find(decimal);
  std::string part = point == std::string::npos ? std::string() : text.substr(point + 1);
  const auto whole = Ungrouped(text.substr(0, point), decimal == '.' ? ',' : '.');
  const bool digits = std::all_of(part.begin(), part.end(), IsDigit);
  if (!whole && digits && std::all_of(text.begin(), text.end(), [](char sign) {
        return IsDigit(sign) || sign == '.' || sign == ',';
      })) {
    const char* other = decimal == '.' ? "," : ".";
    return Caption{
        fmt::format("\"{}\" is no amount whose sen stand behind \"{}\": choose \"{}\", if that is "
                    "what the file has",
                    cell, decimal, other),
        fmt::format("“{}”不是以“{}”为小数点的金额：若文件用“{}”，请选择它", cell, decimal, other)};
  }
  if (!whole || !digits || (whole->empty() && part.empty())) return NoAmount(cell);
  while (!part.empty() && part.back() == '0') part.pop_back();
  if (part.size() > static_cast<std::size_t>(decimals)) {
    return Caption{fmt::format("\"{}\" has more than {} places behind the point", cell, decimals),
                   fmt::format("“{}”的小数多于 {} 位", cell, decimals)};
  }
  const auto amount =
      Money::TryText((whole->empty() ? "0" : *whole) + (part.empty() ? "" : "." + part));
  if (!amount) return NoAmount(cell);
  return minus ? -*amount : *amount;
}

}  // namespace kaunter
