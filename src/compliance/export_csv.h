// The lines of a data export.
#pragma once

#include <string>
#include <vector>

namespace kaunter {

// Fields in their order, nothing behind the last. With `quote` each stands in double quotes and
// keeps its commas; without it commas are taken out, and only a field with a double quote in it is
// quoted, for a reader would take one at its beginning for the sign. Quotes within are doubled,
// line ends become blanks.
std::string ExportLine(const std::vector<std::string>& fields, bool quote);

}  // namespace kaunter
