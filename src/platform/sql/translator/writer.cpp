#include "platform/sql/translator/writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/sql/text.h"

namespace kaunter::sql {
namespace {

void CollectTables(const TableRef& table, std::vector<const TableRef*>& tables,
                   std::vector<const Expr*>& conditions, bool& inner) {
  if (table.kind != TableRef::Kind::kJoin) {
    tables.push_back(&table);
    return;
  }
  inner = inner && (table.join == JoinKind::kInner || table.join == JoinKind::kCross);
  CollectTables(*table.left, tables, conditions, inner);
  CollectTables(*table.right, tables, conditions, inner);
  if (table.on != nullptr) conditions.push_back(table.on.get());
}

bool IsColumnOf(const Expr& expr, const Source& source) {
  return expr.kind == ExprKind::kColumn && expr.source == &source;
}

bool IsKeyColumn(const Expr& expr, const std::vector<std::string>& key) {
  return std::any_of(key.begin(), key.end(),
                     [&](const std::string& name) { return SameName(name, expr.text); });
}

// The whole primary key of the source's table is among the grouped columns.
bool GroupedByKey(const SelectCore& core, const Source& source) {
  if (source.table == nullptr || source.system || source.table->primary_key.empty()) return false;
  const std::vector<std::string>& key = source.table->primary_key;
  return std::all_of(key.begin(), key.end(), [&](const std::string& name) {
    return std::any_of(core.group_by.begin(), core.group_by.end(), [&](const ExprPtr& expr) {
      return IsColumnOf(*expr, source) && SameName(expr->text, name);
    });
  });
}

// What the groups really depend on. T-SQL wants every column of the select list grouped; beside the
// key of their table the others part no group, and without them the groups come out of the key's
// index one by one instead of out of a sort of the whole table.
std::vector<const Expr*> GroupColumns(const SelectCore& core) {
  std::vector<const Source*> keyed;
  for (const Source* source : core.sources) {
    if (GroupedByKey(core, *source)) keyed.push_back(source);
  }
  std::vector<const Expr*> columns;
  for (const ExprPtr& expr : core.group_by) {
    const bool follows = std::any_of(keyed.begin(), keyed.end(), [&](const Source* source) {
      return IsColumnOf(*expr, *source) && !IsKeyColumn(*expr, source->table->primary_key);
    });
    if (!follows) columns.push_back(expr.get());
  }
  return columns;
}

// A * lists the tables' columns in the order of the tables.
bool ListsAll(const SelectCore& core) {
  return std::any_of(core.items.begin(), core.items.end(), [](const SelectItem& item) {
    return item.expr == nullptr && item.star_qualifier.empty();
  });
}

}  // namespace

void Writer::Name(std::string_view name) {
  out_ += '"';
  for (const char c : name) {
    if (c == '"') out_ += '"';
    out_ += c;
  }
  out_ += '"';
}

Translated Writer::Take() {
  Translated translated;
  translated.text = std::move(out_);
  translated.parameters = std::move(parameters_);
  translated.cacheable = statement_.cacheable;
  out_.clear();
  parameters_.clear();
  return translated;
}

std::vector<Translated> Writer::Write() {
  std::vector<Translated> statements;
  out_.reserve(2 * statement_.text.size() + 64);
  switch (statement_.kind) {
    case StatementKind::kSelect: {
      WriteSelect(*statement_.select, nullptr, false);
      Translated& query = statements.emplace_back(Take());
      query.is_query = true;
      query.columns = statement_.select->cores.front().columns;
      return statements;
    }
    case StatementKind::kInsert:
      WriteInsert();
      break;
    case StatementKind::kUpdate:
      WriteUpdate();
      break;
    case StatementKind::kDelete:
      WriteDelete();
      break;
    case StatementKind::kTruncate:
      return WriteTruncate();
    case StatementKind::kBegin:
    case StatementKind::kCommit:
    case StatementKind::kRollback: {
      Translated& transaction = statements.emplace_back();
      transaction.transaction =
          statement_.kind == StatementKind::kBegin    ? Translated::Transaction::kBegin
          : statement_.kind == StatementKind::kCommit ? Translated::Transaction::kCommit
                                                      : Translated::Transaction::kRollback;
      return statements;
    }
    case StatementKind::kNoop:
      statements.emplace_back().is_noop = true;
      return statements;
    default:
      return WriteDdl();
  }
  statements.push_back(Take());
  return statements;
}

void Writer::WriteInsert() {
  out_ += "INSERT INTO ";
  Name(statement_.target->name);
  if (statement_.default_values) {
    out_ += " DEFAULT VALUES";
    return;
  }
  const char* separator = " (";
  for (const std::string_view column : statement_.insert_columns) {
    out_ += separator;
    separator = ", ";
    Name(column);
  }
  out_ += ") ";
  if (statement_.select != nullptr) {
    WriteSelect(*statement_.select, nullptr, false);
    return;
  }
  separator = "VALUES (";
  for (const std::vector<ExprPtr>& row : statement_.rows) {
    out_ += separator;
    separator = ", (";
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) out_ += ", ";
      Value(*row[i]);
    }
    out_ += ')';
  }
}

