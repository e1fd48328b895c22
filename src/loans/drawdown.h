// Drawdown, "Loan Progressive Drawdown": one release of a loan's money. PayOutAmt of the loan is
// always the sum of its releases and LastDownDate the date of the latest; from the first release on
// the loan's terms are locked. The screen speaks English whatever the language in force.
//
// It is opened for a new release with the loan in HandOverLoanID, or for a stored one with its
// document number in CallerTag.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/record.h"
#include "core/session_screen.h"
#include "platform/money.h"

namespace kaunter {

class Drawdown : public SessionScreen {
 public:
  Drawdown(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox SID{*this, "SID", {"Document No"}};
  TextBox LoanID{*this, "LoanID", {"Loan Code"}};
  TextBox CompCode{*this, "CompCode", {"Company Code"}};
  TextBox CustID{*this, "CustID", {"Customer Code"}};
  TextBox CustName{*this, "CustName", {"Customer Name"}};
  TextBox LoanAmt{*this, "LoanAmt", {"Loan Amount"}, Kind::money};
  TextBox LoanDate{*this, "LoanDate", {"Loan Date"}, Kind::date};
  TextBox TrxDate{*this, "TrxDate", {"Date"}, Kind::date};
  TextBox DrawDownAmt{*this, "DrawDownAmt", {"Drawdown Amount"}, Kind::money};
  TextBox Payee{*this, "Payee", {"Payee"}};
  ComboBox Bank{*this, "Bank", {"Bank"}};
  TextBox ChqNo{*this, "ChqNo", {"Cheque No"}};
  TextBox Remarks{*this, "Remarks", {"Remarks"}, Kind::memo};
  Button SaveCmd{*this, "SaveCmd", {"&Save"}, ButtonRole::primary};
  Button CmdDelete{*this, "CmdDelete", {"&Delete"}, ButtonRole::danger};
  Button CancelCmd{*this, "CancelCmd", {"&Close"}, ButtonRole::cancel};

 private:
  bool IsNew() const { return SID.empty(); }
  void LoadRelease(const std::string& sid);
  void ProposeRelease();
  // Shows the loan of LoanID. False when there is none that the person may see.
  bool ShowLoan();
  void LeaveDate();
  void LeaveAmount();

  bool Check();
  // This release and the others come to more than the loan.
  bool ExceedsLoan();
  Money SumOfOthers();
  void Save();
  void Store();
  void TellLinkedAccounts();
  void Delete();
  void ClearScreen();
  // PayOutAmt and LastDownDate of the loan follow its releases.
  void WriteLoan();
  // Runs a write; false when it failed, which has then been told.
  bool Write(const std::function<void()>& write);

  Record record_;
  std::string DragLoan_;
  std::vector<Value> loaded_values_;  // for the audit; none for a new release
};

}  // namespace kaunter
