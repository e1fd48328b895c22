#include "collections/ledger_loan.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <stdexcept>

#include "collections/ledger_rows.h"
#include "core/values.h"

namespace kaunter {
namespace {

std::string Shown(Money amount) { return ShowMoney(amount); }
std::string Shown(const std::optional<DateTime>& date) {
  return date ? Format(*date, "dd-MM-yyyy") : std::string();
}

bool PaidExtra(const LedgerLoan& loan) {
  return std::any_of(loan.payments.begin(), loan.payments.end(),
                     [](const LedgerPayment& paid) { return paid.payment.PayExtra > Money(); });
}

class Check {
 public:
  explicit Check(const LedgerLoan& loan) : loan_(loan), rows_(loan.lines) {}

  // A figure that differs from the replay is told with what a rebuild writes there. The identities
  // say less: a wrong figure breaks those of its neighbours, too. They are asked where the replay
  // has not settled every figure, and once more where it finds no fault.
  std::vector<LedgerFault> Run() {
    CheckSchedule();
    // Without rows every other figure is as wrong as they.
    if (!faults_.empty() && loan_.lines.empty()) return std::move(faults_);
    bool settled = false;
    try {
      settled = CompareReplay();
    } catch (const std::runtime_error& failure) {
      // A row without a due date, an amount beyond all bounds: no rebuild comes through either.
      Expect({"The replay of the payments", "还款重算"}, failure.what(), "");
    }
    CompareCharges();
    if (!settled || faults_.empty()) CheckIdentities();
    CheckCredit();
    return std::move(faults_);
  }

 private:
  void Expect(const Caption& what, const std::string& stored, const std::string& should_be) {
    if (stored == should_be) return;
    const auto told = [&what](const LedgerFault& fault) {
      return fault.what.english == what.english;
    };
    if (std::any_of(faults_.begin(), faults_.end(), told)) return;
    faults_.push_back(
        {loan_.LoanID, loan_.CustID, loan_.closed, false, what, stored, should_be, {}});
  }
  // The texts are made only for what does not hold.
  void Expect(const char* column, Money stored, Money should_be) {
    if (stored != should_be) Expect({column}, Shown(stored), Shown(should_be));
  }
  void ExpectInRow(const ReplayLine& line, const char* column, Money stored, Money should_be) {
    if (stored == should_be) return;
    Expect({fmt::format("Row {}: {}", line.SchID, column),
            fmt::format("第 {} 期：{}", line.SchID, column)},
           Shown(stored), Shown(should_be));
  }
  void ExpectInPayment(const std::string& pay_id, const char* column, Money stored,
                       Money should_be) {
    if (stored == should_be) return;
    Expect(
        {fmt::format("Payment {}: {}", pay_id, column), fmt::format("还款 {}：{}", pay_id, column)},
        Shown(stored), Shown(should_be));
  }

  bool HasPayments() const { return !loan_.payments.empty(); }

  // --- the schedule against the terms

  // Left by a save that was cut between the loan and its rows. Extra capital cuts rows, and lines
  // amended by hand or special ones add up to what the office wants.
  void CheckSchedule() {
    if ((loan_.closed ? loan_.CloseBal : loan_.LoanBal).IsZero()) return;
    if (loan_.lines.empty()) {
      ExpectOfSchedule({"Schedule rows", "还款表期数"}, "0", loan_.rows_wanted);
      return;
    }
    if (loan_.amended || loan_.terms.special || PaidExtra(loan_)) return;
    Money capital;
    for (const LedgerLine& row : loan_.lines) capital += row.line.CapitalAmt;
    // A flexi loan's rows are generated from its balance.
    if (capital == loan_.LoanAmt || (!loan_.terms.personal && capital == loan_.LoanBal)) return;
    ExpectOfSchedule({"Capital of the schedule", "还款表本金"}, Shown(capital),
                     Shown(loan_.LoanAmt));
  }
  void ExpectOfSchedule(const Caption& what, const std::string& stored,
                        const std::string& should_be) {
    Expect(what, stored, should_be);
    LedgerFault& fault = faults_.back();
    fault.of_schedule = true;
    if (loan_.terms_open) return;
    fault.mend = {"Delete the drawdown first", "请先删除放款"};
  }

  // --- of the stored figures alone

  void CheckIdentities() {
    CheckRows();
    CheckBalances();
    CheckLoan(loan_.lines);
  }

  void CheckRows() {
    for (const LedgerLine& row : loan_.lines) {
      const ReplayLine& line = row.line;
      ExpectInRow(line, "Payment", line.Payment, line.CapitalPayment + line.InterestPayment);
      if (line.Payment > Money() && line.Payment > line.PayableAmt) {
        ExpectInRow(line, "Payment", line.Payment, line.PayableAmt);
      }
      if (line.CapitalPayment > Money()) {
        ExpectInRow(line, "InterestPayment", line.InterestPayment, line.InterestAmt);
      }
    }
  }

