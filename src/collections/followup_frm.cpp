#include "collections/followup_frm.h"

#include <fmt/format.h>

#include <exception>
#include <stdexcept>
#include <utility>

#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/open_for.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/record.h"
#include "core/screen_rights.h"
#include "core/telling.h"
#include "core/values.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

constexpr int kRemarksLength = 1000;
// Places in the grids.
constexpr int kHisDate = 0, kHisTime = 1, kHisRemarks = 3, kHisStatus = 4, kHisUser = 5,
              kHisNextCall = 6;
constexpr int kDueLoan = 2;

const Caption kNotFound{"Laon ID not found", "找不到贷款编号"};

Caption InvalidCode(const std::string& id) {
  return {fmt::format("Invalid Loan Code {}", id), fmt::format("贷款编号 {} 不正确", id)};
}

}  // namespace

FollowupFrm::FollowupFrm(Session& session, Desk& desk)
    : SessionScreen("FollowupFrm", {"Follow Up", "跟进"}, session, desk) {
  for (TextBox* box : {&HisCustID, &CustName, &Contact1, &Contact2, &Contact3, &Contact4, &HisDate,
                       &HisTime, &HisUserID}) {
    box->SetLocked(true);
  }
  CompCode.SetLocked(true);
  HisLoanID.max_length = kKeyLength;
  NextCall.max_length = kDateLength;
  HisRemarks.max_length = kRemarksLength;
  HisLoanID.picker = "LoanPop";
  HisLoanID.onSearch = [this] { PickLoan(); };
  HisLoanID.onLeave = [this] { LeaveLoanID(); };
  SearchCmd.onClick = [this] { PickLoan(); };
  NextCall.onLeave = [this] {
    CheckDateBox(this->session(), NextCall,
                 {"Invalid date, Please Check!", "日期不正确，请检查！"});
  };
  HisRemarks.onLeave = [this] {
    HisRemarks.SetText(ApplyCapLock(this->session(), HisRemarks.text()));
  };
  FollowUpDG.onOpen = [this](int row, int) { ShowHistory(row); };
  NextCallDG.onOpen = [this](int row, int) { OpenCall(row); };
  Command5.onClick = [this] { pages_.Next(); };
  Command6.onClick = [this] { pages_.Previous(); };
  Command2.onClick = [this] { ClearEntry(); };
  Command3.onClick = [this] { OpenCustomer(this->session(), this->desk(), HisCustID.text()); };
  Command4.onClick = [this] { OpenLoan(this->session(), this->desk(), loaded_loan_); };
  SaveCmd.onClick = [this] { Save(); };
}

void FollowupFrm::Load() {
  const std::string loan = std::exchange(session().HandOverLoanID, {});
  FillItems(HisStatus, main(), "SELECT HisStatusID FROM HisStatusMast ORDER BY HisStatusID");
  ClearLoan();
  pages_.Start();
  if (!loan.empty()) LoadLoan(loan, kNotFound);
}

bool FollowupFrm::Typed() const {
  return !history_shown_ && !(HisStatus.empty() && NextCall.empty() && HisRemarks.empty());
}

bool FollowupFrm::RequestClose() { return MayDiscard(Typed()); }

// --- the loan

void FollowupFrm::LeaveLoanID() {
  HisLoanID.SetText(Trim(HisLoanID.text()));
  if (SameText(HisLoanID.text(), loaded_loan_)) return;
  if (!MayLeaveRecord(Typed())) {
    HisLoanID.SetText(loaded_loan_);
    return;
  }
  const std::string id = HisLoanID.text();
  if (id.empty()) {
    ClearLoan();
    ClearEntry();
    return;
  }
  LoadLoan(id, InvalidCode(id));
}

void FollowupFrm::PickLoan() {
  const std::string id = Pick(session(), desk(), "LoanPop");
  if (id.empty() || !MayLeaveRecord(Typed())) return;
  LoadLoan(id, kNotFound);
}

bool FollowupFrm::Read(const Caption& failed, const std::function<void()>& read) {
  return ReadOrTell(session(), *this, fmt::format("Follow Up - Loan ID {}", HisLoanID.text()),
                    failed, read);
}

