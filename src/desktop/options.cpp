#include "desktop/options.h"

#include <fmt/format.h>

#include <functional>
#include <map>

namespace kaunter {

std::string OptionsHelp() {
  return "kaunter [options]\n"
         "  --app DIR           folder of logs, Photo and the office's own files\n"
         "  --database FILE     embedded database in place of the data source; made when missing\n"
         "  --settings FILE     local settings in place of the user's own\n"
         "  --now \"yyyy-mm-dd hh:mm:ss\"  sets the clock\n"
         "  --trace FILE        takes every statement, one a line\n"
         "  --theme light|dark|system\n"
         "  --language en|zh\n"
         "pictures of windows:\n"
         "  --screenshot DIR    signs in, takes a picture of each window and ends\n"
         "  --user ID --password TEXT     who signs in\n"
         "  --screen NAME       also opens this screen; may be repeated\n"
         "  --menu ENTRY        also opens what this entry of the menu opens; may be repeated\n"
         "  --set CONTROL=TEXT  fills a box of the screens before their picture\n"
         "  --press CONTROL     presses a button (opens a table's first row) before the picture\n"
         "                      (SCREEN.CONTROL: on that screen alone)\n"
         "  --pages yes|no      a picture of each page of a screen\n"
         "  --size WxH          size of the main window\n";
}

DesktopOptions ParseOptions(const std::vector<std::string>& arguments) {
  DesktopOptions options;
  using Take = std::function<bool(const std::string&)>;
  const auto into = [](std::string& target) -> Take {
    return [&target](const std::string& value) {
      target = value;
      return true;
    };
  };
  const std::map<std::string, Take> takers = {
      {"--app", into(options.application.app_path)},
      {"--database", into(options.application.database)},
      {"--settings", into(options.application.settings)},
      {"--now", into(options.application.now)},
      {"--trace", into(options.application.trace)},
      {"--screenshot", into(options.picture_folder)},
      {"--user", into(options.user)},
      {"--password", into(options.password)},
      {"--theme",
       [&](const std::string& value) {
         options.theme = value == "dark"    ? ThemeChoice::dark
                         : value == "light" ? ThemeChoice::light
                                            : ThemeChoice::system;
         return value == "dark" || value == "light" || value == "system";
       }},
      {"--language",
       [&](const std::string& value) {
         options.chinese = value == "zh";
         return value == "zh" || value == "en";
       }},
      {"--screen",
       [&](const std::string& value) {
         options.screens.push_back(value);
         return !value.empty();
       }},
      {"--menu",
       [&](const std::string& value) {
         options.screens.push_back("menu:" + value);
         return !value.empty();
       }},
      {"--pages",
       [&](const std::string& value) {
         options.pages = value == "yes";
         return value == "yes" || value == "no";
       }},
      {"--press",
       [&](const std::string& value) {
         options.presses.push_back(value);
         return !value.empty();
       }},
      {"--set",
       [&](const std::string& value) {
         const auto cut = value.find('=');
         if (cut == std::string::npos) return false;
         options.values.emplace_back(value.substr(0, cut), value.substr(cut + 1));
         return true;
       }},
      {"--size",
       [&](const std::string& value) {
         return std::sscanf(value.c_str(), "%dx%d", &options.width, &options.height) == 2;
       }},
  };
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    if (name == "--help" || name == "-h") {
      options.help = true;
      return options;
    }
    const auto taker = takers.find(name);
    if (taker == takers.end()) {
      options.error = fmt::format("{}: unknown option; --help lists them", name);
      return options;
    }
    if (i + 1 == arguments.size()) {
      options.error = fmt::format("{}: its value is missing", name);
      return options;
    }
    const std::string& value = arguments[++i];
    if (!taker->second(value)) {
      options.error = fmt::format("{}: \"{}\" is no value for it", name, value);
      return options;
    }
  }
  return options;
}

}  // namespace kaunter
