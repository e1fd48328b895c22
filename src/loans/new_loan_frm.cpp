#include "loans/new_loan_frm.h"

#include <fmt/format.h>

#include <filesystem>

#include "compliance/aml.h"
#include "compliance/suspicion.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/picker.h"
#include "core/screen_rights.h"
#include "core/session_report.h"
#include "core/values.h"
#include "loans/loan_glance.h"
#include "platform/installation.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

// The modes, with the word that the save button carries in each.
struct Mode {
  const char* name;
  Caption shown;
  Caption button;
};

const Mode kModes[] = {
    {"New Loan", {"New Loan", "新贷款"}, {"&Save", "储存(&S)"}},
    {"Edit Loan", {"Edit Loan", "更改贷款"}, {"&Save", "储存(&S)"}},
    {"Delete Loan", {"Delete Loan", "删除贷款"}, {"&Delete Loan", "删除贷款(&D)"}},
    {"Close Loan", {"Close Loan", "结束贷款"}, {"Close Lo&an", "结束贷款(&A)"}},
    {"Open Loan", {"Open Loan", "重开贷款"}, {"Open Lo&an", "重开贷款(&A)"}},
    {"Due Date Inquiry", {"Due Date Inquiry", "到期查询"}, {"&Save", "储存(&S)"}},
    {"Follow Up", {"Follow Up", "跟进"}, {"&Save", "储存(&S)"}},
};

const Mode& FindMode(const std::string& name) {
  for (const Mode& mode : kModes) {
    if (SameText(mode.name, name)) return mode;
  }
  return kModes[1];  // opened without a command: the loan is there to be edited
}

std::vector<GridColumn> ScheduleColumns() {
  return {{{"No", "期数"}, Kind::integer, 4},
          {{"Due Date", "到期日"}, Kind::date, 10},
          {{"Payable", "应还"}, Kind::money, 11},
          {{"Capital", "本金"}, Kind::money, 11},
          {{"Interest", "利息"}, Kind::money, 10},
          {{"Capital Paid", "已还本金"}, Kind::money, 11},
          {{"Interest Paid", "已还利息"}, Kind::money, 10},
          {{"Payment", "已还"}, Kind::money, 11},
          {{"Balance", "未还"}, Kind::money, 11},
          {{"Loan Balance", "贷款结余"}, Kind::money, 11},
          {{"Extra", "多还"}, Kind::money, 8},
          {{"Late Interest", "逾期利息"}, Kind::money, 9},
          {{"Interest at Cap", "上限利息"}, Kind::money, 10}};
}

std::vector<GridColumn> PaymentColumns() {
  return {{{"Pay ID", "付款编号"}, Kind::text, 14},
          {{"Receipt No", "收据号码"}, Kind::text, 10},
          {{"Date", "付款日"}, Kind::date, 10},
          {{"Amount", "金额"}, Kind::money, 11},
          {{"Capital", "本金"}, Kind::money, 11},
          {{"Interest", "利息"}, Kind::money, 10},
          {{"New Balance", "新结余"}, Kind::money, 11},
          {{"Remark", "备注"}, Kind::text, 16},
          {{"Late Interest", "逾期利息"}, Kind::money, 10},
          {{"Discount", "折扣"}, Kind::money, 9},
          {{"Charge", "收费"}, Kind::money, 9},
          {{"Settlement", "结清"}, Kind::text, 0}};
}

std::vector<GridColumn> ChargeColumns() {
  return {{{"Charge ID", "收费编号"}, Kind::text, 14}, {{"Date", "日期"}, Kind::date, 10},
          {{"Amount", "金额"}, Kind::money, 11},       {{"Description", "说明"}, Kind::text, 24},
          {{"Kind", "种类"}, Kind::text, 14},          {{"Due Date", "到期日"}, Kind::date, 10}};
}

std::vector<GridColumn> LateChargeColumns() {
  return {{{"Month", "月份"}, Kind::text, 8},
          {{"Amount", "金额"}, Kind::money, 11},
          {{"Description", "说明"}, Kind::text, 20},
          {{"Kind", "种类"}, Kind::text, 8},
          {{"Due Date", "到期日"}, Kind::date, 10}};
}

