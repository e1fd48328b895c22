// CashBookFrm, "Cash Book": a company's movements of cash and bank, entered by hand. Each save
// moves the company's balances by the amount on the screen; a change of a stored row moves them
// again, and a delete leaves them, until the book is recalculated.
#pragma once

#include <string>
#include <vector>

#include "cash/cash_balance.h"
#include "core/record.h"
#include "core/record_right.h"
#include "core/session_screen.h"
#include "core/stored_row.h"

namespace kaunter {

class CashBookFrm : public SessionScreen {
 public:
  CashBookFrm(Session& session, Desk& desk);

  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox CompDesc{*this, "CompDesc", {"Company", "公司名称"}};
  TextBox CashBookNo{*this, "CashBookNo", {"Transaction No", "交易编号"}};
  TextBox TranDate{*this, "TranDate", {"Date", "日期"}, Kind::date};
  ComboBox TranType{*this, "TranType", {"Transaction Type", "交易种类"}, {}, true};
  TextBox TranAmt{*this, "TranAmt", {"Amount", "金额"}, Kind::money};
  ComboBox CBCat{*this, "CBCat", {"Category", "类别"}};
  TextBox TranDesc{*this, "TranDesc", {"Description", "说明"}};
  TextBox TranMemo{*this, "TranMemo", {"Remark", "备注"}, Kind::memo};
  TextBox CashInHand{*this, "CashInHand", {"Cash In Hand", "手头现金"}, Kind::money};
  TextBox CashInBank{*this, "CashInBank", {"Cash In Bank", "银行存款"}, Kind::money};
  Label HintLBL{*this, "HintLBL"};
  Grid DG{*this,
          "DG",
          {"Latest Movements", "最近进出"},
          {{{"No", "编号"}, Kind::integer, 7},
           {{"Date", "日期"}, Kind::date, 11},
           {{"Type", "种类"}, Kind::text, 13},
           {{"Description", "说明"}, Kind::text, 30},
           {{"Category", "类别"}, Kind::text, 12},
           {{"Amount", "金额"}, Kind::money, 13},
           {{"Cash Balance", "现金结余"}, Kind::money, 13},
           {{"Bank Balance", "银行结余"}, Kind::money, 13}}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button Command1{*this, "Command1", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button SearchCmd{*this, "SearchCmd", {"Sea&rch", "搜索(&R)"}};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button RecalcCmd{*this, "RecalcCmd", {"Recalc&ulate...", "重算(&U)..."}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

 private:
  bool Typed() const;
  void LeaveCompany();
  void ShowCompany();
  void LeaveNumber();
  bool CheckAmount();
  void Open(std::string number);
  void ClearRow();
  void ClearAll();

  bool Check();
  void Save();
  // The balances first, the row behind them, each by itself.
  bool Move();
  bool Store();
  void Delete();
  // The row of the number as it is stored, for a company that the person may use; at the end when
  // there is none.
  Recordset Stored();
  bool RefuseRight();
  bool RefuseNumber();
  bool RefuseChanged(const Caption& what);
  void Log(const std::string& what);

  Record record_;
  RecordRight right_;
  CashPair after_;      // what the balances came to with the last save
  std::string loaded_;  // the number of the row that is shown
  std::string loaded_company_;
  StoredRow stored_;
  std::string shown_company_;  // whose balances and movements are shown
};

}  // namespace kaunter
