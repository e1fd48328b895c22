// What a report may send to the database: one statement that reads.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kaunter {

struct StatementFault {
  std::size_t at = 0;  // place in the statement
  std::string what;
};

// Nothing for one statement that begins with SELECT or WITH and has no word in it by which a
// statement writes, hands over or steers: `SELECT ... INTO` and a table function that runs a text
// elsewhere are among them. An engine that takes the text as it stands would run whatever follows.
std::optional<StatementFault> FaultOfReading(std::string_view statement);

// The statement with one more value among those that it gives.
std::string WithMoreRead(std::string_view statement, std::string_view value);

}  // namespace kaunter
