#include "platform/sql/translator/binder.h"

#include <algorithm>

#include "platform/sql/sql_error.h"
#include "platform/sql/text.h"

namespace kaunter::sql {
namespace {

std::string Quoted(std::string_view before, std::string_view name, std::string_view behind) {
  std::string words(before);
  words += name;
  words += behind;
  return words;
}

// The table of FROM that is exposed under a name, else the one that has it as its own.
TableRef* FindTarget(TableRef& table, std::string_view name, bool by_alias) {
  if (table.kind == TableRef::Kind::kJoin) {
    TableRef* left = FindTarget(*table.left, name, by_alias);
    return left != nullptr ? left : FindTarget(*table.right, name, by_alias);
  }
  if (table.kind != TableRef::Kind::kTable) return nullptr;
  return SameName(by_alias ? table.alias : table.name, name) ? &table : nullptr;
}

}  // namespace

void Binder::Refuse(int number, std::string_view words, std::size_t place) const {
  Fail(number, words, statement_.text, place);
}

const CatalogueTable* Binder::Table(std::string_view name, std::size_t place, int number) const {
  const CatalogueTable* table = catalogue_.FindTable(name);
  if (table != nullptr) return table;
  switch (number) {
    case 3701:
      Refuse(number,
             Quoted("Cannot drop the table '", name,
                    "', because it does not exist or you do not have permission."),
             place);
    case 4902:
    case 1088:
      Refuse(number,
             Quoted("Cannot find the object \"", name,
                    "\" because it does not exist or you do not have permissions."),
             place);
    default:
      Refuse(number, Quoted("Invalid object name '", name, "'."), place);
  }
}

const CatalogueColumn* Binder::Column(const CatalogueTable& table, std::string_view name) const {
  for (const CatalogueColumn& column : table.columns) {
    if (SameName(column.name, name)) return &column;
  }
  return nullptr;
}

void Binder::Bind() {
  switch (statement_.kind) {
    case StatementKind::kSelect:
      BindSelect(*statement_.select, nullptr, true);
      if (!statement_.select->cores.front().into.empty()) {
        Refuse(102, "Incorrect syntax: the embedded database does not know SELECT ... INTO.",
               statement_.select->cores.front().into_place);
      }
      return;
    case StatementKind::kInsert:
      BindInsert();
      return;
    case StatementKind::kUpdate:
      BindUpdate();
      return;
    case StatementKind::kDelete:
      BindDelete();
      return;
    case StatementKind::kTruncate:
      statement_.target = Table(statement_.table, statement_.table_place, 4701);
      return;
    case StatementKind::kCreateTable:
      BindCreateTable();
      return;
    case StatementKind::kCreateIndex:
      BindCreateIndex();
      return;
    case StatementKind::kDropTable:
      statement_.target = Table(statement_.table, statement_.table_place, 3701);
      return;
    case StatementKind::kDropIndex:
      statement_.target = Table(statement_.table, statement_.table_place, 1088);
      return;
    case StatementKind::kAlterAdd:
    case StatementKind::kAlterColumn:
    case StatementKind::kAlterDropColumn:
      BindAlterAdd();
      return;
    default:
      return;
  }
}

std::size_t Binder::Place(std::size_t column) const {
  return column < statement_.column_places.size() ? statement_.column_places[column]
                                                  : statement_.table_place;
}

void Binder::BindInsert() {
  const CatalogueTable& table = *Table(statement_.table, statement_.table_place, 208);
  statement_.target = &table;
  std::vector<const CatalogueColumn*> columns;
  if (statement_.columns.empty()) {
    for (const CatalogueColumn& column : table.columns) {
      if (!column.identity && !column.computed) columns.push_back(&column);
    }
  }
  for (std::size_t i = 0; i < statement_.columns.size(); ++i) {
    const std::string_view name = statement_.columns[i];
    const CatalogueColumn* column = Column(table, name);
    if (column == nullptr) Refuse(207, Quoted("Invalid column name '", name, "'."), Place(i));
    if (column->identity) {
      Refuse(544,
             Quoted("Cannot insert explicit value for identity column in table '", table.name,
                    "' when IDENTITY_INSERT is set to OFF."),
             Place(i));
    }
    if (column->computed) {
      Refuse(271,
             Quoted("The column \"", name,
                    "\" cannot be modified because it is either a computed column or is the result "
                    "of a UNION operator."),
             Place(i));
    }
    if (std::find(columns.begin(), columns.end(), column) != columns.end()) {
      Refuse(264,
             Quoted("The column name '", name,
                    "' is specified more than once in the SET clause or column list of an INSERT."),
             Place(i));
    }
    columns.push_back(column);
  }
  for (const CatalogueColumn* column : columns) statement_.insert_columns.push_back(column->name);
  if (statement_.default_values) return;
  if (statement_.select != nullptr) {
    BindInsertSelect();
    return;
  }
  for (std::vector<ExprPtr>& row : statement_.rows) {
    const std::size_t place = row.front()->place;
    if (row.size() != columns.size()) {
      if (statement_.columns.empty()) {
        Refuse(213, "Column name or number of supplied values does not match table definition.",
               place);
      }
      Refuse(row.size() < columns.size() ? 109 : 110,
             row.size() < columns.size()
                 ? "There are more columns in the INSERT statement than values specified in the "
                   "VALUES clause."
                 : "There are fewer columns in the INSERT statement than values specified in the "
                   "VALUES clause.",
             place);
    }
    Scope scope;
    scope.clause = Clause::kValues;
    for (std::size_t i = 0; i < row.size(); ++i) {
      BindValue(*row[i], scope);
      Assign(row[i], columns[i]->type, columns[i]->name);
    }
  }
}

void Binder::BindInsertSelect() {
  Select& select = *statement_.select;
  BindSelect(select, nullptr, true);
  const std::size_t given = select.cores.front().columns.size();
  const std::size_t wanted = statement_.insert_columns.size();
  if (given != wanted) {
    if (statement_.columns.empty()) {
      Refuse(213, "Column name or number of supplied values does not match table definition.",
             select.cores.front().place);
    }
    Refuse(given < wanted ? 120 : 121,
           given < wanted
               ? "The select list for the INSERT statement contains fewer items than the "
                 "insert list."
               : "The select list for the INSERT statement contains more items than the "
                 "insert list.",
           select.cores.front().place);
  }
  AssignItems(select);
}

void Binder::AssignItems(Select& select) {
  for (SelectCore& core : select.cores) {
    if (core.nested != nullptr) {
      AssignItems(*core.nested);
      continue;
    }
    ExpandItems(core);
    for (std::size_t i = 0; i < core.items.size(); ++i) {
      const CatalogueColumn* column = Column(*statement_.target, statement_.insert_columns[i]);
      Assign(core.items[i].expr, column->type, column->name);
    }
  }
}

void Binder::BindTarget(Scope& scope, bool alone) {
  if (alone) {
    statement_.target = Table(statement_.table, statement_.table_place, 208);
  } else {
    for (TableRefPtr& table : statement_.from) BindFrom(*table, scope);
    TableRef* target = nullptr;
    for (const bool by_alias : {true, false}) {
      for (TableRefPtr& table : statement_.from) {
        if (target == nullptr) target = FindTarget(*table, statement_.table, by_alias);
      }
    }
    if (target != nullptr) {
      if (target->source.table == nullptr || target->source.system) {
        Refuse(4405, Quoted("'", statement_.table, "' is not updatable."), statement_.table_place);
      }
      statement_.target = target->source.table;
      statement_.target_source = &target->source;
      return;
    }
    // UPDATE t SET ... FROM u: t joins by WHERE.
    statement_.target = Table(statement_.table, statement_.table_place, 208);
  }
  statement_.own.kind = TableRef::Kind::kTable;
  statement_.own.name = statement_.target->name;
  statement_.own.alias = statement_.target->name;
  statement_.own.source.alias = statement_.target->name;
  statement_.own.source.table = statement_.target;
  AddSource(statement_.own.source, statement_.table_place, scope);
}

void Binder::BindUpdate() {
  Scope scope;
  scope.clause = Clause::kOn;
  BindTarget(scope, statement_.from.empty());
  const Source& target =
      statement_.target_source != nullptr ? *statement_.target_source : statement_.own.source;
  for (Assignment& assignment : statement_.assignments) {
    if (!assignment.qualifier.empty() && !SameName(assignment.qualifier, target.alias) &&
        !SameName(assignment.qualifier, target.table->name)) {
      std::string name(assignment.qualifier);
      name += '.';
      name += assignment.column;
      Refuse(4104, Quoted("The multi-part identifier \"", name, "\" could not be bound."),
             assignment.place);
    }
    const CatalogueColumn* column = Column(*target.table, assignment.column);
    if (column == nullptr) {
      Refuse(207, Quoted("Invalid column name '", assignment.column, "'."), assignment.place);
    }
    if (column->computed) {
      Refuse(271,
             Quoted("The column \"", column->name,
                    "\" cannot be modified because it is either a computed column or is the result "
                    "of a UNION operator."),
             assignment.place);
    }
    if (column->identity) {
      Refuse(8102, Quoted("Cannot update identity column '", column->name, "'."), assignment.place);
    }
    assignment.canonical = column->name;
    if (assignment.compound) assignment.value->args[0]->qualifier = target.alias;
    scope.clause = Clause::kSet;
    BindValue(*assignment.value, scope);
    Assign(assignment.value, column->type, column->name);
  }
  for (std::size_t i = 0; i < statement_.assignments.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (statement_.assignments[i].canonical == statement_.assignments[j].canonical) {
        Refuse(264,
               Quoted("The column name '", statement_.assignments[i].canonical,
                      "' is specified more than once in the SET clause or column list of an "
                      "INSERT."),
               statement_.assignments[i].place);
      }
    }
  }
  if (statement_.where != nullptr) {
    scope.clause = Clause::kWhere;
    BindCondition(*statement_.where, scope);
  }
}

