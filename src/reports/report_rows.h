// The rows of a report for an office's own tables: each stands alone, so that it can be sorted and
// filtered without the headings that it had on paper.
#pragma once

#include <string>
#include <vector>

#include "reports/run_report.h"

namespace kaunter {

struct RowsColumn {
  std::string heading;
  CellKind kind = CellKind::text;
};

struct ReportRows {
  std::string title;
  std::vector<RowsColumn> columns;
  std::vector<std::vector<Value>> rows;
};

// First what the paper says above and below the rows: the columns of the groups, the outermost
// first, and those that their headings and labels name (of a letter its key); then the columns of
// the table. Totals are left out: a spreadsheet would add them up once more. A summary gives a row
// for each of its innermost groups, with the sums. A letter without a table gives all that its
// query gives.
ReportRows RowsOf(const ReportRun& run);

}  // namespace kaunter
