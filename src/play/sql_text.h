// Rows of the database as a script prints and compares them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/connection.h"

namespace kaunter {

// True unless the batch does nothing but read.
bool Writes(std::string_view sql);

// Null is empty, money has two decimals (more only when it carries them) without commas, a date is
// yyyy-mm-dd with the time when it is not midnight.
std::string SqlText(const Value& value);

// Fields parted by tabs; tabs, line breaks and backslashes inside a field stand escaped.
std::string SqlRowLine(const std::vector<Value>& row);

}  // namespace kaunter
