#include "reports/report_check.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "core/report_path.h"
#include "core/values.h"
#include "reports/report_file.h"
#include "reports/report_layout.h"
#include "reports/report_table.h"
#include "reports/text_width.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

using Parameters = std::map<std::string, std::string>;

constexpr std::size_t kMostBranches = 4096;
constexpr double kUnseenShrink = 0.9;

void AddFilesOf(const fs::path& folder, std::vector<std::string>& files) {
  std::error_code error;
  for (const fs::path& file : ReportFilesOf(folder, error)) files.push_back(file.string());
  if (error) {
    throw std::runtime_error(
        fmt::format("the folder {} cannot be read: {}", folder.string(), error.message()));
  }
}

class FileCheck {
 public:
  explicit FileCheck(std::string path) : path_(std::move(path)) {}

  std::vector<std::string> Run() {
    for (const bool chinese : {false, true}) {
      Read(chinese, {});
      // A branch that is read may ask further parameters.
      for (std::size_t known = 0; known != Named();) {
        known = Named();
        for (const Parameters& parameters : Branches()) Read(chinese, parameters);
      }
    }
    return std::move(told_);
  }

 private:
  std::size_t Named() const {
    std::size_t count = 0;
    for (const auto& [name, values] : asked_) count += values.size();
    return count;
  }

  // Each parameter with each value that is asked for, and with none of them.
  std::vector<Parameters> Branches() {
    std::vector<Parameters> branches = {{}};
    for (const auto& [name, values] : asked_) {
      if (name == "language") continue;
      std::vector<Parameters> more;
      for (const Parameters& branch : branches) {
        Parameters other = branch;
        for (const std::string& value : values) {
          other[name] = value;
          more.push_back(other);
        }
        other[name] = "?";
        more.push_back(other);
      }
      if (more.size() > kMostBranches) {
        Tell(fmt::format("{}: its \"if\" lines ask for too much to try all their branches.",
                         FileLine{path_}.Told()));
        break;
      }
      branches = std::move(more);
    }
    return branches;
  }

  void Read(bool chinese, const Parameters& parameters) {
    ReportFindings findings;
    std::string last;
    try {
      CheckRooms(ReportFile::Read(path_, {chinese, parameters, &findings}));
    } catch (const std::runtime_error& fault) {
      last = fault.what();
    }
    for (const std::string& fault : findings.faults) Tell(fault);
    if (!last.empty()) Tell(last);
    for (const auto& [name, values] : findings.asked) {
      asked_[name].insert(values.begin(), values.end());
    }
  }

  // A word that its column has no room for is printed in smaller letters: a little is not seen.
  void CheckRooms(const ReportFile& file) {
    const double margin = file.IsLetter() ? file.letter.margin : kListMargin;
    const std::vector<double> rooms = ColumnRooms(file, file.width_mm - 2 * margin);
    for (std::size_t i = 0; i < rooms.size(); ++i) {
      const ReportColumn& column = file.columns[i];
      if (HeadingShrink(column.heading, rooms[i]) >= kUnseenShrink) continue;
      Tell(
          fmt::format("{}: the heading \"{}\" has a word that is wider than its column, which has "
                      "{:.0f} mm. Give the column a larger share, or say it shorter.",
                      column.line.Told(), column.heading, rooms[i]));
    }
    for (const ReportField& field : file.fields) {
      if (TextWidth(field.label, kFieldPoints, false) <= kFieldLabelWidth) continue;
      Tell(fmt::format(
          "{}: the label \"{}\" is wider than the {:.0f} mm that it has. Say it shorter.",
          field.line.Told(), field.label, kFieldLabelWidth));
    }
  }

  // Once, in however many branches it is met.
  void Tell(const std::string& fault) {
    if (std::find(told_.begin(), told_.end(), fault) == told_.end()) told_.push_back(fault);
  }

  std::string path_;
  std::vector<std::string> told_;
  std::map<std::string, std::set<std::string>> asked_;
};

}  // namespace

ReportCheck CheckReports(const std::string& folder) {
  std::vector<std::string> files;
  AddFilesOf(folder, files);
  const fs::path own = fs::path(folder) / kOwnReports;
  if (fs::is_directory(own)) AddFilesOf(own, files);
  ReportCheck check;
  check.files = files.size();
  for (const std::string& file : files) {
    for (const std::string& fault : FileCheck(file).Run()) {
      // What stands in a file that several are like is told once.
      if (std::find(check.faults.begin(), check.faults.end(), fault) == check.faults.end()) {
        check.faults.push_back(fault);
      }
    }
  }
  return check;
}

}  // namespace kaunter
