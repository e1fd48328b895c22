#include "loans/loan_lifecycle.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string>

#include "core/amounts.h"
#include "core/audit.h"
#include "core/record.h"
#include "core/session.h"
#include "core/values.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

// The loan stays in the totals with all but its balance.
void MoveTotals(Connection& main, const LoanKey& key, const LoanFigures& old, Money balance) {
  LoanFigures now = old;
  now.LoanBal = balance;
  ReverseLoanTotals(main, key.CustID, old);
  AddLoanTotals(main, key.CustID, now);
}

}  // namespace

void CloseLoan(const Session& session, const LoanKey& key, const LoanFigures& old) {
  Connection& main = session.Main();
  Transaction transaction(main);
  RequireUnchanged(session, key.LoanID, old);
  ExecuteOnRow(main,
               "UPDATE LoanMast SET LoanStatus='CLOSED',CloseBal=LoanBal,LoanBal=0 WHERE LoanID=" +
                   QuoteStr(key.LoanID),
               key.LoanID);
  MoveTotals(main, key, old, Money());
  transaction.Commit();
}

Money OpenLoan(const Session& session, const LoanKey& key, const LoanFigures& old) {
  Connection& main = session.Main();
  const std::string id = QuoteStr(key.LoanID);
  Transaction transaction(main);
  RequireUnchanged(session, key.LoanID, old);
  const Recordset row = main.Query("SELECT CloseBal FROM LoanMast WHERE LoanID=" + id);
  const Money balance = row.Eof() ? Money() : Sen(row.Field(0));
  ExecuteOnRow(
      main,
      "UPDATE LoanMast SET LoanStatus='ACTIVE',LoanBal=CloseBal, CloseBal=0 WHERE LoanID=" + id,
      key.LoanID);
  MoveTotals(main, key, old, balance);
  transaction.Commit();
  return balance;
}

int CountPayments(Connection& main, std::string_view loan_id) {
  return static_cast<int>(
      main.Query("Select PayID from PaymentMast where LoanID=" + QuoteStr(loan_id)).RowCount());
}

void DeleteLoan(const Session& session, const LoanKey& key, const LoanFigures& old, int payments,
                std::string_view comp_code, std::string_view trx_date) {
  Connection& main = session.Main();
  const std::string id = QuoteStr(key.LoanID);
  Transaction transaction(main);
  if (CountPayments(main, key.LoanID) != payments) {
    throw std::runtime_error(
        session.In({fmt::format("The payments of loan {} have changed, load it again", key.LoanID),
                    fmt::format("贷款 {} 的付款已被更改，请重新载入", key.LoanID)}));
  }
  RequireUnchanged(session, key.LoanID, old);
  if (payments > 0) main.Execute("Delete from PaymentMast where LoanID=" + id);
  ExecuteOnRow(main, "DELETE FROM LoanMast WHERE LoanID=" + id, key.LoanID);
  for (const char* statement :
       {"DELETE FROM ChargeMast WHERE LoanID=", "DELETE FROM PaymentList WHERE LoanID=",
        "DELETE FROM DrawDownMast WHERE LoanID=", "Delete from ChqMast where LoanID = ",
        "Delete from FollowUpMast where LoanID = "}) {
    main.Execute(statement + id);
  }
  ReverseLoanTotals(main, key.CustID, old);
  main.Execute("DELETE FROM NumberMast WHERE CustID=" + id);
  main.Execute("UPDATE AppMast SET LoanID='' WHERE LoanID=" + id);
  ClearSchedule(main, key.LoanID);
  transaction.Commit();
  WriteAudit(session, "Delete", "Loan", comp_code, key.LoanID,
             {Value(old.LoanAmt), Value(old.PayOutAmt), Value(std::string(trx_date))});
}

}  // namespace kaunter
