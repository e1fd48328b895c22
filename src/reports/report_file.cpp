#include "reports/report_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "reports/report_parser.h"

namespace kaunter {
namespace {

std::string TextOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::error_code error;
  if (!stream || std::filesystem::is_directory(path, error)) {
    throw std::runtime_error(
        fmt::format("The report file {} cannot be read. It belongs beside the program.", path));
  }
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

// Reads the file that a line "like" names, and knows the files that are being read, so that two
// files which name each other end with a message.
class Library {
 public:
  explicit Library(const ReportReading& reading) : reading_(reading) {}

  ReportFile Parse(std::string_view text, const std::string& path) {
    open_.push_back(std::filesystem::path(path).filename().string());
    ReportFile file = ParseReport(text, path, reading_,
                                  [&](const std::string& name) { return Like(name, path); });
    open_.pop_back();
    return file;
  }

 private:
  ReportFile Like(const std::string& name, const std::string& path) {
    if (std::find(open_.begin(), open_.end(), name) != open_.end()) {
      throw std::invalid_argument(
          fmt::format("\"like\" goes round in a circle: {} is being read because of itself", name));
    }
    const std::string beside = (std::filesystem::path(path).parent_path() / name).string();
    std::error_code error;
    if (!std::filesystem::is_regular_file(beside, error)) {
      throw std::invalid_argument(fmt::format("there is no file {} beside this one", name));
    }
    return Parse(TextOf(beside), beside);
  }

  const ReportReading& reading_;
  std::vector<std::string> open_;
};

}  // namespace

ReportFile ReportFile::Parse(std::string_view text, const std::string& path,
                             const ReportReading& reading) {
  return Library(reading).Parse(text, path);
}

ReportFile ReportFile::Read(const std::string& path, const ReportReading& reading) {
  // A slash and a backslash before the file's name mean the same.
  std::string file = path;
  std::replace(file.begin(), file.end(), '\\', '/');
  return Parse(TextOf(file), file, reading);
}

}  // namespace kaunter
