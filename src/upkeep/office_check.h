// The check of whole books: the ledger of each company, as Verify Ledger checks one.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "collections/ledger_check.h"
#include "platform/sql/connection.h"

namespace kaunter {

struct OfficeCheck {
  std::int64_t loans = 0;     // looked at
  std::int64_t receipts = 0;  // that the office has
  bool complete = false;
  std::vector<LedgerFault> faults;
};

// Asked between two portions; false ends it.
using OfficeCheckGoOn = std::function<bool(const std::string& company, const LedgerProgress&)>;

// Every company that a loan or a customer names: one that was taken out of the list of
// companies keeps its books. Throws SqlError.
OfficeCheck CheckOffice(Connection& main, const OfficeCheckGoOn& go_on);

}  // namespace kaunter
