#include "platform/sql/odbc/odbc_dialect.h"

#include <utility>

#include "platform/sql/odbc/odbc_postgresql_dialect.h"
#include "platform/sql/odbc/odbc_sqlite_dialect.h"
#include "platform/sql/odbc/odbc_text.h"

namespace kaunter::sql {
namespace {

class UntouchedDialect : public OdbcDialect {
 public:
  OdbcOutcome Run(OdbcSession& session, std::string_view batch, bool want_rows) override {
    return session.Run(batch, want_rows);
  }
};

class SqlServerDialect : public OdbcDialect {
 public:
  OdbcOutcome Run(OdbcSession& session, std::string_view batch, bool want_rows) override {
    return session.Run(MarkUnicodeTexts(batch), want_rows);
  }

  void BeginReading(OdbcSession& session) override {
    const OdbcOutcome allowed = session.Run(
        "SELECT snapshot_isolation_state FROM sys.databases WHERE database_id=DB_ID()", true);
    snapshot_ = allowed.rows && !allowed.rows->Eof() && allowed.rows->Field(0).ToText() == "1";
    if (snapshot_) session.Run("SET TRANSACTION ISOLATION LEVEL SNAPSHOT", false);
    session.Begin();
  }

  // The level is the connection's and outlives the transaction.
  void EndReading(OdbcSession& session) override {
    if (std::exchange(snapshot_, false)) {
      session.Run("SET TRANSACTION ISOLATION LEVEL READ COMMITTED", false);
    }
  }

 private:
  bool snapshot_ = false;
};

}  // namespace

OdbcOutcome OdbcDialect::RunReading(OdbcSession& session, std::string_view batch) {
  const bool own = !session.InTransaction();
  if (own) {
    session.Begin();
  } else {
    session.Run(Mark(), false);
  }
  const auto back = [&] {
    if (own) {
      session.Rollback();
      Forget();
    } else if (session.InTransaction() && !session.Lost()) {
      session.Run(BackToMark(), false);
      ForgetSinceMark();
    }
  };
  OdbcOutcome outcome;
  try {
    if (!OnlyRead().empty()) session.Run(OnlyRead(), false);
    outcome = Run(session, batch, true);
  } catch (const SqlError&) {
    try {
      back();
    } catch (const SqlError&) {
      // The failure of the statement is the one to tell.
    }
    throw;
  }
  back();
  return outcome;
}

OdbcOutcome TranslatingDialect::Run(OdbcSession& session, std::string_view batch, bool want_rows) {
  OdbcOutcome outcome;
  std::vector<std::string> statements;
  const std::vector<Shape> shapes = SplitBatch(batch, &statements);
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    RunStatement(session, statements.at(i), shapes[i], want_rows, &outcome);
  }
  return outcome;
}

void TranslatingDialect::RunTransactionWord(OdbcSession& session, Translated::Transaction word) {
  switch (word) {
    case Translated::Transaction::kBegin:
      if (session.InTransaction()) {
        ++nested_;
        return;
      }
      Begin(session);
      break;
    case Translated::Transaction::kCommit:
      if (!session.InTransaction()) {
        throw SqlError(3902,
                       "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION.");
      }
      if (nested_ > 0) {
        --nested_;
        return;
      }
      session.Commit();
      break;
    case Translated::Transaction::kRollback:
      if (!session.InTransaction()) {
        throw SqlError(3903,
                       "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION.");
      }
      session.Rollback();
      Forget();
      break;
    case Translated::Transaction::kNone:
      break;
  }
  nested_ = 0;
}

std::unique_ptr<OdbcDialect> DialectFor(OdbcSession& session, const Clock& clock) {
  if (session.IsSqlServer()) return std::make_unique<SqlServerDialect>();
  if (session.dbms() == "SQLite") return std::make_unique<OdbcSqliteDialect>();
  if (session.dbms() == "PostgreSQL") return std::make_unique<PostgresDialect>(session, clock);
  return std::make_unique<UntouchedDialect>();
}

}  // namespace kaunter::sql
