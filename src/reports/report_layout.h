// From the rows of a report to its pages: heading and fields, pictures and charts, the table with
// its column heads repeated on each page, headings and subtotals of the groups, the grand total,
// and a foot with the page number.
#pragma once

#include "platform/sql/connection.h"
#include "reports/report_document.h"
#include "reports/report_file.h"
#include "reports/report_progress.h"
#include "reports/report_texts.h"

namespace kaunter {

// Of a list: the empty edge of the sheet, and the labels of its fields.
inline constexpr double kListMargin = 15;
inline constexpr double kFieldPoints = 9;
inline constexpr double kFieldLabelWidth = 34;

// A letter is laid out as letter_layout.h tells. Throws std::runtime_error when a column of the
// file is not among the rows' columns.
ReportDocument LayOut(const ReportFile& file, const ReportHeading& heading, const Recordset& rows,
                      const ReportProgress& progress = {});

}  // namespace kaunter
