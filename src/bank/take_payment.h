// One line of the payment reader becomes a payment: the record of the line and the payment are
// stored in one transaction, or neither is.
#pragma once

#include <string>

#include "bank/reader_row.h"
#include "core/session.h"
#include "screen/desk.h"

namespace kaunter {

enum class TakeOutcome {
  paid,
  already,  // on another desktop, or before: nothing was stored now
  failed,
};

// The day on which the line pays; the reason when the office takes no payment on its date. With the
// setting AutoChangePayDate a Sunday or a holiday gives way to the next day that is none. Throws
// SqlError.
struct ReaderDay {
  DateTime day;
  std::optional<Caption> refusal;
};
ReaderDay PayDayOf(Session& session, Desk& desk, const ReaderRow& row);

// Stores the payment and puts what became of it into the row and into PaymentReader. A failure is
// logged. The loan is not rebuilt. Never throws.
TakeOutcome TakePayment(Session& session, Desk& desk, ReaderRow& row);

}  // namespace kaunter
