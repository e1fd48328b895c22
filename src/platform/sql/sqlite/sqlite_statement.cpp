#include "platform/sql/sqlite/sqlite_statement.h"

#include "platform/sql/sqlite/sqlite_error.h"

namespace kaunter::sql {

SqliteStatement Prepare(sqlite3* db, std::string_view sql, const std::string& path,
                        bool long_lived) {
  sqlite3_stmt* statement = nullptr;
  const int code =
      sqlite3_prepare_v3(db, sql.data(), static_cast<int>(sql.size()),
                         long_lived ? SQLITE_PREPARE_PERSISTENT : 0, &statement, nullptr);
  if (code != SQLITE_OK) throw SqliteFailure(db, sqlite3_extended_errcode(db), path, "");
  return SqliteStatement(statement);
}

void RunPlain(sqlite3* db, const char* sql, const std::string& path) {
  const int code = sqlite3_exec(db, sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) throw SqliteFailure(db, sqlite3_extended_errcode(db), path, "");
}

std::int64_t PlainInteger(sqlite3* db, const char* sql, const std::string& path) {
  const SqliteStatement statement = Prepare(db, sql, path);
  const int code = sqlite3_step(statement.get());
  if (code == SQLITE_ROW) return sqlite3_column_int64(statement.get(), 0);
  if (code != SQLITE_DONE) throw SqliteFailure(db, sqlite3_extended_errcode(db), path, "");
  return 0;
}

std::string PlainText(sqlite3* db, const char* sql, const std::string& path) {
  const SqliteStatement statement = Prepare(db, sql, path);
  const int code = sqlite3_step(statement.get());
  if (code == SQLITE_ROW) return ColumnText(statement.get(), 0);
  if (code != SQLITE_DONE) throw SqliteFailure(db, sqlite3_extended_errcode(db), path, "");
  return {};
}

std::string ColumnText(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

std::string QuotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) {
    quoted += c;
    if (c == '"') quoted += c;
  }
  return quoted + '"';
}

}  // namespace kaunter::sql
