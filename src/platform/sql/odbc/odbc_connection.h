// OdbcConnection: a Connection through the ODBC driver manager (SQL Server's drivers, and others by
// a dialect of their own). Opened by OpenOdbc.
//
// A connection that is lost fails the statement that meets the loss (10054), and with it the
// action. The next statement opens it anew; inside a transaction none passes before the rollback.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/sql/connection.h"
#include "platform/sql/odbc/odbc_dialect.h"
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
  // True from the loss of the server until it is reached again.
  bool Lost() const { return link_->session.Lost(); }
  // For PostgresWhole, which works on the same transaction.
  OdbcSession& session() { return link_->session; }

 protected:
  std::int64_t DoExecute(std::string_view sql) override;
  Recordset DoQuery(std::string_view sql) override;
  Recordset DoQueryOnly(std::string_view sql) override;
  void DoBegin() override;
  void DoBeginReading() override;
  void DoCommit() override { link_->session.Commit(); }
  void DoRollback() override;

 private:
  // What ends with a lost connection.
  struct Link {
    Link(const std::string& name, const std::string& odbc_string, const Clock& clock,
         int login_seconds);
    OdbcSession session;
    std::unique_ptr<OdbcDialect> dialect;
  };

  Link& Open();

  std::string odbc_string_;
  const Clock& clock_;
  int login_seconds_;
  std::unique_ptr<Link> link_;
};

}  // namespace kaunter::sql
