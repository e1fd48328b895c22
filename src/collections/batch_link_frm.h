// BatchLinkfrm, "Late Charge Reversal": late interest that the batch posted is corrected by hand.
// The old amount of a changed charge stays in OrgAmt. A second list helps to find what to correct:
// payments that were entered after they fell due, for which the batch went on charging. The screen
// speaks English whatever the language in force.
#pragma once

#include <string>
#include <vector>

#include "core/session_screen.h"
#include "platform/money.h"

namespace kaunter {

class BatchLinkfrm : public SessionScreen {
 public:
  BatchLinkfrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox LoanID{*this, "LoanID", {"Loan Code"}};
  TextBox DateFrom{*this, "DateFrom", {"Date From"}, Kind::date};
  TextBox DateTo{*this, "DateTo", {"Date To"}, Kind::date};
  Button Command1{*this, "Command1", {"&Retrieve by Date"}};
  Button Command2{*this, "Command2", {"Late Entered &Payments"}};
  Grid DG{*this,
          "DG",
          {"Late Charges"},
          {{{"Charge ID"}, Kind::text, 22},
           {{"Loan Code"}, Kind::text, 14},
           {{"Date"}, Kind::date, 11},
           {{"Due Date"}, Kind::date, 11},
           {{"Amount"}, Kind::money, 11, true},
           {{"Original Amount"}, Kind::money, 13}}};
  Grid DG2{*this,
           "DG2",
           {"Payments Entered After They Fell Due"},
           {{{"Payment Code"}, Kind::text, 16},
            {{"Date Entered"}, Kind::text, 17},
            {{"Payment Date"}, Kind::date, 11},
            {{"Loan Code"}, Kind::text, 14},
            {{"Payment"}, Kind::money, 11},
            {{"Due Date"}, Kind::date, 11},
            {{"Customer Name"}, Kind::text, 24},
            {{"Lot No"}, Kind::text, 18}}};
  Button SaveCmd{*this, "SaveCmd", {"&Update"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close"}, ButtonRole::cancel};

 private:
  void LeaveLoan();
  // The person may see the loan.
  bool CheckLoan();
  bool CheckDates();
  void RetrieveAll();
  void RetrieveByDate();
  void Retrieve(const std::string& sql);
  void ListPayments();
  void OpenPayment(int row);
  void EditAmount(int row, const std::string& before);
  bool IsChanged(int row) const;
  bool AnyChanged() const;
  void Save();
  // Runs a read; false when it failed, which has then been told.
  bool Read(const std::function<void()>& read);

  std::string asked_loan_;            // the loan that the last question was about
  std::string selection_;             // the statement whose rows stand in DG
  std::vector<std::string> amounts_;  // of the rows in DG, as they are stored
};

}  // namespace kaunter
