#include "loans/money_gate.h"

#include <fmt/format.h>

#include "core/amounts.h"
#include "core/values.h"

namespace kaunter {

void LockLoan(Connection& main, std::string_view loan_id) {
  // Changes nothing: a row that is written is the writer's until his transaction ends.
  main.Execute("UPDATE LoanMast SET LoanBal=LoanBal WHERE LoanID=" + QuoteStr(loan_id));
}

std::optional<Refusal> CheckRows(Connection& main, std::string_view loan_id) {
  const std::string id = QuoteStr(loan_id);
  if (ScalarQuery(main, "SELECT COUNT(*) FROM SchMast WHERE LoanID=" + id) != "0") {
    return std::nullopt;
  }
  const bool drawn =
      Sen(ScalarQuery(main, "SELECT PayOutAmt FROM LoanMast WHERE LoanID=" + id)) > Money();
  return Refusal{
      "LoanID",
      drawn ? Caption{fmt::format("Loan {} has no schedule: delete its drawdown and save the loan "
                                  "again first",
                                  loan_id),
                      fmt::format("贷款 {} 没有还款表：请先删除其放款，并重新储存贷款", loan_id)}
            : Caption{fmt::format("Loan {} has no schedule: save the loan again first", loan_id),
                      fmt::format("贷款 {} 没有还款表：请先重新储存贷款", loan_id)}};
}

}  // namespace kaunter
