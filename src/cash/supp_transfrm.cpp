#include "cash/supp_transfrm.h"

#include <fmt/format.h>

#include <utility>

#include "cash/largest_amount.h"
#include "cash/supplier_accounts.h"
#include "core/amounts.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/sequences.h"
#include "core/values.h"
#include "links/accounting_link.h"
#include "loans/refusal.h"

namespace kaunter {
namespace {

Caption NotFound(std::string_view id) {
  return {fmt::format("Record {} not found", id), fmt::format("找不到记录 {}", id)};
}

// Short numbers are a key, and each company counts for itself.
std::string DrawNumber(Connection& main, const std::string& company) {
  return NextSeries(main, "T", company, false, [&main](const std::string& number) {
    return !main.Query("SELECT TransID FROM SupplierTrans WHERE TransID=" + QuoteStr(number)).Eof();
  });
}

}  // namespace

SuppTransfrm::SuppTransfrm(Session& session, Desk& desk)
    : SessionScreen("SuppTransfrm", {"Supplier Transactions", "供应商交易"}, session, desk),
      record_("SupplierTrans", "TransID"),
      right_(session, desk) {
  for (TextBox* box : {&SuppName, &CustID, &UserID, &DateCreated}) box->SetLocked(true);
  record_.Add(SuppID).Add(LoanID).Add(CustID).Add(CompCode).Add(TrxDate, As::date).Add(TransDesc);
  record_.Add(TransType).Add(TransAmt, As::money).Add(UserID).Add(DateCreated, As::date_time);
  OfferPicker(session, TransID, "SuppTransPop",
              [this](const std::string& id) { LoadTransaction(id); });
  TransID.onLeave = [this] { LeaveTransID(); };
  SearchCmd.onClick = [this] { TransID.onSearch(); };
  OfferPicker(session, SuppID, "SuppPop", [this](const std::string& id) {
    SuppID.SetText(id);
    ShowSupplier();
  });
  SuppID.onLeave = [this] {
    SuppID.SetText(Trim(SuppID.text()));
    if (!SameText(SuppID.text(), shown_supplier_)) ShowSupplier();
  };
  OfferPicker(session, LoanID, "LoanPop", [this](const std::string& id) {
    LoanID.SetText(id);
    ShowLoan();
  });
  LoanID.onLeave = [this] {
    LoanID.SetText(Trim(LoanID.text()));
    if (!SameText(LoanID.text(), shown_loan_)) ShowLoan();
  };
  CompCode.onLeave = [this] {
    if (!CheckCompanyAccess(this->session(), this->desk(), CompCode)) FocusOn(CompCode);
  };
  TrxDate.onLeave = [this] { CheckDateBox(this->session(), TrxDate); };
  TransAmt.onLeave = [this] {
    TransAmt.SetText(Trim(TransAmt.text()));
    if (!TransAmt.empty()) CheckAmount();
  };
  TransDesc.onLeave = [this] {
    TransDesc.SetText(ApplyCapLock(this->session(), TransDesc.text()));
  };
  CmdDelete.onClick = [this] { Delete(); };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(record_.Changed())) StartNew();
  };
  SaveCmd.onClick = [this] { Save(); };
}

void SuppTransfrm::Load() {
  record_.TakeWidths(main());
  TransID.max_length = kKeyLength;
  TrxDate.max_length = kDateLength;
  TransAmt.max_length = kMoneyLength;
  FillCompanies(CompCode, session());
  const std::string id = std::exchange(session().CallerTag, {});
  SuppID.SetText(std::exchange(session().PickerExtra, {}));
  StartNew();
  if (!id.empty()) LoadTransaction(id);
}

bool SuppTransfrm::RequestClose() { return MayDiscard(record_.Changed()); }

// --- showing a document

void SuppTransfrm::StartNew() {
  const std::string supplier = SuppID.text();
  Clear();
  SuppID.SetText(supplier);
  ShowSupplier();
  record_.Remember();
}

