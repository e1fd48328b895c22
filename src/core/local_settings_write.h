// Changes in the settings file of a PC. Every line that no change names stays as it is, comments,
// order and line ends included: the file belongs to the person who keeps it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

struct SettingChange {
  std::string section;  // a data source; "" for the settings above the first one
  std::string key;
  std::optional<std::string> value;  // without one the line goes
};

// The text with the changes; a section that is not there is added at the end. Throws
// std::runtime_error where the text, or what would come of it, is not for LocalSettings::Parse.
std::string ChangedSettings(std::string_view text, const std::vector<SettingChange>& changes,
                            const std::string& path);

// The same in the file, which is made, with its folder, when it is missing. It is written whole or
// not at all. While a data source names a password nobody but the owner reads it; else a file that
// was there keeps its rights. Throws std::runtime_error that names the file.
void ChangeSettingsFile(const std::string& path, const std::vector<SettingChange>& changes);

}  // namespace kaunter
