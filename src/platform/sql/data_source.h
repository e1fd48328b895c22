// Opening connections: from a connection string ("Provider=MSDASQL.1;Password=...;Data
// Source=office;...") to an engine.
//
// The data source name is looked up in the local data sources first (the embedded engine, or an
// ODBC connection string of its own), then among the machine's ODBC sources.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/sql/connection.h"

namespace kaunter {

// "key=value;..." with keys looked up without regard to case. A value may stand in double quotes or
// braces.
class ConnectionString {
 public:
  // Throws std::invalid_argument that names the place for a text that does not parse.
  static ConnectionString Parse(std::string_view text);
  std::string Get(std::string_view key) const;  // "" when absent
  bool Has(std::string_view key) const;
  const std::map<std::string, std::string>& pairs() const { return pairs_; }  // keys in lower case

 private:
  std::map<std::string, std::string> pairs_;
};

// One local data source: an embedded database file, or text for an ODBC driver manager
// ("Driver=...;Server=...", or "DSN=...").
struct DataSource {
  enum class Kind { kEmbedded, kOdbc };
  Kind kind = Kind::kEmbedded;
  std::string target;  // kEmbedded: path of the file; kOdbc: connection string
};

// Names without regard to case.
class DataSources {
 public:
  void Add(std::string_view name, DataSource source);
  std::optional<DataSource> Find(std::string_view name) const;

 private:
  std::map<std::string, DataSource> sources_;
};

// Opens `connection_string` under the connection name `name` ("MainConn"). The catalog ("Initial
// Catalog") decides the file of an embedded source when it differs from the source's own:
// "<name>-Logs" is the file beside it with "-Logs" behind its stem. Throws SqlError (4060 when the
// database cannot be opened, with the path or source and what to do).
std::unique_ptr<Connection> OpenConnection(std::string_view name,
                                           std::string_view connection_string,
                                           const DataSources& sources, const Clock& clock);

// The file of an embedded source that `connection_string` leads to; nothing for any other source.
std::optional<std::string> EmbeddedFile(std::string_view connection_string,
                                        const DataSources& sources);

// The embedded engine on one file; made when missing or empty (with no tables) if `create`. Refuses
// a file that is no database (26 as 4060), an unreadable one, one written by a newer Kaunter, and a
// missing or empty one whose log still lies beside it: saves that were told stand there.
std::unique_ptr<Connection> OpenSqlite(std::string_view name, const std::string& path, bool create,
                                       const Clock& clock);

// Makes a file that is missing, or is empty, with what `fill` puts into it, whole or not at all; a
// file that holds something stays as it is. `fill` works on another name than `path`.
void MakeSqlite(std::string_view name, const std::string& path, const Clock& clock,
                const std::function<void(Connection&)>& fill);

namespace sql {
// Refuses (SqlError 4060) what cannot be opened as a database, or made when `create`.
void CheckSqliteFile(const std::string& path, bool create);
}  // namespace sql

// Through unixODBC. `odbc_string` is what SQLDriverConnect takes. The DBMS name that the driver
// reports picks the dialect: SQL Server gets the text untouched.
std::unique_ptr<Connection> OpenOdbc(std::string_view name, const std::string& odbc_string,
                                     const Clock& clock);

}  // namespace kaunter