void Binder::BindDelete() {
  Scope scope;
  scope.clause = Clause::kOn;
  BindTarget(scope, statement_.from.empty());
  if (statement_.where != nullptr) {
    scope.clause = Clause::kWhere;
    BindCondition(*statement_.where, scope);
  }
}

void Binder::BindDefault(ColumnDefinition& column) {
  if (column.default_value == nullptr) return;
  Scope scope;
  scope.clause = Clause::kValues;
  BindValue(*column.default_value, scope);
  statement_.cacheable = false;
}

void Binder::BindCreateTable() {
  if (catalogue_.FindTable(statement_.table) != nullptr) {
    Refuse(2714,
           Quoted("There is already an object named '", statement_.table, "' in the database."),
           statement_.table_place);
  }
  statement_.cacheable = false;
  Source source;
  source.alias = statement_.table;
  for (ColumnDefinition& column : statement_.definitions) {
    for (const SourceColumn& other : source.columns) {
      if (SameName(other.name, column.name)) {
        Refuse(2705,
               Quoted(Quoted("Column names in each table must be unique. Column name '",
                             column.name, "' in table '"),
                      statement_.table, "' is specified more than once."),
               column.place);
      }
    }
    source.columns.push_back({column.name, column.type, true});
    BindDefault(column);
  }
  bool primary = false;
  for (const KeyConstraint& key : statement_.keys) {
    for (const std::string_view name : key.columns) {
      const bool known =
          std::any_of(source.columns.begin(), source.columns.end(),
                      [&](const SourceColumn& column) { return SameName(column.name, name); });
      if (!known) {
        Refuse(1911, Quoted("Column name '", name, "' does not exist in the target table or view."),
               key.place);
      }
    }
    if (key.primary && primary) {
      Refuse(
          8110,
          Quoted("Cannot add multiple PRIMARY KEY constraints to table '", statement_.table, "'."),
          key.place);
    }
    primary = primary || key.primary;
  }
  Scope scope;
  scope.sources.push_back(&source);
  scope.clause = Clause::kSet;
  for (ColumnDefinition& column : statement_.definitions) {
    if (column.computed != nullptr) BindValue(*column.computed, scope);
  }
}

