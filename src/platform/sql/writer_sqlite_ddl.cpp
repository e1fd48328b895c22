// SQLite's CREATE, DROP and ALTER. The declared types stay word for word: they are the catalogue.
#include <algorithm>

#include "platform/sql/functions.h"
#include "platform/sql/writer_sqlite.h"

namespace kaunter::sql {

std::vector<Translated> SqliteWriter::WriteDdl() {
  std::vector<Translated> statements;
  constants_ = true;
  switch (statement_.kind) {
    case StatementKind::kCreateTable:
      WriteCreateTable();
      break;
    case StatementKind::kCreateIndex:
      WriteCreateIndex();
      break;
    case StatementKind::kDropTable:
      out_ = "DROP TABLE ";
      Name(statement_.target->name);
      break;
    case StatementKind::kDropIndex:
      out_ = "DROP INDEX ";
      WriteIndexName(statement_.target->name, statement_.index);
      break;
    case StatementKind::kAlterAdd:
      return WriteAlterAdd();
    case StatementKind::kAlterColumn: {
      const ColumnDefinition& column = statement_.definitions.front();
      Translated& alter = statements.emplace_back(Take());
      alter.alter_column = AlterColumn{statement_.target->name, std::string(column.name),
                                       Declaration(column) + (column.not_null ? " NOT NULL" : "")};
      alter.is_ddl = true;
      alter.cacheable = false;
      return statements;
    }
    case StatementKind::kAlterDropColumn:
      for (const ColumnDefinition& column : statement_.definitions) {
        out_ = "ALTER TABLE ";
        Name(statement_.target->name);
        out_ += " DROP COLUMN ";
        Name(column.name);
        statements.push_back(Take());
      }
      break;
    default:
      break;
  }
  if (!out_.empty()) statements.push_back(Take());
  for (Translated& statement : statements) {
    statement.is_ddl = true;
    statement.cacheable = false;
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
    switch (declared.type.kind) {
      case TypeKind::kText:
        declared.declared = declared.type.width > 0
                                ? "nvarchar(" + std::to_string(declared.type.width) + ")"
                                : "nvarchar";
        break;
      case TypeKind::kDecimal:
        declared.declared = "decimal(38, " + std::to_string(declared.type.scale) + ")";
        break;
      case TypeKind::kInteger:
        declared.declared = "int";
        break;
      case TypeKind::kDouble:
        declared.declared = "float";
        break;
      default:
        declared.declared = "datetime";
        break;
    }
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
    out_ += ", UNIQUE (";
  } else {
    out_ += key.primary ? ", PRIMARY KEY (" : ", UNIQUE (";
  }
  const char* separator = "";
  for (const std::string_view name : key.columns) {
    out_ += separator;
    separator = ", ";
    Name(name);
  }
  out_ += ')';
}

void SqliteWriter::WriteCreateTable() {
  const ColumnDefinition* identity = nullptr;
  KeyConstraint inline_key;
  inline_key.primary = true;
  for (const ColumnDefinition& column : statement_.definitions) {
    if (column.identity) identity = &column;
    if (column.primary_key) inline_key.columns.push_back(column.name);
  }
  const auto in_key = [&](std::string_view name) {
    return std::any_of(statement_.keys.begin(), statement_.keys.end(),
                       [&](const KeyConstraint& key) {
                         return key.primary && std::any_of(key.columns.begin(), key.columns.end(),
                                                           [&](std::string_view column) {
                                                             return SameName(column, name);
                                                           });
                       }) ||
           std::any_of(inline_key.columns.begin(), inline_key.columns.end(),
                       [&](std::string_view column) { return SameName(column, name); });
  };
  out_ = "CREATE TABLE ";
  Name(statement_.table);
  const char* separator = " (";
  for (const ColumnDefinition& column : statement_.definitions) {
    out_ += separator;
    separator = ", ";
    WriteColumn(column, in_key(column.name));
  }
  if (!inline_key.columns.empty()) WriteKey(inline_key, identity);
  for (const KeyConstraint& key : statement_.keys) WriteKey(key, identity);
  out_ += ')';
}

// SQLite's indexes share one set of names with each other and with the tables; the server's are
// named within their table.
void SqliteWriter::WriteIndexName(std::string_view table, std::string_view index) {
  std::string name(table);
  name += '.';
  name += index;
  Name(name);
}

void SqliteWriter::WriteCreateIndex() {
  out_ = statement_.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
  WriteIndexName(statement_.target->name, statement_.index);
  out_ += " ON ";
  Name(statement_.target->name);
  const char* separator = " (";
  for (const IndexColumn& column : statement_.index_columns) {
    out_ += separator;
    separator = ", ";
    Name(column.name);
    if (column.descending) out_ += " DESC";
  }
  out_ += ')';
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
    const char* separator = " (";
    for (const std::string_view name : key.columns) {
      out_ += separator;
      separator = ", ";
      Name(name);
    }
    out_ += ')';
    statements.push_back(Take());
  }
  for (Translated& statement : statements) {
    statement.is_ddl = true;
    statement.cacheable = false;
  }
  return statements;
}

}  // namespace kaunter::sql
