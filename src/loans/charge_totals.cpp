#include "loans/charge_totals.h"

#include <fmt/format.h>

#include "core/values.h"

namespace kaunter {
namespace {

void SumCharges(Connection& main, std::string_view column, std::string_view side,
                std::string_view loan_id) {
  main.Execute(
      fmt::format("UPDATE LoanMast SET {}=(SELECT (CASE WHEN SUM(ChargeAmt) is null then 0 else "
                  "SUM(ChargeAmt) END) FROM ChargeMast WHERE LoanMast.LoanID=ChargeMast.LoanID AND "
                  "ChargeMast.ChargeAmt {} 0 AND PType <> 'Batch Loan Interest') WHERE LoanID={}",
                  column, side, QuoteStr(loan_id)));
}

}  // namespace

void RefreshChargeTotals(Connection& main, std::string_view loan_id) {
  SumCharges(main, "TotCollectorAmt", ">", loan_id);
  SumCharges(main, "TotInt", "<", loan_id);
}

}  // namespace kaunter
