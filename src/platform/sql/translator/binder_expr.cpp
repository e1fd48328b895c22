// The binder's expressions.
#include <algorithm>
#include <optional>

#include "platform/sql/text.h"
#include "platform/sql/translator/binder.h"

namespace kaunter::sql {
namespace {

constexpr Type kText{TypeKind::kText, 0, 0, 0};
constexpr Type kInteger{TypeKind::kInteger, 0, 10, 0};
constexpr Type kDouble{TypeKind::kDouble, 0, 0, 0};
constexpr Type kDateTime{TypeKind::kDateTime, 0, 0, 0};

constexpr int kLongestFraction = 8;  // of a literal that is still a decimal

bool IsNumber(const Type& type) {
  return type.kind == TypeKind::kInteger || type.kind == TypeKind::kDecimal ||
         type.kind == TypeKind::kDouble;
}
bool IsDate(const Type& type) {
  return type.kind == TypeKind::kDate || type.kind == TypeKind::kDateTime;
}

std::string_view OpLabel(Op op) {
  switch (op) {
    case Op::kAdd:
      return "add";
    case Op::kSubtract:
      return "subtract";
    case Op::kMultiply:
      return "multiply";
    case Op::kDivide:
      return "divide";
    default:
      return "modulo";
  }
}

std::string Quoted(std::string_view before, std::string_view name, std::string_view behind) {
  std::string words(before);
  words += name;
  words += behind;
  return words;
}

}  // namespace

void Binder::BindValue(Expr& expr, Scope& scope) {
  switch (expr.kind) {
    case ExprKind::kLiteral:
      BindLiteral(expr);
      return;
    case ExprKind::kNull:
      expr.type.kind = TypeKind::kNull;
      return;
    case ExprKind::kColumn:
      BindColumn(expr, scope);
      return;
    case ExprKind::kBinary:
      BindBinary(expr, scope);
      return;
    case ExprKind::kNegate:
    case ExprKind::kPlus:
      BindValue(*expr.args[0], scope);
      expr.type = expr.args[0]->type;
      if (!IsNumber(expr.type) && expr.type.kind != TypeKind::kNull) {
        Refuse(
            8117,
            Quoted("Operand data type ", TypeLabel(expr.type), " is invalid for minus operator."),
            expr.place);
      }
      return;
    case ExprKind::kCase:
      BindCase(expr, scope);
      return;
    case ExprKind::kFunction:
      BindFunction(expr, scope);
      return;
    case ExprKind::kAggregate:
      BindAggregate(expr, scope);
      return;
    case ExprKind::kWindow:
      BindWindow(expr, scope);
      return;
    case ExprKind::kConvert:
      BindConvert(expr, scope);
      return;
    case ExprKind::kSubquery:
      BindSubquery(expr, scope);
      return;
    case ExprKind::kCoerce:
    case ExprKind::kCheckWidth:
      return;
    case ExprKind::kStar:
      Refuse(102, "Incorrect syntax near '*'.", expr.place);
    default:
      Refuse(102, "Incorrect syntax: a condition stands where a value is expected.", expr.place);
  }
}

void Binder::BindCondition(Expr& expr, Scope& scope) {
  switch (expr.kind) {
    case ExprKind::kAnd:
    case ExprKind::kOr:
    case ExprKind::kNot:
      for (ExprPtr& argument : expr.args) BindCondition(*argument, scope);
      return;
    case ExprKind::kCompare:
      BindValue(*expr.args[0], scope);
      BindValue(*expr.args[1], scope);
      Compare(expr.args[0], expr.args[1]);
      return;
    case ExprKind::kBetween:
      for (ExprPtr& argument : expr.args) BindValue(*argument, scope);
      Compare(expr.args[0], expr.args[1]);
      Compare(expr.args[0], expr.args[2]);
      Compare(expr.args[0], expr.args[1]);
      return;
    case ExprKind::kLike:
      BindLike(expr, scope);
      return;
    case ExprKind::kInList:
    case ExprKind::kInSelect:
      BindIn(expr, scope);
      return;
    case ExprKind::kIsNull:
      BindValue(*expr.args[0], scope);
      return;
    case ExprKind::kExists:
      BindSelect(*expr.select, &scope, false);
      return;
    default:
      Refuse(4145,
             "An expression of non-boolean type specified in a context where a condition is "
             "expected.",
             expr.place);
  }
}

void Binder::BindLiteral(Expr& expr) const {
  switch (expr.literal_kind) {
    case TokenKind::kText:
      expr.type = kText;  // its length may differ in the next statement of the same shape
      expr.conversion = Conversion::kAsText;
      return;
    case TokenKind::kInteger:
      expr.type = kInteger;
      expr.conversion = Conversion::kAsInteger;
      return;
    case TokenKind::kDecimal:
      if (expr.scale > kLongestFraction) {
        expr.type = kDouble;
        expr.conversion = Conversion::kAsDouble;
        return;
      }
      expr.type = {TypeKind::kDecimal, 0, 38, expr.scale};
      expr.conversion = Conversion::kAsDecimal;
      return;
    case TokenKind::kFloat:
      expr.type = kDouble;
      expr.conversion = Conversion::kAsDouble;
      return;
    default:
      expr.type.kind = TypeKind::kBinary;
      return;
  }
}

bool Binder::ResolveFrom(Expr& expr, const Source& source) const {
  if (source.table != nullptr) {
    const CatalogueColumn* column = Column(*source.table, expr.text);
    if (column == nullptr) return false;
    expr.type = column->type;
    expr.text = column->name;
    expr.base_column = !source.system;
  } else {
    const auto found =
        std::find_if(source.columns.begin(), source.columns.end(),
                     [&](const SourceColumn& column) { return SameName(column.name, expr.text); });
    if (found == source.columns.end()) return false;
    expr.type = found->type;
    expr.text = found->name;
    expr.base_column = found->base;
  }
  expr.source = &source;
  return true;
}

bool Binder::ResolveIn(Expr& expr, const Scope& scope) const {
  const std::string_view written = expr.text;
  if (!expr.qualifier.empty()) {
    for (const Source* source : scope.sources) {
      if (!SameName(source->alias, expr.qualifier)) continue;
      if (!ResolveFrom(expr, *source)) {
        Refuse(207, Quoted("Invalid column name '", written, "'."), expr.place);
      }
      return true;
    }
    return false;
  }
  const Source* found = nullptr;
  for (const Source* source : scope.sources) {
    if (!ResolveFrom(expr, *source)) continue;
    if (found != nullptr) Refuse(209, Quoted("Ambiguous column name '", written, "'."), expr.place);
    found = source;
  }
  if (found == nullptr) return false;
  expr.text = written;
  ResolveFrom(expr, *found);
  return true;
}

void Binder::BindColumn(Expr& expr, const Scope& scope) const {
  for (const Scope* at = &scope; at != nullptr; at = at->parent) {
    if (ResolveIn(expr, *at)) return;
  }
  if (!expr.qualifier.empty()) {
    std::string name(expr.qualifier);
    name += '.';
    name += expr.text;
    Refuse(4104, Quoted("The multi-part identifier \"", name, "\" could not be bound."),
           expr.place);
  }
  if (scope.clause == Clause::kValues && scope.parent == nullptr) {
    Refuse(128,
           Quoted("The name \"", expr.text,
                  "\" is not permitted in this context. Valid expressions are constants, constant "
                  "expressions, and (in some contexts) variables. Column names are not permitted."),
           expr.place);
  }
  Refuse(207, Quoted("Invalid column name '", expr.text, "'."), expr.place);
}

void Binder::BindBinary(Expr& expr, Scope& scope) {
  BindValue(*expr.args[0], scope);
  BindValue(*expr.args[1], scope);
  const Type a = expr.args[0]->type;
  const Type b = expr.args[1]->type;
  const bool open = a.kind == TypeKind::kNull || b.kind == TypeKind::kNull;
  const auto invalid = [&](const Type& type) {
    Refuse(8117,
           Quoted(Quoted("Operand data type ", TypeLabel(type), " is invalid for "),
                  OpLabel(expr.op), " operator."),
           expr.place);
  };
  const auto is_text = [](const Type& type) {
    return type.kind == TypeKind::kText || type.kind == TypeKind::kNull;
  };
  if (is_text(a) && is_text(b) && (a.kind == TypeKind::kText || b.kind == TypeKind::kText)) {
    if (expr.op != Op::kAdd) invalid(a.kind == TypeKind::kText ? a : b);
    expr.op = Op::kConcat;
    expr.type = kText;
    if (a.width != 0 && b.width != 0) expr.type.width = a.width + b.width;
    return;
  }
  if (IsDate(a) || IsDate(b)) {
    const bool sum = expr.op == Op::kAdd || (expr.op == Op::kSubtract && IsDate(a));
    const Type& other = IsDate(a) ? b : a;
    if (!sum || (!IsNumber(other) && !open)) invalid(IsDate(a) ? a : b);
    if (!IsDate(a)) std::swap(expr.args[0], expr.args[1]);
    expr.negated = expr.op == Op::kSubtract;
    expr.op = Op::kDatePlus;
    expr.type = expr.args[0]->type;
    return;
  }
  if (a.kind == TypeKind::kBinary) invalid(a);
  if (b.kind == TypeKind::kBinary) invalid(b);
  if (a.kind == TypeKind::kText) Coerce(expr.args[0], b);
  if (b.kind == TypeKind::kText) Coerce(expr.args[1], a);
  expr.type = open && a.kind == b.kind
                  ? kInteger
                  : Arithmetic(expr.op, expr.args[0]->type, expr.args[1]->type);
}

void Binder::BindCase(Expr& expr, Scope& scope) {
  const std::size_t first = expr.has_operand ? 1 : 0;
  if (expr.has_operand) BindValue(*expr.args[0], scope);
  const std::size_t pairs = (expr.args.size() - first) / 2;
  expr.type.kind = TypeKind::kNull;
  for (std::size_t i = 0; i < pairs; ++i) {
    ExprPtr& when = expr.args[first + 2 * i];
    if (expr.has_operand) {
      BindValue(*when, scope);
      Compare(expr.args[0], when);
    } else {
      BindCondition(*when, scope);
    }
    BindValue(*expr.args[first + 2 * i + 1], scope);
    expr.type = Common(expr.type, expr.args[first + 2 * i + 1]->type);
  }
  if (expr.has_else) {
    BindValue(*expr.args.back(), scope);
    expr.type = Common(expr.type, expr.args.back()->type);
  }
  for (std::size_t i = 0; i < pairs; ++i) Coerce(expr.args[first + 2 * i + 1], expr.type);
  if (expr.has_else) Coerce(expr.args.back(), expr.type);
}

void Binder::BindChoice(Expr& expr, Scope& scope) {
  const bool conditional = expr.function == Function::kIif;
  for (std::size_t i = 0; i < expr.args.size(); ++i) {
    if (conditional && i == 0) {
      BindCondition(*expr.args[0], scope);
    } else {
      BindValue(*expr.args[i], scope);
    }
  }
  if (expr.function == Function::kNullIf) {
    Compare(expr.args[0], expr.args[1]);
    expr.type = expr.args[0]->type;
    return;
  }
  const std::size_t first = conditional ? 1 : 0;
  expr.type = expr.args[first]->type;
  if (expr.function == Function::kIsNull) {
    if (expr.type.kind == TypeKind::kNull) expr.type = expr.args[1]->type;
    CutTo(expr.args[1], expr.type);
    return;
  }
  for (std::size_t i = first + 1; i < expr.args.size(); ++i) {
    expr.type = Common(expr.type, expr.args[i]->type);
  }
  for (std::size_t i = first; i < expr.args.size(); ++i) Coerce(expr.args[i], expr.type);
}

void Binder::BindFunction(Expr& expr, Scope& scope) {
  const FunctionInfo* info = FindFunction(expr.text);
  if (info == nullptr) {
    Refuse(195, Quoted("'", expr.text, "' is not a recognized built-in function name."),
           expr.place);
  }
  expr.function = info->function;
  const std::string_view signature = info->arguments;
  const bool open_ended = signature.ends_with('*');
  const std::size_t bar = signature.find('|');
  const std::size_t most =
      signature.size() - (bar != signature.npos ? 1 : 0) - (open_ended ? 1 : 0);
  const std::size_t least = bar != signature.npos ? bar : most;
  if (expr.args.size() < least || (expr.args.size() > most && !open_ended)) {
    Refuse(174,
           Quoted(Quoted("The ", expr.text, " function requires "), std::to_string(least),
                  " argument(s)."),
           expr.place);
  }
  if (info->result == '?') {
    BindChoice(expr, scope);
    return;
  }
  const Type* date = nullptr;
  std::size_t letter = 0;
  for (ExprPtr& argument : expr.args) {
    if (letter < signature.size() && signature[letter] == '|') ++letter;
    const char kind = signature[std::min(letter, most + (bar != signature.npos ? 1 : 0) - 1)];
    ++letter;
    if (kind == 'p') {
      const std::string_view part =
          argument->kind == ExprKind::kColumn && argument->qualifier.empty()
              ? DatePartName(argument->text)
              : std::string_view{};
      if (part.empty()) {
        Refuse(155, Quoted("'", argument->text, "' is not a recognized datepart option."),
               argument->place);
      }
      argument->text = part;
      continue;
    }
    BindValue(*argument, scope);
    switch (kind) {
      case 't':
        Coerce(argument, kText);
        break;
      case 'i':
        Coerce(argument, kInteger);
        break;
      case 'n':
        if (argument->type.kind == TypeKind::kText) Coerce(argument, kDouble);
        if (!IsNumber(argument->type) && argument->type.kind != TypeKind::kNull) {
          Refuse(8116,
                 Quoted(Quoted("Argument data type ", TypeLabel(argument->type),
                               " is invalid for argument of "),
                        info->name, " function."),
                 argument->place);
        }
        break;
      case 'd':
        if (!IsDate(argument->type)) Coerce(argument, kDateTime);
        date = &argument->type;
        break;
      default:
        break;
    }
  }
  switch (info->result) {
    case 't':
      expr.type = kText;
      break;
    case 'i':
      expr.type = kInteger;
      break;
    case 'f':
      expr.type = kDouble;
      break;
    case 'e':
      expr.type = *date;
      if (!IsDate(expr.type)) expr.type = kDateTime;
      break;
    case 'd':
      expr.type = kDateTime;
      break;
    default:
      expr.type = expr.args[0]->type;
      break;
  }
  // What cannot be longer than what it was made from keeps that width.
  switch (expr.function) {
    case Function::kUpper:
    case Function::kLower:
    case Function::kLtrim:
    case Function::kRtrim:
    case Function::kLeft:
    case Function::kRight:
    case Function::kSubstring:
    case Function::kReverse:
      if (expr.args[0]->type.kind == TypeKind::kText) expr.type.width = expr.args[0]->type.width;
      break;
    case Function::kFloor:
    case Function::kCeiling:
      expr.type.scale = 0;
      break;
    case Function::kSign:
      expr.type = kInteger;
      break;
    default:
      break;
  }
}

void Binder::BindConvert(Expr& expr, Scope& scope) {
  for (ExprPtr& argument : expr.args) BindValue(*argument, scope);
  if (expr.args.size() > 1) Coerce(expr.args[1], kInteger);
  expr.type = expr.target;
  // Text to the type of the target without a style is what a coercion does; to an integer, the type
  // decides how large it may be.
  const Type& from = expr.args[0]->type;
  if (expr.args.size() == 1 && from.kind == TypeKind::kText &&
      expr.target.kind != TypeKind::kText && expr.target.kind != TypeKind::kInteger) {
    Coerce(expr.args[0], expr.target);
  }
}

void Binder::BindSubquery(Expr& expr, Scope& scope) {
  BindSelect(*expr.select, &scope, false);
  const SelectCore& core = expr.select->cores.front();
  if (core.columns.size() != 1) {
    Refuse(116,
           "Only one expression can be specified in the select list when the subquery is not "
           "introduced with EXISTS.",
           expr.place);
  }
  expr.type = core.columns.front().type;
  expr.select->single_row = IsSingleRow(*expr.select);
}

void Binder::BindLike(Expr& expr, Scope& scope) {
  for (ExprPtr& argument : expr.args) {
    BindValue(*argument, scope);
    Coerce(argument, kText);
  }
}

void Binder::BindIn(Expr& expr, Scope& scope) {
  BindValue(*expr.args[0], scope);
  if (expr.kind == ExprKind::kInList) {
    // The value and the whole list meet in one type.
    Type type = expr.args[0]->type;
    for (std::size_t i = 1; i < expr.args.size(); ++i) {
      BindValue(*expr.args[i], scope);
      type = Common(type, expr.args[i]->type);
    }
    for (ExprPtr& argument : expr.args) {
      // Numbers of several kinds compare as they are.
      if (IsNumber(argument->type) && IsNumber(type)) continue;
      Coerce(argument, type);
    }
    return;
  }
  BindSelect(*expr.select, &scope, false);
  if (expr.select->cores.front().columns.size() != 1) {
    Refuse(116,
           "Only one expression can be specified in the select list when the subquery is not "
           "introduced with EXISTS.",
           expr.place);
  }
  for (SelectCore& core : expr.select->cores) {
    if (core.items.size() == 1 && core.items[0].expr != nullptr) {
      Compare(expr.args[0], core.items[0].expr);
      core.columns[0].type = core.items[0].expr->type;
    }
  }
}

bool SameExpr(const Expr& a, const Expr& b, bool* literals) {
  if (a.kind != b.kind || a.op != b.op || a.negated != b.negated || a.distinct != b.distinct ||
      a.has_operand != b.has_operand || a.has_else != b.has_else || a.function != b.function ||
      a.source != b.source || a.args.size() != b.args.size() || a.select != nullptr ||
      b.select != nullptr || a.target != b.target || a.literal_kind != b.literal_kind) {
    return false;
  }
  if (a.kind == ExprKind::kLiteral) {
    *literals = true;
    return a.text == b.text;
  }
  if (!SameName(a.text, b.text)) return false;
  for (std::size_t i = 0; i < a.args.size(); ++i) {
    if (!SameExpr(*a.args[i], *b.args[i], literals)) return false;
  }
  return true;
}

}  // namespace kaunter::sql
