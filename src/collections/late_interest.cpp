#include "collections/late_interest.h"

#include <fmt/format.h>

#include "core/values.h"

namespace kaunter {

Money DayCharge(Money balance_due, double percent_a_year) {
  if (!(percent_a_year > 0) || !(balance_due > Money())) return Money();
  return Money::FromDouble(Round(CDbl(balance_due) * ((percent_a_year / 100) / 365), 2));
}

std::string ObsoleteCharges(std::string_view loan_id, std::string_view pay_date,
                            std::string_view next_due_date) {
  return fmt::format(
      "PType='Batch' AND ChargeAmt > 0 AND TrxDate >{} AND TrxDate <= {} AND LoanID={}",
      SqlDate(pay_date), SqlDate(next_due_date), QuoteStr(loan_id));
}

}  // namespace kaunter
