// How a picker's rows look: the headings by which people know the columns, and the texts of the
// cells.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/connection.h"
#include "screen/grid.h"

namespace kaunter {

// The heading of a column of this name; the name itself where it reads well enough as it is.
Caption ColumnHeading(std::string_view column);

// A grid column for each column of the recordset. Scripts call it by the recordset's own name.
std::vector<GridColumn> PickerColumns(const std::vector<Column>& columns);

// Money as #,##0.00 (a rate keeps its further decimals), a date as dd-mm-yyyy, whatever the year
// but 1900; Null is empty.
std::string PickerCell(const Value& value, const Column& column);

// All rows, as cells.
std::vector<std::vector<std::string>> PickerRows(const Recordset& rows);

}  // namespace kaunter
