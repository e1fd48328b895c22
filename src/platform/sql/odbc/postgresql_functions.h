// What the schema "kaunter_sql" of a PostgreSQL database holds: the collation, the functions of
// functions.h that statements call there, and the views that the catalogue is read from.
//
// Texts go in and out as bpchar. Failures are raised with the server's number in their SQLSTATE:
// K0245 is 245. A text as bpchar loses its trailing blanks when it becomes another type of text;
// k_raw keeps them. The collation of statements knows no search in texts, hence "PLAIN" where one
// is done.
#pragma once

#include <string>
#include <string_view>

namespace kaunter::sql {

// Raised with every change of the text; a database with an older number is brought up to it.
inline constexpr int kPostgresFunctionsVersion = 5;

// Statements for PostgreSQL that make the schema, or bring it up to date.
std::string PostgresFunctions();

// Its parts, a file each.
std::string_view PostgresNumberFunctions();
std::string_view PostgresTextFunctions();
std::string_view PostgresDateFunctions();
std::string_view PostgresCatalogueViews();

}  // namespace kaunter::sql
