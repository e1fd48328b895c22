// What a save of a loan asks before it writes, in the order in which the clerk meets it. A step
// passes, fills a blank, asks or refuses; a refusal changes nothing but the blanks filled so far.
// Close, open and delete run the same checks.
#include <fmt/format.h>

#include "compliance/aml.h"
#include "core/amounts.h"
#include "core/password_screens.h"
#include "core/values.h"
#include "customers/credit_limit.h"
#include "links/accounting_link.h"
#include "loans/loan_checks.h"
#include "loans/new_loan_frm.h"

namespace kaunter {
namespace {

constexpr int kAdmin = 4;  // level from which a rate below the lowest is a question

}  // namespace

bool NewLoanFrm::CheckAll() {
  return MayAmend() && CheckBoxes() && CheckAlternateCode() && CheckFigures() &&
         CheckLowestRate() && CheckInstalmentTotal() && CheckLinkAccounts() && CheckCredit() &&
         CheckEditedSchedule() && CheckTotalRate() && CheckAmlThreshold() &&
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

// The boxes by the names of their columns.
class NewLoanFrm::Boxes : public LoanTexts {
 public:
  explicit Boxes(NewLoanFrm& screen) : screen_(screen) {}
  std::string Get(std::string_view column) const override { return Box(column).Text(); }
  void Set(std::string_view column, std::string_view text) override {
    Control& box = Box(column);
    if (box.type() == ControlType::combo_box) {
      static_cast<ComboBox&>(box).SetText(std::string(text));
    } else {
      static_cast<TextBox&>(box).SetText(std::string(text));
    }
  }
  Control& Box(std::string_view column) const {
    for (GuarantorBoxes& boxes : screen_.guarantors) {
      if (column == "GuarantorCompIncome" + boxes.column_suffix) return boxes.GuarantorCompIncome;
    }
    return *screen_.Find(column);
  }

 private:
  NewLoanFrm& screen_;
};

bool NewLoanFrm::CheckBoxes() {
  Boxes boxes(*this);
  const auto refusal = CheckLoanBoxes(boxes);
  if (!refusal) return true;
  Control& box = boxes.Box(refusal->field);
  return refusal->in_place ? RefuseInPlace(box, refusal->text) : Refuse(box, refusal->text);
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
  if (const auto refusal = CheckLoanFigures(Boxes(*this), Terms())) return RefuseWith(*refusal);
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
  const auto refusal =
      SpecialSch.checked() ? CheckBackup(main(), loaded_id_) : CheckSchedule(Terms());
  return !refusal || RefuseWith(*refusal);
}

bool NewLoanFrm::CheckLowestRate() {
  if (LoanMode != "New Loan") return true;
  const auto odd = OddLowestRate(session().settings, Boxes(*this));
  if (!odd) return true;
  if (session().CurrentLevel >= kAdmin) return Confirm(*odd);
  Tell(MessageKind::plain, *odd);
  return false;
}

bool NewLoanFrm::CheckInstalmentTotal() {
  const auto odd = OddInstalmentTotal(Boxes(*this));
  return !odd || Confirm({odd->english + "\n\nStill Proceed ?", odd->chinese + "\n\n是否继续？"});
}

bool NewLoanFrm::CheckLinkAccounts() {
  return RequireLinkAccounts(session(), *this,
                             {"HP", "TL", "MRTA", "Stamp", "Fire", "Legal", "Process", "Misc"});
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
  const auto odd = OddTotalRate(Boxes(*this));
  return !odd || Confirm({fmt::format("Warning!\n{}, proceed ?", odd->english),
                          fmt::format("警告！\n{}，是否继续？", odd->chinese)});
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
