// FrmBuyGold, "Buy Gold": gold that is bought from a customer, with its items. A purchase has a
// number of its own, B0001 and on, and stays under it.
//
// A save replaces the items whole, and with them what was noted of their sale: that is wanted, and
// the screen names the sales that would be lost before it asks for a yes.
#pragma once

#include <string>
#include <vector>

#include "cash/gold_purchase.h"
#include "core/record.h"
#include "core/record_right.h"
#include "core/session_screen.h"

namespace kaunter {

class FrmBuyGold : public SessionScreen {
 public:
  FrmBuyGold(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox LoanID{*this, "LoanID", {"Purchase No", "买入编号"}};
  TextBox TrxDate{*this, "TrxDate", {"Date", "日期"}, Kind::date};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox CustID{*this, "CustID", {"Customer Code", "顾客编号"}};
  TextBox CustName{*this, "CustName", {"Customer Name", "顾客姓名"}};
  TextBox Remarks{*this, "Remarks", {"Remarks", "备注"}};
  TextBox UserID{*this, "UserID", {"Entered By", "输入者"}};
  TextBox DateCreated{*this, "DateCreated", {"Entered On", "输入时间"}};
  Grid Vsd2{*this,
            "Vsd2",
            {"Items", "金饰"},
            {{{"No", "序"}, Kind::integer, 4},
             {{"Gold Type", "种类"}, Kind::text, 10, true},
             {{"Description", "说明"}, Kind::text, 22, true},
             {{"Qty", "件数"}, Kind::rate, 6, true},
             {{"Unit Price", "单价"}, Kind::money, 10, true},
             {{"Weight (g)", "重量（克）"}, Kind::rate, 10, true},
             {{"Estimate", "估价"}, Kind::money, 11, true},
             {{"Amount", "收购价"}, Kind::money, 11, true},
             {{"Remarks", "备注"}, Kind::text, 16, true},
             {{"Sold Date", "卖出日期"}, Kind::date, 10},
             {{"Sold Amount", "卖出价"}, Kind::money, 11}}};
  TextBox TotEstAmt{*this, "TotEstAmt", {"Total Estimate", "估价总额"}, Kind::money};
  TextBox TotAmt{*this, "TotAmt", {"Total Amount", "收购总额"}, Kind::money};
  TextBox OtherAmt{*this, "OtherAmt", {"Other (+/-)", "其他（＋／－）"}, Kind::money};
  TextBox PayAmt{*this, "PayAmt", {"Pay Amount", "付出金额"}, Kind::money};
  Label DiffLBL{*this, "DiffLBL"};  // what is paid is not what the items come to
  Label HandLBL{*this, "HandLBL"};  // the company's gold in hand
  Button CmdPrint{*this, "CmdPrint", {"&Print", "打印(&P)"}};
  Button CmdDelete{*this, "CmdDelete", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  bool IsNew() const { return loaded_id_.empty(); }
  bool Changed() const;
  void StartNew();
  void LeaveLoanID();
  // By value: the box that the number may come from is filled anew.
  void LoadPurchase(std::string id);
  void ShowPurchase(GoldPurchase purchase);
  bool ShowCustomer();

  // --- the items
  // A line that something is typed in; the last line of the grid waits for the next one.
  bool IsLine(int row) const;
  int Lines() const;
  std::string Typed() const;
  void LeaveCell(int row, int column, const std::string& before);
  void RemoveLine();
  void KeepBlankLine();
  void SumUp();
  // What the items and the other amount come to.
  Money ToPay() const;
  void ShowDifference();
  void ShowHand();
  bool LeaveAmount(TextBox& box, bool may_be_negative);

  // --- the writes
  enum class Outcome { written, gone, changed };
  bool Check();
  bool CheckPayment();
  // Names the stored sales that go with the items; true when there are none or all may go.
  bool MayLoseSales(const Caption& when);
  void Save();
  Outcome Store(std::string& id);
  void WriteHeader(const std::string& id);
  void WriteItems(const std::string& id);
  void Delete();
  // Holds the stored purchase and says whether it is still the one that is shown.
  Outcome HoldStored();
  bool TellOutcome(Outcome outcome);
  void Print();

  Record record_;
  RecordRight right_;
  std::string loaded_id_;  // "" for a new purchase
  GoldPurchase stored_;    // as it was when it was loaded
  std::string shown_customer_;
  std::string remembered_items_;
  Money offered_;  // what the pay amount was when it was what the purchase came to
};

}  // namespace kaunter
