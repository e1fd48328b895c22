// From a database value to the text of a box. Null has its own answer in each; a text that is no
// number, or no date, is shown as it stands.
#pragma once

#include <string>
#include <string_view>

#include "platform/sql/value.h"

namespace kaunter {

std::string NullToEmpty(const Value& value);
// dd-mm-yyyy; "" for Null and for every year below 2000, which is how an unset date hides.
std::string ShowDate(const Value& value);
// As ShowDate, but hides 1900 alone: for dates of birth and of employment.
std::string ShowBirthDate(const Value& value);
std::string ShowDateTime(const Value& value);  // dd-mm-yyyy hh:nn:ss, whatever the year
std::string ShowMoney(const Value& value);     // #,##0.00; Null and "" give "0.00"
std::string Show2dp(const Value& value);       // 0.00; Null gives ""
std::string Show4dp(const Value& value);       // #,##0.0000; Null gives ""
std::string ShowInt(const Value& value);       // 0; Null and "" give "0"
// A date of the calendar written dd-mm-yyyy, and nothing else.
bool IsDate(std::string_view display_text);

}  // namespace kaunter
