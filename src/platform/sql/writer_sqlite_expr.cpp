// SQLite's expressions.
#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "platform/sql/functions.h"
#include "platform/sql/sql_error.h"
#include "platform/sql/writer_sqlite.h"

namespace kaunter::sql {
namespace {

bool IsText(const Expr& expr) { return expr.type.kind == TypeKind::kText; }
bool IsDecimal(const Expr& expr) { return expr.type.kind == TypeKind::kDecimal; }
bool IsDate(const Type& type) {
  return type.kind == TypeKind::kDate || type.kind == TypeKind::kDateTime;
}
bool IsNumber(const Type& type) {
  return type.kind == TypeKind::kInteger || type.kind == TypeKind::kDecimal ||
         type.kind == TypeKind::kDouble;
}

bool IsChain(const Expr& expr) {
  return expr.kind == ExprKind::kBinary && IsDecimal(expr) &&
         (expr.op == Op::kAdd || expr.op == Op::kSubtract || expr.op == Op::kMultiply ||
          expr.op == Op::kDivide);
}

std::string_view OpText(Op op) {
  switch (op) {
    case Op::kAdd:
      return " + ";
    case Op::kSubtract:
      return " - ";
    case Op::kMultiply:
      return " * ";
    case Op::kEqual:
      return " = ";
    case Op::kNotEqual:
      return " <> ";
    case Op::kLess:
      return " < ";
    case Op::kLessEqual:
      return " <= ";
    case Op::kGreater:
      return " > ";
    default:
      return " >= ";
  }
}

bool UsesOneOf(const Expr& expr, const std::vector<const Source*>& sources) {
  if (expr.kind == ExprKind::kColumn) {
    return std::find(sources.begin(), sources.end(), expr.source) != sources.end();
  }
  return std::any_of(expr.args.begin(), expr.args.end(),
                     [&](const ExprPtr& argument) { return UsesOneOf(*argument, sources); });
}

// A plain column has the collation of its declaration; anything else has lost it.
bool LacksCollation(const Expr& expr) { return IsText(expr) && !expr.base_column; }

}  // namespace

void SqliteWriter::Text(std::string_view text) {
  out_ += '\'';
  for (const char c : text) {
    if (c == '\'') out_ += '\'';
    out_ += c;
  }
  out_ += '\'';
}

void SqliteWriter::Literal(const Expr& expr) {
  if (expr.literal_kind == TokenKind::kBinary) {
    std::string_view digits = expr.text.substr(2);
    out_ += "X'";
    if (digits.size() % 2 != 0) out_ += '0';
    out_ += digits;
    out_ += '\'';
    return;
  }
  if (expr.literal < 0 || constants_) {
    // The quotes of a text are still doubled.
    if (expr.literal_kind == TokenKind::kText) {
      out_ += '\'';
      out_ += expr.text;
      out_ += '\'';
    } else {
      out_ += expr.text;
    }
    return;
  }
  Parameter parameter;
  parameter.literal = static_cast<std::size_t>(expr.literal);
  parameter.conversion = expr.conversion;
  if (expr.conversion == Conversion::kAsDecimal) parameter.scale = expr.scale;
  parameter.width = expr.width;
  parameter.column = expr.column;
  const auto known =
      std::find_if(parameters_.begin(), parameters_.end(), [&](const Parameter& other) {
        return other.literal == parameter.literal && other.conversion == parameter.conversion &&
               other.scale == parameter.scale && other.width == parameter.width;
      });
  const std::ptrdiff_t number = known - parameters_.begin() + 1;
  if (known == parameters_.end()) parameters_.push_back(std::move(parameter));
  fmt::format_to(std::back_inserter(out_), "?{}", number);
}

void SqliteWriter::Value(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::kLiteral:
      Literal(expr);
      return;
    case ExprKind::kNull:
      out_ += "NULL";
      return;
    case ExprKind::kColumn:
      if (!bare_columns_) {
        Name(expr.source->alias);
        out_ += '.';
      }
      Name(expr.text);
      return;
    case ExprKind::kBinary:
      Binary(expr);
      return;
    case ExprKind::kNegate:
      out_ += "(0 - ";  // no negative zero comes out of this
      Value(*expr.args[0]);
      out_ += ')';
      return;
    case ExprKind::kPlus:
      Value(*expr.args[0]);
      return;
    case ExprKind::kCase:
      Case(expr);
      return;
    case ExprKind::kFunction:
      FunctionCall(expr);
      return;
    case ExprKind::kAggregate:
      Aggregate(expr);
      return;
    case ExprKind::kWindow:
      Window(expr);
      return;
    case ExprKind::kConvert:
      Converted(expr);
      return;
    case ExprKind::kCoerce:
      Coercion(*expr.args[0], expr.target);
      return;
    case ExprKind::kCheckWidth:
      out_ += "k_check_text(";
      Value(*expr.args[0]);
      fmt::format_to(std::back_inserter(out_), ", {}, ", expr.width);
      Text(expr.column);
      out_ += ')';
      return;
    case ExprKind::kSubquery:
      Subquery(expr);
      return;
    default:
      Condition(expr);
      return;
  }
}

