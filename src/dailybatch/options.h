// The command line of DailyBatch.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "core/companion.h"
#include "platform/date_time.h"

namespace kaunter {

struct BatchOptions {
  CompanionOptions office;
  std::string trace;  // file that takes every statement
  std::string date;   // dd-mm-yyyy, yyyy-mm-dd or "today"
  bool help = false;
};

class BatchUsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// `arguments` without the program's name; what is not given there is taken from `handed_on`. Throws
// BatchUsageError for an unknown option, an option without its value, no date or a second one, and
// a --now that is no time.
BatchOptions ParseBatchOptions(const std::vector<std::string>& arguments,
                               const CompanionOptions& handed_on);

// Throws BatchUsageError for a text that is no date of the calendar.
DateTime BatchDate(const std::string& text, const DateTime& today);

const char* BatchUsage();

}  // namespace kaunter
