// SQLite's CREATE, DROP and ALTER. The declared types stay word for word: they are the catalogue.
#include <algorithm>

#include "platform/sql/text.h"
#include "platform/sql/translator/functions.h"
#include "platform/sql/translator/writer_sqlite.h"

namespace kaunter::sql {

std::vector<Translated> SqliteWriter::WriteAlterColumn() {
  const ColumnDefinition& column = statement_.definitions.front();
  Translated alter = Take();
  alter.alter_column = AlterColumn{statement_.target->name, std::string(column.name),
                                   Declaration(column) + (column.not_null ? " NOT NULL" : "")};
  return {std::move(alter)};
}

std::vector<Translated> SqliteWriter::WriteDropColumns() {
  std::vector<Translated> statements;
  for (const ColumnDefinition& column : statement_.definitions) {
    out_ = "ALTER TABLE ";
    Name(statement_.target->name);
    out_ += " DROP COLUMN ";
    Name(column.name);
    statements.push_back(Take());
  }
  return statements;
}

std::string SqliteWriter::Declaration(const ColumnDefinition& column) {
  std::string declared = column.declared;
  const std::size_t unbounded = declared.find("(max)");  // SQLite takes no word in brackets
  if (unbounded != std::string::npos) declared.erase(unbounded);
  if (column.type.kind == TypeKind::kText) {
    declared += " COLLATE ";
    declared += kCollation;
  }
  return declared;
}

void SqliteWriter::WriteColumn(const ColumnDefinition& column, bool key) {
  Name(column.name);
  out_ += ' ';
  if (column.computed != nullptr) {
    // It is declared as what it is made from, so that the catalogue knows its type.
    ColumnDefinition declared;
    declared.type = column.computed->type;
    declared.declared = DeclaredAs(declared.type);
    out_ += Declaration(declared) + " GENERATED ALWAYS AS (";
    bare_columns_ = true;
    Value(*column.computed);
    bare_columns_ = false;
    out_ += ") VIRTUAL";
    return;
  }
  if (column.identity) {
    // Counted by SQLite itself, and a number that was deleted never comes back.
    out_ += "INTEGER PRIMARY KEY AUTOINCREMENT";
    return;
  }
  out_ += Declaration(column);
  if (column.not_null || key) out_ += " NOT NULL";
  if (column.unique) out_ += " UNIQUE";
  if (column.default_value != nullptr) {
    out_ += " DEFAULT (";
    Value(*column.default_value);
    out_ += ')';
  }
}

void SqliteWriter::WriteKey(const KeyConstraint& key, const ColumnDefinition* identity) {
  if (key.primary && identity != nullptr) {
    if (key.columns.size() == 1 && SameName(key.columns[0], identity->name)) return;
    out_ += ", UNIQUE";
  } else {
    out_ += key.primary ? ", PRIMARY KEY" : ", UNIQUE";
  }
  WriteNames(key.columns);
}

void SqliteWriter::IndexDirection(const IndexColumn& column) {
  if (column.descending) out_ += " DESC";
}

std::vector<Translated> SqliteWriter::WriteAlterAdd() {
  std::vector<Translated> statements;
  const std::string& table = statement_.target->name;
  for (const ColumnDefinition& column : statement_.definitions) {
    out_ = "ALTER TABLE ";
    Name(table);
    out_ += " ADD COLUMN ";
    WriteColumn(column, false);
    statements.push_back(Take());
    // The server leaves the rows that are there at null unless it is told WITH VALUES.
    if (column.default_value != nullptr && !column.not_null && !column.with_values) {
      out_ = "UPDATE ";
      Name(table);
      out_ += " SET ";
      Name(column.name);
      out_ += " = NULL";
      statements.push_back(Take());
    }
  }
  for (const KeyConstraint& key : statement_.keys) {
    out_ = "CREATE UNIQUE INDEX ";
    WriteIndexName(table, key.name.empty() ? std::string_view("key") : key.name);
    out_ += " ON ";
    Name(table);
    WriteNames(key.columns);
    statements.push_back(Take());
  }
  return statements;
}

}  // namespace kaunter::sql
