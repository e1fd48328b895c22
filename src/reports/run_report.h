// Runs a report: reads its file, queries its rows by the selection formula, and lays them out.
#pragma once

#include <string>

#include "reports/report_document.h"
#include "reports/report_file.h"
#include "reports/report_layout.h"
#include "screen/report_job.h"

namespace kaunter {

// A report that has been run: its pages, and the rows for a CSV of the very same figures.
struct ReportRun {
  ReportFile file;
  ReportHeading heading;
  Recordset rows;
  ReportDocument document;
};

// Throws SqlError or std::runtime_error that says which file, formula or statement is at fault.
// The measure tells which pictures can be drawn; without one all are taken to be whole.
ReportRun RunWholeReport(const ReportJob& job, const ReportProgress& progress = {},
                         const PictureMeasure& measure = {});
// "Customer;Tan Ah Kow;True" taken apart: name and value.
std::pair<std::string, std::string> SplitParameter(const std::string& field);

}  // namespace kaunter
