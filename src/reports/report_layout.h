// From the rows of a report to its pages: heading and fields, the table with its column heads
// repeated on each page, subtotals of the groups, the grand total, and a foot with the page number.
#pragma once

#include <map>
#include <string>

#include "platform/sql/connection.h"
#include "reports/report_document.h"
#include "reports/report_file.h"

namespace kaunter {

struct ReportHeading {
  std::string company;                            // above the title; may be empty
  std::string subtitle;                           // what was selected; may be empty
  std::string printed_at;                         // foot of each page
  std::map<std::string, std::string> parameters;  // by name without regard to case, lower case
};

// Throws std::runtime_error when a column of the file is not among the rows' columns.
ReportDocument LayOut(const ReportFile& file, const ReportHeading& heading, const Recordset& rows);

// The text of a value as a column of this kind shows it.
std::string ShowCell(const Value& value, CellKind kind);

}  // namespace kaunter
