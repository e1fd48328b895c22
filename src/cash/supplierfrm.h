// Supplierfrm, "Supplier Profiles": whom the office buys from, and the documents of each. A new
// document is entered on SuppTransfrm, which this screen opens; a document listed is opened there
// as well.
#pragma once

#include <functional>
#include <string>

#include "core/record.h"
#include "core/record_right.h"
#include "core/session_screen.h"

namespace kaunter {

class Supplierfrm : public SessionScreen {
 public:
  Supplierfrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox SuppID{*this, "SuppID", {"Supplier ID", "供应商编号"}};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox TrxDate{*this, "TrxDate", {"Date", "日期"}, Kind::date};
  TextBox SuppName{*this, "SuppName", {"Supplier Name", "供应商名称"}};
  TextBox Add1{*this, "Add1", {"Address", "地址"}};
  TextBox Add2{*this, "Add2", {"Address 2", "地址 2"}};
  TextBox Add3{*this, "Add3", {"Address 3", "地址 3"}};
  TextBox Add4{*this, "Add4", {"Address 4", "地址 4"}};
  TextBox Tel1{*this, "Tel1", {"Tel 1", "电话 1"}};
  TextBox Tel2{*this, "Tel2", {"Tel 2", "电话 2"}};
  TextBox Remark{*this, "Remark", {"Remark", "备注"}, Kind::memo};
  TextBox UserID{*this, "UserID", {"Entered By", "输入者"}};
  TextBox DateCreated{*this, "DateCreated", {"Date Created", "建立日期"}};
  Grid SuppTransDG{*this,
                   "SuppTransDG",
                   {"Transactions", "交易"},
                   {{{"Transaction", "交易编号"}, Kind::text, 12},
                    {{"Date", "日期"}, Kind::date, 11},
                    {{"Type", "种类"}, Kind::text, 12},
                    {{"Description", "说明"}, Kind::text, 30},
                    {{"Amount", "金额"}, Kind::money, 13},
                    {{"Owing", "应付"}, Kind::money, 13},
                    {{"Loan Code", "贷款编号"}, Kind::text, 14},
                    {{"Company Code", "公司"}, Kind::text, 9}}};
  Label HintLBL{*this, "HintLBL"};
  Button SearchCmd{*this, "SearchCmd", {"Sea&rch", "查找(&R)"}};
  Button CmdTrans{*this, "CmdTrans", {"New &Transaction", "新交易(&T)"}};
  Button CmdDelete{*this, "CmdDelete", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  bool IsNew() const { return loaded_id_.empty(); }
  void StartNew();
  void LeaveSuppID();
  // By value: the box that the number may come from is filled anew.
  void LoadSupplier(std::string id);
  void ShowTransactions();
  void KeepAsStored();
  // Opens a document, or a new one for "".
  void OpenTransaction(const std::string& trans_id);

  bool Check();
  void Save();
  void Store();
  void TellLinkedAccounts();
  void Delete();
  // What a delete takes with it.
  Caption ReadLoss();
  // A transaction belongs to a company that is not the person's.
  bool HasForeignTransactions();
  bool Write(const std::function<void()>& write);

  Record record_;
  RecordRight right_;
  std::string loaded_id_;  // "" for a new supplier
};

}  // namespace kaunter
