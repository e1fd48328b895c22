#include "platform/sql/open_rows.h"

#include <fmt/format.h>

#include "platform/sql/odbc/engine_index.h"

namespace kaunter {

std::string OpenDay(const OpenRowsOf& rows, std::string_view alias) {
  return fmt::format("(case when {0}.{2}-isnull({0}.{3},0)>0 then {0}.{1} end)", alias, rows.day,
                     rows.amount, rows.paid);
}

void IndexOpenRows(Connection& connection, const OpenRowsOf& rows) {
  // Word for word what the above becomes: the server knows it again by that. Of all rows, since it
  // counts with nothing that it has learnt of some.
  const std::string day = fmt::format(
      "(CASE WHEN (round(((\"{1}\" - coalesce(\"{2}\", 0.00)))::numeric, 2) > 0) THEN \"{0}\" END)",
      rows.day, rows.amount, rows.paid);
  sql::MakeEngineIndex(connection, rows.table, sql::kOpenRows, fmt::format("({})", day));
}

}  // namespace kaunter
