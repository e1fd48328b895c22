// The command line of DailyBatch.
#pragma once

#include <string>
#include <vector>

#include "core/companion_program.h"
#include "platform/date_time.h"

namespace kaunter {

inline constexpr const char* kBatchToday = "today";

struct BatchOptions {
  CompanionReach reach;
  std::string date;  // dd-mm-yyyy, yyyy-mm-dd or "today"
  bool help = false;
};

// `arguments` without the program's name; what is not given there is taken from `handed_on`. Throws
// CompanionRefused for an unknown option, an option without its value, no date or a second one, and
// a --now that is no time.
BatchOptions ParseBatchOptions(const std::vector<std::string>& arguments,
                               const CompanionOptions& handed_on);

// Throws CompanionRefused for a text that is no date of the calendar.
DateTime BatchDate(const std::string& text, const DateTime& today);

const char* BatchUsage();

}  // namespace kaunter
