// The rows of a report as CSV, for an office's own tables.
#pragma once

#include <string>

#include "reports/run_report.h"

namespace kaunter {

// A heading line first, then the rows as report_rows.h tells, values as the report shows them but
// amounts without commas; UTF-8 with the sign at the front by which spreadsheets know it. A text
// that a spreadsheet would take for a formula has an apostrophe before it.
std::string ReportToCsv(const ReportRun& run);

}  // namespace kaunter
