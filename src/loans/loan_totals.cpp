#include "loans/loan_totals.h"

#include <fmt/format.h>

#include <stdexcept>

#include "core/amounts.h"
#include "core/session.h"
#include "core/values.h"

namespace kaunter {
namespace {

void ChangeCommission(Connection& main, std::string_view salesman_id, Money by) {
  const std::string id = QuoteStr(salesman_id);
  const Recordset row = main.Query("SELECT TotAccComm FROM SalesmanMast WHERE SalesmanID=" + id);
  if (row.Eof()) return;
  main.Execute(fmt::format("UPDATE SalesmanMast SET TotAccComm={} WHERE SalesmanID={}",
                           (Sen(row, "TotAccComm") + by).ToText(), id));
}

}  // namespace

LoanFigures ReadLoanFigures(const Recordset& row) {
  return {.LoanAmt = Sen(row, "LoanAmt"),
          .LoanBal = Sen(row, "LoanBal"),
          .LoanAmt2 = Sen(row, "LoanAmt2"),
          .TopUpAmt = Sen(row, "TopUpAmt"),
          .PayOutAmt = Sen(row, "PayOutAmt"),
          .SalesmanComm = Sen(row, "SalesmanComm"),
          .SalesmanID = NullToEmpty(row.Field("SalesmanID"))};
}

Caption LoanChangedMeanwhile(std::string_view loan_id) {
  return {fmt::format("Loan {} was changed meanwhile, Please load it again", loan_id),
          fmt::format("贷款 {} 已被更改，请重新载入", loan_id)};
}

void RequireUnchanged(const Session& session, std::string_view loan_id, const LoanFigures& loaded) {
  const Recordset stored = session.Main().Query(fmt::format(
      "SELECT LoanAmt,LoanBal,LoanAmt2,TopUpAmt,PayOutAmt,SalesmanComm,SalesmanID FROM LoanMast "
      "WHERE LoanID={}",
      QuoteStr(loan_id)));
  if (stored.Eof() || ReadLoanFigures(stored) == loaded) return;
  throw std::runtime_error(session.In(LoanChangedMeanwhile(loan_id)));
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
        (Sen(row, "TotLoan") - old.LoanAmt).ToText(),
        (Sen(row, "TotLoanBal") - old.LoanBal).ToText(),
        (Sen(row, "TotLoanAmt2") - old.LoanAmt2).ToText(),
        (Sen(row, "TotTopUpAmt") - old.TopUpAmt).ToText(), id));
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
                    (Sen(row, "TotLoan") + loan.LoanAmt).ToText(),
                    (Sen(row, "TotLoanBal") + loan.LoanBal).ToText(),
                    (Sen(row, "TotTopUpAmt") + loan.TopUpAmt).ToText(), id));
  }
  ChangeCommission(main, loan.SalesmanID, loan.SalesmanComm);
}

}  // namespace kaunter
