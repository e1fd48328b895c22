// The embedded engine: T-SQL over one SQLite file.
//
// A statement costs one translation: its shape (the text without its literals) is kept with the
// prepared statement, and a later statement of the same shape only binds its literals. The kept
// shapes and the catalogue are dropped when the schema changes: by an own CREATE or ALTER, by a
// rollback that undid one, or by another desktop.
#pragma once

#include <sqlite3.h>

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/clock.h"
#include "platform/sql/connection.h"
#include "platform/sql/sqlite/sqlite_catalogue.h"
#include "platform/sql/sqlite/sqlite_functions.h"
#include "platform/sql/sqlite/sqlite_statement.h"
#include "platform/sql/sqlite/sqlite_statement_key.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

struct HandleCloser {
  void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
};
using SqliteHandle = std::unique_ptr<sqlite3, HandleCloser>;

class SqliteConnection final : public Connection {
 public:
  // `db` is open and set up; `path` is for messages.
  SqliteConnection(std::string name, std::string path, SqliteHandle db, const Clock& clock);
  ~SqliteConnection() override;

  bool InTransaction() const override { return sqlite3_get_autocommit(db_.get()) == 0; }
  std::string EngineName() const override { return "SQLite"; }

  // For SqliteWhole, which works on the same transaction.
  sqlite3* handle() const { return db_.get(); }
  const std::string& path() const { return path_; }

 protected:
  std::int64_t DoExecute(std::string_view sql) override;
  Recordset DoQuery(std::string_view sql) override;
  Recordset DoQueryOnly(std::string_view sql) override;
  void DoBegin() override;
  void DoBeginReading() override;
  void DoCommit() override;
  void DoRollback() override;

 private:
  // One statement for SQLite, prepared when it first runs.
  struct Step {
    Translated translated;
    SqliteStatement statement;
  };
  using Plan = std::vector<Step>;
  struct Outcome {
    std::int64_t touched = 0;
    bool only_read = false;  // the last statement was a query
    Recordset rows;
  };

  using Literals = std::span<const std::string_view>;

  void RunBatch(std::string_view batch, Outcome* outcome);
  // The statement of the batch that has this shape; `plan` is what was kept for it, or null.
  // Without a shape the plan is there and the batch is one statement.
  Plan* RunStatement(std::string_view batch, const Shape* shape, Literals literals, Plan* plan,
                     Outcome* outcome);
  Plan* FindPlan(std::string_view batch, const Shape& shape, Plan* own);
  void RunPlan(Plan& plan, Literals literals, Outcome* outcome);
  void RunSteps(Plan& plan, Literals literals, Outcome* outcome);
  void RunStep(Step& step, Literals literals, Outcome* outcome);
  void Fetch(Step& step, Outcome* outcome);
  void RunTransactionWord(Translated::Transaction word);
  void RefuseIfMoved();
  void RunPrepared(SqliteStatement& statement, const char* sql);

  // True when the schema is another one than the kept shapes were made for; they are then dropped.
  bool SchemaMoved();
  // As SchemaMoved, and nearly free while nobody has written to the file.
  bool SchemaMovedByOthers();
  void ForgetSchema();
  void ForgetPlans();

  std::string path_;
  SqliteHandle db_;
  StatementClock clock_;
  SqliteCatalogue catalogue_;
  std::unordered_map<std::string, Plan> plans_;     // by shape
  std::unordered_map<std::string, Plan*> by_look_;  // by quick look, into plans_
  StatementKey look_;
  SqliteStatement begin_;
  SqliteStatement commit_;
  SqliteStatement rollback_;
  SqliteStatement schema_version_;
  std::int64_t known_schema_ = -1;
  unsigned int known_data_ = 0;
  bool schema_changed_in_transaction_ = false;
  int nested_ = 0;  // BEGIN TRANSACTION inside a transaction, from a batch
};

}  // namespace kaunter::sql