void SqliteWriter::Collated(const Expr& expr, bool collate) {
  Value(expr);
  if (!collate) return;
  out_ += " COLLATE ";
  out_ += kCollation;
}

// One rounding around the outermost + - * / of decimals is enough, since the binary residue of a
// chain stays far below the last place.
void SqliteWriter::Binary(const Expr& expr) {
  if (IsChain(expr)) {
    out_ += "k_round(";
    Chain(expr);
    fmt::format_to(std::back_inserter(out_), ", {})", expr.type.scale);
    return;
  }
  const Expr& left = *expr.args[0];
  const Expr& right = *expr.args[1];
  const bool integer = expr.type.kind == TypeKind::kInteger;
  switch (expr.op) {
    case Op::kConcat:
      out_ += '(';
      Value(left);
      out_ += " || ";
      Value(right);
      out_ += ')';
      return;
    case Op::kDatePlus:
      out_ += "k_date_plus(";
      Value(left);
      out_ += expr.negated ? ", 0 - " : ", ";
      Value(right);
      out_ += ')';
      return;
    case Op::kDivide:
      out_ += '(';
      Value(left);
      out_ += integer ? " / k_divisor(" : " * 1.0 / k_divisor(";
      Value(right);
      out_ += "))";
      return;
    case Op::kModulo:
      if (integer) {
        out_ += '(';
        Value(left);
        out_ += " % k_divisor(";
        Value(right);
        out_ += "))";
      } else {
        out_ += "k_mod(";
        Value(left);
        out_ += ", ";
        Value(right);
        out_ += ')';
      }
      return;
    default:
      out_ += '(';
      Value(left);
      out_ += OpText(expr.op);
      Value(right);
      out_ += ')';
      return;
  }
}

void SqliteWriter::Chain(const Expr& expr) {
  out_ += '(';
  Operand(*expr.args[0]);
  if (expr.op == Op::kDivide) {
    // Decimals without a fraction are stored as integers, and SQLite would divide them so.
    out_ += " * 1.0 / k_divisor(";
    Value(*expr.args[1]);
    out_ += ')';
  } else {
    out_ += OpText(expr.op);
    Operand(*expr.args[1]);
  }
  out_ += ')';
}

// A part of a chain, or what is rounded anyway: not rounded by itself.
void SqliteWriter::Operand(const Expr& expr) {
  if (IsChain(expr)) {
    Chain(expr);
  } else {
    Value(expr);
  }
}

void SqliteWriter::Negated(const Expr& expr) {
  if (expr.negated) out_ += " NOT";
}

void SqliteWriter::Comparison(const Expr& left, std::string_view op, const Expr& right) {
  const bool text = IsText(left) || IsText(right);
  const bool collate = text && !left.base_column && !right.base_column;
  Collated(left, collate);
  out_ += op;
  Value(right);
}

void SqliteWriter::Condition(const Expr& expr) {
  out_ += '(';
  switch (expr.kind) {
    case ExprKind::kAnd:
    case ExprKind::kOr:
      for (std::size_t i = 0; i < expr.args.size(); ++i) {
        if (i > 0) out_ += expr.kind == ExprKind::kAnd ? " AND " : " OR ";
        Condition(*expr.args[i]);
      }
      break;
    case ExprKind::kNot:
      out_ += "NOT ";
      Condition(*expr.args[0]);
      break;
    case ExprKind::kCompare:
      Comparison(*expr.args[0], OpText(expr.op), *expr.args[1]);
      break;
    case ExprKind::kBetween:
      Collated(*expr.args[0], LacksCollation(*expr.args[0]));
      Negated(expr);
      out_ += " BETWEEN ";
      Value(*expr.args[1]);
      out_ += " AND ";
      Value(*expr.args[2]);
      break;
    case ExprKind::kLike:
      Value(*expr.args[0]);
      Negated(expr);
      out_ += " LIKE ";
      Value(*expr.args[1]);
      if (expr.args.size() > 2) {
        out_ += " ESCAPE ";
        Value(*expr.args[2]);
      }
      break;
    case ExprKind::kInList:
      Collated(*expr.args[0], LacksCollation(*expr.args[0]));
      Negated(expr);
      out_ += " IN (";
      for (std::size_t i = 1; i < expr.args.size(); ++i) {
        if (i > 1) out_ += ", ";
        Value(*expr.args[i]);
      }
      out_ += ')';
      break;
    case ExprKind::kInSelect:
      Collated(*expr.args[0], LacksCollation(*expr.args[0]));
      Negated(expr);
      out_ += " IN (";
      WriteSelect(*expr.select, nullptr, false);
      out_ += ')';
      break;
    case ExprKind::kExists:
      out_ += "EXISTS (";
      WriteSelect(*expr.select, nullptr, false);
      out_ += ')';
      break;
    case ExprKind::kIsNull:
      Value(*expr.args[0]);
      out_ += expr.negated ? " IS NOT NULL" : " IS NULL";
      break;
    default:
      Value(expr);
      break;
  }
  out_ += ')';
}

