#include "loans/loan_app_frm.h"

#include <fmt/format.h>

#include "core/boxes.h"
#include "core/company_access.h"
#include "core/picker.h"
#include "core/values.h"

namespace kaunter {
namespace {

std::vector<GridColumn> PersonColumns() {
  return {{{"Customer Code", "顾客编号"}, Kind::text, 12},
          {{"Customer Name", "顾客姓名"}, Kind::text, 30},
          {{"Role", "身份"}, Kind::text, 12},
          {{"Relationship", "关系"}, Kind::text, 20}};
}

std::vector<GridColumn> HistoryColumns() {
  return {{{"Date", "日期"}, Kind::date, 10, true},
          {{"Description", "说明"}, Kind::text, 50, true},
          {{"User", "用户"}, Kind::text, 10},
          {{"Date Created", "建立日期"}, Kind::text, 16}};
}

std::vector<GridColumn> MrtaColumns() {
  return {{{"Insured", "受保人"}, Kind::text, 40, true},
          {{"Sum Insured", "保额"}, Kind::money, 16, true},
          {{"Premium", "保险费"}, Kind::money, 16, true}};
}

}  // namespace

LoanAppFrm::LoanAppFrm(Session& session, Desk& desk)
    : LoanScreen("LoanAppFrm", {"Loan Application", "贷款申请"}, session, desk),
      LinkDG(*this, "LinkDG", {"Persons", "人物"}, PersonColumns(), &PersonPage),
      vsd(*this, "vsd", {"History", "经过"}, HistoryColumns(), &HistoryPage),
      vsdd(*this, "vsdd", {"MRTA", "房贷保险"}, MrtaColumns(), &MrtaPage),
      record_("AppMast", "AppID") {
  BindRecord();
  BindEvents();
  BindListEvents();
  CapTexts(session, *this);
}

void LoanAppFrm::BindRecord() {
  record_.AddValue("AppID", [this] { return QuoteStr(drawn_id_); }).InsertOnly();
  record_.Add(AppID).ReadOnly();
  // Whose loan it becomes is the loan's to write.
  record_.AddValue("LoanID", [] { return std::string("''"); }).InsertOnly();
  record_.Add(LoanID).ReadOnly();
  record_.Add(CustID).InsertOnly();
  record_.Add(DragLoan, As::index);
  // The terms are texts in the table as they are on the screen.
  record_.Add(LoanTerm).Add(LoanTerm3);
  record_.AddPage(TermsPage).AddPage(PropertyPage).AddPage(ConditionPage).AddPage(Decision);
  record_.AddValue("UserID", [this] { return QuoteStr(session().CurrentUserID); }).InsertOnly();
  record_.AddValue("DateCreated", [this] { return SqlDateTime(ServerNow(main(), true)); })
      .InsertOnly();
}

void LoanAppFrm::BindEvents() {
  for (TextBox* shown : {&CustName, &LoanID, &ApprovedUser, &ApprovalDate, &ApprovedUser2,
                         &ApprovalDate2, &LinkName}) {
    shown->SetLocked(true);
  }
  for (TextBox* box : TypedFigures()) box->onLeave = [this, box] { CheckTyped(*box); };
  AppID.onLeave = [this] {
    AppID.SetText(Upper(Trim(AppID.text())));
    if (AppID.empty() || SameText(AppID.text(), loaded_id_)) return;
    if (MayLeaveRecord(Typed())) {
      LoadApplication(AppID.text());
    } else {
      AppID.SetText(loaded_id_);
    }
  };
  OfferPicker(session(), AppID, "AppPop", [this](const std::string& id) {
    if (MayLeaveRecord(Typed())) LoadApplication(id);
  });
  CustID.onLeave = [this] {
    CustID.SetText(Upper(Trim(CustID.text())));
    CustID.SetMark(false);
    if (!CustID.empty()) LoadCustomer();
  };
  OfferPicker(session(), CustID, "CustPop", [this](const std::string& id) {
    CustID.SetText(id);
    LoadCustomer();
  });
  CompCode.onLeave = [this] {
    if (CheckCompanyAccess(session(), desk(), CompCode)) return;
    CompCode.Clear();
    FocusOn(CompCode);
  };
  AppStatus.onPick = [this] { DecideFirst(); };
  AppStatus2.onPick = [this] { DecideFinal(); };
  Command3.onClick = [this] { CalculatePayment(); };
  CmdNew.onClick = [this] {
    if (MayLeaveRecord(Typed())) StartNew();
  };
  CmdPrint.onClick = [this] { PrintApplication(); };
  SSCommand1.onClick = [this] { PrintLetterOffer(); };
  SaveCmd.onClick = [this] { Save(); };
}

void LoanAppFrm::Load() {
  const std::string customer = session().HandOverCustID;
  record_.TakeWidths(main());
  FillCompanies(CompCode, session());
  FillItems(LoanTypeID, main(), "SELECT LoanTypeID FROM LoanTypeMast ORDER BY LoanTypeID");
  FillItems(property.CollateralID, main(),
            "SELECT CollateralID FROM CollateralMast ORDER BY CollateralID");
  StartNew();
  if (customer.empty()) return;
  CustID.SetText(customer);
  LoadCustomer();
}

bool LoanAppFrm::Typed() const {
  return SaveCmd.enabled() && (record_.Changed(&AppID) || Lists() != remembered_lists_);
}

bool LoanAppFrm::RequestClose() { return MayDiscard(Typed()); }

void LoanAppFrm::ClearAll() {
  record_.Clear();
  CustName.Clear();
  for (TextBox* box : {&LinkCust, &LinkName, &LinkRelation}) box->Clear();
  LinkType.Clear();
  loaded_id_.clear();
  loaded_decision_.clear();
}

void LoanAppFrm::StartNew() {
  ClearAll();
  TrxDate.SetText(ServerNow(main(), false));
  if (MayUseCompany(session(), session().CurrentCompCode)) {
    CompCode.SetText(session().CurrentCompCode);
  }
  LoanTypeID.SetText("MONTH");
  DragLoan.SetIndex(0);
  LoanPurpose.SetIndex(0);
  AppStatus.SetIndex(0);
  AppStatus2.SetIndex(0);
  LoadLists();
  ApplyLocks();
  record_.Remember();
  FocusOn(CustID);
}

void LoanAppFrm::LoadApplication(std::string id) {
  const Recordset row =
      main().Query(fmt::format("SELECT * FROM AppMast WHERE AppID={}", QuoteStr(id)));
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    StartNew();
    RefuseCode(AppID,
               {fmt::format("Application {} not found", id), fmt::format("找不到申请 {}", id)});
    return;
  }
  ClearAll();
  record_.Load(row);
  loaded_id_ = NullToEmpty(row.Field("AppID"));
  loaded_decision_ = StoredDecision(loaded_id_);
  CustName.SetText(ScalarQuery(main(), fmt::format("SELECT CustName FROM CustMast WHERE CustID={}",
                                                   QuoteStr(CustID.text()))));
  LoadLists();
  ApplyLocks();
}

