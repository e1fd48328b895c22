#include "platform/sql/odbc/odbc_sqlite_dialect.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/sql/odbc/odbc_text.h"
#include "platform/sql/sql_error.h"
#include "platform/sql/sqlite/sqlite_error.h"
#include "platform/sql/sqlite/sqlite_literal.h"
#include "platform/sql/sqlite/sqlite_statement.h"
#include "platform/sql/text.h"

namespace kaunter::sql {
namespace {

std::string Quoted(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    quoted += c;
    if (c == '\'') quoted += c;
  }
  return quoted + "'";
}

std::int64_t Number(const Value& value) {
  const std::string text = value.ToText();
  return std::strtoll(text.c_str(), nullptr, 10);
}

// Turns literals into SQLite's own notation. The embedded engine's binder is asked, on a handle of
// its own without tables, so that both roads convert alike.
class LiteralWriter {
 public:
  LiteralWriter() {
    sqlite3* db = nullptr;
    const int code = sqlite3_open(":memory:", &db);
    db_.reset(db);
    if (code != SQLITE_OK) throw SqliteFailure(db, code, ":memory:", "");
    quote_ = Prepare(db, "SELECT quote(?1)", ":memory:");
  }

  std::string Write(const std::string& literal, const Parameter& parameter) {
    sqlite3_reset(quote_.get());
    BindLiteral(quote_.get(), 1, literal, parameter);
    sqlite3_step(quote_.get());
    return ColumnText(quote_.get(), 0);
  }

 private:
  struct Closer {
    void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
  };
  std::unique_ptr<sqlite3, Closer> db_;
  SqliteStatement quote_;
};

// Names of the columns in "UNIQUE constraint failed: T.A, T.B", and of the table.
std::pair<std::string, std::vector<std::string>> KeyOf(std::string_view message) {
  std::pair<std::string, std::vector<std::string>> key;
  std::size_t at = message.find(": ");
  while (at != std::string_view::npos && at + 2 < message.size()) {
    const std::size_t end = std::min(message.find(", ", at + 2), message.size());
    const std::string_view item = message.substr(at + 2, end - at - 2);
    const std::size_t dot = item.rfind('.');
    if (dot == std::string_view::npos) break;
    key.first = item.substr(0, dot);
    key.second.emplace_back(item.substr(dot + 1));
    at = end < message.size() ? end : std::string_view::npos;
  }
  return key;
}

// The driver gives SQLite's plain code only; which constraint it was stands in the text.
int ExtendedCode(int code, std::string_view message, const Catalogue& catalogue) {
  if (code != SQLITE_CONSTRAINT) return code;
  if (message.starts_with("NOT NULL")) return SQLITE_CONSTRAINT_NOTNULL;
  if (!message.starts_with("UNIQUE")) return code;
  const auto [name, columns] = KeyOf(message);
  const CatalogueTable* table = catalogue.FindTable(name);
  const bool primary =
      table != nullptr && std::equal(columns.begin(), columns.end(), table->primary_key.begin(),
                                     table->primary_key.end(), [](const auto& a, const auto& b) {
                                       return LowerAscii(a) == LowerAscii(b);
                                     });
  return primary ? SQLITE_CONSTRAINT_PRIMARYKEY : SQLITE_CONSTRAINT_UNIQUE;
}

// "[SQLite]UNIQUE constraint failed: T.K (19) [HY000]" without what stands around SQLite's words.
std::string SqliteWords(std::string_view description, int code) {
  constexpr std::string_view kPrefix = "[SQLite]";
  if (description.starts_with(kPrefix)) description.remove_prefix(kPrefix.size());
  const std::size_t end = description.rfind(fmt::format(" ({})", code));
  return std::string(description.substr(0, std::min(end, description.size())));
}

bool MissesOurFunctions(std::string_view words) {
  return words.find("no such collation sequence: KAUNTER") != std::string_view::npos ||
         words.find("no such function: k_") != std::string_view::npos;
}

SqlError Explained(const SqlError& error, const OdbcSession& session, const Catalogue& catalogue,
                   const std::string& verb) {
  if (session.Lost() || error.number() <= 0 || error.number() > SQLITE_NOTICE) return error;
  const std::string words = SqliteWords(error.what(), error.number());
  if (MissesOurFunctions(words)) {
    return SqlError(195, fmt::format("{}: {}. The ODBC source must load the functions of this "
                                     "program: LoadExt=<program folder>/kaunter_sqlite.so.",
                                     session.source(), words));
  }
  return SqliteFailure(ExtendedCode(error.number(), words, catalogue), words, session.source(),
                       verb);
}

}  // namespace

