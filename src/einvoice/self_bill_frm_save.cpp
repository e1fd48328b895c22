// What SelfBillFrm writes, and what it says to the service.
#include <fmt/format.h>

#include "core/audit.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/sequences.h"
#include "core/values.h"
#include "einvoice/self_bill_frm.h"

namespace kaunter {
namespace {

std::string DrawNumber(Connection& main, const std::string& company) {
  return NextSeries(main, "SB", company, false, [&main](const std::string& number) {
    return !main.Query("SELECT SID FROM SelfBillMast WHERE SID=" + QuoteStr(number)).Eof();
  });
}

// The values of the audit's line.
std::vector<Value> AuditValues(const Recordset& row) {
  std::vector<Value> values;
  if (row.Eof()) return values;
  for (const char* column : {"TrxDate", "SuppName", "SelfBillAmt", "SelfBillTaxAmt", "uuid"}) {
    values.push_back(row.Field(column));
  }
  return values;
}

}  // namespace

bool SelfBillFrm::CheckRequired() {
  if (!RequireDate(session(), TrxDate, {"Date required", "请输入日期"})) return false;
  const struct {
    Control& box;
    Caption required;
  } kRequired[] = {
      {CompCode, {"Company Code required", "请选择公司"}},
      {SuppName, {"Company Name reqired", "请输入公司名称"}},
      {SuppIDType, {"ID Type reqired", "请选择证件种类"}},
      {SuppIDNo, {"ID No reqired", "请输入证件号码"}},
      {SuppTin, {"Tin No reqired", "请输入税号"}},
      {SuppMiscCode, {"Misc Code reqired", "请输入行业代码"}},
      {SuppAdd, {"Address reqired", "请输入地址"}},
      {SuppPostCode, {"Post Code reqired", "请输入邮编"}},
      {SuppCity, {"City reqired", "请输入城市"}},
      {SuppState, {"State Code reqired", "请输入州属代码"}},
      {SuppCountry, {"Country Code reqired", "请输入国家代码"}},
      {SuppTel, {"Phone reqired", "请输入电话"}},
      {SelfBillTaxCat, {"Tax Code reqired", "请选择税务代码"}},
  };
  for (const auto& one : kRequired) {
    if (Trim(one.box.Text()).empty()) return Refuse(one.box, one.required);
  }
  return true;
}

bool SelfBillFrm::CheckItems() {
  const SelfBill bill = Bill();
  if (bill.items.empty()) {
    return Refuse(vsd, {"Item Description required", "请输入项目说明"});
  }
  for (std::size_t i = 0; i < bill.items.size(); ++i) {
    const SelfBillItem& item = bill.items[i];
    if (item.SelfBillClassCode.empty() || item.SelfBillDesc.empty() || item.SelfBillQty.empty() ||
        item.SelfBillTaxCat.empty()) {
      return Refuse(
          vsd, {fmt::format("Item No {}  reqired", i + 1), fmt::format("请填写第 {} 项", i + 1)});
    }
  }
  return true;
}

bool SelfBillFrm::Check() {
  // A number typed and never found belongs to no document; numbers are drawn, not chosen.
  if (!SameText(SID.text(), loaded_id_)) return Refuse(SID, {"Record not found", "找不到记录"});
  // What is only sent again is no change.
  if (!IsNew() && Changed() &&
      !right_.MayChange({"save self-bill " + loaded_id_, "储存自开发票 " + loaded_id_},
                        CompCode.text())) {
    const std::string& user = session().CurrentUserID;
    return Refuse({fmt::format("User {} Level not allow to edit or delete record", user),
                   fmt::format("用户 {} 的级别不可更改或删除记录", user)});
  }
  if (!CheckRequired()) return false;
  if (!MayUseCompany(session(), CompCode.text())) {
    return Refuse(CompCode, {"Company Code required", "请选择公司"});
  }
  return CheckItems();
}

// --- the save

void SelfBillFrm::Save() {
  if (!Check()) return;
  SumUp();
  ShowRemarks();
  if (uuid.empty() && !Ready()) return;
  if (!Confirm({"Confirm to save and submit ? ", "确定储存并提交？"}) || !Store()) return;
  if (uuid.empty()) {
    Submit();
    return;
  }
  Tell(MessageKind::information,
       {fmt::format("{} saved. It was submitted before, and is not sent again: the tax authority "
                    "keeps what was sent.",
                    loaded_id_),
        fmt::format("{} 已储存。此单据之前已提交，不会再次发送：税局保留已发送的内容。",
                    loaded_id_)});
}

bool SelfBillFrm::Store() {
  const bool is_new = IsNew();
  const bool stored =
      AttemptOnRecord(fmt::format("Self-bill {} - {}", loaded_id_, SuppName.text()),
                      {"an error occur during saving record", "储存记录时发生错误"}, [&] {
                        std::vector<Value> before;
                        if (is_new) {
                          SID.SetText(DrawNumber(main(), CompCode.text()));
                          main().Execute(record_.InsertStatement());
                        } else {
                          const Recordset row = ReadRow(loaded_id_);
                          stored_.Expect(row, loaded_id_);
                          before = AuditValues(row);
                          ExecuteOnRow(main(), record_.UpdateStatement(loaded_id_), loaded_id_);
                        }
                        WriteItems(SID.text());
                        WriteAudit(session(), is_new ? "Create" : "Modify", "Self-Bill",
                                   CompCode.text(), SID.text(), before);
                        written_.Take(ReadRow(SID.text()));
                      });
  if (!stored) {
    // A new number went back with the rollback: the box must not go on showing it.
    SID.SetText(loaded_id_);
    return false;
  }
  stored_ = written_;
  KeepAsStored();
  return true;
}

void SelfBillFrm::WriteItems(const std::string& id) {
  main().Execute("DELETE SelfBillTrans WHERE SID = " + QuoteStr(id));
  int number = 0;
  for (const SelfBillItem& item : Bill().items) {
    main().Execute(fmt::format(
        "INSERT INTO SelfBillTrans (SID,SeqNo,SelfBillQty,SelfBillAmt,SelfBillTaxAmt,"
        "SelfBillTaxPer,SelfBillTaxCat,SelfBillClassCode,SelfBillDesc) VALUES "
        "({},{},{},{},{},{},{},{},{})",
        QuoteStr(id), ++number, StripCommaOrZero(item.SelfBillQty), item.SelfBillAmt.ToText(),
        item.SelfBillTaxAmt.ToText(), item.SelfBillTaxPer.ToText(), QuoteStr(item.SelfBillTaxCat),
        QuoteStr(item.SelfBillClassCode), QuoteStr(item.SelfBillDesc)));
  }
}

Recordset SelfBillFrm::ReadRow(const std::string& id) {
  return main().Query("SELECT * FROM SelfBillMast WHERE SID=" + QuoteStr(id));
}

}  // namespace kaunter