void SqliteWriter::Case(const Expr& expr) {
  out_ += "CASE";
  std::size_t at = 0;
  if (expr.has_operand) {
    out_ += ' ';
    Collated(*expr.args[0], LacksCollation(*expr.args[0]));
    at = 1;
  }
  const std::size_t end = expr.args.size() - (expr.has_else ? 1 : 0);
  for (; at < end; at += 2) {
    out_ += " WHEN ";
    if (expr.has_operand) {
      Value(*expr.args[at]);
    } else {
      Condition(*expr.args[at]);
    }
    out_ += " THEN ";
    Value(*expr.args[at + 1]);
  }
  if (expr.has_else) {
    out_ += " ELSE ";
    Value(*expr.args.back());
  }
  out_ += " END";
}

void SqliteWriter::Call(std::string_view function, const Expr& expr) {
  out_ += function;
  out_ += '(';
  for (std::size_t i = 0; i < expr.args.size(); ++i) {
    if (i > 0) out_ += ", ";
    Value(*expr.args[i]);
  }
  out_ += ')';
}

void SqliteWriter::DatePart(std::string_view part, const Expr& date) {
  out_ += "k_datepart('";
  out_ += part;
  out_ += "', ";
  Value(date);
  out_ += ')';
}

// CONCAT takes null for an empty text.
void SqliteWriter::Concat(const Expr& expr) {
  out_ += '(';
  for (std::size_t i = 0; i < expr.args.size(); ++i) {
    out_ += i > 0 ? " || ifnull(" : "ifnull(";
    Value(*expr.args[i]);
    out_ += ", '')";
  }
  out_ += ')';
}

