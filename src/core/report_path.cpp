#include "core/report_path.h"

#include <algorithm>
#include <string_view>

#include "core/values.h"
#include "platform/installation.h"

namespace kaunter {

namespace {

ReportPath FindAt(const std::string& path) {
  for (std::string_view ending : {"C.rpt", "C2.rpt", "C3.rpt", "CS.rpt"}) {
    if (!path.ends_with(ending)) continue;
    const std::string both =
        path.substr(0, path.size() - ending.size()) + std::string(ending.substr(1));
    if (!std::filesystem::exists(path) && std::filesystem::exists(both)) return {both, true};
    return {path, true};
  }
  return {path, false};
}

}  // namespace

ReportPath FindReportFile(const std::string& path) {
  const std::filesystem::path wanted(path);
  ReportPath own = FindAt((wanted.parent_path() / kOwnReports / wanted.filename()).string());
  if (std::filesystem::exists(own.path)) return own;
  ReportPath beside = FindAt(path);
  const std::string& shipped = ThisInstallation().files;
  if (shipped.empty() || std::filesystem::exists(beside.path)) return beside;
  return FindAt((std::filesystem::path(shipped) / wanted.filename()).string());
}

std::string ChineseReportName(const std::string& file) {
  const auto dot = file.rfind('.');
  return file.substr(0, dot) + "C" + file.substr(dot);
}

bool ReportFileExists(const std::string& path) {
  return std::filesystem::exists(FindReportFile(path).path);
}

std::vector<std::filesystem::path> ReportFilesOf(const std::filesystem::path& folder,
                                                 std::error_code& error) {
  std::vector<std::filesystem::path> files;
  for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end;
       at.increment(error)) {
    std::error_code unknown;
    if (Lower(at->path().extension().string()) == ".rpt" && !at->is_directory(unknown)) {
      files.push_back(at->path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace kaunter
