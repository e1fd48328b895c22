// The binder's conversions between types.
#include <algorithm>

#include "platform/sql/translator/binder.h"

namespace kaunter::sql {
namespace {

// The finest result of arithmetic. The server goes further, but money is kept in doubles: eight
// places are what they hold of amounts of up to 90 billion.
constexpr int kMaxScale = 8;

bool IsNumber(const Type& type) {
  return type.kind == TypeKind::kInteger || type.kind == TypeKind::kDecimal ||
         type.kind == TypeKind::kDouble;
}
bool IsDate(const Type& type) {
  return type.kind == TypeKind::kDate || type.kind == TypeKind::kDateTime;
}
bool IsOpen(const Type& type) {
  return type.kind == TypeKind::kNull || type.kind == TypeKind::kUnknown;
}

// Which type wins where two meet.
int Precedence(TypeKind kind) {
  switch (kind) {
    case TypeKind::kDateTime:
      return 7;
    case TypeKind::kDate:
      return 6;
    case TypeKind::kDouble:
      return 5;
    case TypeKind::kDecimal:
      return 4;
    case TypeKind::kInteger:
      return 3;
    case TypeKind::kText:
      return 2;
    case TypeKind::kBinary:
      return 1;
    default:
      return 0;
  }
}

}  // namespace

std::string_view TypeLabel(const Type& type) {
  switch (type.kind) {
    case TypeKind::kText:
      return "nvarchar";
    case TypeKind::kInteger:
      return "int";
    case TypeKind::kDecimal:
      return type.money ? "money" : "numeric";
    case TypeKind::kDouble:
      return "float";
    case TypeKind::kDate:
      return "date";
    case TypeKind::kDateTime:
      return "datetime";
    case TypeKind::kBinary:
      return "varbinary";
    default:
      return "NULL";
  }
}

Type Binder::Common(const Type& a, const Type& b) {
  if (IsOpen(a)) return b;
  if (IsOpen(b)) return a;
  if (a.kind == b.kind) {
    Type type = a;
    if (a.kind == TypeKind::kText) {
      type.width = a.width == 0 || b.width == 0 ? 0 : std::max(a.width, b.width);
    }
    type.precision = std::max(a.precision, b.precision);
    type.scale = std::max(a.scale, b.scale);
    type.money = a.money && b.money;
    return type;
  }
  return Precedence(a.kind) > Precedence(b.kind) ? a : b;
}

Type Binder::Arithmetic(Op op, const Type& a, const Type& b) {
  Type type = Common(a, b);
  if (type.kind != TypeKind::kDecimal) return type;
  if (type.money) return type;  // of money and integers: money again
  const int left = a.kind == TypeKind::kDecimal ? a.scale : 0;
  const int right = b.kind == TypeKind::kDecimal ? b.scale : 0;
  switch (op) {
    case Op::kMultiply:
      type.scale = std::min(left + right, kMaxScale);
      break;
    case Op::kDivide:
      type.scale = kMaxScale;
      break;
    default:
      type.scale = std::max(left, right);
      break;
  }
  return type;
}

void Binder::CheckConvertible(const Type& from, const Type& to, std::size_t place) const {
  if (IsOpen(from) || IsOpen(to)) return;
  const bool lost = (IsDate(from) && IsNumber(to)) || (from.money && to.kind == TypeKind::kText);
  const bool clash =
      (to.kind == TypeKind::kDate && IsNumber(from)) ||
      (to.kind == TypeKind::kBinary && (IsDate(from) || from.kind == TypeKind::kText));
  if (!lost && !clash) return;
  std::string words = lost ? "Implicit conversion from data type " : "Operand type clash: ";
  words += TypeLabel(from);
  words += lost ? " to " : " is incompatible with ";
  words += TypeLabel(to);
  words += lost ? " is not allowed. Use the CONVERT function to run this query." : ".";
  Refuse(lost ? 257 : 206, words, place);
}

// A literal takes another converter instead of a function around it.
bool Binder::CoerceLiteral(Expr& expr, const Type& target) const {
  if (expr.kind == ExprKind::kNegate) {
    if (!IsNumber(target) || !IsNumber(expr.type) ||
        (target.kind == TypeKind::kInteger && expr.type.kind != TypeKind::kInteger)) {
      return false;
    }
    if (!CoerceLiteral(*expr.args[0], target)) return false;
    expr.type = target;
    return true;
  }
  if (expr.kind != ExprKind::kLiteral || expr.literal < 0) return false;
  if (expr.literal_kind == TokenKind::kBinary) return false;
  const bool text = expr.literal_kind == TokenKind::kText;
  switch (target.kind) {
    case TypeKind::kText:
      return false;  // a number has its own canonical text: 0005 is '5'
    case TypeKind::kInteger:
      if (!text && expr.literal_kind != TokenKind::kInteger) return false;
      expr.conversion = Conversion::kAsInteger;
      break;
    case TypeKind::kDecimal:
      if (expr.literal_kind == TokenKind::kFloat) return false;
      expr.conversion = Conversion::kAsDecimal;
      expr.scale = target.scale;
      break;
    case TypeKind::kDouble:
      expr.conversion = Conversion::kAsDouble;
      break;
    case TypeKind::kDate:
      if (!text) return false;
      expr.conversion = Conversion::kAsDate;
      break;
    case TypeKind::kDateTime:
      if (!text) return false;
      expr.conversion = Conversion::kAsDateTime;
      break;
    default:
      return false;
  }
  expr.type = target;
  return true;
}

void Binder::Coerce(ExprPtr& expr, const Type& target) const {
  const Type& from = expr->type;
  if (IsOpen(from) || IsOpen(target)) return;
  if (from.kind == target.kind && (from.kind != TypeKind::kDecimal || from.scale <= target.scale)) {
    return;
  }
  if (CoerceLiteral(*expr, target)) return;
  const bool wider_number =
      (from.kind == TypeKind::kInteger || from.kind == TypeKind::kDecimal) &&
      (target.kind == TypeKind::kDouble ||
       (target.kind == TypeKind::kDecimal && from.kind == TypeKind::kInteger));
  if (wider_number) return;
  if (from.kind == TypeKind::kDate && target.kind == TypeKind::kDateTime) return;
  CheckConvertible(from, target, expr->place);
  auto wrapped = std::make_unique<Expr>();
  wrapped->kind = ExprKind::kCoerce;
  wrapped->place = expr->place;
  wrapped->target = target;
  wrapped->type = target;
  wrapped->args.push_back(std::move(expr));
  expr = std::move(wrapped);
}

// As Coerce, but a text longer than the target is cut.
void Binder::CutTo(ExprPtr& expr, const Type& target) const {
  const Type& from = expr->type;
  const bool fits = from.kind == TypeKind::kText && from.width > 0 && from.width <= target.width;
  if (target.kind != TypeKind::kText || target.width == 0 || IsOpen(from) || fits) {
    return Coerce(expr, target);
  }
  CheckConvertible(from, target, expr->place);
  auto wrapped = std::make_unique<Expr>();
  wrapped->kind = ExprKind::kConvert;
  wrapped->place = expr->place;
  wrapped->target = target;
  wrapped->type = target;
  wrapped->args.push_back(std::move(expr));
  expr = std::move(wrapped);
}

void Binder::Compare(ExprPtr& left, ExprPtr& right) const {
  const Type& a = left->type;
  const Type& b = right->type;
  if (IsOpen(a) || IsOpen(b) || a.kind == b.kind) return;
  if ((IsNumber(a) && IsNumber(b)) || (IsDate(a) && IsDate(b))) return;
  ExprPtr& weaker = Precedence(a.kind) > Precedence(b.kind) ? right : left;
  const Type target = &weaker == &left ? b : a;
  Coerce(weaker, target);
}

void Binder::Assign(ExprPtr& expr, const Type& target, std::string_view column) const {
  if (IsOpen(expr->type)) return;
  const Type from = expr->type;
  CheckConvertible(from, target, expr->place);
  Coerce(expr, target);
  Expr& literal = expr->kind == ExprKind::kNegate ? *expr->args[0] : *expr;
  if (literal.kind == ExprKind::kLiteral) {
    literal.column = column;
    if (target.kind == TypeKind::kText) literal.width = target.width;
    if (target.kind == TypeKind::kInteger || target.kind == TypeKind::kDecimal) {
      literal.width = target.precision;
    }
    if (&literal == expr.get()) return;
  }
  if (target.kind != TypeKind::kText || target.width == 0) return;
  constexpr int kLongestNumber = 41;
  const int width = from.kind == TypeKind::kText ? from.width : kLongestNumber;
  if (width != 0 && width <= target.width) return;
  auto check = std::make_unique<Expr>();
  check->kind = ExprKind::kCheckWidth;
  check->place = expr->place;
  check->type = target;
  check->width = target.width;
  check->column = column;
  check->args.push_back(std::move(expr));
  expr = std::move(check);
}

}  // namespace kaunter::sql