void SqliteWriter::FunctionCall(const Expr& expr) {
  // The first argument of the date functions is the name of a part.
  const auto with_part = [&](std::string_view function) {
    out_ += function;
    out_ += '(';
    Text(expr.args[0]->text);
    for (std::size_t i = 1; i < expr.args.size(); ++i) {
      out_ += ", ";
      Value(*expr.args[i]);
    }
    out_ += ')';
  };
  switch (expr.function) {
    case Function::kNone:
      return;
    case Function::kAbs:
      return Call("k_abs", expr);
    case Function::kAscii:
      return Call("k_ascii", expr);
    case Function::kCeiling:
      return Call("k_ceiling", expr);
    case Function::kChar:
      return Call("char", expr);
    case Function::kCharIndex:
      return Call("k_charindex", expr);
    case Function::kCoalesce:
      return Call("coalesce", expr);
    case Function::kConcat:
      return Concat(expr);
    case Function::kDateAdd:
      return with_part("k_dateadd");
    case Function::kDateDiff:
      return with_part("k_datediff");
    case Function::kDateName:
      return with_part("k_datename");
    case Function::kDatePart:
      return with_part("k_datepart");
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
      if (expr.args.size() > 1) {
        Value(*expr.args[1]);
      } else {
        out_ += '0';
      }
      out_ += ')';
      return;
    case Function::kFloor:
      return Call("k_floor", expr);
    case Function::kIdentity:
      out_ += "last_insert_rowid()";
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
    case Function::kIsDate:
      return Call("k_isdate", expr);
    case Function::kIsNull:
      return Call("ifnull", expr);
    case Function::kIsNumeric:
      return Call("k_isnumeric", expr);
    case Function::kLeft:
      return Call("k_left", expr);
    case Function::kLen:
      return Call("k_len", expr);
    case Function::kLower:
      return Call("k_lower", expr);
    case Function::kLtrim:
      return Call("ltrim", expr);
    case Function::kNewId:
      out_ += "k_newid()";
      return;
    case Function::kNow:
      out_ += "k_now()";
      return;
    case Function::kNullIf:
      out_ += "CASE WHEN ";
      Comparison(*expr.args[0], " = ", *expr.args[1]);
      out_ += " THEN NULL ELSE ";
      Value(*expr.args[0]);
      out_ += " END";
      return;
    case Function::kPatIndex:
      return Call("k_patindex", expr);
    case Function::kPower:
      if (IsDecimal(expr)) out_ += "k_round(";
      Call("k_power", expr);
      if (IsDecimal(expr)) fmt::format_to(std::back_inserter(out_), ", {})", expr.type.scale);
      return;
    case Function::kReplace:
      return Call("k_replace", expr);
    case Function::kReplicate:
      return Call("k_replicate", expr);
    case Function::kReverse:
      return Call("k_reverse", expr);
    case Function::kRight:
      return Call("k_right", expr);
    case Function::kRound:
      return Call("k_round_tsql", expr);
    case Function::kRowCount:
      out_ += "changes()";
      return;
    case Function::kRtrim:
      return Call("rtrim", expr);
    case Function::kSign:
      return Call("k_sign", expr);
    case Function::kSpace:
      return Call("k_space", expr);
    case Function::kSqrt:
      return Call("k_sqrt", expr);
    case Function::kStr:
      out_ += "k_str(";
      Value(*expr.args[0]);
      out_ += ", ";
      if (expr.args.size() > 1) {
        Value(*expr.args[1]);
      } else {
        out_ += "10";
      }
      out_ += ", ";
      if (expr.args.size() > 2) {
        Value(*expr.args[2]);
      } else {
        out_ += '0';
      }
      out_ += ')';
      return;
    case Function::kStuff:
      return Call("k_stuff", expr);
    case Function::kSubstring:
      return Call("k_substring", expr);
    case Function::kUnicode:
      return Call("unicode", expr);
    case Function::kUpper:
      return Call("k_upper", expr);
  }
}

void SqliteWriter::Aggregate(const Expr& expr) {
  if (expr.args.empty()) {
    out_ += "count(*)";
    return;
  }
  const Expr& value = *expr.args[0];
  const bool adds = expr.text == "sum" || expr.text == "avg";
  const std::string_view distinct = expr.distinct ? "DISTINCT " : "";
  if (!adds) {
    fmt::format_to(std::back_inserter(out_), "{}({}", expr.text, distinct);
    Collated(value, LacksCollation(value));
    out_ += ')';
    return;
  }
  if (IsDecimal(value)) {
    // An aggregate of two arguments takes no DISTINCT.
    if (expr.distinct) {
      fmt::format_to(std::back_inserter(out_), "k_round({}(DISTINCT ", expr.text);
      Value(value);
      fmt::format_to(std::back_inserter(out_), "), {})", expr.type.scale);
    } else {
      fmt::format_to(std::back_inserter(out_), "k_{}(", expr.text);
      Operand(value);
      fmt::format_to(std::back_inserter(out_), ", {})", expr.type.scale);
    }
    return;
  }
  const bool integer = expr.type.kind == TypeKind::kInteger;
  fmt::format_to(std::back_inserter(out_), "{}({}",
                 integer && expr.text == "avg" ? "k_avg_int" : expr.text, distinct);
  Value(value);
  out_ += ')';
}

void SqliteWriter::Window(const Expr& expr) {
  const bool rounded = IsDecimal(expr) && (expr.text == "sum" || expr.text == "avg");
  if (rounded) out_ += "k_round(";
  for (const char c : expr.text) {
    out_ += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  }
  out_ += '(';
  if (expr.own_args == 0 && expr.text == "count") out_ += '*';
  std::size_t at = 0;
  for (; at < expr.own_args; ++at) {
    if (at > 0) out_ += ", ";
    Value(*expr.args[at]);
  }
  out_ += ") OVER (";
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
      Collated(*expr.args[at], LacksCollation(*expr.args[at]));
      if (expr.descending[at - order]) out_ += " DESC";
    }
  }
  out_ += ')';
  if (rounded) fmt::format_to(std::back_inserter(out_), ", {})", expr.type.scale);
}

void SqliteWriter::TextOf(const Expr& value) {
  std::string code;
  switch (value.type.kind) {
    case TypeKind::kInteger:
      code = "i";
      break;
    case TypeKind::kDecimal:
      code = fmt::format("d{}", value.type.scale);
      break;
    case TypeKind::kDouble:
      code = "f";
      break;
    case TypeKind::kDate:
      code = "da";
      break;
    case TypeKind::kDateTime:
      code = "dt";
      break;
    default:
      Value(value);
      return;
  }
  out_ += "k_text(";
  Value(value);
  out_ += ", '" + code + "')";
}

