#include "customers/document_store.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <span>
#include <stdexcept>

#include "core/formats.h"
#include "core/session.h"
#include "core/sql_literals.h"
#include "core/texts.h"
#include "core/values.h"
#include "platform/disk.h"
#include "platform/private_file.h"
#include "platform/sql/waiting.h"
#include "platform/whole_file.h"
#include "screen/hourglass.h"
#include "screen/picture_desk.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestEnding = 16;

constexpr std::string_view kShown[] = {"jpg",  "jpeg", "png", "gif", "bmp", "tif",  "tiff", "webp",
                                       "heic", "pdf",  "txt", "csv", "doc", "docx", "xls",  "xlsx",
                                       "ppt",  "pptx", "odt", "ods", "odp", "rtf",  "mp3",  "m4a",
                                       "wav",  "ogg",  "mp4", "mov", "avi", "3gp"};
constexpr std::string_view kPrograms[] = {
    "exe",    "com",     "bat",  "cmd",     "scr",      "pif",     "msi",  "msp",  "msc",
    "cpl",    "vb",      "vbs",  "vbe",     "js",       "jse",     "mjs",  "ws",   "wsf",
    "wsh",    "ps1",     "psm1", "lnk",     "url",      "reg",     "inf",  "scf",  "hta",
    "chm",    "jar",     "jnlp", "dll",     "sys",      "desktop", "sh",   "bash", "zsh",
    "csh",    "run",     "bin",  "out",     "appimage", "deb",     "rpm",  "py",   "pyc",
    "pl",     "rb",      "php",  "iso",     "img",      "vhd",     "vhdx", "xll",  "application",
    "gadget", "command", "app",  "workflow"};

bool IsOneOf(const std::string& ending, std::span<const std::string_view> endings) {
  return std::find(endings.begin(), endings.end(), ending) != endings.end();
}

// Letters and digits behind the last point, in small letters; "" when there is nothing else.
std::string EndingOf(std::string_view name) {
  const std::size_t point = name.rfind('.');
  if (point == name.npos || point + 1 == name.size()) return {};
  const std::string ending = Lower(name.substr(point + 1));
  const bool plain = std::all_of(ending.begin(), ending.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
  });
  return plain && ending.size() <= kLongestEnding ? ending : std::string();
}

// A name of a file that is not whole yet, on the disk of the kept ones.
std::string Beside(const Session& session) {
  fs::create_directories(fs::path(session.PhotoPath) / ".incoming");
  return fmt::format("{}/.incoming/{}", session.PhotoPath, FreeFileName());
}

// The row that names it may be on the disk a moment later; it must not name half a paper.
void GiveName(const std::string& beside, const std::string& kept) {
  MakePrivate(beside);
  SyncFile(beside);
  TakeName(beside, kept);
}

std::string KeepAs(const Session& session, std::string_view folder, const std::string& source,
                   const std::string& name) {
  const std::string beside = Beside(session);
  std::error_code error;
  if (fs::file_size(source, error) == 0 && !error) {
    throw std::runtime_error(
        session.In({fmt::format("{} is empty.", source), fmt::format("{} 是空的文件。", source)}));
  }
  const std::string kept = KeptPath(session, folder, name);
  EnsurePhotoFolder(session, StoredName(folder));
  fs::copy_file(source, beside, error);
  if (error) {
    std::error_code ignored;
    fs::remove(beside, ignored);
    throw std::runtime_error(
        fmt::format("{} could not be copied to {}: {}.", source, kept, error.message()));
  }
  GiveName(beside, kept);
  return name;
}

bool IsJpeg(const std::string& path) {
  std::array<char, 3> head{};
  std::ifstream(path, std::ios::binary).read(head.data(), head.size());
  return head == std::array{'\xFF', '\xD8', '\xFF'};
}

// Work that needs no window, while the windows stay painted.
template <typename Work>
auto Behind(const Screen& screen, Work work) {
  const Hourglass busy(screen.desk());
  auto result = std::async(std::launch::async, std::move(work));
  while (result.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready) {
    ActWhileWaiting();
  }
  return result.get();
}

}  // namespace

std::string KeepFile(const Session& session, std::string_view folder, const std::string& source,
                     std::string_view new_stem) {
  const std::string ending = fs::path(source).extension().string();
  if (EndingOf(ending).empty()) throw std::runtime_error("Invalid filename");
  return KeepAs(session, folder, source, StoredName(fmt::format("{}{}", new_stem, ending)));
}

std::string NewPhotoStem(Session& session, std::string_view place) {
  return fmt::format("{}-{}", place, Format(ServerTime(session.Main()), "yyyymmddhhnnss"));
}

std::string KeepDocument(Session& session, const Screen& screen, std::string_view folder,
                         const std::string& source, std::string_view new_stem) {
  using Made = PictureDesk::Made;
  const std::string file = fs::path(source).filename().string();
  if (OpeningOf(file) == Opening::refused) {
    throw std::runtime_error(session.In(
        {fmt::format("{} is a program, or may start one. It is not kept among documents.", file),
         fmt::format("{} 是程序或可能启动程序，不能存入文件。", file)}));
  }
  const std::string ending = EndingOf(file);
  const auto as_it_is = [&] { return KeepFile(session, folder, source, new_stem); };
  auto* pictures = dynamic_cast<PictureDesk*>(&screen.desk());
  if (pictures == nullptr || ending.empty() || ending == "pdf" || ending == "jpg") {
    return Behind(screen, as_it_is);
  }
  const std::string name = StoredName(fmt::format("{}.jpg", new_stem));
  // Drawn anew it would only lose.
  if (IsJpeg(source)) {
    return Behind(screen, [&] { return KeepAs(session, folder, source, name); });
  }
  const std::string beside = Beside(session);
  const Made made = Behind(screen, [&] { return pictures->MakeJpeg(source, beside); });
  if (made == Made::done) {
    EnsurePhotoFolder(session, StoredName(folder));
    GiveName(beside, KeptPath(session, folder, name));
    return name;
  }
  std::error_code ignored;
  fs::remove(beside, ignored);
  if (made == Made::no_picture) return Behind(screen, as_it_is);
  throw std::runtime_error(session.In(
      made == Made::too_large
          ? Caption{fmt::format("{} is too large a picture to be converted. Scan it with fewer "
                                "dots, or save it as .jpg or .pdf.",
                                file),
                    fmt::format("{} 图片太大，无法转换。请以较低解析度扫描，或存为 .jpg 或 .pdf。",
                                file)}
          : Caption{fmt::format("{} could not be converted: is there room on the disk?", file),
                    fmt::format("{} 无法转换，请检查磁盘空间。", file)}));
}

std::optional<Caption> WhyNotOpened(const std::string& path) {
  std::error_code error;
  if (!fs::exists(fs::path(path).parent_path(), error)) {
    return Caption{"Path not found", "找不到文件夹"};
  }
  if (!fs::exists(path, error)) return Caption{"File not found", "找不到文件"};
  if (!std::ifstream(path)) return Caption{"Access denied", "无权打开文件"};
  return std::nullopt;
}

Opening OpeningOf(std::string_view name) {
  const std::string ending = EndingOf(name);
  return IsOneOf(ending, kShown)      ? Opening::shown
         : IsOneOf(ending, kPrograms) ? Opening::refused
                                      : Opening::asked;
}

}  // namespace kaunter
