// LampiranB1: the loans of a company between two dates, each with the mark that its agreement was
// printed, and the record of loan transactions of the same loans.
#pragma once

#include <string>

#include "core/session_screen.h"
#include "reporting/staged_reports.h"

namespace kaunter {

class LampiranB1 : public SessionScreen {
 public:
  LampiranB1(Session& session, Desk& desk);

  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox DateFrom{*this, "DateFrom", {"Date From", "日期由"}, Kind::date};
  TextBox DateTo{*this, "DateTo", {"Date To", "日期至"}, Kind::date};
  Button SaveCmd{*this, "SaveCmd", {"&Retrieve", "列出(&R)"}, ButtonRole::primary};
  Grid DG{*this,
          "DG",
          {"Loans (tick: agreement printed)", "贷款（勾选：已打印合约）"},
          {{{"Loan Code", "贷款编号"}, Kind::text, 14},
           {{"Date", "日期"}, Kind::date, 11},
           {{"Customer", "顾客"}, Kind::text, 30},
           {{"Loan Amount", "贷款额"}, Kind::money, 13}}};
  Label CountLBL{*this, "CountLBL"};
  Button CmdPrint{*this, "CmdPrint", {"&Print Record", "打印记录(&P)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  void Unload() override;

 private:
  void Forget();
  bool Check();
  void Retrieve();
  void SaveTick(int row);
  void ShowCount();
  void Print();
};

}  // namespace kaunter
