// The end of every action that changes a payment: the loan is rebuilt, then its customer.
#pragma once

#include <string_view>

#include "platform/sql/connection.h"
#include "screen/desk.h"

namespace kaunter {

class Session;

// Rebuilds the loan in a transaction that holds nothing else and is committed whatever the rebuild
// came to, so that a crash leaves the payment stored and not yet replayed, never half a replay;
// then the customer. Logs and tells failures and gives nothing back: the action that called goes
// on. The caller's own transaction must be committed before.
void RebuildAndTell(const Session& session, Desk& desk, std::string_view loan_id,
                    std::string_view cust_id);
// The customer alone.
void RebuildCustomerAndTell(const Session& session, Desk& desk, std::string_view cust_id);

}  // namespace kaunter
