// Expressions, as far as the dialects share them.
#include <fmt/format.h>

#include <algorithm>
#include <iterator>

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
bool LacksCollation(const Expr& expr) { return IsText(expr) && !expr.base_column; }

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

// One rounding around the outermost + - * of decimals is enough, since the binary residue of a
// chain stays far below the last place.
void Writer::Binary(const Expr& expr) {
  if (IsChain(expr)) {
    OpenRound();
    Chain(expr);
    CloseRound(expr.type.scale, 0);
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
  if (expr.op == Op::kDivide) {
    // What is divided is exact first: nothing tells the residue from the quotient's own digits.
    Value(*expr.args[0]);
    DivideBy(*expr.args[1], false);
  } else {
    Operand(*expr.args[0]);
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

}  // namespace kaunter::sql
