#include "platform/sql/odbc/odbc_string.h"

#include <fmt/format.h>

#include <charconv>
#include <filesystem>

#include "platform/sql/odbc/odbc_api.h"
#include "platform/sql/odbc/odbc_error.h"
#include "platform/sql/odbc/odbc_handle.h"
#include "platform/sql/text.h"

namespace kaunter::sql {
namespace {

constexpr std::string_view kLogsEnding = "-Logs";

// Keys of one meaning that drivers and OLE DB write differently.
std::string UserOf(const ConnectionString& text) {
  return FirstOf(text, {"user id", "uid", "user", "username"});
}
std::string PasswordOf(const ConnectionString& text) { return FirstOf(text, {"password", "pwd"}); }
std::string CatalogueOf(const ConnectionString& text) {
  return FirstOf(text, {"initial catalog", "database", "dbname"});
}

class Builder {
 public:
  Builder() = default;
  // All of `text`, but its source and what is `left_out`.
  Builder(std::string_view source, const ConnectionString& text,
          bool (*left_out)(std::string_view key)) {
    // The driver manager takes the source or the driver from what stands first.
    Add("DSN", source);
    Add("DRIVER", text.Get("driver"));
    for (const auto& [key, value] : text.pairs()) {
      if (key != "dsn" && key != "driver" && !left_out(key)) Add(key, value);
    }
  }
  // A blank value is left out: an empty UID would hide the user that the source itself names.
  void Add(std::string_view key, std::string_view value) {
    if (value.empty()) return;
    text_ += fmt::format("{}{}={}", text_.empty() ? "" : ";", key, OdbcValue(value));
  }
  std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

bool NamesSqlite(std::string_view driver) {
  return LowerAscii(driver).find("sqlite") != std::string::npos;
}

bool NamesPostgresql(std::string_view driver) {
  return LowerAscii(driver).find("postgresql") != std::string::npos;
}

std::string ServersOf(const ConnectionString& text) {
  return FirstOf(text, {"server", "servername"});
}

bool NamesSeveral(const ConnectionString& text) {
  return ServersOf(text).find(',') != std::string::npos;
}

// Left to itself FreeTDS tries every version of the protocol, each with a time-out of its own.
constexpr std::string_view kTdsVersion = "7.4";

std::string DriverOfSource(std::string_view source, const OdbcInventory& inventory) {
  for (const auto& [name, driver] : inventory.data_sources) {
    if (SameName(name, source)) return driver;
  }
  return "";
}

bool IsLogsCatalogue(std::string_view catalogue) {
  return catalogue.size() > kLogsEnding.size() &&
         SameName(catalogue.substr(catalogue.size() - kLogsEnding.size()), kLogsEnding);
}

std::string LogsFile(const std::string& file) {
  std::filesystem::path path(file);
  return (path.parent_path() /
          (path.stem().string() + std::string(kLogsEnding) + path.extension().string()))
      .string();
}

void AddAccount(Builder& out, const ConnectionString& office, const ConnectionString& local) {
  const std::string own_user = UserOf(local);
  const std::string own_password = PasswordOf(local);
  out.Add("UID", own_user.empty() ? UserOf(office) : own_user);
  // A text with a user of its own but no password means an account without one.
  out.Add("PWD", own_user.empty() && own_password.empty() ? PasswordOf(office) : own_password);
}

bool IsAccountOrCatalogue(std::string_view key) {
  for (std::string_view known : {"uid", "user id", "user", "username", "pwd", "password",
                                 "database", "dbname", "initial catalog"}) {
    if (key == known) return true;
  }
  return false;
}

// The database beside `own`, for the audit tables: of a file the same rule as for the embedded
// engine.
std::string LogsBeside(const std::string& own, bool file) {
  return file ? LogsFile(own) : own + std::string(kLogsEnding);
}

// A local source's own text, with what the office's string adds to it.
std::string FromLocalText(const ConnectionString& office, const ConnectionString& local,
                          const OdbcInventory& inventory) {
  const std::string dsn = local.Get("dsn");
  const std::string driver = dsn.empty() ? local.Get("driver") : DriverOfSource(dsn, inventory);
  const bool file = NamesSqlite(driver);
  const bool logs = IsLogsCatalogue(CatalogueOf(office));
  const std::string own = CatalogueOf(local);
  Builder out(logs && file && own.empty() ? dsn + std::string(kLogsEnding) : dsn, local,
              IsAccountOrCatalogue);
  if (NamesFreeTds(driver) && dsn.empty() && !local.Has("tds_version")) {
    out.Add("TDS_Version", kTdsVersion);
  }
  if (NamesPostgresql(driver) && dsn.empty() && !local.Has("pqopt")) {
    out.Add("pqopt", LineOptions(NamesSeveral(local)));
  }
  if (!file && !local.Has("trusted_connection")) AddAccount(out, office, local);
  if (!own.empty()) {
    out.Add("DATABASE", logs ? LogsBeside(own, file) : own);
  } else if (!file) {
    out.Add("DATABASE", CatalogueOf(office));
  }
  return out.Take();
}

std::string FromSourceName(const ConnectionString& office, const OdbcInventory& inventory) {
  const std::string source = FirstOf(office, {"data source", "dsn"});
  const std::string driver = office.Get("driver");
  if (source.empty() && driver.empty()) {
    throw SqlError(4060,
                   "The connection string names no data source. Write the name of the data source "
                   "into the setting ConnDataSource.");
  }
  if (source.empty()) return FromLocalText(ConnectionString(), office, inventory);
  Builder out;
  const std::string catalogue = CatalogueOf(office);
  if (NamesSqlite(DriverOfSource(source, inventory))) {
    out.Add("DSN", IsLogsCatalogue(catalogue) ? source + std::string(kLogsEnding) : source);
    return out.Take();
  }
  out.Add("DSN", source);
  AddAccount(out, office, ConnectionString());
  out.Add("DATABASE", catalogue);
  return out.Take();
}

// The version in "ODBC Driver 18 for SQL Server"; 0 when the name is no such.
int MicrosoftVersion(std::string_view driver) {
  const std::string lower = LowerAscii(driver);
  constexpr std::string_view kBefore = "odbc driver ";
  constexpr std::string_view kBehind = " for sql server";
  if (!lower.starts_with(kBefore) || !lower.ends_with(kBehind)) return 0;
  int version = 0;
  std::from_chars(lower.data() + kBefore.size(), lower.data() + lower.size(), version);
  return version;
}

std::string FromServer(const ConnectionString& office, const OdbcInventory& inventory) {
  const std::string server =
      FirstOf(office, {"data source", "server", "address", "addr", "network address"});
  if (server.empty()) {
    throw SqlError(4060, "The connection string names no server (Data Source=...).");
  }
  const std::string driver = SqlServerDriver(inventory);
  if (driver.empty()) {
    throw SqlError(
        4060, fmt::format("Cannot connect to the SQL Server {}: no ODBC driver for SQL Server is "
                          "installed. Install FreeTDS (package tdsodbc) or Microsoft's driver.",
                          server));
  }
  Builder out;
  out.Add("DRIVER", driver);
  out.Add("SERVER", server);
  if (MicrosoftVersion(driver) > 0) {
    // The OLE DB provider that these strings were written for never asked for a certificate; an
    // office's own server has none that a PC would know.
    out.Add("TrustServerCertificate", "yes");
  } else if (NamesFreeTds(driver)) {
    out.Add("ClientCharset", "UTF-8");
    out.Add("TDS_Version", kTdsVersion);
    // No port: the driver would look into its own file. An instance or ",port" speaks for itself.
    if (server.find_first_of("\\,:") == std::string::npos) out.Add("PORT", "1433");
  }
  if (LowerAscii(office.Get("integrated security")) == "sspi" ||
      LowerAscii(office.Get("trusted_connection")) == "yes") {
    out.Add("Trusted_Connection", "yes");
  } else {
    AddAccount(out, office, ConnectionString());
  }
  out.Add("DATABASE", CatalogueOf(office));
  return out.Take();
}

}  // namespace

std::string FirstOf(const ConnectionString& text, std::initializer_list<const char*> keys) {
  for (const char* key : keys) {
    if (std::string value = text.Get(key); !value.empty()) return value;
  }
  return "";
}

bool NamesFreeTds(std::string_view driver) {
  const std::string lower = LowerAscii(driver);
  return lower.find("freetds") != std::string::npos || lower.find("tdsodbc") != std::string::npos;
}

// The newest of Microsoft's drivers, else FreeTDS, else an older one under a usual name.
std::string SqlServerDriver(const OdbcInventory& inventory) {
  std::string best;
  int best_rank = 0;
  for (const std::string& driver : inventory.drivers) {
    const std::string lower = LowerAscii(driver);
    int rank = 0;
    if (const int version = MicrosoftVersion(driver); version > 0) {
      rank = 100 + version;
    } else if (NamesFreeTds(driver)) {
      rank = 50;
    } else if (lower.find("sql server") != std::string::npos) {
      rank = 10;
    }
    if (rank > best_rank) {
      best_rank = rank;
      best = driver;
    }
  }
  return best;
}

// The Unicode one keeps Chinese.
std::string PostgresqlDriver(const OdbcInventory& inventory) {
  std::string best;
  for (const std::string& driver : inventory.drivers) {
    if (!NamesPostgresql(driver)) continue;
    if (best.empty() || LowerAscii(driver).find("unicode") != std::string::npos) best = driver;
  }
  return best;
}

std::string_view LineOptions(bool several) {
  return several ? "target_session_attrs=read-write keepalives_idle=5 keepalives_interval=2 "
                   "keepalives_count=3 tcp_user_timeout=10000"
                 : "keepalives_idle=15 keepalives_interval=5 keepalives_count=3 "
                   "tcp_user_timeout=30000";
}

std::string OdbcValue(std::string_view value) {
  const bool plain = value.find_first_of(";{}") == std::string_view::npos &&
                     (value.empty() || (value.front() != ' ' && value.back() != ' '));
  if (plain) return std::string(value);
  std::string braced = "{";
  for (char c : value) {
    braced += c;
    if (c == '}') braced += c;
  }
  return braced + "}";
}

std::string OdbcString(const ConnectionString& office, std::string_view local_text,
                       const OdbcInventory& inventory) {
  if (!local_text.empty()) {
    return FromLocalText(office, ConnectionString::Parse(local_text), inventory);
  }
  const std::string provider = LowerAscii(office.Get("provider"));
  if (provider.empty() || provider.starts_with("msdasql")) return FromSourceName(office, inventory);
  for (std::string_view known : {"sqloledb", "msoledbsql", "sqlncli"}) {
    if (provider.starts_with(known)) return FromServer(office, inventory);
  }
  throw SqlError(4060, fmt::format("The provider {} of the connection string is not known. Use "
                                   "MSDASQL.1 (an ODBC data source) or SQLOLEDB.1 (SQL Server).",
                                   office.Get("provider")));
}

std::string OdbcWithDatabase(const ConnectionString& text, std::string_view database) {
  Builder out(text.Get("dsn"), text, [](std::string_view key) { return key == "database"; });
  out.Add("DATABASE", database);
  return out.Take();
}

std::string OdbcSourceName(std::string_view odbc_string) {
  std::string shown;
  try {
    const ConnectionString text = ConnectionString::Parse(odbc_string);
    for (const char* key :
         {"DSN", "Driver", "Server", "Servername", "Port", "Database", "SSLmode"}) {
      if (!text.Has(key)) continue;
      shown += fmt::format("{}{}={}", shown.empty() ? "" : "; ", key, text.Get(key));
    }
  } catch (const std::invalid_argument&) {
    return "an ODBC source whose text does not parse";
  }
  return shown.empty() ? "an ODBC source without a name" : shown;
}

OdbcInventory ReadOdbcInventory() {
  OdbcInventory inventory;
  const OdbcHandle environment = OdbcHandle::Environment();
  char name[256];
  char detail[1024];
  SQLSMALLINT name_length = 0;
  SQLSMALLINT detail_length = 0;
  const auto bytes = [](char* text) { return reinterpret_cast<SQLCHAR*>(text); };
  SQLUSMALLINT direction = SQL_FETCH_FIRST;
  while (SQL_SUCCEEDED(SQLDrivers(environment.get(), direction, bytes(name), sizeof name,
                                  &name_length, bytes(detail), sizeof detail, &detail_length))) {
    inventory.drivers.emplace_back(name);
    direction = SQL_FETCH_NEXT;
  }
  direction = SQL_FETCH_FIRST;
  while (
      SQL_SUCCEEDED(SQLDataSources(environment.get(), direction, bytes(name), sizeof name,
                                   &name_length, bytes(detail), sizeof detail, &detail_length))) {
    inventory.data_sources.emplace_back(name, detail);
    direction = SQL_FETCH_NEXT;
  }
  return inventory;
}

bool NamesSeveralServers(const std::string& odbc_string) {
  const ConnectionString text = ConnectionString::Parse(odbc_string);
  return text.Has("pqopt") && NamesSeveral(text);
}

void OpenOneOf(const std::string& odbc_string,
               const std::function<void(const std::string& odbc_string)>& open) {
  try {
    open(odbc_string);
  } catch (const SqlError& failure) {
    if (failure.number() != kCannotOpenNumber || !NamesSeveralServers(odbc_string)) throw;
    const std::string servers = ServersOf(ConnectionString::Parse(odbc_string));
    const std::size_t at = odbc_string.find(servers);
    const std::size_t comma = servers.find(',');
    if (at == std::string::npos) throw;
    std::string turned = odbc_string;
    turned.replace(at, servers.size(), servers.substr(comma + 1) + "," + servers.substr(0, comma));
    open(turned);
  }
}

}  // namespace kaunter::sql
