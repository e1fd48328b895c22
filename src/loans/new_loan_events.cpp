// What happens when a box of the loan screen is left or a choice is made: checks, shown forms, and
// the figures that follow from other figures.
//
// Once money has gone out the terms stand: a choice that stays open (scheme, collateral) then
// recalculates nothing.
#include <fmt/format.h>

#include <optional>

#include "core/boxes.h"
#include "core/password_screens.h"
#include "core/values.h"
#include "loans/calc_payment.h"
#include "loans/loan_checks.h"
#include "loans/new_loan_frm.h"
#include "loans/step_date.h"

namespace kaunter {
namespace {

constexpr int kManager = 3;  // level from which a collateral value needs no second person

Money Amount(const std::string& text) { return Money::TryText(text).value_or(Money()); }

// T where the box holds one that is not zero.
std::optional<int> TermIn(const TextBox& box) {
  if (CheckLoanTerm(box.text())) return std::nullopt;
  return CLng(box.text());
}

}  // namespace

void NewLoanFrm::BindLoanEvents() {
  // Every box of a number or a date; those with more to do are bound anew below.
  for (Control* control : controls()) {
    if (control->type() != ControlType::text_box) continue;
    auto& box = static_cast<TextBox&>(*control);
    if (box.kind() == Kind::money) {
      box.onLeave = [this, &box] { LeaveMoney(box, kInvalidAmount); };
    } else if (box.kind() == Kind::date) {
      box.onLeave = [this, &box] { LeaveDate(box, kInvalidDate); };
    }
  }
  TrxDate.onLeave = [this] {
    const bool good = LeaveDate(TrxDate, {"Invalid date, Please check", "日期不正确，请检查"});
    if (good) StepNextDueDate(LoanAmt);
  };
  LoanTypeID.onPick = [this] { StepNextDueDate(InstallmentAmt); };
  LoanType.onPick = [this] {
    if (InsRate.enabled()) InsRate.SetText(LoanType.index() == 0 ? "12" : "18");
  };
  DragLoan.onPick = [this] { PickScheme(); };
  LoanAmt.onLeave = [this] {
    if (!Filled(LoanAmt)) return;
    if (auto refusal = CheckLoanAmt(LoanAmt.text())) {
      RefuseWith(*refusal);
      return;
    }
    LoanAmt.SetText(ShowMoney(LoanAmt.text()));
    AutomaticFees();
  };
  InsRate.onLeave = [this] {
    if (Filled(InsRate)) {
      if (auto refusal = CheckInsRate(InsRate.text())) {
        InsRate.SetText("0");
        RefuseWith(*refusal);
        return;
      }
    }
    CalculatePayment(false);
    if (LateChargePerDay.empty()) LateChargePerDay.SetText(InsRate.text());
  };
  LateChargePerDay.onLeave = [this] {
    if (!Filled(LateChargePerDay)) return;
    if (CheckInsRate(LateChargePerDay.text())) {
      Refuse(LateChargePerDay, {"Invalid Late Interest Rate", "逾期利率不正确"});
    }
  };
  OfferDays.onLeave = [this] {
    if (!Filled(OfferDays)) return;
    if (CheckLoanTerm2(OfferDays.text())) {
      Refuse(OfferDays, {"Invalid Offer Days", "宽限天数不正确"});
    }
  };
  LoanTerm.onLeave = [this] { LeaveLoanTerm(); };
  LoanTerm2.onLeave = [this] { LeaveLoanTerm2(); };
  LoanTerm3.onLeave = [this] { LeaveLoanTerm3(); };
  TopUpAmt.onLeave = [this] {
    // Misspelt as every office knows it.
    if (LeaveMoney(TopUpAmt, {"Invalid Depostit Amount", "加借额不正确"})) CalculatePayment(false);
  };
  FirstPayment.onLeave = [this] { LeaveFirstPayment(); };
  InstallmentAmt.onLeave = [this] { LeaveInstallmentAmt(); };
  LastPayment.onLeave = [this] { LeaveLastPayment(); };
  property.Memo4.onLeave = [this] { LeaveCollateralValue(); };
  OldLoanCode.onLeave = [this] {
    if (Filled(OldLoanCode)) CheckOldLoanCode();
  };
  Command3.onClick = [this] {
    // What was edited in the grid is given up for the terms.
    if (SchChanged.checked() && !loaded_id_.empty()) LoadSchedule();
    SchChanged.SetChecked(false);
    CalculatePayment(true);
  };
  Command5.onClick = [this] { CalculateRate(); };
  Command9.onClick = [this] { CalculateLoanAmt(); };
  Command8.onClick = [this] { desk().Show("PaymentReaderfrm"); };
}

bool NewLoanFrm::Filled(TextBox& box) {
  box.SetText(Trim(box.text()));
  box.SetMark(false);
  return !box.empty();
}

bool NewLoanFrm::LeaveMoney(TextBox& box, const Caption& refusal) {
  if (!Filled(box)) return false;
  const auto amount = Money::TryText(box.text());
  if (!amount) return Refuse(box, refusal);
  box.SetText(ShowMoney(*amount));
  return true;
}

bool NewLoanFrm::LeaveDate(TextBox& box, const Caption& refusal) {
  return Filled(box) && (IsDate(box.text()) || Refuse(box, refusal));
}

void NewLoanFrm::LeaveLoanTerm() {
  const bool typed = Filled(LoanTerm);
  if (!typed) LoanTerm.SetText("0");
  if (LoanTerm2.empty()) LoanTerm2.SetText("0");
  if (typed && IsNumeric(LoanTerm.text()) && CDbl(LoanTerm.text()) == 0) {
    Refuse(LoanTerm, {"Loan Term cannot in 0", "贷款期数不可为 0"});
    return;
  }
  if (typed) {
    if (auto refusal = CheckLoanTerm(LoanTerm.text())) {
      RefuseWith(*refusal);
      return;
    }
  }
  // The bullet term is a copy first: the payment is refused while it is blank.
  if (DragLoan.index() == 0) LoanTerm3.SetText(LoanTerm.text());
  CalculatePayment(false);
}

void NewLoanFrm::LeaveLoanTerm2() {
  if (Filled(LoanTerm2)) {
    if (!IsNumeric(LoanTerm2.text()) || CDbl(LoanTerm2.text()) < 0) {
      LoanTerm2.Clear();
      Refuse(LoanTerm2, kInvalidAmount);
      return;
    }
    LoanTerm2.SetText(NumberText(Int(CDbl(LoanTerm2.text()))));
  }
  CalculatePayment(false);
}

void NewLoanFrm::LeaveLoanTerm3() {
  const bool typed = Filled(LoanTerm3);
  if (!typed) LoanTerm3.SetText(LoanTerm2.text());
  if (typed) {
    if (!IsNumeric(LoanTerm3.text())) {
      Refuse(LoanTerm3, {"Invalid Loan Bullet Term Value", "期满期数不正确"});
      return;
    }
    if (CDbl(LoanTerm3.text()) == 0) {
      Refuse(LoanTerm3, {"Bullet Term cannot in 0", "期满期数不可为 0"});
      return;
    }
  }
  CalculatePayment(false);
}

void NewLoanFrm::PickScheme() {
  if (!TermsOpen) return;
  const bool flexi = DragLoan.index() == 1;
  SpecialSch.SetEnabled(flexi);
  LoanTerm3.SetEnabled(flexi);
  if (!flexi) {
    SpecialSch.SetChecked(false);
    LoanTerm3.SetText(LoanTerm.text());
  }
  CalculatePayment(false);
}

void NewLoanFrm::LeaveFirstPayment() {
  const bool good = LeaveMoney(
      FirstPayment, {"Invalid First Payment Amount, Please check", "首期金额不正确，请检查"});
  const auto term = TermIn(LoanTerm);
  const auto instalment = Money::TryText(InstallmentAmt.text());
  if (!good || !term || !instalment || Amount(LoanBal.text()).IsZero()) return;
  LastPayment.SetText(ShowMoney(Amount(LoanBal.text()) - std::int64_t{*term - 1} * *instalment));
  // The first instalment is no figure of its own: what was typed gives way.
  FirstPayment.SetText(InstallmentAmt.text());
}

void NewLoanFrm::LeaveInstallmentAmt() {
  const bool good = LeaveMoney(InstallmentAmt, {"Invalid Installment Amount", "分期金额不正确"});
  const auto term = TermIn(LoanTerm);
  if (!good || !term || !IsNumeric(LoanBal.text())) return;
  LastPayment.SetText(
      Format(CDbl(LoanBal.text()) - CDbl(InstallmentAmt.text()) * (*term - 1), "#,##0.00"));
}

void NewLoanFrm::LeaveLastPayment() {
  const bool good = LeaveMoney(LastPayment, {"Invalid Final Payment Amount", "末期金额不正确"});
  const auto term = TermIn(LoanTerm);
  if (!good || !term) return;
  LoanBal.SetText(ShowMoney(std::int64_t{*term - 2} * Amount(InstallmentAmt.text()) +
                            Amount(LastPayment.text()) + Amount(FirstPayment.text()) -
                            Amount(TotPay.text())));
}

void NewLoanFrm::LeaveCollateralValue() {
  if (!Filled(property.Memo4)) return;
  if (LoanAmt.empty()) {
    Refuse(property.Memo4, {"Loan Amount is required", "请输入贷款金额"});
    return;
  }
  if (!LeaveMoney(property.Memo4, {"Invalid Value", "价值不正确"})) return;
  if (Amount(property.Memo4.text()) >= Amount(LoanAmt.text()) || session().CurrentLevel >= kManager)
    return;
  const bool asked = Confirm({"Collateral value cannot less than loan amount, Authorise ?",
                              "抵押品价值不可少过贷款额，要批准吗？"});
  const Caption what{fmt::format("collateral of {} for a loan of {} to {}", property.Memo4.text(),
                                 LoanAmt.text(), CustID.text()),
                     fmt::format("以价值 {} 的抵押品贷款 {} 给 {}", property.Memo4.text(),
                                 LoanAmt.text(), CustID.text())};
  if (asked && ManagerOverride(session(), desk(), what)) return;
  property.Memo4.Clear();
  Refuse(property.Memo4, {"Authorised failed", "批准失败"});
}

void NewLoanFrm::StepNextDueDate(const Control& must_be_enabled) {
  const auto from = DateTime::FromDisplay(TrxDate.text());
  if (!from || !must_be_enabled.enabled() || !IsRepaymentCode(LoanTypeID.text())) return;
  NextDueDate.SetText(ShowDate(StepDate(LoanTypeID.text(), *from, false)));
}

void NewLoanFrm::AutomaticFees() {
  const auto fee = [this](const std::string& rate, TextBox& box) {
    if (!IsNumeric(rate)) return;
    const double per_cent = CDbl(Money::FromText(LoanAmt.text())) / 100;
    box.SetText(Format(per_cent * CDbl(Money::FromText(rate)), "#,##0.00"));
  };
  fee(session().settings.AutoProcessingFeeRate, ProcessFee);
  fee(session().settings.AutoStampingFeeRate, DepositAmt);
}

bool NewLoanFrm::CalculatePayment(bool prompts) {
  if (!TermsOpen) return false;
  std::variant<PaymentFigures, Refusal> outcome;
  try {
    outcome = CalcPayment(Terms(), session().settings.RoundedInstallment);
  } catch (const std::overflow_error&) {
    outcome =
        Refusal{"LoanAmt", {"Loan Amount or Interest Rate is too large", "贷款金额或利率过大"}};
  }
  if (DragLoan.index() < 0 && std::holds_alternative<PaymentFigures>(outcome)) {
    outcome = Refusal{"DragLoan", {"Scheme / Flexi Loan is require", "请选择贷款方案"}};
  }
  if (const auto* refusal = std::get_if<Refusal>(&outcome)) {
    if (prompts) RefuseWith(*refusal);
    return false;
  }
  const auto& figures = std::get<PaymentFigures>(outcome);
  PayOutAmt2.SetText(figures.PayOutAmt2);
  if (figures.FirstPayment) FirstPayment.SetText(*figures.FirstPayment);
  InstallmentAmt.SetText(figures.InstallmentAmt);
  LastPayment.SetText(figures.LastPayment);
  LoanBal.SetText(figures.LoanBal);
  return true;
}

void NewLoanFrm::CalculateRate() {
  const auto outcome = CalcInt(Terms());
  if (const auto* refusal = std::get_if<Refusal>(&outcome)) RefuseWith(*refusal);
  if (const auto* rate = std::get_if<std::string>(&outcome)) InsRate.SetText(*rate);
}

void NewLoanFrm::CalculateLoanAmt() {
  const auto outcome = CalcLoanAmt(Terms());
  if (const auto* refusal = std::get_if<Refusal>(&outcome)) RefuseWith(*refusal);
  const auto* figures = std::get_if<LoanAmtFigures>(&outcome);
  if (figures == nullptr) return;
  if (LoanType.empty()) LoanType.SetText("Unsecured");
  LoanAmt.SetText(figures->LoanAmt);
}

bool NewLoanFrm::CheckOldLoanCode() {
  const auto refusal =
      kaunter::CheckAlternateCode(main(), Trim(OldLoanCode.text()), loaded_id_, CompCode.text());
  return !refusal || RefuseWith(*refusal);
}

}  // namespace kaunter
