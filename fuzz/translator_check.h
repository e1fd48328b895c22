// What must hold for any text that is sent as a statement to the embedded engine: it is translated
// or refused with SQL Server's number, and what is translated is something that SQLite can prepare
// on the tables of an office, with a literal for each parameter.
#pragma once

#include <sqlite3.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/sql/sqlite/sqlite_catalogue.h"
#include "platform/sql/sqlite/sqlite_functions.h"
#include "platform/sql/sqlite/sqlite_statement.h"

namespace kaunter {

class TranslatorCheck {
 public:
  // Takes a copy of an office's file into memory.
  explicit TranslatorCheck(const std::string& file);
  ~TranslatorCheck();
  TranslatorCheck(const TranslatorCheck&) = delete;
  TranslatorCheck& operator=(const TranslatorCheck&) = delete;

  // What is wrong with the text's way through the translator; nothing when all holds.
  std::optional<std::string> FindFault(std::string_view batch);
  // How many statements came so far that they were prepared: a check on the check.
  int prepared() const { return prepared_; }

 private:
  std::optional<std::string> TryStatement(const std::string& statement, const sql::Shape& shape);
  std::optional<std::string> TryPrepared(const sql::Translated& translated,
                                         const sql::Shape& shape);

  Clock clock_;
  sql::StatementClock statement_clock_;
  sqlite3* db_ = nullptr;
  std::optional<sql::SqliteCatalogue> catalogue_;
  int prepared_ = 0;
};

}  // namespace kaunter