const CatalogueTable* OdbcSqliteCatalogue::FindTable(std::string_view name) const {
  const std::string key = LowerAscii(name);
  if (const auto found = tables_.find(key); found != tables_.end()) return found->second.get();
  const OdbcOutcome schema = session_.Run(
      fmt::format("SELECT name, sql FROM sqlite_schema WHERE type IN ('table','view') AND "
                  "lower(name) = {}",
                  Quoted(key)),
      true);
  if (!schema.rows || schema.rows->Eof()) return nullptr;
  auto table = std::make_unique<CatalogueTable>();
  table->name = schema.rows->Field("name").ToText();
  const bool counted =
      LowerAscii(schema.rows->Field("sql").ToText()).find("autoincrement") != std::string::npos;
  const OdbcOutcome columns =
      session_.Run(fmt::format("SELECT name, type, \"notnull\" AS required, dflt_value, pk, hidden "
                               "FROM pragma_table_xinfo({})",
                               Quoted(table->name)),
                   true);
  std::map<std::int64_t, std::string> primary;
  for (Recordset rows = columns.rows.value_or(Recordset()); !rows.Eof(); rows.MoveNext()) {
    CatalogueColumn column;
    column.name = rows.Field("name").ToText();
    column.type = ParseType(rows.Field("type").ToText());
    const std::int64_t place = Number(rows.Field("pk"));
    if (place > 0) primary[place] = column.name;
    column.nullable = Number(rows.Field("required")) == 0 && place == 0;
    column.has_default = !rows.Field("dflt_value").IsNull();
    column.computed = Number(rows.Field("hidden")) >= 2;
    column.identity = counted && place > 0;
    table->columns.push_back(std::move(column));
  }
  for (const auto& [place, column] : primary) table->primary_key.push_back(column);
  return tables_.emplace(key, std::move(table)).first->second.get();
}

std::string WithLiterals(const Translated& step, const Shape& shape) {
  if (step.parameters.empty()) return step.text;
  static LiteralWriter writer;
  return WithParameters(step.text, '?', [&](std::size_t number, std::string& out) {
    const Parameter& parameter = step.parameters.at(number - 1);
    const std::string literal = writer.Write(shape.literals.at(parameter.literal), parameter);
    // A sign of its own must not run into the operator before it: a--1 is a comment.
    if (literal.starts_with('-')) out += ' ';
    out += literal;
  });
}

void OdbcSqliteDialect::RunStatement(OdbcSession& session, const std::string& statement,
                                     const Shape& shape, bool want_rows, OdbcOutcome* outcome) {
  // Nothing tells when another desktop changes a table, so the catalogue lives for one statement;
  // a transaction of our own keeps others from changing it.
  if (!session.InTransaction() || catalogue_ == nullptr) {
    catalogue_ = std::make_unique<OdbcSqliteCatalogue>(session);
  }
  const std::vector<Translated> steps = Translate(statement, *catalogue_, Dialect::kSqlite);
  if (steps.size() == 1) return RunStep(session, steps.front(), shape, want_rows, outcome);
  // One statement of the server that takes several of SQLite's happens whole or not at all.
  const bool own = !session.InTransaction();
  if (own) {
    session.Begin();
  } else {
    session.Run("SAVEPOINT one_statement", false);
  }
  try {
    RunSteps(session, steps, shape, want_rows, outcome);
    if (own) {
      session.Commit();
    } else {
      session.Run("RELEASE one_statement", false);
    }
  } catch (...) {
    catalogue_.reset();
    if (own) {
      session.Rollback();
    } else if (session.InTransaction()) {
      session.Run("ROLLBACK TO one_statement", false);
      session.Run("RELEASE one_statement", false);
    }
    throw;
  }
}

void OdbcSqliteDialect::RunSteps(OdbcSession& session, const std::vector<Translated>& steps,
                                 const Shape& shape, bool want_rows, OdbcOutcome* outcome) {
  for (const Translated& step : steps) RunStep(session, step, shape, want_rows, outcome);
}

void OdbcSqliteDialect::RunStep(OdbcSession& session, const Translated& step, const Shape& shape,
                                bool want_rows, OdbcOutcome* outcome) {
  if (step.is_noop) return;
  if (step.transaction != Translated::Transaction::kNone) {
    return RunTransactionWord(session, step.transaction);
  }
  if (step.alter_column) {
    throw SqlError(4928, fmt::format("Cannot alter column '{}' of '{}' through an ODBC driver of "
                                     "SQLite. Open the file as an embedded data source for that.",
                                     step.alter_column->column, step.alter_column->table));
  }
  const std::string text = WithLiterals(step, shape);
  try {
    OdbcOutcome one = session.Run(text, want_rows && step.is_query, step.columns);
    if (one.rows) outcome->rows = std::move(one.rows);
    if (!step.is_query) outcome->affected = step.is_ddl ? 0 : one.affected;
  } catch (const SqlError& error) {
    throw Explained(error, session, *catalogue_, VerbOf(step.text));
  }
  if (step.is_ddl) catalogue_ = std::make_unique<OdbcSqliteCatalogue>(session);
}

}  // namespace kaunter::sql
