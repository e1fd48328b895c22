// Expressions, as far as the dialects share them.
#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "platform/sql/sql_error.h"
#include "platform/sql/translator/writer.h"

namespace kaunter::sql {

bool IsText(const Expr& expr) { return expr.type.kind == TypeKind::kText; }
bool IsDecimal(const Expr& expr) { return expr.type.kind == TypeKind::kDecimal; }
bool IsDate(const Type& type) {
  return type.kind == TypeKind::kDate || type.kind == TypeKind::kDateTime;
}
bool IsNumber(const Type& type) {
  return type.kind == TypeKind::kInteger || type.kind == TypeKind::kDecimal ||
         type.kind == TypeKind::kDouble;
}

namespace {

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

// A plain column has the collation of its declaration; anything else has lost it.
bool LacksCollation(const Expr& expr) { return IsText(expr) && !expr.base_column; }

}  // namespace

void Writer::Text(std::string_view text) {
  out_ += '\'';
  for (const char c : text) {
    if (c == '\'') out_ += '\'';
    out_ += c;
  }
  out_ += '\'';
}

void Writer::Literal(const Expr& expr) {
  if (expr.literal_kind == TokenKind::kBinary || expr.literal < 0 || constants_) {
    Constant(expr);
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
  const auto number = static_cast<std::size_t>(known - parameters_.begin());
  if (known == parameters_.end()) parameters_.push_back(std::move(parameter));
  Mark(number + 1, parameters_[number]);
}

void Writer::Value(const Expr& expr) {
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

// One rounding around the outermost + - * / of decimals is enough, since the binary residue of a
// chain stays far below the last place.
void Writer::Binary(const Expr& expr) {
  if (IsChain(expr)) {
    OpenRound();
    Chain(expr);
    CloseRound(expr.type.scale);
    return;
  }
  const Expr& left = *expr.args[0];
  const Expr& right = *expr.args[1];
  switch (expr.op) {
    case Op::kConcat:
      Concatenation(expr);
      return;
    case Op::kDatePlus:
      out_ += "k_date_plus(";
      Argument(left);
      out_ += expr.negated ? ", 0 - " : ", ";
      Argument(right);
      out_ += ')';
      return;
    case Op::kDivide:
      out_ += '(';
      Value(left);
      DivideBy(right, expr.type.kind == TypeKind::kInteger);
      out_ += ')';
      return;
    case Op::kModulo:
      Modulo(expr);
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

void Writer::Chain(const Expr& expr) {
  out_ += '(';
  Operand(*expr.args[0]);
  if (expr.op == Op::kDivide) {
    DivideBy(*expr.args[1], false);
  } else {
    out_ += OpText(expr.op);
    Operand(*expr.args[1]);
  }
  out_ += ')';
}

// A part of a chain, or what is rounded anyway: not rounded by itself.
void Writer::Operand(const Expr& expr) {
  if (IsChain(expr)) {
    Chain(expr);
  } else {
    Value(expr);
  }
}

void Writer::Negated(const Expr& expr) {
  if (expr.negated) out_ += " NOT";
}

void Writer::Comparison(const Expr& left, std::string_view op, const Expr& right) {
  const bool text = IsText(left) || IsText(right);
  const bool collate = text && !left.base_column && !right.base_column;
  Collated(left, collate);
  out_ += op;
  Value(right);
}

void Writer::Condition(const Expr& expr) {
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
      if (!SumComparison(expr)) Comparison(*expr.args[0], OpText(expr.op), *expr.args[1]);
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
      Like(expr);
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

void Writer::Case(const Expr& expr) {
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

void Writer::FunctionCall(const Expr& expr) {
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
      return Call("k_char", expr);
    case Function::kCharIndex:
      return Call("k_charindex", expr);
    case Function::kCoalesce:
      return Call("coalesce", expr);
    case Function::kConcat:
      return;  // a dialect's own
    case Function::kDateAdd:
      return CallWithPart("k_dateadd", expr);
    case Function::kDateDiff:
      return CallWithPart("k_datediff", expr);
    case Function::kDateName:
      return CallWithPart("k_datename", expr);
    case Function::kDatePart:
      return CallWithPart("k_datepart", expr);
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
      out_ += "k_identity()";
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
      return Call("coalesce", expr);
    case Function::kIsNumeric:
      return Call("k_isnumeric", expr);
    case Function::kLeft:
      return Call("k_left", expr);
    case Function::kLen:
      return Call("k_len", expr);
    case Function::kLower:
      return Call("k_lower", expr);
    case Function::kLtrim:
      return Call("k_ltrim", expr);
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
      if (IsDecimal(expr)) OpenRound();
      Call("k_power", expr);
      if (IsDecimal(expr)) CloseRound(expr.type.scale);
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
      out_ += "k_rowcount()";
      return;
    case Function::kRtrim:
      return Call("k_rtrim", expr);
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
      return Call("k_unicode", expr);
    case Function::kUpper:
      return Call("k_upper", expr);
  }
}

void Writer::Aggregate(const Expr& expr) {
  if (expr.args.empty()) {
    out_ += "count(*)";
    return;
  }
  const Expr& value = *expr.args[0];
  if (expr.text == "sum" || expr.text == "avg") {
    Sum(expr);
    return;
  }
  fmt::format_to(std::back_inserter(out_), "{}({}", expr.text, expr.distinct ? "DISTINCT " : "");
  Collated(value, LacksCollation(value));
  out_ += ')';
}

void Writer::Window(const Expr& expr) {
  const bool rounded = IsDecimal(expr) && (expr.text == "sum" || expr.text == "avg");
  if (rounded) OpenRound();
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
      Value(*expr.args[at]);
      OrderDirection(expr.args[at].get(), IsText(*expr.args[at]), expr.descending[at - order]);
    }
  }
  out_ += ')';
  if (rounded) CloseRound(expr.type.scale);
}

void Writer::Coercion(const Expr& value, const Type& target) {
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
      if (text) {
        out_ += "k_to_dec(";
        Value(value);
        fmt::format_to(std::back_inserter(out_), ", {})", target.scale);
      } else {
        OpenRound();
        Operand(value);
        CloseRound(target.scale);
      }
      return;
    case TypeKind::kDouble:
      if (text) {
        out_ += "k_to_float(";
        Value(value);
        out_ += ')';
      } else {
        ToDouble(value);
      }
      return;
    case TypeKind::kDate:
      out_ += "k_to_date(";
      Value(value);
      out_ += ')';
      return;
    case TypeKind::kDateTime:
      out_ += "k_to_datetime(";
      Argument(value);
      out_ += ')';
      return;
    default:
      Value(value);
      return;
  }
}

void Writer::Converted(const Expr& expr) {
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
    } else if (from.money) {
      out_ += "k_money_text(";
      Value(value);
      out_ += ", ";
      if (style != nullptr) {
        Argument(*style);
      } else {
        out_ += '0';
      }
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

}  // namespace kaunter::sql
