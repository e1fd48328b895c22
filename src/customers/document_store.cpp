#include "customers/document_store.h"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>

#include "core/session.h"
#include "core/values.h"

namespace kaunter {

std::string KeptPath(const Session& session, std::string_view folder, std::string_view file) {
  return fmt::format("{}/{}/{}", session.PhotoPath, folder, file);
}

std::string KeepFile(const Session& session, std::string_view folder, const std::string& source,
                     std::string_view new_stem) {
  const std::string ending = std::filesystem::path(source).extension().string();
  if (ending.size() < 2) throw std::runtime_error("Invalid filename");
  EnsurePhotoFolder(session, folder);
  const std::string name = fmt::format("{}{}", new_stem, ending);
  std::error_code error;
  std::filesystem::copy_file(source, KeptPath(session, folder, name),
                             std::filesystem::copy_options::overwrite_existing, error);
  if (error) {
    throw std::runtime_error(fmt::format("{} could not be copied to {}: {}.", source,
                                         KeptPath(session, folder, name), error.message()));
  }
  return name;
}

}  // namespace kaunter
