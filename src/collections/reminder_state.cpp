#include "collections/reminder_state.h"

#include <fmt/format.h>

#include "core/values.h"

namespace kaunter {

ReminderState ReadReminderState(Connection& main, std::string_view loan_id) {
  const std::string today = ServerNow(main, false);
  const Recordset loan = main.Query(fmt::format(
      "SELECT LoanMast.ReminderDate,MIN(SchMast.DueDate) AS Oldest FROM LoanMast INNER JOIN "
      "SchMast "
      "ON SchMast.LoanID=LoanMast.LoanID WHERE LoanMast.LoanID={} AND LoanMast.LoanBal > 0 AND "
      "SchMast.PayableAmt > isnull(SchMast.Payment,0) AND SchMast.DueDate < {} GROUP BY "
      "LoanMast.ReminderDate",
      QuoteStr(loan_id), SqlDate(today)));
  ReminderState state;
  if (loan.Eof()) return state;
  state.overdue = true;
  // A letter of arrears that were paid since is none for those of today.
  const auto reminded = DateTime::FromDisplay(ShowDate(loan.Field("ReminderDate")));
  const auto oldest = DateTime::FromDisplay(ShowDate(loan.Field("Oldest")));
  if (!reminded || !oldest || *reminded <= *oldest) return state;
  state.first_letter = ShowDate(loan.Field("ReminderDate"));
  const DateTime until = reminded->AddDays(kDaysToPay);
  if (const auto now = DateTime::FromDisplay(today); now && until >= *now) {
    state.given_until = Format(until, "dd-mm-yyyy");
  }
  return state;
}

}  // namespace kaunter
