#include "platform/sql/sqlite/sqlite_literal.h"

#include <fmt/format.h>

#include "platform/sql/decimal.h"
#include "platform/sql/translator/literal.h"

namespace kaunter::sql {
namespace {

int Bind(sqlite3_stmt* statement, int index, const LiteralValue& value) {
  switch (value.kind) {
    case LiteralValue::Kind::kInteger:
      return sqlite3_bind_int64(statement, index, value.integer);
    case LiteralValue::Kind::kDecimal: {
      const std::int64_t power = PowerOfTen(value.scale);
      if (value.integer % power == 0) {
        return sqlite3_bind_int64(statement, index, value.integer / power);
      }
      return sqlite3_bind_double(statement, index, Unscale(value.integer, value.scale));
    }
    case LiteralValue::Kind::kDouble:
      return sqlite3_bind_double(statement, index, value.number);
    case LiteralValue::Kind::kText:
    case LiteralValue::Kind::kDate:
      break;
  }
  return sqlite3_bind_text64(statement, index, value.text.data(), value.text.size(),
                             value.made.empty() ? SQLITE_STATIC : SQLITE_TRANSIENT, SQLITE_UTF8);
}

}  // namespace

void BindLiteral(sqlite3_stmt* statement, int index, std::string_view literal,
                 const Parameter& parameter) {
  LiteralValue value;
  ConvertLiteral(literal, parameter, &value);
  const int code = Bind(statement, index, value);
  if (code != SQLITE_OK) {
    throw SqlError(50000, fmt::format("A literal cannot be bound: {}.", sqlite3_errstr(code)));
  }
}

}  // namespace kaunter::sql
