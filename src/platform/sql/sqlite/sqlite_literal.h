// A literal of a statement on its way into a prepared statement, by the converter that the binder
// chose for its shape.
#pragma once

#include <sqlite3.h>

#include <string_view>

#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

// Binds parameter `index` (from 1). The literal's text must live until the statement is reset.
// Throws SqlError with the server's number for a literal that does not convert (8114, 245, 241,
// 242, 2628, 8115), naming the column where it is known.
void BindLiteral(sqlite3_stmt* statement, int index, std::string_view literal,
                 const Parameter& parameter);

}  // namespace kaunter::sql
