// The lines of a data export, and a file that is whole or not there.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace kaunter {

// Fields in their order, nothing behind the last. With `quote` each stands in double quotes and
// keeps its commas; without it commas are taken out, and only a field with a double quote in it is
// quoted, for a reader would take one at its beginning for the sign. Quotes within are doubled,
// line ends become blanks.
std::string ExportLine(const std::vector<std::string>& fields, bool quote);

// Writes beside the place and takes it when all is on the disk. Throws std::runtime_error that
// names the file and says why; nothing is left then, and what was there before stays as it was.
void WriteWholeFile(const std::string& path, const std::function<void(std::ostream&)>& write);

// `name` as a part of a file's name: signs that a folder does not take become "_".
std::string FileNameOf(const std::string& name);

}  // namespace kaunter
