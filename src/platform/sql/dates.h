// Dates as the server reads and prints them: every text goes to the canonical one at the door.
#pragma once

#include <string>
#include <string_view>

#include "platform/date_time.h"

namespace kaunter::sql {

enum class DateResult { kOk, kNoDate, kOutsideCalendar };  // 0, 241, 242

// yyyy-mm-dd, yyyy/mm/dd, yyyy.mm.dd, yyyymmdd, "Jan 31 2024", each with an optional time
// "h:mm[:ss[.fff]] [AM|PM]" behind a blank or a T; a time alone is on 1900-01-01; '' is
// 1900-01-01. Fractions of a second are cut.
DateResult ParseDateTime(std::string_view text, DateTime* date);
// A number of days from 1900-01-01, the fraction a time.
DateResult FromDays(double days, DateTime* date);

// The styles of CONVERT. Both give false for a style that there is not.
bool KnownDateStyle(int style);
DateResult ParseStyled(std::string_view text, int style, DateTime* date);
std::string FormatStyled(const DateTime& date, int style);

enum class DatePart {
  kNone,
  kYear,
  kQuarter,
  kMonth,
  kDayOfYear,
  kDay,
  kWeek,
  kIsoWeek,
  kWeekday,
  kHour,
  kMinute,
  kSecond,
  kMillisecond
};
DatePart PartByName(std::string_view name);
int PartOf(DatePart part, const DateTime& date);
std::string PartName(DatePart part, const DateTime& date);
// Throws std::out_of_range outside the years 1753 to 9999.
DateTime AddPart(DatePart part, long long count, const DateTime& date);
// Boundaries crossed from a to b; a week begins on Sunday.
long long CountBoundaries(DatePart part, const DateTime& a, const DateTime& b);

}  // namespace kaunter::sql
