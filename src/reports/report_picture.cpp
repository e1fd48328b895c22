#include "reports/report_picture.h"

#include <algorithm>
#include <filesystem>

#include "core/values.h"

namespace kaunter {

std::string PicturePath(const ReportFile& file, const std::string& named) {
  std::string name = Trim(named);
  std::replace(name.begin(), name.end(), '\\', '/');
  if (name.empty()) return {};
  const std::filesystem::path path = std::filesystem::path(file.path).parent_path() / name;
  std::error_code error;
  return std::filesystem::is_regular_file(path, error) ? path.string() : "";
}

}  // namespace kaunter
