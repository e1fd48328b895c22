// From a text of a box to a literal in a statement. Nothing else stands between what a person types
// and the statement's own words, so a text that does not fit its place is refused here
// (std::invalid_argument) and never sent.
#pragma once

#include <string>
#include <string_view>

#include "platform/date_time.h"

namespace kaunter {

std::string EscapeQuotes(std::string_view text);  // every ' doubled
std::string QuoteStr(std::string_view text);      // the same between quotes

// "" gives 0, or the word null; else the text without commas, its digits as typed. Refuses what is
// no plain number.
std::string StripCommaOrZero(std::string_view text);
std::string StripCommaOrNull(std::string_view text);

// "" gives the word null; else 'yyyy-mm-dd', or 'yyyy-mm-dd hh:nn:ss'. Takes dd-mm-yyyy with or
// without a time and refuses any other text.
std::string SqlDate(std::string_view text);
std::string SqlDate(const DateTime& date);
std::string SqlDateTime(std::string_view text);
std::string SqlDateTime(const DateTime& date);

}  // namespace kaunter
