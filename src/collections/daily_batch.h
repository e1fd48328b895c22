// The daily batch: one day's late interest on each overdue row, one "Batch" charge a row and day.
// docs/daily-batch.md tells the rule to whoever runs it.
//
// The key of a charge is made of loan, row and day, and a charge that exists is left alone, waived
// or not: the batch may be cut off at any moment and run again, and two may run at once. It works
// in small transactions, each with its loans' totals, so that the counter can save in between.
#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/date_time.h"
#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

// The day that was asked for cannot be posted; nothing has been done.
class BatchRefused : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct BatchProgress {
  DateTime day;             // in work
  int percent = 0;          // of all days of the run
  std::int64_t posted = 0;  // charges so far
};

struct BatchOutcome {
  DateTime first_day;
  DateTime last_day;
  std::int64_t posted = 0;
  Money amount;
};

// Posts every day after DailyBatchDate up to `date`; `date` alone when no day has been done yet or
// when it is not after the last one. Each finished day raises DailyBatchDate. `user` is who the
// charges name.
//
// Throws BatchRefused for a date in the future or a DailyBatchDate that is no date; SqlError, after
// which all that was posted stays and another run goes on from there.
BatchOutcome RunDailyBatch(Connection& main, const DateTime& date, std::string_view user,
                           const std::function<void(const BatchProgress&)>& progress);

// For a run that nobody looks at. Throws BatchRefused where `today` lies more than a month from
// DailyBatchDate, before it or behind: a clock that is wrong is likelier then than an office that
// was shut so long, and it would post the interest of years. SqlError.
void RefuseUnlikelyToday(Connection& main, const DateTime& today);

// The keys of the charges of a day.
std::string BatchChargeID(std::string_view loan_id, std::string_view sch_id, const DateTime& day);
std::string TermEndChargeID(std::string_view loan_id, const DateTime& day);

}  // namespace kaunter
