// The replay of a loan's payments over its schedule: the arithmetic of the rebuild, once, wherever
// the rows live. The rebuild lets it read and write the database row by row; the check of the
// ledger gives it rows in memory.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/date_time.h"
#include "platform/money.h"
#include "platform/sql/value.h"

namespace kaunter {

// Every amount, and the interest rate with it, takes part with the two decimals of its shown form.
Money ReplayAmount(const Value& value);
// Nothing for Null.
std::optional<DateTime> ReplayDate(const Value& value);

struct ReplayLoan {
  bool personal = false;
  bool derived = false;  // the interest of a flexi loan's rows is derived anew
  bool special = false;  // or taken from the backup
  Money InsRate;         // percent a year
  Money Instalment;
};
// From the columns DragLoan and SpecialSch.
ReplayLoan ReplayLoanOf(const Value& drag_loan, const Value& special_sch);

// A row of the schedule as it stands before a step.
struct ReplayLine {
  std::int64_t SchID = 0;
  std::optional<DateTime> DueDate;
  Money PayableAmt;
  Money CapitalAmt;
  Money InterestAmt;
  Money Payment;
  Money CapitalPayment;
  Money InterestPayment;
  Money PayExtra;

  bool Open() const { return Payment < PayableAmt; }
  // Derivation passes it by.
  bool InterestOnly() const { return !InterestAmt.IsZero() && CapitalAmt.IsZero(); }
};

struct ReplayPayment {
  std::string PayID;
  std::optional<DateTime> PayDate;
  Money IntAmt;
  Money ChargeAmt;
  Money DiscAmt;
  Money TopTerm;
  Money TopAmt;
  Money InstalAmt;
  Money PayExtra;
  Money Memo5;
};

// What the replay writes on a payment.
struct ReplaySplit {
  Money OldLoanBal;
  Money NewLoanBal;
  Money IntPay;
  Money CapPay;
};

struct ReplayTotals {
  Money pay;
  Money interest;
  Money charge;
  Money disc;
  Money memo5;
  Money extra;
  std::optional<DateTime> last_pay_date;
  std::string last_pay_id;
};

// Where the rows of the schedule live. Rows are told in the order of their due dates. `balance` is
// what the row's LoanBal becomes.
class ReplayRows {
 public:
  virtual ~ReplayRows() = default;
  virtual std::vector<ReplayLine> Lines() = 0;
  // With something open, as it stands now.
  virtual std::vector<ReplayLine> OpenLines() = 0;
  virtual std::optional<ReplayLine> FirstOpenLine() = 0;
  // Capital and interest of a row derived anew.
  virtual void Derive(const ReplayLine& line, Money capital, Money interest, Money balance) = 0;
  // The paid columns of the row become these; what was paid before is in them.
  virtual void Pay(const ReplayLine& line, Money paid, Money capital, Money interest,
                   Money balance) = 0;
  // The rows of a higher SchID.
  virtual void SetBalanceAhead(const ReplayLine& line, Money balance) = 0;
  // Capital and interest of a row after extra capital was paid; `extra` is what its PayExtra
  // becomes.
  virtual void Cut(const ReplayLine& line, Money capital, Money interest, Money balance,
                   Money extra) = 0;
};

class LoanReplay {
 public:
  LoanReplay(const ReplayLoan& loan, Money opening, ReplayRows& rows)
      : loan_(loan), opening_(opening), balance_(opening), new_balance_(opening), rows_(rows) {}

  // The rows of a flexi loan from its opening balance, before the first payment. Throws
  // std::runtime_error for a row without a due date.
  void DeriveRows();
  // The payments in the order of the text PayID. Throws what DeriveRows throws.
  ReplaySplit Replay(const ReplayPayment& payment);

  Money new_balance() const { return new_balance_; }
  const ReplayTotals& totals() const { return totals_; }

 private:
  Money Interest(const ReplayLine& line, Money balance) const;
  void Count(const ReplayPayment& payment);
  void Walk(Money amount);
  void PayLine(const ReplayLine& line, Money* rest, Money* to_split);
  void TakeExtraCapital(const ReplayPayment& payment);

  ReplayLoan loan_;
  Money opening_;
  Money balance_;      // as the walk lowers it
  Money new_balance_;  // as the payments tell it
  Money interest_paid_;
  Money capital_paid_;
  ReplayTotals totals_;
  ReplayRows& rows_;
};

}  // namespace kaunter
