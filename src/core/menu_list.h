// MenuList.ini: the entries that the rights grid of the user screen offers beside those of the
// program, and the office's own words for some of them. It is made from the menu table; an update
// leaves it alone, so what the program offers never hangs on it.
//
// A line is name, running number and caption, parted by commas. A file has at most 68 lines and
// ends with a line whose first field is [end]; the entries that do not fit stand in MenuList2.ini,
// MenuList3.ini and so on.
#pragma once

#include <string>
#include <vector>

#include "core/menu.h"

namespace kaunter {

struct MenuListEntry {
  std::string name;
  int number = 0;
  std::string caption;
};

// Throws std::runtime_error that names the file and line: no end mark within 68 lines, or no three
// fields.
std::vector<MenuListEntry> ReadMenuList(const std::string& folder);
// All entries of the menu table that need a right, then the lines of the files that are none of
// them, for papers and screens that the office has added. Throws as ReadMenuList.
std::vector<MenuListEntry> RightsList(const std::string& folder,
                                      const std::vector<MenuEntry>& menu);
// The caption for the eye: in Chinese the menu's own, unless the office gave the line other words.
std::string ShownCaption(const MenuListEntry& entry, const std::vector<MenuEntry>& menu,
                         bool chinese);
// Writes the files anew, from the entries that need a right.
void WriteMenuList(const std::string& folder, const std::vector<MenuEntry>& entries);
// Writes them when the first is missing.
void EnsureMenuList(const std::string& folder, const std::vector<MenuEntry>& entries);

}  // namespace kaunter
