// SuppTransfrm, "Supplier Transactions": an invoice, payment or credit note of a supplier, perhaps
// for a loan. An invoice is kept as it is, what lowers the debt with its minus.
//
// It is opened with the supplier in PickerExtra, and with a document's number in CallerTag to show
// that one.
#pragma once

#include <functional>
#include <string>

#include "core/record.h"
#include "core/record_right.h"
#include "core/session_screen.h"
#include "core/stored_row.h"

namespace kaunter {

class SuppTransfrm : public SessionScreen {
 public:
  SuppTransfrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox TransID{*this, "TransID", {"Transaction ID", "交易编号"}};
  TextBox SuppID{*this, "SuppID", {"Supplier ID", "供应商编号"}};
  TextBox SuppName{*this, "SuppName", {"Supplier Name", "供应商名称"}};
  ComboBox TransType{
      *this, "TransType", {"Transaction Type", "交易种类"}, {"Invoice", "Payment", "Credit Note"}};
  TextBox TrxDate{*this, "TrxDate", {"Date", "日期"}, Kind::date};
  TextBox TransAmt{*this, "TransAmt", {"Amount", "金额"}, Kind::money};
  TextBox TransDesc{*this, "TransDesc", {"Description", "说明"}};
  TextBox LoanID{*this, "LoanID", {"Loan Code", "贷款编号"}};
  TextBox CustID{*this, "CustID", {"Customer Code", "顾客编号"}};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox UserID{*this, "UserID", {"Entered By", "输入者"}};
  TextBox DateCreated{*this, "DateCreated", {"Date Created", "建立日期"}};
  Button SearchCmd{*this, "SearchCmd", {"Sea&rch", "查找(&R)"}};
  Button CmdDelete{*this, "CmdDelete", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  bool IsNew() const { return loaded_id_.empty(); }
  // A new document of the same supplier.
  void StartNew();
  void Clear();
  void LeaveTransID();
  // By value: the box that the number may come from is filled anew.
  void LoadTransaction(std::string id);
  void KeepAsStored();
  void ShowSupplierName();
  // Name and company of SuppID. False when there is no such supplier that the person may see.
  bool ShowSupplier();
  // Customer and company of LoanID, none for a blank. False when there is no such loan that the
  // person may see.
  bool ShowLoan();
  bool CheckAmount();

  bool Check();
  bool CheckSign();
  void Save();
  void Store();
  void Delete();
  bool Write(const std::function<void()>& write);
  std::string OfThisTransaction() const;
  Recordset ReadRow(const std::string& of);

  Record record_;
  RecordRight right_;
  StoredRow stored_, written_;
  std::string loaded_id_;                    // "" for a new document
  std::string loaded_type_;                  // as it is stored
  std::string shown_supplier_, shown_loan_;  // what the other boxes belong to
};

}  // namespace kaunter
