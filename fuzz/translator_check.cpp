#include "fuzz/translator_check.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "platform/sql/sql_error.h"
#include "platform/sql/sqlite/sqlite_literal.h"
#include "platform/sql/sqlite/sqlite_statement_key.h"
#include "platform/sql/translator/translate.h"

namespace kaunter {
namespace {

// What only the engine can know when it prepares: that a thing is there already, or is not there.
// All else the binder has to refuse.
constexpr int kEnginesOwn[] = {2714, 1913, 2705, 3701, 4901, 701};
// A query may not work longer than this many thousand steps of SQLite.
constexpr int kPatience = 200;

bool IsEnginesOwn(int number) {
  return std::find(std::begin(kEnginesOwn), std::end(kEnginesOwn), number) != std::end(kEnginesOwn);
}

}  // namespace

TranslatorCheck::TranslatorCheck(const std::string& file) : statement_clock_(clock_) {
  clock_.Set({2024, 1, 31, 10, 20, 30});
  sqlite3* source = nullptr;
  if (sqlite3_open(file.c_str(), &source) != SQLITE_OK ||
      sqlite3_open(":memory:", &db_) != SQLITE_OK) {
    throw std::runtime_error("cannot open " + file);
  }
  sqlite3_backup* copy = sqlite3_backup_init(db_, "main", source, "main");
  sqlite3_backup_step(copy, -1);
  sqlite3_backup_finish(copy);
  sqlite3_close(source);
  // As the engine opens its files.
  sqlite3_extended_result_codes(db_, 1);
  sqlite3_db_config(db_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(db_, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  sql::RegisterSqliteFunctions(db_, &statement_clock_);
  catalogue_.emplace(db_, "memory");
  if (catalogue_->FindTable("LoanMast") == nullptr) throw std::runtime_error("no office: " + file);
}

TranslatorCheck::~TranslatorCheck() { sqlite3_close_v2(db_); }

std::optional<std::string> TranslatorCheck::FindFault(std::string_view batch) {
  sql::StatementKey look;
  const bool looked = look.Read(batch);
  std::vector<std::string> statements;
  std::vector<sql::Shape> shapes;
  try {
    shapes = sql::SplitBatch(batch, &statements);
  } catch (const SqlError& error) {
    if (error.number() == 0) return "refused without a number";
    return std::nullopt;
  }
  if (statements.size() != shapes.size()) return "as many statements as shapes are wanted";
  // A text known by its quick look is run with the literals that the look has found.
  if (looked && shapes.size() == 1 && shapes[0].literals.size() == look.literals().size()) {
    for (std::size_t i = 0; i < look.literals().size(); ++i) {
      if (shapes[0].literals[i] != look.literals()[i]) {
        return fmt::format("the quick look reads literal {} as {}, the lexer as {}", i,
                           look.literals()[i], shapes[0].literals[i]);
      }
    }
  }
  for (std::size_t i = 0; i < statements.size(); ++i) {
    if (auto fault = TryStatement(statements[i], shapes[i])) return fault;
  }
  return std::nullopt;
}

std::optional<std::string> TranslatorCheck::TryStatement(const std::string& statement,
                                                         const sql::Shape& shape) {
  std::vector<sql::Translated> translated;
  try {
    translated = sql::Translate(statement, *catalogue_, sql::Dialect::kSqlite);
  } catch (const SqlError& error) {
    if (error.number() == 0) return "refused without a number";
    return std::nullopt;
  }
  for (const sql::Translated& one : translated) {
    if (auto fault = TryPrepared(one, shape)) return fault;
  }
  return std::nullopt;
}

std::optional<std::string> TranslatorCheck::TryPrepared(const sql::Translated& translated,
                                                        const sql::Shape& shape) {
  for (const sql::Parameter& parameter : translated.parameters) {
    if (parameter.literal >= shape.literals.size()) {
      return fmt::format("parameter for literal {} of {}: {}", parameter.literal,
                         shape.literals.size(), translated.text);
    }
  }
  if (translated.text.empty()) return std::nullopt;
  sql::SqliteStatement prepared;
  try {
    prepared = sql::Prepare(db_, translated.text, "memory");
  } catch (const SqlError& error) {
    if (IsEnginesOwn(error.number())) return std::nullopt;
    return fmt::format("{} {}\n  {}", error.number(), error.what(), translated.text);
  }
  if (prepared == nullptr) return "translated to nothing";
  ++prepared_;
  if (static_cast<std::size_t>(sqlite3_bind_parameter_count(prepared.get())) !=
      translated.parameters.size()) {
    return "SQLite wants another number of parameters: " + translated.text;
  }
  try {
    for (std::size_t i = 0; i < translated.parameters.size(); ++i) {
      sql::BindLiteral(prepared.get(), static_cast<int>(i) + 1,
                       shape.literals[translated.parameters[i].literal], translated.parameters[i]);
    }
  } catch (const SqlError&) {
    return std::nullopt;
  }
  if (!translated.is_query) return std::nullopt;
  if (static_cast<std::size_t>(sqlite3_column_count(prepared.get())) != translated.columns.size()) {
    return "SQLite gives another number of columns: " + translated.text;
  }
  // A query changes nothing, so it may run: the functions meet the values.
  int patience = kPatience;
  sqlite3_progress_handler(
      db_, 1000, [](void* left) { return --*static_cast<int*>(left) < 0 ? 1 : 0; }, &patience);
  while (sqlite3_step(prepared.get()) == SQLITE_ROW) {
  }
  sqlite3_progress_handler(db_, 0, nullptr, nullptr);
  return std::nullopt;
}

}  // namespace kaunter
