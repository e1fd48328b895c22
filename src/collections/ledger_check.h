// The check of the ledger: replays the payments of each loan in memory, with the arithmetic of the
// rebuild, and compares with what is stored. Nothing is written.
//
// What it asks of a loan:
// - in each row Payment is CapitalPayment + InterestPayment and at most PayableAmt, and no capital
//   is paid before the row's interest;
// - TotPay is the sum of InstalAmt, LoanBal the NewLoanBal of the last payment (CloseBal on a
//   closed loan), each payment begins where the one before it ended;
// - TotCollectorAmt and TotInt are the sums of the charges, NextDueDate the first row with
//   something open;
// - rows, payments, "Payment" charges and totals are those that a rebuild would write. Rows are
//   not asked this of a loan without payments, whose schedule is as it was generated, nor of one
//   on which extra capital has cut rows that no derivation brings back: there each rebuild comes to
//   other rows.
// - no more late interest is paid than is charged: no rebuild mends that;
// - a loan with a balance has rows, and their capital is its amount, unless extra capital was paid
//   or the lines were amended by hand.
// And of a customer: TotLoan, TotTopUpAmt and TotLoanBal are the sums over his loans. A loan that
// was never paid may still stand in TotLoanBal with the instalments that its first save added.
// A figure that breaks the rules of its neighbours is told alone, with what a rebuild writes there.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/connection.h"
#include "screen/caption.h"

namespace kaunter {

struct LedgerFault {
  std::string LoanID;  // "" where the customer's own sums do not hold
  std::string CustID;
  bool closed = false;
  bool of_schedule = false;  // no rebuild mends it: the rows are to be made anew from the terms
  Caption what;
  std::string stored;     // as shown
  std::string should_be;  // as shown: what a rebuild writes, where it can be foretold
  Caption mend;           // what mends it, where a rebuild does not

  // Of the same loan, or the same customer.
  bool SameBook(const LedgerFault& other) const {
    return LoanID == other.LoanID && (!LoanID.empty() || CustID == other.CustID);
  }
  bool operator==(const LedgerFault& other) const {
    return SameBook(other) && what.english == other.what.english && stored == other.stored &&
           should_be == other.should_be;
  }
};

struct LedgerProgress {
  int done = 0;
  int total = 0;
};

struct LedgerReport {
  int loans = 0;  // looked at
  bool complete = false;
  std::vector<LedgerFault> faults;
};

// All loans of a company and their customers, a few hundred at a time; `go_on` is asked in between
// and may end it. What does not hold is read again by itself, behind the lock of saves, until it is
// the same a moment later: a payment is stored first and replayed after that, and then its
// customer is. A caller with a transaction open has the books to himself, and they are read once.
// Throws SqlError.
LedgerReport CheckCompany(Connection& main, std::string_view comp_code,
                          const std::function<bool(const LedgerProgress&)>& go_on);

// One loan, held while it is read, or one customer; no faults for one that is not there. Throws
// SqlError.
std::vector<LedgerFault> CheckLoan(Connection& main, std::string_view loan_id);
std::vector<LedgerFault> CheckCustomer(Connection& main, std::string_view cust_id);

}  // namespace kaunter
