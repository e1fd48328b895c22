// What a loan owes beside its schedule, summed onto the loan.
#pragma once

#include <string_view>

#include "platform/sql/connection.h"

namespace kaunter {

// LoanMast.TotCollectorAmt becomes the sum of the loan's positive charges and TotInt that of its
// negative ones (a negative number), both without "Batch Loan Interest". Every action that changes
// a charge ends with it, inside its own transaction. Throws SqlError.
void RefreshChargeTotals(Connection& main, std::string_view loan_id);

}  // namespace kaunter
