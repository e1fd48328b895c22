#include "loans/loan_calc_frm.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>
#include <vector>

#include "core/boxes.h"
#include "core/sequences.h"
#include "core/session.h"
#include "core/session_report.h"
#include "core/values.h"
#include "loans/schedule_store.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

constexpr int kNameLength = 300;
constexpr int kNumberLength = 20;

Refusal Required(const TextBox& box, Caption text) { return {box.name(), std::move(text)}; }

std::optional<Refusal> WithText(std::optional<Refusal> refusal, Caption text) {
  if (refusal) refusal->text = std::move(text);
  return refusal;
}

// The calculator names the box; the loan screen's own words for it do not.
std::optional<Refusal> CheckGracePeriod(const std::string& text) {
  return WithText(CheckLoanTerm2(text), {"Invalid Grace Period", "宽限期数无效"});
}

std::optional<Refusal> CheckRate(const std::string& text) {
  return WithText(CheckInsRate(text), {"Invalid Interest Rate", "利率无效"});
}

bool IsZero(const std::string& text) { return IsNumeric(text) && CDbl(text) == 0; }

std::string Parameter(const TextBox& box) {
  return fmt::format("{};{};True", box.name(), box.text());
}

}  // namespace

LoanCalcfrm::LoanCalcfrm(Session& session, Desk& desk)
    : LoanScreen("LoanCalcfrm", {"Loan Calculation", "贷款计算"}, session, desk) {
  CustName.max_length = kNameLength;
  for (TextBox* box : {&TrxDate, &NextDueDate}) box->max_length = kDateLength;
  for (TextBox* box : {&LoanAmt, &InsRate, &LoanTerm, &LoanTerm2}) box->max_length = kNumberLength;
  for (TextBox* box : {&LoanID, &InstallmentAmt, &InstallmentAmt2, &LastPayment, &LoanBal}) {
    box->SetLocked(true);
  }
  InstallmentAmt2.SetVisible(false);

  CustName.onLeave = [this] { CustName.SetText(ApplyCapLock(this->session(), CustName.text())); };
  TrxDate.onLeave = [this] { LeaveDate(TrxDate); };
  NextDueDate.onLeave = [this] { LeaveDate(NextDueDate); };
  LoanAmt.onLeave = [this] { LeaveMoney(); };
  InsRate.onLeave = [this] { CheckOnLeave(InsRate, CheckRate(InsRate.text())); };
  LoanTerm.onLeave = [this] { CheckOnLeave(LoanTerm, CheckLoanTerm(LoanTerm.text())); };
  LoanTerm2.onLeave = [this] { CheckOnLeave(LoanTerm2, CheckGracePeriod(LoanTerm2.text())); };
  Command3.onClick = [this] { Calculate(); };
  SaveCmd.onClick = [this] { Print(); };
  SaveCmd.shortcut = "Ctrl+P";
}

void LoanCalcfrm::Load() {
  FillCompanies(CompCode, session());
  CompCode.SetText(session().CurrentCompCode);
  FillItems(LoanTypeID, main(), "SELECT LoanTypeID FROM LoanTypeMast ORDER BY LoanTypeID");
  LoanTypeID.SetText("MONTH");
  DragLoan.SetIndex(0);
  TrxDate.SetText(ServerNow(main(), false));
}

void LoanCalcfrm::Unload() {
  if (!LoanID.empty()) DeleteCalculation(main(), LoanID.text());
}

void LoanCalcfrm::CheckOnLeave(TextBox& box, const std::optional<Refusal>& refusal) {
  box.SetText(Trim(box.text()));
  const bool wrong = !box.empty() && refusal.has_value();
  if (wrong) Tell(MessageKind::critical, refusal->text);
  box.SetMark(wrong);
}

void LoanCalcfrm::LeaveMoney() {
  const std::optional<Refusal> refusal = CheckLoanAmt(LoanAmt.text());
  CheckOnLeave(LoanAmt, refusal);
  if (!LoanAmt.empty() && !refusal) LoanAmt.SetText(ShowMoney(LoanAmt.text()));
}

void LoanCalcfrm::LeaveDate(TextBox& box) {
  box.SetText(Trim(box.text()));
  CheckOnLeave(box, CheckDate(box));
}

std::optional<Refusal> LoanCalcfrm::CheckDate(const TextBox& box) const {
  if (IsDate(box.text())) return std::nullopt;
  return Refusal{box.name(),
                 {fmt::format("Invalid {}, Please check", box.caption().english),
                  fmt::format("{}无效，请检查", box.caption().chinese)}};
}

std::optional<Refusal> LoanCalcfrm::FirstBlank() const {
  if (LoanAmt.empty()) return Required(LoanAmt, {"Loan Amount is required", "请输入贷款金额"});
  if (InsRate.empty()) return Required(InsRate, {"Interest Rate is required", "请输入利率"});
  if (LoanTerm.empty() || IsZero(LoanTerm.text())) {
    return Required(LoanTerm, {"Loan Term is required", "请输入贷款期数"});
  }
  if (NextDueDate.empty()) {
    return Required(NextDueDate, {"Next Due Date is required", "请输入下期到期日"});
  }
  return std::nullopt;
}

