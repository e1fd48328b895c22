// The payments of a loan, each measured by the loan as those before it leave it.
#include <fmt/format.h>

#include <map>
#include <utility>

#include "collections/payment_checks.h"
#include "collections/receipt_number.h"
#include "compliance/aml.h"
#include "core/amounts.h"
#include "core/values.h"
#include "movein/move_in_plan.h"

namespace kaunter {
namespace {

const char* GroupFor(Money balance) {
  return balance > Money() ? "PINJAMAN SEMASA" : "PINJAMAN SELESAI";
}

}  // namespace

std::string PaymentKey(const StagedLine& line, std::string_view loan_key, int occurrence) {
  if (!line.key.empty()) return fmt::format("{}#{}", loan_key, line.key);
  std::string amount = TextOf(line.texts, "TotPay");
  if (amount.empty()) amount = TextOf(line.texts, "PayAmt");
  return fmt::format("{}#{} {} {}", loan_key, TextOf(line.texts, "PayDate"), amount, occurrence);
}

bool MovePlanner::TakePayments(LoanPlan* plan, LoanBook* book, const std::string& loan_date,
                               Money paid_out) {
  MoveCounts& counts = report_.Of(MoveKind::payments);
  std::map<std::string, int> occurrences;
  int good = 0;
  int refused = 0;
  Money amount;
  for (const StagedLine& line : staging_.PaymentsOf(plan->key)) {
    PaymentPlan payment;
    payment.line = line.line;
    payment.key = PaymentKey(line, plan->key, 0);
    payment.key = PaymentKey(line, plan->key, ++occurrences[payment.key]);
    if (!plan->loan_id.empty() && !TakenAs(MoveKind::payments, payment.key).empty()) {
      ++counts.known;
      continue;
    }
    if (!CheckPayment(line, *plan, *book, loan_date, paid_out, &payment.payment)) {
      ++refused;
      continue;
    }
    ++good;
    const Payment& paid = payment.payment;
    amount += paid.PayAmt + paid.IntAmt + paid.CollectorAmt - paid.DiscAmt;
    book->Pay(paid);
    payment.payment.NewLoanBal = book->balance();
    payment.payment.LampiranStatus = GroupFor(book->balance());
    plan->payments.push_back(std::move(payment));
  }
  if (refused == 0) {
    counts.good += good;
    counts.amount += amount;
    return true;
  }
  counts.refused += refused;
  counts.waiting += good;
  plan->payments.clear();
  return false;
}

bool MovePlanner::CheckPayment(const StagedLine& line, const LoanPlan& loan, LoanBook& book,
                               const std::string& loan_date, Money paid_out, Payment* payment) {
  if (line.refused) return false;
  const Texts& texts = line.texts;
  const auto passes = [&](const std::optional<Refusal>& refusal) {
    return !refusal || Refuse(line, *refusal);
  };
  Payment& p = *payment;
  p.LoanID = loan.loan_id;
  p.CompCode = company_;
  p.PayDate = TextOf(texts, "PayDate");
  if (p.PayDate.empty()) return Refuse(line, "PayDate", {"Date is required", "请输入付款日"});
  const auto lent = DateTime::FromDisplay(loan_date);
  const auto paid = DateTime::FromDisplay(p.PayDate);
  if (lent && paid && *paid < *lent) return Refuse(line, "PayDate", kBeforeLoanDate);
  if (const auto now = DateTime::FromDisplay(today_); now && paid && *now < *paid) {
    Note(line, "PayDate", {"lies in the future", "是将来的日期"});
  }
  for (const char* column : {"TotPay", "PayAmt", "IntAmt", "PayExtra", "DiscAmt", "CollectorAmt"}) {
    if (AmountOf(texts, column) < Money()) {
      return Refuse(line, column, {"Invalid Amount, Please check", "金额不正确，请检查"});
    }
  }
  p.IntAmt = AmountOf(texts, "IntAmt");
  p.PayExtra = AmountOf(texts, "PayExtra");
  p.DiscAmt = AmountOf(texts, "DiscAmt");
  p.CollectorAmt = AmountOf(texts, "CollectorAmt");
  p.PayAmt = AmountOf(texts, "PayAmt");
  if (TextOf(texts, "PayAmt").empty()) {
    p.PayAmt = AmountOf(texts, "TotPay") - p.IntAmt - p.CollectorAmt + p.DiscAmt;
  } else if (!TextOf(texts, "TotPay").empty() &&
             AmountOf(texts, "TotPay") != p.PayAmt + p.IntAmt + p.CollectorAmt - p.DiscAmt) {
    return Refuse(line, "TotPay",
                  {"is not the sum of what was paid towards the loan, late interest and collector "
                   "fee, less the discount",
                   "不等于还入贷款、逾期利息和收账费之和减折扣"});
  }
  if (!p.PayExtra.IsZero() && !book.flexi()) {
    return Refuse(line, "PayExtra",
                  {"a Personal Loan takes no extra capital", "个人贷款没有额外本金"});
  }
  p.InstalAmt = p.PayAmt - p.PayExtra;
  if (!passes(CheckDrawn(p.PayAmt, paid_out)) || !passes(CheckDiscountRight(session_, p.DiscAmt)) ||
      !passes(CheckBalance(p.PayAmt, book.balance(), book.flexi(), [&] { return book.open(); })) ||
      !passes(CheckTally(p.PayAmt, p.InstalAmt, p.PayExtra, book.flexi())) ||
      !passes(CheckSomethingPaid({p.IntAmt, p.CollectorAmt, p.PayAmt}))) {
    return false;
  }
  if (p.InstalAmt < Money()) {
    return Refuse(line, "PayExtra",
                  {"Extra cannot more than Payment Amount", "额外本金不可多过付款额"});
  }
  p.ReceiptNo = TextOf(texts, "ReceiptNo");
  if (!p.ReceiptNo.empty()) {
    const auto earlier = staging_.Earlier(line);
    if (earlier || ReceiptTaken(main_, company_, "", p.ReceiptNo)) {
      const int where = earlier ? earlier->line : 0;
      return Refuse(line, "ReceiptNo",
                    {fmt::format("Same Receipt No detected - {}{}", p.ReceiptNo,
                                 earlier ? fmt::format(", line {}", where) : ""),
                     fmt::format("收据号码 {} 已用过{}", p.ReceiptNo,
                                 earlier ? fmt::format("（第 {} 行）", where) : "")});
    }
  }
  p.AMLACode = TextOf(texts, "AMLACode");
  if (aml_) {
    const ThresholdDecision decision =
        JudgePayment(session_.aml, p.PayAmt + p.IntAmt + p.CollectorAmt - p.DiscAmt, p.AMLACode);
    using Act = ThresholdDecision::Act;
    if (decision.act == Act::warn) Note(line, "TotPay", {decision.text});
    if (decision.act == Act::demand_reason) return Refuse(line, "AMLACode", {decision.text});
  }
  for (const auto& [column, field] : {std::pair{"CollectInfoID", &p.CollectInfoID},
                                      {"Bank", &p.Bank},
                                      {"ChqNo", &p.ChqNo},
                                      {"Memo1", &p.Memo1}}) {
    if (const std::string text = TextOf(texts, column); !text.empty()) *field = text;
  }
  p.OldLoanBal = book.balance();
  p.RepaymentAmt = p.PayAmt + p.IntAmt + p.CollectorAmt - p.DiscAmt;
  if (const auto row = book.FirstOpenLine()) {
    const auto shown = [](const std::optional<DateTime>& date) {
      return date ? Format(*date, "dd-mm-yyyy") : std::string();
    };
    p.SchID = std::to_string(row->SchID);
    p.LastDueDate = shown(row->DueDate);
    p.NextDueDate = shown(book.DueBehind(*row));
    p.PayableAmt = row->PayableAmt;
    p.DragInt = row->CapitalAmt - row->CapitalPayment;
    p.IntChargeAmt = row->InterestAmt - row->InterestPayment;
  }
  return true;
}

// Payments that come to a loan of the office.
void MovePlanner::TakeStoredLoan(const std::string& loan_id, const std::string& key,
                                 const std::vector<StagedLine>& lines, CustomerPlan* plan) {
  if (lines.empty()) return;
  const auto stored = ReadLedgerLoan(main_, loan_id);
  const Recordset row = main_.Query(
      "SELECT CustID,CompCode,LoanStatus,TrxDate,PayOutAmt FROM LoanMast WHERE "
      "LoanID=" +
      QuoteStr(loan_id));
  LoanPlan loan;
  loan.loan_id = loan_id;
  loan.key = key;
  bool comes = stored && !row.Eof() && SameText(NullToEmpty(row.Field("CompCode")), company_);
  Caption why = LoanNotFound(loan_id);
  if (comes) {
    const std::string status = NullToEmpty(row.Field("LoanStatus"));
    int fresh = 0;
    std::map<std::string, int> occurrences;
    for (const StagedLine& line : lines) {
      const std::string first = PaymentKey(line, key, 0);
      if (TakenAs(MoveKind::payments, PaymentKey(line, key, ++occurrences[first])).empty()) ++fresh;
    }
    if (fresh == 0) {
      report_.Of(MoveKind::payments).known += static_cast<int>(lines.size());
      return;
    }
    comes = SameText(status, "ACTIVE");
    why = NoPaymentFor(status);
  }
  if (!comes) {
    RefuseAll(lines, why);
    return;
  }
  LoanBook book(*stored);
  const DateTime* const lent = row.Field("TrxDate").AsDate();
  if (!TakePayments(&loan, &book, lent != nullptr ? Format(*lent, "dd-mm-yyyy") : "",
                    Sen(row, "PayOutAmt"))) {
    return;
  }
  plan->cust_id = NullToEmpty(row.Field("CustID"));
  if (!loan.payments.empty()) plan->loans.push_back(std::move(loan));
}

}  // namespace kaunter
