#include "reports/report_picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "core/report_path.h"
#include "core/values.h"

namespace kaunter {

namespace {

std::string PictureIn(const std::filesystem::path& folder, const std::string& named) {
  std::string name = Trim(named);
  std::replace(name.begin(), name.end(), '\\', '/');
  if (name.empty()) return {};
  const std::filesystem::path path = folder / name;
  std::error_code error;
  return std::filesystem::is_regular_file(path, error) ? path.string() : "";
}

}  // namespace

// Its own folder comes first. A file that came with the program may lie elsewhere than what the
// office has.
std::string PicturePath(const ReportFile& file, const std::string& named) {
  const std::string own = PictureIn(std::filesystem::path(file.path).parent_path(), named);
  return own.empty() && !file.folder.empty() ? PictureIn(file.folder, named) : own;
}

HeadPictures::HeadPictures(const ReportFile& file, const PictureMeasure& measure,
                           ReportDocument& document)
    : file_(file), measure_(measure), document_(document) {}

std::optional<PagePicture> HeadPictures::Find(const std::string& named, double width,
                                              double height) {
  if (Trim(named).empty()) return std::nullopt;
  const std::filesystem::path folder = std::filesystem::path(file_.path).parent_path();
  // A file of the office lies in a folder of its own beside its pictures.
  const bool of_office = folder.filename() == kOwnReports;
  std::string path = PictureIn(of_office ? folder.parent_path() : folder, named);
  if (path.empty() && !file_.folder.empty()) path = PictureIn(file_.folder, named);
  PictureSize size{width, height};
  if (!path.empty() && measure_) size = measure_(path).value_or(PictureSize{});
  if (path.empty() || size.width <= 0 || size.height <= 0) {
    Tell(Trim(named), !path.empty());
    return std::nullopt;
  }
  const double scale = std::min(width / size.width, height / size.height);
  return PagePicture{0, 0, size.width * scale, size.height * scale, path, TextAlign::left};
}

void HeadPictures::Tell(const std::string& named, bool is_there) {
  if (!told_.insert(named).second) return;
  document_.left_out.push_back(
      is_there
          ? Caption{fmt::format("Printed without the picture {}, which cannot be drawn. Choose "
                                "another one where the company is edited.",
                                named),
                    fmt::format("图片 {} 无法显示，已略去。请在公司资料中另选图片。", named)}
          : Caption{fmt::format("Printed without the picture {}, which is not there. Put it "
                                "there, or choose another one where the company is edited.",
                                named),
                    fmt::format("找不到图片 {}，已略去。请放回该文件，或在公司资料中另选图片。",
                                named)});
}

}  // namespace kaunter
