#include "loans/replay.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "core/amounts.h"
#include "core/values.h"

namespace kaunter {
namespace {

// Moves from `amount` to `part` as much as the part lacks.
void Split(Money lacking, Money* amount, Money* part) {
  if (*amount <= Money()) return;
  const Money taken = std::min(*amount, lacking);
  *part += taken;
  *amount -= taken;
}

bool HasFallenDue(const ReplayLine& line, const ReplayPayment& payment) {
  return payment.PayDate && line.DueDate && *payment.PayDate >= *line.DueDate;
}

}  // namespace

Money ReplayAmount(const Value& value) {
  // Whole sen pass through their shown form unchanged.
  const Money* money = value.AsMoney();
  if (money != nullptr && money->ten_thousandths() % 100 == 0) return *money;
  return Sen(value);
}

std::optional<DateTime> ReplayDate(const Value& value) {
  const DateTime* date = value.AsDate();
  return date != nullptr ? std::optional(*date) : std::nullopt;
}

ReplayLoan ReplayLoanOf(const Value& drag_loan, const Value& special_sch) {
  const std::string scheme = NullToEmpty(drag_loan);
  return {.personal = scheme == "0",
          .derived = scheme == "1",
          .special = NullToEmpty(special_sch) == "1",
          .InsRate = {},
          .Instalment = {}};
}

// The interest of one row on `balance`: the days of its month by the house's count, a year of 365
// days, ties to even, never below zero.
Money LoanReplay::Interest(const ReplayLine& line, Money balance) const {
  if (!line.DueDate) {
    throw std::runtime_error(fmt::format("Schedule {} has no due date", line.SchID));
  }
  const double days = DaysInMonth(line.DueDate->month, line.DueDate->year);
  const double interest = Round(days * ((CDbl(loan_.InsRate) * (CDbl(balance) / 100)) / 365), 2);
  return std::max(Money::FromDouble(interest), Money());
}

void LoanReplay::DeriveRows() {
  const std::vector<ReplayLine> lines = rows_.Lines();
  Money left = opening_;  // not floored: an instalment below the interest lets it grow
  for (const ReplayLine& line : lines) {
    if (line.InterestOnly()) continue;
    const Money interest = Interest(line, left);
    const Money capital = &line == &lines.back() ? left : loan_.Instalment - interest;
    left = left - loan_.Instalment + interest;
    // The balance written is the opening one in every row; the replay puts the true one.
    rows_.Derive(line, capital, interest, balance_);
  }
}

ReplaySplit LoanReplay::Replay(const ReplayPayment& payment) {
  const Money old_balance = new_balance_;
  if (!payment.TopAmt.IsZero() && !payment.TopTerm.IsZero()) {
    new_balance_ = old_balance - payment.InstalAmt + payment.TopAmt * payment.TopTerm;
  } else if (loan_.personal) {
    new_balance_ = old_balance - payment.InstalAmt;
  }
  Count(payment);
  interest_paid_ = Money();
  capital_paid_ = Money();
  Walk(payment.InstalAmt);
  if (payment.PayExtra > Money()) TakeExtraCapital(payment);
  return {old_balance, new_balance_, interest_paid_, capital_paid_};
}

void LoanReplay::Count(const ReplayPayment& payment) {
  totals_.last_pay_date = payment.PayDate;
  totals_.last_pay_id = payment.PayID;
  totals_.pay += payment.InstalAmt;
  totals_.interest += payment.IntAmt;
  totals_.charge += payment.ChargeAmt;
  totals_.disc += payment.DiscAmt;
  totals_.memo5 += payment.Memo5;
  totals_.extra += payment.PayExtra;
}

// Pays the open rows one after another. The rows are asked for anew on every pass, and what is
// left when no row is open any more is dropped without a trace; both are wanted.
void LoanReplay::Walk(Money amount) {
  Money rest = amount;
  Money to_split = amount;
  while (rest > Money()) {
    const std::optional<ReplayLine> line = rows_.FirstOpenLine();
    if (!line) return;
    PayLine(*line, &rest, &to_split);
  }
}

void LoanReplay::PayLine(const ReplayLine& line, Money* rest, Money* to_split) {
  Money paid = line.Payment + *rest;
  if (paid > line.PayableAmt) {
    *rest = paid - line.PayableAmt;
    paid = line.PayableAmt;
  } else {
    *rest = Money();
  }
  // Interest first.
  const bool covers_interest = paid > line.InterestAmt;
  const Money interest = covers_interest ? line.InterestAmt : paid;
  const Money capital = covers_interest ? paid - line.InterestAmt : Money();
  Split(line.InterestAmt - line.InterestPayment, to_split, &interest_paid_);
  Split(line.CapitalAmt - line.CapitalPayment, to_split, &capital_paid_);
  if (loan_.personal) {
    balance_ = balance_ - paid + line.Payment;
  } else {
    balance_ = balance_ - capital + line.CapitalPayment;
    new_balance_ = balance_;
  }
  rows_.Pay(line, paid, capital, interest, balance_);
  // The rows ahead always show the latest balance.
  rows_.SetBalanceAhead(line, balance_);
}

void LoanReplay::TakeExtraCapital(const ReplayPayment& payment) {
  capital_paid_ += payment.PayExtra;
  balance_ -= payment.PayExtra;
  new_balance_ = balance_;
  const std::vector<ReplayLine> lines = rows_.OpenLines();
  if (lines.empty()) return;
  Money left = balance_ + lines.front().CapitalPayment;
  Money capital = lines.front().CapitalAmt;
  Money extra = payment.PayExtra;
  for (const ReplayLine& line : lines) {
    if (HasFallenDue(line, payment) || line.Payment > Money()) {
      left -= line.CapitalAmt;
      continue;
    }
    extra += line.PayExtra;
    const Money interest = Interest(line, left);
    capital = left > capital ? loan_.Instalment - interest : left;
    left = std::max(left - loan_.Instalment + interest, Money());
    rows_.Cut(line, capital, interest, balance_, extra);
    extra = Money();  // recorded once, on the first row that is cut anew
  }
}

}  // namespace kaunter
