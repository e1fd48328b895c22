// The command line of the desktop.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "app/application.h"
#include "desktop/theme.h"

namespace kaunter {

struct DesktopOptions {
  ApplicationOptions application;
  ThemeChoice theme = ThemeChoice::system;
  bool chinese = false;

  // Pictures of windows for the documents: see docs/desktop.md.
  std::string picture_folder;
  std::string user = "ADMIN";
  std::string password;
  std::vector<std::string> screens;  // names, or "menu:ENTRY" for what an entry of the menu opens
  // Control and text; a control written "Screen.Control" is meant on that screen alone.
  std::vector<std::pair<std::string, std::string>> values;
  std::vector<std::string> presses;
  bool pages = false;  // a picture of each page of a tab set
  int width = 0;
  int height = 0;

  std::string error;  // not empty: the line cannot be read, and this says why
  bool help = false;
};

DesktopOptions ParseOptions(const std::vector<std::string>& arguments);
// What --help prints.
std::string OptionsHelp();

}  // namespace kaunter