bool LoanAppFrm::FindPerson(TextBox& box, TextBox& name, std::string* company) {
  name.Clear();
  const Recordset row = main().Query(
      fmt::format("SELECT CustName,CompCode FROM CustMast WHERE CustID={}", QuoteStr(box.text())));
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    return Refuse(box, {fmt::format("Customer ID {} not found", box.text()),
                        fmt::format("找不到顾客 {}", box.text())});
  }
  box.SetMark(false);
  name.SetText(NullToEmpty(row.Field("CustName")));
  if (company != nullptr) *company = NullToEmpty(row.Field("CompCode"));
  return true;
}

bool LoanAppFrm::LoadCustomer() {
  std::string company;
  if (!FindPerson(CustID, CustName, &company)) return false;
  CompCode.SetText(company);
  return true;
}

// --- the two levels

void LoanAppFrm::ApplyLocks() {
  const bool is_new = loaded_id_.empty();
  const bool taken_up = !LoanID.empty();
  const std::string& user = session().CurrentUserID;
  const auto is_other = [&user](const TextBox& box) {
    return !box.empty() && !SameText(box.text(), user);
  };
  const auto is_final = [](const ComboBox& status) {
    return SameText(status.text(), "Approved") || SameText(status.text(), "Rejected");
  };
  // Each decision is changed only by who made it.
  AppStatus.SetEnabled(!taken_up && session().CurrentLevel >= 2 && !is_other(ApprovedUser) &&
                       !is_final(AppStatus2));
  AppStatus2.SetEnabled(!taken_up && session().CurrentLevel >= 3 && !is_other(ApprovedUser2));
  for (Frame* frame : {&F1, &F2}) frame->SetEnabled(!taken_up && !is_final(AppStatus));
  for (Control* control : std::initializer_list<Control*>{
           &vsd, &vsdd, &LinkDG, &Command1, &LinkCust, &LinkRelation, &LinkType, &SaveCmd}) {
    control->SetEnabled(!taken_up);
  }
  for (Control* control : Children(&ConditionPage)) {
    control->SetEnabled(!taken_up);
  }
  CustID.SetEnabled(is_new);
  CmdPrint.SetEnabled(!is_new);
  SSCommand1.SetEnabled(!is_new);
  ShowState();
}

