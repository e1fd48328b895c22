#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "platform/installation.h"

namespace kaunter {
namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string FolderOf(const char* variable, const char* below_home) {
  std::string folder = Environment(variable);
  if (folder.empty()) folder = UserHomeFolder() + "/" + below_home;
  return folder + "/kaunter";
}

}  // namespace

std::string UserSettingsFolder() { return FolderOf("XDG_CONFIG_HOME", ".config"); }

std::string UserDataFolder() { return FolderOf("XDG_DATA_HOME", ".local/share"); }

std::string UserHomeFolder() { return Environment("HOME"); }

bool MayWriteIn(const std::string& folder) {
  std::error_code unknown;
  return std::filesystem::is_directory(folder, unknown) && access(folder.c_str(), W_OK | X_OK) == 0;
}

}  // namespace kaunter
