// The code tables that one pair of screens edits: which table stands behind a setup title, and when
// one of its codes is in use.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/connection.h"
#include "screen/caption.h"

namespace kaunter {

struct CodeTable {
  std::string title;  // MsgTitle of the menu entry
  Caption caption;    // of the screen
  std::string table;
  std::string code;
  std::string description;
  std::vector<std::string> more;    // further text columns
  std::vector<std::string> zeroes;  // columns set to 0 in a new row
  std::vector<std::string> in_use;  // counts with {} for the quoted code; above 0 the code stays
  std::vector<std::string> fixed;   // codes that statements know by name: never deleted, like "NIL"
};

// Null for a title that is none.
const CodeTable* FindCodeTable(std::string_view title);
const std::vector<CodeTable>& CodeTables();

// The code may be deleted: no fixed one, and nothing refers to it.
bool MayDeleteCode(Connection& connection, const CodeTable& table, std::string_view code);
// What the code table takes as a new repayment code: MONTH, WEEK, DAILY, or a number above 0 before
// DAYS.
bool IsNewLoanTypeCode(std::string_view code);

}  // namespace kaunter
