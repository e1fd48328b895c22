#include "customers/document_store.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "core/session.h"
#include "core/values.h"
#include "platform/private_file.h"

namespace kaunter {

std::string KeptPath(const Session& session, std::string_view folder, std::string_view file) {
  return fmt::format("{}/{}/{}", session.PhotoPath, folder, file);
}

std::string KeepFile(const Session& session, std::string_view folder, const std::string& source,
                     std::string_view new_stem) {
  const std::string ending = std::filesystem::path(source).extension().string();
  if (ending.size() < 2) throw std::runtime_error("Invalid filename");
  EnsurePhotoFolder(session, folder);
  std::string name = fmt::format("{}{}", new_stem, ending);
  // Owners of older offices may hold what parts folders.
  for (char& c : name) {
    if (c == '/' || c == '\\' || c == ':') c = '-';
  }
  const std::string kept = KeptPath(session, folder, name);
  std::error_code error;
  std::filesystem::copy_file(source, kept, std::filesystem::copy_options::overwrite_existing,
                             error);
  if (error) {
    throw std::runtime_error(
        fmt::format("{} could not be copied to {}: {}.", source, kept, error.message()));
  }
  MakePrivate(kept);
  // The row that names it may be on the disk a moment later; it must not name half a paper.
  SyncFile(kept);
  return name;
}

std::optional<Caption> WhyNotOpened(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::exists(std::filesystem::path(path).parent_path(), error)) {
    return Caption{"Path not found", "找不到文件夹"};
  }
  if (!std::filesystem::exists(path, error)) return Caption{"File not found", "找不到文件"};
  if (!std::ifstream(path)) return Caption{"Access denied", "无权打开文件"};
  return std::nullopt;
}

}  // namespace kaunter
