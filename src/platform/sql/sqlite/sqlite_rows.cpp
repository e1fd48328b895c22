#include "platform/sql/sqlite/sqlite_rows.h"

#include <cmath>

#include "platform/sql/decimal.h"
#include "platform/sql/sqlite/sqlite_statement.h"

namespace kaunter::sql {
namespace {

constexpr int kMoneyScale = 4;

FieldType FieldTypeOf(const Type& type) {
  switch (type.kind) {
    case TypeKind::kInteger:
      return FieldType::kInteger;
    case TypeKind::kDecimal:
      // Money holds four decimals; a finer column (rare) comes as a double.
      return type.scale <= kMoneyScale ? FieldType::kMoney : FieldType::kDouble;
    case TypeKind::kDouble:
      return FieldType::kDouble;
    case TypeKind::kDate:
    case TypeKind::kDateTime:
      return FieldType::kDate;
    default:
      return FieldType::kText;
  }
}

// `held` is how SQLite keeps the field.
Value MoneyField(sqlite3_stmt* statement, int i, int held, int scale) {
  if (held == SQLITE_INTEGER) {
    return Money::FromInteger(sqlite3_column_int64(statement, i));
  }
  std::int64_t units = 0;
  if (held == SQLITE_FLOAT && ScaleDouble(sqlite3_column_double(statement, i), scale, &units)) {
    std::int64_t fine = 0;
    if (!__builtin_mul_overflow(units, PowerOfTen(kMoneyScale - scale), &fine)) {
      return Money::FromTenThousandths(fine);
    }
  }
  return ColumnText(statement, i);
}

Value IntegerField(sqlite3_stmt* statement, int i) {
  if (sqlite3_column_type(statement, i) == SQLITE_INTEGER)
    return static_cast<std::int64_t>(sqlite3_column_int64(statement, i));
  const double number = sqlite3_column_double(statement, i);
  if (sqlite3_column_type(statement, i) == SQLITE_FLOAT && std::fabs(number) < 9e18) {
    return static_cast<std::int64_t>(number);
  }
  return ColumnText(statement, i);
}

Value DateField(sqlite3_stmt* statement, int i) {
  std::string text = ColumnText(statement, i);
  if (const auto date = DateTime::FromCanonical(text)) return *date;
  return text;
}

// For an expression whose type the binder does not know.
Value HeldField(sqlite3_stmt* statement, int i) {
  switch (sqlite3_column_type(statement, i)) {
    case SQLITE_INTEGER:
      return static_cast<std::int64_t>(sqlite3_column_int64(statement, i));
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement, i);
    default:
      return ColumnText(statement, i);
  }
}

}  // namespace

std::vector<Column> ColumnsOf(sqlite3_stmt* statement, const std::vector<ResultColumn>& declared) {
  const auto count = static_cast<std::size_t>(sqlite3_column_count(statement));
  std::vector<Column> columns(count);
  for (std::size_t i = 0; i < count; ++i) {
    if (i >= declared.size()) {
      columns[i].name = sqlite3_column_name(statement, static_cast<int>(i));
      continue;
    }
    const Type& type = declared[i].type;
    columns[i].name = declared[i].name;
    columns[i].type = FieldTypeOf(type);
    if (type.kind == TypeKind::kText) columns[i].width = type.width;
    if (type.kind == TypeKind::kDecimal) columns[i].scale = type.scale;
  }
  return columns;
}

std::vector<Value> RowOf(sqlite3_stmt* statement, const std::vector<Column>& columns,
                         const std::vector<ResultColumn>& declared) {
  std::vector<Value> row;
  row.reserve(columns.size());
  for (std::size_t position = 0; position < columns.size(); ++position) {
    const int i = static_cast<int>(position);
    const int held = sqlite3_column_type(statement, i);
    if (held == SQLITE_NULL) {
      row.emplace_back();
      continue;
    }
    const Column& column = columns[position];
    switch (column.type) {
      case FieldType::kMoney:
        row.push_back(MoneyField(statement, i, held, column.scale));
        break;
      case FieldType::kInteger:
        row.push_back(IntegerField(statement, i));
        break;
      case FieldType::kDouble:
        row.emplace_back(sqlite3_column_double(statement, i));
        break;
      case FieldType::kDate:
        row.push_back(DateField(statement, i));
        break;
      case FieldType::kText:
        if (position < declared.size() && declared[position].type.kind == TypeKind::kText) {
          row.emplace_back(ColumnText(statement, i));
        } else {
          row.push_back(HeldField(statement, i));
        }
    }
  }
  return row;
}

}  // namespace kaunter::sql
