#include "loans/due_dates.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "core/formats.h"
#include "gtest/gtest.h"
#include "loans/step_date.h"

namespace kaunter {
namespace {

std::string Dates(const std::string& code, const DateTime& first, int rows, int skip = 0) {
  DueDates dates(code, first);
  std::string text;
  for (int i = 0; i < rows; ++i) {
    const DateTime date = dates.Next();
    if (i >= skip) text += (text.empty() ? "" : " ") + Format(date, "dd-mm-yy");
  }
  return text;
}

TEST(DueDatesTest, MonthsTurnBackToTheFirstDay) {
  EXPECT_EQ(Dates("MONTH", {2024, 1, 31}, 12),
            "31-01-24 29-02-24 31-03-24 30-04-24 31-05-24 30-06-24 31-07-24 31-08-24 30-09-24 "
            "31-10-24 30-11-24 31-12-24");
  EXPECT_EQ(Dates("MONTH", {2023, 1, 30}, 5), "30-01-23 28-02-23 30-03-23 30-04-23 30-05-23");
  // 2023: the date clamps to 28 and stays there; the leap day of 2024 is reached all the same.
  EXPECT_EQ(Dates("MONTH", {2023, 1, 31}, 15, 12), "31-01-24 29-02-24 31-03-24");
  // First due on a leap day.
  EXPECT_EQ(Dates("MONTH", {2024, 2, 29}, 14, 11), "29-01-25 28-02-25 29-03-25");
  EXPECT_EQ(Dates("MONTH", {2023, 1, 29}, 4), "29-01-23 28-02-23 29-03-23 29-04-23");
  EXPECT_EQ(Dates("MONTH", {2024, 1, 28}, 3), "28-01-24 28-02-24 28-03-24");
  // The true calendar: no leap day in 2100.
  EXPECT_EQ(Dates("MONTH", {2100, 1, 31}, 3), "31-01-00 28-02-00 31-03-00");
}

TEST(DueDatesTest, OtherCodesCountDays) {
  EXPECT_EQ(Dates("WEEK", {2024, 2, 26}, 3), "26-02-24 04-03-24 11-03-24");
  EXPECT_EQ(Dates("DAILY", {2024, 2, 28}, 3), "28-02-24 29-02-24 01-03-24");
  EXPECT_EQ(Dates("14DAYS", {2024, 12, 25}, 3), "25-12-24 08-01-25 22-01-25");
}

TEST(StepDateTest, BackwardsIsTheSameStep) {
  EXPECT_EQ(StepDate("MONTH", {2024, 3, 31}, true), (DateTime{2024, 2, 29}));
  EXPECT_EQ(StepDate("WEEK", {2024, 3, 4}, true), (DateTime{2024, 2, 26}));
  EXPECT_EQ(StepDate("14DAYS", {2024, 1, 8}, true), (DateTime{2023, 12, 25}));
}

TEST(StepDateTest, CodesAreExactTextsOrDaysFromOne) {
  // Four characters go, whatever they are.
  EXPECT_EQ(StepDate("3Days", {2024, 1, 1}, false), (DateTime{2024, 1, 4}));
  for (const char* code : {"", "DAYS", "XDAYS", "0DAYS", "-3DAYS", "month", "Week", "999999DAYS"}) {
    EXPECT_THROW(StepDate(code, {2024, 1, 1}, false), std::invalid_argument) << code;
    EXPECT_FALSE(IsRepaymentCode(code)) << code;
    // Even where only the first row would be wanted.
    DueDates dates(code, {2024, 1, 1});
    EXPECT_THROW(dates.Next(), std::invalid_argument) << code;
  }
  EXPECT_THROW(StepDate("DAILY", {9999, 12, 31}, false), std::out_of_range);
}

}  // namespace
}  // namespace kaunter
