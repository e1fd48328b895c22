#include "customers/new_cust_frm.h"

#include <fmt/format.h>

#include "core/boxes.h"
#include "core/company_access.h"
#include "core/identity.h"
#include "core/open_for.h"
#include "core/picker.h"
#include "core/screen_rights.h"
#include "core/values.h"
#include "customers/customer_store.h"

namespace kaunter {
namespace {

std::vector<GridColumn> ReferrerColumns() {
  return {{{"Name", "姓名"}, Kind::text, 24},        {{"New IC", "新身份证"}, Kind::text, 14},
          {{"Old IC", "旧身份证"}, Kind::text, 10},  {{"Relationship", "关系"}, Kind::text, 12},
          {{"Company", "公司名称"}, Kind::text, 18}, {{"Business", "业务"}, Kind::text, 0},
          {{"Position", "职位"}, Kind::text, 0},     {{"Monthly Income", "月入"}, Kind::money, 12},
          {{"Address", "地址"}, Kind::text, 0},      {{"Address 2", "地址 2"}, Kind::text, 0},
          {{"Address 3", "地址 3"}, Kind::text, 0},  {{"Tel", "电话"}, Kind::text, 12},
          {{"Fax", "传真"}, Kind::text, 0},          {{"Mobile", "手机"}, Kind::text, 14},
          {{"E-mail", "电邮"}, Kind::text, 0}};
}

std::vector<GridColumn> LoanColumns() {
  return {{{"Loan Code", "贷款编号"}, Kind::text, 14},
          {{"Cust Code", "顾客号码"}, Kind::text, 10},
          {{"Loan Date", "贷款日期"}, Kind::date, 11},
          {{"Loan Amount", "贷款金额"}, Kind::money, 12},
          {{"Rate", "期数"}, Kind::text, 6},
          {{"Capital", "本金"}, Kind::money, 12},
          {{"Term", "分期"}, Kind::text, 14},
          {{"Pay Amt", "分期金额"}, Kind::money, 11},
          {{"Loan Type", "贷款状态"}, Kind::text, 18},
          {{"Tot Ints", "利息总额"}, Kind::money, 11},
          {{"Tot Charge", "收费总额"}, Kind::money, 11},
          {{"Tot Paid", "已还总额"}, Kind::money, 12},
          {{"Balance", "结余"}, Kind::money, 12},
          {{"Status", "状态"}, Kind::text, 10}};
}

std::vector<GridColumn> ApplicationColumns() {
  return {{{"Application No", "申请编号"}, Kind::text, 12},
          {{"Date", "日期"}, Kind::date, 10},
          {{"Loan Amount", "贷款金额"}, Kind::money, 12},
          {{"Recommendation", "推荐"}, Kind::text, 12},
          {{"Approval", "批准"}, Kind::text, 12},
          {{"Role", "身份"}, Kind::text, 12},
          {{"Relationship", "关系"}, Kind::text, 16}};
}

}  // namespace

NewCustFrm::NewCustFrm(Session& session, Desk& desk)
    : SessionScreen("NewCustFrm", {"Customer", "顾客"}, session, desk),
      AppDG(*this, "AppDG", {"Applications", "贷款申请"}, ApplicationColumns(), &BankPage),
      RefLV(*this, "RefLV", {"Referrers", "介绍人"}, ReferrerColumns(), &RefererPage),
      DocDG(*this, "DocDG", {"Documents", "文件"},
            {{{"Doc No", "文件号码"}, Kind::text, 16},
             {{"Description", "说明"}, Kind::text, 34},
             {{"File", "文件名"}, Kind::text, 22},
             {{"User", "用户"}, Kind::text, 10},
             {{"Date Created", "建立日期"}, Kind::text, 17}},
            &DocumentPage),
      CheckListDG(*this, "CheckListDG", {"Check List", "查核表"},
                  {{{"Description", "说明"}, Kind::text, 34},
                   {{"Detail", "详情"}, Kind::text, 20, true},
                   {{"Checked", "已查核"}, Kind::text, 8, true},
                   {{"Remarks", "备注"}, Kind::text, 30, true}},
                  &CheckListPage),
      LoanDG(*this, "LoanDG", {"Loans", "贷款"}, LoanColumns(), &LoanPage),
      record_("CustMast", "CustID") {
  BindRecord();
  BindEvents();
  CapTexts(session, *this);
}

void NewCustFrm::BindRecord() {
  for (TextBox* date : {&DOB, &CustSpouseDOB, &StartWorkDate, &EndWorkDate}) {
    record_.Add(*date, As::birth_date);
  }
  record_.AddPage(CustomerPage).AddPage(ContactPage).AddPage(WorkPage).AddPage(SpousePage);
  record_.AddPage(BankPage, {&AppType, &Relationship}).AddPage(PhotoPage);
  // The loan save keeps the totals; a new customer has none.
  for (const char* total : {"TotLoan", "TotLoanBal", "TotLoanAmt2", "TotTopUpAmt"}) {
    record_.AddValue(total, [] { return std::string("0"); }).InsertOnly();
  }
  record_.AddValue("UserID", [this] { return QuoteStr(session().CurrentUserID); }).InsertOnly();
  record_.AddValue("DateCreated", [this] { return SqlDateTime(ServerNow(main(), true)); })
      .InsertOnly();
}

void NewCustFrm::BindEvents() {
  CustID.onLeave = [this] {
    CustID.SetText(Upper(Trim(CustID.text())));
    if (CustID.empty() || CustID.text() == loaded_id_) return;
    if (MayLeaveRecord(Changed())) {
      LoadCustomer(CustID.text());
    } else {
      CustID.SetText(loaded_id_);
    }
  };
  OfferPicker(session(), CustID, "CustPop", [this](const std::string& id) {
    if (MayLeaveRecord(Changed())) LoadCustomer(id);
  });
  SearchText.onLeave = [this] { LoadByText(); };
  OfferPicker(session(), AppID, "AppPop", [this](const std::string& id) { AppID.SetText(id); });
  CompCode.onLeave = [this] {
    if (!CheckCompanyAccess(session(), desk(), CompCode)) {
      CompCode.Clear();
      FocusOn(CompCode);
    }
    FollowCompany();
  };
  AreaCode.onPick = [this] { LeaveArea(); };
  CustNIC.mask = CustSpouseNIC.mask = RefererNIC.mask = kNewIcMask;
  CustNIC.onLeave = [this] {
    LeaveNewIc(CustNIC, DOB);
    CheckDuplicate(CustNIC, "CustNIC", {"New IC", "新身份证"});
    if (!CustNIC.marked()) ScreenOnLeave(CustNIC.text(), {});
  };
  CustOIC.onLeave = [this] {
    CheckDuplicate(CustOIC, "CustOIC", {"Old IC", "旧身份证"});
    ScreenOnLeave({}, CustOIC.text());
  };
  CustOthIC.onLeave = [this] { CheckDuplicate(CustOthIC, "CustOthIC", {"Other IC", "其他证件"}); };
  CustSpouseNIC.onLeave = [this] { LeaveNewIc(CustSpouseNIC, CustSpouseDOB); };
  for (TextBox* box : {&TrxDate, &DOB, &CustSpouseDOB, &StartWorkDate, &EndWorkDate}) {
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box); };
  }
  for (TextBox* box : {&CustCompIncome, &CustSpouseCompIncome, &CreditLimit, &RefererCompIncome}) {
    box->onLeave = [this, box] { LeaveMoney(*box); };
  }
  for (TextBox* box : {&CustName, &CustAdd1, &CustCompPos}) {
    box->onLeave = [this, box] { TidyBox(*box); };
  }
  BindCardReader();
  JobType.onPick = [this] {
    // The yearly return counts persons by their employer: a blank one takes the kind of job.
    if (AreaCode.text() == "PERSONAL" && Employer.empty()) Employer.SetText(JobType.text());
  };
  AddEditCmd.onClick = [this] { AddReferrer(); };
  RemoveRefCmd.onClick = [this] {
    if (RefLV.current_row() >= 0) RefLV.RemoveRow(RefLV.current_row());
    EditReferrer(-1);
  };
  RefLV.onRow = [this](int row) { EditReferrer(row); };
  AddDocCmd.onClick = [this] { ChooseDocument(); };
  DocDG.onFiles = [this](const std::vector<std::string>& files) { AddDocuments(files); };
  DocDG.onRow = [this](int row) { ShowDocument(row); };
  DocStrip.onPick = [this](int item) { DocDG.Select(item); };
  PhotoStrip.onPick = [this](int item) {
    PhotoPreview.SetPath(PhotoStrip.items().at(static_cast<std::size_t>(item)).path);
  };
  RemoveDocCmd.onClick = [this] { RemoveDocuments(); };
  OpenDocCmd.onClick = [this] { OpenDocument(); };
  StopSendCmd.onClick = [this] {
    if (FileStore* store = OpenStore(this->session())) store->StopSending();
  };
  SendAgainCmd.onClick = [this] {
    if (FileStore* store = StoreOf(this->session())) store->SendAll();
    ShowSending();
  };
  DocDG.SetHasChecks(true);
  DocDG.onOpen = [this](int, int) { OpenDocument(); };
  TextBox* pictures[] = {&Pic1, &Pic2, &Pic3, &Pic4, &Pic5, &Pic6};
  for (int i = 0; i < 6; ++i) {
    pictures[i]->picker = "file";
    pictures[i]->onSearch = [this, box = pictures[i], i] { ChoosePhoto(*box, i + 1); };
  }
  LoanDG.onOpen = [this](int row, int) { OpenFor("NewLoanFrm", "Edit Loan", LoanDG.Cell(row, 0)); };
  OpenLoansChk.onClick = [this] { LoadLoans(loaded_id_); };
  CmdLinkApp.onClick = [this] { LinkApplication(); };
  CmdPrev.onClick = [this] { ShowNeighbour(false); };
  CmdNext.onClick = [this] { ShowNeighbour(true); };
  CmdNew.onClick = [this] { Import(); };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(Changed())) StartNew();
  };
  CmdNewLoan.onClick = [this] { OpenFor("NewLoanFrm", "New Loan"); };
  CmdLoan.onClick = [this] { OpenFor("NewLoanFrm", "Edit Loan"); };
  CmdPay.onClick = [this] { OpenFor("PaymentFrm", "New Payment"); };
  CmdBuyGold.onClick = [this] { OpenFor("FrmBuyGold", "Buy Gold"); };
  CmdSTR.onClick = [this] { ReportSuspicion(); };
  ECust.onClick = [this] { OpenFor("ECustMast", "E-Invoice"); };
  CmdDelete.onClick = [this] { DeleteAfterPassword(); };
  CmdAllowDelete.onClick = [this] { AskManagerToDelete(); };
  SaveCmd.onClick = [this] { Save(); };
}

