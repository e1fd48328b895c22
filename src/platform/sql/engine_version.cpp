#include "platform/sql/engine_version.h"

#include <sqlite3.h>

#include "platform/sql/odbc/odbc_connection.h"

namespace kaunter {

std::string EngineVersion(const Connection& connection) {
  const auto* server = dynamic_cast<const sql::OdbcConnection*>(&connection);
  return server == nullptr ? sqlite3_libversion() : server->EngineVersion();
}

}  // namespace kaunter
