// What stands between the T-SQL of the screens and the text that a driver is given.
#pragma once

#include <memory>
#include <string_view>

#include "platform/clock.h"
#include "platform/sql/odbc/odbc_session.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

class OdbcDialect {
 public:
  virtual ~OdbcDialect() = default;
  // Runs a batch of T-SQL on `session`, to the first failure.
  virtual OdbcOutcome Run(OdbcSession& session, std::string_view batch, bool want_rows) = 0;
  virtual void Begin(OdbcSession& session) { session.Begin(); }
  // See Connection::BeginReading; EndReading follows each rollback.
  virtual void BeginReading(OdbcSession& session) { session.Begin(); }
  virtual void EndReading(OdbcSession&) {}
  // Runs a batch for its rows, in a transaction that is rolled back; inside an open one back to
  // where that stood.
  OdbcOutcome RunReading(OdbcSession& session, std::string_view batch);
  // Called behind a rollback: what the dialect remembers of the tables may be undone.
  virtual void Forget() {}

 protected:
  // A mark inside a transaction, and the way back to it.
  virtual std::string_view Mark() const { return "SAVE TRANSACTION only_read"; }
  virtual std::string_view BackToMark() const { return "ROLLBACK TRANSACTION only_read"; }
  // What keeps a transaction, from here on, from writing; "" where the engine has no word for it.
  virtual std::string_view OnlyRead() const { return ""; }
  virtual void ForgetSinceMark() {}
};

// A dialect that translates, and so meets BEGIN, COMMIT and ROLLBACK TRAN among the statements.
class TranslatingDialect : public OdbcDialect {
 public:
  OdbcOutcome Run(OdbcSession& session, std::string_view batch, bool want_rows) final;
  void Forget() override { nested_ = 0; }

 protected:
  std::string_view Mark() const override { return "SAVEPOINT only_read"; }
  std::string_view BackToMark() const override {
    return "ROLLBACK TO SAVEPOINT only_read; RELEASE SAVEPOINT only_read";
  }
  // `outcome` holds what the statements before have left; rows and count are put over it.
  virtual void RunStatement(OdbcSession& session, const std::string& statement, const Shape& shape,
                            bool want_rows, OdbcOutcome* outcome) = 0;
  // Inside a transaction BEGIN only counts up, and its COMMIT down again.
  void RunTransactionWord(OdbcSession& session, Translated::Transaction word);

 private:
  int nested_ = 0;
};

// By the DBMS name that the driver reports: SQL Server's text stays as it is but for the N before
// non-ASCII texts; SQLite's and PostgreSQL's is translated; any other server gets the text
// untouched. `clock` is kept; a set clock is what getdate() gives where the dialect can have it so.
std::unique_ptr<OdbcDialect> DialectFor(OdbcSession& session, const Clock& clock);

}  // namespace kaunter::sql