void Writer::WriteConditions(const std::vector<const Expr*>& conditions) {
  const char* separator = " WHERE ";
  for (const Expr* condition : conditions) {
    if (condition == nullptr) continue;
    out_ += separator;
    separator = " AND ";
    Condition(*condition);
  }
}

void Writer::WriteUpdate() {
  std::vector<const TableRef*> tables;
  std::vector<const Expr*> conditions;
  bool inner = true;
  for (const TableRefPtr& table : statement_.from) {
    CollectTables(*table, tables, conditions, inner);
  }
  const TableRef* own = statement_.target_source == nullptr ? &statement_.own : nullptr;
  if (!inner) {
    WriteUpdateByRow(statement_.from.empty() ? nullptr : own);
    return;
  }
  const TableRef* target = own;
  for (const TableRef* table : tables) {
    if (&table->source == statement_.target_source) target = table;
  }
  out_ += "UPDATE ";
  Name(statement_.target->name);
  if (!SameName(target->source.alias, statement_.target->name)) {
    out_ += " AS ";
    Name(target->source.alias);
  }
  const char* separator = " SET ";
  for (const Assignment& assignment : statement_.assignments) {
    out_ += separator;
    separator = ", ";
    Name(assignment.canonical);
    out_ += " = ";
    Value(*assignment.value);
  }
  separator = " FROM ";
  for (const TableRef* table : tables) {
    if (table == target) continue;
    out_ += separator;
    separator = ", ";
    WriteTable(*table);
  }
  conditions.push_back(statement_.where.get());
  WriteConditions(conditions);
}

// With outer joins the new values are worked out in a query of their own, row by row.
void Writer::WriteUpdateByRow(const TableRef* own) {
  const Source& target =
      statement_.target_source != nullptr ? *statement_.target_source : statement_.own.source;
  out_ += "UPDATE ";
  Name(statement_.target->name);
  const char* separator = " SET ";
  for (std::size_t i = 0; i < statement_.assignments.size(); ++i) {
    out_ += separator;
    separator = ", ";
    Name(statement_.assignments[i].canonical);
    fmt::format_to(std::back_inserter(out_), " = \"k_rows\".\"k_{}\"", i);
  }
  out_ += " FROM (SELECT ";
  Name(target.alias);
  out_ += '.';
  out_ += RowName();
  out_ += " AS \"k_row\"";
  for (std::size_t i = 0; i < statement_.assignments.size(); ++i) {
    out_ += ", ";
    Value(*statement_.assignments[i].value);
    fmt::format_to(std::back_inserter(out_), " AS \"k_{}\"", i);
  }
  WriteFrom(statement_.from, own);
  WriteConditions({statement_.where.get()});
  out_ += ") AS \"k_rows\" WHERE ";
  Name(statement_.target->name);
  out_ += '.';
  out_ += RowName();
  out_ += " = \"k_rows\".\"k_row\"";
}

void Writer::WriteDelete() {
  out_ += "DELETE FROM ";
  Name(statement_.target->name);
  if (statement_.from.empty()) {
    WriteConditions({statement_.where.get()});
    return;
  }
  const bool joined = statement_.target_source != nullptr;
  const Source& target = joined ? *statement_.target_source : statement_.own.source;
  out_ += " WHERE ";
  out_ += RowName();
  out_ += " IN (SELECT ";
  Name(target.alias);
  out_ += '.';
  out_ += RowName();
  WriteFrom(statement_.from, joined ? nullptr : &statement_.own);
  WriteConditions({statement_.where.get()});
  out_ += ')';
}

