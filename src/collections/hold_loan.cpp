#include "collections/hold_loan.h"

#include "core/amounts.h"
#include "core/values.h"
#include "loans/rebuild.h"

namespace kaunter {

void HoldLoan(Connection& main, std::string_view loan_id) {
  const std::string id = QuoteStr(loan_id);
  // Changes nothing: a row that is written is the writer's until his transaction ends.
  main.Execute("UPDATE LoanMast SET LoanBal=LoanBal WHERE LoanID=" + id);
  const Recordset paid = main.Query(
      "SELECT TotPay,(SELECT SUM(InstalAmt) FROM PaymentMast WHERE PaymentMast.LoanID="
      "LoanMast.LoanID) as Stored FROM LoanMast WHERE LoanID=" +
      id);
  // A rebuild that fails is told behind the payment, which gets one of its own.
  if (!paid.Eof() && Sen(paid, "TotPay") != Sen(paid, "Stored")) RebuildLoan(main, loan_id);
}

}  // namespace kaunter
