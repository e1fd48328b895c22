// Where a report file lies. A report of two languages goes by two names, LoanMastList.rpt and
// LoanMastListC.rpt; one file may serve both.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace kaunter {

// The folder in AppPath for the office's own report files, which no update touches. One of
// the name of a file of the program takes its place.
inline constexpr const char* kOwnReports = "OwnReports";

struct ReportPath {
  std::string path;      // of the file to read; the path that was asked for when there is none
  bool chinese = false;  // the name asked for is that of the Chinese paper
};

// The file of this name: the office's own in OwnReports, one that lies at the path, or the one that
// came with the program; for a Chinese name without a file
// of its own, the file of both languages. The letter stands before the ending, or before the sign
// of an option: LoanSchListC2.rpt.
ReportPath FindReportFile(const std::string& path);
// The name of the Chinese paper: LoanMastListC.rpt for LoanMastList.rpt.
std::string ChineseReportName(const std::string& file);
bool ReportFileExists(const std::string& path);
// The report files (.rpt) that lie in the folder itself, in their order.
std::vector<std::filesystem::path> ReportFilesOf(const std::filesystem::path& folder,
                                                 std::error_code& error);

}  // namespace kaunter
