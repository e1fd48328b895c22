// What a save of a loan asks before it writes, in the order in which the clerk meets it. A step
// passes, fills a blank, asks or refuses; a refusal changes nothing but the blanks filled so far.
// Close, open and delete run the same checks.
#include <fmt/format.h>

#include "compliance/aml.h"
#include "core/amounts.h"
#include "core/boxes.h"
#include "core/password_screens.h"
#include "core/values.h"
#include "customers/credit_limit.h"
#include "links/accounting_link.h"
#include "loans/new_loan_frm.h"
#include "loans/schedule.h"

namespace kaunter {
namespace {

constexpr int kAdmin = 4;  // level from which a rate below the lowest is a question

}  // namespace

bool NewLoanFrm::CheckAll() {
  return MayAmend() && CheckRequired() && CheckFirstInstalment() && CheckCollateral() &&
         CheckLateCharge() && CheckGuarantorIncome() && CheckScheme() && CheckAlternateCode() &&
         CheckFigures() && CheckLowestRate() && CheckInstalmentTotal() && CheckLinkAccounts() &&
         CheckCredit() && CheckEditedSchedule() && CheckTotalRate() && CheckAmlThreshold() &&
         (taken_application_.empty() || CheckApplicant(taken_application_));
}

bool NewLoanFrm::RefuseInPlace(Control& control, const Caption& text) {
  control.SetMark(true);
  return Refuse(text);
}

bool NewLoanFrm::MayAmend() {
  if (LoanMode == "Edit Loan" && !session().AllowEdit && !SignedIn) {
    SignedIn = ManagerOverride(
        session(), desk(),
        {fmt::format("save loan {}", LoanID.text()), fmt::format("储存贷款 {}", LoanID.text())},
        CompCode.text());
    if (!SignedIn) {
      const std::string& user = session().CurrentUserID;
      return Refuse({fmt::format("User {} Level not allow to edit or delete loan record", user),
                     fmt::format("{} 用户不可更改或删除贷款资料", user)});
    }
  }
  if (session().Special) {
    return Refuse({"You are not allow to amend this record", "您不可更改此资料"});
  }
  return true;
}

bool NewLoanFrm::CheckRequired() {
  if (CompCode.empty()) {
    return RefuseInPlace(CompCode, {"Company Code is required", "请选择公司"});
  }
  if (LoanTypeID.empty()) return Refuse(LoanTypeID, {"Loan Type required", "请选择还款方式"});
  if (LoanType.empty()) return Refuse(LoanType, {"Collateral Type required", "请选择抵押种类"});
  if (NextDueDate.empty()) {
    return RefuseInPlace(NextDueDate, {"Next due date required", "请输入下期到期日"});
  }
  if (CustID.empty()) return Refuse(CustID, {"Customer ID required", "请输入顾客编号"});
  if (TrxDate.empty()) return Refuse(TrxDate, {"Loan Date required", "请输入贷款日期"});
  if (LoanAmt.empty()) return Refuse(LoanAmt, {"Loan Amount required", "请输入贷款额"});
  if (InsRate.empty()) return Refuse(InsRate, {"Interest Rate required", "请输入利率"});
  return true;
}

bool NewLoanFrm::CheckFirstInstalment() {
  FillBlank(PayOutAmt, "0");
  // The text "0" alone; "00" is the business of the box itself.
  if (LoanTerm.empty() || LoanTerm.text() == "0") {
    return Refuse(LoanTerm, {"Loan Term required", "请输入贷款期数"});
  }
  if (FirstPayment.empty()) {
    return RefuseInPlace(FirstPayment, {"First Payment required", "请输入首期金额"});
  }
  return true;
}

bool NewLoanFrm::CheckCollateral() {
  if (LoanType.text() == "Secured") {
    if (property.CollateralID.empty()) {
      return RefuseInPlace(property.CollateralID, {"Collateral Type required", "请选择抵押品种类"});
    }
    if (property.Memo2.empty()) {
      return RefuseInPlace(property.Memo2, {"Collateral Desc required", "请输入抵押品说明"});
    }
    // The description a second time, never the value: loans without a value are lent.
    if (property.Memo2.empty()) {
      return RefuseInPlace(property.Memo2, {"Collateral Value required", "请输入抵押品市价"});
    }
  }
  return true;
}

bool NewLoanFrm::CheckLateCharge() {
  FillBlank(InstallmentAmt, FirstPayment.text());
  FillBlank(LastPayment, InstallmentAmt.text());
  FillBlank(IntType, "$");
  if (LateChargePerDay.empty()) {
    return Refuse(LateChargePerDay, {"Late Interest Rate PA required", "请输入逾期年利率"});
  }
  FillBlank(OfferDays, "0");
  return true;
}

bool NewLoanFrm::CheckGuarantorIncome() {
  const Caption refusals[] = {{"Guarantor Income required", "请输入担保人收入"},
                              {"Guarantor 2 Income required", "请输入担保人 2 收入"}};
  for (GuarantorBoxes& boxes : guarantors) {
    TextBox& income = boxes.GuarantorCompIncome;
    FillBlank(income, "0");
    if (!IsNumeric(income.text())) return RefuseInPlace(income, refusals[boxes.index]);
  }
  return true;
}

bool NewLoanFrm::CheckScheme() {
  if (DragLoan.index() < 0) {
    return RefuseInPlace(DragLoan, {"Scheme / Flexi Loan is require", "请选择贷款方案"});
  }
  FillBlank(Bank, "CASH");
  FillBlank(ProcessFee, "0");
  FillBlank(AdvertiseID, "NIL");
  FillBlank(LoanGroupID, "PINJAMAN SEMASA");
  FillBlank(SalesmanID, "NIL");
  for (TextBox* amount : {&SalesmanComm, &IntroducerAmt, &DepositAmt, &DepositAmt2, &TermInt,
                          &OathsAmt, &LegalFee, &MiscAmt}) {
    FillBlank(*amount, "0");
  }
  FillBlank(NextCall, NextDueDate.text());
  FillBlank(TopUpAmt, "0.00");
  FillBlank(LoanAmt2, LoanAmt.text());
  if (LoanTerm2.empty()) {
    return RefuseInPlace(LoanTerm2, {"Grace Period is require", "请输入宽限期数"});
  }
  InstallmentAmt2.SetText(InstallmentAmt.text());
  LastPayment2.SetText(LastPayment.text());
  PayOutAmt2.SetText("0");
  InsRate2.SetText(InsRate.text());
  return true;
}

bool NewLoanFrm::CheckAlternateCode() {
  if (CheckOldLoanCode()) return true;
  SSTab1.SetPage(0);
  FocusOn(OldLoanCode);
  return false;
}

// What the arithmetic behind the commit needs: a loan is never stored whose schedule cannot be.
bool NewLoanFrm::CheckFigures() {
  if (LoanMode != "New Loan" && LoanMode != "Edit Loan") return true;
  for (TextBox* date : {&TrxDate, &NextDueDate}) {
    if (!IsDate(date->text())) return Refuse(*date, kInvalidDate);
  }
  if (const auto refusal = CheckTerms(Terms())) return RefuseWith(*refusal);
  for (TextBox* amount : {&FirstPayment, &InstallmentAmt, &LastPayment}) {
    if (!IsNumeric(amount->text())) {
      const Caption& name = amount->caption();
      return Refuse(*amount, {fmt::format("Invalid {} Amount", name.english),
                              fmt::format("{}不正确", name.chinese)});
    }
  }
  return TermsOpen ? CheckOpenTerms() : CheckSchemeStays();
}

// Its box stays open on locked terms, but a replay by the other scheme would give the interest
// away.
bool NewLoanFrm::CheckSchemeStays() {
  const std::string stored =
      ScalarQuery(main(), "SELECT DragLoan FROM LoanMast WHERE LoanID=" + QuoteStr(loaded_id_));
  if (stored.empty() || stored == std::to_string(DragLoan.index())) return true;
  return Refuse(DragLoan, {"Money was drawn on this loan, its scheme cannot be changed",
                           "此贷款已放款，不可更改贷款方案"});
}

bool NewLoanFrm::CheckOpenTerms() {
  if (SpecialSch.checked()) {
    const auto refusal = CheckBackup(main(), loaded_id_);
    return !refusal || RefuseWith(*refusal);
  }
  if (DragLoan.index() == 1 && LoanBal.empty()) {
    return Refuse(Command3, {"Loan Balance is required, Please use Cal. Payment",
                             "没有贷款结余，请先计算还款额"});
  }
  try {
    ComputeSchedule(Terms());
  } catch (const std::exception& error) {
    return Refuse({fmt::format("Schedule cannot be computed: {}", error.what()),
                   fmt::format("无法计算时间表：{}", error.what())});
  }
  return true;
}

bool NewLoanFrm::CheckLowestRate() {
  if (LoanMode != "New Loan" || DragLoan.text() != "Flexi Loan") return true;
  const Money lowest = Money::TryText(session().settings.LowInt).value_or(Money());
  if (Amount(InsRate) >= lowest) return true;
  const Caption text{fmt::format("Interest rate cannot lower than {}", ShowMoney(lowest)),
                     fmt::format("利率不可低于 {}", ShowMoney(lowest))};
  if (session().CurrentLevel >= kAdmin) return Confirm(text);
  Tell(MessageKind::plain, text);
  return false;
}

bool NewLoanFrm::CheckInstalmentTotal() {
  const double T = CDbl(LoanTerm.text());
  const Money contract = Amount(LoanAmt) + Money::FromDouble((CDbl(Amount(LoanAmt)) / 100) *
                                                             (CDbl(Amount(InsRate)) / 12) * T);
  Money total = Amount(FirstPayment);
  if (LoanTerm.text() != "1") total += Amount(LastPayment);
  if (LoanTerm.text() != "1" && LoanTerm.text() != "2") {
    total += Money::FromDouble(T - 2) * Amount(InstallmentAmt);
  }
  if (total <= contract) return true;
  return Confirm({fmt::format("Total installment ({}) more than Loan amount + Interest ({})\n\n"
                              "Still Proceed ?",
                              ShowMoney(total), ShowMoney(contract)),
                  fmt::format("分期总额（{}）多于贷款额加利息（{}）\n\n是否继续？",
                              ShowMoney(total), ShowMoney(contract))});
}

bool NewLoanFrm::CheckLinkAccounts() {
  if (!LinkIsOn(session())) return true;
  while (!LinkAccSetupDone(main(),
                           {"HP", "TL", "MRTA", "Stamp", "Fire", "Legal", "Process", "Misc"})) {
    if (!Confirm({"Link Account not complete setup\nDo you want to setup now ?",
                  "会计科目尚未设定完毕\n是否现在设定？"})) {
      return false;
    }
    desk().Show("LinkAccSetupfrm");
  }
  return true;
}

bool NewLoanFrm::CheckCredit() {
  if (!LoanAmt.enabled()) return true;  // the amount of locked terms was allowed before
  Money remaining;
  if (CheckCreditLimit(session(), desk(), CustID.text(), LoanID.text(), Amount(LoanAmt),
                       &remaining)) {
    return true;
  }
  Tell(MessageKind::warning,
       {fmt::format("Loan amount cannot exceed {}, please check !", ShowMoney(remaining)),
        fmt::format("贷款额不可超过 {}，请检查！", ShowMoney(remaining))});
  return false;
}

bool NewLoanFrm::CheckEditedSchedule() {
  if (!SchChanged.checked()) return true;
  const auto refusal = CheckScheduleCapital(EditedLines(), LoanAmt.text());
  return !refusal || RefuseWith(*refusal);
}

bool NewLoanFrm::CheckTotalRate() {
  const double percent = (CDbl(Amount(InsRate)) / 12) * CDbl(LoanTerm.text());
  if (percent <= 100) return true;
  return Confirm({fmt::format("Warning!\nTotal Interest {}% are more than 100%, proceed ?",
                              NumberText(percent)),
                  fmt::format("警告！\n利息总额 {}% 超过 100%，是否继续？", NumberText(percent))});
}

bool NewLoanFrm::CheckAmlThreshold() {
  if (!session().settings.AMLA || !AmlPage.visible() || !AmlPage.enabled() ||
      LoanMode == "Delete Loan" || !LoadAMLSettings(session(), CompCode.text())) {
    return true;
  }
  const std::string& default_reason = session().settings.AutoLoanPurpose;
  const ThresholdDecision decision =
      JudgeLoan(session().aml, Amount(LoanAmt), AMLACode.text(), default_reason);
  using Act = ThresholdDecision::Act;
  if (decision.act == Act::take_default) AMLACode.SetText(default_reason);
  if (decision.act == Act::warn || decision.act == Act::demand_reason) {
    desk().Message(MessageKind::information, kThresholdTitle, decision.text);
  }
  if (decision.act != Act::demand_reason) return true;
  AMLACode.SetMark(true);
  FocusOn(AMLACode);
  return false;
}

}  // namespace kaunter
