#include "loans/loan_totals.h"

#include "core/values.h"
#include "fmt/format.h"

namespace kaunter {
namespace {

Money Amount(const Recordset& row, std::string_view column) {
  return Money::FromText(ShowMoney(row.Field(column)));
}

void ChangeCommission(Connection& main, std::string_view salesman_id, Money by) {
  const std::string id = QuoteStr(salesman_id);
  const Recordset row = main.Query("SELECT TotAccComm FROM SalesmanMast WHERE SalesmanID=" + id);
  if (row.Eof()) return;
  main.Execute(fmt::format("UPDATE SalesmanMast SET TotAccComm={} WHERE SalesmanID={}",
                           (Amount(row, "TotAccComm") + by).ToText(), id));
}

}  // namespace

LoanFigures ReadLoanFigures(const Recordset& row) {
  return {.LoanAmt = Amount(row, "LoanAmt"),
          .LoanBal = Amount(row, "LoanBal"),
          .LoanAmt2 = Amount(row, "LoanAmt2"),
          .TopUpAmt = Amount(row, "TopUpAmt"),
          .PayOutAmt = Amount(row, "PayOutAmt"),
          .SalesmanComm = Amount(row, "SalesmanComm"),
          .SalesmanID = NullToEmpty(row.Field("SalesmanID"))};
}

Money NewLoanBalance(Money first_payment, Money instalment, Money last_payment,
                     std::string_view loan_term) {
  return Money::FromDouble(CDbl(first_payment) + CDbl(last_payment) +
                           (CDbl(loan_term) - 2) * CDbl(instalment));
}

void ReverseLoanTotals(Connection& main, std::string_view cust_id, const LoanFigures& old) {
  const std::string id = QuoteStr(cust_id);
  const Recordset row = main.Query(
      "SELECT TotLoan,TotLoanAmt2,TotLoanBal,TotTopUpAmt FROM CustMast WHERE CustID=" + id);
  if (!row.Eof()) {
    main.Execute(fmt::format(
        "UPDATE CustMast SET TotLoan={},TotLoanBal={},TotLoanAmt2={},TotTopUpAmt={} WHERE "
        "CustID={}",
        (Amount(row, "TotLoan") - old.LoanAmt).ToText(),
        (Amount(row, "TotLoanBal") - old.LoanBal).ToText(),
        (Amount(row, "TotLoanAmt2") - old.LoanAmt2).ToText(),
        (Amount(row, "TotTopUpAmt") - old.TopUpAmt).ToText(), id));
  }
  ChangeCommission(main, old.SalesmanID, -old.SalesmanComm);
}

void AddLoanTotals(Connection& main, std::string_view cust_id, const LoanFigures& loan) {
  const std::string id = QuoteStr(cust_id);
  const Recordset row =
      main.Query("SELECT TotLoan,TotLoanBal,TotTopUpAmt FROM CustMast WHERE CustID=" + id);
  if (!row.Eof()) {
    main.Execute(
        fmt::format("UPDATE CustMast SET TotLoan={},TotLoanBal={},TotTopUpAmt={} WHERE CustID={}",
                    (Amount(row, "TotLoan") + loan.LoanAmt).ToText(),
                    (Amount(row, "TotLoanBal") + loan.LoanBal).ToText(),
                    (Amount(row, "TotTopUpAmt") + loan.TopUpAmt).ToText(), id));
  }
  ChangeCommission(main, loan.SalesmanID, loan.SalesmanComm);
}

}  // namespace kaunter
