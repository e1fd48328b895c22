// Invoicefrm, "Invoice / Credit Note": one row of ChargeMast by hand. A charge above 0 adds to what
// the loan owes, one below 0 takes from it, whatever its kind: a credit note with a positive amount
// raises the charges. Every save and delete refreshes the loan's totals.
//
// Any charge can be looked up here, or comes in PickerExtra under "Edit Charge". Late interest
// posted by the batch may be changed and deleted too; the row of a payment may not, since the next
// rebuild of its loan would write it again.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/record.h"
#include "core/record_right.h"
#include "core/session_screen.h"

namespace kaunter {

class Invoicefrm : public SessionScreen {
 public:
  Invoicefrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox ChargeID{*this, "ChargeID", {"Document No", "单据编号"}};
  ComboBox PType{*this, "PType", {"Document Type", "单据种类"}, {"Invoice", "Credit Note"}};
  TextBox TrxDate{*this, "TrxDate", {"Date", "日期"}, Kind::date};
  TextBox LoanID{*this, "LoanID", {"Loan Code", "贷款编号"}};
  TextBox CustID{*this, "CustID", {"Customer Code", "顾客编号"}};
  TextBox CustName{*this, "CustName", {"Customer Name", "顾客姓名"}};
  TextBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox ChargeAmt{*this, "ChargeAmt", {"Amount", "金额"}, Kind::money};
  TextBox ChargeDesc{*this, "ChargeDesc", {"Description", "说明"}, Kind::memo};
  TextBox DueDate{*this, "DueDate", {"Due Date", "到期日"}, Kind::date};
  TextBox LateAmt{*this, "LateAmt", {"Base Amount", "计算基数"}, Kind::money};
  TextBox LateInt{*this, "LateInt", {"Late Interest", "逾期利息"}, Kind::money};
  Button CmdNew{*this, "CmdNew", {"&New", "新增(&N)"}};
  Button CmdPrint{*this, "CmdPrint", {"&Print", "打印(&P)"}};
  Button CmdDelete{*this, "CmdDelete", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  bool IsNew() const { return loaded_id_.empty(); }
  // An invoice or credit note, which the accounts are told of.
  bool IsDocument() const;
  // A document, or the late interest of one day.
  bool MayBeDeleted() const;
  bool HasPaper() const;
  void BindRecord();

  void StartNew();
  void LeaveChargeID();
  // By value: the box that the number may come from is filled anew.
  void LoadCharge(std::string id);
  // What is shown is the stored charge of ChargeID; `values` are the audit's.
  void KeepAsStored(std::vector<Value> values);
  // Customer and company of LoanID. False when there is no such loan that the person may see.
  bool ShowLoan();
  void LeaveAmount();

  bool Check();
  bool RefuseRight();
  bool CheckAmount();
  bool CheckLoan();
  bool CheckLinkAccounts();
  void Save();
  void Store();
  void TellLinkedAccounts();
  void Delete();
  void Print();
  // Runs a write; false when it failed, which has then been told.
  bool Write(const std::function<void()>& write);

  Record record_;
  RecordRight right_;
  std::string loaded_id_;             // "" for a new charge
  std::string shown_loan_;            // the loan that CustID and CompCode belong to
  std::vector<Value> loaded_values_;  // for the audit; none for a new charge
};

}  // namespace kaunter
