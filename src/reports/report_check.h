// Reads report files without printing: an office that changes its papers learns of a mistake before
// a customer stands at the counter.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kaunter {

struct ReportCheck {
  std::size_t files = 0;
  std::vector<std::string> faults;  // each with its file and line, in the order of the files
};

// Every .rpt file of the folder and of its folder OwnReports, in both languages and in each branch
// of its "if" lines. Throws std::runtime_error when the folder cannot be read.
ReportCheck CheckReports(const std::string& folder);

}  // namespace kaunter
