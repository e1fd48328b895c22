// The order in which a table shows the rows of its grid, when a person sorts it by a column.
#pragma once

#include <vector>

namespace kaunter {

class Grid;

// A list that is only read may be sorted; one whose cells are typed in would move the row from
// under the hand. Totals must stand at the end, where they stay.
bool MaySort(const Grid& grid);

// Row of the grid by row of the table. Amounts and dates by their value, texts by letters without
// regard to case with the numbers in them by value ("-9" before "-10"); blanks first; equal rows
// keep their order.
std::vector<int> SortedRows(const Grid& grid, int column, bool descending);

}  // namespace kaunter
