#include "cash/personal_epx_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cash/largest_amount.h"
#include "core/amounts.h"
#include "core/audit.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/open_for.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/report_path.h"
#include "core/screen_rights.h"
#include "core/session_report.h"
#include "core/values.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

constexpr int kNumberLength = 10;  // of the server's count
constexpr std::string_view kCash = "CASH";
constexpr const char* kVoucher = "ExpenseVoucher.rpt";
constexpr const char* kListing = "PersonalExpReport.rpt";

const Caption kNotFound{"Record not found", "找不到记录"};
const Caption kDebit{"Debit", "收入"};
const Caption kCredit{"Credit", "支出"};

bool IsNumber(std::string_view id) {
  return !id.empty() && id.size() <= kNumberLength &&
         std::ranges::all_of(id, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

PersonalEpxFrm::PersonalEpxFrm(Session& session, Desk& desk)
    : SessionScreen("PersonalEpxFrm", {"Expenses", "开销"}, session, desk),
      record_("PersonalExp", "TrxID"),
      right_(session, desk) {
  UserID.SetLocked(true);
  record_.Add(CompCode).Add(ExpDate, As::date, "TrxDate").Add(ExpDesc, As::text, "TrxDesc");
  record_.Add(DebitAmt, As::money).Add(CreditAmt, As::money).Add(CBCat).Add(Bank).Add(ChqNo);
  record_.Add(UserID);
  OfferPicker(session, TrxID, "ExpPop", [this](const std::string& id) { LoadExpense(id); });
  TrxID.onLeave = [this] { LeaveTrxID(); };
  SearchCmd.onClick = [this] { TrxID.onSearch(); };
  CompCode.onLeave = [this] {
    if (!CheckCompanyAccess(this->session(), this->desk(), CompCode)) FocusOn(CompCode);
  };
  ExpDate.onLeave = [this] {
    CheckDateBox(this->session(), ExpDate, {"Invalid Expenses Date", "开销日期不正确"});
  };
  ExpDesc.onLeave = [this] { ExpDesc.SetText(ApplyCapLock(this->session(), ExpDesc.text())); };
  DebitAmt.onLeave = [this] { CheckAmount(DebitAmt, kDebit); };
  CreditAmt.onLeave = [this] { CheckAmount(CreditAmt, kCredit); };
  CmdList.onClick = [this] {
    OpenReport(this->session(), this->desk(), "Expenses Report",
               this->session().ChineseFlag ? ChineseReportName(kListing) : kListing);
  };
  CmdPrint.onClick = [this] { Print(); };
  DeleteCmd.onClick = [this] { Delete(); };
  Command2.onClick = [this] {
    if (MayLeaveRecord(record_.Changed())) StartNew();
  };
  SaveCmd.onClick = [this] { Save(); };
}

void PersonalEpxFrm::Load() {
  record_.TakeWidths(main());
  TrxID.max_length = kNumberLength;
  ExpDate.max_length = kDateLength;
  DebitAmt.max_length = CreditAmt.max_length = kMoneyLength;
  FillCompanies(CompCode, session());
  FillItems(CBCat, main(), "SELECT CatCode FROM CashBookCat ORDER BY CatCode");
  FillItems(Bank, main(), "SELECT BankCode FROM BankMast ORDER BY BankCode");
  std::vector<std::string> banks = Bank.items();
  std::erase_if(banks, [](const std::string& code) { return SameText(code, kCash); });
  banks.insert(banks.begin(), std::string(kCash));
  Bank.SetItems(std::move(banks));
  OfferReport(session(), CmdList, kListing);
  StartNew();
}

bool PersonalEpxFrm::RequestClose() { return MayDiscard(record_.Changed()); }

// --- showing an expense

void PersonalEpxFrm::StartNew() {
  record_.Clear();
  TrxID.Clear();
  TrxID.SetMark(false);
  UserID.SetText(session().CurrentUserID);
  // Whoever has one company has no choice to make.
  if (session().CurrentLevel < 4 && CompCode.items().size() == 1) CompCode.SetIndex(0);
  loaded_id_.clear();
  loaded_values_.clear();
  right_.Forget();
  DeleteCmd.SetEnabled(false);
  CmdPrint.SetEnabled(false);
  record_.Remember();
}

void PersonalEpxFrm::LeaveTrxID() {
  LeaveKey(
      TrxID, loaded_id_, record_.Changed(), [this](std::string id) { LoadExpense(std::move(id)); },
      [this] { StartNew(); });
}

void PersonalEpxFrm::LoadExpense(std::string id) {
  Recordset row;
  const bool read =
      !IsNumber(id) ||
      ReadOrTell(session(), *this, "Expenses " + id,
                 {"an error occur during reading expenses", "阅读开销资料时出现错误"},
                 [&] { row = main().Query("SELECT * FROM PersonalExp WHERE TrxID=" + id); });
  if (!read) return;
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    Refuse(TrxID, kNotFound);
    return;
  }
  if (!MayLeaveRecord(record_.Changed())) {
    TrxID.SetText(loaded_id_);
    return;
  }
  StartNew();
  record_.Load(row);
  stored_.Take(row);
  TrxID.SetText(NullToEmpty(row.Field("TrxID")));
  KeepAsStored();
}

void PersonalEpxFrm::KeepAsStored() {
  loaded_id_ = TrxID.text();
  loaded_values_ = {ExpDesc.text(), DebitAmt.text(), CreditAmt.text(), ExpDate.text()};
  DeleteCmd.SetEnabled(true);
  CmdPrint.SetEnabled(true);
  record_.Remember();
}

bool PersonalEpxFrm::CheckAmount(TextBox& box, const Caption& name) {
  box.SetText(Trim(box.text()));
  if (box.empty()) return true;
  const auto amount = Money::TryText(box.text());
  if (!amount || IsTooLarge(*amount)) {
    return Refuse(box, {fmt::format("Invald {} Amount", name.english),
                        fmt::format("{}金额不正确", name.chinese)});
  }
  if (*amount < Money()) {
    return Refuse(box, {fmt::format("{} Amount cannot less then 0", name.english),
                        fmt::format("{}金额不可少过 0", name.chinese)});
  }
  box.SetText(ShowMoney(*amount));
  box.SetMark(false);
  return true;
}

// --- the save

bool PersonalEpxFrm::Check() {
  // A number typed and never found belongs to no record; the server gives the numbers.
  if (TrxID.text() != loaded_id_) return Refuse(TrxID, kNotFound);
  if (!IsNew() && !right_.MayChange({"save expenses " + loaded_id_, "储存开销 " + loaded_id_},
                                    CompCode.text())) {
    const std::string& user = session().CurrentUserID;
    return Refuse({fmt::format("User {} Level not allow to edit or delete expenses record", user),
                   fmt::format("用户 {} 的级别不可更改或删除开销记录", user)});
  }
  if (CompCode.empty()) return Refuse(CompCode, {"Company Code is require", "请选择公司"});
  if (!RequireDate(session(), ExpDate, {"Expenses Date is require", "请输入开销日期"},
                   {"Invalid Expenses Date", "开销日期不正确"})) {
    return false;
  }
  if (Trim(ExpDesc.text()).empty()) {
    return Refuse(ExpDesc, {"Expenses Desc is require", "请输入开销说明"});
  }
  if (!CheckAmount(DebitAmt, kDebit) || !CheckAmount(CreditAmt, kCredit)) return false;
  if (Sen(DebitAmt).IsZero() && Sen(CreditAmt).IsZero()) {
    return Refuse(CreditAmt, {"Debit or Credit Amount is require", "请输入收入或支出金额"});
  }
  if (CBCat.empty()) return Refuse(CBCat, {"Category is require", "请选择类别"});
  if (!SameText(Bank.text(), kCash) && Trim(ChqNo.text()).empty()) {
    return Refuse(Bank.empty() ? static_cast<Control&>(Bank) : ChqNo,
                  {"Cheque No is require", "请输入支票号码"});
  }
  return CheckCompanyAccess(session(), desk(), CompCode);
}

void PersonalEpxFrm::Save() {
  if (!Check() || !Confirm({"Confirm to save Expenses?", "确定储存开销？"})) return;
  if (!Write([this] { Store(); })) {
    TrxID.SetText(loaded_id_);
    return;
  }
  for (TextBox* box : {&DebitAmt, &CreditAmt}) box->SetText(ShowMoney(box->text()));
  stored_ = written_;
  KeepAsStored();
  Tell(MessageKind::information, {"Expenses saved", "开销已储存"});
  Log("saved");
}

void PersonalEpxFrm::Store() {
  const bool is_new = IsNew();
  const bool is_there =
      !main()
           .Query("SELECT TrxID FROM PersonalExp WHERE " + (is_new ? "TrxID=''" : OfThisExpense()))
           .Eof();
  // Changes nothing: a row that is written is the writer's until his transaction ends, so no other
  // desktop enters an expense of this company in between.
  main().Execute("UPDATE CompMast SET CompDesc=CompDesc WHERE CompCode=" +
                 QuoteStr(CompCode.text()));
  if (is_new) {
    Insert();
  } else if (!is_there) {
    throw RowNotFound("Expenses " + loaded_id_);
  } else {
    stored_.Expect(ReadRow(OfThisExpense()), "Expenses " + loaded_id_);
    ExecuteOnRow(
        main(),
        fmt::format("UPDATE PersonalExp SET TrxDate={},TrxDesc={},DebitAmt={},CreditAmt={},"
                    "ModifiedDate={},ModifiedBy={},CompCode={},CBCat={},Bank={},ChqNo={} WHERE {}",
                    SqlDate(ExpDate.text()), QuoteStr(ExpDesc.text()),
                    StripCommaOrZero(DebitAmt.text()), StripCommaOrZero(CreditAmt.text()),
                    SqlDateTime(ServerTime(main())), QuoteStr(session().CurrentUserID),
                    QuoteStr(CompCode.text()), QuoteStr(CBCat.text()), QuoteStr(Bank.text()),
                    QuoteStr(ChqNo.text()), OfThisExpense()),
        "Expenses " + loaded_id_);
  }
  written_.Take(ReadRow("TrxID=" + TrxID.text()));
  WriteAudit(session(), is_new ? "Create" : "Modify", "Expenses", CompCode.text(), TrxID.text(),
             loaded_values_);
}

void PersonalEpxFrm::Insert() {
  const std::string company = QuoteStr(CompCode.text());
  main().Execute(fmt::format(
      "INSERT INTO PersonalExp (CompCode,UserID,TrxDate,TrxDesc,DebitAmt,CreditAmt,CreatedDate,"
      "CBCat,Bank,ChqNo) VALUES ({},{},{},{},{},{},{},{},{},{})",
      company, QuoteStr(session().CurrentUserID), SqlDate(ExpDate.text()), QuoteStr(ExpDesc.text()),
      StripCommaOrZero(DebitAmt.text()), StripCommaOrZero(CreditAmt.text()),
      SqlDateTime(ServerTime(main())), QuoteStr(CBCat.text()), QuoteStr(Bank.text()),
      QuoteStr(ChqNo.text())));
  // The last one of all could be another company's of the same moment.
  TrxID.SetText(
      ScalarQuery(main(), "SELECT MAX(TrxID) FROM PersonalExp WHERE CompCode=" + company));
}

Recordset PersonalEpxFrm::ReadRow(const std::string& of) {
  return main().Query("SELECT * FROM PersonalExp WHERE " + of);
}

std::string PersonalEpxFrm::OfThisExpense() const {
  return "TrxID=" + loaded_id_ + AndCompany(session(), "CompCode");
}

bool PersonalEpxFrm::Write(const std::function<void()>& write) {
  return AttemptOnRecord("Expenses " + loaded_id_,
                         {"an error occur during saving expenses", "储存开销时出现错误"}, write);
}

void PersonalEpxFrm::Log(std::string_view what) {
  WriteLog(session(), LogLine(session(), fmt::format("Expenses {} ({} debit-{} credit-{})", what,
                                                     loaded_id_, loaded_values_.at(1).ToText(),
                                                     loaded_values_.at(2).ToText())));
}

// --- the delete

void PersonalEpxFrm::Delete() {
  if (IsNew()) return;
  if (!right_.MayDelete({"delete expenses " + loaded_id_, "删除开销 " + loaded_id_},
                        CompCode.text())) {
    Refuse({"You are not allow to delete record", "您不可删除记录"});
    return;
  }
  if (!ConfirmLoss({"Confirm to delete record?", "确定删除记录？"})) return;
  const bool deleted = Write([this] {
    stored_.Expect(ReadRow(OfThisExpense()), "Expenses " + loaded_id_);
    ExecuteOnRow(main(), "DELETE PersonalExp WHERE " + OfThisExpense(), "Expenses " + loaded_id_);
    WriteAudit(session(), "Delete", "Expenses", CompCode.text(), loaded_id_, loaded_values_);
  });
  if (!deleted) return;
  Tell(MessageKind::information, {"Record deleted", "记录已删除"});
  Log("deleted");
  StartNew();
}

// --- the paper

void PersonalEpxFrm::Print() {
  ReportJob job = SessionReport(session(), kVoucher);
  if (!ReportFileExists(job.ReportFileName)) {
    Refuse({fmt::format("Report file {} not found", kVoucher),
            fmt::format("找不到报表文件 {}", kVoucher)});
    return;
  }
  if (record_.Changed()) {
    Refuse({"Please save the changes first", "请先储存更改"});
    return;
  }
  job.SelectionFormula = fmt::format("{{PersonalExp.TrxID}} = {}", loaded_id_);
  job.ReportTitle = title().In(chinese());
  desk().Print(job);
}

}  // namespace kaunter
