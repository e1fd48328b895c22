// The print action of ReportFrm. Its order is fixed: checks, staged rows, formula and title, the
// form that the option boxes ask for, parameters, log line, start.
#include <fmt/format.h>

#include "compliance/aml.h"
#include "compliance/new_lampiran.h"
#include "compliance/yearly_return.h"
#include "core/boxes.h"
#include "core/log.h"
#include "core/session_report.h"
#include "core/sms_database.h"
#include "core/values.h"
#include "reporting/report_frm.h"
#include "reporting/report_picture.h"

namespace kaunter {
namespace {

const Caption kCompanyMissing{"Company Code is require, please check", "请选择公司"};

// "LoanMastListC.rpt" and "3" give LoanMastListC3.rpt.
std::string WithEnding(const std::string& file, std::string_view ending) {
  const std::size_t dot = file.rfind('.');
  return file.substr(0, dot) + std::string(ending) + file.substr(dot);
}

std::string Parameter(std::string_view name, std::string_view value) {
  return fmt::format("{};{};True", name, value);
}

}  // namespace

void ReportFrm::Print() {
  job_ = SessionReport(session(), file_);
  form_ = file_;
  if (!CheckAndSelect() || !PrepareByFile()) return;
  ChooseForm();
  if (SetParameters()) Start();
}

// --- what must be there, and the formula

bool ReportFrm::CheckAndSelect() {
  if (!DatesAreGood() || !IdsAreGood()) return false;
  if (Is({"YearlyLoan.rpt", "NewLampiran.rpt"})) {
    if (List2.RowCount() == 0) return Refuse(ListCombo, kCompanyMissing);
    return Is({"YearlyLoan.rpt"}) ? MakeYearly() : BuildFormula() && MakeLampiran();
  }
  // Their rows are staged by company; they take no formula of their own.
  if (Is({"SummaryPnL.rpt", "StatementList.rpt", "SummaryBS.rpt"})) return CompanyIsChosen();
  if (Is({"AccountReport.rpt", "AccountReportC.rpt"})) {
    if (!CompanyIsChosen() || !StageAccountReport(session(), desk(), Run())) return false;
    Tell(MessageKind::information, {"Process Complete", "处理完毕"});
  }
  return BuildFormula();
}

// DueDateC.rpt and DueDate3C.rpt do ask for a first date: only the two plain names go without.
bool ReportFrm::DatesAreGood() {
  if (DateFrom.empty() && !Is({"DueDate3.rpt", "DueDate.rpt"})) {
    return Refuse(DateFrom, {"Date From is required", "请输入开始日期"});
  }
  if (DateTo.empty()) return Refuse(DateTo, {"Date To is required", "请输入结束日期"});
  for (TextBox* box : {&DateFrom, &DateTo}) {
    if (!CheckDateBox(session(), *box)) return false;
  }
  return CheckDateOrder(session(), DateFrom, DateTo);
}

// The texts go into the formula as they stand: a sign of its own grammar is no part of a number.
bool ReportFrm::IdsAreGood() {
  if (criteria_->ids == IdBoxes::free_text) return true;
  for (TextBox* box : {&IDFrom, &IDTo}) {
    if (box->text().find_first_of("'{}") == std::string::npos) continue;
    const auto& [english, chinese] = box->caption();
    return Refuse(*box,
                  {english + ": ' { and } cannot stand in a number. Type it as its record has it.",
                   chinese + "：编号不可含有 ' { }。请照记录输入。"});
  }
  return true;
}

bool ReportFrm::CompanyIsChosen() {
  return session().CurrentLevel >= 4 || List2.RowCount() > 0 || Refuse(ListCombo, kCompanyMissing);
}

bool ReportFrm::BuildFormula() {
  SelectionRequest request;
  request.file = file_;
  request.DateField = criteria_->DateField;
  request.IDField = criteria_->IDField;
  request.DateFrom = DateFrom.text();
  request.DateTo = DateTo.text();
  request.IDFrom = IDFrom.text();
  request.IDTo = IDTo.text();
  for (const ValueList& list : lists_) request.filters.push_back(list.chosen);
  request.level = session().CurrentLevel;
  request.CompanyRequired = criteria_->CompanyRequired;
  const auto selection = BuildSelectionFormula(request);
  IDTo.SetText(request.IDTo);
  DateTo.SetText(request.DateTo);
  if (!selection) {
    return Refuse(ListCombo, {"Company code is require", "请选择公司"});
  }
  job_.SelectionFormula = selection->formula;
  job_.ReportTitle = selection->title;
  return true;
}

StagedRun ReportFrm::Run() const {
  StagedRun run;
  run.report_name = file_;
  run.pcname = pcname_;
  run.date_from = DateFrom.text();
  run.date_to = DateTo.text();
  run.id_from = IDFrom.text();
  run.id_to = IDTo.text();
  for (const ValueList& list : lists_) run.filters.push_back(list.chosen);
  return run;
}

// --- the returns

ReturnPeriod ReportFrm::PeriodOfReturn() const {
  return {PickedList(Run().filters, "CompCode")->values, *DateTime::FromDisplay(DateFrom.text()),
          *DateTime::FromDisplay(DateTo.text())};
}

// With what stands here: the return, its dates and its tick, then the companies, a line each.
void ReportFrm::ShowFigures() {
  std::string chosen = fmt::format("{}\n{}\n{}\n{}", Is({"YearlyLoan.rpt"}) ? 0 : 1,
                                   DateFrom.text(), DateTo.text(), Check1.Text());
  const StagedRun run = Run();
  if (const StagedFilter* companies = PickedList(run.filters, "CompCode")) {
    for (const std::string& company : companies->values) chosen += "\n" + company;
  }
  session().HandOverSelection = std::move(chosen);
  desk().Show("ReturnFiguresFrm");
  session().HandOverSelection.clear();
}

bool ReportFrm::MakeYearly() {
  const YearlyRequest request{PeriodOfReturn(), Check1.checked(), ReadSetting(main(), "2E") == "1"};
  job_.SelectionFormula = YearlyFormula(request);
  job_.ReportTitle = fmt::format("{} - {}", DateFrom.text(), DateTo.text());
  return MakeYearlyReturn(session(), desk(), request, IDFrom.text(), IDTo.text(),
                          job_.ParameterFields);
}

bool ReportFrm::MakeLampiran() {
  job_.SelectionFormula = StagedFormula(pcname_, file_);
  return StageNewLampiran(session(), desk(), PeriodOfReturn(), pcname_, file_);
}

// --- what single reports need before their form is chosen

bool ReportFrm::PrepareByFile() {
  if (Is({"CustMastList.rpt", "CustMastListC.rpt"})) {
    if (Check1.checked() && IDFrom.empty()) {
      return Refuse(IDFrom, {"From ID is required", "请输入开始编号"});
    }
    LayPhoto();
  }
  if (Is({"DailyCollection.rpt", "DailyCollectionC.rpt"})) {
    if (!StageDailyCollection(session(), desk(), Run())) return false;
    AndAlso(job_.SelectionFormula, "{masterreport.pcname} = " + QuoteStr(pcname_));
    job_.SelectionFormula += " And {MasterReport.ReportName} = " + QuoteStr(file_);
  }
  if (Is({"Agree1.rpt"})) {
    if (IDFrom.empty()) {
      Tell(MessageKind::plain, {"Code From is require", "请输入开始编号"});
      FocusOn(IDFrom);
      return false;
    }
    IDTo.SetText(IDFrom.text());
    const std::string type = ScalarQuery(
        main(),
        fmt::format("SELECT LoanType FROM LoanMast WHERE LoanID={}", QuoteStr(IDFrom.text())));
    form_ = SameText(type, "Secured") ? "AgreeJ.rpt" : "AgreeK.rpt";
  }
  return true;
}

// One customer's photo; without the option, none.
void ReportFrm::LayPhoto() {
  if (!Check1.checked()) {
    ClearReportPicture(session());
    return;
  }
  IDTo.SetText(IDFrom.text());
  LayReportPicture(session(), *this, IDFrom.text(),
                   ScalarQuery(main(), fmt::format("SELECT Pic1 FROM CustMast WHERE CustID={}",
                                                   QuoteStr(IDFrom.text()))));
}

// --- which form is printed; each test starts from the file that the menu chose, the last one wins

void ReportFrm::ChooseForm() {
  std::string& formula = job_.SelectionFormula;
  if (Is({"LejarAkuan.rpt"})) {
    if (Check1.checked()) form_ = "LejarAkuan60.rpt";
    if (Check2.checked()) {
      const std::string made = "{LoanMast.TrxDate}";
      const std::string settled = "{LoanMast.LastPaymentDate}";
      for (auto at = formula.find(made); at != std::string::npos;
           at = formula.find(made, at + settled.size())) {
        formula.replace(at, made.size(), settled);
      }
      formula += " and {LoanMast.LoanBal} <=0 ";
    }
  }
  if (Is({"AccountReport.rpt", "AccountReportC.rpt"})) {
    formula = StagedFormula(pcname_, file_);
    const char* in_language = session().ChineseFlag ? "C.rpt" : ".rpt";
    form_ = Check1.checked()   ? std::string("AccountReport2") + in_language
            : Check2.checked() ? "AccountReport3.rpt"
                               : std::string("AccountReport") + in_language;
  }
  if (Is({"LoanMastList.rpt", "LoanMastListC.rpt", "LoanMastList2.rpt", "LoanMastList2C.rpt",
          "LoanCollateral.rpt", "LoanCollateralC.rpt", "CustLoanList.rpt"})) {
    if (Check1.checked()) AndAlso(formula, "{LoanMast.LoanBal} > 0");
    if (Check2.checked()) form_ = WithEnding(file_, "3");
  }
  if (Is({"LoanSchList.rpt", "LoanSchListC.rpt"}) && Check1.checked()) {
    form_ = WithEnding(file_, "2");
  }
  if (Is({"LoanMastList2.rpt", "LoanMastList2C.rpt", "PaymentList3.rpt", "PaymentList3C.rpt",
          "Outstanding2.rpt", "Outstanding2C.rpt"}) &&
      Check2.checked()) {
    form_ = WithEnding(file_, "S");
  }
  if (Is({"SMSCompList.rpt"}) && Check1.checked()) form_ = WithEnding(file_, "S");
}

// --- connection and parameters

bool ReportFrm::SetParameters() {
  if (!Connect()) return false;
  job_.ParameterFields[0] = Parameter("RptID", session().Special ? "True" : "False");
  if (!StageByFile()) return false;
  SetParametersByFile();
  return true;
}

bool ReportFrm::Connect() {
  if (Is({"AuditLogs.rpt"})) {
    job_.Connect = session().LogsConn.get();
    return job_.Connect != nullptr ||
           Refuse({"The audit is switched off in this office, so there is nothing to print. It is "
                   "switched on with the setting TransLogs.",
                   "本公司没有开启操作记录，因此无资料可打印。可用设定 TransLogs 开启。"});
  }
  if (Is({"SMSCompList.rpt", "SMSHPList.rpt"})) {
    try {
      job_.Connect = &SmsDatabase(session());
    } catch (const SqlError& away) {
      return Refuse({away.what(), away.what()});
    }
  }
  return true;
}

bool ReportFrm::StageByFile() {
  if (Is({"RekodTrans.rpt"})) {
    if (!StageRekodTrans(session(), desk(), Run())) return false;
    job_.SelectionFormula += " AND " + StagedFormula(pcname_, file_);
  }
  if (Is({"SummaryPnL.rpt", "SummaryBS.rpt", "StatementList.rpt"})) {
    SummaryHead head;
    const bool staged = Is({"StatementList.rpt"}) ? StageStatement(session(), desk(), Run())
                                                  : StageSummary(session(), desk(), Run(), head);
    if (!staged) return false;
    Tell(MessageKind::information, {"Process complete, Press OK to continue", "处理完毕，请继续"});
    if (!head.to_date.empty()) {
      job_.ParameterFields[1] = head.to_date;
      job_.ParameterFields[2] = head.year_end;
      job_.ParameterFields[3] = Parameter("Fromdate", DateFrom.text());
      job_.ReportTitle = head.title;
    }
    job_.SelectionFormula = StagedFormula(pcname_, file_);
  }
  return true;
}

void ReportFrm::SetParametersByFile() {
  auto& fields = job_.ParameterFields;
  const Settings& settings = session().settings;
  const std::string to = DateParameter(DateTo.text());
  if (Is({"DueDate.rpt", "DueDateC.rpt", "DueDate2.rpt", "DueDate2C.rpt", "DueDate3.rpt",
          "DueDate3C.rpt", "AgingMonth.rpt", "RekodTrans.rpt"})) {
    fields[1] = Parameter("ToDay", to);
  }
  if (Is({"RekodTrans.rpt"})) {
    fields[0] = Parameter("RptID", Check4.Text());
    fields[2] = Parameter("LastBal", Check3.Text());
    fields[3] = Parameter("SchInt", settings.SchInt);
    if (Check2.checked()) form_ = "RekodTrans2.rpt";
  }
  if (Is({"ARInvoice.rpt"})) fields[0] = Parameter("RptID", "Invoice");
  if (Is({"LoanMastList.rpt"})) fields[1] = Check2.checked() ? Parameter("ToDate", to) : "";
  if (Is({"Payment Receipt.rpt"})) {
    fields[0] = Parameter("RptID", CountsAsTrue(settings.OldReceipt) ? "1" : "0");
    if (!settings.OldReceipt.empty()) form_ = "Payment Receipt Old.rpt";
  }
  if (Is({"LoanExceedThreshold.rpt", "PaymentExceedThreshold.rpt"})) {
    const bool of_loans = Is({"LoanExceedThreshold.rpt"});
    // The threshold of the company in work, which another screen may have left behind.
    LoadAMLSettings(session(), session().CurrentCompCode);
    if (Check1.checked()) {
      AndAlso(job_.SelectionFormula,
              of_loans ? "{LoanMast.AMLACode} <> '' " : "{PaymentMast.AMLACode} <> '' ");
    }
    const Money threshold = of_loans ? session().aml.AMLALoan : session().aml.AMLAPayment;
    fields[1] = Parameter("Threshold", Format(threshold, "0.00"));
  }
  if (Is({"LejarAkuan.rpt"})) fields[0] = Parameter("RptID", settings.LampiranA);
  if (Is({"PaymentList.rpt"}) && Check1.checked()) {
    job_.SelectionFormula += " and {PaymentMast.NewLoanBal} <= 0 ";
    job_.ReportTitle += " (Settlement)";
  }
}

void ReportFrm::Start() {
  WriteLog(session(), LogLine(session(), title_ + " - Report Printed"));
  if (SameText(form_, "Payment Receipt.rpt")) {
    const std::string own_form = ReadSetting(main(), "OR");
    if (!own_form.empty()) form_ = own_form;
  }
  if (!own_file_.empty()) form_ = own_file_;
  job_.ReportFileName = session().AppPath + "/" + form_;
  desk().Print(job_);
}

}  // namespace kaunter
