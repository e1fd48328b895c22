// What stands before money moves on a loan.
#pragma once

#include <optional>
#include <string_view>

#include "loans/refusal.h"
#include "platform/sql/connection.h"

namespace kaunter {

// Holds the loan until the open transaction ends: whoever else moves money on it, or replays it,
// waits. Taken before any other row of the loan. Nothing happens where there is no such loan.
void LockLoan(Connection& main, std::string_view loan_id);

// A loan that lost its rows, or never got them: refused wherever money would move on it. Its next
// save writes them, once its terms are open.
std::optional<Refusal> CheckRows(Connection& main, std::string_view loan_id);

}  // namespace kaunter
