// Amounts as the columns of the database keep them: whole sen, by the shown form of an amount, ties
// away from zero. What holds nothing, and a blank, is 0; a text that is no number throws
// std::invalid_argument.
#pragma once

#include <string_view>

#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

class TextBox;

Money Sen(const Value& value);
Money Sen(const Recordset& row, std::string_view column);  // of the current row
Money Sen(const TextBox& box);
// The same, but to the ten-thousandth, as it was typed.
Money Amount(const TextBox& box);

}  // namespace kaunter
