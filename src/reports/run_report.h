// Runs a report: reads its file, queries its rows by the selection formula, and lays them out.
#pragma once

#include <string>

#include "reports/report_document.h"
#include "screen/report_job.h"

namespace kaunter {

// Throws SqlError or std::runtime_error that says which file, formula or statement is at fault.
ReportDocument RunReport(const ReportJob& job);
// The rows as CSV, a heading line first, values as the report shows them (money without commas).
std::string ReportToCsv(const ReportJob& job);
// "Customer;Tan Ah Kow;True" taken apart: name and value.
std::pair<std::string, std::string> SplitParameter(const std::string& field);

}  // namespace kaunter
