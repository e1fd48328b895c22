#include "platform/date_time.h"

#include <stdexcept>

namespace kaunter {
namespace {

constexpr long long kSecondsPerDay = 86400;

// Reads exactly `count` digits at `at`; -1 when there are none.
int Digits(std::string_view text, std::size_t at, std::size_t count) {
  int value = 0;
  for (std::size_t i = at; i < at + count; ++i) {
    if (i >= text.size() || text[i] < '0' || text[i] > '9') return -1;
    value = value * 10 + (text[i] - '0');
  }
  return value;
}

// " hh:mm:ss" at `at`, or nothing more.
bool ReadTime(std::string_view text, std::size_t at, DateTime* out) {
  if (text.size() == at) return true;
  if (text.size() != at + 9 || text[at] != ' ' || text[at + 3] != ':' || text[at + 6] != ':') {
    return false;
  }
  out->hour = Digits(text, at + 1, 2);
  out->minute = Digits(text, at + 4, 2);
  out->second = Digits(text, at + 7, 2);
  return true;
}

void Put(char* to, int value, int digits) {
  for (int i = digits - 1; i >= 0; --i) {
    to[i] = static_cast<char>('0' + value % 10);
    value /= 10;
  }
}

long long FloorDiv(long long a, long long b) { return a / b - (a % b < 0 ? 1 : 0); }

DateTime Checked(DateTime date) {
  if (!date.IsValid()) throw std::out_of_range("a date outside the years 1 to 9999");
  return date;
}

}  // namespace

int CalendarDaysInMonth(int month, int year) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month == 2 && (year % 4 == 0 && (year % 100 != 0 || year % 400 == 0))) return 29;
  return kDays[month - 1];
}

bool DateTime::IsValid() const {
  return year >= 1 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
         day <= CalendarDaysInMonth(month, year) && hour >= 0 && hour <= 23 && minute >= 0 &&
         minute <= 59 && second >= 0 && second <= 59;
}

// Days are counted from 1 March of year 0, so that the leap day is the last of its year.
int DateTime::DayNumber() const {
  const int y = month <= 2 ? year - 1 : year;
  const int era = (y >= 0 ? y : y - 399) / 400;
  const int year_of_era = y - era * 400;
  const int day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const int day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * 146097 + day_of_era - 719468;
}

DateTime DateTime::FromDayNumber(int day_number) {
  const int z = day_number + 719468;
  const int era = (z >= 0 ? z : z - 146096) / 146097;
  const int day_of_era = z - era * 146097;
  const int year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const int day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const int shifted_month = (5 * day_of_year + 2) / 153;
  DateTime date;
  date.day = day_of_year - (153 * shifted_month + 2) / 5 + 1;
  date.month = shifted_month < 10 ? shifted_month + 3 : shifted_month - 9;
  date.year = year_of_era + era * 400 + (date.month <= 2 ? 1 : 0);
  return Checked(date);
}

DateTime DateTime::AddDays(int days) const { return AddSeconds(days * kSecondsPerDay); }

DateTime DateTime::AddMonths(int months) const {
  const long long total = year * 12LL + (month - 1) + months;
  DateTime result = *this;
  result.year = static_cast<int>(FloorDiv(total, 12));
  result.month = static_cast<int>(total - FloorDiv(total, 12) * 12) + 1;
  const int last = CalendarDaysInMonth(result.month, result.year);
  if (result.day > last) result.day = last;
  return Checked(result);
}

DateTime DateTime::AddSeconds(long long seconds) const {
  // Longer than the whole calendar: outside it, and safe from overflow below.
  constexpr long long kLongest = 10000LL * 366 * kSecondsPerDay;
  if (seconds > kLongest || seconds < -kLongest) Checked({0, 1, 1, 0, 0, 0});
  const long long total =
      DayNumber() * kSecondsPerDay + hour * 3600LL + minute * 60LL + second + seconds;
  const long long day_number = FloorDiv(total, kSecondsPerDay);
  const int rest = static_cast<int>(total - day_number * kSecondsPerDay);
  DateTime result = FromDayNumber(static_cast<int>(day_number));
  result.hour = rest / 3600;
  result.minute = rest / 60 % 60;
  result.second = rest % 60;
  return result;
}

int DateTime::Weekday() const {
  // 1970-01-01 was a Thursday.
  const int day = (DayNumber() + 4) % 7;
  return day < 0 ? day + 7 : day;
}

std::string DateTime::ToCanonical() const {
  char text[] = "0000-00-00 00:00:00";
  Put(text, year, 4);
  Put(text + 5, month, 2);
  Put(text + 8, day, 2);
  if (IsMidnight()) return std::string(text, 10);
  Put(text + 11, hour, 2);
  Put(text + 14, minute, 2);
  Put(text + 17, second, 2);
  return text;
}

std::optional<DateTime> DateTime::FromCanonical(std::string_view text) {
  if (text.size() < 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  DateTime date;
  date.year = Digits(text, 0, 4);
  date.month = Digits(text, 5, 2);
  date.day = Digits(text, 8, 2);
  if (!ReadTime(text, 10, &date) || !date.IsValid()) return std::nullopt;
  return date;
}

std::optional<DateTime> DateTime::FromDisplay(std::string_view text) {
  if (text.size() < 10 || text[2] != '-' || text[5] != '-') return std::nullopt;
  DateTime date;
  date.day = Digits(text, 0, 2);
  date.month = Digits(text, 3, 2);
  date.year = Digits(text, 6, 4);
  if (!ReadTime(text, 10, &date) || !date.IsValid()) return std::nullopt;
  return date;
}

}  // namespace kaunter
