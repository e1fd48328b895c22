#include "platform/sql/odbc_dialect.h"

#include "platform/sql/odbc_sqlite_dialect.h"
#include "platform/sql/odbc_text.h"

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
};

}  // namespace

std::unique_ptr<OdbcDialect> DialectFor(const OdbcSession& session) {
  if (session.IsSqlServer()) return std::make_unique<SqlServerDialect>();
  if (session.dbms() == "SQLite") return std::make_unique<OdbcSqliteDialect>();
  return std::make_unique<UntouchedDialect>();
}

}  // namespace kaunter::sql
