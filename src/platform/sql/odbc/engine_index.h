// Indexes of PostgreSQL's own kinds, which no statement of T-SQL can ask for.
#pragma once

#include <string>
#include <string_view>

#include "platform/sql/connection.h"

namespace kaunter::sql {

// Makes the index `name` of the table where it is missing; `rest` stands behind ON and the table,
// `before` is run ahead of it. False on another engine. Throws SqlError where it cannot be made.
bool MakeEngineIndex(Connection& connection, std::string_view table, std::string_view name,
                     const std::string& rest, const std::string& before = "");

}  // namespace kaunter::sql
