// The text that SQLDriverConnect takes, made from the connection string of the office.
//
// The office writes its strings for OLE DB ("Provider=MSDASQL.1;Password=...;User ID=...;Data
// Source=...;Initial Catalog=..."). MSDASQL.1 stands for an ODBC source; SQLOLEDB.1 for an SQL
// Server spoken to directly, for which a driver is chosen among the installed ones.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/sql/data_source.h"

namespace kaunter::sql {

// What the machine's driver manager knows.
struct OdbcInventory {
  std::vector<std::string> drivers;                               // names for "Driver="
  std::vector<std::pair<std::string, std::string>> data_sources;  // name, its driver
};
OdbcInventory ReadOdbcInventory();

// The best of the drivers for a kind of server; "" when there is none.
std::string SqlServerDriver(const OdbcInventory& inventory);
std::string PostgresqlDriver(const OdbcInventory& inventory);
bool NamesFreeTds(std::string_view driver);

// `local_text` is the ODBC text of the local data source that the string names ("" when it names
// none). What that text says itself about user, password and database holds; a catalogue
// "<name>-Logs" takes the database beside the text's own. Where the driver is SQLite's, a database
// is a file and the office's catalogue never names one: the audit tables are in the file with
// "-Logs" behind its stem, or in the source "<source>-Logs". Throws SqlError 4060 with what to do
// for a provider that ODBC cannot stand in for, a string without a data source, and when no driver
// for SQL Server is installed; std::invalid_argument for a local text that does not parse.
std::string OdbcString(const ConnectionString& office, std::string_view local_text,
                       const OdbcInventory& inventory);

// What lets a driver of PostgreSQL notice within half a minute that its line is dead, sooner where
// another of `several` servers may take over, and find the one of them that leads: a value of
// "pqopt". OdbcString adds it to a text of a driver that names none.
std::string_view LineOptions(bool several);

// An ODBC string of the office, with another database.
std::string OdbcWithDatabase(const ConnectionString& text, std::string_view database);

// Calls `open` with an ODBC string, and where that throws 4060 and the string names several servers
// of PostgreSQL, once more with the first of them named last. The driver looks for the one that
// leads, but not past one that refuses the call for a trouble of its own, such as a full disk.
void OpenOneOf(const std::string& odbc_string,
               const std::function<void(const std::string& odbc_string)>& open);
bool NamesSeveralServers(const std::string& odbc_string);

// The string without account and password, for people: "DSN=office; Database=main".
std::string OdbcSourceName(std::string_view odbc_string);

// The first of the keys that has a value: drivers write keys of one meaning differently.
std::string FirstOf(const ConnectionString& text, std::initializer_list<const char*> keys);

// A value as an ODBC string holds it: in braces when it has `;`, `{`, `}` or blanks at an end.
std::string OdbcValue(std::string_view value);

}  // namespace kaunter::sql