void SuppTransfrm::Clear() {
  record_.Clear();
  TransID.Clear();
  TransID.SetMark(false);
  loaded_id_.clear();
  loaded_type_.clear();
  shown_loan_.clear();
  right_.Forget();
  UserID.SetText(session().CurrentUserID);
  CompCode.SetLocked(false);
  SuppID.SetLocked(false);
  CmdDelete.SetEnabled(false);
}

void SuppTransfrm::LeaveTransID() {
  LeaveKey(
      TransID, loaded_id_, record_.Changed(),
      [this](std::string id) { LoadTransaction(std::move(id)); }, [this] { StartNew(); });
}

void SuppTransfrm::LoadTransaction(std::string id) {
  Recordset row;
  if (!ReadOrTell(session(), *this, "Supplier transaction " + id,
                  {"an error occuring during reading record", "阅读记录时出现错误"}, [&] {
                    row = main().Query("SELECT * FROM SupplierTrans WHERE TransID=" + QuoteStr(id));
                  })) {
    return;
  }
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    Refuse(TransID, NotFound(id));
    return;
  }
  if (!MayLeaveRecord(record_.Changed())) {
    TransID.SetText(loaded_id_);
    return;
  }
  Clear();
  record_.Load(row);
  stored_.Take(row);
  TransID.SetText(NullToEmpty(row.Field("TransID")));
  ShowSupplierName();
  KeepAsStored();
}

void SuppTransfrm::KeepAsStored() {
  loaded_id_ = TransID.text();
  loaded_type_ = TransType.text();
  shown_supplier_ = SuppID.text();
  shown_loan_ = LoanID.text();
  SuppID.SetLocked(true);  // an update leaves it as it is
  CompCode.SetLocked(!LoanID.empty());
  CmdDelete.SetEnabled(true);
  record_.Remember();
}

void SuppTransfrm::ShowSupplierName() {
  SuppName.SetText(ScalarQuery(
      main(), "SELECT SuppName FROM SupplierMast WHERE SuppID=" + QuoteStr(SuppID.text())));
}

bool SuppTransfrm::ShowSupplier() {
  SuppName.Clear();
  shown_supplier_.clear();
  if (SuppID.empty()) return true;
  const Recordset row = main().Query("SELECT SuppID,CompCode FROM SupplierMast WHERE SuppID=" +
                                     QuoteStr(SuppID.text()));
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    return Refuse(SuppID, {fmt::format("{} not found", SuppID.text()),
                           fmt::format("找不到 {}", SuppID.text())});
  }
  SuppID.SetText(NullToEmpty(row.Field("SuppID")));
  SuppID.SetMark(false);
  ShowSupplierName();
  if (LoanID.empty()) {
    CompCode.SetText(NullToEmpty(row.Field("CompCode")));
    FillBlank(CompCode, session().CurrentCompCode);
  }
  shown_supplier_ = SuppID.text();
  return true;
}

bool SuppTransfrm::ShowLoan() {
  CustID.Clear();
  CompCode.SetLocked(false);
  shown_loan_.clear();
  if (LoanID.empty()) return true;
  const Recordset row = main().Query("SELECT LoanID,CustID,CompCode FROM LoanMast WHERE LoanID=" +
                                     QuoteStr(LoanID.text()));
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    return Refuse(LoanID, LoanNotFound(LoanID.text()));
  }
  LoanID.SetText(NullToEmpty(row.Field("LoanID")));
  LoanID.SetMark(false);
  CustID.SetText(NullToEmpty(row.Field("CustID")));
  CompCode.SetText(NullToEmpty(row.Field("CompCode")));
  CompCode.SetLocked(true);
  shown_loan_ = LoanID.text();
  return true;
}

bool SuppTransfrm::CheckAmount() {
  const auto amount = Money::TryText(TransAmt.text());
  if (!amount || IsTooLarge(*amount)) return Refuse(TransAmt, kInvalidAmount);
  TransAmt.SetText(ShowMoney(*amount));
  TransAmt.SetMark(false);
  return true;
}

