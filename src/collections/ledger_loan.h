// A loan as it is stored, with all that the check of the ledger asks of it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "collections/ledger_check.h"
#include "loans/replay.h"

namespace kaunter {

struct LedgerLine {
  ReplayLine line;
  Money LoanBal;
};

struct LedgerPayment {
  ReplayPayment payment;
  ReplaySplit split;
  Money PayAmt;
  bool settlement = false;
};

struct LedgerCharge {
  std::string ChargeID;
  Money ChargeAmt;
};

struct LedgerBackup {
  std::int64_t SchID = 0;
  Money PayableAmt;
  Money CapitalAmt;
  Money InterestAmt;
  Money LoanBal;
};

struct LedgerLoan {
  std::string LoanID;
  std::string CustID;
  ReplayLoan terms;
  bool closed = false;
  bool terms_open = false;
  bool amended = false;  // by hand: its capital need not be the loan's amount
  std::string rows_wanted;
  Money LoanAmt;
  Money LoanBal;
  Money CloseBal;
  Money TotPay;
  Money TotInt;
  Money TotCharge;
  Money TotCollectorAmt;
  Money TotDiscAmt;
  Money PayExtra;
  Money TotLoanInt;
  std::optional<DateTime> NextDueDate;
  std::optional<DateTime> LastPaymentDate;
  std::string LastPaymentNo;
  std::vector<LedgerLine> lines;        // by due date
  std::vector<LedgerPayment> payments;  // by PayID
  std::vector<LedgerBackup> backup;     // the schedule as it was generated; where NeedsBackup
  std::vector<LedgerCharge> late_paid;  // "Payment" charges, by ChargeID
  Money charged;                        // sum of the positive charges
  Money credited;                       // of the negative ones
};

class RowsInMemory;

// What a replay begins with: the instalments of a personal loan, the amount of another.
Money OpeningBalance(const LedgerLoan& loan);

// The rows as they stand before the first payment, with `derive` those of a derived loan anew.
// Throws std::runtime_error for a row without a due date.
void BeginReplay(const LedgerLoan& loan, bool derive, RowsInMemory& rows, LoanReplay& replay);

// A derived loan whose rows a replay takes from the backup, or that extra capital has cut.
bool NeedsBackup(const LedgerLoan& loan);

std::vector<LedgerFault> FaultsOf(const LedgerLoan& loan);

// Nothing for a loan that is not there. Throws SqlError.
std::optional<LedgerLoan> ReadLedgerLoan(Connection& main, std::string_view loan_id);

}  // namespace kaunter
