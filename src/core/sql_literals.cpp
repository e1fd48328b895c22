#include "core/sql_literals.h"

#include <fmt/format.h>

#include <optional>
#include <stdexcept>

#include "core/formats.h"
#include "core/numbers.h"
#include "core/texts.h"

namespace kaunter {
namespace {

std::string NumberOr(std::string_view text, const char* blank) {
  return Trim(text).empty() ? blank : PlainNumber(text);
}

DateTime ReadDate(std::string_view text) {
  const std::optional<DateTime> date = DateTime::FromDisplay(Trim(text));
  if (!date) {
    throw std::invalid_argument(fmt::format("\"{}\" is not a date of the form dd-mm-yyyy", text));
  }
  return *date;
}

}  // namespace

std::string EscapeQuotes(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\'') escaped += '\'';
    escaped += c;
  }
  return escaped;
}

std::string QuoteStr(std::string_view text) { return "'" + EscapeQuotes(text) + "'"; }

std::string StripCommaOrZero(std::string_view text) { return NumberOr(text, "0"); }
std::string StripCommaOrNull(std::string_view text) { return NumberOr(text, "null"); }

std::string SqlDate(std::string_view text) {
  return Trim(text).empty() ? "null" : SqlDate(ReadDate(text));
}
std::string SqlDate(const DateTime& date) { return "'" + Format(date, "yyyy-mm-dd") + "'"; }

std::string SqlDateTime(std::string_view text) {
  return Trim(text).empty() ? "null" : SqlDateTime(ReadDate(text));
}
std::string SqlDateTime(const DateTime& date) {
  return "'" + Format(date, "yyyy-mm-dd hh:nn:ss") + "'";
}

}  // namespace kaunter
