// LoanExtendfrm, "Extend Schedule": moves the due date of every unpaid row one repayment step later
// (Extend) or earlier (Cut Short). Rows that are paid keep their dates; so do the dates from which
// interest counts and the loan's first due date. Cutting short asks no row whether it would meet
// the one before.
#pragma once

#include <string>

#include "core/session_screen.h"

namespace kaunter {

class LoanExtendfrm : public SessionScreen {
 public:
  LoanExtendfrm(Session& session, Desk& desk);

  TextBox LoanID{*this, "LoanID", {"Loan Code", "贷款编号"}};
  TextBox CustName{*this, "CustName", {"Customer Name", "顾客姓名"}};
  TextBox LoanTerm{*this, "LoanTerm", {"Loan Term", "贷款期数"}};
  TextBox LoanTypeID{*this, "LoanTypeID", {"Loan Type", "还款方式"}};
  Grid SchDG{*this,
             "SchDG",
             {"Schedule", "还款时间表"},
             {{{"Sch", "期数"}, Kind::integer, 6},
              {{"Due Date", "到期日"}, Kind::date, 12},
              {{"Payable Amount", "应还金额"}, Kind::money, 14},
              {{"Payment", "已还"}, Kind::money, 14},
              {{"Balance", "未还"}, Kind::money, 14}}};
  Button SaveCmd{*this, "SaveCmd", {"&Extend", "延长(&E)"}, ButtonRole::primary};
  Button Command2{*this, "Command2", {"Cut &Short", "缩短(&S)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  void LoadLoan(std::string id);  // by value: the box it may come from is cleared
  void List();
  void ClearScreen();
  void Shift(bool backwards);
  // Lists anew; false when another desktop has changed the rows.
  bool StillAsShown();
  // False when it failed or the rows had changed, which has then been told.
  bool Write(bool backwards);

  std::string loaded_id_;  // "" while no loan is shown
};

}  // namespace kaunter
