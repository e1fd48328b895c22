// LoanCalcfrm, "Loan Calculation": works out and prints a repayment table for a prospective
// customer. No loan is made: the rows stand in SchMast2 under a number of the screen's own, drawn
// once, and go when the screen is closed.
#pragma once

#include <optional>

#include "loans/calculator.h"
#include "loans/loan_screen.h"

namespace kaunter {

class LoanCalcfrm : public LoanScreen {
 public:
  LoanCalcfrm(Session& session, Desk& desk);

  void Load() override;
  void Unload() override;

  TextBox LoanID{*this, "LoanID", {"Calculation No", "计算编号"}};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司代码"}};
  TextBox CustName{*this, "CustName", {"Customer Name", "顾客姓名"}};
  TextBox TrxDate{*this, "TrxDate", {"Loan Date", "贷款日期"}, Kind::date};
  ComboBox LoanTypeID{*this, "LoanTypeID", {"Loan Type", "还款方式"}};
  TextBox NextDueDate{*this, "NextDueDate", {"Next Due Date", "下期到期日"}, Kind::date};
  // The index decides: 0 the personal loan, 1 the annuity on the running balance.
  ComboBox DragLoan{*this, "DragLoan", {"Loan Scheme", "贷款方案"}, {"Personal Loan", "Term Loan"}};
  TextBox LoanAmt{*this, "LoanAmt", {"Loan Amount", "贷款金额"}, Kind::money};
  TextBox InsRate{*this, "InsRate", {"Interest Rate % PA", "年利率 %"}, Kind::rate};
  TextBox LoanTerm{*this, "LoanTerm", {"Loan Term", "贷款期数"}, Kind::integer};
  TextBox LoanTerm2{
      *this, "LoanTerm2", {"Loan Term / Grace Period", "贷款期数 / 宽限期数"}, Kind::integer};
  TextBox InstallmentAmt{*this, "InstallmentAmt", {"Installment Amt", "每期金额"}, Kind::money};
  TextBox InstallmentAmt2{
      *this, "InstallmentAmt2", {"Installment Amt (copy)", "每期金额（副本）"}, Kind::money};
  TextBox LastPayment{*this, "LastPayment", {"Last Payment", "末期金额"}, Kind::money};
  TextBox LoanBal{*this, "LoanBal", {"Loan Balance", "贷款余额"}, Kind::money};
  Button Command3{*this, "Command3", {"&Calc Payment", "计算还款额(&C)"}, ButtonRole::primary};
  Grid SchDG{*this,
             "SchDG",
             {"Repayment Schedule", "还款时间表"},
             {{{"No", "期数"}, Kind::integer, 5},
              {{"Due Date", "到期日"}, Kind::date, 11},
              {{"Payable", "应还金额"}, Kind::money, 13},
              {{"Capital", "本金"}, Kind::money, 13},
              {{"Interest", "利息"}, Kind::money, 13},
              {{"Loan Balance", "贷款余额"}, Kind::money, 13}}};
  // The sums of the table's columns, in words.
  Label TotalLBL{*this, "TotalLBL", {"", ""}};
  Button SaveCmd{*this, "SaveCmd", {"&Print", "打印(&P)"}};
  Button CancelCmd{*this, "CancelCmd", {"Close", "关闭"}, ButtonRole::cancel};

 private:
  // Says what is wrong with a box that was left; its text stays and the box is marked.
  void CheckOnLeave(TextBox& box, const std::optional<Refusal>& refusal);
  void LeaveMoney();
  void LeaveDate(TextBox& box);
  // Calc Payment. False when it was refused.
  bool Calculate();
  std::optional<Refusal> FirstBlank() const;
  std::optional<Refusal> FirstWrong() const;
  std::optional<Refusal> CheckDate(const TextBox& box) const;
  LoanTerms Terms() const;
  void ShowFigures(const CalculatorFigures& figures, const Schedule& schedule);
  void ShowRows();
  void Print();
  std::optional<Refusal> FirstBlankOfPrint() const;
};

}  // namespace kaunter
