// The plain program that a measure compares with: SQLite without a layer, on statements in its own
// words.
#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/sql/sqlite/sqlite_functions.h"
#include "platform/sql/sqlite/sqlite_statement.h"

namespace kaunter {

class Plain {
 public:
  using Rows = std::vector<std::vector<std::string>>;

  // Opens as a careful program does: write-ahead log, full syncs, the engine's functions, since the
  // tables name its collation.
  explicit Plain(const std::string& file);
  ~Plain();
  Plain(const Plain&) = delete;
  Plain& operator=(const Plain&) = delete;

  sqlite3* handle() const { return db_; }
  // Prepares, runs, reads the rows as texts.
  Rows Query(const std::string& statement);
  void Run(const std::vector<std::string>& statements);

  // The same with statements that stay prepared.
  std::vector<sql::SqliteStatement> Prepare(const std::vector<std::string>& statements);
  Rows Query(sqlite3_stmt* prepared);

 private:
  Clock clock_;
  sql::StatementClock statement_clock_{clock_};
  sqlite3* db_ = nullptr;
};

// T-SQL statements in SQLite's words with their literals in place. They are run on `file` on the
// way, since later ones may need what earlier ones make.
std::vector<std::string> InPlainWords(const std::vector<std::string>& sent,
                                      const std::string& file);

}  // namespace kaunter
