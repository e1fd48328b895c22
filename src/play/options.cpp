#include "play/options.h"

#include <map>

#include "platform/date_time.h"

namespace kaunter {

PlayOptions ParsePlayOptions(const std::vector<std::string>& arguments) {
  PlayOptions options;
  const std::map<std::string, std::string*> with_value = {
      {"--app", &options.app},           {"--database", &options.database},
      {"--settings", &options.settings}, {"--now", &options.now},
      {"--trace", &options.trace},       {"--out", &options.out},
      {"--computer", &options.computer}, {"--check-reports", &options.check_reports},
  };
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      options.help = true;
    } else if (const auto found = with_value.find(argument); found != with_value.end()) {
      if (i + 1 >= arguments.size()) throw UsageError(argument + " needs a value");
      *found->second = arguments[++i];
    } else if (argument.size() > 1 && argument.front() == '-') {
      throw UsageError("unknown option " + argument);
    } else if (!options.script.empty()) {
      throw UsageError("one script at a time: " + options.script + " or " + argument);
    } else {
      options.script = argument;
    }
  }
  if (!options.now.empty() && !DateTime::FromCanonical(options.now)) {
    throw UsageError("--now takes yyyy-mm-dd hh:mm:ss, not \"" + options.now + "\"");
  }
  return options;
}

const char* PlayUsage() {
  return "kaunter-play [--app DIR] [--database FILE] [--settings FILE]\n"
         "             [--now \"yyyy-mm-dd hh:mm:ss\"] [--trace FILE] [--out DIR]\n"
         "             [--computer NAME] [SCRIPT | -]\n"
         "kaunter-play --check-reports FOLDER\n";
}

}  // namespace kaunter
