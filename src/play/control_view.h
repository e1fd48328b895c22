// How a control looks as text: what `show`, `describe` and the expectations read.
#pragma once

#include <string>
#include <vector>

#include "screen/screen.h"

namespace kaunter {

// The text that a person sees in the control: the text of a box or list, "1" or "0" of a tick, the
// caption of a button or frame. Grids have none.
std::string SeenText(const Control& control);

// SeenText, but a password box shows stars: for what goes to standard output.
std::string PrintedText(const Control& control);

// `NAME KIND "caption" "text" enabled=1 visible=1 locked=0`, with rows= of a grid, items= of a
// list.
std::string DescribeControl(const Control& control);

// Numbers of the columns that a person sees.
std::vector<int> VisibleColumns(const Grid& grid);
// Header texts, or the cells of a row, of these columns, parted by " | ".
std::string HeaderLine(const Grid& grid, const std::vector<int>& columns);
std::string RowLine(const Grid& grid, int row, const std::vector<int>& columns);
// A line of cells with the blanks around each taken away; "" stands for an empty cell. Two lines
// that say the same are equal in this form.
std::string NormalRow(const std::string& line);

}  // namespace kaunter
