#include "platform/sql/server_source.h"

#include <fmt/format.h>

#include <string_view>

#include "platform/sql/odbc/odbc_string.h"

namespace kaunter {
namespace {

// An address of the sixth version of IP has colons of its own.
std::size_t ColonOf(const std::string& server) {
  const auto colon = server.rfind(':');
  return server.find(':') == colon ? colon : std::string::npos;
}

std::string HostOf(const std::string& server) { return server.substr(0, ColonOf(server)); }

std::string Pair(std::string_view key, const std::string& value) {
  return value.empty() ? "" : fmt::format("{}={};", key, sql::OdbcValue(value));
}

// An office's own server has no certificate that a PC would know.
std::string OfSqlServer(const ServerPlace& place, const std::string& driver) {
  const std::string port = PortOf(place.server);
  if (sql::NamesFreeTds(driver)) {
    return Pair("Server", HostOf(place.server)) + Pair("Port", port.empty() ? "1433" : port) +
           "TDS_Version=7.4;ClientCharset=UTF-8;" +
           (place.encrypted ? "Encryption=require" : "Encryption=request");
  }
  return Pair("Server", port.empty() ? place.server : HostOf(place.server) + "," + port) +
         (place.encrypted ? "Encrypt=yes;TrustServerCertificate=yes" : "Encrypt=no");
}

std::string OfPostgresql(const ServerPlace& place) {
  const bool several = place.server.find(',') != std::string::npos;
  return Pair("Server", HostOf(place.server)) + Pair("Port", PortOf(place.server)) +
         (place.encrypted ? "SSLmode=require;" : "SSLmode=prefer;") +
         fmt::format("pqopt={{{}}}", sql::LineOptions(several));
}

}  // namespace

std::string PortOf(const std::string& server) {
  const auto colon = ColonOf(server);
  return colon == std::string::npos ? "" : server.substr(colon + 1);
}

std::string ServerText(const ServerPlace& place) {
  const bool postgresql = place.kind == ServerKind::postgresql;
  const sql::OdbcInventory inventory = sql::ReadOdbcInventory();
  const std::string driver =
      postgresql ? sql::PostgresqlDriver(inventory) : sql::SqlServerDriver(inventory);
  if (driver.empty()) return {};
  return fmt::format("Driver={{{}}};", driver) + Pair("Database", place.database) +
         Pair("UID", place.user) + Pair("PWD", place.password) +
         (postgresql ? OfPostgresql(place) : OfSqlServer(place, driver));
}

}  // namespace kaunter
