#include "collections/ledger_loan.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <stdexcept>

#include "core/values.h"

namespace kaunter {
namespace {

// The schedule in memory, for the replay to work on.
class RowsInMemory : public ReplayRows {
 public:
  explicit RowsInMemory(std::vector<LedgerLine> lines) : lines_(std::move(lines)) {}

  std::vector<ReplayLine> Lines() override {
    std::vector<ReplayLine> all;
    for (const LedgerLine& row : lines_) all.push_back(row.line);
    return all;
  }
  std::vector<ReplayLine> OpenLines() override {
    std::vector<ReplayLine> open;
    for (const LedgerLine& row : lines_) {
      if (row.line.Open()) open.push_back(row.line);
    }
    return open;
  }
  std::optional<ReplayLine> FirstOpenLine() override {
    for (const LedgerLine& row : lines_) {
      if (row.line.Open()) return row.line;
    }
    return std::nullopt;
  }
  void Derive(const ReplayLine& line, Money capital, Money interest, Money balance) override {
    SetAmounts(Row(line), capital, interest, balance);
  }
  void Pay(const ReplayLine& line, Money paid, Money capital, Money interest,
           Money balance) override {
    LedgerLine& row = Row(line);
    row.line.Payment = paid;
    row.line.CapitalPayment = capital;
    row.line.InterestPayment = interest;
    row.LoanBal = balance;
  }
  void SetBalanceAhead(const ReplayLine& line, Money balance) override {
    for (LedgerLine& row : lines_) {
      if (row.line.SchID > line.SchID) row.LoanBal = balance;
    }
  }
  void Cut(const ReplayLine& line, Money capital, Money interest, Money balance,
           Money extra) override {
    LedgerLine& row = Row(line);
    SetAmounts(row, capital, interest, balance);
    row.line.PayExtra = extra;
  }

  void Wipe(Money opening) {
    for (LedgerLine& row : lines_) {
      row.line.Payment = row.line.CapitalPayment = row.line.InterestPayment = Money();
      row.line.PayExtra = Money();
      row.LoanBal = opening;
    }
  }
  void TakeBackup(const std::vector<LedgerBackup>& backup) {
    for (const LedgerBackup& kept : backup) {
      for (LedgerLine& row : lines_) {
        if (row.line.SchID != kept.SchID) continue;
        row.line.PayableAmt = kept.PayableAmt;
        row.line.CapitalAmt = kept.CapitalAmt;
        row.line.InterestAmt = kept.InterestAmt;
        row.LoanBal = kept.LoanBal;
      }
    }
  }
  void SumPayables() {
    for (LedgerLine& row : lines_) row.line.PayableAmt = row.line.CapitalAmt + row.line.InterestAmt;
  }
  const std::vector<LedgerLine>& lines() const { return lines_; }

 private:
  LedgerLine& Row(const ReplayLine& line) {
    return *std::find_if(lines_.begin(), lines_.end(),
                         [&line](const LedgerLine& row) { return row.line.SchID == line.SchID; });
  }
  static void SetAmounts(LedgerLine& row, Money capital, Money interest, Money balance) {
    row.line.CapitalAmt = capital;
    row.line.InterestAmt = interest;
    row.line.PayableAmt = capital + interest;
    row.LoanBal = balance;
  }

  std::vector<LedgerLine> lines_;
};

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
    bool settled = false;
    try {
      settled = CompareReplay();
    } catch (const std::runtime_error& failure) {
      // A row without a due date, an amount beyond all bounds: no rebuild comes through either.
      Expect({"The replay of the payments", "还款重算"}, failure.what(), "");
    }
    CompareCharges();
    if (!settled || faults_.empty()) CheckIdentities();
    return std::move(faults_);
  }

 private:
  void Expect(const Caption& what, const std::string& stored, const std::string& should_be) {
    if (stored == should_be) return;
    const auto told = [&what](const LedgerFault& fault) {
      return fault.what.english == what.english;
    };
    if (std::any_of(faults_.begin(), faults_.end(), told)) return;
    faults_.push_back({loan_.LoanID, loan_.CustID, loan_.closed, what, stored, should_be});
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

  Money Opening() const {
    if (!loan_.terms.personal) return loan_.LoanAmt;
    Money sum;
    for (const LedgerLine& row : loan_.lines) sum += row.line.PayableAmt;
    return sum;
  }

  void CheckBalances() {
    if (HasPayments()) {
      CheckBalance(loan_.payments.back().split.NewLoanBal);
    } else if (!loan_.lines.empty()) {
      CheckBalance(Opening());
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
    const Money opening = Opening();
    rows_.Wipe(opening);
    LoanReplay replay(loan_.terms, opening, rows_);
    if (loan_.terms.derived && loan_.terms.special) {
      rows_.TakeBackup(loan_.backup);
    } else if (loan_.terms.derived && HasPayments()) {
      replay.DeriveRows();
    }
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
  }
  void ExpectCharge(const std::string& id, const std::string& stored,
                    const std::string& should_be) {
    if (stored == should_be) return;
    Expect({fmt::format("Charge {}", id), fmt::format("收费 {}", id)}, stored, should_be);
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
  std::vector<LedgerFault> faults_;
};

}  // namespace

bool NeedsBackup(const LedgerLoan& loan) {
  return loan.terms.derived && (loan.terms.special || PaidExtra(loan));
}

std::vector<LedgerFault> FaultsOf(const LedgerLoan& loan) { return Check(loan).Run(); }

}  // namespace kaunter
