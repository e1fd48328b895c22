#include "core/photo_browse_frm.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <set>

#include "core/places.h"
#include "core/values.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kEndings[] = {".jpg", ".jpeg", ".gif", ".bmp", ".png"};
constexpr const char* kUp = "..";
const Caption kAway{"Drive Not Ready", "驱动器未就绪"};
const Caption kNotThere{"Picture Path not found", "找不到图片路径"};
const Caption kNoPicture{"Invalid Picture Format", "图片格式不正确"};

bool IsCalledPicture(const fs::path& file) {
  const std::string ending = file.extension().string();
  return std::any_of(std::begin(kEndings), std::end(kEndings),
                     [&ending](std::string_view one) { return SameText(ending, one); });
}

// By its first bytes: a name can be given to anything.
bool IsPicture(const fs::path& file) {
  std::array<char, 4> bytes{};
  std::ifstream(file, std::ios::binary).read(bytes.data(), bytes.size());
  const std::string_view head(bytes.data(), bytes.size());
  return head.starts_with("\xFF\xD8\xFF") || head.starts_with("GIF8") || head.starts_with("BM") ||
         head == "\x89PNG";
}

// A stick that was pulled, a share that is away.
bool IsAway(const std::error_code& error) {
  return error && error != std::errc::no_such_file_or_directory &&
         error != std::errc::not_a_directory;
}

}  // namespace

PhotoBrowseFrm::PhotoBrowseFrm(Session& session, Desk& desk)
    : SessionScreen("PhotoBrowseFrm", {"Choose Picture", "选择图片"}, session, desk),
      DirList(*this, "DirList", {"Folders", "文件夹"}, {{{"Folder", "文件夹"}, Kind::text, 20}}),
      FileList(*this, "FileList", {"Pictures", "图片"}, {{{"Picture", "图片"}, Kind::text, 24}}) {
  FolderName.onLeave = [this] {
    if (FolderName.text() != folder_) GoTo(FolderName.text());
  };
  DirList.onOpen = [this](int row, int) {
    const std::string& name = DirList.Cell(row, 0);
    GoTo(name == kUp ? fs::path(folder_).parent_path().string()
                     : (fs::path(folder_) / name).string());
  };
  FileList.onRow = [this](int row) {
    Choose((fs::path(folder_) / FileList.Cell(row, 0)).string());
  };
  FileList.onOpen = [this](int, int) { Accept(); };
  FileName.onLeave = [this] { Choose(FileName.text()); };
  OtherCmd.onClick = [this] {
    const std::string file = this->desk().PickFile(title().In(chinese()), folder_,
                                                   "Pictures (*.jpg *.jpeg *.gif *.bmp *.png)");
    if (!file.empty()) Choose(file);
  };
  OkCmd.onClick = [this] { Accept(); };
}

void PhotoBrowseFrm::Load() {
  std::error_code error;
  for (const std::string& folder : {last_folder_, PickStart(session())}) {
    if (fs::is_directory(folder, error) && GoTo(folder)) break;
  }
  FocusOn(DirList);
}

bool PhotoBrowseFrm::GoTo(const std::string& folder) {
  std::set<std::string> folders, files;
  std::error_code error;
  const fs::path path = fs::path(folder).lexically_normal();
  for (fs::directory_iterator entry(path, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    std::error_code gone;
    if (name.starts_with('.')) continue;
    if (entry->is_directory(gone)) {
      folders.insert(name);
    } else if (IsCalledPicture(name)) {
      files.insert(name);
    }
  }
  if (error) return Refuse(FolderName, IsAway(error) ? kAway : kNotThere);
  folder_ = path.string();
  FolderName.SetText(folder_);
  FolderName.SetMark(false);
  std::vector<std::vector<std::string>> rows;
  if (path.has_relative_path()) rows.push_back({kUp});
  for (const std::string& name : folders) rows.push_back({name});
  DirList.SetRows(std::move(rows));
  rows.clear();
  for (const std::string& name : files) rows.push_back({name});
  FileList.SetRows(std::move(rows));
  return true;
}

void PhotoBrowseFrm::Choose(const std::string& file) {
  FileName.SetText(file);
  FileName.SetMark(false);
  std::error_code error;
  Preview.SetPath(fs::is_regular_file(file, error) ? file : std::string());
}

void PhotoBrowseFrm::Accept() {
  const std::string file = FileName.text();
  std::error_code error;
  if (!fs::is_regular_file(file, error)) {
    Refuse(FileName, IsAway(error) ? kAway : kNotThere);
  } else if (!IsCalledPicture(file) || !IsPicture(file)) {
    Refuse(FileName, kNoPicture);
  } else {
    last_folder_ = fs::path(file).parent_path().string();
    path_ = file;
    Close();
  }
}

}  // namespace kaunter
