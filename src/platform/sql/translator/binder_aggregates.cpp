// The binder's aggregates: whose rows one counts, and where it may stand.
#include <algorithm>

#include "platform/sql/text.h"
#include "platform/sql/translator/binder.h"

namespace kaunter::sql {
namespace {

constexpr Type kInteger{TypeKind::kInteger, 0, 10, 0};

bool IsNumber(const Type& type) {
  return type.kind == TypeKind::kInteger || type.kind == TypeKind::kDecimal ||
         type.kind == TypeKind::kDouble;
}

bool ContainsSubquery(const Expr& expr) {
  if (expr.select != nullptr) return true;
  return std::any_of(expr.args.begin(), expr.args.end(),
                     [](const ExprPtr& argument) { return ContainsSubquery(*argument); });
}

std::string Quoted(std::string_view before, std::string_view name, std::string_view behind) {
  std::string words(before);
  words += name;
  words += behind;
  return words;
}

void AddColumns(const Expr& expr, std::vector<const Expr*>* columns) {
  if (expr.kind == ExprKind::kColumn && expr.source != nullptr) columns->push_back(&expr);
  for (const ExprPtr& argument : expr.args) AddColumns(*argument, columns);
}

}  // namespace

void Binder::SetAggregateType(Expr& expr, std::string_view name) const {
  if (SameName(name, "count") || SameName(name, "count_big")) {
    expr.type = kInteger;
    expr.text = "count";
    return;
  }
  Type type = expr.args[0]->type;
  if (SameName(name, "min") || SameName(name, "max")) {
    expr.type = type;
    expr.text = SameName(name, "min") ? "min" : "max";
    return;
  }
  const bool average = SameName(name, "avg");
  expr.text = average ? "avg" : "sum";
  if (!IsNumber(type)) {
    Refuse(8117,
           Quoted(Quoted("Operand data type ", TypeLabel(type), " is invalid for "), expr.text,
                  " operator."),
           expr.place);
  }
  constexpr int kAverageScale = 6;
  if (average && type.kind == TypeKind::kDecimal && !type.money)
    type.scale = std::max(type.scale, kAverageScale);
  expr.type = type;
}

// An aggregate belongs to the query whose columns it takes, which may lie outside the one that it
// is written in: `SELECT (SELECT MAX(t.a)) FROM t` is one row, the largest of all t.
const Binder::Scope& Binder::OwnerOf(const Expr& aggregate, const Scope& scope) const {
  std::vector<const Expr*> columns;
  AddColumns(aggregate, &columns);
  const Scope* owner = nullptr;
  for (const Expr* column : columns) {
    const Scope* at = &scope;
    while (std::find(at->sources.begin(), at->sources.end(), column->source) == at->sources.end()) {
      at = at->parent;
    }
    if (owner == nullptr) owner = at;
    const Expr& first = *columns.front();
    const bool same = column->source == first.source && SameName(column->text, first.text);
    if (!same && (owner != &scope || at != &scope)) {
      Refuse(8124,
             "Multiple columns are specified in an aggregated expression containing an outer "
             "reference. If an expression being aggregated contains an outer reference, then that "
             "outer reference must be the only column referenced in the expression.",
             aggregate.place);
    }
  }
  return owner != nullptr ? *owner : scope;
}

void Binder::CheckAggregatePlace(const Expr& aggregate, const Scope& owner,
                                 const Scope& scope) const {
  switch (owner.clause) {
    case Clause::kWhere:
      Refuse(147,
             "An aggregate may not appear in the WHERE clause unless it is in a subquery contained "
             "in a HAVING clause or a select list, and the column being aggregated is an outer "
             "reference.",
             aggregate.place);
    case Clause::kOn:
      Refuse(1015,
             "An aggregate cannot appear in an ON clause unless it is in a subquery contained in a "
             "HAVING clause or select list, and the column being aggregated is an outer reference.",
             aggregate.place);
    case Clause::kGroupBy:
      Refuse(144,
             "Cannot use an aggregate or a subquery in an expression used for the group by list of "
             "a GROUP BY clause.",
             aggregate.place);
    case Clause::kSet:
    case Clause::kValues:
      Refuse(157, "An aggregate may not appear in the set list of an UPDATE statement.",
             aggregate.place);
    default:
      break;
  }
  const bool known = scope.clause == Clause::kItems || scope.clause == Clause::kHaving ||
                     scope.clause == Clause::kOrderBy;
  if (!known) {
    Refuse(102,
           "Incorrect syntax: the embedded database does not know the aggregate of an outer query "
           "in this clause of a subquery.",
           aggregate.place);
  }
}

void Binder::BindAggregate(Expr& expr, Scope& scope) {
  const char* nested =
      "Cannot perform an aggregate function on an expression containing an aggregate or a "
      "subquery.";
  if (scope.in_aggregate) Refuse(130, nested, expr.place);
  if (!expr.args.empty()) {
    scope.in_aggregate = true;
    BindValue(*expr.args[0], scope);
    scope.in_aggregate = false;
    if (ContainsSubquery(*expr.args[0])) Refuse(130, nested, expr.place);
  } else if (!SameName(expr.text, "count") && !SameName(expr.text, "count_big")) {
    Refuse(174, Quoted("The ", expr.text, " function requires 1 argument(s)."), expr.place);
  }
  const Scope& owner = OwnerOf(expr, scope);
  CheckAggregatePlace(expr, owner, scope);
  if (owner.core != nullptr) owner.core->aggregated = true;
  SetAggregateType(expr, expr.text);
}

void Binder::BindWindow(Expr& expr, Scope& scope) {
  if (scope.clause != Clause::kItems && scope.clause != Clause::kOrderBy) {
    Refuse(4108, "Windowed functions can only appear in the SELECT or ORDER BY clauses.",
           expr.place);
  }
  for (ExprPtr& argument : expr.args) BindValue(*argument, scope);
  const bool ranking = FindFunction(expr.text) == nullptr &&
                       (SameName(expr.text, "row_number") || SameName(expr.text, "rank") ||
                        SameName(expr.text, "dense_rank") || SameName(expr.text, "ntile"));
  if (ranking) {
    if (expr.descending.empty()) {
      Refuse(4112, Quoted("The function '", expr.text, "' must have an OVER clause with ORDER BY."),
             expr.place);
    }
    expr.type = kInteger;
    return;
  }
  SetAggregateType(expr, expr.text);
}

}  // namespace kaunter::sql
