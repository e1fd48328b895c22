// LoanSettlementfrm, "Loan Settlement": closes a loan early for the amount that is typed, or takes
// such a settlement back. It works out no rebate; Settlementfrm does. What stays of a settlement
// after its rebuild tells settlement_store.h.
#pragma once

#include <functional>
#include <string>

#include "collections/settlement_store.h"
#include "core/session_screen.h"

namespace kaunter {

class LoanSettlementfrm : public SessionScreen {
 public:
  LoanSettlementfrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox PayID{*this, "PayID", {"Settlement ID", "结清编号"}};
  TextBox LoanID{*this, "LoanID", {"Loan ID", "贷款编号"}};
  TextBox CustName{*this, "CustName", {"Customer", "顾客"}};
  TextBox PayDate{*this, "PayDate", {"Date", "日期"}, Kind::date};
  TextBox Payment{*this, "Payment", {"Amount Received", "实收金额"}, Kind::money};
  TextBox IntAmt{*this, "IntAmt", {"Forfeit Deposit", "没收押金"}, Kind::money};
  TextBox DiscAmt{*this, "DiscAmt", {"Settlement Rebate", "结清回扣"}, Kind::money};
  TextBox LoanBal{*this, "LoanBal", {"Outstanding Balance", "未还结余"}, Kind::money};
  TextBox TotPay{*this, "TotPay", {"Total Payment", "已还总额"}, Kind::money};
  TextBox LoanAmt{*this, "LoanAmt", {"Loan Amount", "贷款额"}, Kind::money};
  TextBox TrxDate{*this, "TrxDate", {"Loan Date", "贷款日期"}, Kind::date};
  TextBox NextDueDate{*this, "NextDueDate", {"Next Due Date", "下期到期日"}, Kind::date};
  TextBox LoanTerm{*this, "LoanTerm", {"Loan Term", "贷款期数"}};
  TextBox LoanTypeID{*this, "LoanTypeID", {"Loan Type", "还款方式"}};
  TextBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox UserID{*this, "UserID", {"User ID", "用户编号"}};
  TextBox PaymentStatus{*this, "PaymentStatus", {"Payment Status", "付款状态"}};
  Grid DG{*this,
          "DG",
          {"Payments", "付款"},
          {{{"Payment Code", "付款编号"}, Kind::text, 16},
           {{"Date", "日期"}, Kind::date, 10},
           {{"Payment", "付款额"}, Kind::money, 12},
           {{"Interest", "利息"}, Kind::money, 10},
           {{"Discount", "折扣"}, Kind::money, 10},
           {{"New Balance", "新结余"}, Kind::money, 12},
           {{"Settlement", "结清"}, Kind::text, 9}}};
  Button CmdQuote{*this, "CmdQuote", {"Settlement &Quotation", "结清报价(&Q)"}};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button Command4{*this, "Command4", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button Command1{*this, "Command1", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  // Before another record is shown or the screen closes.
  bool Typed() const;
  void ClearScreen();
  void LeaveKey(TextBox& box, const std::string& shown,
                void (LoanSettlementfrm::*load)(std::string));
  void LoadLoan(std::string id);  // by value: the box it may come from is cleared
  // False when there is nothing to show, which has been told.
  bool Show(const std::function<bool()>& read);
  bool ShowLoan(const std::string& id);
  void LoadSettlement(std::string id);
  bool ShowSettlement(const std::string& id);
  void ShowPayments();

  void LeavePayment();
  void LeaveForfeit();
  bool CheckPayment();
  bool CheckForfeit();
  bool CheckLoan();
  bool Check();
  void Save();
  void Delete();
  // Runs a write in a transaction; a failure is told with its reason.
  bool Write(const Caption& failed, const std::function<void()>& write);
  // Behind the commit: the loan is rebuilt, the message told, the log written.
  void Finish(const Caption& told, const std::string& logged);

  Settlement shown_;  // LoanID empty: nothing; PayID empty: a loan to be settled
};

}  // namespace kaunter
