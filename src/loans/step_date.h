// The repayment codes and the step from one instalment date to the next.
//
// Codes are compared as exact text: MONTH, WEEK, DAILY; anything else is a number of days before
// four more characters (14DAYS).
#pragma once

#include <string_view>

#include "platform/date_time.h"

namespace kaunter {

// The instalment date after `date`, or before it. MONTH keeps the day and clamps it to the length
// of the target month by the true calendar. Throws std::invalid_argument for a code without a
// number of days from 1, std::out_of_range past the calendar's end.
DateTime StepDate(std::string_view code, const DateTime& date, bool backwards);

// The n of <n>DAYS. Throws std::invalid_argument when it is no whole number from 1.
int DaysOfCode(std::string_view code);

// True for a code that StepDate takes.
bool IsRepaymentCode(std::string_view code);

}  // namespace kaunter