void FollowupFrm::LoadLoan(const std::string& id, const Caption& not_found) {
  ClearLoan();
  ClearEntry();
  HisLoanID.SetText(id);
  bool found = false;
  const bool read = Read(kLoanReadFailed, [&] {
    const Recordset row =
        main().Query("SELECT CustID,CompCode FROM LoanMast WHERE LoanID=" + QuoteStr(id));
    found = !row.Eof();
    if (found) CompCode.SetText(NullToEmpty(row.Field("CompCode")));
  });
  if (!read) return;
  if (!found) {
    Refuse(HisLoanID, not_found);
    return;
  }
  if (!CheckCompanyAccess(session(), desk(), CompCode)) {
    CompCode.Clear();
    HisLoanID.SetMark(true);
    FocusOn(HisLoanID);
    return;
  }
  HisLoanID.SetMark(false);
  loaded_loan_ = id;
  const bool complete = Read(kCustomerReadFailed, [this] { ReadContacts(); }) &&
                        Read(kLoanReadFailed, [this] { ReadHistory(); });
  if (!complete) {
    ClearLoan();
    HisLoanID.SetText(id);
    return;
  }
  OfferShortcut(session(), Command3, "NewCustFrm", "Edit Customer", !HisCustID.empty());
  OfferShortcut(session(), Command4, "NewLoanFrm", "Edit Loan");
}

void FollowupFrm::ReadContacts() {
  const Recordset row = main().Query(fmt::format(
      "Select cm.CustTel1, cm.CustTel2, cm.CustHP1, cm.CustHP2, cm.CustID, cm.CustName from "
      "LoanMast as ln inner join CustMast as cm on ln.CustID = cm.CustID where ln.LoanID = {}",
      QuoteStr(loaded_loan_)));
  if (row.Eof()) return;
  Contact1.SetText(NullToEmpty(row.Field("CustTel1")));
  Contact2.SetText(NullToEmpty(row.Field("CustTel2")));
  Contact3.SetText(NullToEmpty(row.Field("CustHP1")));
  Contact4.SetText(NullToEmpty(row.Field("CustHP2")));
  HisCustID.SetText(NullToEmpty(row.Field("CustID")));
  CustName.SetText(NullToEmpty(row.Field("CustName")));
}

void FollowupFrm::ReadHistory() {
  FillGrid(FollowUpDG,
           main().Query(fmt::format(
               "Select HisDate, HisTime, LoanID, HisRemarks, HisStatus, UserID, NextCall from "
               "followUpMast where LoanID = {} order by Hisdate DESC, HisTime DESC",
               QuoteStr(loaded_loan_))));
}

void FollowupFrm::ClearLoan() {
  CompCode.Clear();
  for (TextBox* box :
       {&HisLoanID, &HisCustID, &CustName, &Contact1, &Contact2, &Contact3, &Contact4}) {
    box->Clear();
  }
  loaded_loan_.clear();
  FollowUpDG.Clear();
  Command3.SetEnabled(false);
  Command4.SetEnabled(false);
}

void FollowupFrm::ClearEntry() {
  for (TextBox* box : {&HisDate, &HisTime, &NextCall, &HisRemarks, &HisUserID}) {
    box->Clear();
    box->SetMark(false);
  }
  HisStatus.Clear();
  HisStatus.SetMark(false);
  history_shown_ = false;
}

void FollowupFrm::ShowHistory(int row) {
  if (!MayLeaveRecord(Typed())) return;
  ClearEntry();
  HisDate.SetText(FollowUpDG.Cell(row, kHisDate));
  HisTime.SetText(FollowUpDG.Cell(row, kHisTime));
  HisRemarks.SetText(FollowUpDG.Cell(row, kHisRemarks));
  HisStatus.SetText(FollowUpDG.Cell(row, kHisStatus));
  HisUserID.SetText(FollowUpDG.Cell(row, kHisUser));
  NextCall.SetText(FollowUpDG.Cell(row, kHisNextCall));
  history_shown_ = true;
}

// --- a new call