  void CheckBalances() {
    if (HasPayments()) {
      CheckBalance(loan_.payments.back().split.NewLoanBal);
    } else if (!loan_.lines.empty()) {
      CheckBalance(OpeningBalance(loan_));
    }
    const LedgerPayment* before = nullptr;
    for (const LedgerPayment& stored : loan_.payments) {
      const ReplayPayment& payment = stored.payment;
      if (before != nullptr) {
        ExpectInPayment(payment.PayID, "OldLoanBal", stored.split.OldLoanBal,
                        before->split.NewLoanBal);
      }
      if (loan_.terms.personal && payment.PayExtra <= Money()) {
        ExpectInPayment(
            payment.PayID, "NewLoanBal", stored.split.NewLoanBal,
            stored.split.OldLoanBal - payment.InstalAmt + payment.TopAmt * payment.TopTerm);
      }
      before = &stored;
    }
  }

  // A closed loan keeps its balance elsewhere.
  void CheckBalance(Money balance) {
    if (loan_.closed) Expect("CloseBal", loan_.CloseBal, balance);
    Expect("LoanBal", loan_.LoanBal, loan_.closed ? Money() : balance);
  }

  // What the loan tells of its rows.
  void CheckLoan(const std::vector<LedgerLine>& lines) {
    Money interest;
    const ReplayLine* open = nullptr;
    for (const LedgerLine& row : lines) {
      interest += row.line.InterestAmt;
      if (open == nullptr && row.line.Open()) open = &row.line;
    }
    if (!lines.empty()) Expect("TotLoanInt", loan_.TotLoanInt, interest);
    if (open != nullptr && loan_.NextDueDate != open->DueDate) {
      Expect({"NextDueDate"}, Shown(loan_.NextDueDate), Shown(open->DueDate));
    }
  }

  // --- against the replay

  // True when it has settled every figure.
  bool CompareReplay() {
    LoanReplay replay(loan_.terms, OpeningBalance(loan_), rows_);
    BeginReplay(loan_, HasPayments(), rows_, replay);
    std::vector<ReplaySplit> splits;
    for (const LedgerPayment& stored : loan_.payments) {
      splits.push_back(replay.Replay(stored.payment));
    }
    rows_.SumPayables();
    const bool settled = HasPayments() && !Unsettled();
    if (settled) CheckBalance(splits.back().NewLoanBal);
    CompareTotals(replay);
    if (!HasPayments()) CompareUnpaidRows();
    if (!settled) return false;
    CheckLoan(rows_.lines());
    CompareRows();
    for (std::size_t i = 0; i < splits.size(); ++i) ComparePayment(loan_.payments[i], splits[i]);
    return true;
  }

  // Extra capital has been paid, and the rows that it cuts are not brought back before the next
  // replay: it finds other rows than this one and comes to others again. That is so without a
  // derivation, and where a row is interest alone, or was, for those are passed by.
  bool Unsettled() const {
    if (!PaidExtra(loan_)) return false;
    if (!loan_.terms.derived || loan_.backup.size() < loan_.lines.size()) return true;
    if (loan_.terms.special) return false;
    return std::any_of(loan_.lines.begin(), loan_.lines.end(),
                       [](const LedgerLine& row) { return row.line.InterestOnly(); }) ||
           std::any_of(loan_.backup.begin(), loan_.backup.end(), [](const LedgerBackup& row) {
             return !row.InterestAmt.IsZero() && row.CapitalAmt.IsZero();
           });
  }

  void CompareTotals(const LoanReplay& replay) {
    const ReplayTotals& totals = replay.totals();
    Expect("TotPay", loan_.TotPay, totals.pay);
    Expect("TotCharge", loan_.TotCharge, totals.charge);
    Expect("TotDiscAmt", loan_.TotDiscAmt, totals.disc);
    Expect("PayExtra", loan_.PayExtra, totals.extra);
    if (loan_.LastPaymentDate != totals.last_pay_date) {
      Expect({"LastPaymentDate"}, Shown(loan_.LastPaymentDate), Shown(totals.last_pay_date));
    }
    Expect({"LastPaymentNo"}, loan_.LastPaymentNo, totals.last_pay_id);
  }

  // One negative charge for each payment of late interest, and no other; the loan's totals hold
  // those beside all other charges.
  void CompareCharges() {
    Money charged = loan_.charged;
    Money credited = loan_.credited;
    std::map<std::string, Money> stored;
    for (const LedgerCharge& charge : loan_.late_paid) {
      stored[charge.ChargeID] = charge.ChargeAmt;
      (charge.ChargeAmt > Money() ? charged : credited) -= charge.ChargeAmt;
    }
    for (const LedgerPayment& paid : loan_.payments) {
      if (paid.payment.IntAmt <= Money()) continue;
      credited -= paid.payment.IntAmt;
      const auto found = stored.find(paid.payment.PayID);
      ExpectCharge(paid.payment.PayID, found == stored.end() ? "" : Shown(found->second),
                   Shown(-paid.payment.IntAmt));
      if (found != stored.end()) stored.erase(found);
    }
    for (const auto& [id, amount] : stored) ExpectCharge(id, Shown(amount), "");
    Expect("TotCollectorAmt", loan_.TotCollectorAmt, charged);
    Expect("TotInt", loan_.TotInt, credited);
    outstanding_ = charged + credited;
  }
  void ExpectCharge(const std::string& id, const std::string& stored,
                    const std::string& should_be) {
    if (stored == should_be) return;
    Expect({fmt::format("Charge {}", id), fmt::format("收费 {}", id)}, stored, should_be);
  }

