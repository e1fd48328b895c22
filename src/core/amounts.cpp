#include "core/amounts.h"

#include "core/shown.h"
#include "core/sql_literals.h"
#include "screen/control.h"

namespace kaunter {

Money Sen(const Value& value) { return Money::FromText(ShowMoney(value)); }

Money Sen(const Recordset& row, std::string_view column) { return Sen(row.Field(column)); }

Money Sen(const TextBox& box) { return Sen(Value(box.text())); }

Money Amount(const TextBox& box) { return Money::FromText(StripCommaOrZero(box.text())); }

}  // namespace kaunter
