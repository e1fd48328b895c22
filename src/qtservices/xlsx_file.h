// The rows of a report as a workbook of one sheet.
#pragma once

#include <string>

#include "reports/report_rows.h"

namespace kaunter {

// Figures are numbers, dates are dates; a text stays a text whatever it begins with. The heading
// line stays in sight and filters. Throws std::runtime_error that names the file and says why it
// cannot be written; what was there before then stays as it was.
void WriteXlsx(const ReportRows& rows, const std::string& path);

}  // namespace kaunter
