// From SQLite's failures to the server's numbers, in words that a support person can act on.
#pragma once

#include <sqlite3.h>

#include <string>

#include "platform/sql/connection.h"

namespace kaunter::sql {

// The error of the last call on `db`, whose extended code is `code`. `path` is the database file,
// `verb` what was being done ("INSERT", "UPDATE", "").
SqlError SqliteFailure(sqlite3* db, int code, const std::string& path, const std::string& verb);
// The same for a failure that somebody else reports.
SqlError SqliteFailure(int code, std::string message, const std::string& path,
                       const std::string& verb);

// The file whose lock tells that this database is being copied to another engine.
std::string MovingSignOf(const std::string& path);

}  // namespace kaunter::sql
