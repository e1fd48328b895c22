// The rebuild of a loan from its stored payments, and of a customer from his loans.
//
// A payment is only stored; nothing but the rebuild applies it. RebuildLoan wipes the paid columns
// of the loan's schedule and replays every payment in the order of the text PayID: the paid
// columns, the running balances, the split of each payment into interest and capital, the negative
// charge rows of late interest paid, and the loan's totals. The outcome depends on the stored rows
// alone, so it may be run at any time and any number of times.
#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "platform/sql/connection.h"
#include "screen/caption.h"

namespace kaunter {

// What a rebuild came to. A failure never reaches the caller as an exception: he has stored his
// payment and goes on.
struct Rebuilt {
  bool done = false;         // false: no such loan, or a failure
  Caption title;             // of the message of a failure
  Caption failure;           // empty: nothing to tell
  std::exception_ptr error;  // what failed, for the log
};

// Opens no transaction: each statement stands by itself unless the caller's is open. After a
// failure the loan is left part way; running it again repairs that.
//
// The balance of a closed loan goes to CloseBal and its LoanBal stays 0.
Rebuilt RebuildLoan(Connection& main, std::string_view loan_id);

// TotLoan, TotTopUpAmt and TotLoanBal of the customer are the sums over his loans, of any status.
// In a transaction of its own, so no other may be open.
Rebuilt RebuildCustomer(Connection& main, std::string_view cust_id);
// The same inside the caller's transaction. Throws SqlError.
void SumLoansOfCustomer(Connection& main, std::string_view cust_id);

}  // namespace kaunter
