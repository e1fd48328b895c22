// A database of the embedded engine as a whole (whole_database.h).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/sql/sqlite/sqlite_connection.h"
#include "platform/sql/whole_database.h"

namespace kaunter::sql {

// A sign beside the file for as long as it lives, or the process: whoever meets the lock meanwhile
// is told that the office is being moved.
class MovingSign {
 public:
  explicit MovingSign(const std::string& path);
  ~MovingSign();
  MovingSign(const MovingSign&) = delete;
  MovingSign& operator=(const MovingSign&) = delete;

 private:
  std::string path_;
  SqliteHandle db_;
};

class SqliteWhole final : public WholeDatabase {
 public:
  explicit SqliteWhole(SqliteConnection& connection)
      : connection_(connection), db_(connection.handle()), path_(connection.path()) {}

  std::vector<std::string> Contents() override;
  std::vector<WholeTable> Tables() override;
  void LockOut() override;
  std::unique_ptr<RowReader> Rows(const WholeTable& table, bool in_order) override;
  void Create(const WholeTable& table) override;
  void Fill(const WholeTable& table, std::span<const WholeRow> rows) override;
  void Complete(const WholeTable& table) override;
  void Settle() override;
  void Seal(std::string_view words) override;
  void Unseal() override;
  void DropTables() override;

 private:
  std::vector<std::string> Names(const char* sql);
  WholeTable ReadTable(const std::string& name, const std::string& text);
  void ReadKeys(WholeTable* table);
  void NoteDouble(const WholeTable& table, const WholeRow& row);

  SqliteConnection& connection_;
  sqlite3* db_;
  const std::string& path_;
  std::optional<MovingSign> sign_;
  std::string filling_;  // the table that insert_ is of
  SqliteStatement insert_;
  std::vector<std::string> doubles_;  // what Complete tells of the table that is filled
};

}  // namespace kaunter::sql
