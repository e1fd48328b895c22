// The documents to be sent or cancelled: which records count as one is told by a statement of the
// central database, and what the office knows of each stands beside it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "einvoice/invoice_line.h"

namespace kaunter {

class Session;

struct DocumentChoice {
  std::string sid;  // "VKT-Individual", "VKT-Consolidated" or "VKT-Cancel"
  std::string comp_code;
  std::string from, to;  // as date boxes show them
  SendMode mode = SendMode::submit;
};

// The told rows in the statement's order. `progress` hears how many are done, of how many. Throws
// SqlError, and std::runtime_error in the language in force for a statement that is not there, does
// more than read, or lacks a column.
//
// A PC without a central database takes the statement of that name from the office's own table.
std::vector<InvoiceLine> SelectDocuments(Session& session, const DocumentChoice& choice,
                                         const std::function<void(int done, int total)>& progress);

}  // namespace kaunter
