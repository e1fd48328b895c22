// The T-SQL functions that the binder knows, with the types they take and give.
#pragma once

#include <cstdint>
#include <string_view>

namespace kaunter::sql {

enum class Function : std::uint8_t {
  kNone,
  kAbs,
  kAscii,
  kCeiling,
  kChar,
  kCharIndex,
  kCoalesce,
  kConcat,
  kDateAdd,
  kDateDiff,
  kDateName,
  kDatePart,
  kDay,
  kEoMonth,
  kFloor,
  kIdentity,
  kIif,
  kIsDate,
  kIsNull,
  kIsNumeric,
  kLeft,
  kLen,
  kLower,
  kLtrim,
  kMonth,
  kNewId,
  kNow,
  kNullIf,
  kPatIndex,
  kPower,
  kReplace,
  kReplicate,
  kReverse,
  kRight,
  kRound,
  kRowCount,
  kRtrim,
  kSign,
  kSpace,
  kSqrt,
  kStr,
  kStuff,
  kSubstring,
  kUnicode,
  kUpper,
  kYear
};

struct FunctionInfo {
  std::string_view name;  // lower case
  Function function;
  // A letter an argument: t text, i integer, n number, d date, a anything, p part of a date.
  // Those behind | may be left out; * repeats the last.
  std::string_view arguments;
  // t, i, d as above, f floating; n and a the type of the first argument, e the type of the date;
  // ? decided by the binder in code.
  char result;
};

// Without regard to case; null for a name that is not known.
const FunctionInfo* FindFunction(std::string_view name);

// "yy", "Year" ... to the name that the embedded engine's date functions take; empty for no part.
std::string_view DatePartName(std::string_view name);

}  // namespace kaunter::sql