void SqliteWriter::Coercion(const Expr& value, const Type& target) {
  const bool text = IsText(value);
  switch (target.kind) {
    case TypeKind::kText:
      TextOf(value);
      return;
    case TypeKind::kInteger:
      out_ += "k_to_int(";
      Value(value);
      out_ += ')';
      return;
    case TypeKind::kDecimal:
      out_ += text ? "k_to_dec(" : "k_round(";
      Operand(value);
      fmt::format_to(std::back_inserter(out_), ", {})", target.scale);
      return;
    case TypeKind::kDouble:
      out_ += text ? "k_to_float(" : "(1.0 * ";
      Value(value);
      out_ += ')';
      return;
    case TypeKind::kDate:
      out_ += "k_to_date(";
      Value(value);
      out_ += ')';
      return;
    case TypeKind::kDateTime:
      out_ += "k_to_datetime(";
      Value(value);
      out_ += ')';
      return;
    default:
      Value(value);
      return;
  }
}

void SqliteWriter::Converted(const Expr& expr) {
  constexpr int kLongestNumber = 30;
  const Expr& value = *expr.args[0];
  const Expr* style = expr.args.size() > 1 ? expr.args[1].get() : nullptr;
  const Type& from = value.type;
  const Type& target = expr.target;
  if (target.kind == TypeKind::kText) {
    const bool number = IsNumber(from);
    const bool narrow =
        target.width > 0 && !(number && target.width >= kLongestNumber) &&
        !(from.kind == TypeKind::kText && from.width > 0 && from.width <= target.width);
    // A number that does not fit must not lose digits; a text or a date is cut.
    if (narrow) out_ += number ? "k_check_text(" : "k_left(";
    if (IsDate(from) && style != nullptr) {
      out_ += "k_convert(";
      Value(value);
      out_ += ", ";
      Value(*style);
      out_ += ')';
    } else {
      TextOf(value);
    }
    if (narrow) {
      fmt::format_to(std::back_inserter(out_), ", {}{})", target.width, number ? ", ''" : "");
    }
    return;
  }
  if (IsDate(target) && IsText(value) && style != nullptr) {
    if (target.kind == TypeKind::kDate) out_ += "k_to_date(";
    out_ += "k_parse_date(";
    Value(value);
    out_ += ", ";
    Value(*style);
    out_ += target.kind == TypeKind::kDate ? "))" : ")";
    return;
  }
  if (IsDate(from) && target.kind == TypeKind::kInteger) {
    out_ += "k_datediff('day', '1900-01-01', ";
    Value(value);
    out_ += ')';
    return;
  }
  if (IsDate(from) && IsNumber(target)) {
    Fail(529, "Explicit conversion of a date to this number type is not known here.",
         statement_.text, expr.place);
  }
  const bool same =
      from.kind == target.kind && (from.kind != TypeKind::kDecimal || from.scale <= target.scale);
  const bool open = from.kind == TypeKind::kNull || from.kind == TypeKind::kUnknown;
  const bool wider = (from.kind == TypeKind::kInteger && target.kind == TypeKind::kDecimal) ||
                     (from.kind == TypeKind::kDate && target.kind == TypeKind::kDateTime);
  if (same || open || wider) {
    Value(value);
  } else {
    Coercion(value, target);
  }
}

// A subquery that stands for one value is error 512 when it has more rows; SQLite would take the
// first in silence.
void SqliteWriter::Subquery(const Expr& expr) {
  const Select& select = *expr.select;
  out_ += '(';
  if (select.single_row) {
    WriteSelect(select, nullptr, false);
  } else {
    const SelectCore& core = select.cores.front();
    const bool simple = select.cores.size() == 1 && core.nested == nullptr && !core.distinct &&
                        core.top == nullptr && !core.aggregated && select.with.empty() &&
                        core.items.size() == 1 && core.items[0].expr != nullptr &&
                        core.items[0].expr->kind != ExprKind::kWindow &&
                        // An aggregate of outer columns only would belong to the outer query.
                        UsesOneOf(*core.items[0].expr, core.sources);
    if (simple) {
      WriteSelect(select, nullptr, false, true);
    } else {
      const std::vector<std::string_view> names = {"k_value"};
      out_ += "SELECT k_one(\"k_value\") FROM (";
      WriteSelect(select, &names, true);
      out_ += ')';
    }
  }
  out_ += ')';
}

}  // namespace kaunter::sql
