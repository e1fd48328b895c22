#include "platform/sql/odbc/engine_index.h"

#include <fmt/format.h>

#include "platform/sql/odbc/odbc_connection.h"
#include "platform/sql/odbc/odbc_postgresql_dialect.h"

namespace kaunter::sql {
namespace {

bool IsThere(OdbcSession& session, std::string_view table, std::string_view name) {
  const OdbcOutcome found =
      session.Run(fmt::format("SELECT 1 FROM pg_class i JOIN pg_index x ON x.indexrelid = i.oid "
                              "WHERE x.indrelid = to_regclass('\"{0}\"') AND i.relname = "
                              "'{0}.{1}'",
                              table, name),
                  true);
  return found.rows && !found.rows->Eof();
}

}  // namespace

std::string IsNoEngineIndex(std::string_view name) {
  return fmt::format("({0} NOT LIKE '%.{1}' AND {0} NOT LIKE '%.{2}')", name, kInsideTexts,
                     kOpenRows);
}

bool MakeEngineIndex(Connection& connection, std::string_view table, std::string_view name,
                     const std::string& rest, const std::string& before) {
  auto* server = dynamic_cast<OdbcConnection*>(&connection);
  if (server == nullptr || server->EngineName() != "PostgreSQL") return false;
  OdbcSession& session = server->LendSession();
  if (IsThere(session, table, name)) return true;
  session.Begin();
  try {
    LockSetUp(session);  // another desktop may be making it
    if (!IsThere(session, table, name)) {
      if (!before.empty()) session.Run(before, false);
      session.Run(fmt::format("CREATE INDEX \"{0}.{1}\" ON \"{0}\" {2}", table, name, rest), false);
      session.Run(fmt::format("ANALYZE \"{}\"", table), false);  // the planner counts with it now
    }
    session.Commit();
  } catch (const SqlError&) {
    if (session.InTransaction()) session.Rollback();
    throw;
  }
  return true;
}

}  // namespace kaunter::sql
