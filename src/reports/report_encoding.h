// Report files, and what else an office writes for the program, come from any editor: what their
// bytes mean is looked at before they are read.
// bytes mean is looked at before they are read.
#pragma once

#include <string>

namespace kaunter {

// The text of a file without a byte order mark. Throws std::runtime_error that names the encoding
// when it is not UTF-8, for a Chinese text read wrongly would print wrongly.
std::string Utf8Text(std::string bytes, const std::string& path);

}  // namespace kaunter
