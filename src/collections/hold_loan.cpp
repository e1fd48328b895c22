#include "collections/hold_loan.h"

#include "core/amounts.h"
#include "core/values.h"
#include "loans/money_gate.h"
#include "loans/rebuild.h"

namespace kaunter {

bool LoanIsBehind(Connection& main, std::string_view loan_id) {
  const Recordset paid = main.Query(
      "SELECT TotPay,(SELECT SUM(InstalAmt) FROM PaymentMast WHERE PaymentMast.LoanID="
      "LoanMast.LoanID) as Stored FROM LoanMast WHERE LoanID=" +
      QuoteStr(loan_id));
  return !paid.Eof() && Sen(paid, "TotPay") != Sen(paid, "Stored");
}

void HoldLoan(Connection& main, std::string_view loan_id) {
  LockLoan(main, loan_id);
  // A rebuild that fails is told behind the payment, which gets one of its own.
  if (LoanIsBehind(main, loan_id)) RebuildLoan(main, loan_id);
}

}  // namespace kaunter
