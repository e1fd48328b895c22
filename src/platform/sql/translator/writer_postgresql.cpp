#include "platform/sql/translator/writer_postgresql.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "platform/sql/text.h"
#include "platform/sql/translator/functions.h"

namespace kaunter::sql {
namespace {

constexpr std::string_view kCollate = " COLLATE \"KAUNTER1\"";

// A column that never holds Null in its table: both orders of Nulls are then the same, and the
// plain one is that of the key's index.
bool NeverNull(const Expr* key) {
  if (key == nullptr || !key->base_column || key->source == nullptr ||
      key->source->table == nullptr) {
    return false;
  }
  const auto& columns = key->source->table->columns;
  return std::any_of(columns.begin(), columns.end(), [&](const CatalogueColumn& column) {
    return SameName(column.name, key->text) && !column.nullable;
  });
}

}  // namespace

void PostgresWriter::Mark(std::size_t number, const Parameter& parameter) {
  fmt::format_to(std::back_inserter(out_), "${}", number);
  if (parameter.conversion == Conversion::kAsText) out_ += kCollate;
}

void PostgresWriter::Constant(const Expr& expr) {
  if (expr.literal_kind == TokenKind::kBinary) {
    const std::string_view digits = expr.text.substr(2);
    out_ += "'\\x";
    if (digits.size() % 2 != 0) out_ += '0';
    out_ += digits;
    out_ += "'::bytea";
    return;
  }
  if (expr.literal_kind != TokenKind::kText) {
    out_ += expr.text;
    return;
  }
  // The quotes of a text are still doubled.
  out_ += '\'';
  out_ += expr.text;
  out_ += '\'';
  // A default takes the type of its column.
  if (constants_ && !bare_columns_) return;
  out_ += "::bpchar";
  out_ += kCollate;
}

void PostgresWriter::WriteSystemTable(const TableRef& table) {
  out_ += SameName(table.name, "tables") ? "kaunter_sql.\"TABLES\"" : "kaunter_sql.\"COLUMNS\"";
}

std::vector<Translated> PostgresWriter::WriteTruncate() {
  out_ = "TRUNCATE ";
  Name(statement_.target->name);
  out_ += " RESTART IDENTITY";
  std::vector<Translated> statements;
  statements.push_back(Take());
  return statements;
}

// On the server Null is the least of all values.
void PostgresWriter::OrderDirection(const Expr* key, bool, bool descending) {
  if (descending) out_ += " DESC";
  const bool never = NeverNull(key) && std::ranges::find(filled_, key->source) == filled_.end();
  if (!never) out_ += descending ? " NULLS LAST" : " NULLS FIRST";
}

// SQL Server keeps the rows of a table in the order of its primary key, and statements that name no
// order (or take the TOP of none) show that one, as do rows that are equal in the order that is
// named. Here a row moves with each change of it.
void PostgresWriter::OwnOrder(const Select& select) {
  const SelectCore& core = select.cores.front();
  const bool whole =
      statement_.kind == StatementKind::kSelect && &select == statement_.select.get();
  if (!whole && core.top == nullptr) return;
  if (select.cores.size() > 1 || core.nested != nullptr || core.aggregated || core.distinct ||
      core.sources.empty()) {
    return;
  }
  const Source& first = *core.sources.front();
  if (first.table == nullptr || first.system) return;
  const char* separator = select.order_by.empty() ? " ORDER BY " : ", ";
  for (const std::string& key : first.table->primary_key) {
    out_ += separator;
    separator = ", ";
    Name(first.alias);
    out_ += '.';
    Name(key);
  }
}

void PostgresWriter::CloseRound(int scale, int) {
  fmt::format_to(std::back_inserter(out_), ")::numeric, {})", scale);
}

void PostgresWriter::DivideBy(const Expr& divisor, bool) {
  out_ += " / ";
  Value(divisor);
}

void PostgresWriter::Modulo(const Expr& expr) {
  const bool number = expr.type.kind == TypeKind::kDouble;  // it knows no remainder
  out_ += number ? "((" : "(";
  Value(*expr.args[0]);
  out_ += number ? ")::numeric % (" : " % ";
  Value(*expr.args[1]);
  out_ += number ? ")::numeric)" : ")";
}

void PostgresWriter::Concatenation(const Expr& expr) { Call("k_concat", expr); }

void PostgresWriter::Like(const Expr& expr) {
  if (expr.negated) out_ += "NOT ";
  Call("k_like", expr);
}

void PostgresWriter::FunctionCall(const Expr& expr) {
  switch (expr.function) {
    case Function::kConcat:
      Call("concat", expr);
      out_ += "::bpchar";
      out_ += kCollate;
      return;
    case Function::kDateAdd:
    case Function::kEoMonth:
      Writer::FunctionCall(expr);
      if (expr.type.kind == TypeKind::kDate) out_ += "::date";
      return;
    default:
      return Writer::FunctionCall(expr);
  }
}

// Functions take one type of integer: which of several of one name is meant must be certain.
void PostgresWriter::Argument(const Expr& expr) {
  if (expr.type.kind != TypeKind::kInteger) return Value(expr);
  out_ += '(';
  Value(expr);
  out_ += ")::bigint";
}

void PostgresWriter::OpenSum(const Expr& expr) {
  const bool average = expr.text == "avg";
  if (IsDecimal(expr)) out_ += average ? "trunc(" : "round(";
  if (expr.type.kind == TypeKind::kInteger) out_ += average ? "trunc(" : "(";
}

void PostgresWriter::SumCall(const Expr& expr) {
  fmt::format_to(std::back_inserter(out_), "{}({}", expr.text, expr.distinct ? "DISTINCT " : "");
  Operand(*expr.args[0]);
  out_ += ')';
}

void PostgresWriter::CloseSum(const Expr& expr) {
  if (IsDecimal(expr)) fmt::format_to(std::back_inserter(out_), ", {})", expr.type.scale);
  if (expr.type.kind == TypeKind::kInteger) out_ += ")::bigint";
}

void PostgresWriter::TextOf(const Expr& value) {
  switch (value.type.kind) {
    case TypeKind::kInteger:
      out_ += '(';
      Value(value);
      out_ += ")::bigint::text::bpchar";
      return;
    case TypeKind::kDecimal:
      OpenRound();
      Operand(value);
      CloseRound(value.type.scale, 0);
      out_ += "::text::bpchar";
      return;
    case TypeKind::kDouble:
    case TypeKind::kDate:
      out_ += "k_text(";
      Value(value);
      out_ += ')';
      return;
    case TypeKind::kDateTime:
      out_ += "k_convert(";
      Value(value);
      out_ += ", 0)";
      return;
    default:
      Value(value);
      return;
  }
}

void PostgresWriter::ToDouble(const Expr& value) {
  out_ += '(';
  Value(value);
  out_ += ")::float8";
}

// More than one row is an error of its own here.
void PostgresWriter::Subquery(const Expr& expr) {
  out_ += '(';
  WriteSelect(*expr.select, nullptr, false);
  out_ += ')';
}

}  // namespace kaunter::sql
