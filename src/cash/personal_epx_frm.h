// PersonalEpxFrm, "Expenses": money that a company spends or receives outside of its loans, a row
// of PersonalExp each. Both amounts may be filled. The amounts never touch the cash book: the
// reports read PersonalExp itself.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/record.h"
#include "core/record_right.h"
#include "core/session_screen.h"
#include "core/stored_row.h"

namespace kaunter {

class PersonalEpxFrm : public SessionScreen {
 public:
  PersonalEpxFrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox TrxID{*this, "TrxID", {"Expenses No", "开销编号"}};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox ExpDate{*this, "ExpDate", {"Expenses Date", "日期"}, Kind::date};
  TextBox ExpDesc{*this, "ExpDesc", {"Expenses Desc", "说明"}};
  TextBox DebitAmt{*this, "DebitAmt", {"Income", "收入"}, Kind::money};
  TextBox CreditAmt{*this, "CreditAmt", {"Payout", "支出"}, Kind::money};
  ComboBox CBCat{*this, "CBCat", {"Category", "类别"}};
  ComboBox Bank{*this, "Bank", {"Bank", "银行"}};
  TextBox ChqNo{*this, "ChqNo", {"Cheque No", "支票号码"}};
  TextBox UserID{*this, "UserID", {"Entered By", "输入者"}};
  Button SearchCmd{*this, "SearchCmd", {"Sea&rch", "查找(&R)"}};
  Button CmdList{*this, "CmdList", {"Expenses &Report", "开销报告(&E)"}};
  Button CmdPrint{*this, "CmdPrint", {"&Print", "打印(&P)"}};
  Button DeleteCmd{*this, "DeleteCmd", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button Command2{*this, "Command2", {"C&lear", "清除(&L)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  bool IsNew() const { return loaded_id_.empty(); }
  void StartNew();
  void LeaveTrxID();
  // By value: the box that the number may come from is filled anew.
  void LoadExpense(std::string id);
  void KeepAsStored();
  // A blank passes.
  bool CheckAmount(TextBox& box, const Caption& name);

  bool Check();
  void Save();
  void Store();
  void Insert();
  void Delete();
  void Print();
  // Runs a write; false when it failed, which has then been told.
  bool Write(const std::function<void()>& write);
  // "TrxID=<number>", and the company for whoever may not see all.
  std::string OfThisExpense() const;
  Recordset ReadRow(const std::string& of);
  void Log(std::string_view what);

  Record record_;
  RecordRight right_;
  StoredRow stored_, written_;
  std::string loaded_id_;             // "" for a new expense
  std::vector<Value> loaded_values_;  // for the audit; none for a new expense
};

}  // namespace kaunter
