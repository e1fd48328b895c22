// The binder's SELECT: scopes, result columns, grouping and order.
#include <algorithm>

#include "platform/sql/text.h"
#include "platform/sql/translator/binder.h"

namespace kaunter::sql {
namespace {

std::string Quoted(std::string_view before, std::string_view name, std::string_view behind) {
  std::string words(before);
  words += name;
  words += behind;
  return words;
}

// Calls `visit` for the expressions of a condition that are joined by AND.
template <typename Visit>
void ForEachConjunct(const Expr* expr, const Visit& visit) {
  if (expr == nullptr) return;
  if (expr->kind == ExprKind::kAnd) {
    for (const ExprPtr& argument : expr->args) ForEachConjunct(argument.get(), visit);
  } else {
    visit(*expr);
  }
}

bool UsesSource(const Expr& expr, const Source& source) {
  if (expr.source == &source || expr.select != nullptr) return true;
  return std::any_of(expr.args.begin(), expr.args.end(),
                     [&](const ExprPtr& argument) { return UsesSource(*argument, source); });
}

CatalogueTable MakeSystemTable(const char* name, std::vector<const char*> texts,
                               std::vector<const char*> integers) {
  constexpr int kNameWidth = 128;
  CatalogueTable table;
  table.name = name;
  for (const char* column : texts) {
    table.columns.push_back(
        {column, {TypeKind::kText, kNameWidth, 0, 0}, true, false, false, false});
  }
  for (const char* column : integers) {
    table.columns.push_back({column, {TypeKind::kInteger, 0, 10, 0}, true, false, false, false});
  }
  return table;
}

}  // namespace

const CatalogueTable* FindSystemTable(std::string_view name) {
  static const CatalogueTable tables =
      MakeSystemTable("TABLES", {"TABLE_CATALOG", "TABLE_SCHEMA", "TABLE_NAME", "TABLE_TYPE"}, {});
  static const CatalogueTable columns =
      MakeSystemTable("COLUMNS",
                      {"TABLE_CATALOG", "TABLE_SCHEMA", "TABLE_NAME", "COLUMN_NAME",
                       "COLUMN_DEFAULT", "IS_NULLABLE", "DATA_TYPE"},
                      {"ORDINAL_POSITION"});
  if (SameName(name, tables.name)) return &tables;
  if (SameName(name, columns.name)) return &columns;
  return nullptr;
}

void Binder::BindSelect(Select& select, const Scope* parent, bool top_level) {
  const std::size_t outer_tables = common_tables_.size();
  for (CommonTable& table : select.with) {
    BindSelect(*table.select, nullptr, false);
    common_tables_.push_back(&table);
  }
  Scope scope;
  for (SelectCore& core : select.cores) {
    scope = Scope{};
    scope.parent = parent;
    if (core.nested != nullptr) {
      BindNested(core, parent);
    } else {
      BindCore(core, scope);
    }
    if (!core.into.empty() && (!top_level || select.cores.size() > 1)) {
      Refuse(156, "Incorrect syntax near the keyword 'INTO'.", core.into_place);
    }
  }
  if (select.cores.size() > 1) MatchUnion(select);
  if (!select.order_by.empty()) {
    const bool limited = select.cores.size() == 1 && select.cores[0].top != nullptr;
    if (!top_level && !limited) {
      Refuse(1033,
             "The ORDER BY clause is invalid in views, inline functions, derived tables, "
             "subqueries, and common table expressions, unless TOP is also specified.",
             select.order_by.front().expr->place);
    }
    const bool aggregated = select.cores[0].aggregated;
    BindOrder(select, scope);
    // ORDER BY COUNT(*) makes a plain select an aggregated one.
    if (!aggregated && select.cores[0].aggregated) CheckGrouping(select.cores[0]);
  }
  if (select.cores.size() == 1 && select.cores[0].aggregated) {
    for (const OrderItem& item : select.order_by) {
      if (item.position == 0) CheckGrouped(*item.expr, select.cores[0], "the ORDER BY clause");
    }
  }
  common_tables_.resize(outer_tables);
}

void Binder::BindNested(SelectCore& core, const Scope* parent) {
  BindSelect(*core.nested, parent, false);
  core.columns = core.nested->cores.front().columns;
  core.item_of.assign(core.columns.size(), 0);
}

void Binder::BindCore(SelectCore& core, Scope& scope) {
  scope.core = &core;
  scope.clause = Clause::kOn;
  for (TableRefPtr& table : core.from) BindFrom(*table, scope);
  core.sources = scope.sources;
  if (core.where != nullptr) {
    scope.clause = Clause::kWhere;
    BindCondition(*core.where, scope);
  }
  scope.clause = Clause::kGroupBy;
  for (ExprPtr& expr : core.group_by) {
    BindValue(*expr, scope);
    if (expr->kind == ExprKind::kLiteral || expr->kind == ExprKind::kNull) {
      Refuse(164,
             "Each GROUP BY expression must contain at least one column that is not an outer "
             "reference.",
             expr->place);
    }
  }
  core.aggregated = !core.group_by.empty() || core.having != nullptr;
  scope.clause = Clause::kItems;
  BindItems(core, scope);
  if (core.having != nullptr) {
    scope.clause = Clause::kHaving;
    BindCondition(*core.having, scope);
  }
  if (core.aggregated) CheckGrouping(core);
  if (core.top != nullptr) BindTop(core, scope);
}

void Binder::BindTop(SelectCore& core, Scope& scope) {
  if (core.top_percent) {
    if (core.top->kind != ExprKind::kLiteral || core.top->text != "100") {
      Refuse(102, "Incorrect syntax: the embedded database does not know TOP n PERCENT.",
             core.top->place);
    }
    statement_.cacheable = false;
    return;
  }
  scope.sources.clear();
  scope.clause = Clause::kValues;
  BindValue(*core.top, scope);
  Coerce(core.top, {TypeKind::kInteger, 0, 10, 0});
  scope.sources = core.sources;
}

void Binder::AddSource(const Source& source, std::size_t place, Scope& scope) const {
  for (const Source* other : scope.sources) {
    if (SameName(other->alias, source.alias)) {
      Refuse(1013,
             Quoted("The objects in the FROM clause have the same exposed name \"", source.alias,
                    "\". Use correlation names to distinguish them."),
             place);
    }
  }
  scope.sources.push_back(&source);
}

void Binder::BindFrom(TableRef& table, Scope& scope) {
  switch (table.kind) {
    case TableRef::Kind::kTable:
      BindNamedTable(table);
      AddSource(table.source, table.place, scope);
      return;
    case TableRef::Kind::kDerived:
      BindDerived(table, scope.parent);
      AddSource(table.source, table.place, scope);
      return;
    case TableRef::Kind::kJoin:
      BindFrom(*table.left, scope);
      BindFrom(*table.right, scope);
      if (table.on != nullptr) BindCondition(*table.on, scope);
      return;
  }
}

void Binder::BindNamedTable(TableRef& table) {
  table.source.alias = table.alias;
  if (SameName(table.schema, "information_schema")) {
    table.source.table = FindSystemTable(table.name);
    table.source.system = true;
    if (table.source.table == nullptr) {
      Refuse(208, Quoted("Invalid object name 'INFORMATION_SCHEMA.", table.name, "'."),
             table.place);
    }
    return;
  }
  if (table.schema.empty()) {
    for (auto common = common_tables_.rbegin(); common != common_tables_.rend(); ++common) {
      if (!SameName((*common)->name, table.name)) continue;
      table.common_table = (*common)->select.get();
      SetDerivedColumns(table.source, *(*common)->select, (*common)->columns, (*common)->name,
                        (*common)->place);
      return;
    }
  }
  table.source.table = Table(table.name, table.place, 208);
}

void Binder::BindDerived(TableRef& table, const Scope* parent) {
  BindSelect(*table.select, parent, false);
  table.source.alias = table.alias;
  SetDerivedColumns(table.source, *table.select, table.column_aliases, table.alias, table.place);
}

void Binder::SetDerivedColumns(Source& source, const Select& select,
                               const std::vector<std::string_view>& names, std::string_view alias,
                               std::size_t place) const {
  const std::vector<ResultColumn>& columns = select.cores.front().columns;
  if (!names.empty() && names.size() != columns.size()) {
    Refuse(8158,
           Quoted("'", alias,
                  "' has another number of columns than were specified in the column list."),
           place);
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    SourceColumn column;
    column.name = names.empty() ? std::string_view(columns[i].name) : names[i];
    column.type = columns[i].type;
    if (column.name.empty()) {
      std::string words =
          "No column name was specified for column " + std::to_string(i + 1) + " of '";
      words += alias;
      Refuse(8155, words + "'.", place);
    }
    for (const SourceColumn& other : source.columns) {
      if (SameName(other.name, column.name)) {
        Refuse(8156,
               Quoted(Quoted("The column '", column.name, "' was specified multiple times for '"),
                      alias, "'."),
               place);
      }
    }
    source.columns.push_back(column);
  }
}

void Binder::ExpandStar(SelectCore& core, std::size_t number, const Scope& scope) {
  const SelectItem& item = core.items[number];
  if (scope.sources.empty()) Refuse(263, "Must specify table to select from.", item.place);
  bool found = item.star_qualifier.empty();
  for (const Source* source : scope.sources) {
    if (!item.star_qualifier.empty() && !SameName(item.star_qualifier, source->alias)) continue;
    found = true;
    if (source->table != nullptr) {
      for (const CatalogueColumn& column : source->table->columns) {
        core.columns.push_back({column.name, column.type});
      }
    } else {
      for (const SourceColumn& column : source->columns) {
        core.columns.push_back({std::string(column.name), column.type});
      }
    }
  }
  if (!found) {
    Refuse(107,
           Quoted("The column prefix '", item.star_qualifier,
                  "' does not match with a table name or alias name used in the query."),
           item.place);
  }
  core.item_of.resize(core.columns.size(), number);
}

void Binder::BindItems(SelectCore& core, Scope& scope) {
  for (std::size_t i = 0; i < core.items.size(); ++i) {
    SelectItem& item = core.items[i];
    if (item.expr == nullptr) {
      ExpandStar(core, i, scope);
      continue;
    }
    BindValue(*item.expr, scope);
    ResultColumn column;
    if (!item.alias.empty()) {
      column.name = item.alias;
    } else if (item.expr->kind == ExprKind::kColumn) {
      column.name = item.expr->text;
    }
    column.type = item.expr->type;
    core.columns.push_back(std::move(column));
    core.item_of.push_back(i);
  }
}

void Binder::FindOrderPosition(OrderItem& order, const SelectCore& core) const {
  const Expr& wanted = *order.expr;
  for (std::size_t i = 0; i < core.columns.size(); ++i) {
    if (!SameName(core.columns[i].name, wanted.text)) continue;
    const SelectItem* item = core.nested == nullptr ? &core.items[core.item_of[i]] : nullptr;
    if (order.position != 0) {
      // Twice the same column is no doubt.
      const SelectItem& first =
          core.items[core.item_of[static_cast<std::size_t>(order.position) - 1]];
      bool literals = false;
      const bool same = item != nullptr && item->expr != nullptr && first.expr != nullptr &&
                        SameExpr(*item->expr, *first.expr, &literals);
      if (!same) Refuse(209, Quoted("Ambiguous column name '", wanted.text, "'."), wanted.place);
      continue;
    }
    order.position = static_cast<int>(i) + 1;
  }
}

void Binder::BindOrder(Select& select, Scope& scope) {
  scope.clause = Clause::kOrderBy;
  const SelectCore& core = select.cores.front();
  const bool united = select.cores.size() > 1 || core.nested != nullptr;
  for (OrderItem& order : select.order_by) {
    Expr& expr = *order.expr;
    if (order.position > 0 || (expr.kind == ExprKind::kLiteral && expr.literal < 0)) {
      if (order.position < 1 || order.position > static_cast<int>(core.columns.size())) {
        Refuse(108,
               Quoted("The ORDER BY position number ", expr.text,
                      " is out of range of the number of items in the select list."),
               expr.place);
      }
      continue;
    }
    if (expr.kind == ExprKind::kLiteral) {
      Refuse(408, "A constant expression was encountered in the ORDER BY list.", expr.place);
    }
    if (expr.kind == ExprKind::kColumn && (expr.qualifier.empty() || united)) {
      FindOrderPosition(order, core);
      if (order.position != 0) continue;
    }
    if (united) {
      Refuse(104,
             "ORDER BY items must appear in the select list if the statement contains a UNION, "
             "INTERSECT or EXCEPT operator.",
             expr.place);
    }
    BindValue(expr, scope);
    bool literals = false;
    for (std::size_t i = 0; i < core.columns.size() && order.position == 0; ++i) {
      const SelectItem& item = core.items[core.item_of[i]];
      if (item.expr != nullptr) {
        if (SameExpr(*item.expr, expr, &literals)) order.position = static_cast<int>(i) + 1;
      } else if (expr.kind == ExprKind::kColumn && SameName(core.columns[i].name, expr.text) &&
                 core.distinct) {
        order.position = static_cast<int>(i) + 1;
      }
    }
    if (literals) statement_.cacheable = false;
    if (core.distinct && order.position == 0) {
      Refuse(145, "ORDER BY items must appear in the select list if SELECT DISTINCT is specified.",
             expr.place);
    }
  }
}

void Binder::MatchUnion(Select& select) const {
  std::vector<ResultColumn>& first = select.cores.front().columns;
  for (const SelectCore& core : select.cores) {
    if (core.columns.size() != first.size()) {
      Refuse(205,
             "All queries combined using a UNION, INTERSECT or EXCEPT operator must have an equal "
             "number of expressions in their target lists.",
             core.place);
    }
  }
  for (std::size_t i = 0; i < first.size(); ++i) {
    Type type = first[i].type;
    for (const SelectCore& core : select.cores) type = Common(type, core.columns[i].type);
    for (SelectCore& core : select.cores) {
      if (core.nested == nullptr && core.items[core.item_of[i]].expr != nullptr) {
        Coerce(core.items[core.item_of[i]].expr, type);
      }
      core.columns[i].type = type;
    }
  }
}

void Binder::CheckGrouping(const SelectCore& core) {
  for (const SelectItem& item : core.items) {
    if (item.expr == nullptr) {
      // Every column of * must be grouped.
      for (std::size_t i = 0; i < core.columns.size(); ++i) {
        if (&core.items[core.item_of[i]] != &item) continue;
        const bool grouped =
            std::any_of(core.group_by.begin(), core.group_by.end(), [&](const ExprPtr& expr) {
              return expr->kind == ExprKind::kColumn && SameName(expr->text, core.columns[i].name);
            });
        if (!grouped) {
          Refuse(8120,
                 Quoted("Column '", core.columns[i].name,
                        "' is invalid in the select list because it is not contained in either an "
                        "aggregate function or the GROUP BY clause."),
                 item.place);
        }
      }
      continue;
    }
    CheckGrouped(*item.expr, core, "the select list");
  }
  if (core.having != nullptr) CheckGrouped(*core.having, core, "the HAVING clause");
}

void Binder::CheckGrouped(const Expr& expr, const SelectCore& core, std::string_view clause) {
  if (expr.kind == ExprKind::kAggregate) return;
  for (const ExprPtr& group : core.group_by) {
    bool literals = false;
    if (SameExpr(expr, *group, &literals)) {
      if (literals) statement_.cacheable = false;
      return;
    }
  }
  if (expr.kind == ExprKind::kColumn && expr.source != nullptr &&
      std::find(core.sources.begin(), core.sources.end(), expr.source) != core.sources.end()) {
    std::string name(expr.source->alias);
    name += '.';
    name += expr.text;
    const int number = clause == "the select list"     ? 8120
                       : clause == "the HAVING clause" ? 8121
                                                       : 8127;
    Refuse(number,
           Quoted(Quoted("Column '", name, "' is invalid in "), clause,
                  " because it is not contained in either an aggregate function or the GROUP BY "
                  "clause."),
           expr.place);
  }
  for (const ExprPtr& argument : expr.args) CheckGrouped(*argument, core, clause);
  if (expr.select != nullptr) CheckGroupedSelect(*expr.select, core, clause);
}

// Columns of the grouped query that a subquery reaches out for.
void Binder::CheckGroupedSelect(const Select& select, const SelectCore& core,
                                std::string_view clause) {
  for (const SelectCore& inner : select.cores) {
    if (inner.nested != nullptr) CheckGroupedSelect(*inner.nested, core, clause);
    for (const SelectItem& item : inner.items) {
      if (item.expr != nullptr) CheckGrouped(*item.expr, core, clause);
    }
    if (inner.where != nullptr) CheckGrouped(*inner.where, core, clause);
    if (inner.having != nullptr) CheckGrouped(*inner.having, core, clause);
  }
}

bool Binder::IsSingleRow(const Select& select) {
  if (select.cores.size() != 1) return false;
  const SelectCore& core = select.cores.front();
  if (core.nested != nullptr) return IsSingleRow(*core.nested);
  if (core.from.empty()) return true;
  if (core.aggregated && core.group_by.empty()) return true;
  // A whole primary key held to values from outside.
  if (core.from.size() != 1 || core.from[0]->kind != TableRef::Kind::kTable) return false;
  const Source& source = core.from[0]->source;
  if (source.table == nullptr || source.table->primary_key.empty()) return false;
  return std::all_of(source.table->primary_key.begin(), source.table->primary_key.end(),
                     [&](const std::string& key) {
                       bool held = false;
                       ForEachConjunct(core.where.get(), [&](const Expr& expr) {
                         if (expr.kind != ExprKind::kCompare || expr.op != Op::kEqual) return;
                         for (std::size_t side = 0; side < 2; ++side) {
                           const Expr& column = *expr.args[side];
                           held = held || (column.kind == ExprKind::kColumn &&
                                           column.source == &source && SameName(column.text, key) &&
                                           !UsesSource(*expr.args[1 - side], source));
                         }
                       });
                       return held;
                     });
}

// Every * as the columns that it stands for.
void Binder::ExpandItems(SelectCore& core) {
  std::vector<SelectItem> items;
  for (SelectItem& item : core.items) {
    if (item.expr != nullptr) {
      items.push_back(std::move(item));
      continue;
    }
    for (const Source* source : core.sources) {
      if (!item.star_qualifier.empty() && !SameName(item.star_qualifier, source->alias)) continue;
      const auto add = [&](std::string_view name, const Type& type, bool base) {
        SelectItem& column = items.emplace_back();
        column.place = item.place;
        column.expr = std::make_unique<Expr>();
        column.expr->kind = ExprKind::kColumn;
        column.expr->place = item.place;
        column.expr->text = name;
        column.expr->source = source;
        column.expr->type = type;
        column.expr->base_column = base;
      };
      if (source->table != nullptr) {
        for (const CatalogueColumn& column : source->table->columns) {
          add(column.name, column.type, !source->system);
        }
      } else {
        for (const SourceColumn& column : source->columns) {
          add(column.name, column.type, column.base);
        }
      }
    }
  }
  core.items = std::move(items);
  for (std::size_t i = 0; i < core.item_of.size(); ++i) core.item_of[i] = i;
}

}  // namespace kaunter::sql
