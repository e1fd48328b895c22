// What stands between the T-SQL of the screens and the text that a driver is given.
#pragma once

#include <memory>
#include <string_view>

#include "platform/sql/odbc_session.h"

namespace kaunter::sql {

class OdbcDialect {
 public:
  virtual ~OdbcDialect() = default;
  // Runs a batch of T-SQL on `session`, to the first failure.
  virtual OdbcOutcome Run(OdbcSession& session, std::string_view batch, bool want_rows) = 0;
  // Called behind a rollback: what the dialect remembers of the tables may be undone.
  virtual void Forget() {}
};

// By the DBMS name that the driver reports: SQL Server's text stays as it is but for the N before
// non-ASCII texts; SQLite's is translated, a statement a call; any other server gets the text
// untouched.
std::unique_ptr<OdbcDialect> DialectFor(const OdbcSession& session);

}  // namespace kaunter::sql