// --- the save

bool SuppTransfrm::Check() {
  // A number typed and never found belongs to no record; numbers are drawn, not chosen.
  if (!SameText(TransID.text(), loaded_id_)) return Refuse(TransID, NotFound(TransID.text()));
  if (!IsNew() &&
      !right_.MayChange({"save " + loaded_id_, "储存 " + loaded_id_}, CompCode.text())) {
    const std::string& user = session().CurrentUserID;
    return Refuse({fmt::format("User {} Level not allow to edit or delete record", user),
                   fmt::format("用户 {} 的级别不可更改或删除记录", user)});
  }
  if (!RequireDate(session(), TrxDate, {"Date is required", "请输入日期"})) return false;
  if (TransType.empty()) {
    return Refuse(TransType, {"Transaction Type is required", "请选择交易种类"});
  }
  if (TransAmt.empty()) return Refuse(TransAmt, {"Amount is required", "请输入金额"});
  if (!CheckAmount()) return false;
  if (Trim(TransDesc.text()).empty()) {
    return Refuse(TransDesc, {"Description is required", "请输入说明"});
  }
  if (!CheckSign()) return false;
  if (SuppID.empty()) return Refuse(SuppID, {"Supplier ID is required", "请输入供应商编号"});
  if (!SameText(SuppID.text(), shown_supplier_) && !ShowSupplier()) return false;
  if (!SameText(LoanID.text(), shown_loan_) && !ShowLoan()) return false;
  if (!MayUseCompany(session(), CompCode.text())) {
    return Refuse(CompCode, {"Company Code is require", "请选择公司"});
  }
  return RequireLinkAccounts(session(), *this, {"APINV", "APCN"});
}

// 0 pays nothing: it is refused as a positive amount is.
bool SuppTransfrm::CheckSign() {
  const Caption type = TypeCaption(TransType.text());
  const Money amount = Sen(TransAmt);
  if (!SameText(type.english, "Invoice")) {
    return amount < Money() ||
           Refuse(TransAmt,
                  {fmt::format("Invalid amount, {} should be in negative amount", type.english),
                   fmt::format("金额不正确，{}必须是负数", type.chinese)});
  }
  return amount >= Money() ||
         Refuse(TransAmt,
                {fmt::format("Invalid amount, {} cannot in negative amount", type.english),
                 fmt::format("金额不正确，{}不可是负数", type.chinese)});
}

void SuppTransfrm::Save() {
  if (!Check() || !Confirm({"Confirm to save record ?", "确定储存记录？"})) return;
  if (!Write([this] { Store(); })) {
    // A new number went back with the rollback: the box must not go on showing it.
    TransID.SetText(loaded_id_);
    if (IsNew()) DateCreated.Clear();
    return;
  }
  const std::string old_type = loaded_type_;
  stored_ = written_;
  KeepAsStored();
  const std::string id = loaded_id_;
  LinkSupplierDocument(session(), *this,
                       {id, TransType.text(), TrxDate.text(), SuppID.text(), SuppName.text(),
                        TransDesc.text(), Sen(TransAmt)});
  Tell(MessageKind::information,
       {fmt::format("Transaction {} saved", id), fmt::format("交易 {} 已储存", id)});
  if (!old_type.empty() && !SameText(old_type, loaded_type_)) {
    const Caption type = TypeCaption(old_type);
    TellLeftInAccounts(session(), *this, {type.english + " " + id, type.chinese + " " + id});
  }
  WriteLog(session(), LogLine(session(), fmt::format("Supplier {} - {} {} {} saved", SuppID.text(),
                                                     TransType.text(), id, TransAmt.text())));
}

