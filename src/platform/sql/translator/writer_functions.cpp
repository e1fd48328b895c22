// Calls of functions, and what is worked out over many rows.
#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "platform/sql/sql_error.h"
#include "platform/sql/text.h"
#include "platform/sql/translator/writer.h"

namespace kaunter::sql {
namespace {

struct Called {
  Function function;
  std::string_view name;
};

// What is called with the arguments as they stand.
constexpr Called kCalled[] = {
    {Function::kAbs, "k_abs"},
    {Function::kAscii, "k_ascii"},
    {Function::kCeiling, "k_ceiling"},
    {Function::kChar, "k_char"},
    {Function::kCharIndex, "k_charindex"},
    {Function::kCoalesce, "coalesce"},
    {Function::kDateAdd, "k_dateadd"},
    {Function::kDateDiff, "k_datediff"},
    {Function::kDateName, "k_datename"},
    {Function::kDatePart, "k_datepart"},
    {Function::kFloor, "k_floor"},
    {Function::kIdentity, "k_identity"},
    {Function::kIsDate, "k_isdate"},
    {Function::kIsNull, "coalesce"},
    {Function::kIsNumeric, "k_isnumeric"},
    {Function::kLeft, "k_left"},
    {Function::kLen, "k_len"},
    {Function::kLower, "k_lower"},
    {Function::kLtrim, "k_ltrim"},
    {Function::kNewId, "k_newid"},
    {Function::kNow, "k_now"},
    {Function::kPatIndex, "k_patindex"},
    {Function::kPower, "k_power"},
    {Function::kReplace, "k_replace"},
    {Function::kReplicate, "k_replicate"},
    {Function::kReverse, "k_reverse"},
    {Function::kRight, "k_right"},
    {Function::kRound, "k_round_tsql"},
    {Function::kRowCount, "k_rowcount"},
    {Function::kRtrim, "k_rtrim"},
    {Function::kSign, "k_sign"},
    {Function::kSpace, "k_space"},
    {Function::kSqrt, "k_sqrt"},
    {Function::kStuff, "k_stuff"},
    {Function::kSubstring, "k_substring"},
    {Function::kUnicode, "k_unicode"},
    {Function::kUpper, "k_upper"},
};

}  // namespace

void Writer::Call(std::string_view function, const Expr& expr) {
  out_ += function;
  out_ += '(';
  for (std::size_t i = 0; i < expr.args.size(); ++i) {
    if (i > 0) out_ += ", ";
    Argument(*expr.args[i]);
  }
  out_ += ')';
}

// The first argument of the date functions is the name of a part.
void Writer::CallWithPart(std::string_view function, const Expr& expr) {
  out_ += function;
  out_ += '(';
  Text(expr.args[0]->text);
  for (std::size_t i = 1; i < expr.args.size(); ++i) {
    out_ += ", ";
    Argument(*expr.args[i]);
  }
  out_ += ')';
}

void Writer::DatePart(std::string_view part, const Expr& date) {
  out_ += "k_datepart('";
  out_ += part;
  out_ += "', ";
  Value(date);
  out_ += ')';
}

void Writer::ValueOr(const Expr& expr, std::size_t at, std::string_view otherwise) {
  if (at < expr.args.size()) {
    Value(*expr.args[at]);
  } else {
    out_ += otherwise;
  }
}

void Writer::FunctionCall(const Expr& expr) {
  const auto called =
      std::ranges::find(kCalled, expr.function, [](const Called& row) { return row.function; });
  if (called == std::end(kCalled)) return WrittenOut(expr);
  const bool rounded = expr.function == Function::kPower && IsDecimal(expr);
  if (rounded) OpenRound();
  switch (expr.function) {
    case Function::kDateAdd:
    case Function::kDateDiff:
    case Function::kDateName:
    case Function::kDatePart:
      CallWithPart(called->name, expr);
      break;
    default:
      Call(called->name, expr);
  }
  if (rounded) CloseRound(expr.type.scale, 0);
}

// The functions whose arguments do not simply follow each other.
void Writer::WrittenOut(const Expr& expr) {
  switch (expr.function) {
    case Function::kDay:
      return DatePart("day", *expr.args[0]);
    case Function::kMonth:
      return DatePart("month", *expr.args[0]);
    case Function::kYear:
      return DatePart("year", *expr.args[0]);
    case Function::kEoMonth:
      out_ += "k_eomonth(";
      Value(*expr.args[0]);
      out_ += ", ";
      ValueOr(expr, 1, "0");
      out_ += ')';
      return;
    case Function::kIif:
      out_ += "CASE WHEN ";
      Condition(*expr.args[0]);
      out_ += " THEN ";
      Value(*expr.args[1]);
      out_ += " ELSE ";
      Value(*expr.args[2]);
      out_ += " END";
      return;
    case Function::kNullIf:
      out_ += "CASE WHEN ";
      Comparison(*expr.args[0], " = ", *expr.args[1]);
      out_ += " THEN NULL ELSE ";
      Value(*expr.args[0]);
      out_ += " END";
      return;
    case Function::kStr:
      out_ += "k_str(";
      Value(*expr.args[0]);
      out_ += ", ";
      ValueOr(expr, 1, "10");
      out_ += ", ";
      ValueOr(expr, 2, "0");
      out_ += ')';
      return;
    default:  // a dialect's own, and it has none
      Fail(195, "This function is not known here.", statement_.text, expr.place);
  }
}

void Writer::Aggregate(const Expr& expr) {
  if (expr.args.empty()) {
    out_ += "count(*)";
    return;
  }
  const Expr& value = *expr.args[0];
  if (expr.text == "sum" || expr.text == "avg") {
    OpenSum(expr);
    SumCall(expr);
    CloseSum(expr);
    return;
  }
  fmt::format_to(std::back_inserter(out_), "{}({}", expr.text, expr.distinct ? "DISTINCT " : "");
  Collated(value, LacksCollation(value));
  out_ += ')';
}

void Writer::Window(const Expr& expr) {
  const bool sum = expr.text == "sum" || expr.text == "avg";
  std::size_t at = expr.own_args;
  if (sum) {
    OpenSum(expr);
    SumCall(expr);
  } else {
    out_ += LowerAscii(expr.text);
    out_ += '(';
    if (expr.own_args == 0 && expr.text == "count") out_ += '*';
    for (std::size_t i = 0; i < expr.own_args; ++i) {
      if (i > 0) out_ += ", ";
      Value(*expr.args[i]);
    }
    out_ += ')';
  }
  out_ += " OVER (";
  const std::size_t order = at + expr.partition_args;
  for (const char* separator = "PARTITION BY "; at < order; ++at) {
    out_ += separator;
    separator = ", ";
    Collated(*expr.args[at], LacksCollation(*expr.args[at]));
  }
  if (order < expr.args.size()) {
    for (const char* separator = expr.partition_args > 0 ? " ORDER BY " : "ORDER BY ";
         at < expr.args.size(); ++at) {
      out_ += separator;
      separator = ", ";
      Value(*expr.args[at]);
      OrderDirection(expr.args[at].get(), IsText(*expr.args[at]), expr.descending[at - order]);
    }
  }
  out_ += ')';
  if (sum) CloseSum(expr);
}

}  // namespace kaunter::sql
