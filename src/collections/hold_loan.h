// Before a payment is measured by its loan.
#pragma once

#include <string_view>

#include "platform/sql/connection.h"

namespace kaunter {

// Holds the loan until the open transaction ends: desktops that store a payment of one loan at the
// same time come in turn. What an earlier one has stored and not replayed yet is replayed first, so
// that the balance counts it. Nothing happens where there is no such loan. Throws SqlError.
void HoldLoan(Connection& main, std::string_view loan_id);

// A payment of the loan is stored and not replayed: its save was cut off before the rebuild. Throws
// SqlError.
bool LoanIsBehind(Connection& main, std::string_view loan_id);

}  // namespace kaunter
