// UpdateSch, "Update Schedule": amends due dates and payable amounts of a loan that has no
// payments. Only a user of level 4, neither below nor above, may write.
#pragma once

#include <string>
#include <vector>

#include "core/session_screen.h"
#include "loans/schedule_store.h"

namespace kaunter {

class UpdateSch : public SessionScreen {
 public:
  UpdateSch(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox LoanID{*this, "LoanID", {"Loan Code", "贷款编号"}};
  TextBox CustName{*this, "CustName", {"Customer", "顾客"}};
  Grid SchLV{*this,
             "SchLV",
             {"Schedule", "还款时间表"},
             {{{"Sch", "期数"}, Kind::integer, 5},
              {{"Loan ID", "贷款编号"}, Kind::text, 20},
              {{"Customer", "顾客"}, Kind::text, 11},
              {{"Due Date", "到期日"}, Kind::date, 11},
              {{"Payable Amount", "应还金额"}, Kind::money, 13},
              {{"Interest Charge", "利息"}, Kind::money, 12},
              {{"Interest Paid", "已还利息"}, Kind::money, 12},
              {{"Payment", "已还"}, Kind::money, 12},
              {{"Drag Interest", "拖欠利息"}, Kind::money, 12},
              {{"Drag Interest Paid", "已还拖欠利息"}, Kind::money, 14}}};
  // Of the picked row, to be edited; not the loan's own.
  TextBox NextDueDate{*this, "NextDueDate", {"Due Date", "到期日"}, Kind::date};
  TextBox LoanAmt{*this, "LoanAmt", {"Payable Amount", "应还金额"}, Kind::money};
  Button Command2{*this, "Command2", {"&Update", "更新(&U)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  void LeaveLoanID();
  void LoadLoan(std::string id);  // by value: the box it may come from is cleared
  bool FindCustomer(const std::string& id);
  void List();  // the stored schedule
  void ClearScreen();
  void ClearEditing();
  void PickRow(int row);
  // What was typed for the picked row has not gone into the list yet.
  bool Typed() const;
  bool CheckAmount();
  bool CheckDate();
  void TakeRow();  // puts what was typed into the list; Save stores the list
  void Save();
  // False when it failed, which has then been told.
  bool Write();
  bool HasPayments() const;
  std::vector<std::vector<std::string>> StoredRows() const;

  LoanKey loaded_;                               // empty while no loan is shown
  std::vector<std::vector<std::string>> shown_;  // the rows as they were loaded
  int picked_ = -1;                              // row of the list, -1 for none
  bool changed_ = false;                         // the list differs from what is stored
};

}  // namespace kaunter
