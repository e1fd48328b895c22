#include "movein/loan_book.h"

#include "core/values.h"

namespace kaunter {

LoanBook::LoanBook(const LoanTerms& terms) {
  const bool flexi = terms.DragLoan == LoanScheme::kFlexi;
  loan_.terms = ReplayLoanOf(Value(std::string(flexi ? "1" : "0")), Value(std::string("0")));
  loan_.terms.InsRate = ReplayAmount(Value(terms.InsRate));
  loan_.terms.Instalment = ReplayAmount(Value(terms.InstallmentAmt2));
  loan_.LoanAmt = ReplayAmount(Value(terms.LoanAmt));
  for (const ScheduleRow& row : ComputeSchedule(terms).rows) {
    LedgerLine line;
    line.line.SchID = row.SchID;
    line.line.DueDate = row.DueDate;
    line.line.CapitalAmt = row.CapitalAmt;
    line.line.InterestAmt = ReplayAmount(Value(row.InterestAmt));
    line.line.PayableAmt = row.PayableAmt;
    loan_.lines.push_back(line);
  }
  Begin(true);
}

LoanBook::LoanBook(const LedgerLoan& loan) : loan_(loan) {
  Begin(!loan.payments.empty());
  for (const LedgerPayment& stored : loan_.payments) replay_->Replay(stored.payment);
}

void LoanBook::Begin(bool derive) {
  rows_ = std::make_unique<RowsInMemory>(loan_.lines);
  replay_ = std::make_unique<LoanReplay>(loan_.terms, OpeningBalance(loan_), *rows_);
  BeginReplay(loan_, derive, *rows_, *replay_);
}

Money LoanBook::open() const {
  Money open;
  for (const LedgerLine& row : rows_->lines()) {
    open += row.line.CapitalAmt + row.line.InterestAmt - row.line.CapitalPayment -
            row.line.InterestPayment;
  }
  return open;
}

std::optional<DateTime> LoanBook::DueBehind(const ReplayLine& line) const {
  for (const LedgerLine& row : rows_->lines()) {
    if (row.line.SchID == line.SchID + 1) return row.line.DueDate;
  }
  return line.DueDate;
}

void LoanBook::Pay(const Payment& payment) {
  ReplayPayment paid;
  paid.PayDate = DateTime::FromDisplay(payment.PayDate);
  paid.IntAmt = payment.IntAmt;
  paid.DiscAmt = payment.DiscAmt;
  paid.InstalAmt = payment.InstalAmt;
  paid.PayExtra = payment.PayExtra;
  replay_->Replay(paid);
}

}  // namespace kaunter