void SuppTransfrm::Store() {
  const std::string supplier = QuoteStr(SuppID.text());
  // Changes nothing: a row that is written is the writer's until his transaction ends, so no other
  // desktop deletes the supplier in between.
  ExecuteOnRow(main(), "UPDATE SupplierMast SET SuppName=SuppName WHERE SuppID=" + supplier,
               "Supplier " + SuppID.text());
  const std::string loan = QuoteStr(LoanID.text());
  if (!LoanID.empty() && main().Query("SELECT LoanID FROM LoanMast WHERE LoanID=" + loan).Eof()) {
    throw RowNotFound("Loan " + LoanID.text());
  }
  const std::string date = SqlDate(TrxDate.text());
  const std::string amount = StripCommaOrZero(TransAmt.text());
  const std::string customer = QuoteStr(CustID.text());
  const std::string company = QuoteStr(CompCode.text());
  const std::string text = QuoteStr(TransDesc.text());
  const std::string type = QuoteStr(TransType.text());
  if (IsNew()) {
    TransID.SetText(DrawNumber(main(), CompCode.text()));
    DateCreated.SetText(ServerNow(main(), true));
    main().Execute(fmt::format(
        "INSERT INTO SupplierTrans (TransID,SuppID,LoanID,CustID,CompCode,TrxDate,TransDesc,"
        "TransType,TransAmt,UserID,DateCreated) VALUES ({},{},{},{},{},{},{},{},{},{},{})",
        QuoteStr(TransID.text()), supplier, loan, customer, company, date, text, type, amount,
        QuoteStr(session().CurrentUserID), SqlDateTime(DateCreated.text())));
  } else {
    stored_.Expect(ReadRow(OfThisTransaction()), loaded_id_);
    ExecuteOnRow(
        main(),
        fmt::format("UPDATE SupplierTrans SET TrxDate={},LoanID={},CustID={},CompCode={},"
                    "TransDesc={},TransType={},TransAmt={} WHERE {}",
                    date, loan, customer, company, text, type, amount, OfThisTransaction()),
        loaded_id_);
  }
  written_.Take(ReadRow("TransID=" + QuoteStr(TransID.text())));
}

bool SuppTransfrm::Write(const std::function<void()>& write) {
  return AttemptOnRecord(fmt::format("Supplier {} - transaction {}", SuppID.text(), loaded_id_),
                         {"an error occuring saving reading record", "储存记录时出现错误"}, write);
}

Recordset SuppTransfrm::ReadRow(const std::string& of) {
  return main().Query("SELECT * FROM SupplierTrans WHERE " + of);
}

std::string SuppTransfrm::OfThisTransaction() const {
  return "TransID=" + QuoteStr(loaded_id_) + AndCompany(session(), "CompCode");
}

// --- the delete

void SuppTransfrm::Delete() {
  if (IsNew()) return;
  const std::string id = loaded_id_;
  const Caption type = TypeCaption(loaded_type_);
  if (!right_.MayDelete({"delete " + id, "删除 " + id}, CompCode.text())) {
    Refuse({"You are not allow to delete record", "您不可删除记录"});
    return;
  }
  if (!ConfirmLoss({fmt::format("Confirm to delete {} ID {}", type.english, id),
                    fmt::format("确定删除{} {}", type.chinese, id)})) {
    return;
  }
  const bool deleted = Write([&] {
    stored_.Expect(ReadRow(OfThisTransaction()), id);
    ExecuteOnRow(main(), "DELETE FROM SupplierTrans WHERE " + OfThisTransaction(), id);
  });
  if (!deleted) return;
  Tell(MessageKind::information, {fmt::format("{} ID {} deleted", type.english, id),
                                  fmt::format("{} {} 已删除", type.chinese, id)});
  TellLeftInAccounts(session(), *this, {type.english + " " + id, type.chinese + " " + id});
  WriteLog(session(), LogLine(session(), fmt::format("Supplier {} - {} {} deleted", SuppID.text(),
                                                     type.english, id)));
  StartNew();
}

}  // namespace kaunter
