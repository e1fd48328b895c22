// Whether a loan may be dunned, and by which letter.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

class Connection;

// The first reminder asks for payment within so many days.
constexpr int kDaysToPay = 14;

struct ReminderState {
  bool overdue = false;      // a loan with a balance has an open row that was due before today
  std::string first_letter;  // dd-mm-yyyy: of a first reminder that dunned for a row still open
  std::string given_until;   // dd-mm-yyyy: the first reminder's time, when it is not over
};

// Throws SqlError.
ReminderState ReadReminderState(Connection& main, std::string_view loan_id);

}  // namespace kaunter