std::vector<GridColumn> DrawDownColumns() {
  return {{{"Document No", "文件号码"}, Kind::text, 12}, {{"Date", "日期"}, Kind::date, 10},
          {{"Amount", "金额"}, Kind::money, 12},         {{"User", "用户"}, Kind::text, 8},
          {{"Payee", "收款人"}, Kind::text, 24},         {{"Remarks", "备注"}, Kind::text, 24}};
}

std::vector<GridColumn> ChequeColumns() {
  return {{{"Date", "日期"}, Kind::date, 10, true}, {{"Cheque No", "支票号码"}, Kind::text, 14},
          {{"Bank", "银行"}, Kind::text, 12},       {{"Amount", "金额"}, Kind::money, 12, true},
          {{"Pay ID", "付款编号"}, Kind::text, 14}, {{"Pay Date", "付款日"}, Kind::date, 10},
          {{"Seq No", "次序"}, Kind::integer, 0}};
}

}  // namespace

// --- the record

NewLoanFrm::NewLoanFrm(Session& session, Desk& desk)
    : LoanScreen("NewLoanFrm", {"Loan", "贷款"}, session, desk),
      vsd3(*this, "vsd3", {"Schedule", "时间表"}, ScheduleColumns(), &SchedulePage),
      vsd4(*this, "vsd4", {"Payments", "付款"}, PaymentColumns(), &PaymentPage),
      ChargesDG(*this, "ChargesDG", {"Charges", "收费"}, ChargeColumns(), &ChargesPage),
      ChargesDG2(*this, "ChargesDG2", {"Late Interest by Month", "每月逾期利息"},
                 LateChargeColumns(), &ChargesPage),
      DrawDownDG(*this, "DrawDownDG", {"Drawdowns", "放款"}, DrawDownColumns(), &DrawDownPage),
      vsd(*this, "vsd", {"Post-dated Cheques", "期票"}, ChequeColumns(), &DrawDownPage),
      guarantors{{*this, 0, Guarantor1}, {*this, 1, Guarantor2}},
      Vsd2(*this, "Vsd2", {"Check List", "查核表"},
           {{{"Description", "说明"}, Kind::text, 52},
            {{"Detail", "详情"}, Kind::text, 20},
            {{"Checked", "已查核"}, Kind::text, 8},
            {{"Remarks", "备注"}, Kind::text, 30}},
           &DocumentPage),
      record_("LoanMast", "LoanID") {
  BindRecord();
  BindEvents();
  CapTexts(session, *this);
}

void NewLoanFrm::BindRecord() {
  record_.Add(LoanID).Add(CompCode).Add(CustID).Add(CreditLimit, As::money);
  // The terms are texts in the table as they are on the screen.
  record_.Add(LoanTerm).Add(LoanTerm2).Add(LoanTerm3);
  record_.Add(DragLoan, As::index);
  record_.AddPage(LoanPage).AddPage(SchedulePage);
  // Written with the new loan; from then on payments, the rebuild and closing keep them.
  for (TextBox* total : {&TotPay, &TotInt, &TotCharge, &TotDiscAmt, &TotCollectorAmt, &CloseBal}) {
    record_.Add(*total, As::money).InsertOnly();
  }
  record_.Add(LastPaymentDate, As::date).InsertOnly();
  record_.Add(LastPaymentNo).InsertOnly();
  record_.Add(OrgDueDate, As::date).ReadOnly();  // the schedule's, when it is generated
  record_.AddPage(PaymentPage, {&IntBal}).AddPage(DrawDownPage);
  for (GuarantorBoxes& boxes : guarantors) boxes.Bind(record_);
  record_.AddPage(GuarantorPage).AddPage(PropertyPage).AddPage(BankPage).AddPage(DocumentPage);
  // Without the office's AML switch the table has no such columns.
  if (session().settings.AMLA) record_.AddPage(AmlPage);
  for (const char* nothing : {"PayExtra", "SchAmt"}) {
    record_.AddValue(nothing, [] { return std::string("0"); }).InsertOnly();
  }
  record_.AddValue("UserID", [this] { return QuoteStr(session().CurrentUserID); }).InsertOnly();
  record_.AddValue("DateCreated", [this] { return SqlDateTime(ServerNow(main(), true)); })
      .InsertOnly();
}

