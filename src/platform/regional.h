// The PC's regional short date: all text dates of the program are day first, so a PC that reads
// "01-02-2009" month first must not run it.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

// The short date of the machine as a pattern ("dd/MM/yyyy"): of the user's regional settings on
// Windows, elsewhere from the locale of the environment; empty when none is set (the "C" and
// "POSIX" locales set none).
std::string MachineShortDate();
// The day that a PC with this short date reads out of "01-02-2009": 2 when the month stands before
// the day, else 1. Separators and letter case do not matter; an empty pattern reads day first.
int DayOfTestDate(std::string_view short_date);

}  // namespace kaunter
