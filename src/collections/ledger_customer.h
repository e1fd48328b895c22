// The sums of a customer as they are stored, against the loans that they are the sums of.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "collections/ledger_check.h"

namespace kaunter {

// The customers that a condition on CustMast picks, in the order of their codes. Throws SqlError.
std::vector<LedgerFault> FaultsOfCustomers(Connection& main, const std::string& which);

}  // namespace kaunter
