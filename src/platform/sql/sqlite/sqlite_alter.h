// ALTER TABLE ... ALTER COLUMN for SQLite, which has no such statement: the declaration is
// rewritten in the schema and the column's values are brought to the new type.
#pragma once

#include <sqlite3.h>

#include <string>

#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

// Runs inside a transaction or savepoint of the caller, who rolls back on a failure. Throws
// SqlError when there is no such column (4924), when a key rests on it (5074), or when a value does
// not fit.
void AlterColumnOf(sqlite3* db, const std::string& path, const Catalogue& catalogue,
                   const AlterColumn& change);

// The CREATE TABLE text with the declaration of one column replaced; its DEFAULT stays. "" when the
// column is not found.
std::string WithColumnDeclared(const std::string& create_table, const std::string& column,
                               const std::string& declaration);

}  // namespace kaunter::sql