bool FollowupFrm::Check() {
  if (history_shown_) {
    return Refuse(HisRemarks, {"History data are not allow to change", "不可更改历史资料"});
  }
  if (HisLoanID.empty()) return Refuse(HisLoanID, {"Loan ID is require", "请输入贷款编号"});
  // What was refused when it was typed is no loan now either.
  if (!SameText(HisLoanID.text(), loaded_loan_)) {
    return Refuse(HisLoanID, InvalidCode(HisLoanID.text()));
  }
  if (HisStatus.empty()) return Refuse(HisStatus, {"Status is require", "请选择状态"});
  if (!IsDate(NextCall.text())) {
    return Refuse(NextCall, {"Next call is require", "请输入下次联络日期"});
  }
  if (Trim(HisRemarks.text()).empty()) {
    return Refuse(HisRemarks, {"Remarks is require", "请输入备注"});
  }
  return true;
}

void FollowupFrm::Save() {
  if (!Check()) return;
  if (!Confirm({"Confirm to save Follow Up record?", "确定储存跟进资料？"})) return;
  bool recorded = false;
  try {
    const Hourglass busy(desk());
    Store(recorded);
  } catch (const std::exception& failure) {
    LogRollback(session(), fmt::format("Follow Up - Loan ID {}", loaded_loan_), failure);
    // The two statements stand for themselves: a call that is in the log is not told as lost.
    Tell(MessageKind::critical,
         recorded
             ? Failed({"The call is recorded, but its next call date is not on the loan",
                       "联络已记录，但贷款的下次联络日期没有更改"},
                      failure,
                      {"Mend the cause. Do not enter the call again; the next one sets the date.",
                       "请排除原因。请勿重复输入此联络；下一次联络会更改日期。"})
             : Failed({"an error occur during saving record", "储存资料时出现错误"}, failure));
    if (!recorded) return;
  }
  if (recorded) {
    // The boxes are free for the next call; its date and time stay in sight.
    const std::string date = HisDate.text();
    const std::string time = HisTime.text();
    ClearEntry();
    HisDate.SetText(date);
    HisTime.SetText(time);
  }
  Read(kLoanReadFailed, [this] { ReadHistory(); });
  pages_.Again();
}

void FollowupFrm::Store(bool& recorded) {
  const DateTime now = ServerTime(main());
  const std::string id = QuoteStr(loaded_loan_);
  if (ScalarQuery(main(), "SELECT LoanID FROM LoanMast WHERE LoanID=" + id).empty()) {
    throw std::runtime_error(loaded_loan_ + " not found");
  }
  HisDate.SetText(ShowDate(Value(now)));
  HisTime.SetText(Format(now, "hh:nn:ss"));
  main().Execute(fmt::format(
      "INSERT INTO FollowUpMast "
      "(HisDate,HisTime,LoanID,HisStatus,HisRemarks,NextCall,UserID,DateCreated) VALUES "
      "({},{},{},{},{},{},{},{})",
      SqlDate(HisDate.text()), QuoteStr(HisTime.text()), id, QuoteStr(HisStatus.text()),
      QuoteStr(HisRemarks.text()), SqlDate(NextCall.text()), QuoteStr(session().CurrentUserID),
      SqlDateTime(now)));
  recorded = true;
  ExecuteOnRow(
      main(),
      fmt::format("UPDATE LoanMast SET NextCall={} WHERE LoanID={}", SqlDate(NextCall.text()), id),
      loaded_loan_);
  Tell(MessageKind::information, {"Record save", "资料已储存"});
}

// --- calls due

void FollowupFrm::ShowCalls(int limit_from) {
  const std::string calls = fmt::format(
      "ln.NextCall as 'NextCall', ln.NextDueDate as 'NextDueDate', ln.LoanID as "
      "'LoanID',ln.CompCode as 'CompCode',cm.CustName as 'CustName' from LoanMast as ln LEFT OUTER "
      "JOIN CustMast as cm on ln.CustID = cm.CustID where ln.NextCall <= {} and ln.LoanBal > 0{}",
      SqlDate(ServerNow(main(), false)), AndCompany(session(), "ln.CompCode"));
  // Loans of the same day are parted by their key.
  const std::string sql =
      PageStatement(calls, {"ln.NextCall", "ln.LoanID"}, true, pages_.size(), limit_from);
  if (Read(kLoanReadFailed, [&] { FillGrid(NextCallDG, main().Query(sql)); }))
    pages_.Shown(limit_from);
}

void FollowupFrm::OpenCall(int row) {
  if (!MayLeaveRecord(Typed())) return;
  LoadLoan(NextCallDG.Cell(row, kDueLoan), kNotFound);
}

}  // namespace kaunter
