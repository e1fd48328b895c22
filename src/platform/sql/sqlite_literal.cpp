#include "platform/sql/sqlite_literal.h"

#include <fmt/format.h>

#include "platform/sql/sqlite_dates.h"
#include "platform/sql/sqlite_decimal.h"
#include "platform/sql/sqlite_text.h"

namespace kaunter::sql {
namespace {

constexpr int kMostWholeDigits = 18;

// " (column 'LoanAmt')", where the column is known.
std::string Named(const Parameter& parameter) {
  return parameter.column.empty() ? std::string() : fmt::format(" (column '{}')", parameter.column);
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

[[noreturn]] void RefuseOverflow(std::string_view type, const Parameter& parameter) {
  throw SqlError(
      8115, fmt::format("Arithmetic overflow error converting expression to data type {}{}.", type,
                        Named(parameter)));
}

// The bytes of `text` that the column takes; what is cut may only be blanks.
std::size_t FittingBytes(std::string_view text, const Parameter& parameter) {
  const auto width = static_cast<std::size_t>(parameter.width);
  if (width == 0 || text.size() <= width) return text.size();
  std::size_t at = 0;
  for (std::size_t count = 0; count < width && at < text.size(); ++count) NextChar(text, &at);
  if (text.find_first_not_of(' ', at) != std::string_view::npos) {
    throw SqlError(2628,
                   fmt::format("String or binary data would be truncated in column '{}'. It takes "
                               "{} characters. Truncated value: '{}'.",
                               parameter.column, width, text.substr(0, at)));
  }
  return at;
}

int BindDecimal(sqlite3_stmt* statement, int index, std::string_view literal,
                const Parameter& parameter) {
  const int scale = std::min(parameter.scale, kMaxScale);
  std::int64_t units = 0;
  const bool exponent = literal.find_first_of("eE") != std::string_view::npos;
  const DecimalResult result = ParseDecimal(literal, scale, &units, exponent);
  if (result == DecimalResult::kNoNumber) {
    throw SqlError(8114, fmt::format("Error converting data type nvarchar to numeric{}: '{}'.",
                                     Named(parameter), literal));
  }
  const std::int64_t power = PowerOfTen(scale);
  const std::int64_t whole = units / power;
  // A column of 18 digits would take more than a double holds exactly: the smaller limit counts.
  const int whole_digits = parameter.width - scale;
  const bool too_wide = parameter.width > 0 && whole_digits >= 0 &&
                        whole_digits < kMostWholeDigits &&
                        (whole >= PowerOfTen(whole_digits) || whole <= -PowerOfTen(whole_digits));
  if (result == DecimalResult::kTooLarge || too_wide ||
      (scale >= 2 && (whole > kLargestAmount || whole < -kLargestAmount))) {
    RefuseOverflow("numeric", parameter);
  }
  if (units == whole * power) return sqlite3_bind_int64(statement, index, whole);
  return sqlite3_bind_double(statement, index, Unscale(units, scale));
}

// What an integer column holds, by the digits of its largest value (tinyint, smallint, int).
bool FitsInteger(std::int64_t value, int digits) {
  switch (digits) {
    case 3:
      return value >= 0 && value <= 255;
    case 5:
      return value == static_cast<std::int16_t>(value);
    case 10:
      return value == static_cast<std::int32_t>(value);
    default:
      return true;
  }
}

int BindInteger(sqlite3_stmt* statement, int index, std::string_view literal,
                const Parameter& parameter) {
  std::int64_t value = 0;
  if (IsBlank(literal)) return sqlite3_bind_int64(statement, index, 0);
  switch (ParseInteger(literal, /*cut=*/false, &value)) {
    case DecimalResult::kOk:
      break;
    case DecimalResult::kTooLarge:
      throw SqlError(248, fmt::format("The conversion of the nvarchar value '{}' overflowed an int "
                                      "column{}.",
                                      literal, Named(parameter)));
    case DecimalResult::kNoNumber:
      throw SqlError(245, fmt::format("Conversion failed when converting the nvarchar value '{}' "
                                      "to data type int{}.",
                                      literal, Named(parameter)));
  }
  if (!FitsInteger(value, parameter.width)) RefuseOverflow("int", parameter);
  if (parameter.width == 1) value = value != 0;
  return sqlite3_bind_int64(statement, index, value);
}

int BindDouble(sqlite3_stmt* statement, int index, std::string_view literal,
               const Parameter& parameter) {
  double value = 0;
  if (!IsBlank(literal) && !ParseDouble(literal, &value)) {
    throw SqlError(8114, fmt::format("Error converting data type nvarchar to float{}: '{}'.",
                                     Named(parameter), literal));
  }
  return sqlite3_bind_double(statement, index, value);
}

int BindDate(sqlite3_stmt* statement, int index, std::string_view literal,
             const Parameter& parameter) {
  DateTime date;
  DateResult result = ParseDateTime(literal, &date);
  // The length of "yyyy-mm-dd": nearly every date comes in its canonical text already.
  constexpr std::size_t kCanonicalLength = 10;
  if (literal.size() == kCanonicalLength && result == DateResult::kOk && date.year >= 1753 &&
      literal[4] == '-' && literal[7] == '-') {
    return sqlite3_bind_text(statement, index, literal.data(), static_cast<int>(literal.size()),
                             SQLITE_STATIC);
  }
  const bool with_time = parameter.conversion == Conversion::kAsDateTime;
  if (result == DateResult::kOk && with_time && date.year < 1753) {
    result = DateResult::kOutsideCalendar;
  }
  if (result == DateResult::kNoDate) {
    throw SqlError(241, fmt::format("Conversion failed when converting date and/or time from "
                                    "character string{}: '{}'.",
                                    Named(parameter), literal));
  }
  if (result == DateResult::kOutsideCalendar) {
    throw SqlError(242, fmt::format("The conversion of a nvarchar data type to a datetime data "
                                    "type resulted in an out-of-range value{}: '{}'.",
                                    Named(parameter), literal));
  }
  const std::string text = (with_time ? date : date.DateOnly()).ToCanonical();
  return sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()),
                           SQLITE_TRANSIENT);
}

}  // namespace

void BindLiteral(sqlite3_stmt* statement, int index, std::string_view literal,
                 const Parameter& parameter) {
  int code = SQLITE_OK;
  switch (parameter.conversion) {
    case Conversion::kAsText:
      code = sqlite3_bind_text64(statement, index, literal.data(), FittingBytes(literal, parameter),
                                 SQLITE_STATIC, SQLITE_UTF8);
      break;
    case Conversion::kAsInteger:
      code = BindInteger(statement, index, literal, parameter);
      break;
    case Conversion::kAsDecimal:
      code = BindDecimal(statement, index, literal, parameter);
      break;
    case Conversion::kAsDouble:
      code = BindDouble(statement, index, literal, parameter);
      break;
    case Conversion::kAsDate:
    case Conversion::kAsDateTime:
      code = BindDate(statement, index, literal, parameter);
      break;
  }
  if (code != SQLITE_OK) {
    throw SqlError(50000, fmt::format("A literal cannot be bound: {}.", sqlite3_errstr(code)));
  }
}

}  // namespace kaunter::sql