void NewCustFrm::Load() {
  record_.TakeWidths(main());
  FillCompanies(CompCode, session());
  FillItems(CustRace, main(), "SELECT CustRaceID FROM CustRaceMast ORDER BY CustRaceID");
  CustSpouseRace.SetItems(CustRace.items());
  FillItems(AreaCode, main(), "SELECT AreaCode FROM AreaMast ORDER BY AreaCode");
  FillItems(CompCatCode, main(), "SELECT CompCatCode FROM CampanyCategory ORDER BY CompCatCode");
  CreditLimit.SetEnabled(session().AllowCreditLimit);
  CreditLimitType.SetEnabled(session().AllowCreditLimit);
  delete_mode_ = session().CallerTag == "Delete Customer";
  if (delete_mode_) SaveCmd.SetCaption({"&Delete", "删除(&D)"});
  CmdDelete.SetVisible(!delete_mode_);
  for (Button* button : {&cmdCardReader, &cmdSpouseCardReader, &cmdRefererCardReader}) {
    button->SetEnabled(!delete_mode_);
  }
  CmdNew.SetVisible(!session().LinkDBString.empty());
  ECust.SetVisible(session().settings.EInv && desk().CanShow("ECustMast"));
  OfferShortcut(session(), CmdNewLoan, "NewLoanFrm", "New Loan");
  OfferShortcut(session(), CmdLoan, "NewLoanFrm", "Edit Loan");
  OfferShortcut(session(), CmdPay, "PaymentFrm", "New Payment");
  OfferShortcut(session(), CmdBuyGold, "FrmBuyGold", "Buy Gold");
  ShowSending();
  StartNew();
  if (!session().HandOverCustID.empty()) LoadCustomer(session().HandOverCustID);
}

