#include "platform/installation.h"

#include <filesystem>

namespace kaunter {
namespace {

namespace fs = std::filesystem;

// A list that every installation has: where it lies, the files lie.
constexpr const char* kMark = "ReportList";
// What an installer lays beside the programs, in a folder of the administrator's.
constexpr const char* kUninstaller = "uninstall.exe";

Installation& Current() {
  static Installation installation;
  return installation;
}

}  // namespace

Installation InstallationAt(const std::string& program_folder) {
  const fs::path folder(program_folder);
  std::error_code unknown;
  const fs::path shared = folder.parent_path().parent_path() / "share" / folder.filename();
  if (!fs::exists(folder / kMark, unknown) && folder.parent_path().filename() == "lib" &&
      fs::exists(shared / kMark, unknown)) {
    return {program_folder, shared.string(), false};
  }
  return {program_folder, program_folder, !fs::exists(folder / kUninstaller, unknown)};
}

void SetInstallation(const Installation& installation) { Current() = installation; }

const Installation& ThisInstallation() { return Current(); }

std::string FileOf(const std::string& folder, const std::string& name) {
  const fs::path own = fs::path(folder) / name;
  std::error_code unknown;
  if (Current().files.empty() || fs::exists(own, unknown)) return own.string();
  const fs::path shipped = fs::path(Current().files) / name;
  return fs::exists(shipped, unknown) ? shipped.string() : own.string();
}

std::string InstallationSettings(const Installation& installation) {
  if (installation.programs.empty()) return {};
  const fs::path programs(installation.programs);
  if (installation.programs == installation.files) return (programs / "settings.ini").string();
  const fs::path prefix = programs.parent_path().parent_path();
  const fs::path place = prefix == "/usr" ? fs::path("/etc") : prefix / "etc";
  return (place / "kaunter" / "settings.ini").string();
}

void MakeUserDataFolder() {
  const fs::path folder = UserDataFolder();
  fs::create_directories(folder.parent_path());
  if (fs::create_directory(folder)) {
    std::error_code ignored;
    fs::permissions(folder, fs::perms::owner_all, ignored);
  }
}

}  // namespace kaunter
