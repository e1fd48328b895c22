#include "bench/plain.h"

#include <stdexcept>

#include "platform/sql/sqlite/sqlite_alter.h"
#include "platform/sql/sqlite/sqlite_catalogue.h"
#include "platform/sql/sqlite/sqlite_literal.h"
#include "platform/sql/translator/translate.h"

namespace kaunter {

Plain::Plain(const std::string& file) {
  if (sqlite3_open_v2(file.c_str(), &db_,
                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX,
                      nullptr) != SQLITE_OK) {
    throw std::runtime_error("cannot open " + file);
  }
  sqlite3_busy_timeout(db_, 5000);
  for (const char* pragma : {"PRAGMA journal_mode = WAL", "PRAGMA synchronous = FULL",
                             "PRAGMA temp_store = MEMORY", "PRAGMA cache_size = -16000"}) {
    sql::RunPlain(db_, pragma, file);
  }
  sql::RegisterSqliteFunctions(db_, &statement_clock_);
}

Plain::~Plain() { sqlite3_close_v2(db_); }

Plain::Rows Plain::Query(const std::string& statement) {
  return Query(sql::Prepare(db_, statement, statement).get());
}

Plain::Rows Plain::Query(sqlite3_stmt* prepared) {
  Rows rows;
  statement_clock_.NextStatement();
  int code = sqlite3_step(prepared);
  for (; code == SQLITE_ROW; code = sqlite3_step(prepared)) {
    std::vector<std::string>& row = rows.emplace_back();
    for (int i = 0; i < sqlite3_column_count(prepared); ++i) {
      row.push_back(sql::ColumnText(prepared, i));
    }
  }
  if (code != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(db_));
  sqlite3_reset(prepared);
  return rows;
}

void Plain::Run(const std::vector<std::string>& statements) {
  for (const std::string& statement : statements) Query(statement);
}

std::vector<sql::SqliteStatement> Plain::Prepare(const std::vector<std::string>& statements) {
  std::vector<sql::SqliteStatement> prepared;
  for (const std::string& statement : statements) {
    prepared.push_back(sql::Prepare(db_, statement, statement, true));
  }
  return prepared;
}

std::vector<std::string> InPlainWords(const std::vector<std::string>& sent,
                                      const std::string& file) {
  std::vector<std::string> words;
  Plain plain(file);
  sqlite3* db = plain.handle();
  sql::SqliteCatalogue catalogue(db, file);
  for (const std::string& statement : sent) {
    if (statement == "BEGIN TRANSACTION" || statement == "COMMIT" || statement == "ROLLBACK") {
      words.push_back(statement == "BEGIN TRANSACTION" ? "BEGIN IMMEDIATE" : statement);
      plain.Query(words.back());
      continue;
    }
    const auto shapes = sql::SplitBatch(statement, nullptr);
    for (const auto& translated : sql::Translate(statement, catalogue, sql::Dialect::kSqlite)) {
      if (translated.alter_column) {  // several statements of SQLite; the plain program is let off
        sql::AlterColumnOf(db, file, catalogue, *translated.alter_column);
      } else {
        const auto prepared = sql::Prepare(db, translated.text, file);
        for (std::size_t i = 0; i < translated.parameters.size(); ++i) {
          const auto& parameter = translated.parameters[i];
          sql::BindLiteral(prepared.get(), static_cast<int>(i) + 1,
                           shapes.at(0).literals[parameter.literal], parameter);
        }
        char* expanded = sqlite3_expanded_sql(prepared.get());
        words.emplace_back(expanded);
        sqlite3_free(expanded);
        plain.Query(prepared.get());
      }
      if (translated.is_ddl || translated.alter_column) catalogue.Clear();
    }
  }
  return words;
}

}  // namespace kaunter
