#include "platform/sql/odbc/odbc_postgresql_dialect.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include "platform/sql/decimal.h"
#include "platform/sql/odbc/odbc_error.h"
#include "platform/sql/odbc/odbc_postgresql_error.h"
#include "platform/sql/odbc/odbc_text.h"
#include "platform/sql/odbc/postgresql_functions.h"
#include "platform/sql/sql_error.h"
#include "platform/sql/text.h"
#include "platform/sql/translator/lexer.h"
#include "platform/sql/translator/literal.h"

namespace kaunter::sql {
namespace {

// Two numbers of the office's own among the server's locks.
constexpr int kTransactionLock = 1263488341;  // "KAUN"
constexpr int kSetUpLock = 1263488342;

// As many as a server's memory bears for each of some dozens of desktops.
constexpr std::size_t kMostPlans = 400;

// As long as the embedded engine waits for another desktop; and a desktop that stands still inside
// a transaction is cut off, since all others wait for it. Where its line is dead that comes before
// their patience ends (OdbcConnection::DoBegin). Statements are short and many: made into machine
// code, the list of what is due took twelve times as long on an office of a million loans.
constexpr const char* kSessionSettings =
    "SELECT set_config('search_path', current_setting('search_path') || ', kaunter_sql', false); "
    "SET lock_timeout = '10s'; SET idle_in_transaction_session_timeout = '5min'; "
    "SET tcp_keepalives_idle = 5; SET tcp_keepalives_interval = 5; SET tcp_keepalives_count = 3; "
    "SET tcp_user_timeout = '20s'; SET jit = off; "
    "SET standard_conforming_strings = on; SET client_min_messages = warning; "
    "SET DateStyle = 'ISO, YMD'; SET IntervalStyle = 'postgres'";

void AppendQuoted(std::string& out, std::string_view text) {
  out += '\'';
  for (const char c : text) {
    out += c;
    if (c == '\'') out += c;
  }
  out += '\'';
}

std::string Quoted(std::string_view text) {
  std::string quoted;
  AppendQuoted(quoted, text);
  return quoted;
}

std::string FirstField(OdbcSession& session, std::string_view sql) {
  const OdbcOutcome outcome = session.Run(sql, true);
  return outcome.rows && !outcome.rows->Eof() ? outcome.rows->Field(0).ToText() : std::string();
}

// The number at the end of the schema's comment; 0 when there is no such schema.
int InstalledVersion(OdbcSession& session) {
  const std::string comment = FirstField(
      session,
      "SELECT coalesce(obj_description(to_regnamespace('kaunter_sql'), 'pg_namespace'), '')");
  const std::size_t blank = comment.rfind(' ');
  int version = 0;
  const std::string digits = blank == std::string::npos ? "" : comment.substr(blank + 1);
  std::from_chars(digits.data(), digits.data() + digits.size(), version);
  return version;
}

void Install(OdbcSession& session) {
  if (InstalledVersion(session) >= kPostgresFunctionsVersion) return;
  session.Begin();
  try {
    LockSetUp(session);
    if (InstalledVersion(session) < kPostgresFunctionsVersion) {
      session.Run(PostgresFunctions(), false);
      session.Run(fmt::format("COMMENT ON SCHEMA kaunter_sql IS 'Functions of Kaunter, version {}'",
                              kPostgresFunctionsVersion),
                  false);
    }
    session.Commit();
  } catch (const SqlError& error) {
    session.Rollback();
    throw SqlError(kCannotOpenNumber,
                   fmt::format("Cannot use {}: the functions that Kaunter needs cannot be put into "
                               "the database: {}. Its account must own the database, or be given "
                               "the right once: GRANT CREATE ON DATABASE ... TO ...",
                               session.source(), error.what()));
  }
}

void RequireUnicode(OdbcSession& session) {
  const std::string encoding = FirstField(session, "SHOW server_encoding");
  if (encoding == "UTF8") return;
  throw SqlError(kCannotOpenNumber,
                 fmt::format("Cannot use {}: its encoding is {}. Make the database anew with "
                             "ENCODING 'UTF8'.",
                             session.source(), encoding));
}

// In brackets where its sign would run into an operator.
void AppendNumber(std::string& out, const std::string& number) {
  const bool negative = number.front() == '-';
  if (negative) out += '(';
  out += number;
  if (negative) out += ')';
}

// `typed`: with its type, where the place does not tell it.
void AppendLiteral(std::string& out, const std::string& literal, const Parameter& parameter,
                   bool typed) {
  LiteralValue value;
  ConvertLiteral(literal, parameter, &value);
  switch (value.kind) {
    case LiteralValue::Kind::kText:
      AppendQuoted(out, value.text);
      if (typed) out += "::bpchar";
      return;
    case LiteralValue::Kind::kDate:
      AppendQuoted(out, value.text);
      if (typed) out += parameter.conversion == Conversion::kAsDate ? "::date" : "::timestamp";
      return;
    case LiteralValue::Kind::kInteger:
      AppendNumber(out, std::to_string(value.integer));
      return;
    case LiteralValue::Kind::kDecimal:
      // With a point even without places: 7/2. is no division of integers.
      AppendNumber(out, DecimalText(value.integer, value.scale) + (value.scale == 0 ? "." : ""));
      return;
    case LiteralValue::Kind::kDouble:
      fmt::format_to(std::back_inserter(out), "'{}'::float8", value.number);
      return;
  }
}

std::string_view ParameterType(const Parameter& parameter) {
  switch (parameter.conversion) {
    case Conversion::kAsInteger:
      return "bigint";
    case Conversion::kAsDecimal:
      return "numeric";
    case Conversion::kAsDouble:
      return "float8";
    case Conversion::kAsDate:
      return "date";
    case Conversion::kAsDateTime:
      return "timestamp";
    case Conversion::kAsText:
      break;
  }
  return "bpchar";
}

// One column of a table's description: name, type and marks, parted by tabs.
CatalogueColumn ReadColumn(std::string_view line, std::map<int, std::string>* primary) {
  std::vector<std::string> fields;
  for (std::size_t at = 0; at <= line.size();) {
    const std::size_t end = std::min(line.find('\t', at), line.size());
    fields.emplace_back(line.substr(at, end - at));
    at = end + 1;
  }
  fields.resize(7);
  CatalogueColumn column;
  column.name = fields[0];
  column.type = ParseType(fields[1]);
  column.nullable = fields[2] != "1";
  column.has_default = fields[3] == "1";
  column.identity = fields[4] == "1";
  column.computed = fields[5] == "1";
  int place = 0;
  std::from_chars(fields[6].data(), fields[6].data() + fields[6].size(), place);
  if (place > 0) (*primary)[place] = column.name;
  return column;
}

// A save that waited for nothing, perhaps because the whole office is being moved.
SqlError Failure(OdbcSession& session, const SqlError& error, std::string_view verb) {
  SqlError told = PostgresFailure(error, session.source(), verb);
  if (told.number() != 1222) return told;
  try {
    if (!FirstField(session, fmt::format("SELECT 1 FROM pg_locks WHERE locktype = 'advisory' AND "
                                         "objid = {} AND granted AND database = (SELECT oid FROM "
                                         "pg_database WHERE datname = current_database())",
                                         kMovingLock))
             .empty()) {
      return {1222, BeingMovedWords(session.source())};
    }
  } catch (const SqlError&) {  // the first failure is the one to tell
  }
  return told;
}

bool MayBeStale(const PostgresCatalogue& catalogue, const SqlError& error, bool sent) {
  constexpr int kUnknown[] = {207, 208, kStalePlan};
  return !catalogue.empty() && (!sent || std::find(std::begin(kUnknown), std::end(kUnknown),
                                                   error.number()) != std::end(kUnknown));
}

}  // namespace

const CatalogueTable* PostgresCatalogue::FindTable(std::string_view name) const {
  const std::string key = LowerAscii(name);
  if (const auto found = tables_.find(key); found != tables_.end()) return found->second.get();
  const std::string described =
      FirstField(session_, fmt::format("SELECT kaunter_sql.k_table({})", Quoted(name)));
  if (described.empty()) return nullptr;
  auto table = std::make_unique<CatalogueTable>();
  std::map<int, std::string> primary;
  for (std::size_t at = 0; at < described.size();) {
    const std::size_t end = std::min(described.find('\n', at), described.size());
    const std::string_view line = std::string_view(described).substr(at, end - at);
    if (at == 0) {
      table->name = line;
    } else {
      table->columns.push_back(ReadColumn(line, &primary));
    }
    at = end + 1;
  }
  for (const auto& [place, column] : primary) table->primary_key.push_back(column);
  return tables_.emplace(key, std::move(table)).first->second.get();
}

void LockSetUp(OdbcSession& session) {
  session.Run(fmt::format("SELECT pg_advisory_xact_lock({})", kSetUpLock), false);
}

std::string WithPostgresLiterals(const Translated& step, const Shape& shape) {
  if (step.parameters.empty()) return step.text;
  return WithParameters(step.text, '$', [&](std::size_t number, std::string& out) {
    const Parameter& parameter = step.parameters.at(number - 1);
    AppendLiteral(out, shape.literals.at(parameter.literal), parameter, /*typed=*/true);
  });
}

PostgresDialect::PostgresDialect(OdbcSession& session, const Clock& clock)
    : clock_(clock), catalogue_(session) {
  RequireUnicode(session);
  Install(session);
  session.Run(kSessionSettings, false);
}

void PostgresDialect::Begin(OdbcSession& session) {
  session.Begin();
  schema_changed_ = false;
  try {
    session.Run(fmt::format("SELECT pg_advisory_xact_lock({})", kTransactionLock), false);
  } catch (const SqlError& error) {
    if (session.InTransaction()) session.Rollback();
    if (error.number() == kLostNumber) throw;
    throw Failure(session, error, "");
  }
}

void PostgresDialect::BeginReading(OdbcSession& session) {
  session.Begin();
  schema_changed_ = false;
  try {
    session.Run("SET TRANSACTION ISOLATION LEVEL REPEATABLE READ, READ ONLY", false);
  } catch (const SqlError&) {
    if (session.InTransaction()) session.Rollback();
    throw;
  }
}

void PostgresDialect::Forget() {
  TranslatingDialect::Forget();
  sent_clock_.reset();  // what is set inside a transaction goes back with it
  if (schema_changed_) ForgetSchema();
  schema_changed_ = false;
}

void PostgresDialect::ForgetSchema() {
  drop_prepared_ = drop_prepared_ || !plans_.empty();
  plans_.clear();
  catalogue_.Clear();
}

// Another desktop may have changed a table since it was looked up. A failed statement has done
// nothing, so it is tried once more with a fresh eye where that may be the reason.
void PostgresDialect::RunStatement(OdbcSession& session, const std::string& statement,
                                   const Shape& shape, bool want_rows, OdbcOutcome* outcome) {
  for (bool again = false;; again = true) {
    bool sent = false;
    try {
      Plan own;
      Plan& plan = FindPlan(statement, shape, &own);
      OdbcOutcome one;
      RunPlan(session, plan, shape, want_rows, &one, &sent);
      const bool query = plan.steps.size() == 1 && plan.steps.front().is_query;
      const bool stale = query && one.rows && !plan.steps.front().columns.empty() &&
                         one.rows->columns().size() != plan.steps.front().columns.size();
      if (!stale || again) {
        if (one.rows) outcome->rows = std::move(one.rows);
        if (!query) outcome->affected = one.affected;
        return;
      }
    } catch (const SqlError& error) {
      if (again || session.Lost() || !MayBeStale(catalogue_, error, sent)) throw;
    }
    ForgetSchema();
  }
}

PostgresDialect::Plan& PostgresDialect::FindPlan(const std::string& statement, const Shape& shape,
                                                 Plan* own) {
  if (const auto found = plans_.find(shape.key); found != plans_.end()) return found->second;
  own->steps = Translate(statement, catalogue_, Dialect::kPostgresql);
  const bool keep = std::all_of(own->steps.begin(), own->steps.end(), [](const Translated& step) {
    return step.cacheable && !step.is_ddl && !step.is_noop &&
           step.transaction == Translated::Transaction::kNone;
  });
  if (!keep || own->steps.size() != 1) return *own;
  if (plans_.size() >= kMostPlans) {
    plans_.clear();
    drop_prepared_ = true;
  }
  return plans_.emplace(shape.key, std::move(*own)).first->second;
}

void PostgresDialect::SendClock(OdbcSession& session) {
  if (clock_.Fixed() == sent_clock_) return;
  session.Run(fmt::format("SELECT set_config('kaunter.now', '{}', false)",
                          clock_.Fixed() ? clock_.Fixed()->ToCanonical() : ""),
              false);
  sent_clock_ = clock_.Fixed();
}

// The text for the server. From its second run on a shape is prepared there.
std::string PostgresDialect::TextOf(Plan& plan, const Shape& shape) {
  const Translated& step = plan.steps.front();
  if (!step.cacheable || step.is_ddl || ++plan.runs < 2) return WithPostgresLiterals(step, shape);
  std::string text;
  if (plan.prepared.empty()) {
    if (std::exchange(drop_prepared_, false)) text += "DEALLOCATE ALL; ";
    plan.prepared = fmt::format("k{}", ++names_);
    text += "PREPARE " + plan.prepared;
    const char* separator = " (";
    for (const Parameter& parameter : step.parameters) {
      text += separator;
      text += ParameterType(parameter);
      separator = ", ";
    }
    if (!step.parameters.empty()) text += ')';
    text += " AS " + step.text + "; ";
  }
  text += "EXECUTE " + plan.prepared;
  const char* separator = "(";
  for (const Parameter& parameter : step.parameters) {
    text += separator;
    separator = ", ";
    AppendLiteral(text, shape.literals.at(parameter.literal), parameter, /*typed=*/false);
  }
  if (!step.parameters.empty()) text += ')';
  return text;
}

void PostgresDialect::RunPlan(OdbcSession& session, Plan& plan, const Shape& shape, bool want_rows,
                              OdbcOutcome* outcome, bool* sent) {
  const Translated& first = plan.steps.front();
  if (first.is_noop) return;
  if (first.transaction != Translated::Transaction::kNone) {
    return RunTransactionWord(session, first.transaction);
  }
  std::string text;
  const bool new_name = plan.prepared.empty();
  try {
    if (plan.steps.size() == 1) {
      text = TextOf(plan, shape);
    } else {
      // Sent together they happen whole or not at all; they are of DDL and have no parameters.
      for (const Translated& step : plan.steps) text += step.text + "; ";
    }
    if (first.text.find("k_rowcount()") != std::string::npos) {
      session.Run(fmt::format("SELECT set_config('kaunter.rowcount', '{}', false)", touched_),
                  false);
    }
    SendClock(session);
    *sent = true;
    *outcome = session.Run(text, want_rows && first.is_query, first.columns);
  } catch (const SqlError& error) {
    if (new_name) plan.prepared.clear();  // perhaps it is there; the next one has another name
    if (!*sent || error.number() == kLostNumber) throw;  // as what it was thrown
    throw Failure(session, error, VerbOf(first.text));
  }
  if (first.is_ddl) {
    outcome->affected = 0;
    schema_changed_ = session.InTransaction();
    ForgetSchema();
  }
  if (!first.is_query) touched_ = outcome->affected;
}

}  // namespace kaunter::sql
