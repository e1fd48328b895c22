// What the payment reader leaves behind: the paper of what was taken and what failed, and the file
// of the lines that failed.
#pragma once

#include <string>
#include <vector>

#include "bank/reader_row.h"
#include "core/session.h"
#include "screen/desk.h"

namespace kaunter {

inline constexpr const char* kReaderPaper = "PaymentReader.rpt";

// What became of a line, in the order of the paper.
enum class ReaderFate { taken = 1, failed, left_out, done_before };

struct ReaderPaperLine {
  const ReaderRow* row = nullptr;
  ReaderFate fate = ReaderFate::failed;
  std::string why;
};

// Prints all lines, each with its fate. `source` is what they were read from. Throws SqlError.
void PrintReaderPaper(Session& session, Desk& desk, const std::string& source,
                      const std::vector<ReaderPaperLine>& lines);

// "<name>-failed-ddmmyy-hhnnss<ending>": no file of lines has the name of another one, for a line
// goes by the name of its file.
std::string FailedLinesName(const std::string& path, const DateTime& now);

}  // namespace kaunter
