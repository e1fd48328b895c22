// SpecialRpt, "Loan Summary": a desk for many payments at once. It lists the instalments of a
// company that fall due; the clerk types an amount into each line that pays, and all of them are
// written in one go. Each line is a payment of its own: one that fails is told, keeps its amount
// and stops none of the others. A line that has been paid shows its payment and is not paid again.
#pragma once

#include <string>

#include "core/session_screen.h"

namespace kaunter {

class SpecialRpt : public SessionScreen {
 public:
  SpecialRpt(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  ComboBox Bank{*this, "Bank", {"Bank", "银行"}};
  ComboBox LoanGroupID{*this, "LoanGroupID", {"Loan Group", "贷款组别"}};
  TextBox DateFrom{*this, "DateFrom", {"Date From", "由日期"}, Kind::date};
  TextBox DateTo{*this, "DateTo", {"Date To", "至日期"}, Kind::date};
  ComboBox SortBy{*this, "SortBy", {"Sort By", "排序"}};
  Button Command1{*this, "Command1", {"&List", "列出(&L)"}};
  TextBox PayDate{*this, "PayDate", {"Payment Date", "付款日期"}, Kind::date};
  Grid DG{*this,
          "DG",
          {"Instalments Due", "到期分期"},
          {{{"Loan Code", "贷款编号"}, Kind::text, 13},
           {{"Alternate Code", "另用编号"}, Kind::text, 10},
           {{"Customer Name", "顾客姓名"}, Kind::text, 18},
           {{"Customer No", "顾客旧编号"}, Kind::text, 9},
           {{"Loan Type", "还款方式"}, Kind::text, 9},
           {{"Grace Days", "宽限天数"}, Kind::integer, 6},
           {{"Late Int %", "逾期年利率"}, Kind::rate, 6},
           {{"Due Date", "到期日"}, Kind::date, 10},
           {{"Balance", "未还"}, Kind::money, 10},
           {{"Loan Balance", "贷款结余"}, Kind::money, 11},
           {{"Amount", "付款额"}, Kind::money, 12, true},
           {{"Payment Code", "付款编号"}, Kind::text, 15},
           {{"Remarks", "备注"}, Kind::text, 34}}};
  Label TotalLBL{*this, "TotalLBL"};
  Button SaveCmd{*this, "SaveCmd", {"&Save Payments", "储存付款(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  bool CheckRange();
  bool CheckPayDate();
  void List();
  void EditAmount(int row, const std::string& before);
  void ShowTotal();
  // An amount is typed and no payment is written for it yet.
  bool IsOpen(int row) const;
  int CountOpen() const;

  void Process();
  // Writes the payment of a row. "" when it is stored, else why it is not.
  std::string Pay(int row);
  // What is open on the listed rows of a loan, as it is stored now.
  void RefreshLoan(const std::string& loan_id);
  void OpenPayment(int row);

  std::string allowed_day_;  // the payment date that passed the check of Sundays and holidays
};

}  // namespace kaunter
