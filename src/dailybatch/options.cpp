#include "dailybatch/options.h"

#include <fmt/format.h>

#include <map>

namespace kaunter {

BatchOptions ParseBatchOptions(const std::vector<std::string>& arguments,
                               const CompanionOptions& handed_on) {
  BatchOptions options{.office = handed_on, .trace = {}, .date = {}, .help = false};
  const std::map<std::string, std::string*> with_value = {
      {"--app", &options.office.app},
      {"--database", &options.office.database},
      {"--settings", &options.office.settings},
      {"--now", &options.office.now},
      {"--trace", &options.trace},
  };
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      options.help = true;
      return options;
    }
    if (const auto found = with_value.find(argument); found != with_value.end()) {
      if (i + 1 >= arguments.size()) throw BatchUsageError(argument + " needs a value");
      *found->second = arguments[++i];
    } else if (argument.starts_with("-")) {
      throw BatchUsageError("unknown option " + argument);
    } else if (!options.date.empty()) {
      throw BatchUsageError(fmt::format("one date at a time: {} or {}", options.date, argument));
    } else {
      options.date = argument;
    }
  }
  if (options.date.empty()) throw BatchUsageError("no date is given");
  if (!options.office.now.empty() && !DateTime::FromCanonical(options.office.now)) {
    throw BatchUsageError(
        fmt::format("--now takes yyyy-mm-dd hh:mm:ss, not \"{}\"", options.office.now));
  }
  return options;
}

DateTime BatchDate(const std::string& text, const DateTime& today) {
  if (text == "today") return today.DateOnly();
  auto date = DateTime::FromDisplay(text);
  if (!date) date = DateTime::FromCanonical(text);
  if (!date || !date->IsMidnight()) {
    throw BatchUsageError(fmt::format(
        "\"{}\" is no date: write it as dd-mm-yyyy, such as 31-01-2024, or say today", text));
  }
  return *date;
}

const char* BatchUsage() {
  return "DailyBatch [--app DIR] [--database FILE] [--settings FILE]\n"
         "           [--now \"yyyy-mm-dd hh:mm:ss\"] [--trace FILE] DATE\n"
         "DATE is dd-mm-yyyy, yyyy-mm-dd or today.\n";
}

}  // namespace kaunter