void NewLoanFrm::BindEvents() {
  for (TextBox* shown :
       {&CustName, &CreditLimit, &TotPay, &TotInt, &TotCharge, &TotDiscAmt, &TotCollectorAmt,
        &IntBal, &LoanBal, &CloseBal, &LastPaymentDate, &LastPaymentNo, &TotLoanInt, &OrgDueDate,
        &PayOutAmt, &InsRate2, &InstallmentAmt2, &LastPayment2, &AMLAID}) {
    shown->SetLocked(true);
  }
  for (TextBox* copy : {&InsRate2, &InstallmentAmt2, &LastPayment2}) copy->SetVisible(false);
  LoanID.onLeave = [this] {
    LoanID.SetText(Trim(LoanID.text()));
    if (LoanID.empty() || SameText(LoanID.text(), loaded_id_)) return;
    if (MayLeaveRecord(Typed())) {
      LoadLoan();
    } else {
      LoanID.SetText(loaded_id_);
    }
  };
  OfferPicker(session(), LoanID, "LoanPop", [this](const std::string& id) {
    if (MayLeaveRecord(Typed())) LoadLoan(id);
  });
  CompCode.onLeave = [this] {
    if (!CheckCompanyAccess(session(), desk(), CompCode)) {
      CompCode.Clear();
      FocusOn(CompCode);
    }
    ShowAml();
  };
  BindLoanEvents();
  BindGridEvents();
  BindPersonEvents();
  const auto unless_unsaved = [this](auto act) {
    return [this, act] {
      if (MayLeaveRecord(Typed())) act();
    };
  };
  CmdPrev.onClick = unless_unsaved([this] { ShowNeighbour(false); });
  CmdNext.onClick = unless_unsaved([this] { ShowNeighbour(true); });
  CmdNew.onClick = unless_unsaved([this] { StartNew(); });
  CmdClear.onClick = unless_unsaved([this] { StartAgain(); });
  AMLACode.onLeave = [this] {
    if (!session().settings.LockAMLAReasonCode || AMLACode.empty() || AMLACode.index() >= 0) return;
    AMLACode.Clear();
    Refuse(AMLACode, {"Choose the Loan Purpose from the list", "请从表中选择贷款用途"});
  };
  SSCommand5.onClick = [this] { ReportSuspicion(); };
  SSCommand6.onClick = [this] {
    ReportJob job = SessionReport(session(), "CDD.rpt");
    job.SelectionFormula = "{LoanMast.LoanID}=" + QuoteStr(loaded_id_);
    job.ParameterFields[0] = "RptID;;True";
    desk().Print(job);
  };
  SaveCmd.onClick = [this] { SaveLoan(); };
}

void NewLoanFrm::Load() {
  LoanMode = FindMode(session().CallerTag).name;
  const std::string loan = session().HandOverLoanID;
  const std::string customer = session().HandOverCustID;
  record_.TakeWidths(main());
  FillLists();
  ApplySettings();
  StartAgain();
  if (!loan.empty()) LoadLoan(loan);
  if (LoanMode == "New Loan" && !customer.empty()) {
    CustID.SetText(customer);
    LoadCustomer(false);
  }
  // For a customer without a word on which loan: the latest that runs, and from there to the
  // others.
  if (LoanMode == "Edit Loan" && loan.empty() && !customer.empty()) {
    const std::string latest = ScalarQuery(
        main(), fmt::format("SELECT TOP 1 LoanID FROM LoanMast WHERE CustID={} AND LoanStatus <> "
                            "'CLOSED' ORDER BY LoanID DESC",
                            QuoteStr(customer)));
    if (!latest.empty()) LoadLoan(latest);
  }
}

bool NewLoanFrm::Typed() const { return !IsInquiry() && record_.Changed(&LoanID); }

bool NewLoanFrm::RequestClose() { return MayDiscard(Typed()); }

bool NewLoanFrm::IsInquiry() const {
  return LoanMode == "Due Date Inquiry" || LoanMode == "Follow Up";
}

