#include "platform/sql/translator/literal.h"

#include <fmt/format.h>

#include "platform/sql/dates.h"
#include "platform/sql/decimal.h"
#include "platform/sql/text.h"

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

void ConvertDecimal(std::string_view literal, const Parameter& parameter, LiteralValue* to) {
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
  to->kind = LiteralValue::Kind::kDecimal;
  to->integer = units;
  to->scale = scale;
}

void ConvertInteger(std::string_view literal, const Parameter& parameter, LiteralValue* to) {
  to->kind = LiteralValue::Kind::kInteger;
  std::int64_t value = 0;
  if (IsBlank(literal)) return;
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
  to->integer = parameter.width == kBitDigits ? value != 0 : value;
}

void ConvertDouble(std::string_view literal, const Parameter& parameter, LiteralValue* to) {
  to->kind = LiteralValue::Kind::kDouble;
  double value = 0;
  if (!IsBlank(literal) && !ParseDouble(literal, &value)) {
    throw SqlError(8114, fmt::format("Error converting data type nvarchar to float{}: '{}'.",
                                     Named(parameter), literal));
  }
  to->number = value;
}

void ConvertDate(std::string_view literal, const Parameter& parameter, LiteralValue* to) {
  to->kind = LiteralValue::Kind::kDate;
  DateTime date;
  DateResult result = ParseDateTime(literal, &date);
  // The length of "yyyy-mm-dd": nearly every date comes in its canonical text already.
  constexpr std::size_t kCanonicalLength = 10;
  if (literal.size() == kCanonicalLength && result == DateResult::kOk && date.year >= 1753 &&
      literal[4] == '-' && literal[7] == '-') {
    to->text = literal;
    return;
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
  to->made = (with_time ? date : date.DateOnly()).ToCanonical();
  to->text = to->made;
}

}  // namespace

void ConvertLiteral(std::string_view literal, const Parameter& parameter, LiteralValue* value) {
  switch (parameter.conversion) {
    case Conversion::kAsText:
      value->text = literal.substr(0, FittingBytes(literal, parameter));
      return;
    case Conversion::kAsInteger:
      return ConvertInteger(literal, parameter, value);
    case Conversion::kAsDecimal:
      return ConvertDecimal(literal, parameter, value);
    case Conversion::kAsDouble:
      return ConvertDouble(literal, parameter, value);
    case Conversion::kAsDate:
    case Conversion::kAsDateTime:
      return ConvertDate(literal, parameter, value);
  }
}

}  // namespace kaunter::sql
