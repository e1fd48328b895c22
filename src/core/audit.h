// The audit trail: one row of TransLogs for each create, modify and delete of a main record, with
// its old and new values side by side. On only where the office's setting TransLogs is on.
#pragma once

#include <string_view>
#include <vector>

#include "platform/sql/value.h"

namespace kaunter {

class Session;

// Writes one row. `type` is "Create", "Modify", "Delete", "Cancel", "Log In" or "Log Out"; `module`
// one of "Loan", "Payment", "Customer", "Expenses", "Buy Gold", "Cash Book", "Drawdown",
// "Self-Bill", "Invoice", "Credit Note", "Batch", "User" (any other writes its row with empty
// remarks); `comp_code` the company of the record, `trx_id` its key.
//
// `old_values` are the record's values before the change, in the order in which the module's select
// names them: Loan LoanAmt, PayOutAmt, TrxDate; Payment PayAmt, CollectorAmt, IntAmt, DiscAmt,
// PayDate; Customer CustName, CustNIC, CustOIC, CustOthIC, TrxDate; Expenses TrxDesc, DebitAmt,
// CreditAmt, TrxDate; Buy Gold TotEstAmt, TotAmt, OtherAmt, PayAmt, TrxDate; Cash Book
// TranDate, TranType, TranAmt, TranDesc; Drawdown TrxDate, DrawDownAmt, Payee; Self-Bill TrxDate,
// SuppName, SelfBillAmt, SelfBillTaxAmt, uuid; Invoice, Credit Note and Batch TrxDate, ChargeAmt.
// Display texts serve as well as database values; missing ones count as Null. The new values are
// read from the record; when it is gone, the old ones stand twice.
//
// Nothing is told to the user and nothing is thrown: an audit that fails never stops the work.
void WriteAudit(const Session& session, std::string_view type, std::string_view module,
                std::string_view comp_code, std::string_view trx_id,
                const std::vector<Value>& old_values);

}  // namespace kaunter