void NewLoanFrm::FillLists() {
  FillCompanies(CompCode, session());
  const struct {
    ComboBox* box;
    const char* sql;
  } lists[] = {
      {&LoanTypeID, "SELECT LoanTypeID FROM LoanTypeMast ORDER BY LoanTypeID"},
      {&LoanGroupID, "SELECT LoanGroupID FROM LoanGroupMast ORDER BY LoanGroupID"},
      {&SalesmanID, "SELECT SalesmanID FROM SalesmanMast ORDER BY SalesmanID"},
      {&AdvertiseID, "SELECT AdvertiseID FROM AdvertiseMast ORDER BY AdvertiseID"},
      {&property.CollateralID, "SELECT CollateralID FROM CollateralMast ORDER BY CollateralID"},
      {&OwnerName, "SELECT OwnerName FROM OwnerMast ORDER BY OwnerName"},
      {&Bank, "SELECT BankCode FROM BankMast ORDER BY BankCode"},
      {&guarantors[0].GuarantorRace, "SELECT CustRaceID FROM CustRaceMast ORDER BY CustRaceID"},
  };
  for (const auto& list : lists) FillItems(*list.box, main(), list.sql);
  guarantors[1].GuarantorRace.SetItems(guarantors[0].GuarantorRace.items());
  if (session().settings.AMLA) FillReasonCodes(AMLACode, main(), "LoanMast", "LOAN", true);
}

void NewLoanFrm::ApplySettings() {
  const Settings& settings = session().settings;
  ProcessFee.SetLocked(!settings.AutoProcessingFeeRate.empty());
  DepositAmt.SetLocked(!settings.AutoStampingFeeRate.empty());
  Command9.SetVisible(settings.CalcAmt);
  OfferShortcut(session(), Command8, "PaymentReaderfrm", "");
  if (!settings.PaymentReader) Command8.SetVisible(false);
  SSCommand6.SetVisible(std::filesystem::exists(FileOf(session().AppPath, "CDD.rpt")));
  // The special user sees the figures of the books, not those that were agreed.
  const std::vector<Control*> hidden = {&Label51, &LoanAmt, &TopUpAmt, &Command5, &InsRate};
  for (Control* control : hidden) control->SetVisible(!session().Special);
  InsRate2.SetVisible(session().Special);
}

void NewLoanFrm::ClearLoanScreen() {
  record_.Clear();
  CustName.Clear();
  IntBal.Clear();
  ClearGrids();
  OldValues = {};
  loaded_id_.clear();
  taken_application_.clear();
  for (std::string& path : pending_photos_) path.clear();
  for (GuarantorBoxes& boxes : guarantors) boxes.card_photo.Drop();
  CustPhoto.Show(session(), {}, {});
  CompCode.SetText(session().CurrentCompCode);
  ShowPhotos();
  ShowGlance();
  ShowAml();
  record_.Remember();
}

void NewLoanFrm::StartAgain() {
  if (LoanMode == "New Loan") {
    StartNew();
    return;
  }
  ClearLoanScreen();
  SetTermsOpen(false);
  CompCode.SetEnabled(session().CurrentLevel >= 4);  // an alternate code is searched in it
  ShowMode();
  FocusOn(LoanID);
}

void NewLoanFrm::StartNew() {
  LoanMode = "New Loan";
  ClearLoanScreen();
  LoanStatus.SetText("ACTIVE");
  LoanTypeID.SetText("MONTH");
  IntType.SetText("$");
  LateChargePerDay.SetText(session().settings.DefaultLateCharge);
  SetTermsOpen(true);
  ShowMode();
  record_.Remember();
  FocusOn(CustID);
}

void NewLoanFrm::ShowMode() {
  const Mode& mode = FindMode(LoanMode);
  LoanLBL.SetText(session().In(mode.shown));
  SetTitle(
      {fmt::format("Loan - {}", mode.shown.english), fmt::format("贷款 - {}", mode.shown.chinese)});
  SaveCmd.SetCaption(mode.button);
  const bool is_new = LoanMode == "New Loan";
  LoanID.SetEnabled(!is_new);
  CustID.SetEnabled(is_new);
  SaveCmd.SetVisible(!IsInquiry());
  CmdNew.SetVisible(!IsInquiry());
  const bool may_edit = LoanMode == "Edit Loan";
  const bool loaded = !loaded_id_.empty();
  OfferShortcut(session(), CmdDrawDown, "Drawdown", "", may_edit && loaded);
  OfferShortcut(session(), CmdSettle, "Settlementfrm", "", may_edit && loaded);
  OfferShortcut(session(), CmdPrint, "frmPrinting", "loan", loaded);
  SSCommand3.SetEnabled(is_new);  // an application is marked by the loan that it becomes
  for (GuarantorBoxes& boxes : guarantors) {
    boxes.CmdGetGuarantor.SetEnabled(!IsInquiry());
    boxes.cmdCardReader.SetEnabled(!IsInquiry());
  }
  vsd.SetLocked(!may_edit);
  if (!IsInquiry()) return;
  for (Control* control : controls()) {
    const bool typed = control->type() == ControlType::text_box ||
                       control->type() == ControlType::combo_box ||
                       control->type() == ControlType::check_box;
    if (typed && control != &LoanID) control->SetLocked(true);
  }
}

