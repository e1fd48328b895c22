// What a row of a loan's schedule asks for at the moment a payment is taken, as a payment records
// it, and what is open on the whole schedule.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

// Dates as boxes show them (dd-mm-yyyy).
struct Instalment {
  std::string DueDate;
  std::string NextDueDate;
  std::string IntDate;
  Money PayableAmt;
  Money Payment;
  Money CapitalAmt;
  Money InterestAmt;
  Money capital_open;
  Money interest_open;
};

// The first row of the loan with something open, by due date; when there is none, the first row;
// "" for a loan without a schedule.
std::string FirstOpenRow(Connection& main, std::string_view loan_id);

// The row as it is now; none: no such row. The next due date is that of the row behind it, or its
// own when there is none; with `step_code`, the repayment code of a flexi loan that takes a new
// payment, it is one step of the code on. Throws SqlError.
std::optional<Instalment> ReadInstalment(Connection& main, std::string_view loan_id,
                                         std::string_view sch_id, const std::string& step_code);

// Capital and interest not yet paid, over all rows: what a flexi loan may take at the most. Throws
// SqlError.
Money OpenOnSchedule(Connection& main, std::string_view loan_id);

}  // namespace kaunter
