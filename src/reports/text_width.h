// How wide a text will be on paper, and how a paragraph breaks into lines. Worked out from the
// widths of the letters, so that a layout is the same on every machine and needs no screen.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

// In millimetres; of UTF-8.
double TextWidth(std::string_view text, double points, bool bold);
// The height of a line of this size, the gap to the next one included.
double LineHeight(double points);
// Lines no wider than `width` millimetres, broken at blanks and between Chinese signs; a word that
// is wider than a line is broken where the line ends. A line end in the text ends a line; several
// blanks count as one. No line for an empty text.
std::vector<std::string> WrapText(std::string_view text, double width, double points, bool bold);
// The least width in which WrapText breaks no word.
double WidestWord(std::string_view text, double points, bool bold);

}  // namespace kaunter
