#include "platform/sql/translator/function_table.h"

#include "platform/sql/text.h"
#include "platform/sql/translator/lexer.h"

namespace kaunter::sql {
namespace {

constexpr FunctionInfo kFunctions[] = {
    {"@@identity", Function::kIdentity, "", 'i'},
    {"@@rowcount", Function::kRowCount, "", 'i'},
    {"abs", Function::kAbs, "n", 'n'},
    {"ascii", Function::kAscii, "t", 'i'},
    {"ceiling", Function::kCeiling, "n", 'n'},
    {"char", Function::kChar, "i", 't'},
    {"charindex", Function::kCharIndex, "tt|i", 'i'},
    {"coalesce", Function::kCoalesce, "aa*", '?'},
    {"concat", Function::kConcat, "tt*", 't'},
    {"dateadd", Function::kDateAdd, "pid", 'e'},
    {"datediff", Function::kDateDiff, "pdd", 'i'},
    {"datename", Function::kDateName, "pd", 't'},
    {"datepart", Function::kDatePart, "pd", 'i'},
    {"day", Function::kDay, "d", 'i'},
    {"eomonth", Function::kEoMonth, "d|i", 'e'},
    {"floor", Function::kFloor, "n", 'n'},
    {"getdate", Function::kNow, "", 'd'},
    {"iif", Function::kIif, "aaa", '?'},
    {"isdate", Function::kIsDate, "a", 'i'},
    {"isnull", Function::kIsNull, "aa", '?'},
    {"isnumeric", Function::kIsNumeric, "a", 'i'},
    {"left", Function::kLeft, "ti", 't'},
    {"len", Function::kLen, "t", 'i'},
    {"lower", Function::kLower, "t", 't'},
    {"ltrim", Function::kLtrim, "t", 't'},
    {"month", Function::kMonth, "d", 'i'},
    {"nchar", Function::kChar, "i", 't'},
    {"newid", Function::kNewId, "", 't'},
    {"nullif", Function::kNullIf, "aa", '?'},
    {"patindex", Function::kPatIndex, "tt", 'i'},
    {"power", Function::kPower, "nn", 'n'},
    {"replace", Function::kReplace, "ttt", 't'},
    {"replicate", Function::kReplicate, "ti", 't'},
    {"reverse", Function::kReverse, "t", 't'},
    {"right", Function::kRight, "ti", 't'},
    {"round", Function::kRound, "ni|i", 'n'},
    {"rtrim", Function::kRtrim, "t", 't'},
    {"scope_identity", Function::kIdentity, "", 'i'},
    {"sign", Function::kSign, "n", 'n'},
    {"space", Function::kSpace, "i", 't'},
    {"sqrt", Function::kSqrt, "n", 'f'},
    {"str", Function::kStr, "n|ii", 't'},
    {"stuff", Function::kStuff, "tiit", 't'},
    {"substring", Function::kSubstring, "tii", 't'},
    {"sysdatetime", Function::kNow, "", 'd'},
    {"unicode", Function::kUnicode, "t", 'i'},
    {"upper", Function::kUpper, "t", 't'},
    {"year", Function::kYear, "d", 'i'},
};

struct DatePartAlias {
  std::string_view written;
  std::string_view name;
};

constexpr DatePartAlias kDateParts[] = {
    {"year", "year"},
    {"yy", "year"},
    {"yyyy", "year"},
    {"quarter", "quarter"},
    {"qq", "quarter"},
    {"q", "quarter"},
    {"month", "month"},
    {"mm", "month"},
    {"m", "month"},
    {"dayofyear", "dayofyear"},
    {"dy", "dayofyear"},
    {"y", "dayofyear"},
    {"day", "day"},
    {"dd", "day"},
    {"d", "day"},
    {"week", "week"},
    {"wk", "week"},
    {"ww", "week"},
    {"iso_week", "iso_week"},
    {"isowk", "iso_week"},
    {"isoww", "iso_week"},
    {"weekday", "weekday"},
    {"dw", "weekday"},
    {"w", "weekday"},
    {"hour", "hour"},
    {"hh", "hour"},
    {"minute", "minute"},
    {"mi", "minute"},
    {"n", "minute"},
    {"second", "second"},
    {"ss", "second"},
    {"s", "second"},
    {"millisecond", "millisecond"},
    {"ms", "millisecond"},
};

}  // namespace

const FunctionInfo* FindFunction(std::string_view name) {
  for (const FunctionInfo& info : kFunctions) {
    if (SameName(info.name, name)) return &info;
  }
  return nullptr;
}

std::string_view DatePartName(std::string_view name) {
  for (const DatePartAlias& part : kDateParts) {
    if (SameName(part.written, name)) return part.name;
  }
  return {};
}

}  // namespace kaunter::sql
