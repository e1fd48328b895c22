#include "loans/schedule.h"

#include <cstdint>

#include "core/numbers.h"
#include "core/texts.h"
#include "loans/due_dates.h"

namespace kaunter {
namespace {

// The names are those of the house's own description of the arithmetic: T repaying rows after G
// grace rows, S the sum of digits, C the capped rate.
class Generator {
 public:
  Generator(const LoanTerms& terms, GraceDivision division)
      : terms_(terms), division_(division), T_(TermOf(terms)), G_(GraceOf(terms)) {
    const double L = CDbl(Money::FromText(terms.LoanAmt)) / 100;
    const double C = CappedRate();
    BulletInt_ = L * (CDbl(Money::FromText(terms.InsRate)) / 12) * G_;
    BulletLow_ = L * (C / 12) * G_;
    LowInt_ = L * (C / 12) * T_;
    for (int i = 1; i <= T_; ++i) S_ += i;
    g_ = G_;
    if (terms.DragLoan == LoanScheme::kPersonal) {
      // The capital enters TotalInt as whole ringgit, ties to even, while RemCap keeps its sen: a
      // loan with sen shifts its interest by them. A rule of the house.
      TotalInt_ =
          CDbl(terms.LastPayment) + CDbl(terms.InstallmentAmt) * (T_ - 1) - CLng(terms.LoanAmt);
      Int_ = NumberText(Round2(CDbl(Money::FromDouble(TotalInt_)) / T_));  // MonthInt
      RemCap_ = Money::FromText(terms.LoanAmt);
    } else {
      Bal_ = PlainNumber(terms.LoanBal);
    }
  }

  Schedule Run() {
    Schedule schedule;
    DueDates dates(terms_.LoanTypeID, terms_.NextDueDate);
    const int rows = T_ + G_;
    for (int i = 1; i <= rows; ++i) {
      ScheduleRow row;
      row.SchID = i;
      row.DueDate = dates.Next();
      // During the grace rows i + g stays G + 1 and the weight T; after them it falls to 1.
      const int W = T_ + G_ - (i + g_) + 1;
      row.FIntAmt = Round2((CDbl(Money::FromDouble(LowInt_)) / S_) * W);
      const bool last = i == rows;
      if (terms_.DragLoan == LoanScheme::kPersonal) {
        PersonalRow(W, last, &row);
      } else {
        FlexiRow(last, &row);
        if (last) schedule.LastPayment = row.PayableAmt.ToText();
      }
      row.InterestAmt = Int_;
      if (g_ != 0) --g_;
      schedule.TotLoanInt += Money::FromText(Int_);
      schedule.rows.push_back(std::move(row));
    }
    return schedule;
  }

 private:
  // 12 for a secured loan, 18 for any other; a rate below it is taken as a whole number, ties to
  // even, so 11.5 meets the cap of 12 again.
  double CappedRate() const {
    const int cap = terms_.secured ? 12 : 18;
    const bool below = Money::FromText(terms_.InsRate) < Money::FromInteger(cap);
    return below ? CInt(terms_.InsRate) : cap;
  }

  void PersonalRow(int W, bool last, ScheduleRow* row) {
    if (terms_.LoanPurpose != InterestMethod::kFlat) {
      Int_ = NumberText(Round2((CDbl(Money::FromDouble(TotalInt_)) / S_) * W));
    }
    // Otherwise the text is simply kept, from the month's interest on row 1. After grace rows it is
    // therefore the last grace row's interest that goes on: a rule of the house.
    if (g_ < 1) {
      if (last) {
        row->CapitalAmt = RemCap_;
        Int_ = (Money::FromText(terms_.LastPayment) - row->CapitalAmt).ToText();
      } else {
        row->CapitalAmt = Money::FromText(terms_.InstallmentAmt) - Money::FromText(Int_);
      }
      RemCap_ -= row->CapitalAmt;
    } else {
      const double bullet = division_ == GraceDivision::kThroughMoney
                                ? CDbl(Money::FromDouble(BulletInt_))
                                : BulletInt_;
      Int_ = NumberText(Round2(bullet / G_));
      row->FIntAmt = Round2(CDbl(Money::FromDouble(BulletLow_)) / G_);
      TakeOverride();
    }
    row->PayableAmt = row->CapitalAmt + Money::FromText(Int_);
  }

  void FlexiRow(bool last, ScheduleRow* row) {
    // The house's month lengths and a year of 365 days, leap years included. The rate is the text's
    // own double here, not taken through money.
    const int days = DaysInMonth(row->DueDate.month, row->DueDate.year);
    Int_ = NumberText(Round2(days * (((CDbl(Bal_) / 100) * CDbl(terms_.InsRate)) / 365)));
    if (g_ < 1) {
      const Money balance = Money::FromText(Bal_);
      const Money interest = Money::FromText(Int_);
      // An instalment below the interest makes the capital negative and the balance grow; the last
      // row collects what is left. No check stands against it, on purpose.
      row->PayableAmt = last ? balance + interest : Money::FromText(terms_.InstallmentAmt2);
      row->CapitalAmt = row->PayableAmt - interest;
      Bal_ = ((balance - row->PayableAmt) + interest).ToText();
    } else {
      TakeOverride();
      row->PayableAmt = Money::FromText(Int_);
      row->FIntAmt = Round2(CDbl(Money::FromDouble(BulletLow_)) / G_);
    }
  }

  void TakeOverride() {
    if (terms_.PayOutAmt2.empty() || Money::FromText(terms_.PayOutAmt2).IsZero()) return;
    Int_ = PlainNumber(terms_.PayOutAmt2);
  }

  const LoanTerms& terms_;
  const GraceDivision division_;
  const int T_;
  const int G_;
  double BulletInt_ = 0;
  double BulletLow_ = 0;
  double LowInt_ = 0;
  double TotalInt_ = 0;
  double S_ = 0;
  int g_ = 0;        // grace rows still to come
  std::string Int_;  // the row's interest, kept from row to row
  Money RemCap_;     // personal: capital not yet repaid
  std::string Bal_;  // flexi: running balance, loosely typed
};

}  // namespace

Schedule ComputeSchedule(const LoanTerms& terms, GraceDivision division) {
  return Generator(terms, division).Run();
}

}  // namespace kaunter
