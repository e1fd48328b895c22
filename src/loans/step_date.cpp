#include "loans/step_date.h"

#include <fmt/format.h>

#include <stdexcept>

#include "core/numbers.h"

namespace kaunter {
namespace {

constexpr std::size_t kUnitLength = 4;  // "DAYS"

}  // namespace

int DaysOfCode(std::string_view code) {
  const std::string_view count =
      code.size() > kUnitLength ? code.substr(0, code.size() - kUnitLength) : std::string_view();
  if (!IsNumeric(count) || CDbl(count) < 1 || CDbl(count) > 100000) {
    throw std::invalid_argument(fmt::format(
        "Loan Type \"{}\" has no number of days from 1; it should be MONTH, WEEK, DAILY or like "
        "14DAYS",
        code));
  }
  return CLng(count);
}

bool IsRepaymentCode(std::string_view code) {
  if (code == "MONTH" || code == "WEEK" || code == "DAILY") return true;
  try {
    DaysOfCode(code);
    return true;
  } catch (const std::invalid_argument&) {
    return false;
  }
}

DateTime StepDate(std::string_view code, const DateTime& date, bool backwards) {
  const int direction = backwards ? -1 : 1;
  if (code == "MONTH") return date.AddMonths(direction);
  if (code == "DAILY") return date.AddDays(direction);
  if (code == "WEEK") return date.AddDays(7 * direction);
  return date.AddDays(direction * DaysOfCode(code));
}

}  // namespace kaunter