void NewLoanFrm::SetTermsOpen(bool open) {
  TermsOpen = open;
  const std::vector<Control*> terms = {
      &LoanTerm, &LoanTerm3,  &LoanTerm2,   &FirstPayment, &InstallmentAmt, &LastPayment,
      &LoanAmt,  &TopUpAmt,   &DepositAmt2, &TermInt,      &OathsAmt,       &LegalFee,
      &MiscAmt,  &PayOutAmt2, &InsRate,     &LoanTypeID,   &SchChanged,     &Command3,
      &Command5, &Command9,   &SSCommand3};
  for (Control* control : terms) control->SetEnabled(open);
  SpecialSch.SetEnabled(open && DragLoan.index() == 1);
  // Below level 4 a loan stays with the company of its customer.
  CompCode.SetEnabled(open && session().CurrentLevel >= 4);
  vsd3.SetColumnEditable(2, open);
  vsd3.SetLocked(!open);
}

void NewLoanFrm::LoadLoan(const std::string& id) {
  LoanID.SetText(id);
  LoadLoan();
}

void NewLoanFrm::LoadLoan() {
  // Both keys of a loan work in the one box. Who belongs to no company searches all of them until
  // one is chosen.
  std::string by_alternate_code;
  if (!LoanID.empty()) {
    by_alternate_code = ScalarQuery(
        main(),
        fmt::format("SELECT LoanID FROM LoanMast WHERE OldLoanCode={}{}", QuoteStr(LoanID.text()),
                    CompCode.empty() ? "" : " AND CompCode=" + QuoteStr(CompCode.text())));
  }
  const std::string id = by_alternate_code.empty() ? LoanID.text() : by_alternate_code;
  const Recordset row =
      main().Query(fmt::format("SELECT * FROM LoanMast WHERE LoanID={}", QuoteStr(id)));
  if (row.Eof()) {
    StartAgain();
    RefuseCode(LoanID,
               {fmt::format("Laon ID {} not found", id), fmt::format("找不到贷款编号 {}", id)});
    return;
  }
  if (!MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    StartAgain();
    RefuseCode(LoanID, {"Laon ID not found", "找不到贷款编号"});
    return;
  }
  if (LoanMode == "New Loan") LoanMode = "Edit Loan";
  if (!PassesModeGate(NullToEmpty(row.Field("LoanStatus")))) {
    StartAgain();
    return;
  }
  ClearLoanScreen();
  record_.Load(row);
  loaded_id_ = NullToEmpty(row.Field("LoanID"));
  OldValues = ReadLoanFigures(row);
  IntBal.SetText(
      ShowMoney(Money::FromText(TotCollectorAmt.text()) + Money::FromText(TotInt.text())));
  ShowMode();
  LoadCustomer(true);
  ShowPhotos();
  SetTermsOpen(OldValues.PayOutAmt <= Money() && LoanMode != "Delete Loan" && !IsInquiry());
  LoadGrids();
  BuildRepaymentText();
  ShowGlance();
  ShowAml();
  record_.Remember();
}

bool NewLoanFrm::PassesModeGate(const std::string& status) {
  const bool refused =
      LoanMode == "Open Loan"
          ? SameText(status, "ACTIVE")
          : (LoanMode == "Edit Loan" || LoanMode == "Close Loan") && SameText(status, "CLOSED");
  if (!refused) return true;
  return Refuse({fmt::format("Cannot edit for {} Loan", status),
                 fmt::format("状态 {} 的贷款不可更改", status)});
}

void NewLoanFrm::ShowNeighbour(bool next) {
  // A person of one company walks through the loans of that company.
  const std::string id = NeighbourKey(main(), "LoanMast", "LoanID", LoanID.text(), next,
                                      AndCompany(session(), "CompCode"));
  if (!id.empty()) LoadLoan(id);
}

