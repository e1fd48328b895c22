// Which days a payment may take.
#pragma once

#include <string>
#include <string_view>

#include "core/session.h"
#include "screen/desk.h"

namespace kaunter {

// True when the payment must not take this date (dd-mm-yyyy): a Sunday, or a day of HolidayMast,
// while the setting CheckHoliday is "1". With `ask` the person decides, and No gives true; without
// it the day is refused, with a word when `warn`. A Sunday that is a holiday is told as Sunday. A
// text that is no date gives false. Throws SqlError.
bool IsHolidayBlocked(Session& session, Desk& desk, std::string_view date, bool ask, bool warn);

// The date lies before the loan's TrxDate. False for a text that is no date. Throws SqlError.
bool IsBeforeLoanDate(Connection& main, std::string_view date, std::string_view loan_id);

// For a new payment (blank pay_id): warns when the loan has a payment in the month of the date or
// any later one, and gives true. Throws SqlError.
bool WarnPaidThisMonth(Session& session, Desk& desk, std::string_view pay_id,
                       std::string_view loan_id, std::string_view date);

}  // namespace kaunter
