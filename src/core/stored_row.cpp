#include "core/stored_row.h"

#include "core/record.h"
#include "core/values.h"

namespace kaunter {
namespace {

// What the program writes itself is no person's change: who saved the record last and when, and the
// balances of a movement, which a recalculation moves.
bool IsOfTheProgram(std::string_view column) {
  for (const char* one : {"ModifiedDate", "ModifiedBy", "CashBal", "BankBal"}) {
    if (SameText(column, one)) return true;
  }
  return false;
}

std::vector<Value> Entered(const Recordset& row) {
  std::vector<Value> values;
  for (std::size_t i = 0; i < row.columns().size(); ++i) {
    if (!IsOfTheProgram(row.columns()[i].name)) values.push_back(row.rows().at(0)[i]);
  }
  return values;
}

}  // namespace

void StoredRow::Take(const Recordset& row) { row_ = Entered(row); }

bool StoredRow::Is(const Recordset& now) const { return Entered(now) == row_; }

void StoredRow::Expect(const Recordset& now, const std::string& key) const {
  if (now.Eof()) throw RowNotFound(key);
  if (!Is(now)) throw RowChanged(key);
}

}  // namespace kaunter