std::optional<Refusal> LoanCalcfrm::FirstWrong() const {
  if (auto refusal = CheckLoanAmt(LoanAmt.text())) return refusal;
  if (auto refusal = CheckRate(InsRate.text())) return refusal;
  if (auto refusal = CheckLoanTerm(LoanTerm.text())) return refusal;
  if (auto refusal = CheckGracePeriod(LoanTerm2.text())) return refusal;
  if (auto refusal = CheckDate(NextDueDate)) return refusal;
  if (auto refusal = CheckLoanTypeID(LoanTypeID.text())) return refusal;
  if (DragLoan.index() < 0) {
    return Refusal{DragLoan.name(), {"Loan Scheme is required", "请选择贷款方案"}};
  }
  return std::nullopt;
}

LoanTerms LoanCalcfrm::Terms() const {
  LoanTerms terms;
  terms.DragLoan = DragLoan.index() == 0 ? LoanScheme::kPersonal : LoanScheme::kFlexi;
  terms.LoanTypeID = LoanTypeID.text();
  terms.NextDueDate = *DateTime::FromDisplay(NextDueDate.text());
  terms.LoanAmt = LoanAmt.text();
  terms.InsRate = InsRate.text();
  terms.LoanTerm = LoanTerm.text();
  terms.LoanTerm2 = LoanTerm2.text();
  return terms;
}

bool LoanCalcfrm::Calculate() {
  std::optional<Refusal> refusal = FirstBlank();
  if (!refusal) {
    if (LoanTerm2.empty()) LoanTerm2.SetText("0");
    refusal = FirstWrong();
  }
  if (refusal) return RefuseWith(*refusal);
  CalculatorFigures figures;
  Schedule schedule;
  try {
    const LoanTerms terms = Terms();
    figures = CalcFigures(terms);
    schedule = CalculatorSchedule(terms, figures);
  } catch (const std::overflow_error&) {
    return Refuse(LoanAmt, {"Loan Amount or Interest Rate is too large", "贷款金额或利率过大"});
  } catch (const std::out_of_range&) {
    return Refuse(LoanTerm, {"Loan Term is too long, the last due date is past year 9999",
                             "贷款期数过长，最后到期日超过 9999 年"});
  }
  if (LoanID.empty()) LoanID.SetText(NextSeries(main(), "LC-", "", false));
  ShowFigures(figures, schedule);
  StoreCalculation(main(), LoanID.text(), schedule, figures.LoanBal);
  ShowRows();
  return true;
}

void LoanCalcfrm::ShowFigures(const CalculatorFigures& figures, const Schedule& schedule) {
  InstallmentAmt.SetText(ShowMoney(figures.InstallmentAmt));
  InstallmentAmt2.SetText(ShowMoney(figures.InstallmentAmt2));
  LastPayment.SetText(ShowMoney(schedule.LastPayment.value_or(figures.LastPayment)));
  LoanBal.SetText(ShowMoney(figures.LoanBal));
}

void LoanCalcfrm::ShowRows() {
  std::vector<std::vector<std::string>> lines;
  Money payable;
  Money interest;
  for (Recordset rows = main().Query(
           "SELECT * FROM SchMast2 WHERE LoanID=" + QuoteStr(LoanID.text()) + " ORDER BY DueDate");
       !rows.Eof(); rows.MoveNext()) {
    lines.push_back({ShowInt(rows.Field("SchID")), ShowDate(rows.Field("DueDate")),
                     ShowMoney(rows.Field("PayableAmt")), ShowMoney(rows.Field("CapitalAmt")),
                     ShowMoney(rows.Field("InterestAmt")), ShowMoney(rows.Field("LoanBal"))});
    payable += Money::FromText(lines.back()[2]);
    interest += Money::FromText(lines.back()[4]);
  }
  TotalLBL.SetText(session().In({fmt::format("{} instalments, payable {}, of it interest {}",
                                             lines.size(), ShowMoney(payable), ShowMoney(interest)),
                                 fmt::format("共 {} 期，应还总额 {}，其中利息 {}", lines.size(),
                                             ShowMoney(payable), ShowMoney(interest))}));
  SchDG.SetRows(std::move(lines));
}

std::optional<Refusal> LoanCalcfrm::FirstBlankOfPrint() const {
  if (CustName.empty()) return Required(CustName, {"Name is required", "请输入姓名"});
  if (TrxDate.empty()) return Required(TrxDate, {"Loan Date is required", "请输入贷款日期"});
  if (NextDueDate.empty()) {
    return Required(NextDueDate, {"Next Due Date is required", "请输入下期到期日"});
  }
  if (LoanAmt.empty()) return Required(LoanAmt, {"Loan Amount is required", "请输入贷款金额"});
  if (InsRate.empty()) {
    return Required(InsRate, {"Interest Rate % PA is required", "请输入年利率 %"});
  }
  if (LoanTerm.empty()) return Required(LoanTerm, {"Loan Term is required", "请输入贷款期数"});
  return CheckDate(TrxDate);
}

void LoanCalcfrm::Print() {
  if (auto refusal = FirstBlankOfPrint()) {
    RefuseWith(*refusal);
    return;
  }
  if (!Calculate()) return;
  ReportJob job = SessionReport(session(), "LoanCalcList.rpt");
  job.SelectionFormula = "{SchMast2.LoanID}=" + QuoteStr(LoanID.text());
  job.ParameterFields[0] = fmt::format("RptID;{};True", session().Special ? "True" : "False");
  int number = 1;
  for (const TextBox* box : {&CustName, &TrxDate, &NextDueDate, &LoanAmt, &InsRate, &LoanTerm}) {
    job.ParameterFields[number++] = Parameter(*box);
  }
  desk().Print(job);
}

}  // namespace kaunter