void NewLoanFrm::ShowGlance() {
  Glance.SetVisible(!loaded_id_.empty());
  if (loaded_id_.empty()) return;
  std::vector<GlanceRow> instalments;
  for (int row = 0; row < vsd3.RowCount(); ++row) {
    const auto due = DateTime::FromDisplay(vsd3.Cell(row, 1));
    if (!due) continue;
    instalments.push_back(
        {*due, Money::FromText(vsd3.Cell(row, 2)), Money::FromText(vsd3.Cell(row, 7))});
  }
  LoanGlance glance = GlanceAt(instalments, ServerTime(main()));
  // Nothing more falls due on a closed loan, whatever its schedule says.
  const bool closed = !SameText(LoanStatus.text(), "ACTIVE");
  if (closed) {
    glance.next_due.reset();
    glance.days_in_arrears = 0;
    glance.arrears = Money();
  }
  BalanceLBL.SetText(
      fmt::format("{} {}", session().In({"Balance", "结余"}), ShowMoney(LoanBal.text())));
  NextDueLBL.SetText(fmt::format("{} {}", session().In({"Next Due", "下期到期"}),
                                 glance.next_due ? ShowDate(*glance.next_due)
                                 : closed        ? session().In({"closed", "已结束"})
                                                 : session().In({"-", "-"})));
  const std::string arrears = ShowMoney(glance.arrears);
  ArrearsLBL.SetText(session().In(
      glance.days_in_arrears > 0
          ? Caption{fmt::format("Arrears {}, {} days", arrears, glance.days_in_arrears),
                    fmt::format("拖欠 {}，{} 天", arrears, glance.days_in_arrears)}
          : Caption{"No arrears", "没有拖欠"}));
  ArrearsLBL.SetMark(glance.days_in_arrears > 0);
  const double all = std::max(1, glance.paid + glance.due + glance.open);
  InstalmentBar.Set({{{"Paid", "已还"}, glance.paid / all, Bar::Part::Tone::good},
                     {{"Due", "逾期"}, glance.due / all, Bar::Part::Tone::bad},
                     {{"Open", "未到期"}, glance.open / all, Bar::Part::Tone::quiet}},
                    fmt::format("{} / {} / {}", glance.paid, glance.due, glance.open));
}

void NewLoanFrm::ReportSuspicion() {
  if (loaded_id_.empty() || !Confirm({"Confirm to report AML/CFT STR to Bank Negara ?",
                                      "确定向国家银行呈报可疑交易？"})) {
    return;
  }
  const bool typed = Typed();
  const std::string number =
      kaunter::ReportSuspicion(session(), desk(), {CustID.text(), CompCode.text(), loaded_id_, {}});
  if (number.empty()) return;
  AMLAID.SetText(number);
  if (!typed) record_.Remember();  // the report has written it into the loan
}

void NewLoanFrm::ShowAml() {
  const bool on = LoadAMLSettings(session(), CompCode.text());
  AmlPage.SetVisible(on);
  OfferShortcut(session(), SSCommand5, "AMLAFrm", {}, !session().aml.DisableSTR);
}

LoanTerms NewLoanFrm::Terms() const {
  LoanTerms terms;
  terms.DragLoan = DragLoan.index() == 1 ? LoanScheme::kFlexi : LoanScheme::kPersonal;
  terms.LoanPurpose = LoanPurpose.index() == 0 ? InterestMethod::kFlat : InterestMethod::kReducing;
  terms.secured = LoanType.index() == 0;
  terms.LoanTypeID = LoanTypeID.text();
  terms.NextDueDate = DateTime::FromDisplay(NextDueDate.text()).value_or(DateTime());
  terms.LoanAmt = LoanAmt.text();
  terms.InsRate = InsRate.text();
  terms.LoanTerm = LoanTerm.text();
  terms.LoanTerm2 = LoanTerm2.text();
  terms.LoanTerm3 = LoanTerm3.text();
  terms.FirstPayment = FirstPayment.text();
  terms.InstallmentAmt = InstallmentAmt.text();
  terms.InstallmentAmt2 = InstallmentAmt2.text();
  terms.LastPayment = LastPayment.text();
  terms.PayOutAmt2 = PayOutAmt2.text();
  terms.LoanBal = LoanBal.text();
  return terms;
}

}  // namespace kaunter
