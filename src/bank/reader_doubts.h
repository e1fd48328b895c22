// Why the money of a line may have been taken already, under another name or over the counter. The
// person is told before it is taken, and decides; what has come up since then stops it.
#pragma once

#include <string>
#include <vector>

#include "bank/reader_row.h"
#include "platform/sql/connection.h"

namespace kaunter {

struct ReaderDoubt {
  std::string about;  // the same for the same doubt
  Caption text;
};

// On the day that the line would pay; the gravest first. Throws SqlError.
std::vector<ReaderDoubt> DoubtsOf(Connection& main, const ReaderRow& row, const DateTime& day);

}  // namespace kaunter
