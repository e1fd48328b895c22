#include "cash/stored_row.h"

#include <fmt/format.h>

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

void NoteChange(bool& changed, const std::function<void()>& write) {
  try {
    write();
  } catch (const RowChanged&) {
    changed = true;
    throw;
  }
}

Caption ToldOfChange(const std::string& key) {
  return {fmt::format("{} was changed on another desktop since it was opened here, and nothing was "
                      "written. What is typed here stays until it is cleared: load it again to see "
                      "it as it is now.",
                      key),
          fmt::format("{} 打开之后已被另一台电脑更改，因此未写入任何资料。您输入的内容保留至清除为"
                      "止：请重新载入查看现况。",
                      key)};
}

void StoredRow::Take(const Recordset& row) { row_ = Entered(row); }

bool StoredRow::Is(const Recordset& now) const { return Entered(now) == row_; }

void StoredRow::Expect(const Recordset& now, const std::string& key) const {
  if (now.Eof()) throw RowNotFound(key);
  if (!Is(now)) throw RowChanged(key);
}

}  // namespace kaunter
