// Bars of a listing's sums, drawn above or below its table.
#pragma once

#include <string>
#include <vector>

#include "platform/money.h"
#include "platform/sql/connection.h"
#include "reports/report_document.h"
#include "reports/report_file.h"
#include "reports/report_texts.h"

namespace kaunter {

struct ChartBar {
  std::string label;
  Money value;
};

// A bar for each value of the label column: months and years in their order, others in the order of
// the rows. Of too many the largest stay, and one bar holds the others. Or a bar for each of the
// chart's columns, under the column's heading.
std::vector<ChartBar> ChartBars(const ReportChart& chart, const ReportFile& file,
                                const ReportTexts& texts, const Recordset& rows);
double ChartHeight(std::size_t bars);
void DrawChart(ReportPage& page, double x, double y, double width, const std::string& title,
               const std::vector<ChartBar>& bars);

}  // namespace kaunter
