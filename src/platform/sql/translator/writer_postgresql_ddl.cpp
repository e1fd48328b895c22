// PostgreSQL's CREATE, DROP and ALTER. The catalogue is the server's own; what it cannot hold (the
// width of a text, a bit, a tinyint) stands in the name of a check.
#include <fmt/format.h>

#include <algorithm>

#include "platform/sql/sql_error.h"
#include "platform/sql/text.h"
#include "platform/sql/translator/writer_postgresql.h"

namespace kaunter::sql {
namespace {

constexpr int kBitDigits = 1;
constexpr int kTinyintDigits = 3;
constexpr int kIntDigits = 10;

bool NeedsCheck(const Type& type) {
  if (type.kind == TypeKind::kText) return type.width > 0;
  return type.kind == TypeKind::kInteger && type.precision <= kTinyintDigits;
}

}  // namespace

void PostgresWriter::WriteType(const Type& type) {
  switch (type.kind) {
    case TypeKind::kText:
      out_ += "bpchar COLLATE \"KAUNTER1\"";
      return;
    case TypeKind::kInteger:
      out_ += type.precision > kIntDigits    ? "bigint"
              : type.precision == kIntDigits ? "integer"
                                             : "smallint";
      return;
    case TypeKind::kDecimal:
      out_ += fmt::format("numeric({}, {})", type.precision, type.scale);
      return;
    case TypeKind::kDouble:
      out_ += "float8";
      return;
    case TypeKind::kDate:
      out_ += "date";
      return;
    case TypeKind::kDateTime:
      out_ += "timestamp(0)";
      return;
    default:
      out_ += "bytea";
      return;
  }
}

void PostgresWriter::WriteCheckName(const Type& type, std::string_view column) {
  Name(fmt::format("{}:{}", type.kind == TypeKind::kText ? type.width : type.precision, column));
}

void PostgresWriter::WriteCheck(const Type& type, std::string_view column) {
  out_ += "CONSTRAINT ";
  WriteCheckName(type, column);
  out_ += type.kind == TypeKind::kText ? " CHECK (char_length(" : " CHECK ((";
  Name(column);
  if (type.kind == TypeKind::kText) {
    out_ += fmt::format(") <= {})", type.width);
  } else {
    out_ += type.precision == kBitDigits ? ") BETWEEN 0 AND 1)" : ") BETWEEN 0 AND 255)";
  }
}

void PostgresWriter::WriteDefault(const ColumnDefinition& column) {
  out_ += " DEFAULT (";
  Value(*column.default_value);
  out_ += ')';
}

void PostgresWriter::WriteColumn(const ColumnDefinition& column, bool key) {
  Name(column.name);
  out_ += ' ';
  if (column.computed != nullptr) {
    Type type = ParseType(DeclaredAs(column.computed->type));
    WriteType(type);
    out_ += " GENERATED ALWAYS AS (";
    bare_columns_ = true;
    Value(*column.computed);
    bare_columns_ = false;
    out_ += ") STORED";
    return;
  }
  WriteType(column.type);
  if (column.identity) out_ += " GENERATED ALWAYS AS IDENTITY";
  if (column.not_null || key || column.identity) out_ += " NOT NULL";
  if (column.unique) out_ += " UNIQUE";
  if (column.default_value != nullptr && defaults_) WriteDefault(column);
  if (NeedsCheck(column.type)) {
    out_ += ' ';
    WriteCheck(column.type, column.name);
  }
}

void PostgresWriter::WriteKey(const KeyConstraint& key, const ColumnDefinition*) {
  out_ += key.primary ? ", PRIMARY KEY" : ", UNIQUE";
  WriteNames(key.columns);
}

const CatalogueColumn* PostgresWriter::TargetColumn(std::string_view name) const {
  const auto& columns = statement_.target->columns;
  const auto found =
      std::find_if(columns.begin(), columns.end(),
                   [&](const CatalogueColumn& column) { return SameName(column.name, name); });
  return found == columns.end() ? nullptr : &*found;
}

// In the order that statements ask for, Null first.
void PostgresWriter::IndexDirection(const IndexColumn& column) {
  const CatalogueColumn* known = TargetColumn(column.name);
  if (column.descending) out_ += " DESC";
  if (known != nullptr && !known->nullable) return;
  out_ += column.descending ? " NULLS LAST" : " NULLS FIRST";
}

std::vector<Translated> PostgresWriter::WriteAlterAdd() {
  std::vector<Translated> statements;
  const auto begin = [&] {
    out_ = "ALTER TABLE ";
    Name(statement_.target->name);
  };
  begin();
  const char* separator = " ADD COLUMN ";
  for (const ColumnDefinition& column : statement_.definitions) {
    out_ += separator;
    separator = ", ADD COLUMN ";
    // The server leaves the rows that are there at null unless it is told WITH VALUES.
    defaults_ = column.not_null || column.with_values;
    WriteColumn(column, false);
  }
  for (const KeyConstraint& key : statement_.keys) {
    out_ += statement_.definitions.empty() && &key == &statement_.keys.front() ? " ADD " : ", ADD ";
    out_ += key.primary ? "PRIMARY KEY" : "UNIQUE";
    WriteNames(key.columns);
  }
  statements.push_back(Take());
  for (const ColumnDefinition& column : statement_.definitions) {
    if (column.default_value == nullptr || column.not_null || column.with_values) continue;
    begin();
    out_ += " ALTER COLUMN ";
    Name(column.name);
    out_ += " SET";
    WriteDefault(column);
    statements.push_back(Take());
  }
  return statements;
}

std::vector<Translated> PostgresWriter::WriteDropColumns() {
  out_ = "ALTER TABLE ";
  Name(statement_.target->name);
  const char* separator = " DROP COLUMN ";
  for (const ColumnDefinition& column : statement_.definitions) {
    out_ += separator;
    separator = ", DROP COLUMN ";
    Name(column.name);
  }
  return {Take()};
}

std::vector<Translated> PostgresWriter::WriteAlterColumn() {
  const ColumnDefinition& column = statement_.definitions.front();
  const CatalogueTable& table = *statement_.target;
  const CatalogueColumn& known = *TargetColumn(column.name);
  for (const std::string& key : table.primary_key) {
    if (!SameName(key, known.name)) continue;
    Fail(
        5074,
        fmt::format("The primary key of '{}' is dependent on column '{}'.", table.name, known.name),
        statement_.text, column.place);
  }
  out_ = "ALTER TABLE ";
  Name(table.name);
  if (NeedsCheck(known.type)) {
    out_ += " DROP CONSTRAINT IF EXISTS ";
    WriteCheckName(known.type, known.name);
    out_ += ',';
  }
  out_ += " ALTER COLUMN ";
  Name(known.name);
  out_ += " TYPE ";
  WriteType(column.type);
  if (known.type.kind != column.type.kind) {
    out_ += " USING ";
    WriteConversion(known, column.type);
  }
  if (column.not_null || !known.nullable) {
    out_ += ", ALTER COLUMN ";
    Name(known.name);
    out_ += column.not_null ? " SET NOT NULL" : " DROP NOT NULL";
  }
  if (NeedsCheck(column.type)) {
    out_ += ", ADD ";
    WriteCheck(column.type, known.name);
  }
  return {Take()};
}

void PostgresWriter::WriteConversion(const CatalogueColumn& column, const Type& target) {
  const bool text = column.type.kind == TypeKind::kText;
  switch (target.kind) {
    case TypeKind::kText:
      out_ += column.type.kind == TypeKind::kDateTime ? "k_convert(" : "(";
      Name(column.name);
      out_ += column.type.kind == TypeKind::kDateTime ? ", 0)" : ")::text::bpchar";
      return;
    case TypeKind::kDecimal:
      out_ += text ? "k_to_dec(" : "(";
      Name(column.name);
      out_ += text ? fmt::format(", {})", target.scale) : ")::numeric";
      return;
    case TypeKind::kInteger:
      out_ += "k_to_int(";
      break;
    case TypeKind::kDouble:
      out_ += text ? "k_to_float(" : "(";
      break;
    case TypeKind::kDate:
      out_ += "k_to_date(";
      break;
    default:
      out_ += "k_to_datetime(";
      break;
  }
  Name(column.name);
  out_ += ')';
}

}  // namespace kaunter::sql
