// The row of a record as it was read or written last, so that nobody writes over or deletes what
// another desktop has made of it since.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "platform/sql/connection.h"

namespace kaunter {

class RowChanged : public std::runtime_error {
 public:
  explicit RowChanged(const std::string& key)
      : std::runtime_error(key + " was changed on another desktop"), key_(key) {}
  const std::string& key() const { return key_; }

 private:
  std::string key_;
};

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
