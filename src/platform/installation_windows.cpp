#ifdef _WIN32
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/installation.h"

namespace kaunter {
namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace

std::string UserSettingsFolder() { return Environment("APPDATA") + "/Kaunter"; }

std::string UserDataFolder() { return Environment("LOCALAPPDATA") + "/Kaunter"; }

std::string UserHomeFolder() { return Environment("USERPROFILE"); }

// What the folder's list of rights says is known for sure by trying alone.
bool MayWriteIn(const std::string& folder) {
  const auto trial = std::filesystem::path(folder) / "kaunter-may-write.tmp";
  if (!std::ofstream(trial)) return false;
  std::error_code ignored;
  std::filesystem::remove(trial, ignored);
  return true;
}

}  // namespace kaunter
#endif
