#include "core/local_settings_write.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "core/local_settings.h"
#include "core/values.h"
#include "platform/whole_file.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;  // without the LF; a CR stays at the end of its line

Lines SplitLines(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const auto end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

std::string Bare(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  return Trim(line);
}

bool IsSection(const std::string& line) { return Bare(line).starts_with('['); }

bool IsSectionOf(const std::string& line, std::string_view name) {
  const std::string trimmed = Bare(line);
  return IsSection(line) && trimmed.ends_with(']') &&
         SameText(Trim(std::string_view(trimmed).substr(1, trimmed.size() - 2)), name);
}

bool IsAssignment(const std::string& line) {
  const std::string trimmed = Bare(line);
  return !trimmed.empty() && trimmed[0] != '#' && trimmed.find('=') != std::string::npos;
}

bool Assigns(const std::string& line, std::string_view key) {
  return IsAssignment(line) &&
         SameText(Trim(std::string_view(line).substr(0, line.find('='))), key);
}

void CheckValue(const SettingChange& change) {
  const std::string& value = *change.value;
  const bool control =
      std::any_of(value.begin(), value.end(), [](unsigned char c) { return c < ' ' || c == 0x7f; });
  if (control || Trim(value) != value) {
    throw std::runtime_error(fmt::format(
        "{} cannot stand in the settings of this PC: it begins or ends with a blank, or has "
        "a line break or another control character in it.",
        change.key));
  }
}

class Editor {
 public:
  explicit Editor(std::string_view text)
      : lines_(SplitLines(text)),
        line_end_(!lines_.empty() && lines_.front().ends_with('\r') ? "\r" : "") {}

  void Apply(const SettingChange& change) {
    const std::size_t begin = BeginOf(change.section, change.value.has_value());
    std::size_t end = EndOf(begin);
    // The reader takes the last of several lines; the others go with it.
    std::size_t kept = end;
    for (std::size_t at = end; at-- > begin;) {
      if (!Assigns(lines_[at], change.key)) continue;
      if (change.value && kept == end) {
        kept = at;
        continue;
      }
      lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(at));
      --end;
      if (kept > at) --kept;
    }
    if (!change.value) return;
    const std::string line = fmt::format("{} = {}{}", change.key, *change.value, line_end_);
    if (kept < end) {
      lines_[kept] = line;
      return;
    }
    std::size_t at = end;
    while (at > begin && !IsAssignment(lines_[at - 1])) --at;
    Insert(at, line);
  }

  std::string Text() const {
    std::string text;
    for (const std::string& line : lines_) text += line + '\n';
    return text;
  }

 private:
  // The line behind the head of the section; its end when there is none and none is made.
  std::size_t BeginOf(const std::string& section, bool make) {
    if (section.empty()) return 0;
    for (std::size_t at = lines_.size(); at-- > 0;) {
      if (IsSectionOf(lines_[at], section)) return at + 1;
    }
    if (make) {
      if (!lines_.empty() && !Bare(lines_.back()).empty()) lines_.push_back(line_end_);
      lines_.push_back(fmt::format("[{}]{}", section, line_end_));
    }
    return lines_.size();
  }

  std::size_t EndOf(std::size_t begin) const {
    return static_cast<std::size_t>(
        std::find_if(lines_.begin() + static_cast<std::ptrdiff_t>(begin), lines_.end(), IsSection) -
        lines_.begin());
  }

  void Insert(std::size_t at, const std::string& line) {
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), line);
    const bool last_setting = at + 1 < lines_.size() && IsSection(lines_[at + 1]);
    if (last_setting)
      lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at) + 1, line_end_);
  }

  Lines lines_;
  std::string line_end_;
};

bool NamesPassword(std::string_view text) {
  for (const std::string& line : SplitLines(text)) {
    const std::string lower = Lower(line);
    if (!Assigns(line, "odbc")) continue;
    if (lower.find("pwd") != std::string::npos || lower.find("password") != std::string::npos) {
      return true;
    }
  }
  return false;
}

// A link that a person has laid is followed, not replaced.
fs::path PlaceOf(const std::string& path) {
  std::error_code ignored;
  const fs::path place = fs::weakly_canonical(path, ignored);
  return place.empty() ? fs::path(path) : place;
}

std::string ReadIfThere(const fs::path& path) {
  if (!fs::exists(path)) return {};
  std::ifstream stream(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!stream || fs::is_directory(path)) {
    throw std::runtime_error(
        fmt::format("The local settings file {} cannot be read.", path.string()));
  }
  return text;
}

}  // namespace

std::string ChangedSettings(std::string_view text, const std::vector<SettingChange>& changes,
                            const std::string& path) {
  LocalSettings::Parse(text, path);
  Editor editor(text);
  for (const SettingChange& change : changes) {
    if (change.value) CheckValue(change);
    editor.Apply(change);
  }
  std::string changed = editor.Text();
  LocalSettings::Parse(changed, path);
  return changed;
}

void ChangeSettingsFile(const std::string& path, const std::vector<SettingChange>& changes) {
  const fs::path place = PlaceOf(path);
  std::error_code failed;
  if (place.has_parent_path()) fs::create_directories(place.parent_path(), failed);
  if (failed) {
    throw std::runtime_error(fmt::format("The folder {} of the settings cannot be made: {}.",
                                         place.parent_path().string(), failed.message()));
  }
  const bool was_there = fs::exists(place);
  const std::string text = ChangedSettings(ReadIfThere(place), changes, path);
  const bool secret = NamesPassword(text);
  const fs::perms before = fs::status(place).permissions();
  WriteWholeFile(
      place.string(), [&](std::ostream& file) { file << text; },
      secret ? FileReach::kOwner : FileReach::kFolder);
  if (was_there && !secret) fs::permissions(place, before, failed);
}

}  // namespace kaunter
