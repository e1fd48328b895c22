// What a payment that is deleted takes back from its loan, row, customer and salesman.
//
// The rebuild that follows works the loan's totals, the paid columns and PayableAmt out anew. What
// survives is the change to IntChargeAmt, DragInt, DragIntPaid and IntAmt of the payment's row, the
// commission, and the removal of top-up rows. All runs inside the caller's transaction; a loan,
// row, customer or salesman who is not there is passed over.
#pragma once

#include "platform/sql/connection.h"

namespace kaunter {

struct Payment;

// Throws SqlError.
void TakeBackCommission(Connection& main, const Payment& stored);

// Loan, schedule row, top-up rows, customer and commission. DeletePayment takes the commission back
// itself before: it comes off twice, which is wanted. Throws SqlError.
void ReversePayment(Connection& main, const Payment& stored);

}  // namespace kaunter
