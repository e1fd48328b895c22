// What happens when a box of the payment screen is left: how the money handed over is split, and
// what each box refuses.
#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "collections/instalment.h"
#include "collections/late_interest.h"
#include "collections/pay_day.h"
#include "collections/payment_checks.h"
#include "collections/payment_frm.h"
#include "collections/refusals.h"
#include "core/amounts.h"
#include "core/boxes.h"
#include "core/values.h"

namespace kaunter {
namespace {

const Caption kPleaseCheck = {"Invalid Amount, Please check", "金额不正确，请检查"};
const Caption kInvalidTerm = {"Invalid Term", "期数不正确"};

Caption Invalid(const Caption& name) {
  return {fmt::format("Invalid {}, Please check", name.english),
          fmt::format("{}不正确，请检查", name.chinese)};
}
Caption Invalid(const Control& box) { return Invalid(box.caption()); }

}  // namespace

void PaymentFrm::BindAmounts() {
  amounts_ = {
      {&PayAmt, kPleaseCheck},
      {&InstalAmt, kInvalidAmount},
      {&PayExtra, kInvalidAmount},
      // Outstanding charges that were over-paid come back through it.
      {&IntAmt, Invalid(IntAmt), true},
      {&ChargeAmt, {"Invalid Refund Deposit Amount, Please check", "退还押金金额不正确，请检查"}},
      {&CollectorAmt, Invalid(CollectorAmt)},
      {&DiscAmt, Invalid({"Discount", "折扣"})},
      {&Memo5, Invalid({"Late Interest", "逾期利息"})},
      {&MPayment, {"Invalid data, Please check", "资料不正确，请检查"}},
      {&SalesmanComm, Invalid(SalesmanComm)},
      {&TopAmt, kInvalidTerm},
      {&TopTerm, kInvalidTerm},
      {&TopUpAmt, {"Invalid Topup Loan Amount, Please check!", "加借额不正确，请检查！"}},
      {&BankOpenBal, Invalid(BankOpenBal), true},
      {&WithdrawAmt, Invalid(WithdrawAmt)},
      {&RepaymentAmt, Invalid(RepaymentAmt)},
  };
  for (const AmountBox& amount : amounts_) {
    TextBox& box = *amount.box;
    box.onLeave = [this, &box] {
      if (LeaveAmount(box) && !box.empty() && box.kind() == Kind::money) {
        box.SetText(ShowMoney(box.text()));
      }
    };
  }
  TotPay.onLeave = [this] { LeaveTotal(); };
  PayAmt.onLeave = [this] { LeavePayAmt(); };
  IntAmt.onLeave = [this] {
    if (LeaveAmount(IntAmt)) ShowTotal();
  };
  InstalAmt.onLeave = [this] { LeaveInstalment(); };
  PayExtra.onLeave = [this] { LeaveExtra(); };
  ChargeAmt.onLeave = [this] { LeaveRefund(); };
  MPayment.onLeave = [this] { LeaveMultiple(); };
  for (TextBox* box : {&TopAmt, &TopTerm}) {
    box->onLeave = [this, box] { LeaveTopUp(*box); };
  }
  for (TextBox* box : {&BankOpenBal, &WithdrawAmt, &RepaymentAmt}) {
    box->onLeave = [this, box] { LeaveBankFigure(*box); };
  }
  ChqNo.onLeave = [this] { LeaveCheque(); };
  PayDate.onLeave = [this] { LeavePayDate(); };
  // Whatever was typed, the sentence below the amounts tells what becomes of it.
  std::vector<Control*> tellers = {&TotPay, &ChqNo, &PayDate};
  for (const AmountBox& amount : amounts_) tellers.push_back(amount.box);
  for (Control* box : tellers) {
    box->onLeave = [this, leave = box->onLeave] {
      leave();
      ShowSplit();
    };
  }
  WithdrawDate.onLeave = [this] { CheckDateBox(session(), WithdrawDate, Invalid(WithdrawDate)); };
}

bool PaymentFrm::Fits(const AmountBox& amount) {
  const TextBox& box = *amount.box;
  if (Trim(box.text()).empty()) return true;
  const auto value = Money::TryText(box.text());
  const bool whole = box.kind() != Kind::integer ||
                     box.text().find_first_not_of("0123456789") == std::string::npos;
  return value && whole && (amount.may_be_negative || *value >= Money());
}

bool PaymentFrm::CheckAmount(const AmountBox& amount) {
  return Fits(amount) || Refuse(*amount.box, amount.invalid);
}

bool PaymentFrm::LeaveAmount(TextBox& box) {
  box.SetText(Trim(box.text()));
  box.SetMark(false);
  for (const AmountBox& amount : amounts_) {
    if (amount.box == &box) return CheckAmount(amount);
  }
  return true;
}

bool PaymentFrm::CheckTotal() {
  if (TotPay.locked() || TotPay.empty()) return true;
  const auto total = Money::TryText(TotPay.text());
  return (total && (*total >= Money() || GivesBack(*total))) ||
         Refuse(TotPay, {"Invalid Total Payment", "付款总额不正确"});
}

bool PaymentFrm::GivesBack(Money total) const {
  return TotPay.text() == split_total_ && total == AmountIn(PayAmt) + AmountIn(IntAmt) &&
         AmountIn(IntAmt) >= AmountIn(DragIntType);
}

bool PaymentFrm::CheckFigures() {
  if (!CheckTotal()) return false;
  for (const AmountBox& amount : amounts_) {
    if (!CheckAmount(amount)) return false;
  }
  return CheckDateBox(session(), WithdrawDate, Invalid(WithdrawDate));
}

// --- the total and its parts

// Outstanding late interest is paid first.
void PaymentFrm::LeaveTotal() {
  if (TotPay.locked()) return;
  TotPay.SetText(Trim(TotPay.text()));
  TotPay.SetMark(false);
  if (TotPay.empty()) TotPay.SetText("0");
  if (!CheckTotal()) return;
  if (TotPay.text() == split_total_) return;  // a split changed by hand since then stays
  const Money total = Money::FromText(TotPay.text());
  const Money outstanding = AmountIn(DragIntType);
  const Money interest = total > outstanding ? outstanding : total;
  IntAmt.SetText(interest.ToText());
  PayAmt.SetText((total - interest).ToText());
  const std::string typed = TotPay.text();
  SpreadPayAmt();
  TotPay.SetText(typed);
  split_total_ = typed;
}

void PaymentFrm::LeavePayAmt() {
  if (LoanID.empty() || SchID.empty() || PayAmt.locked() || !LeaveAmount(PayAmt)) return;
  if (PayAmt.empty()) PayAmt.SetText("0");
  if (AmountIn(PayAmt) > AmountIn(OldLoanBal)) {
    if (!IsFlexi()) {
      Refuse(PayAmt, {"Payment cannot more than Payable Amount", "付款不可多过应还数额"});
      return;
    }
    if (!CheckFlexiLimit()) return;
  }
  SpreadPayAmt();
}

void PaymentFrm::SpreadPayAmt() {
  const Money pay = AmountIn(PayAmt);
  if (!IsFlexi() || AmountIn(InstalAmt) + AmountIn(PayExtra) != pay) {
    InstalAmt.SetText(Format(pay, "#,##0.00"));
    PayExtra.SetText("0.00");
  }
  ShowNewBalance();
  ShowTotal();
}

void PaymentFrm::ShowNewBalance() {
  if (IsFlexi()) return;  // the rebuild tells it
  NewLoanBal.SetText(ShowMoney(AmountIn(OldLoanBal) - AmountIn(PayAmt) + AmountIn(TopAmt)));
}

void PaymentFrm::ShowTotal() {
  TotPay.SetText(ShowMoney(AmountIn(PayAmt) + AmountIn(IntAmt)));
  split_total_ = TotPay.text();
}

std::optional<PaymentPreview> PaymentFrm::Preview() const {
  if (!ledger_) return std::nullopt;
  try {
    return PreviewPayment(*ledger_, Collected());
  } catch (const std::runtime_error&) {
    return std::nullopt;  // a row that no rebuild comes through, which tells it
  }
}

void PaymentFrm::ShowSplit() {
  SplitLBL.SetText({});
  if (IsDelete() || loaded_loan_.empty() || !std::all_of(amounts_.begin(), amounts_.end(), Fits)) {
    return;
  }
  const auto preview = Preview();
  SplitLBL.SetText(session().In(InWords(Collected(), preview)));
  OfferGroup(preview);
}

void PaymentFrm::OfferGroup(const std::optional<PaymentPreview>& preview) {
  if (!IsEdit() || offered_group_.empty()) return;
  const Money balance = IsFlexi() && preview ? preview->NewLoanBal : AmountIn(NewLoanBal);
  const std::string group = GroupFor(balance);
  if (group == offered_group_) return;
  if (SameText(LampiranStatus.text(), offered_group_)) LampiranStatus.SetText(group);
  offered_group_ = group;
}

void PaymentFrm::LeaveInstalment() {
  if (InstalAmt.locked() || !LeaveAmount(InstalAmt)) return;
  if (AmountIn(InstalAmt) > AmountIn(PayAmt)) {
    Refuse(InstalAmt, {"Installment cannot more than Payment Amount", "分期付款不可多过付款额"});
    return;
  }
  PayExtra.SetText(Format(AmountIn(PayAmt) - AmountIn(InstalAmt), "#,##0.00"));
  PayExtra.SetMark(false);
}

void PaymentFrm::LeaveExtra() {
  if (PayExtra.locked() || !LeaveAmount(PayExtra)) return;
  if (AmountIn(PayExtra) > AmountIn(PayAmt)) {
    Refuse(PayExtra, {"Extra cannot more than Payment Amount", "额外本金不可多过付款额"});
    return;
  }
  InstalAmt.SetText(Format(AmountIn(PayAmt) - AmountIn(PayExtra), "#,##0.00"));
  InstalAmt.SetMark(false);
}

Money PaymentFrm::FlexiLimit() {
  // What this payment has paid before may be paid again.
  return OpenOnSchedule(main(), LoanID.text()) + snapshot_.PayAmt;
}

bool PaymentFrm::CheckFlexiLimit() {
  const Money limit = FlexiLimit();
  return AmountIn(PayAmt) <= limit || Refuse(PayAmt, AboveOpen(limit));
}

bool PaymentFrm::LeaveRefund() {
  if (ChargeAmt.locked()) return true;
  if (!LeaveAmount(ChargeAmt)) return false;
  const Money refund = AmountIn(ChargeAmt);
  // What was refunded already stands, though the deposit was lowered since.
  if (refund == snapshot_.ChargeAmt || LoanID.empty()) return true;
  const Money deposit = Sen(ScalarQuery(
      main(), "SELECT DepositAmt2 FROM LoanMast WHERE LoanID=" + QuoteStr(LoanID.text())));
  const Money refunded = Sen(ScalarQuery(
      main(), fmt::format("SELECT SUM(ChargeAmt) FROM PaymentMast WHERE LoanID={} AND PayID <> {}",
                          QuoteStr(LoanID.text()), QuoteStr(loaded_payment_))));
  return Passes(CheckRefund(refund, refunded, deposit));
}

bool PaymentFrm::LeaveMultiple() {
  if (!LeaveAmount(MPayment)) return false;
  if (AmountIn(MPayment).IsZero() || LoanID.empty() || SchID.empty()) return true;
  const int rows = CLng(
      ScalarQuery(main(), "SELECT COUNT(*) FROM SchMast WHERE LoanID=" + QuoteStr(LoanID.text())));
  const int ahead = rows - CLng(SchID.text());
  if (CDbl(MPayment.text()) <= ahead) return true;
  return Refuse(MPayment, {fmt::format("Cannot exceed {} payment", ahead),
                           fmt::format("不可超过 {} 期付款", ahead)});
}

void PaymentFrm::LeaveTopUp(TextBox& box) {
  if (box.locked() || !LeaveAmount(box)) return;
  if (TopAmt.empty() || TopTerm.empty()) TopUpAmt.SetText("0.00");
  if (CheckTopTerm()) ShowNewBalance();
}

bool PaymentFrm::CheckTopTerm() {
  if (!IsFlexi() || AmountIn(TopTerm) <= Money::FromInteger(1)) return true;
  return Refuse(TopTerm,
                {"Flexi Loan not allow to Topup more than 1 term", "弹性贷款不可加借超过一期"});
}

// --- how it was paid

bool PaymentFrm::LeaveCheque() {
  ChqNo.SetText(Trim(ChqNo.text()));
  ChqNo.SetMark(false);
  if (ChqNo.locked() || ChqNo.text() == checked_cheque_) return true;
  if (!ChqNo.empty() && !LoanID.empty()) {
    const Recordset cheque = main().Query(
        fmt::format("SELECT ChqAmt,ChqBank,PayID FROM ChqMast WHERE LoanID={} AND ChqNo={}",
                    QuoteStr(LoanID.text()), QuoteStr(ChqNo.text())));
    if (!cheque.Eof()) {
      const std::string taken_by = NullToEmpty(cheque.Field("PayID"));
      if (!taken_by.empty() && !SameText(taken_by, loaded_payment_)) {
        ChqNo.Clear();
        checked_cheque_.clear();
        return Refuse(ChqNo, kChequeTaken);
      }
      PayAmt.SetText(ShowMoney(cheque.Field("ChqAmt")));
      TotPay.SetText(PayAmt.text());
      Bank.SetText(NullToEmpty(cheque.Field("ChqBank")));
      CollectInfoID.SetText("CHEQUE");
      SpreadPayAmt();
    }
  }
  checked_cheque_ = ChqNo.text();
  return true;
}

void PaymentFrm::LeaveBankFigure(TextBox& box) {
  if (box.locked() || !LeaveAmount(box)) return;
  if (&box == &RepaymentAmt && box.empty()) {
    box.SetText(ShowMoney(AmountIn(PayAmt) + AmountIn(CollectorAmt) + AmountIn(IntAmt) +
                          AmountIn(ChargeAmt) - AmountIn(DiscAmt)));
  }
  if (!box.empty()) box.SetText(ShowMoney(box.text()));
  const auto difference = [](const TextBox& from, const TextBox& less) {
    return from.empty() || less.empty() ? std::string()
                                        : ShowMoney(AmountIn(from) - AmountIn(less));
  };
  BankCloseBal.SetText(difference(BankOpenBal, WithdrawAmt));
  BankinReturn.SetText(difference(WithdrawAmt, RepaymentAmt));
}

// --- the day

bool PaymentFrm::LeavePayDate() {
  PayDate.SetText(Trim(PayDate.text()));
  PayDate.SetMark(false);
  if (PayDate.locked() || PayDate.empty() || PayDate.text() == checked_date_) return true;
  ForgetLateCharges();
  checked_date_.clear();
  if (!IsDate(PayDate.text())) {
    return Refuse(PayDate, {"Invalid Date, Please check", "日期不正确，请检查"});
  }
  if (LoanID.empty()) return true;
  if (IsBeforeLoanDate(main(), PayDate.text(), LoanID.text())) {
    return Refuse(PayDate, kBeforeLoanDate);
  }
  if (IsHolidayBlocked(session(), desk(), PayDate.text(), true, true)) {
    FocusOn(PayDate);
    return false;
  }
  FindLateCharges();
  WarnPaidThisMonth(session(), desk(), loaded_payment_, LoanID.text(), PayDate.text());
  checked_date_ = PayDate.text();
  return true;
}

// Late charges that the batch has posted for days after this payment are waived by its save.
void PaymentFrm::FindLateCharges() {
  ForgetLateCharges();
  if (LoanID.empty() || !IsDate(PayDate.text())) return;
  const std::string obsolete = ObsoleteCharges(LoanID.text(), PayDate.text(), NextDueDate.text());
  PendingChargeUpdate = "UPDATE ChargeMast SET OrgAmt=ChargeAmt,ChargeAmt=0 WHERE " + obsolete;
  late_charges_ =
      "SELECT ChargeID,LoanID,TrxDate,DueDate,ChargeAmt FROM ChargeMast WHERE " + obsolete;
  Recordset found = main().Query(late_charges_);
  const std::size_t count = found.RowCount();
  Money waived;
  for (; !found.Eof(); found.MoveNext()) waived += Sen(found, "ChargeAmt");
  // A changed date waives nothing.
  if (IsNew() && loaded_payment_.empty()) WaivedAmt.SetText(ShowMoney(waived));
  ListCmd.SetVisible(count > 0);
  ListCmd.SetCaption(
      {fmt::format("{} Late Charge Found", count), fmt::format("有 {} 笔逾期收费", count)});
}

void PaymentFrm::ShowLateCharges() {
  if (!desk().CanShow("BatchListfrm")) return;
  session().HandOverSelection = late_charges_;
  desk().Show("BatchListfrm");
  session().HandOverSelection.clear();
  session().MsgTitle = PaymentMode;
}

void PaymentFrm::ForgetLateCharges() {
  PendingChargeUpdate.clear();
  late_charges_.clear();
  WaivedAmt.Clear();
  ListCmd.SetVisible(false);
}

}  // namespace kaunter