void Binder::BindCreateIndex() {
  statement_.target = Table(statement_.table, statement_.table_place, 1088);
  for (const IndexColumn& column : statement_.index_columns) {
    if (Column(*statement_.target, column.name) == nullptr) {
      Refuse(1911,
             Quoted("Column name '", column.name, "' does not exist in the target table or view."),
             column.place);
    }
  }
}

void Binder::BindAlterAdd() {
  const CatalogueTable& table = *Table(statement_.table, statement_.table_place, 4902);
  statement_.target = &table;
  statement_.cacheable = false;
  const bool add = statement_.kind == StatementKind::kAlterAdd;
  for (std::size_t i = 0; i < statement_.definitions.size(); ++i) {
    ColumnDefinition& column = statement_.definitions[i];
    const CatalogueColumn* known = Column(table, column.name);
    bool twice = add && known != nullptr;
    for (std::size_t j = 0; j < i; ++j) {
      twice = twice || SameName(statement_.definitions[j].name, column.name);
    }
    if (twice) {
      Refuse(2705,
             Quoted(Quoted("Column names in each table must be unique. Column name '", column.name,
                           "' in table '"),
                    table.name, "' is specified more than once."),
             column.place);
    }
    if (!add && known == nullptr) {
      Refuse(4924,
             Quoted(Quoted("ALTER TABLE failed because column '", column.name,
                           "' does not exist in table '"),
                    table.name, "'."),
             column.place);
    }
    if (column.computed != nullptr || column.identity || column.primary_key) {
      Refuse(102,
             "Incorrect syntax: the embedded database adds no computed, identity or key column to "
             "a table that exists.",
             column.place);
    }
    BindDefault(column);
  }
  for (const KeyConstraint& key : statement_.keys) {
    for (const std::string_view name : key.columns) {
      if (Column(table, name) == nullptr) {
        Refuse(1911, Quoted("Column name '", name, "' does not exist in the target table or view."),
               key.place);
      }
    }
  }
}

}  // namespace kaunter::sql
