// The repayment schedule: from the terms and instalment figures of a loan to its rows. Pure
// arithmetic; loans/schedule_store.h writes the rows.
//
// Two schemes. A personal loan carries interest of the whole term, spread flat or by the sum of
// digits; a flexi loan charges the days of each month on the running balance. The roundings and the
// order of conversions decide the sen and stand here step by step.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "loans/terms.h"
#include "platform/date_time.h"
#include "platform/money.h"

namespace kaunter {

struct ScheduleRow {
  int SchID = 0;  // from 1
  DateTime DueDate;
  Money PayableAmt;
  Money CapitalAmt;         // may be negative: an instalment below the month's interest
  std::string InterestAmt;  // a loosely typed text, as the steps leave it
  double FIntAmt = 0;       // the row's interest by the sum of digits at the capped rate
};

struct Schedule {
  std::vector<ScheduleRow> rows;
  Money TotLoanInt;  // all interest
  // Flexi loan only: the last row's payable, which replaces the screen's figure.
  std::optional<std::string> LastPayment;
};

// How the interest of one grace row of a personal loan is cut from BulletInt: a stored schedule
// takes it through money before the division, the calculator divides the plain double.
enum class GraceDivision { kThroughMoney, kPlainDouble };

// `terms` must have passed CheckTerms, with the instalment figures filled; else
// std::invalid_argument. Throws std::overflow_error for figures past money's range,
// std::out_of_range for dates past the calendar's end.
Schedule ComputeSchedule(const LoanTerms& terms,
                         GraceDivision division = GraceDivision::kThroughMoney);

}  // namespace kaunter
