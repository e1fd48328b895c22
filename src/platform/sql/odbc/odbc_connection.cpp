#include "platform/sql/odbc/odbc_connection.h"

#include <utility>

#include "platform/sql/data_source.h"

namespace kaunter {
namespace sql {

OdbcConnection::OdbcConnection(std::string name, const std::string& odbc_string, const Clock& clock,
                               int login_seconds)
    : Connection(name),
      session_(std::move(name), odbc_string, login_seconds),
      dialect_(DialectFor(session_, clock)) {}

std::int64_t OdbcConnection::DoExecute(std::string_view sql) {
  return dialect_->Run(session_, sql, /*want_rows=*/false).affected;
}

Recordset OdbcConnection::DoQuery(std::string_view sql) {
  OdbcOutcome outcome = dialect_->Run(session_, sql, /*want_rows=*/true);
  return outcome.rows ? std::move(*outcome.rows) : Recordset();
}

void OdbcConnection::DoRollback() {
  session_.Rollback();
  dialect_->Forget();
}

}  // namespace sql

std::unique_ptr<Connection> OpenOdbc(std::string_view name, const std::string& odbc_string,
                                     const Clock& clock) {
  return std::make_unique<sql::OdbcConnection>(std::string(name), odbc_string, clock);
}

}  // namespace kaunter
