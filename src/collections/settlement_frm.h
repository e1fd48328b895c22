// Settlementfrm, "Settlement": what a customer must pay to close his loan on up to three dates. It
// prints a letter of it, and on request hands the first date's figures to the payment screen as an
// ordinary new payment. It stores nothing itself and speaks English whatever the language in force.
#pragma once

#include <array>
#include <string>

#include "collections/settlement_quote.h"
#include "core/session_screen.h"

namespace kaunter {

class Settlementfrm : public SessionScreen {
 public:
  Settlementfrm(Session& session, Desk& desk);

  void Load() override;

  TextBox LoanID{*this, "LoanID", {"Loan ID"}};
  TextBox OldLoanCode{*this, "OldLoanCode", {"Old Loan Code"}};
  TextBox CustName{*this, "CustName", {"Customer"}};
  TextBox DragLoan{*this, "DragLoan", {"Loan Scheme"}};
  TextBox TrxDate{*this, "TrxDate", {"Loan Date"}, Kind::date};
  TextBox LoanAmt{*this, "LoanAmt", {"Loan Amount"}, Kind::money};
  TextBox LoanTerm{*this, "LoanTerm", {"Loan Term"}};
  TextBox InstallmentAmt{*this, "InstallmentAmt", {"Installment"}, Kind::money};
  TextBox InsRate{*this, "InsRate", {"Interest Rate % p.a."}, Kind::rate};
  TextBox LastPayment{*this, "LastPayment", {"Last Payment"}, Kind::money};
  TextBox NextDueDate{*this, "NextDueDate", {"Next Due Date"}, Kind::date};
  TextBox LoanBal{*this, "LoanBal", {"Loan Balance"}, Kind::money};
  TextBox OthBal{*this, "OthBal", {"Other Charges"}, Kind::money};
  TextBox TotalBal{*this, "TotalBal", {"Total Balance"}, Kind::money};

  // A redemption date and its figures.
  struct Column {
    Column(Screen& screen, const std::string& ending)
        : SettledDate(screen, "SettledDate" + ending, {"Redemption Date"}, Kind::date),
          NPayment(screen, "NPayment" + ending, {"Installment Payment"}, Kind::money),
          EPayment(screen, "EPayment" + ending, {"Extra Payment"}, Kind::money),
          OPayment(screen, "OPayment" + ending, {"Other Payment"}, Kind::money),
          SettledAmt(screen, "SettledAmt" + ending, {"Settlement Amount"}, Kind::money) {}
    void ClearFigures();

    TextBox SettledDate;
    TextBox NPayment;
    TextBox EPayment;
    TextBox OPayment;
    TextBox SettledAmt;
  };
  std::array<Column, 3> columns{{{*this, ""}, {*this, "2"}, {*this, "3"}}};

  Button Command4{*this, "Command4", {"&Settle"}, ButtonRole::primary};
  Button CmdPrint{*this, "CmdPrint", {"Print &Letter"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close"}, ButtonRole::cancel};

 private:
  void LeaveLoanID();
  void LoadLoan(std::string id);  // by value: the box it may come from is cleared
  bool FindLoan(const std::string& id);
  void ShowLoan(const Recordset& row);
  void ClearScreen();
  void LeaveDate(Column& left);
  // A date of the calendar, not before the next due date; refused otherwise when `tell` is set.
  bool CheckDate(Column& column, bool tell);
  // The figures of every date that passes its check.
  void ComputeAll();
  void Settle();
  void PrintLetter();

  OwedLoan owed_;  // LoanID empty while no loan is shown
};

}  // namespace kaunter