  // More late interest was paid than is charged. No rebuild mends it, and the counter credits each
  // later payment with it anew.
  void CheckCredit() {
    if (loan_.closed || outstanding_ >= Money()) return;
    Expect({"Outstanding charges", "未付收费"}, Shown(outstanding_), Shown(Money()));
    faults_.back().mend = MendCredit(-outstanding_);
  }

  // The last payment that paid late interest paid too much of it, unless it is one that was
  // credited already.
  Caption MendCredit(Money credit) const {
    const auto last =
        std::find_if(loan_.payments.rbegin(), loan_.payments.rend(),
                     [](const LedgerPayment& paid) { return !paid.payment.IntAmt.IsZero(); });
    if (last != loan_.payments.rend()) {
      const Money late = last->payment.IntAmt;
      const Money moved = std::min(late, credit);  // all of it where it was credited
      const Money pay = last->PayAmt + moved;
      const bool fits = moved < Money() || !loan_.terms.personal || pay <= last->split.OldLoanBal;
      if (!last->settlement && fits) {
        return {fmt::format("Edit Payment {}: Payment Installment {}, Interest Payment {}",
                            last->payment.PayID, Shown(pay), Shown(late - moved)),
                fmt::format("更改付款 {}：分期付款 {}，逾期利息付款 {}", last->payment.PayID,
                            Shown(pay), Shown(late - moved))};
      }
    }
    return {fmt::format("Invoice of {}", Shown(credit)),
            fmt::format("开 {} 的发票", Shown(credit))};
  }

  void CompareUnpaidRows() {
    for (const LedgerLine& row : loan_.lines) {
      ExpectInRow(row.line, "Payment", row.line.Payment, Money());
    }
  }

  void CompareRows() {
    for (std::size_t i = 0; i < loan_.lines.size(); ++i) {
      const ReplayLine& stored = loan_.lines[i].line;
      const ReplayLine& replayed = rows_.lines()[i].line;
      ExpectInRow(stored, "PayableAmt", stored.PayableAmt, replayed.PayableAmt);
      ExpectInRow(stored, "CapitalAmt", stored.CapitalAmt, replayed.CapitalAmt);
      ExpectInRow(stored, "InterestAmt", stored.InterestAmt, replayed.InterestAmt);
      ExpectInRow(stored, "Payment", stored.Payment, replayed.Payment);
      ExpectInRow(stored, "CapitalPayment", stored.CapitalPayment, replayed.CapitalPayment);
      ExpectInRow(stored, "InterestPayment", stored.InterestPayment, replayed.InterestPayment);
      ExpectInRow(stored, "PayExtra", stored.PayExtra, replayed.PayExtra);
      ExpectInRow(stored, "LoanBal", loan_.lines[i].LoanBal, rows_.lines()[i].LoanBal);
    }
  }

  void ComparePayment(const LedgerPayment& stored, const ReplaySplit& split) {
    const std::string& id = stored.payment.PayID;
    ExpectInPayment(id, "OldLoanBal", stored.split.OldLoanBal, split.OldLoanBal);
    ExpectInPayment(id, "NewLoanBal", stored.split.NewLoanBal, split.NewLoanBal);
    ExpectInPayment(id, "IntPay", stored.split.IntPay, split.IntPay);
    ExpectInPayment(id, "CapPay", stored.split.CapPay, split.CapPay);
  }

  const LedgerLoan& loan_;
  RowsInMemory rows_;
  Money outstanding_;  // charges, with what a rebuild writes of the late interest paid
  std::vector<LedgerFault> faults_;
};

}  // namespace

Money OpeningBalance(const LedgerLoan& loan) {
  if (!loan.terms.personal) return loan.LoanAmt;
  Money sum;
  for (const LedgerLine& row : loan.lines) sum += row.line.PayableAmt;
  return sum;
}

void BeginReplay(const LedgerLoan& loan, bool derive, RowsInMemory& rows, LoanReplay& replay) {
  rows.Wipe(OpeningBalance(loan));
  if (loan.terms.derived && loan.terms.special) {
    rows.TakeBackup(loan.backup);
  } else if (loan.terms.derived && derive) {
    replay.DeriveRows();
  }
}

bool NeedsBackup(const LedgerLoan& loan) {
  return loan.terms.derived && (loan.terms.special || PaidExtra(loan));
}

std::vector<LedgerFault> FaultsOf(const LedgerLoan& loan) { return Check(loan).Run(); }

}  // namespace kaunter
