#include "platform/sql/sqlite/sqlite_error.h"

#include <fmt/format.h>

#include <string_view>

#include "platform/disk.h"
#include "platform/sql/sql_error.h"
#include "platform/sql/sqlite/sqlite_functions.h"

namespace kaunter::sql {
namespace {

// "UNIQUE constraint failed: LoanMast.LoanID, LoanMast.SchID" -> table and columns.
struct Place {
  std::string table;
  std::string columns;
};

Place PlaceOf(const std::string& message) {
  Place place;
  const std::size_t colon = message.find(": ");
  if (colon == std::string::npos) return place;
  std::string_view rest = std::string_view(message).substr(colon + 2);
  while (!rest.empty()) {
    const std::size_t comma = rest.find(", ");
    const std::string_view item = rest.substr(0, comma);
    const std::size_t dot = item.rfind('.');
    if (dot == std::string_view::npos) {
      place.columns = item;  // "index 'name'"
    } else {
      place.table = item.substr(0, dot);
      if (!place.columns.empty()) place.columns += ", ";
      place.columns += item.substr(dot + 1);
    }
    if (comma == std::string_view::npos) break;
    rest.remove_prefix(comma + 2);
  }
  return place;
}

SqlError Constraint(int code, const std::string& message, const std::string& verb) {
  const Place place = PlaceOf(message);
  const std::string fails = verb.empty() ? "The statement fails." : verb + " fails.";
  switch (code) {
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return {2627,
              fmt::format("Violation of PRIMARY KEY constraint. Cannot insert duplicate key in "
                          "object '{}' ({}). {}",
                          place.table, place.columns, fails)};
    case SQLITE_CONSTRAINT_UNIQUE:
      return {2601, fmt::format("Cannot insert duplicate key row in object '{}' with a unique "
                                "index ({}). {}",
                                place.table, place.columns, fails)};
    case SQLITE_CONSTRAINT_NOTNULL:
      return {515, fmt::format("Cannot insert the value NULL into column '{}', table '{}'; column "
                               "does not allow nulls. {}",
                               place.columns, place.table, fails)};
    case SQLITE_CONSTRAINT_TRIGGER:
      return {3906, message};  // of a database that was sealed; the words are the seal's
    default:
      return {547,
              fmt::format("The statement conflicted with a constraint: {}. {}", message, fails)};
  }
}

// What SQLite finds at prepare; most of it the binder has refused before.
SqlError Statement(const std::string& message) {
  static constexpr std::pair<std::string_view, int> kNumbers[] = {
      {"no such table", 208},          {"no such column", 207},
      {"has no column named", 207},    {"ambiguous column name", 209},
      {"already exists", 2714},        {"already another table or index", 1913},
      {"duplicate column name", 2705}, {"integer overflow", 8115},
      {"no such index", 3701},         {"near ", 102},
      {"syntax error", 102},           {"too many", 1023},
      {"non-constant default", 4901},  {"NOT NULL column with default value NULL", 4901},
      {"generated column", 271},       {"no such function", 195},
  };
  for (const auto& [part, number] : kNumbers) {
    if (message.find(part) != std::string::npos) {
      return {number, fmt::format("The statement cannot run: {}.", message)};
    }
  }
  return {50000, fmt::format("The statement cannot run: {}.", message)};
}

bool IsBeingMoved(const std::string& path) {
  sqlite3* db = nullptr;
  const bool opened =
      sqlite3_open_v2(MovingSignOf(path).c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK;
  const bool locked =
      opened && sqlite3_exec(db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr) == SQLITE_BUSY;
  sqlite3_close_v2(db);
  return locked;
}

}  // namespace

std::string MovingSignOf(const std::string& path) { return path + "-moving"; }

SqlError SqliteFailure(sqlite3* db, int code, const std::string& path, const std::string& verb) {
  // The files that lie beside the database cannot grow either, and SQLite tells that as an error of
  // the disk or of the opening.
  const int primary = code & 0xFF;
  if (db != nullptr && (primary == SQLITE_IOERR || primary == SQLITE_CANTOPEN) &&
      TellsNoRoom(sqlite3_system_errno(db))) {
    code = SQLITE_FULL;
  }
  return SqliteFailure(code, db == nullptr ? sqlite3_errstr(code) : sqlite3_errmsg(db), path, verb);
}

SqlError SqliteFailure(int code, std::string message, const std::string& path,
                       const std::string& verb) {
  switch (code & 0xFF) {
    case SQLITE_CONSTRAINT:
      return Constraint(code, message, verb);
    case SQLITE_BUSY:
      if (code == SQLITE_BUSY_SNAPSHOT) {
        return {1205, fmt::format("The transaction was chosen as the deadlock victim: another "
                                  "desktop has saved to '{}' meanwhile. Try again.",
                                  path)};
      }
      [[fallthrough]];
    case SQLITE_LOCKED:
      if (IsBeingMoved(path)) return {1222, BeingMovedWords(path)};
      return {1222, fmt::format("Lock request time out period exceeded: another desktop is saving "
                                "to '{}'. Try again.",
                                path)};
    case SQLITE_FULL:
      return {1105, fmt::format("There is no room left for the database '{}'. Free space on the "
                                "disk.",
                                path)};
    case SQLITE_READONLY:
      return {3906, fmt::format("The database '{}' is read-only: this user may not write the file "
                                "or its folder.",
                                path)};
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return {4060, fmt::format("Cannot open the database '{}': {}. Check that the file and its "
                                "folder can be read and written by this user.",
                                path, message)};
    case SQLITE_NOTADB:
      return {4060, fmt::format("Cannot open the database '{}': the file is no database, or its "
                                "beginning is damaged. Name another file, or go back to the last "
                                "backup; this one was left untouched.",
                                path)};
    case SQLITE_CORRUPT:
      return {824, fmt::format("The database '{}' is damaged ({}). Stop working with it, keep the "
                               "file, and go back to the last backup.",
                               path, message)};
    case SQLITE_IOERR:
      return {823, fmt::format("The disk of the database '{}' reported an error ({}, code {}).",
                               path, message, code)};
    case SQLITE_NOMEM:
      return {701, "There is insufficient memory to run the statement."};
    case SQLITE_TOOBIG:
      return {8152, fmt::format("The statement or a value is too long: {}.", message)};
    default:
      break;
  }
  if (const int number = TakeErrorNumber(&message)) return {number, message};
  return Statement(message);
}

}  // namespace kaunter::sql
