#include "platform/sql/sqlite/sqlite_connection.h"

#include <fmt/format.h>

#include "platform/sql/sql_error.h"
#include "platform/sql/sqlite/sqlite_alter.h"
#include "platform/sql/sqlite/sqlite_error.h"
#include "platform/sql/sqlite/sqlite_literal.h"
#include "platform/sql/sqlite/sqlite_rows.h"
#include "platform/sql/waiting.h"

namespace kaunter::sql {
namespace {

// The statements of the program have some hundreds of shapes; far more can only come from texts
// that are made anew each time, and keeping those helps nobody.
constexpr std::size_t kMostPlans = 2000;

// About a millisecond of a search.
constexpr int kStepsBetweenActs = 20000;

// "Database cannot be opened due to inaccessible files": what the server says of a file that went.
constexpr int kFileMovedNumber = 945;

}  // namespace

SqliteConnection::SqliteConnection(std::string name, std::string path, SqliteHandle db,
                                   const Clock& clock)
    : Connection(std::move(name)),
      path_(std::move(path)),
      db_(std::move(db)),
      clock_(clock),
      catalogue_(db_.get(), path_) {
  RegisterSqliteFunctions(db_.get(), &clock_);
  sqlite3_progress_handler(
      db_.get(), kStepsBetweenActs,
      [](void*) {
        ActWhileWaiting();
        return StopAsked() ? 1 : 0;
      },
      nullptr);
  SchemaMoved();
}

SqliteConnection::~SqliteConnection() {
  ForgetPlans();
  for (SqliteStatement* statement : {&begin_, &commit_, &rollback_, &schema_version_}) {
    statement->reset();
  }
}

std::int64_t SqliteConnection::DoExecute(std::string_view sql) {
  Outcome outcome;
  RunBatch(sql, &outcome);
  return outcome.touched;
}

Recordset SqliteConnection::DoQuery(std::string_view sql) {
  Outcome outcome;
  RunBatch(sql, &outcome);
  return std::move(outcome.rows);
}

Recordset SqliteConnection::DoQueryOnly(std::string_view sql) {
  // Where the transaction was left by a word of the batch itself there is nothing to roll back.
  struct ReadOnly {
    ReadOnly(sqlite3* of, bool is_own, const std::string& path) : db(of), own(is_own) {
      RunPlain(db, own ? "BEGIN" : "SAVEPOINT only_read", path);
      RunPlain(db, "PRAGMA query_only = ON", path);
    }
    ~ReadOnly() {
      sqlite3_exec(db, own ? "ROLLBACK" : "ROLLBACK TO only_read; RELEASE only_read", nullptr,
                   nullptr, nullptr);
      sqlite3_exec(db, "PRAGMA query_only = OFF", nullptr, nullptr, nullptr);
    }
    sqlite3* db;
    bool own;
  };
  const ReadOnly reading(db_.get(), !InTransaction(), path_);
  return DoQuery(sql);
}

void SqliteConnection::RunBatch(std::string_view batch, Outcome* outcome) {
  const bool looked = look_.Read(batch);
  if (looked) {
    const auto found = by_look_.find(look_.key());
    if (found != by_look_.end()) {
      RunStatement(batch, nullptr, look_.literals(), found->second, outcome);
      return;
    }
  }
  const std::vector<Shape> shapes = SplitBatch(batch, nullptr);
  Plan* kept = nullptr;
  for (const Shape& shape : shapes) {
    const std::vector<std::string_view> literals(shape.literals.begin(), shape.literals.end());
    kept = RunStatement(batch, &shape, literals, nullptr, outcome);
  }
  // Where some literal is part of the shape itself (a position, a length), the look is too quick.
  if (looked && kept != nullptr && shapes.size() == 1 &&
      shapes.front().literals.size() == look_.literals().size()) {
    by_look_.emplace(look_.key(), kept);
  }
}

SqliteConnection::Plan* SqliteConnection::RunStatement(std::string_view batch, const Shape* shape,
                                                       Literals literals, Plan* plan,
                                                       Outcome* outcome) {
  std::vector<Shape> only;  // of a statement that was found without one
  const bool in_transaction = InTransaction();
  outcome->only_read = false;
  for (bool again = false;; again = true) {
    try {
      Plan own;
      if (plan == nullptr && shape == nullptr) {
        only = SplitBatch(batch, nullptr);
        shape = &only.front();
      }
      if (plan == nullptr) plan = FindPlan(batch, *shape, &own);
      RunPlan(*plan, literals, outcome);
      // Another desktop may have changed a table since the shape was kept: what was read may then
      // lack a column. A write needs no second look: SQLite itself holds it to the true columns.
      if (again || !outcome->only_read || !SchemaMovedByOthers()) {
        return plan == &own ? nullptr : plan;
      }
    } catch (const SqlError&) {
      if (in_transaction && !InTransaction() && schema_changed_in_transaction_) ForgetSchema();
      // A failed statement has done nothing, so it may be tried once more with a fresh eye, unless
      // its failure took the transaction with it.
      if (again || in_transaction != InTransaction() || !SchemaMoved()) throw;
    }
    plan = nullptr;
  }
}

SqliteConnection::Plan* SqliteConnection::FindPlan(std::string_view batch, const Shape& shape,
                                                   Plan* own) {
  const auto found = plans_.find(shape.key);
  if (found != plans_.end()) return &found->second;
  const std::string_view statement = batch.substr(shape.begin, shape.end - shape.begin);
  bool keep = true;
  for (Translated& translated : Translate(statement, catalogue_, Dialect::kSqlite)) {
    // A rollback may drop what is kept, so it is never among it.
    keep = keep && translated.cacheable && !translated.is_ddl && !translated.alter_column &&
           translated.transaction == Translated::Transaction::kNone;
    own->push_back({std::move(translated), nullptr});
  }
  if (!keep) return own;
  if (plans_.size() >= kMostPlans) ForgetPlans();
  return &plans_.emplace(shape.key, std::move(*own)).first->second;
}

void SqliteConnection::RunPlan(Plan& plan, Literals literals, Outcome* outcome) {
  if (plan.size() == 1 && !plan.front().translated.alter_column) {
    return RunStep(plan.front(), literals, outcome);
  }
  // One statement of the server that takes several of SQLite's happens whole or not at all.
  const bool own_transaction = !InTransaction();
  RunPlain(db_.get(), own_transaction ? "BEGIN IMMEDIATE" : "SAVEPOINT one_statement", path_);
  try {
    RunSteps(plan, literals, outcome);
    RunPlain(db_.get(), own_transaction ? "COMMIT" : "RELEASE one_statement", path_);
  } catch (...) {
    sqlite3_exec(db_.get(),
                 own_transaction ? "ROLLBACK" : "ROLLBACK TO one_statement; RELEASE one_statement",
                 nullptr, nullptr, nullptr);
    ForgetSchema();
    throw;
  }
  if (own_transaction) schema_changed_in_transaction_ = false;
}

void SqliteConnection::RunSteps(Plan& plan, Literals literals, Outcome* outcome) {
  for (Step& step : plan) RunStep(step, literals, outcome);
}

void SqliteConnection::RunStep(Step& step, Literals literals, Outcome* outcome) {
  const Translated& translated = step.translated;
  if (translated.is_noop) return;
  if (translated.transaction != Translated::Transaction::kNone) {
    return RunTransactionWord(translated.transaction);
  }
  if (translated.alter_column) {
    AlterColumnOf(db_.get(), path_, catalogue_, *translated.alter_column);
  } else {
    if (step.statement == nullptr) {
      step.statement = Prepare(db_.get(), translated.text, path_, translated.cacheable);
    }
    if (!translated.is_query && !InTransaction()) RefuseIfMoved();
    clock_.NextStatement();
    for (std::size_t i = 0; i < translated.parameters.size(); ++i) {
      const Parameter& parameter = translated.parameters[i];
      BindLiteral(step.statement.get(), static_cast<int>(i) + 1, literals[parameter.literal],
                  parameter);
    }
    Fetch(step, outcome);
  }
  if (translated.is_ddl || translated.alter_column) {
    ForgetSchema();
    schema_changed_in_transaction_ = InTransaction();
  }
}

// Runs the bound statement; rows are copied and the statement is reset before this returns, so that
// no read lock stays behind.
void SqliteConnection::Fetch(Step& step, Outcome* outcome) {
  sqlite3_stmt* statement = step.statement.get();
  const ResetAtEnd reset(statement);
  outcome->only_read = step.translated.is_query;
  int code = sqlite3_step(statement);
  if (step.translated.is_query) {
    // Columns after the first step: SQLite may have prepared anew for a changed table.
    std::vector<Column> columns = ColumnsOf(statement, step.translated.columns);
    std::vector<std::vector<Value>> rows;
    for (; code == SQLITE_ROW; code = sqlite3_step(statement)) {
      rows.push_back(RowOf(statement, columns, step.translated.columns));
    }
    if (code == SQLITE_DONE) {
      outcome->rows = Recordset(std::move(columns), std::move(rows));
    }
  } else {
    while (code == SQLITE_ROW) code = sqlite3_step(statement);
    if (code == SQLITE_DONE) {
      outcome->touched = step.translated.is_ddl ? 0 : sqlite3_changes64(db_.get());
    }
  }
  if (code != SQLITE_DONE) {
    throw SqliteFailure(db_.get(), sqlite3_extended_errcode(db_.get()), path_,
                        VerbOf(step.translated.text));
  }
}

void SqliteConnection::RunTransactionWord(Translated::Transaction word) {
  switch (word) {
    case Translated::Transaction::kBegin:
      if (InTransaction()) {
        ++nested_;
      } else {
        DoBegin();
      }
      break;
    case Translated::Transaction::kCommit:
      if (!InTransaction()) {
        throw SqlError(3902,
                       "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION.");
      }
      if (nested_ > 0) {
        --nested_;
      } else {
        DoCommit();
      }
      break;
    case Translated::Transaction::kRollback:
      if (!InTransaction()) {
        throw SqlError(3903,
                       "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION.");
      }
      DoRollback();
      break;
    case Translated::Transaction::kNone:
      break;
  }
}

void SqliteConnection::RunPrepared(SqliteStatement& statement, const char* sql) {
  if (statement == nullptr) statement = Prepare(db_.get(), sql, path_, true);
  const ResetAtEnd reset(statement.get());
  if (sqlite3_step(statement.get()) != SQLITE_DONE) {
    throw SqliteFailure(db_.get(), sqlite3_extended_errcode(db_.get()), path_, "");
  }
}

// A file that was moved away, or that another one was moved over, goes on taking saves without a
// name: they would be told as saved and be lost.
void SqliteConnection::RefuseIfMoved() {
  int moved = 0;
  sqlite3_file_control(db_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  if (moved == 0) return;
  throw SqlError(kFileMovedNumber,
                 fmt::format("The database '{}' was moved, deleted or replaced while this desktop "
                             "had it open. Close Kaunter on all desktops, see that the right file "
                             "is in its place, and start again.",
                             path_));
}

void SqliteConnection::DoBegin() {
  RefuseIfMoved();
  // IMMEDIATE takes the write lock now: two desktops queue here instead of failing halfway.
  RunPrepared(begin_, "BEGIN IMMEDIATE");
  nested_ = 0;
  schema_changed_in_transaction_ = false;
}

// The journal is written ahead: who reads sees the state of his first statement, and others go on.
void SqliteConnection::DoBeginReading() {
  RunPlain(db_.get(), "BEGIN", path_);
  nested_ = 0;
  schema_changed_in_transaction_ = false;
}

void SqliteConnection::DoCommit() {
  RefuseIfMoved();
  RunPrepared(commit_, "COMMIT");
  nested_ = 0;
  schema_changed_in_transaction_ = false;
}

void SqliteConnection::DoRollback() {
  RunPrepared(rollback_, "ROLLBACK");
  nested_ = 0;
  if (schema_changed_in_transaction_) ForgetSchema();
  schema_changed_in_transaction_ = false;
}

bool SqliteConnection::SchemaMoved() {
  if (schema_version_ == nullptr) {
    schema_version_ = Prepare(db_.get(), "PRAGMA schema_version", path_, true);
  }
  const ResetAtEnd reset(schema_version_.get());
  if (sqlite3_step(schema_version_.get()) != SQLITE_ROW) return false;
  const std::int64_t version = sqlite3_column_int64(schema_version_.get(), 0);
  if (version == known_schema_) return false;
  ForgetPlans();
  catalogue_.Clear();
  known_schema_ = version;
  return true;
}

bool SqliteConnection::SchemaMovedByOthers() {
  // The pager's version moves with every commit, of others and our own.
  unsigned int data = 0;
  sqlite3_file_control(db_.get(), "main", SQLITE_FCNTL_DATA_VERSION, &data);
  if (data == known_data_) return false;
  known_data_ = data;
  return SchemaMoved();
}

void SqliteConnection::ForgetPlans() {
  by_look_.clear();
  plans_.clear();
}

void SqliteConnection::ForgetSchema() {
  known_schema_ = -1;
  SchemaMoved();
}

}  // namespace kaunter::sql
