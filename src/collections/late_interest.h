// Late interest: the charge of one day on one overdue row, and the charges that an earlier payment
// date makes obsolete.
#pragma once

#include <string>
#include <string_view>

#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

// Balance x (percent a year / 100) / 365, in double, half to even. 0 for a rate or a balance that
// is not above 0.
Money DayCharge(Money balance_due, double percent_a_year);

// The "Batch" charges of a loan for days after `pay_date` up to `next_due_date` (dd-mm-yyyy), still
// above 0: what a payment on that date waives. A condition to stand behind WHERE.
std::string ObsoleteCharges(std::string_view loan_id, std::string_view pay_date,
                            std::string_view next_due_date);

}  // namespace kaunter
