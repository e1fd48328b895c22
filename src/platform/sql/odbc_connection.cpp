#include "platform/sql/odbc_connection.h"

#include <utility>

#include "platform/sql/data_source.h"

namespace kaunter {
namespace sql {

OdbcConnection::OdbcConnection(std::string name, const std::string& odbc_string)
    : Connection(name), session_(std::move(name), odbc_string), dialect_(DialectFor(session_)) {}

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

// The server's clock is its own; a set clock reaches embedded engines only.
std::unique_ptr<Connection> OpenOdbc(std::string_view name, const std::string& odbc_string,
                                     const Clock&) {
  return std::make_unique<sql::OdbcConnection>(std::string(name), odbc_string);
}

}  // namespace kaunter