void Writer::WriteSelect(const Select& select, const std::vector<std::string_view>* names,
                         bool derived, bool single) {
  const char* separator = "WITH ";
  for (const CommonTable& table : select.with) {
    out_ += separator;
    separator = ", ";
    Name(table.name);
    out_ += " AS (";
    WriteSelect(*table.select, table.columns.empty() ? nullptr : &table.columns, true);
    out_ += ')';
  }
  if (!select.with.empty()) out_ += ' ';
  const bool compound = select.cores.size() > 1;
  for (std::size_t i = 0; i < select.cores.size(); ++i) {
    const SelectCore& core = select.cores[i];
    if (i > 0) {
      switch (select.ops[i - 1]) {
        case SetOp::kUnion:
          out_ += " UNION ";
          break;
        case SetOp::kUnionAll:
          out_ += " UNION ALL ";
          break;
        case SetOp::kExcept:
          out_ += " EXCEPT ";
          break;
        case SetOp::kIntersect:
          out_ += " INTERSECT ";
          break;
      }
    }
    const std::vector<std::string_view>* core_names = i == 0 ? names : nullptr;
    if (core.nested != nullptr) {
      out_ += "SELECT * FROM (";
      WriteSelect(*core.nested, core_names, true);
      out_ += ") AS \"k_part\"";
    } else if (compound && core.top != nullptr) {
      out_ += "SELECT * FROM (";
      WriteCore(core, core_names, true, true, false);
      WriteLimit(core);
      out_ += ") AS \"k_part\"";
    } else {
      // The first select decides how a UNION compares.
      const bool collate = derived || core.distinct || (compound && i == 0);
      WriteCore(core, core_names, derived, collate, single);
    }
  }
  WriteOrder(select);
  OwnOrder(select);
  if (!compound && select.cores[0].nested == nullptr) WriteLimit(select.cores[0]);
}

void Writer::WriteCore(const SelectCore& core, const std::vector<std::string_view>* names,
                       bool derived, bool collate, bool single) {
  out_ += core.distinct ? "SELECT DISTINCT " : "SELECT ";
  std::size_t column = 0;
  for (std::size_t i = 0; i < core.items.size(); ++i) {
    if (i > 0) out_ += ", ";
    const SelectItem& item = core.items[i];
    if (item.expr == nullptr && names != nullptr) {
      // a.* under other names
      for (bool first = true; column < core.columns.size() && core.item_of[column] == i;
           ++column, first = false) {
        if (!first) out_ += ", ";
        Name(core.columns[column].name);
        out_ += " AS ";
        Name((*names)[column]);
      }
      continue;
    }
    const std::string_view name =
        names != nullptr ? (*names)[column] : std::string_view(core.columns[column].name);
    // HAVING without GROUP BY makes one group of all rows. SQLite wants to see that in the select
    // list, where an aggregate may be missing or be an outer query's.
    const bool group = i == 0 && core.having != nullptr && core.group_by.empty();
    WriteItem(item, name, derived, collate, single, group);
    while (column < core.columns.size() && core.item_of[column] == i) ++column;
  }
  const bool keep = std::exchange(keep_table_order_, ListsAll(core));
  if (!core.from.empty()) WriteFrom(core.from, nullptr);
  keep_table_order_ = keep;
  if (core.where != nullptr) WriteConditions({core.where.get()});
  const char* separator = " GROUP BY ";
  for (const Expr* expr : GroupColumns(core)) {
    out_ += separator;
    separator = ", ";
    Collated(*expr, expr->type.kind == TypeKind::kText && !expr->base_column);
  }
  if (core.having != nullptr) {
    out_ += " HAVING ";
    Condition(*core.having);
  }
}

void Writer::WriteItem(const SelectItem& item, std::string_view name, bool derived, bool collate,
                       bool single, bool group) {
  if (item.expr == nullptr) {
    if (!item.star_qualifier.empty()) {
      Name(item.star_qualifier);
      out_ += '.';
    }
    out_ += '*';
    return;
  }
  if (single) out_ += "k_one(";
  if (group) out_ += "CASE WHEN count(*) >= 0 THEN ";
  Collated(*item.expr, collate && !single && item.expr->type.kind == TypeKind::kText &&
                           !item.expr->base_column);
  if (group) out_ += " END";
  if (single) out_ += ')';
  if (derived || !item.alias.empty()) {
    if (name.empty()) return;
    out_ += " AS ";
    Name(name);
  }
}

