// The row of a record as it was read or written last, so that nobody writes over or deletes what
// another desktop has made of it since.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/sql/connection.h"
#include "screen/caption.h"

namespace kaunter {

struct RowChanged : std::runtime_error {
  explicit RowChanged(const std::string& key)
      : std::runtime_error(key + " was changed on another desktop") {}
};
// Runs the write, and notes whether that was why it ended.
void NoteChange(bool& changed, const std::function<void()>& write);
// What is told behind the save's own words.
Caption ToldOfChange(const std::string& key);

class StoredRow {
 public:
  void Take(const Recordset& row);
  bool Is(const Recordset& now) const;
  // Inside the transaction of a write: throws RowNotFound or RowChanged.
  void Expect(const Recordset& now, const std::string& key) const;

 private:
  std::vector<Value> row_;
};

}  // namespace kaunter
