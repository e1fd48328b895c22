#include "reporting/frm_printing.h"

#include <fmt/format.h>

#include "collections/reminder_state.h"
#include "compliance/aml.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/open_for.h"
#include "core/picker.h"
#include "core/report_path.h"
#include "core/session_report.h"
#include "core/values.h"
#include "loans/refusal.h"
#include "platform/installation.h"
#include "reporting/report_criteria.h"
#include "reporting/report_picture.h"
#include "reporting/report_selection.h"

namespace kaunter {
namespace {

constexpr int kIdLength = 50;

bool IsAmlOn(Session& session) {
  // The rules of the company whose record is being edited stay in force below this screen.
  const AMLSettings own = session.aml;
  const bool on = LoadAMLSettings(session, session.CurrentCompCode);
  session.aml = own;
  return on;
}

}  // namespace

frmPrinting::frmPrinting(Session& session, Desk& desk)
    : SessionScreen("frmPrinting", {"Printing", "打印"}, session, desk),
      vsd(*this, "vsd", {},
          {{{"No", "序"}, Kind::integer, 4},
           {{"Document", "文件"}, Kind::text, 40},
           {{"Report File", "报告文件"}, Kind::text, 26},
           {{"Report Field", "报告栏位"}, Kind::text, 22}}) {
  vsd.SetHasChecks(true);
  vsd.onTick = [this](int row) {
    const ListedDocument& document = documents_[static_cast<std::size_t>(row)];
    if (!vsd.Ticked(row) || IsInstalled(document)) return;
    vsd.SetTicked(row, false);
    Tell(MessageKind::warning,
         {fmt::format("The report file {} does not lie beside the program.", document.file),
          fmt::format("程序文件夹里没有报告文件 {}。", document.file)});
  };
  Check1.onClick = [this] { TickAll(Check1.checked()); };
  LoanID.max_length = kIdLength;
  LoanID.picker = "LoanPop";
  LoanID.onSearch = [this] {
    const std::string chosen = Pick(this->session(), this->desk(), "LoanPop", LoanID.text());
    if (chosen.empty()) return;
    LoanID.SetText(chosen);
    LeaveLoanID();
  };
  LoanID.onLeave = [this] { LeaveLoanID(); };
  CustName.SetLocked(true);
  Option2.SetChosen(true);
  SaveCmd.onClick = [this] { Print(); };
}

void frmPrinting::Load() {
  kind_ = SameText(session().CallerTag, "gold") ? "gold" : "loan";
  const std::string& loan = session().HandOverLoanID;
  if (loan.empty()) return;
  LoanID.SetText(loan);
  LoanID.SetLocked(true);
  ShowLoan(loan);
}

void frmPrinting::LeaveLoanID() {
  LoanID.SetText(Trim(LoanID.text()));
  if (LoanID.locked() || SameText(LoanID.text(), loan_id_)) return;
  loan_id_.clear();
  documents_.clear();
  CustName.Clear();
  vsd.Clear();
  Check1.SetChecked(false);
  if (!LoanID.empty()) ShowLoan(LoanID.text());
}

bool frmPrinting::ShowLoan(const std::string& loan_id) {
  const Recordset loan = main().Query(fmt::format(
      "SELECT l.LoanID,l.CompCode,c.CustName FROM LoanMast as l LEFT JOIN CustMast as c on "
      "l.CustID=c.CustID WHERE l.LoanID={}",
      QuoteStr(loan_id)));
  if (loan.Eof() || !MayUseCompany(session(), NullToEmpty(loan.Field("CompCode")))) {
    return Refuse(LoanID, LoanNotFound(loan_id));
  }
  LoanID.SetMark(false);
  loan_id_ = NullToEmpty(loan.Field("LoanID"));
  CustName.SetText(NullToEmpty(loan.Field("CustName")));
  ListDocuments();
  return true;
}

void frmPrinting::ListDocuments() {
  const std::string type = ScalarQuery(
      main(), fmt::format("SELECT LoanType FROM LoanMast WHERE LoanID={}", QuoteStr(loan_id_)));
  const PrintingList list =
      ReadPrintingList(FileOf(session().AppPath, fmt::format("ReportList/{}.ini", kind_)));
  documents_ = DocumentsFor(list.documents, type, IsAmlOn(session()));
  vsd.Clear();
  for (const ListedDocument& document : documents_) {
    vsd.AddRow({std::to_string(vsd.RowCount() + 1), document.title, document.file, document.field},
               IsInstalled(document) ? RowTone::plain : RowTone::quiet);
  }
  if (!list.complete) {
    Tell(MessageKind::critical,
         {"an error occur during reading printing code", "读取打印清单时发生错误"});
  }
}

bool frmPrinting::IsInstalled(const ListedDocument& document) const {
  return document.file.empty() || ReportFileExists(session().AppPath + "/" + document.file);
}

void frmPrinting::TickAll(bool on) {
  for (int row = 0; row < vsd.RowCount(); ++row) {
    vsd.SetTicked(row, on && IsInstalled(documents_[static_cast<std::size_t>(row)]));
  }
}

void frmPrinting::Print() {
  if (vsd.RowCount() == 0 || !Confirm({"Confirm to print report?", "确定打印？"})) return;
  std::vector<ListedDocument> papers;
  for (int row = 0; row < vsd.RowCount(); ++row) {
    const ListedDocument& document = documents_[static_cast<std::size_t>(row)];
    if (!document.file.empty() && vsd.Ticked(row)) papers.push_back(document);
  }
  for (std::size_t i = 0; i < papers.size(); ++i) {
    const bool last = i + 1 == papers.size();
    if (last) {
      PrintDocument(papers[i]);
    } else if (!TryToPrint(papers[i], papers[i + 1])) {
      return;
    }
  }
}

// One paper that cannot be printed does not hold up the others, unless the printer is to blame:
// that the person decides.
bool frmPrinting::TryToPrint(const ListedDocument& document, const ListedDocument& next) {
  try {
    PrintDocument(document);
    return true;
  } catch (const std::exception& failure) {
    LogRollback(session(), fmt::format("{} - {}", title().english, document.file), failure);
    return Confirm(
        {fmt::format("{}: {}\n\nGo on with {}?", document.title, failure.what(), next.title),
         fmt::format("{}：{}\n\n继续打印 {}？", document.title, failure.what(), next.title)});
  }
}

void frmPrinting::PrintDocument(const ListedDocument& document) {
  // The statement has dates to ask for.
  if (IsOneOf(document.file, {"StatementList.rpt"})) {
    OpenStatement(document);
    return;
  }
  ReportJob job = SessionReport(session(), document.file);
  if (!document.field.empty()) {
    job.SelectionFormula = document.field + " = " + QuoteStr(loan_id_);
  }
  job.Destination = Option1.chosen() ? ReportDestination::printer : ReportDestination::preview;
  if (Prepare(document, job)) desk().Print(job);
}

bool frmPrinting::Prepare(const ListedDocument& document, ReportJob& job) {
  const auto is = [&](std::initializer_list<std::string_view> files) {
    return IsOneOf(document.file, files);
  };
  if (is({"RefererList2.rpt"})) {
    job.SelectionFormula =
        document.field + " = " +
        QuoteStr(ScalarQuery(main(), fmt::format("SELECT CustID FROM LoanMast WHERE LoanID={}",
                                                 QuoteStr(loan_id_))));
  }
  if (is({"FilecoverJadualBayaranAkaun.rpt", "filecovercagaran.rpt"})) LayPhoto();
  if (is({"AgreeJ.rpt", "AgreeK.rpt"})) {
    job.ParameterFields[0] = session().Special ? "RptID;True;True" : "RptID;False;True";
  }
  if (is({"Reminder.rpt", "Reminder2.rpt"}) && !MayDun(is({"Reminder2.rpt"}))) return false;
  if (is({"Reminder.rpt"})) {
    OfferReminderDate(
        {"Confirm to update 1st reminder date as today ?", "确定把第一次催款日期改为今天？"},
        "ReminderDate");
  }
  if (is({"Reminder2.rpt"})) {
    OfferReminderDate(
        {"Confirm to update 2nd reminder date as today ?", "确定把第二次催款日期改为今天？"},
        "ReminderDate2");
  }
  return !is({"LateInvoice.rpt"}) || PrepareLateInvoice(job);
}

bool frmPrinting::MayDun(bool second) {
  const ReminderState state = ReadReminderState(main(), loan_id_);
  if (!state.overdue) {
    return Refuse(
        {fmt::format("Loan {} has nothing that was due before today and is still owed: no "
                     "reminder is printed.",
                     loan_id_),
         fmt::format("贷款 {} 没有逾期未还的款项，因此不打印催款信。", loan_id_)});
  }
  if (!second) return true;
  if (state.first_letter.empty()) {
    return Confirm(
        {"No first reminder of what is overdue is on record, and the second one speaks of it. "
         "Print "
         "the second reminder all the same?",
         "没有就逾期款项发出第一次催款信的记录，而第二次催款信会提到它。仍要打印第二次催款信吗？"});
  }
  return state.given_until.empty() ||
         Confirm({fmt::format("The first reminder of {} gives time until {}. Print the second one "
                              "all the same?",
                              state.first_letter, state.given_until),
                  fmt::format("{} 的第一次催款信宽限至 {}。仍要打印第二次催款信吗？",
                              state.first_letter, state.given_until)});
}

// The day is noted before the print and stays even when the print fails.
void frmPrinting::OfferReminderDate(const Caption& question, std::string_view column) {
  if (!Confirm(question)) return;
  main().Execute(fmt::format("UPDATE LoanMast SET {}={} WHERE LoanID={}", column,
                             SqlDate(ServerNow(main(), false)), QuoteStr(loan_id_)));
}

bool frmPrinting::PrepareLateInvoice(ReportJob& job) {
  const std::string day =
      Trim(desk().Input(session().MsgTitle, session().In({"Late charges up to", "迟还费用至"}),
                        ServerNow(main(), false)));
  if (day.empty()) return false;
  if (!IsDate(day)) return Refuse(kInvalidDate);
  const std::string first = "01" + day.substr(2);
  job.ParameterFields[0] = "TrxDate;" + DateParameter(day) + ";True";
  job.ParameterFields[1] = "InvNo;-;True";
  job.SelectionFormula = fmt::format(
      "{{ChargeMast.LoanID}}={} AND {{ChargeMast.TrxDate}} >= {} and {{ChargeMast.TrxDate}} <= {}",
      QuoteStr(loan_id_), FormulaDate(first, false), FormulaDate(day, true));
  return true;
}

void frmPrinting::LayPhoto() {
  const std::string of_loan = QuoteStr(loan_id_);
  const std::string photo = ScalarQuery(
      main(), fmt::format("SELECT c.Pic1 FROM LoanMast as l inner join CustMast as c on "
                          "l.CustID=c.CustID WHERE l.LoanID={}",
                          of_loan));
  const std::string customer =
      ScalarQuery(main(), fmt::format("SELECT CustID FROM LoanMast WHERE LoanID={}", of_loan));
  LayReportPicture(session(), *this, customer, photo);
}

void frmPrinting::OpenStatement(const ListedDocument& document) {
  OpenReport(session(), desk(), "Statement of Account", document.file, loan_id_);
}

}  // namespace kaunter
