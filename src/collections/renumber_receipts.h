// Repair of a company's receipt series: its payments from a date on are numbered anew.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/date_time.h"

namespace kaunter {

class Session;

struct Renumbering {
  std::string comp_code;
  DateTime from;
  std::string last_in_use;  // serial style only: the first payment takes the number behind it
};

// Drops the receipt counters of the company, and no other series of it, and gives each payment from
// the date on the next number of the style in force, by date and by the time it was entered.
// `progress` hears how many of how many are done. Runs inside the caller's transaction.
//
// Throws ReceiptConflict when a payment from before the date bears one of the new numbers (a series
// that starts in the middle of a month, or below a number in use); SqlError.
void RenumberReceipts(Session& session, const Renumbering& plan,
                      const std::function<void(int done, int count)>& progress);

}  // namespace kaunter
