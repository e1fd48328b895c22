#include "core/settings.h"

#include <fmt/format.h>

#include "core/data_access.h"
#include "core/numbers.h"
#include "core/sql_literals.h"
#include "core/texts.h"

namespace kaunter {

std::string ReadSetting(Connection& main, std::string_view key) {
  return ScalarQuery(main,
                     fmt::format("SELECT [Value] FROM Systemast WHERE Param={}", QuoteStr(key)));
}

bool CountsAsTrue(std::string_view value) {
  if (SameText(Trim(value), "True")) return true;
  return IsNumeric(value) && CDbl(value) != 0;
}

int RoundedInstallmentOf(std::string_view value) {
  constexpr int kDefault = 2;
  constexpr double kLargest = 1e9;
  if (!IsNumeric(value)) return kDefault;
  const double number = CDbl(value);
  return number > -kLargest && number < kLargest ? CLng(number) : kDefault;
}

}  // namespace kaunter
