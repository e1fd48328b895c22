// Reports as files: PDF, and of a listing its rows as CSV and as a workbook. A file is written
// beside its place and takes it when it is whole: a full disk or a stop leaves the file that was
// there before.
#pragma once

#include <string>
#include <vector>

#include "reports/report_document.h"
#include "reports/report_progress.h"

namespace kaunter {

struct ReportJob;
struct ReportRun;

// All throw std::runtime_error that names the file and says why it cannot be written.
// The PDF needs a QGuiApplication.
void WritePdf(const ReportDocument& document, const std::string& path,
              const ReportProgress& progress = {});
void WriteCsv(const ReportRun& run, const std::string& path);
void WriteXlsx(const ReportRun& run, const std::string& path);

// Runs the report and writes its PDF; of one with a table also its CSV and its
// workbook (.xlsx), under the same name. Gives what had to be left out.
std::vector<Caption> RenderReport(const ReportJob& job, const std::string& pdf_path);

}  // namespace kaunter
