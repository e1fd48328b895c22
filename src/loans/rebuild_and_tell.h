// The end of every action that changes a payment: the loan is rebuilt, then its customer.
#pragma once

#include <string_view>

#include "platform/sql/connection.h"
#include "screen/desk.h"

namespace kaunter {

class Session;

// Rebuilds the loan in a transaction that holds nothing else and is committed whatever the rebuild
// came to, so that a crash leaves the payment stored and not yet replayed, never half a replay;
// then the customer. Logs and tells failures, and gives false for one: the action that called goes
// on all the same. The caller's own transaction must be committed before; or rolled back, and
// nothing was saved before the rebuild.
bool RebuildAndTell(const Session& session, Desk& desk, std::string_view loan_id,
                    std::string_view cust_id, bool saved_before = true);
// The customer alone.
bool RebuildCustomerAndTell(const Session& session, Desk& desk, std::string_view cust_id,
                            bool saved_before = true);

}  // namespace kaunter
