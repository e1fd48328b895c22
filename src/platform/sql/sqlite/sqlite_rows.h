// Fields of a SQLite row as values of the types their columns declare.
#pragma once

#include <sqlite3.h>

#include <vector>

#include "platform/sql/connection.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

// The columns of a result; names and types as the binder found them.
std::vector<Column> ColumnsOf(sqlite3_stmt* statement, const std::vector<ResultColumn>& declared);
// The current row. A field takes its type from the column, never from what the row happens to hold:
// SQLite keeps 150.00 as an integer.
std::vector<Value> RowOf(sqlite3_stmt* statement, const std::vector<Column>& columns,
                         const std::vector<ResultColumn>& declared);

}  // namespace kaunter::sql
