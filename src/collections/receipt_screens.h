// The two screens that look after receipt numbers: ReceiptNoFrm shows and sets the last number of a
// company's running series, RecalcReceiptNo numbers its receipts anew from a date on. Both work on
// the company in work; only who belongs to none chooses one.
#pragma once

#include <string>

#include "core/session_screen.h"

namespace kaunter {

// Speaks English whatever the language in force.
class ReceiptNoFrm : public SessionScreen {
 public:
  ReceiptNoFrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  ComboBox CompCode{*this, "CompCode", {"Company Code"}};
  TextBox LoanNo{*this, "LoanNo", {"Last Receipt No"}, Kind::integer};
  Button SaveCmd{*this, "SaveCmd", {"&Save"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close"}, ButtonRole::cancel};

 private:
  void Read();
  bool CheckNumber();
  void Save();

  std::string remembered_;
};

class RecalcReceiptNo : public SessionScreen {
 public:
  RecalcReceiptNo(Session& session, Desk& desk);

  void Load() override;

  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox Style{*this, "Style", {"Numbers look like", "号码样式"}};
  TextBox TrxDate{*this, "TrxDate", {"From date", "开始日期"}, Kind::date};
  TextBox StartFrom{*this, "StartFrom", {"Last number in use", "最后使用的号码"}, Kind::integer};
  Button SaveCmd{*this, "SaveCmd", {"&Restructure", "重编(&R)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  void ShowStyle();
  bool Check();
  void Restructure();
  // False when a payment from before the date bears one of the numbers; told, nothing is changed.
  bool Renumber();
};

}  // namespace kaunter
