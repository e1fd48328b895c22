#include "platform/regional.h"

namespace kaunter {

int DayOfTestDate(std::string_view short_date) {
  const auto day = short_date.find_first_of("dD");
  const auto month = short_date.find_first_of("mM");
  const auto year = short_date.find_first_of("yY");
  const bool year_first = year < day && year < month;
  return month < day && !year_first ? 2 : 1;
}

}  // namespace kaunter
