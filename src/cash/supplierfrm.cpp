#include "cash/supplierfrm.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>
#include <vector>

#include "cash/supplier_accounts.h"
#include "core/amounts.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/open_for.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/screen_rights.h"
#include "core/sequences.h"
#include "core/values.h"
#include "links/accounting_link.h"

namespace kaunter {
namespace {

constexpr const char* kTransactions = "SuppTransfrm";

Caption NotFound(std::string_view id) {
  return {fmt::format("{} not found", id), fmt::format("找不到 {}", id)};
}

// Short numbers are a key, and each company counts for itself.
std::string DrawNumber(Connection& main, const std::string& company) {
  return NextSeries(main, "S", company, false, [&main](const std::string& number) {
    return !main.Query("SELECT SuppID FROM SupplierMast WHERE SuppID=" + QuoteStr(number)).Eof();
  });
}

}  // namespace

Supplierfrm::Supplierfrm(Session& session, Desk& desk)
    : SessionScreen("Supplierfrm", {"Supplier Profiles", "供应商资料"}, session, desk),
      record_("SupplierMast", "SuppID"),
      right_(session, desk) {
  UserID.SetLocked(true);
  DateCreated.SetLocked(true);
  record_.AddValue("SuppID", [this] { return QuoteStr(SuppID.text()); }).InsertOnly();
  record_.Add(CompCode).InsertOnly().Add(SuppName).Add(TrxDate, As::date);
  record_.Add(Add1).Add(Add2).Add(Add3).Add(Add4).Add(Tel1).Add(Tel2).Add(Remark);
  record_.AddValue("UserID", [this] { return QuoteStr(this->session().CurrentUserID); })
      .InsertOnly();
  record_.AddValue("DateCreated", [this] { return SqlDateTime(DateCreated.text()); }).InsertOnly();
  record_.Add(UserID).ReadOnly().Add(DateCreated, As::date_time).ReadOnly();
  OfferPicker(session, SuppID, "SuppPop", [this](const std::string& id) { LoadSupplier(id); });
  SuppID.onLeave = [this] { LeaveSuppID(); };
  SearchCmd.onClick = [this] { SuppID.onSearch(); };
  TrxDate.onLeave = [this] { CheckDateBox(this->session(), TrxDate); };
  for (TextBox* box : {&SuppName, &Add1, &Add2, &Add3, &Add4}) {
    box->onLeave = [this, box] { box->SetText(ApplyCapLock(this->session(), box->text())); };
  }
  SuppTransDG.onOpen = [this](int row, int) { OpenTransaction(SuppTransDG.Cell(row, 0)); };
  CmdTrans.onClick = [this] { OpenTransaction({}); };
  CmdDelete.onClick = [this] { Delete(); };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(record_.Changed())) StartNew();
  };
  SaveCmd.onClick = [this] { Save(); };
}

void Supplierfrm::Load() {
  record_.TakeWidths(main());
  SuppID.max_length = kKeyLength;
  TrxDate.max_length = kDateLength;
  FillCompanies(CompCode, session());
  StartNew();
}

bool Supplierfrm::RequestClose() { return MayDiscard(record_.Changed()); }

// --- showing a supplier

void Supplierfrm::StartNew() {
  record_.Clear();
  SuppID.Clear();
  SuppID.SetMark(false);
  SuppTransDG.Clear();
  HintLBL.SetText({});
  UserID.SetText(session().CurrentUserID);
  CompCode.SetText(session().CurrentCompCode);
  CompCode.SetLocked(false);
  loaded_id_.clear();
  right_.Forget();
  CmdDelete.SetEnabled(false);
  OfferShortcut(session(), CmdTrans, kTransactions, {}, false);
  record_.Remember();
}

void Supplierfrm::LeaveSuppID() {
  LeaveKey(
      SuppID, loaded_id_, record_.Changed(),
      [this](std::string id) { LoadSupplier(std::move(id)); }, [this] { StartNew(); });
}

