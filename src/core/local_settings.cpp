#include "core/local_settings.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "core/places.h"
#include "core/values.h"
#include "platform/installation.h"

namespace kaunter {
namespace {

[[noreturn]] void Refuse(const std::string& path, int line, const std::string& what) {
  throw std::runtime_error(
      fmt::format("{}, line {}: {}. Please correct the line, or remove the file to start with the "
                  "embedded database.",
                  path, line, what));
}

bool IsYes(std::string_view value) {
  return SameText(value, "yes") || SameText(value, "1") || SameText(value, "true");
}

class Parser {
 public:
  Parser(std::string_view text, const std::string& path) : text_(text), path_(path) {}

  LocalSettings Run() {
    std::istringstream lines{std::string(text_)};
    std::string raw;
    while (std::getline(lines, raw)) {
      ++line_;
      if (raw.ends_with('\r')) raw.pop_back();
      const std::string line = Trim(raw);
      if (line.find('\0') != std::string::npos) Refuse(path_, line_, "this is no text file");
      if (line.empty() || line[0] == '#') continue;
      if (line[0] == '[') {
        StartSource(line);
      } else {
        Assign(line);
      }
    }
    FinishSource();
    return std::move(settings_);
  }

 private:
  void StartSource(const std::string& line) {
    FinishSource();
    if (line.back() != ']') Refuse(path_, line_, "a data source stands in brackets, [Name]");
    name_ = Trim(std::string_view(line).substr(1, line.size() - 2));
    if (name_.empty()) Refuse(path_, line_, "a data source needs a name");
    source_line_ = line_;
    source_ = {};
  }

  void FinishSource() {
    if (name_.empty()) return;
    if (source_.target.empty()) {
      Refuse(path_, source_line_,
             fmt::format("data source [{}] has neither file= nor odbc=", name_));
    }
    settings_.sources.Add(name_, source_);
  }

  void Assign(const std::string& line) {
    const auto equals = line.find('=');
    if (equals == std::string::npos) {
      Refuse(path_, line_,
             fmt::format("\"{}\" is no setting; a setting is written name = value", line));
    }
    const std::string key = Trim(std::string_view(line).substr(0, equals));
    const std::string value = Trim(std::string_view(line).substr(equals + 1));
    const bool known = name_.empty() ? AssignSetting(key, value) : AssignSource(key, value);
    if (!known) Refuse(path_, line_, fmt::format("\"{}\" is not known here", key));
  }

  bool AssignSetting(const std::string& key, const std::string& value) {
    const std::pair<const char*, std::string LocalSettings::*> fields[] = {
        {"ConnAccount", &LocalSettings::ConnAccount},
        {"ConnDataSource", &LocalSettings::ConnDataSource},
        {"ConnDatabase", &LocalSettings::ConnDatabase},
        {"ConnLinkAcc", &LocalSettings::ConnLinkAcc},
        {"ShortDate", &LocalSettings::ShortDate},
        {"Trace", &LocalSettings::Trace},
        {"BackupFolder", &LocalSettings::BackupFolder},
        {"DataFolder", &LocalSettings::DataFolder},
        {"Now", &LocalSettings::Now},
        {"MyKadReader", &LocalSettings::MyKadReader},
        {"Camera", &LocalSettings::Camera},
    };
    for (const auto& [name, field] : fields) {
      if (!SameText(key, name)) continue;
      if (field == &LocalSettings::Now && !value.empty() && !DateTime::FromCanonical(value)) {
        Refuse(path_, line_, fmt::format("Now takes yyyy-mm-dd hh:mm:ss, not \"{}\"", value));
      }
      settings_.*field = value;
      return true;
    }
    return false;
  }

  bool AssignSource(const std::string& key, const std::string& value) {
    if (SameText(key, "file")) {
      source_ = {DataSource::Kind::kEmbedded, value};
    } else if (SameText(key, "odbc")) {
      source_ = {DataSource::Kind::kOdbc, value};
    } else if (SameText(key, "create")) {
      if (IsYes(value)) settings_.creatable.insert(Lower(name_));
    } else if (SameText(key, "fill")) {
      settings_.fill[Lower(name_)] = value;
    } else {
      return false;
    }
    return true;
  }

  std::string_view text_;
  const std::string& path_;
  LocalSettings settings_;
  std::string name_;  // of the data source being read; empty above the first
  DataSource source_;
  int line_ = 0;
  int source_line_ = 0;
};

}  // namespace

LocalSettings LocalSettings::Parse(std::string_view text, const std::string& path) {
  return Parser(text, path).Run();
}

LocalSettings LocalSettings::Read(const std::string& path) {
  const std::string file = path.empty() ? SettingsFile() : path;
  if (path.empty() && !std::filesystem::exists(file)) {
    LocalSettings defaults;
    defaults.sources.Add(defaults.ConnDataSource,
                         {DataSource::Kind::kEmbedded, UserDataFolder() + "/Kaunter.db"});
    defaults.creatable.insert("kaunter");
    return defaults;
  }
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (stream) text << stream.rdbuf();
  if (!stream || std::filesystem::is_directory(file)) {
    throw std::runtime_error(fmt::format("The local settings file {} cannot be read.", file));
  }
  return Parse(text.str(), file);
}

LocalSettings LocalSettings::Read(const std::string& path, const std::string& database) {
  if (database.empty()) return Read(path);
  LocalSettings local = path.empty() ? LocalSettings() : Read(path);
  local.sources.Add(local.ConnDataSource, {DataSource::Kind::kEmbedded, database});
  return local;
}

}  // namespace kaunter
