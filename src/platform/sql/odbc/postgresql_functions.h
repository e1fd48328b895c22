// What the schema "kaunter_sql" of a PostgreSQL database holds: the collation, the functions of
// functions.h that statements call there, and the views that the catalogue is read from.
//
// Texts go in and out as bpchar. Failures are raised with the server's number in their SQLSTATE:
// K0245 is 245.
#pragma once

#include <string_view>

namespace kaunter::sql {

// Raised with every change of the text; a database with an older number is brought up to it.
inline constexpr int kPostgresFunctionsVersion = 2;

// Statements for PostgreSQL that make the schema, or bring it up to date.
std::string_view PostgresFunctions();

}  // namespace kaunter::sql
