// What a person would find wrong at a first look at a window: something cut, something that
// scrolls.
#pragma once

#include <string>
#include <vector>

namespace kaunter {

class ScreenDialog;

// A line for each fault of the window as it is shown now, on the page that is open: contents that
// scroll, captions and buttons without room for their text; dates, amounts, keys and names that are
// cut, in boxes and tables; what reaches out of its place; boxes that Tab does not reach. Empty
// when nothing is wrong.
std::vector<std::string> LookProblems(ScreenDialog& dialog);

}  // namespace kaunter
