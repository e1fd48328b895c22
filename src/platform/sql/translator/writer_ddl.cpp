// CREATE, DROP and ALTER, as far as the dialects share them.
#include <algorithm>

#include "platform/sql/text.h"
#include "platform/sql/translator/writer.h"

namespace kaunter::sql {

std::vector<Translated> Writer::WriteDdl() {
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
      statements = WriteAlterAdd();
      break;
    case StatementKind::kAlterColumn:
      statements = WriteAlterColumn();
      break;
    case StatementKind::kAlterDropColumn:
      statements = WriteDropColumns();
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

void Writer::WriteCreateTable() {
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

void Writer::WriteIndexName(std::string_view table, std::string_view index) {
  std::string name(table);
  name += '.';
  name += index;
  Name(name);
}

void Writer::WriteCreateIndex() {
  out_ = statement_.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
  WriteIndexName(statement_.target->name, statement_.index);
  out_ += " ON ";
  Name(statement_.target->name);
  const char* separator = " (";
  for (const IndexColumn& column : statement_.index_columns) {
    out_ += separator;
    separator = ", ";
    Name(column.name);
    IndexDirection(column);
  }
  out_ += ')';
}

void Writer::WriteNames(const std::vector<std::string_view>& names) {
  const char* separator = " (";
  for (const std::string_view name : names) {
    out_ += separator;
    separator = ", ";
    Name(name);
  }
  out_ += ')';
}

std::string Writer::DeclaredAs(const Type& type) {
  switch (type.kind) {
    case TypeKind::kText:
      return type.width > 0 ? "nvarchar(" + std::to_string(type.width) + ")" : "nvarchar";
    case TypeKind::kDecimal:
      return "decimal(38, " + std::to_string(type.scale) + ")";
    case TypeKind::kInteger:
      return "int";
    case TypeKind::kDouble:
      return "float";
    default:
      return "datetime";
  }
}

}  // namespace kaunter::sql