void Supplierfrm::LoadSupplier(std::string id) {
  Recordset row;
  if (!ReadOrTell(session(), *this, "Supplier " + id,
                  {"an error occur during reading record", "阅读资料时出现错误"}, [&] {
                    row = main().Query("SELECT * FROM SupplierMast WHERE  SuppID=" + QuoteStr(id));
                  })) {
    return;
  }
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    Refuse(SuppID, NotFound(id));
    return;
  }
  if (!MayLeaveRecord(record_.Changed())) {
    SuppID.SetText(loaded_id_);
    return;
  }
  StartNew();
  record_.Load(row);
  SuppID.SetText(NullToEmpty(row.Field("SuppID")));
  KeepAsStored();
  ShowTransactions();
}

void Supplierfrm::KeepAsStored() {
  loaded_id_ = SuppID.text();
  CompCode.SetLocked(true);  // an update leaves it as it is
  CmdDelete.SetEnabled(true);
  OfferShortcut(session(), CmdTrans, kTransactions, {});
  record_.Remember();
}

// With what is owed after each document, as far as the person may see them.
void Supplierfrm::ShowTransactions() {
  std::vector<std::vector<std::string>> lines;
  Caption loss;
  const bool read = ReadOrTell(
      session(), *this, "Supplier " + loaded_id_,
      {"an error occur during reading record", "阅读资料时出现错误"}, [&] {
        Money owing;
        for (Recordset row = main().Query(fmt::format(
                 "SELECT * FROM SupplierTrans WHERE SuppID={}{} ORDER BY TrxDate,TransID",
                 QuoteStr(loaded_id_), AndCompany(session(), "CompCode")));
             !row.Eof(); row.MoveNext()) {
          owing += Sen(row, "TransAmt");
          lines.push_back({NullToEmpty(row.Field("TransID")), ShowDate(row.Field("TrxDate")),
                           NullToEmpty(row.Field("TransType")), NullToEmpty(row.Field("TransDesc")),
                           ShowMoney(row.Field("TransAmt")), ShowMoney(owing),
                           NullToEmpty(row.Field("LoanID")), NullToEmpty(row.Field("CompCode"))});
        }
        // Where other companies' go with it, the delete is refused.
        if (!HasForeignTransactions()) loss = ReadLoss();
      });
  if (!read) lines.clear();
  HintLBL.SetText(session().In(loss));
  SuppTransDG.SetRows(std::move(lines));
}

void Supplierfrm::OpenTransaction(const std::string& trans_id) {
  if (!CmdTrans.enabled()) return;
  OpenFor(session(), desk(), kTransactions, trans_id, HandOver{{}, {}, loaded_id_});
  ShowTransactions();
}

// --- the save

bool Supplierfrm::Check() {
  // A number typed and never found belongs to no record; numbers are drawn, not chosen.
  if (!SameText(SuppID.text(), loaded_id_)) return Refuse(SuppID, NotFound(SuppID.text()));
  if (!IsNew() && !right_.MayChange({"save supplier " + loaded_id_, "储存供应商 " + loaded_id_},
                                    CompCode.text())) {
    const std::string& user = session().CurrentUserID;
    return Refuse({fmt::format("User {} Level not allow to edit or delete record", user),
                   fmt::format("用户 {} 的级别不可更改或删除记录", user)});
  }
  if (!RequireDate(session(), TrxDate, {"Date is require", "请输入日期"})) return false;
  if (Trim(SuppName.text()).empty()) {
    return Refuse(SuppName, {"Supplier Name is required", "请输入供应商名称"});
  }
  // Without a company the person herself would not find it again.
  if (!MayUseCompany(session(), CompCode.text())) {
    return Refuse(CompCode, {"Company Code is require", "请选择公司"});
  }
  return true;
}

void Supplierfrm::Save() {
  if (!Check() || !Confirm({"Confirm to save record ?", "确定储存记录？"})) return;
  if (!Write([this] { Store(); })) {
    // A new number went back with the rollback: the box must not go on showing it.
    SuppID.SetText(loaded_id_);
    if (IsNew()) DateCreated.Clear();
    return;
  }
  KeepAsStored();
  TellLinkedAccounts();
  const std::string id = loaded_id_;
  Tell(MessageKind::information, {fmt::format("{} saved", id), fmt::format("{} 已储存", id)});
  WriteLog(session(), LogLine(session(), fmt::format("Supplier {} saved", id)));
}

