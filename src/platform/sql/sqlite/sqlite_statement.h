// A prepared statement of SQLite that is finalised where its owner ends.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>

namespace kaunter::sql {

struct StatementCloser {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SqliteStatement = std::unique_ptr<sqlite3_stmt, StatementCloser>;

// Leaves a statement ready for its next run, whatever happens; no read lock stays behind.
class ResetAtEnd {
 public:
  explicit ResetAtEnd(sqlite3_stmt* statement) : statement_(statement) {}
  ~ResetAtEnd() { sqlite3_reset(statement_); }
  ResetAtEnd(const ResetAtEnd&) = delete;
  ResetAtEnd& operator=(const ResetAtEnd&) = delete;

 private:
  sqlite3_stmt* statement_;
};

// Throws SqlError.
SqliteStatement Prepare(sqlite3* db, std::string_view sql, const std::string& path,
                        bool long_lived = false);
// Runs statements without rows. Throws SqlError.
void RunPlain(sqlite3* db, const char* sql, const std::string& path);
// The first field of the first row; 0 and "" without one.
std::int64_t PlainInteger(sqlite3* db, const char* sql, const std::string& path);
std::string PlainText(sqlite3* db, const char* sql, const std::string& path);
// A text column of the current row, "" for null.
std::string ColumnText(sqlite3_stmt* statement, int column);
// Puts a name in double quotes.
std::string QuotedName(std::string_view name);

}  // namespace kaunter::sql
