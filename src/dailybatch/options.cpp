#include "dailybatch/options.h"

#include <fmt/format.h>

namespace kaunter {

BatchOptions ParseBatchOptions(const std::vector<std::string>& arguments,
                               const CompanionOptions& handed_on) {
  BatchOptions options;
  options.reach.office = handed_on;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      options.help = true;
      return options;
    }
    if (TakeReachOption(arguments, &i, &options.reach)) continue;
    if (argument.starts_with("-")) {
      throw CompanionRefused("unknown option " + argument);
    } else if (!options.date.empty()) {
      throw CompanionRefused(fmt::format("one date at a time: {} or {}", options.date, argument));
    } else {
      options.date = argument;
    }
  }
  if (options.date.empty()) throw CompanionRefused("no date is given");
  return options;
}

DateTime BatchDate(const std::string& text, const DateTime& today) {
  if (text == kBatchToday) return today.DateOnly();
  auto date = DateTime::FromDisplay(text);
  if (!date) date = DateTime::FromCanonical(text);
  if (!date || !date->IsMidnight()) {
    throw CompanionRefused(fmt::format(
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
