#include "platform/sql/odbc/odbc_connection.h"

#include <utility>

#include "platform/sql/data_source.h"

namespace kaunter {
namespace sql {

OdbcConnection::Link::Link(const std::string& name, const std::string& odbc_string,
                           const Clock& clock, int login_seconds)
    : session(name, odbc_string, login_seconds), dialect(DialectFor(session, clock)) {}

OdbcConnection::OdbcConnection(std::string name, const std::string& odbc_string, const Clock& clock,
                               int login_seconds)
    : Connection(std::move(name)),
      odbc_string_(odbc_string),
      clock_(clock),
      login_seconds_(login_seconds),
      link_(std::make_unique<Link>(this->name(), odbc_string_, clock_, login_seconds_)) {}

OdbcConnection::Link& OdbcConnection::Open() {
  if (Lost() && !InTransaction()) {
    link_ = std::make_unique<Link>(name(), odbc_string_, clock_, login_seconds_);
  }
  return *link_;
}

std::int64_t OdbcConnection::DoExecute(std::string_view sql) {
  Link& link = Open();
  return link.dialect->Run(link.session, sql, /*want_rows=*/false).affected;
}

Recordset OdbcConnection::DoQuery(std::string_view sql) {
  Link& link = Open();
  OdbcOutcome outcome = link.dialect->Run(link.session, sql, /*want_rows=*/true);
  return outcome.rows ? std::move(*outcome.rows) : Recordset();
}

Recordset OdbcConnection::DoQueryOnly(std::string_view sql) {
  Link& link = Open();
  OdbcOutcome outcome = link.dialect->RunReading(link.session, sql);
  return outcome.rows ? std::move(*outcome.rows) : Recordset();
}

void OdbcConnection::DoBegin() {
  Link& link = Open();
  link.dialect->Begin(link.session);
}

void OdbcConnection::DoBeginReading() {
  Link& link = Open();
  link.dialect->BeginReading(link.session);
}

void OdbcConnection::DoRollback() {
  link_->session.Rollback();
  link_->dialect->Forget();
  if (!Lost()) link_->dialect->EndReading(link_->session);
}

}  // namespace sql

std::unique_ptr<Connection> OpenOdbc(std::string_view name, const std::string& odbc_string,
                                     const Clock& clock) {
  return std::make_unique<sql::OdbcConnection>(std::string(name), odbc_string, clock);
}

}  // namespace kaunter