void Writer::WriteOrder(const Select& select) {
  const SelectCore& core = select.cores.front();
  const char* separator = " ORDER BY ";
  for (const OrderItem& item : select.order_by) {
    out_ += separator;
    separator = ", ";
    const Expr* key = item.expr.get();
    bool text = false;
    if (item.position > 0) {
      const std::size_t column = static_cast<std::size_t>(item.position) - 1;
      key = core.nested == nullptr ? core.items[core.item_of[column]].expr.get() : nullptr;
      fmt::format_to(std::back_inserter(out_), "{}", item.position);
      text = core.columns[column].type.kind == TypeKind::kText;
    } else {
      Value(*key);
      text = IsText(*key);
    }
    OrderDirection(key, text, item.descending);
  }
}

void Writer::WriteLimit(const SelectCore& core) {
  if (core.top == nullptr || core.top_percent) return;
  out_ += " LIMIT ";
  Value(*core.top);
}

void Writer::WriteFrom(const std::vector<TableRefPtr>& from, const TableRef* own) {
  const char* separator = " FROM ";
  if (own != nullptr) {
    out_ += separator;
    WriteTable(*own);
    separator = ", ";
  }
  const bool several = from.size() + (own != nullptr ? 1 : 0) > 1;
  for (const TableRefPtr& table : from) {
    out_ += separator;
    separator = ", ";
    // A comma binds no looser than JOIN in SQLite.
    const bool bracket = several && table->kind == TableRef::Kind::kJoin;
    if (bracket) out_ += '(';
    WriteTable(*table);
    if (bracket) out_ += ')';
  }
}

void Writer::MayBeFilled(const TableRef& table) {
  if (table.kind == TableRef::Kind::kJoin) {
    MayBeFilled(*table.left);
    MayBeFilled(*table.right);
  } else {
    filled_.push_back(&table.source);
  }
}

void Writer::WriteTable(const TableRef& table) {
  switch (table.kind) {
    case TableRef::Kind::kTable:
      if (table.source.system) {
        WriteSystemTable(table);
      } else {
        Name(table.common_table != nullptr ? table.name
                                           : std::string_view(table.source.table->name));
        if (table.common_table == nullptr && table.source.alias == table.source.table->name) return;
      }
      out_ += " AS ";
      Name(table.source.alias);
      return;
    case TableRef::Kind::kDerived:
      out_ += '(';
      WriteSelect(*table.select, table.column_aliases.empty() ? nullptr : &table.column_aliases,
                  true);
      out_ += ") AS ";
      Name(table.source.alias);
      return;
    case TableRef::Kind::kJoin:
      break;
  }
  // A right join turned round can be driven from the index of the table that all rows come from.
  const bool turned = table.join == JoinKind::kRight && !keep_table_order_;
  const TableRef& first = turned ? *table.right : *table.left;
  const TableRef& second = turned ? *table.left : *table.right;
  if (table.join == JoinKind::kLeft || table.join == JoinKind::kFull) MayBeFilled(*table.right);
  if (table.join == JoinKind::kRight || table.join == JoinKind::kFull) MayBeFilled(*table.left);
  WriteTable(first);
  switch (turned ? JoinKind::kLeft : table.join) {
    case JoinKind::kInner:
      out_ += " INNER JOIN ";
      break;
    case JoinKind::kLeft:
      out_ += " LEFT JOIN ";
      break;
    case JoinKind::kRight:
      out_ += " RIGHT JOIN ";
      break;
    case JoinKind::kFull:
      out_ += " FULL JOIN ";
      break;
    case JoinKind::kCross:
      out_ += " CROSS JOIN ";
      break;
  }
  const bool bracket = second.kind == TableRef::Kind::kJoin;
  if (bracket) out_ += '(';
  WriteTable(second);
  if (bracket) out_ += ')';
  if (table.on != nullptr) {
    out_ += " ON ";
    Condition(*table.on);
  }
}

}  // namespace kaunter::sql
