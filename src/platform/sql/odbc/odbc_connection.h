// OdbcConnection: a Connection through the ODBC driver manager (SQL Server's drivers, and others by
// a dialect of their own). Opened by OpenOdbc.
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

  bool InTransaction() const override { return session_.InTransaction(); }
  std::string EngineName() const override { return session_.dbms(); }
  // True once the server is known to be gone; statements then throw 10054.
  bool Lost() const { return session_.Lost(); }

 protected:
  std::int64_t DoExecute(std::string_view sql) override;
  Recordset DoQuery(std::string_view sql) override;
  void DoBegin() override { dialect_->Begin(session_); }
  void DoCommit() override { session_.Commit(); }
  void DoRollback() override;

 private:
  OdbcSession session_;
  std::unique_ptr<OdbcDialect> dialect_;
};

}  // namespace kaunter::sql
