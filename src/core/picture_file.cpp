#include "core/picture_file.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>

#include "core/places.h"
#include "core/session.h"
#include "core/telling.h"
#include "core/values.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

constexpr std::string_view kEndings[] = {".jpg", ".jpeg", ".gif", ".bmp", ".png"};

bool IsPicture(const std::string& file) {
  const std::string ending = std::filesystem::path(file).extension().string();
  return std::any_of(std::begin(kEndings), std::end(kEndings),
                     [&ending](std::string_view one) { return SameText(ending, one); });
}

}  // namespace

std::string ChoosePicture(Session& session, TextBox& box) {
  const Screen& screen = box.screen();
  std::string file = screen.desk().PickFile(screen.title().In(screen.chinese()), PickStart(session),
                                            "Pictures (*.jpg *.jpeg *.gif *.bmp *.png)");
  if (file.empty()) return file;
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) {
    // A stick that was pulled, a share that is away.
    const bool away = error && error != std::errc::no_such_file_or_directory &&
                      error != std::errc::not_a_directory;
    Refuse(session, box,
           away ? Caption{"Drive Not Ready", "驱动器未就绪"}
                : Caption{"Picture Path not found", "找不到图片路径"});
    return {};
  }
  if (!IsPicture(file)) {
    Refuse(session, box, {"Invalid Picture Format", "图片格式不正确"});
    return {};
  }
  box.SetMark(false);
  return file;
}

}  // namespace kaunter
