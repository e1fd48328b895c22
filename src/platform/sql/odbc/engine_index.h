// Indexes of PostgreSQL's own kinds, which no statement of T-SQL can ask for.
#pragma once

#include <string>
#include <string_view>

#include "platform/sql/connection.h"

namespace kaunter::sql {

// Their names, behind the table's name and a point: no index that a statement asks for has one.
inline constexpr std::string_view kInsideTexts = "Inside";
inline constexpr std::string_view kOpenRows = "Open";
// A condition for statements to PostgreSQL: the index of this name is none of them.
std::string IsNoEngineIndex(std::string_view name);

// Makes the index `name` of the table where it is missing; `rest` stands behind ON and the table,
// `before` is run ahead of it. False on another engine. Throws SqlError where it cannot be made.
bool MakeEngineIndex(Connection& connection, std::string_view table, std::string_view name,
                     const std::string& rest, const std::string& before = "");

}  // namespace kaunter::sql
