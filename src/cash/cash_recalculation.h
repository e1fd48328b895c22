// The cash book walked anew: its rows by date and number, from the pair that the company opened
// with. Each row's balances and the company's two become what the movements say. Balances are
// ringgit.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cash/cash_balance.h"
#include "platform/date_time.h"
#include "platform/sql/connection.h"

namespace kaunter {

// What a company had before the first movement of a day. Rows before that day are left as they
// are; without a day the pair stands before the first row.
struct CashOpening {
  std::optional<DateTime> date;
  CashPair pair;
  bool operator==(const CashOpening&) const = default;
};
CashOpening ReadOpening(Connection& main, std::string_view comp_code);
void StoreOpening(Connection& main, std::string_view comp_code, const CashOpening& opening);

// A row whose balances are not what the walk comes to.
struct CashDifference {
  std::int64_t DocID = 0;
  std::optional<DateTime> TranDate;
  std::string TranType;
  std::string TranDesc;
  Money TranAmt;
  CashPair stored;
  CashPair should_be;
};

struct CashBookReport {
  std::int64_t walked = 0;  // rows from the opening on
  std::int64_t before = 0;  // rows before it
  // Movements of a type that moves nothing, or without a date: they count as they can.
  std::int64_t unknown_type = 0;
  std::int64_t undated = 0;
  std::vector<CashDifference> differences;
  CashPair stored;     // the company's
  CashPair should_be;  // after the last row
  // The company's pair is not its book's, and no row of the book has it: a movement is in the
  // balances alone, or the row that was entered last is deleted.
  bool without_row = false;
  bool complete = true;  // false: stopped, and nothing was written

  bool holds() const { return differences.empty() && stored == should_be; }
};

// Told while rows are written; false stops the work.
using CashProgress = std::function<bool(std::int64_t done, std::int64_t total)>;

// What a recalculation would change. Writes nothing. Throws SqlError.
CashBookReport CompareCashBook(Connection& main, std::string_view comp_code,
                               const CashOpening& opening);
// Writes it, and keeps the opening with the company, in one transaction of its own: all or, where
// it is stopped or fails (SqlError), nothing. A second run changes nothing.
CashBookReport RecalculateCashBook(Connection& main, std::string_view comp_code,
                                   const CashOpening& opening, const CashProgress& progress);

}  // namespace kaunter