void Supplierfrm::Store() {
  if (IsNew()) {
    SuppID.SetText(DrawNumber(main(), CompCode.text()));
    DateCreated.SetText(ServerNow(main(), true));
    main().Execute(record_.InsertStatement());
  } else {
    ExecuteOnRow(main(), record_.UpdateStatement(loaded_id_) + AndCompany(session(), "CompCode"),
                 loaded_id_);
  }
}

bool Supplierfrm::Write(const std::function<void()>& write) {
  return AttemptOnRecord("Supplier " + loaded_id_,
                         {"an error occur during saving record", "储存记录时出现错误"}, write);
}

// The supplier stands whatever becomes of the creditor; the alert says "Debtor", and people know it
// so.
void Supplierfrm::TellLinkedAccounts() {
  LinkedParty creditor;
  creditor.AccNo = loaded_id_;
  creditor.CompanyName = SuppName.text();
  creditor.Address1 = Add1.text();
  creditor.Address2 = Add2.text();
  creditor.Address3 = Add3.text();
  creditor.Address4 = Add4.text();
  creditor.Phone1 = Tel1.text();
  creditor.Phone2 = Tel2.text();
  if (LinkCreditor(session(), desk(), creditor)) return;
  desk().Message(MessageKind::warning, "Alert !!",
                 session().In({fmt::format("Debtor Code {} not linked", loaded_id_),
                               fmt::format("供应商 {} 未能连接会计系统", loaded_id_)}));
}

// --- the delete

bool Supplierfrm::HasForeignTransactions() {
  const std::string own = CompanyCondition(session(), "CompCode");
  return !own.empty() &&
         ScalarQuery(main(), fmt::format("SELECT COUNT(*) FROM SupplierTrans WHERE SuppID={} AND "
                                         "NOT ({})",
                                         QuoteStr(loaded_id_), own)) != "0";
}

Caption Supplierfrm::ReadLoss() {
  const Recordset row = main().Query(
      "SELECT COUNT(*),SUM(TransAmt) FROM SupplierTrans WHERE SuppID=" + QuoteStr(loaded_id_));
  const std::string count = NullToEmpty(row.Field(0));
  if (count == "0") return {};
  const std::string sum = ShowMoney(row.Field(1));
  return {
      fmt::format("Its {} transaction(s), {} in all, go with it when it is deleted.", count, sum),
      fmt::format("删除时，其 {} 笔交易（共 {}）将一并删除。", count, sum)};
}

void Supplierfrm::Delete() {
  if (IsNew()) return;
  const std::string id = loaded_id_;
  if (!right_.MayDelete({"delete supplier " + id, "删除供应商 " + id}, CompCode.text())) {
    Refuse({"You are not allow to delete record", "您不可删除记录"});
    return;
  }
  if (HasForeignTransactions()) {
    Refuse({fmt::format("Supplier ID {} has transactions of a company that you cannot access", id),
            fmt::format("供应商 {} 有其他公司的交易，您不能进入", id)});
    return;
  }
  ShowTransactions();
  const Caption told = ReadLoss();
  if (!ConfirmLoss({fmt::format("Confirm to delete supplier ID {}", id),
                    fmt::format("确定删除供应商 {}", id)})) {
    return;
  }
  bool others = false;
  const bool deleted = Write([&] {
    ExecuteOnRow(main(),
                 fmt::format("DELETE FROM SupplierMast WHERE SuppID={}{}", QuoteStr(id),
                             AndCompany(session(), "CompCode")),
                 id);
    // No more than was agreed to.
    others = ReadLoss().english != told.english;
    if (others) {
      throw std::runtime_error(
          session().In({"Another desktop has changed transactions of this "
                        "supplier meanwhile. Nothing was deleted.",
                        "另一台电脑刚更改了此供应商的交易，没有删除任何资料。"}));
    }
    main().Execute("DELETE FROM SupplierTrans WHERE SuppID=" + QuoteStr(id));
  });
  if (others) ShowTransactions();
  if (!deleted) return;
  Tell(MessageKind::information,
       {fmt::format("Supplier ID {} deleted", id), fmt::format("供应商 {} 已删除", id)});
  TellLeftInAccounts(
      session(), *this,
      {fmt::format("supplier {} and its documents", id), fmt::format("供应商 {} 及其单据", id)});
  WriteLog(session(), LogLine(session(), fmt::format("Supplier {} deleted. {}", id, told.english)));
  StartNew();
}

}  // namespace kaunter
