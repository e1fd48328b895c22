// PostgreSQL's failures in the numbers and words of SQL Server.
#pragma once

#include <string>
#include <string_view>

#include "platform/sql/connection.h"

namespace kaunter::sql {

// A prepared statement that no longer fits its tables; never told to anybody.
inline constexpr int kStalePlan = -1;

// `error` as OdbcSession threw it, with the server's words in it. `verb`: "INSERT" ..., or "".
SqlError PostgresFailure(const SqlError& error, const std::string& source, std::string_view verb);

}  // namespace kaunter::sql
