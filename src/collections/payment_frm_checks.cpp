// What a save asks before it writes, in the order in which the clerk meets it. A delete runs the
// same checks, but for those of figures that it does not use.
#include <fmt/format.h>

#include <algorithm>

#include "collections/payment_checks.h"
#include "collections/payment_frm.h"
#include "collections/refusals.h"
#include "compliance/aml.h"
#include "core/boxes.h"
#include "core/password_screens.h"
#include "core/values.h"

namespace kaunter {

bool PaymentFrm::Passes(const std::optional<Refusal>& refusal) {
  if (!refusal) return true;
  Control* const box = Find(refusal->field);
  return box != nullptr ? Refuse(*box, refusal->text) : Refuse(refusal->text);
}

bool PaymentFrm::CheckAll() {
  if (LoanID.empty()) return Refuse(LoanID, {"Loan ID required", "请输入贷款编号"});
  if (!CheckDrawn() || !CheckDiscountRight() || !MayEdit()) return false;
  if (!SameText(LoanID.text(), loaded_loan_)) {
    return Refuse(LoanID, kLoanRequired);
  }
  FillBlanks();
  return (IsDelete() || CheckFigures()) && CheckBalance() && CheckTally() && CheckDate() &&
         CheckNotNothing() && (IsDelete() || CheckLeftBoxes()) && CheckAmlThreshold() &&
         (IsDelete() || (AgreedToCredit() && AgreedToExtra()));
}

bool PaymentFrm::CheckDrawn() {
  return Passes(kaunter::CheckDrawn(AmountIn(PayAmt), AmountIn(PayOutAmt)));
}

bool PaymentFrm::CheckDiscountRight() {
  return Passes(kaunter::CheckDiscountRight(session(), AmountIn(DiscAmt)));
}

bool PaymentFrm::MayEdit() {
  if (!IsEdit() || session().AllowEdit || SignedIn) return true;
  SignedIn = ManagerOverride(session(), desk(),
                             {"save payment " + loaded_payment_, "储存付款 " + loaded_payment_},
                             CompCode.text());
  if (SignedIn) return true;
  const std::string& user = session().CurrentUserID;
  return Refuse({fmt::format("User {} Level not allow to edit or delete payment record", user),
                 fmt::format("用户 {} 不可更改或删除付款记录", user)});
}

void PaymentFrm::FillBlanks() {
  FillBlank(Bank, "CASH");
  FillBlank(LampiranStatus, GroupFor(AmountIn(NewLoanBal)));
  for (TextBox* box : {&PayAmt, &IntAmt, &DiscAmt, &IntChargeAmt, &CollectorAmt, &SalesmanComm,
                       &ChargeAmt, &MPayment, &PayableAmt}) {
    FillBlank(*box, "0");
  }
  FillBlank(SalesmanID, "NIL");
  FillBlank(TopUpAmt, "0.00");
  FillBlank(TopAmt, "0.00");
  FillBlank(TopTerm, "0");
}

bool PaymentFrm::CheckBalance() {
  return IsDelete() || Passes(kaunter::CheckBalance(AmountIn(PayAmt), AmountIn(OldLoanBal),
                                                    IsFlexi(), [this] { return FlexiLimit(); }));
}

bool PaymentFrm::CheckTally() {
  return Passes(
      kaunter::CheckTally(AmountIn(PayAmt), AmountIn(InstalAmt), AmountIn(PayExtra), IsFlexi()));
}

bool PaymentFrm::CheckDate() {
  if (!IsDate(PayDate.text())) return Refuse(PayDate, {"Date is required", "请输入付款日"});
  FillBlank(CollectInfoID, "CASH");
  return true;
}

bool PaymentFrm::CheckNotNothing() {
  auto refusal = CheckSomethingPaid({AmountIn(IntAmt), AmountIn(CollectorAmt), AmountIn(PayAmt),
                                     AmountIn(ChargeAmt), AmountIn(TopAmt), AmountIn(PayExtra),
                                     AmountIn(InstalAmt)});
  if (refusal && TotPay.locked()) refusal->field = "PayAmt";
  return Passes(refusal);
}

bool PaymentFrm::CheckLeftBoxes() {
  if (!LeaveRefund() || !LeaveMultiple() || !CheckTopTerm()) return false;
  // What the cheque brings with it changes the amounts: they are looked at once more.
  if (ChqNo.text() != checked_cheque_ &&
      (!LeaveCheque() || !CheckDrawn() || !CheckBalance() || !CheckTally())) {
    return false;
  }
  return LeavePayDate();
}

bool PaymentFrm::CheckAmlThreshold() {
  if (!session().settings.AMLA || IsDelete() || !AmlPage.visible() ||
      !LoadAMLSettings(session(), CompCode.text())) {
    return true;
  }
  const Money amount = AmountIn(PayAmt) + AmountIn(IntAmt) + AmountIn(CollectorAmt) +
                       AmountIn(ChargeAmt) - AmountIn(DiscAmt);
  const ThresholdDecision decision = JudgePayment(session().aml, amount, AMLACode.text());
  using Act = ThresholdDecision::Act;
  if (decision.act == Act::nothing) return true;
  desk().Message(MessageKind::warning, kThresholdTitle, decision.text);
  if (decision.act == Act::warn) return true;
  AMLACode.SetMark(true);
  FocusOn(AMLACode);
  return false;
}

// More late interest than is owed makes the outstanding charges fall below zero, where each later
// payment is credited with them anew.
bool PaymentFrm::AgreedToCredit() {
  const Money late = AmountIn(IntAmt);
  if (IsEdit() && late == snapshot_.IntAmt) return true;
  // What this payment has paid before may be paid again.
  const Money outstanding = AmountIn(DragIntType) + std::max(snapshot_.IntAmt, Money());
  const Money waived = AmountIn(WaivedAmt);
  const Money owed = outstanding - waived;
  Caption text;
  if (late < Money()) {
    const std::string credit = ShowMoney(-late);
    text = {
        fmt::format("Interest Payment is {}: {} more is credited than is received, and every "
                    "later payment is credited with it again.\nSave all the same ?",
                    ShowMoney(late), credit),
        fmt::format("逾期利息付款为 {}：入账比实收多 {}，以后每次付款还会再入账一次。\n仍要储存？",
                    ShowMoney(late), credit)};
  } else if (late > owed && !(late.IsZero() && waived.IsZero())) {
    text = {fmt::format("Interest Payment {} is more than what is owed: {} outstanding, of which "
                        "the date waives {}. The {} too much is credited again with every later "
                        "payment.\nSave all the same ?",
                        ShowMoney(late), ShowMoney(outstanding), ShowMoney(waived),
                        ShowMoney(late - owed)),
            fmt::format("逾期利息付款 {} 多过所欠：未付收费 {}，其中按日期豁免 {}。多付的 {} "
                        "以后每次付款都会再入账一次。\n仍要储存？",
                        ShowMoney(late), ShowMoney(outstanding), ShowMoney(waived),
                        ShowMoney(late - owed))};
  } else {
    return true;
  }
  if (ConfirmLoss(text)) return true;
  FocusOn(IntAmt);
  return false;
}

bool PaymentFrm::AgreedToExtra() {
  const Money extra = AmountIn(PayExtra);
  if (!IsFlexi() || extra <= Money()) return true;
  if (IsEdit() && extra == snapshot_.PayExtra && AmountIn(InstalAmt) == snapshot_.InstalAmt) {
    return true;
  }
  const auto preview = Preview();
  if (!preview) return true;
  const Money too_much = -std::min(preview->NewLoanBal, preview->last_balance);
  if (too_much <= Money()) return true;
  if (ConfirmLoss(
          {fmt::format("Extra Capital {} is {} more than the capital that is left: it opens an "
                       "instalment that nobody owes.\nSave all the same ?",
                       ShowMoney(extra), ShowMoney(too_much)),
           fmt::format("额外本金 {} 比所剩本金多 {}，会开出一期没有人欠的分期。\n仍要储存？",
                       ShowMoney(extra), ShowMoney(too_much))})) {
    return true;
  }
  FocusOn(PayExtra);
  return false;
}

}  // namespace kaunter
