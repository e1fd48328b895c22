// OdbcConnection: a Connection through the ODBC driver manager (SQL Server's drivers, and others by
// a dialect of their own). Opened by OpenOdbc.
//
// A connection that is lost fails the statement that meets the loss (10054), and with it the
// action. The next statement opens it anew; inside a transaction none passes before the rollback.
// One that outlives its server (Connection::OutliveServer) fails only where it must.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/sql/connection.h"
#include "platform/sql/odbc/odbc_dialect.h"
#include "platform/sql/odbc/odbc_record.h"
#include "platform/sql/odbc/odbc_session.h"

namespace kaunter::sql {

class OdbcConnection : public Connection {
 public:
  // `clock` must live as long; see DialectFor. Throws SqlError as OdbcSession does.
  OdbcConnection(std::string name, const std::string& odbc_string, const Clock& clock,
                 int login_seconds = kLoginSeconds);

  bool InTransaction() const override { return link_->session.InTransaction(); }
  std::string EngineName() const override { return link_->session.dbms(); }
  const std::string& EngineVersion() const { return link_->session.dbms_version(); }
  void OutliveServer(std::chrono::milliseconds patience) override;
  bool StandbyIsMissing();  // see standby.h
  // True from the loss of the server until it is reached again.
  bool Lost() const { return link_->session.Lost(); }
  // For who works on the same session past this class. What is asked there cannot be asked again,
  // so that OutliveServer is over.
  OdbcSession& LendSession();
  bool texts_indexed() const { return texts_indexed_; }  // see platform/sql/inside_texts.h
  void TextsAreIndexed() { texts_indexed_ = true; }

 protected:
  std::int64_t DoExecute(std::string_view sql) override;
  Recordset DoQuery(std::string_view sql) override;
  Recordset DoQueryOnly(std::string_view sql) override;
  void DoBegin() override;
  void DoBeginReading() override;
  void BeforeCommit() override;
  void DoCommit() override;
  void DoRollback() override;

 private:
  // What ends with a lost connection.
  struct Link {
    Link(const std::string& name, const std::string& odbc_string, const Clock& clock,
         int login_seconds);
    OdbcOutcome Send(const Asked& asked);
    OdbcSession session;
    std::unique_ptr<OdbcDialect> dialect;
  };
  enum class Fate { kStored, kNotStored, kUnknown };

  std::unique_ptr<Link> NewLink() const;
  Link& Open();
  OdbcOutcome Ask(const Asked& asked);
  bool Outlives() const { return patience_.count() > 0; }
  bool NamesSeveral() const;
  // Calls `attempt` until it passes; false when the patience ends before, or a stop is asked for.
  // Throws what no waiting mends.
  bool Patiently(const std::function<void()>& attempt);
  bool TakeUp();
  Fate FateOf(const std::string& mark);
  bool IsStored(Link& link, const std::string& mark) const;
  void Settle();

  std::string odbc_string_;
  const Clock& clock_;
  int login_seconds_;
  std::unique_ptr<Link> link_;
  bool texts_indexed_ = false;

  std::chrono::milliseconds patience_{};  // none: a loss is told
  bool tired_ = false;                    // it has ended in vain since the last answer
  TransactionRecord record_;              // of the open transaction
  std::string mark_;                      // of the open transaction, once it is about to be stored
  std::string stored_mark_;               // this connection's row in SaveMark
  std::string unsettled_;                 // the mark of a commit whose answer was lost
  std::string unsettled_since_;           // the PC's time then
  std::string marks_;                     // what all its marks begin with
  int marks_left_ = 0;
};

}  // namespace kaunter::sql
