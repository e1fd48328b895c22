#include "core/places.h"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>

#include "core/session.h"
#include "platform/installation.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

std::string Whole(const std::string& folder) {
  std::string whole = fs::absolute(folder).lexically_normal().string();
  while (whole.size() > 1 && whole.back() == '/') whole.pop_back();
  return whole;
}

// A folder on a drive that is away is not made anew.
std::string OfSetting(const std::string& folder) {
  if (fs::path(folder).is_absolute() && MayWriteIn(folder)) return folder;
  throw std::runtime_error(fmt::format(
      "DataFolder in the settings of this PC is \"{}\": logs, pictures and the office's "
      "own files belong there. It must be the full path of a folder that is there and "
      "that you may write to. Make it, or correct the line in {}.",
      folder, SettingsFile()));
}

std::string OfPerson() {
  try {
    MakeUserDataFolder();
  } catch (const fs::filesystem_error& failure) {
    throw std::runtime_error(
        fmt::format("The folder {} cannot be made: {}. Logs and pictures of this PC belong there. "
                    "Make its parent writable, or name another folder as DataFolder in {}.",
                    UserDataFolder(), failure.code().message(), SettingsFile()));
  }
  return UserDataFolder();
}

}  // namespace

std::string SettingsFile() {
  const std::string installed = InstallationSettings(ThisInstallation());
  std::error_code unknown;
  if (!installed.empty() && fs::exists(installed, unknown)) return installed;
  return UserSettingsFolder() + "/settings.ini";
}

std::string AppFolder(const std::string& named, const LocalSettings& local) {
  if (!named.empty()) return Whole(named);
  if (!local.DataFolder.empty()) return Whole(OfSetting(local.DataFolder));
  const Installation& here = ThisInstallation();
  if (here.portable && MayWriteIn(here.programs)) return Whole(here.programs);
  return Whole(OfPerson());
}

std::string PickStart(const Session& session) {
  return session.AppPath == UserDataFolder() ? UserHomeFolder() : session.AppPath;
}

}  // namespace kaunter
