#include "platform/sql/translator/writer_sqlite.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "platform/sql/text.h"
#include "platform/sql/translator/functions.h"

namespace kaunter::sql {
namespace {

// Holds no more than whole sen.
bool IsSen(const Expr& expr) {
  return expr.type.kind == TypeKind::kInteger || (IsDecimal(expr) && expr.type.scale <= 2);
}

// A sum or difference of such, or of sums of them. A product has more places before it is rounded.
bool IsSenSum(const Expr& expr) {
  if (expr.kind != ExprKind::kBinary || !IsDecimal(expr) || !IsSen(expr)) return false;
  if (expr.op != Op::kAdd && expr.op != Op::kSubtract) return false;
  return std::all_of(expr.args.begin(), expr.args.end(), [](const ExprPtr& arg) {
    return IsSen(*arg) && (arg->kind != ExprKind::kBinary || IsSenSum(*arg));
  });
}

bool UsesOneOf(const Expr& expr, const std::vector<const Source*>& sources) {
  if (expr.kind == ExprKind::kColumn) {
    return std::find(sources.begin(), sources.end(), expr.source) != sources.end();
  }
  return std::any_of(expr.args.begin(), expr.args.end(),
                     [&](const ExprPtr& argument) { return UsesOneOf(*argument, sources); });
}

}  // namespace

void SqliteWriter::Mark(std::size_t number, const Parameter&) {
  fmt::format_to(std::back_inserter(out_), "?{}", number);
}

void SqliteWriter::Constant(const Expr& expr) {
  if (expr.literal_kind == TokenKind::kBinary) {
    std::string_view digits = expr.text.substr(2);
    out_ += "X'";
    if (digits.size() % 2 != 0) out_ += '0';
    out_ += digits;
    out_ += '\'';
  } else if (expr.literal_kind == TokenKind::kText) {
    // The quotes of a text are still doubled.
    out_ += '\'';
    out_ += expr.text;
    out_ += '\'';
  } else {
    out_ += expr.text;
  }
}

void SqliteWriter::WriteSystemTable(const TableRef& table) {
  if (SameName(table.name, "tables")) {
    out_ +=
        "(SELECT 'main' AS TABLE_CATALOG, 'dbo' AS TABLE_SCHEMA, name AS TABLE_NAME, CASE type "
        "WHEN 'view' THEN 'VIEW' ELSE 'BASE TABLE' END AS TABLE_TYPE FROM sqlite_master WHERE type "
        "IN ('table', 'view') AND name NOT LIKE 'sqlite[_]%')";
    return;
  }
  out_ +=
      "(SELECT 'main' AS TABLE_CATALOG, 'dbo' AS TABLE_SCHEMA, m.name AS TABLE_NAME, c.name AS "
      "COLUMN_NAME, c.dflt_value AS COLUMN_DEFAULT, CASE WHEN c.\"notnull\" THEN 'NO' ELSE 'YES' "
      "END AS IS_NULLABLE, lower(CASE WHEN instr(c.type, '(') > 0 THEN substr(c.type, 1, "
      "instr(c.type, '(') - 1) ELSE c.type END) AS DATA_TYPE, c.cid + 1 AS ORDINAL_POSITION FROM "
      "sqlite_master AS m, pragma_table_xinfo(m.name) AS c WHERE m.type = 'table' AND m.name NOT "
      "LIKE 'sqlite[_]%')";
}

std::vector<Translated> SqliteWriter::WriteTruncate() {
  std::vector<Translated> statements;
  out_ = "DELETE FROM ";
  Name(statement_.target->name);
  statements.push_back(Take());
  const auto& columns = statement_.target->columns;
  if (std::any_of(columns.begin(), columns.end(),
                  [](const CatalogueColumn& column) { return column.identity; })) {
    out_ = "DELETE FROM sqlite_sequence WHERE name = ";
    Text(statement_.target->name);
    statements.push_back(Take());
  }
  return statements;
}

void SqliteWriter::Collated(const Expr& expr, bool collate) {
  Value(expr);
  if (!collate) return;
  out_ += " COLLATE ";
  out_ += kCollation;
}

void SqliteWriter::OrderDirection(const Expr* key, bool text_position, bool descending) {
  const bool plain = key != nullptr && key->base_column;
  if (text_position && !plain) {
    out_ += " COLLATE ";
    out_ += kCollation;
  }
  if (descending) out_ += " DESC";
}

// "What is open is above 0" decides over every row of a large table, and a call of k_round a row
// costs more than the rest of the search. Both sides are whole sen but for the binary residue of
// the sum, which lies far below half a sen: half a sen parts equal from unequal.
bool SqliteWriter::SumComparison(const Expr& expr) {
  const Expr& left = *expr.args[0];
  const Expr& right = *expr.args[1];
  if (!(IsSenSum(left) && IsSen(right)) && !(IsSenSum(right) && IsSen(left))) return false;
  Operand(left);
  out_ += " - ";
  Operand(right);
  switch (expr.op) {
    case Op::kGreater:
      out_ += " > 0.005";
      return true;
    case Op::kGreaterEqual:
      out_ += " > -0.005";
      return true;
    case Op::kLess:
      out_ += " < -0.005";
      return true;
    case Op::kLessEqual:
      out_ += " < 0.005";
      return true;
    default:
      out_ += expr.op == Op::kEqual ? " BETWEEN -0.005 AND 0.005" : " NOT BETWEEN -0.005 AND 0.005";
      return true;
  }
}

void SqliteWriter::OpenRound() { out_ += "k_round("; }

void SqliteWriter::CloseRound(int scale, int from) {
  if (from > scale) {
    fmt::format_to(std::back_inserter(out_), ", {}, {})", scale, from);
  } else {
    fmt::format_to(std::back_inserter(out_), ", {})", scale);
  }
}

// Decimals without a fraction are stored as integers, and SQLite would divide them so.
void SqliteWriter::DivideBy(const Expr& divisor, bool integer) {
  out_ += integer ? " / k_divisor(" : " * 1.0 / k_divisor(";
  Value(divisor);
  out_ += ')';
}

void SqliteWriter::Modulo(const Expr& expr) {
  const bool integer = expr.type.kind == TypeKind::kInteger;
  out_ += integer ? "(" : "k_mod(";
  Value(*expr.args[0]);
  out_ += integer ? " % k_divisor(" : ", ";
  Value(*expr.args[1]);
  out_ += integer ? "))" : ")";
}

void SqliteWriter::Concatenation(const Expr& expr) {
  out_ += '(';
  Value(*expr.args[0]);
  out_ += " || ";
  Value(*expr.args[1]);
  out_ += ')';
}

void SqliteWriter::Like(const Expr& expr) {
  Value(*expr.args[0]);
  Negated(expr);
  out_ += " LIKE ";
  Value(*expr.args[1]);
  if (expr.args.size() > 2) {
    out_ += " ESCAPE ";
    Value(*expr.args[2]);
  }
}

// What SQLite has itself.
void SqliteWriter::FunctionCall(const Expr& expr) {
  switch (expr.function) {
    case Function::kChar:
      return Call("char", expr);
    case Function::kConcat:  // takes null for an empty text
      out_ += '(';
      for (std::size_t i = 0; i < expr.args.size(); ++i) {
        out_ += i > 0 ? " || ifnull(" : "ifnull(";
        Value(*expr.args[i]);
        out_ += ", '')";
      }
      out_ += ')';
      return;
    case Function::kIdentity:
      out_ += "last_insert_rowid()";
      return;
    case Function::kLtrim:
      return Call("ltrim", expr);
    case Function::kRowCount:
      out_ += "changes()";
      return;
    case Function::kRtrim:
      return Call("rtrim", expr);
    case Function::kUnicode:
      return Call("unicode", expr);
    default:
      return Writer::FunctionCall(expr);
  }
}

// An aggregate of two arguments takes no DISTINCT: it is rounded from outside.
void SqliteWriter::OpenSum(const Expr& expr) {
  if (IsDecimal(expr) && expr.distinct) OpenRound();
}

void SqliteWriter::SumCall(const Expr& expr) {
  const bool own = IsDecimal(expr);
  const bool integer = expr.type.kind == TypeKind::kInteger;
  const std::string_view name = integer && expr.text == "avg" ? "avg_int" : expr.text;
  fmt::format_to(std::back_inserter(out_), "{}{}({}", own || name != expr.text ? "k_" : "", name,
                 expr.distinct ? "DISTINCT " : "");
  if (expr.distinct) {
    Value(*expr.args[0]);
  } else {
    Operand(*expr.args[0]);
  }
  if (own && !expr.distinct) fmt::format_to(std::back_inserter(out_), ", {}", expr.type.scale);
  out_ += ')';
}

void SqliteWriter::CloseSum(const Expr& expr) {
  if (IsDecimal(expr) && expr.distinct) CloseRound(expr.type.scale, 0);
}

void SqliteWriter::TextOf(const Expr& value) {
  std::string code;
  switch (value.type.kind) {
    case TypeKind::kInteger:
      code = "i";
      break;
    case TypeKind::kDecimal:
      code = fmt::format("d{}", value.type.scale);
      break;
    case TypeKind::kDouble:
      code = "f";
      break;
    case TypeKind::kDate:
      code = "da";
      break;
    case TypeKind::kDateTime:
      code = "dt";
      break;
    default:
      Value(value);
      return;
  }
  out_ += "k_text(";
  Value(value);
  out_ += ", '" + code + "')";
}

void SqliteWriter::ToDouble(const Expr& value) {
  out_ += "(1.0 * ";
  Value(value);
  out_ += ')';
}

// A subquery that stands for one value is error 512 when it has more rows; SQLite would take the
// first in silence.
void SqliteWriter::Subquery(const Expr& expr) {
  const Select& select = *expr.select;
  out_ += '(';
  if (select.single_row) {
    WriteSelect(select, nullptr, false);
  } else {
    const SelectCore& core = select.cores.front();
    const bool simple = select.cores.size() == 1 && core.nested == nullptr && !core.distinct &&
                        core.top == nullptr && !core.aggregated && select.with.empty() &&
                        core.items.size() == 1 && core.items[0].expr != nullptr &&
                        core.items[0].expr->kind != ExprKind::kWindow &&
                        // An aggregate of outer columns only would belong to the outer query.
                        UsesOneOf(*core.items[0].expr, core.sources);
    if (simple) {
      WriteSelect(select, nullptr, false, true);
    } else {
      const std::vector<std::string_view> names = {"k_value"};
      out_ += "SELECT k_one(\"k_value\") FROM (";
      WriteSelect(select, &names, true);
      out_ += ')';
    }
  }
  out_ += ')';
}

}  // namespace kaunter::sql