bool NewCustFrm::Changed() const {
  return record_.Changed(&CustID) || Lists() != remembered_lists_;
}

bool NewCustFrm::RequestClose() { return MayDiscard(Changed()); }

void NewCustFrm::ClearAll() {
  record_.Clear();
  card_photo_.Drop();
  loaded_id_.clear();
  loaded_values_.clear();
  edit_approved_ = delete_approved_ = false;
  list_away_ = false;
  ShowDeleteRight();
  CustStatus.SetEnabled(true);
  SearchText.Clear();
  AppType.Clear();
  Relationship.Clear();
  LoadLists({});
}

void NewCustFrm::StartNew() {
  ClearAll();
  CustStatus.SetText("ACTIVE");
  TrxDate.SetText(ServerNow(main(), false));
  if (MayUseCompany(session(), session().CurrentCompCode))
    CompCode.SetText(session().CurrentCompCode);
  record_.Remember();
  OfferReporting();
  FocusOn(CustID);
}

void NewCustFrm::LoadCustomer(const std::string& id) {
  const Recordset row =
      main().Query(fmt::format("SELECT * FROM CustMast WHERE CustID={}", QuoteStr(id)));
  if (row.Eof()) {
    ClearAll();
    RefuseCode(CustID, {"Customer not found", "找不到顾客"});
    return;
  }
  const std::string company = NullToEmpty(row.Field("CompCode"));
  if (!MayUseCompany(session(), company)) {
    Tell(MessageKind::critical, {fmt::format("You Cannot Access Company {}", company),
                                 fmt::format("您不能进入 {}", company)});
    ClearAll();
    return;
  }
  ClearAll();
  record_.Load(row);
  loaded_id_ = NullToEmpty(row.Field("CustID"));
  for (const char* column : {"CustName", "CustNIC", "CustOIC", "CustOthIC", "TrxDate"}) {
    loaded_values_.push_back(row.Field(column));
  }
  CustID.SetMark(false);
  CustStatus.SetMark(CustStatus.text() == "AMLA");
  LoadLists(loaded_id_);
  OfferReporting();
}

void NewCustFrm::LoadByText() {
  SearchText.SetText(Trim(SearchText.text()));
  if (SearchText.empty()) return;
  const std::string id = FindCustomerByText(main(), SearchText.text(), CompCode.text());
  if (id.empty()) {
    Refuse(SearchText, {"Customer not found", "找不到顾客"});
    return;
  }
  SearchText.SetMark(false);
  if (MayLeaveRecord(Changed())) LoadCustomer(id);
}

void NewCustFrm::ShowNeighbour(bool next) {
  if (!MayLeaveRecord(Changed())) return;
  const std::string id = NeighbourKey(main(), "CustMast", "CustID", CustID.text(), next);
  if (!id.empty()) LoadCustomer(id);
}

void NewCustFrm::OpenFor(const std::string& screen, const std::string& command,
                         const std::string& loan_id) {
  if (loaded_id_.empty() || !desk().CanShow(screen)) return;
  kaunter::OpenFor(session(), desk(), screen, command, HandOver{loaded_id_, loan_id, {}});
  LoadLoans(loaded_id_);
  ShowCredit(loaded_id_);
}

}  // namespace kaunter
