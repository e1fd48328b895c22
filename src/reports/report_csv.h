// The rows of a report as CSV, for an office's own tables.
#pragma once

#include <string>

#include "reports/run_report.h"

namespace kaunter {

// A heading line first, then the rows as report_rows.h tells, values as the report shows them but
// amounts without commas; UTF-8 with the sign at the front by which spreadsheets know it. Texts are
// harmless.
std::string ReportToCsv(const ReportRun& run);

// The text with an apostrophe before it where a spreadsheet would reckon it ("+60123456789",
// "=...") instead of showing what was typed.
std::string Harmless(const std::string& text);

}  // namespace kaunter
