// What stands in a cell of somebody's spreadsheet, read as a day, an amount or a text; or why it is
// none.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/date_time.h"
#include "platform/money.h"
#include "screen/caption.h"

namespace kaunter {

enum class DayOrder { day_month_year, month_day_year, year_month_day };

// "dd-mm-yyyy", as mapping files and lists name it.
std::string_view DayOrderName(DayOrder order);
std::optional<DayOrder> DayOrderNamed(std::string_view name);

// Without blanks at its ends; the blank that does not break is a blank, and so is what no text
// holds.
std::string TidyCell(std::string_view cell);

// A day in the order given, with any signs between its parts or none, a month by its name (English
// or Malay), years of two digits, the number that spreadsheets keep for a day; a time behind it is
// left out. A year of four digits in front is always year, month, day. `cell` is tidy and not
// empty.
std::variant<DateTime, Caption> ReadDay(std::string_view cell, DayOrder order);

// An amount with `decimal` ('.' or ',') before its sen: thousands parted in groups of three by the
// other sign or by blanks, RM before or behind, minus before or behind, or brackets for less than
// nothing. No more than `decimals` places. `cell` is tidy and not empty.
std::variant<Money, Caption> ReadAmount(std::string_view cell, char decimal, int decimals);

}  // namespace kaunter
