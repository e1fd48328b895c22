// A payment of one amount towards a loan and nothing else, as it is taken in a batch: the whole of
// it goes to the instalments, late interest stays outstanding.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "collections/payment_store.h"
#include "platform/money.h"
#include "platform/sql/connection.h"
#include "screen/caption.h"

namespace kaunter {

// Why the counter takes no money for a loan on a day (dd-mm-yyyy), whatever the amount: it is not
// active, not drawn, younger than the day. `loan` has LoanID, LoanStatus and PayOutAmt.
std::optional<Caption> WhyNoPayment(Connection& main, const Recordset& loan,
                                    std::string_view pay_date);

// The payment ready for CreatePayment, or why the loan cannot take it: the loan is gone, not
// active, not drawn; the date (dd-mm-yyyy) lies before the loan's; the amount is above the balance
// of a personal loan, or above what is open on the schedule of a flexi loan. The first open row
// stands in it as it is now. Throws SqlError.
std::variant<Payment, Caption> PlainPayment(Connection& main, std::string_view loan_id,
                                            std::string_view pay_date, Money amount);

}  // namespace kaunter
