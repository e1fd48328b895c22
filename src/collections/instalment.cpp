#include "collections/instalment.h"

#include <fmt/format.h>

#include "core/amounts.h"
#include "core/values.h"
#include "loans/step_date.h"

namespace kaunter {

std::string FirstOpenRow(Connection& main, std::string_view loan_id) {
  const Recordset rows =
      main.Query("Select SchID, PayableAmt,Payment from SchMast where LoanID=" + QuoteStr(loan_id) +
                 " order by DueDate");
  if (rows.Eof()) return "";
  Recordset row = rows;
  for (; !row.Eof(); row.MoveNext()) {
    if (Sen(row, "PayableAmt") != Sen(row, "Payment")) return row.Field("SchID").ToText();
  }
  return rows.Field("SchID").ToText();
}

std::optional<Instalment> ReadInstalment(Connection& main, std::string_view loan_id,
                                         std::string_view sch_id, const std::string& step_code) {
  const std::string loan = QuoteStr(loan_id);
  const Recordset row = main.Query(fmt::format(
      "SELECT DueDate,PayableAmt,CapitalAmt,InterestAmt,Payment,CapitalPayment,InterestPayment,"
      "IntDate FROM SchMast WHERE SchID={} AND LoanID={}",
      StripCommaOrZero(sch_id), loan));
  if (row.Eof()) return std::nullopt;
  Instalment instalment;
  instalment.DueDate = ShowDate(row.Field("DueDate"));
  instalment.IntDate = ShowDate(row.Field("IntDate"));
  instalment.PayableAmt = Sen(row, "PayableAmt");
  instalment.Payment = Sen(row, "Payment");
  instalment.CapitalAmt = Sen(row, "CapitalAmt");
  instalment.InterestAmt = Sen(row, "InterestAmt");
  instalment.capital_open = instalment.CapitalAmt - Sen(row, "CapitalPayment");
  instalment.interest_open = instalment.InterestAmt - Sen(row, "InterestPayment");
  const DateTime* due = row.Field("DueDate").AsDate();
  if (due != nullptr && IsRepaymentCode(step_code)) {
    instalment.NextDueDate = ShowDate(StepDate(step_code, *due, false));
    return instalment;
  }
  const Recordset following = main.Query(fmt::format(
      "SELECT DueDate FROM SchMast WHERE LoanID={} AND SchID={}", loan, CLng(sch_id) + 1));
  if (!following.Eof()) instalment.NextDueDate = ShowDate(following.Field("DueDate"));
  if (instalment.NextDueDate.empty()) instalment.NextDueDate = instalment.DueDate;
  return instalment;
}

Money OpenOnSchedule(Connection& main, std::string_view loan_id) {
  return Sen(ScalarQuery(
      main, fmt::format("SELECT SUM(CapitalAmt+InterestAmt) - SUM(CapitalPayment+InterestPayment) "
                        "FROM SchMast WHERE LoanID={}",
                        QuoteStr(loan_id))));
}

}  // namespace kaunter
