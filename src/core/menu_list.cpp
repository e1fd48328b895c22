#include "core/menu_list.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <stdexcept>

#include "core/values.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr int kLongest = 68;
constexpr std::string_view kEndMark = "[end]";

std::string FileName(const std::string& folder, int number) {
  return fmt::format("{}/MenuList{}.ini", folder, number == 1 ? "" : std::to_string(number));
}

// Nothing for what is no number, or none that fits.
std::optional<int> NumberIn(const std::string& digits) {
  try {
    return CLng(std::string_view(digits));
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

void ReadFile(const std::string& path, std::vector<MenuListEntry>& entries) {
  std::ifstream file(path);
  std::string line;
  for (int number = 1; number <= kLongest && std::getline(file, line); ++number) {
    line = Trim(line);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const auto first = line.find(',');
    if (SameText(Trim(line.substr(0, first)), kEndMark)) return;
    const auto second = first == std::string::npos ? first : line.find(',', first + 1);
    const std::string digits = second == std::string::npos
                                   ? std::string()
                                   : Trim(line.substr(first + 1, second - first - 1));
    const std::optional<int> entry = NumberIn(digits);
    if (second == std::string::npos || !entry) {
      throw std::runtime_error(fmt::format(
          "{}, line {}: a line is name, number and caption, parted by commas.", path, number));
    }
    entries.push_back({Trim(line.substr(0, first)), *entry, Trim(line.substr(second + 1))});
  }
  throw std::runtime_error(fmt::format(
      "{}: there is no line [end] within {} lines. Remove the MenuList files to have them made "
      "anew at the next start.",
      path, kLongest));
}

}  // namespace

std::vector<MenuListEntry> ReadMenuList(const std::string& folder) {
  std::vector<MenuListEntry> entries;
  for (int number = 1; std::filesystem::exists(FileName(folder, number)); ++number) {
    ReadFile(FileName(folder, number), entries);
  }
  return entries;
}

std::vector<MenuListEntry> RightsList(const std::string& folder,
                                      const std::vector<MenuEntry>& menu) {
  const std::vector<MenuListEntry> lines = ReadMenuList(folder);
  const auto line_of = [&](std::string_view name) {
    return std::ranges::find_if(
        lines, [&](const MenuListEntry& line) { return SameText(line.name, name); });
  };
  std::vector<MenuListEntry> list;
  std::set<std::string> of_the_program;
  for (const MenuEntry& entry : menu) {
    of_the_program.insert(Upper(entry.name));
    if (!entry.needs_right) continue;
    const auto line = line_of(entry.name);
    list.push_back({entry.name, static_cast<int>(list.size()) + 1,
                    line == lines.end() ? PlainCaption(entry.caption, false) : line->caption});
  }
  for (const MenuListEntry& line : lines) {
    if (!line.name.empty() && of_the_program.insert(Upper(line.name)).second) list.push_back(line);
  }
  return list;
}

std::string ShownCaption(const MenuListEntry& entry, const std::vector<MenuEntry>& menu,
                         bool chinese) {
  const auto known = std::ranges::find_if(
      menu, [&](const MenuEntry& candidate) { return SameText(candidate.name, entry.name); });
  if (!chinese || known == menu.end() || WithoutMnemonic(known->caption.english) != entry.caption) {
    return entry.caption;
  }
  return PlainCaption(known->caption, true);
}

void WriteMenuList(const std::string& folder, const std::vector<MenuEntry>& entries) {
  int number = 0;
  int file_number = 0;
  int lines = 0;
  std::ofstream file;
  const auto finish = [&] {
    if (file_number == 0) return;
    file << kEndMark << ",,\n";
    file.close();
    if (!file)
      throw std::runtime_error(fmt::format("{} cannot be written.", FileName(folder, file_number)));
  };
  for (const MenuEntry& entry : entries) {
    if (!entry.needs_right) continue;
    if (file_number == 0 || lines == kLongest - 1) {
      finish();
      file.open(FileName(folder, ++file_number), std::ios::trunc);
      lines = 0;
    }
    file << entry.name << ',' << ++number << ',' << WithoutMnemonic(entry.caption.english) << '\n';
    ++lines;
  }
  finish();
}

void EnsureMenuList(const std::string& folder, const std::vector<MenuEntry>& entries) {
  if (!std::filesystem::exists(FileName(folder, 1))) WriteMenuList(folder, entries);
}

}  // namespace kaunter
