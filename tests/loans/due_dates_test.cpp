#include "loans/due_dates.h"

#include <stdexcept>

#include "gtest/gtest.h"
#include "loans/step_date.h"

namespace kaunter {
namespace {

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
