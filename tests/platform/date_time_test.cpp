#include "platform/date_time.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/clock.h"

namespace kaunter {
namespace {

DateTime Day(int year, int month, int day) { return {year, month, day, 0, 0, 0}; }

TEST(DateTime, EveryDayOfTheCalendarFollowsTheOneBefore) {
  // Walks the calendar by its own plain rule beside the day numbers.
  int number = Day(1896, 1, 1).DayNumber();
  int weekday = Day(1896, 1, 1).Weekday();
  for (int year = 1896; year <= 2104; ++year) {
    for (int month = 1; month <= 12; ++month) {
      for (int day = 1; day <= CalendarDaysInMonth(month, year); ++day) {
        const DateTime date = Day(year, month, day);
        ASSERT_EQ(date.DayNumber(), number) << date.ToCanonical();
        ASSERT_EQ(DateTime::FromDayNumber(number), date);
        ASSERT_EQ(date.Weekday(), weekday);
        ++number;
        weekday = (weekday + 1) % 7;
      }
    }
  }
  EXPECT_EQ(Day(1970, 1, 1).DayNumber(), 0);
  EXPECT_EQ(Day(1, 1, 1).DayNumber(), -719162);
  EXPECT_EQ(Day(9999, 12, 31).DayNumber(), 2932896);
  EXPECT_EQ(Day(2024, 1, 31).Weekday(), 3);  // a Wednesday
  EXPECT_EQ(Day(1969, 12, 28).Weekday(), 0);
}

TEST(DateTime, LeapYears) {
  EXPECT_EQ(CalendarDaysInMonth(2, 1900), 28);
  EXPECT_EQ(CalendarDaysInMonth(2, 2000), 29);
  EXPECT_EQ(CalendarDaysInMonth(2, 2024), 29);
  EXPECT_EQ(CalendarDaysInMonth(2, 2023), 28);
}

TEST(DateTime, MonthsClampToTheMonthsEnd) {
  const struct {
    DateTime from;
    int months;
    DateTime to;
  } kCases[] = {
      {Day(2024, 1, 31), 1, Day(2024, 2, 29)},    {Day(2023, 1, 31), 1, Day(2023, 2, 28)},
      {Day(2024, 3, 31), -1, Day(2024, 2, 29)},   {Day(2024, 12, 15), 1, Day(2025, 1, 15)},
      {Day(2024, 1, 15), -1, Day(2023, 12, 15)},  {Day(2024, 2, 29), 12, Day(2025, 2, 28)},
      {Day(2024, 1, 31), -13, Day(2022, 12, 31)}, {Day(2024, 5, 31), 1200, Day(2124, 5, 31)},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(c.from.AddMonths(c.months), c.to) << c.from.ToCanonical() << " " << c.months;
  }
  const DateTime noon{2024, 1, 31, 12, 30, 5};
  EXPECT_EQ(noon.AddMonths(1), (DateTime{2024, 2, 29, 12, 30, 5}));
}

TEST(DateTime, SecondsCrossMidnight) {
  const DateTime late{2024, 2, 28, 23, 59, 59};
  EXPECT_EQ(late.AddSeconds(1), Day(2024, 2, 29));
  EXPECT_EQ(Day(1970, 1, 1).AddSeconds(-1), (DateTime{1969, 12, 31, 23, 59, 59}));
  EXPECT_EQ(late.AddDays(-59), (DateTime{2023, 12, 31, 23, 59, 59}));
}

TEST(DateTime, LeavingTheCalendarIsRefused) {
  EXPECT_THROW(Day(9999, 12, 31).AddDays(1), std::out_of_range);
  EXPECT_THROW(Day(1, 1, 1).AddDays(-1), std::out_of_range);
  EXPECT_THROW(Day(9999, 12, 1).AddMonths(1), std::out_of_range);
  EXPECT_THROW(Day(2024, 1, 1).AddMonths(2147483647), std::out_of_range);
  EXPECT_THROW(Day(2024, 1, 1).AddSeconds(9223372036854775807LL), std::out_of_range);
}

TEST(DateTime, CanonicalText) {
  EXPECT_EQ(Day(2024, 1, 31).ToCanonical(), "2024-01-31");
  EXPECT_EQ((DateTime{2024, 1, 31, 0, 0, 1}).ToCanonical(), "2024-01-31 00:00:01");
  EXPECT_EQ(Day(1, 2, 3).ToCanonical(), "0001-02-03");
  for (const char* text : {"2024-01-31", "2024-01-31 23:59:59"}) {
    const auto date = DateTime::FromCanonical(text);
    ASSERT_TRUE(date) << text;
    EXPECT_EQ(date->ToCanonical(), text);
  }
  for (const char* text : {"", "2024-02-30", "2024-1-31", "31-01-2024", "2024-01-31 ",
                           "2024-01-31 24:00:00", "2024-01-31 10:00", "2024-01-31T10:00:00",
                           "2024-01-3x", "0000-01-01", "2024-01-31 10:0x:00"}) {
    EXPECT_FALSE(DateTime::FromCanonical(text)) << text;
  }
}

TEST(DateTime, DisplayTextIsDayMonthYearAndNothingElse) {
  EXPECT_EQ(DateTime::FromDisplay("31-01-2024"), Day(2024, 1, 31));
  EXPECT_EQ(DateTime::FromDisplay("29-02-2024 08:05:00"), (DateTime{2024, 2, 29, 8, 5, 0}));
  for (const char* text : {"", "30-02-2024", "2024-01-31", "01-31-2024", "1-01-2024", "31/01/2024",
                           "31-01-24", "31-01-2024x", "29-02-2023", "-1-01-2024"}) {
    EXPECT_FALSE(DateTime::FromDisplay(text)) << text;
  }
}

TEST(Clock, StandsWhereItWasSet) {
  Clock clock;
  EXPECT_TRUE(clock.Now().IsValid());
  EXPECT_GE(clock.Now().year, 2024);
  const DateTime noon{2024, 3, 1, 12, 0, 0};
  clock.Set(noon);
  EXPECT_EQ(clock.Now(), noon);
  clock.Reset();
  EXPECT_NE(clock.Now(), noon);
}

}  // namespace
}  // namespace kaunter