void LoanAppFrm::ShowState() {
  const bool recommended = SameText(AppStatus.text(), "Approved");
  const bool approved = SameText(AppStatus2.text(), "Approved");
  const bool closed = SameText(AppStatus.text(), "Rejected") ||
                      SameText(AppStatus.text(), "Cancel") ||
                      SameText(AppStatus2.text(), "Rejected");
  const Caption state =
      loaded_id_.empty()         ? Caption{"New application", "新申请"}
      : loaded_id_.back() == '*' ? Caption{"Out of use", "已停用"}
      : !LoanID.empty()          ? Caption{fmt::format("Taken up by loan {}", LoanID.text()),
                                  fmt::format("已成为贷款 {}", LoanID.text())}
      : closed                   ? Caption{"Closed without a loan", "已结束，不贷款"}
      : recommended && approved  ? Caption{"Ready for a loan", "已批准，可成为贷款"}
      : recommended              ? Caption{"Waiting for approval", "已推荐，等待批准"}
                                 : Caption{"Open", "等待推荐"};
  StateLBL.SetText(session().In(state));
}

void LoanAppFrm::DecideFirst() {
  const bool decided = !AppStatus.empty() && !SameText(AppStatus.text(), "Pending");
  ApprovedUser.SetText(decided ? session().CurrentUserID : std::string());
  ApprovalDate.SetText(decided ? ServerNow(main(), false) : std::string());
}

bool LoanAppFrm::ApprovedTooEarly() const {
  return SameText(AppStatus2.text(), "Approved") && !SameText(AppStatus.text(), "Approved");
}

void LoanAppFrm::DecideFinal() {
  const bool too_early = ApprovedTooEarly();
  if (too_early) AppStatus2.SetIndex(0);
  const bool decided = !AppStatus2.empty();
  ApprovedUser2.SetText(decided ? session().CurrentUserID : std::string());
  ApprovalDate2.SetText(decided ? ServerNow(main(), false) : std::string());
  if (too_early) {
    Refuse(AppStatus2, {"Recommended not approved, please approve before final approve",
                        "尚未推荐，请先推荐再批准"});
  }
}

std::string LoanAppFrm::StoredDecision(const std::string& id) const {
  const Recordset row = main().Query(fmt::format(
      "SELECT LoanID,AppStatus,AppStatus2,ApprovedUser,ApprovedUser2 FROM AppMast WHERE AppID={}",
      QuoteStr(id)));
  std::string all;
  for (std::size_t i = 0; !row.Eof() && i < row.columns().size(); ++i) {
    all += NullToEmpty(row.Field(i)) + "|";
  }
  return all;
}

// --- boxes that are left

std::vector<TextBox*> LoanAppFrm::TypedFigures() const {
  std::vector<TextBox*> boxes;
  for (Control* control : controls()) {
    if (control->type() != ControlType::text_box || control->locked()) continue;
    auto* box = static_cast<TextBox*>(control);
    const Kind kind = box->kind();
    if (kind == Kind::date || kind == Kind::money || kind == Kind::rate || kind == Kind::integer) {
      boxes.push_back(box);
    }
  }
  return boxes;
}

bool LoanAppFrm::CheckTyped(TextBox& box) {
  box.SetText(Trim(box.text()));
  box.SetMark(false);
  if (box.empty()) return true;
  bool good = true;
  switch (box.kind()) {
    case Kind::date:
      good = IsDate(box.text());
      break;
    case Kind::integer:
      good = box.text().find_first_not_of("0123456789") == std::string::npos;
      break;
    case Kind::money:
    case Kind::rate: {
      const auto amount = Money::TryText(box.text());
      good = amount && *amount >= Money();
      if (good && box.kind() == Kind::money) box.SetText(ShowMoney(*amount));
      break;
    }
    default:
      break;
  }
  return good || Refuse(box, {fmt::format("Invalid {}", box.caption().english),
                              fmt::format("{}不正确", box.caption().chinese)});
}

}  // namespace kaunter
