#include "collections/payment_preview.h"

#include <fmt/format.h>

#include <string>

#include "collections/ledger_rows.h"
#include "core/values.h"

namespace kaunter {
namespace {

ReplayPayment AsReplayed(const Payment& payment) {
  return {.PayID = payment.PayID,
          .PayDate = DateTime::FromDisplay(payment.PayDate),
          .IntAmt = payment.IntAmt,
          .ChargeAmt = payment.ChargeAmt,
          .DiscAmt = payment.DiscAmt,
          .TopTerm = Money::FromInteger(payment.TopTerm),
          .TopAmt = payment.TopAmt,
          .InstalAmt = payment.InstalAmt,
          .PayExtra = payment.PayExtra,
          .Memo5 = payment.Memo5};
}

// The parts of the sentence, the same in both languages.
class Words {
 public:
  void Add(Money amount, const Caption& what) {
    if (amount.IsZero()) return;
    const std::string comma = text_.english.empty() ? "" : ", ";
    const std::string shown = ShowMoney(amount);
    text_.english += fmt::format("{}{} {}", comma, shown, what.english);
    text_.chinese += fmt::format("{}{} {}", comma.empty() ? "" : "，", what.chinese, shown);
  }
  void AddOpen(Money amount, const Caption& what) {
    text_.english += fmt::format("; {} of {} stays open", ShowMoney(amount), what.english);
    text_.chinese += fmt::format("；{}尚欠 {}", what.chinese, ShowMoney(amount));
  }
  const Caption& text() const { return text_; }

 private:
  Caption text_;
};

Caption Instalment(std::int64_t row) {
  return {fmt::format("instalment {}", row), fmt::format("第 {} 期", row)};
}

void AddRows(const std::vector<PreviewedRow>& rows, Words& words) {
  Money interest;
  Money capital;
  std::vector<std::int64_t> paid;  // with capital
  for (const PreviewedRow& row : rows) {
    interest += row.interest;
    capital += row.capital;
    if (!row.capital.IsZero()) paid.push_back(row.SchID);
  }
  words.Add(interest, {"interest", "利息"});
  if (!paid.empty()) {
    const Caption one = Instalment(paid.front());
    words.Add(capital,
              paid.size() == 1
                  ? Caption{"of " + one.english, one.chinese}
                  : Caption{fmt::format("of instalments {} to {}", paid.front(), paid.back()),
                            fmt::format("第 {} 至 {} 期", paid.front(), paid.back())});
  }
  if (rows.empty() || rows.back().open <= Money()) return;
  Caption open = Instalment(rows.back().SchID);
  if (paid.size() == 1 && paid.front() == rows.back().SchID) open.english = "it";
  words.AddOpen(rows.back().open, open);
}

}  // namespace

PaymentPreview PreviewPayment(const LedgerLoan& loan, const Payment& payment) {
  RowsInMemory rows(loan.lines);
  LoanReplay replay(loan.terms, OpeningBalance(loan), rows);
  BeginReplay(loan, true, rows, replay);
  PaymentPreview preview;
  const auto pay = [&] {
    const std::vector<LedgerLine> before = rows.lines();
    preview.NewLoanBal = replay.Replay(AsReplayed(payment)).NewLoanBal;
    preview.unplaced = payment.InstalAmt;
    for (std::size_t i = 0; i < before.size(); ++i) {
      const ReplayLine& was = before[i].line;
      const ReplayLine& is = rows.lines()[i].line;
      if (is.Payment == was.Payment) continue;
      preview.unplaced -= is.Payment - was.Payment;
      preview.rows.push_back({is.SchID, is.InterestPayment - was.InterestPayment,
                              is.CapitalPayment - was.CapitalPayment, is.PayableAmt - is.Payment});
    }
  };
  for (const LedgerPayment& stored : loan.payments) {
    if (stored.payment.PayID == payment.PayID) {
      pay();
    } else {
      replay.Replay(stored.payment);
    }
  }
  if (payment.PayID.empty()) pay();
  preview.last_balance = replay.new_balance();
  return preview;
}

Caption InWords(const Payment& payment, const std::optional<PaymentPreview>& preview) {
  const Caption parts = PartsInWords(payment, preview);
  if (parts.english.empty()) return {};
  const std::string total = ShowMoney(payment.PayAmt + payment.IntAmt + payment.CollectorAmt +
                                      payment.ChargeAmt - payment.DiscAmt);
  return {total + ": " + parts.english, total + "：" + parts.chinese};
}

Caption PartsInWords(const Payment& payment, const std::optional<PaymentPreview>& preview) {
  Words words;
  words.Add(payment.IntAmt, {"late interest", "逾期利息"});
  words.Add(payment.CollectorAmt, {"collector fee", "收账费"});
  words.Add(payment.ChargeAmt, {"other charges", "其他收费"});
  words.Add(-payment.DiscAmt, {"discount", "折扣"});
  words.Add(payment.PayExtra, {"extra capital", "额外本金"});
  Money to_no_row = payment.PayAmt - payment.InstalAmt - payment.PayExtra;
  if (preview) to_no_row += preview->unplaced;
  words.Add(to_no_row, {"to no instalment", "不入任何一期"});
  if (preview) {
    AddRows(preview->rows, words);
  } else {
    words.Add(payment.InstalAmt, {"instalments", "分期付款"});
  }
  return words.text();
}

}  // namespace kaunter
