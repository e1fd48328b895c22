#include "collections/reverse_payment.h"

#include <fmt/format.h>

#include <cstdint>

#include "collections/payment_store.h"
#include "core/amounts.h"
#include "core/values.h"

namespace kaunter {
namespace {

// "<column>=<what it holds less the amount>".
std::string Less(const Recordset& row, std::string_view column, Money amount) {
  return fmt::format("{}={}", column, (Sen(row, column) - amount).ToText());
}

// The top-up was spread over instalments of its own.
bool InInstalments(const Payment& payment) {
  return !payment.TopAmt.IsZero() && payment.TopTerm != 0;
}
Money ToppedUp(const Payment& payment) {
  return InInstalments(payment) ? payment.TopTerm * payment.TopAmt : payment.TopUpAmt;
}

// Rows that a top-up made carry neither capital nor interest and are not of the schedule as it was
// generated (extra capital may have cut those to nothing). A row of the loan's own schedule is
// never lowered: no save ever raised it, and the rebuild that follows opens with the sum of
// PayableAmt.
std::string ThatATopUpMade(const std::string& loan_id) {
  return " AND CapitalAmt=0 AND InterestAmt=0 AND SchID NOT IN (SELECT SchID FROM SchMast2 WHERE "
         "LoanID=" +
         loan_id + ")";
}

void FromLoan(Connection& main, const Payment& stored) {
  const std::string id = QuoteStr(stored.LoanID);
  const Recordset loan = main.Query(
      "Select TotPay,TotInt,TotCollectorAmt,TotCharge,TotDiscAmt,LoanBal,TopUpAmt from LoanMast "
      "where LoanID=" +
      id);
  if (loan.Eof()) return;
  main.Execute(fmt::format(
      "Update LoanMast set {},{},{},{},{},{},{} Where LoanID={}",
      Less(loan, "TotPay", stored.PayAmt), Less(loan, "LoanBal", ToppedUp(stored) - stored.PayAmt),
      Less(loan, "TotInt", stored.IntAmt), Less(loan, "TotCollectorAmt", stored.CollectorAmt),
      Less(loan, "TotCharge", stored.ChargeAmt), Less(loan, "TotDiscAmt", stored.DiscAmt),
      Less(loan, "TopUpAmt", stored.TopUpAmt), id));
}

void FromRow(Connection& main, const Payment& stored) {
  const std::string where = fmt::format(" where LoanID={} and SchID={}", QuoteStr(stored.LoanID),
                                        StripCommaOrZero(stored.SchID));
  const Recordset row = main.Query(
      "Select Payment,IntChargeAmt,DragInt,DragIntPaid,IntAmt,PayableAmt from SchMast" + where);
  if (row.Eof()) return;
  const bool lowered =
      !InInstalments(stored) && !stored.TopUpAmt.IsZero() &&
      !main.Query("SELECT SchID FROM SchMast" + where + ThatATopUpMade(QuoteStr(stored.LoanID)))
           .Eof();
  const Money payable = lowered ? stored.TopUpAmt : Money();
  main.Execute(fmt::format(
      "Update SchMast set {},{},{},{},{},{}{}", Less(row, "Payment", stored.PayAmt),
      Less(row, "IntChargeAmt", stored.IntChargeAmt), Less(row, "DragInt", stored.DragInt),
      Less(row, "DragIntPaid", stored.CollectorAmt), Less(row, "IntAmt", stored.IntAmt),
      Less(row, "PayableAmt", payable), where));
}

void FromTopUpRows(Connection& main, const Payment& stored) {
  if (!InInstalments(stored)) return;
  const std::string id = QuoteStr(stored.LoanID);
  const std::int64_t first = CLng(StripCommaOrZero(stored.SchID));
  Recordset rows = main.Query(
      fmt::format("SELECT SchID,PayableAmt FROM SchMast WHERE LoanID={} AND SchID >={} AND SCHID "
                  "<={}{} ORDER BY SchID",
                  id, first, first + stored.TopTerm - 1, ThatATopUpMade(id)));
  for (; !rows.Eof(); rows.MoveNext()) {
    const std::string where =
        fmt::format(" WHERE LoanID={} AND SchID={}", id, rows.Field("SchID").ToText());
    if (Sen(rows, "PayableAmt") <= stored.TopAmt) {
      main.Execute("DELETE FROM SchMast" + where);
    } else {
      main.Execute("UPDATE SchMast SET " + Less(rows, "PayableAmt", stored.TopAmt) + where);
    }
  }
}

void FromCustomer(Connection& main, const Payment& stored) {
  const std::string id = QuoteStr(stored.CustID);
  const Recordset customer =
      main.Query("Select TotLoanBal,TotTopUpAmt from CustMast where CustID=" + id);
  if (customer.Eof()) return;
  main.Execute(fmt::format("Update CustMast set {},{} where CustID={}",
                           Less(customer, "TotLoanBal", ToppedUp(stored) - stored.PayAmt),
                           Less(customer, "TotTopUpAmt", stored.TopUpAmt), id));
}

}  // namespace

void TakeBackCommission(Connection& main, const Payment& stored) {
  const std::string id = QuoteStr(stored.SalesmanID);
  const Recordset salesman =
      main.Query("SELECT TotPayComm FROM SalesmanMast WHERE SalesmanID=" + id);
  if (salesman.Eof()) return;
  main.Execute(fmt::format("UPDATE SalesmanMast SET {} WHERE SalesmanID={}",
                           Less(salesman, "TotPayComm", stored.SalesmanComm), id));
}

void ReversePayment(Connection& main, const Payment& stored) {
  FromLoan(main, stored);
  FromRow(main, stored);
  FromTopUpRows(main, stored);
  FromCustomer(main, stored);
  TakeBackCommission(main, stored);
}

}  // namespace kaunter
