// DateTime: a calendar date with a time of day to the second, as the database keeps it (proleptic
// Gregorian, years 1 to 9999, no time zone).
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace kaunter {

struct DateTime {
  int year = 1900;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;

  auto operator<=>(const DateTime&) const = default;

  // True for a date of the calendar with a time of day.
  bool IsValid() const;
  bool IsMidnight() const { return hour == 0 && minute == 0 && second == 0; }
  DateTime DateOnly() const { return {year, month, day, 0, 0, 0}; }

  // Calendar arithmetic. AddMonths clamps a day past the end of the target month to its last day.
  DateTime AddDays(int days) const;
  DateTime AddMonths(int months) const;
  DateTime AddSeconds(long long seconds) const;
  // Days from 1970-01-01 (may be negative); the inverse keeps no time.
  int DayNumber() const;
  static DateTime FromDayNumber(int day_number);
  // 0 Sunday to 6 Saturday.
  int Weekday() const;

  // "yyyy-mm-dd", with " hh:mm:ss" only when the time is not midnight: the canonical text of the
  // embedded database, in which text order is time order.
  std::string ToCanonical() const;
  static std::optional<DateTime> FromCanonical(std::string_view text);
  // "dd-mm-yyyy", two digits each, optionally " hh:mm:ss". Nothing else is taken: no other order,
  // no two-digit year, no day or month outside the calendar.
  static std::optional<DateTime> FromDisplay(std::string_view text);
};

// Length of a month by the true calendar.
int CalendarDaysInMonth(int month, int year);

}  // namespace kaunter
