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

  TextBox SID{*this, "SID", {"Document No", "单据编号"}};
  TextBox LoanID{*this, "LoanID", {"Loan Code", "贷款编号"}};
  TextBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox CustID{*this, "CustID", {"Customer Code", "顾客编号"}};
  TextBox CustName{*this, "CustName", {"Customer Name", "顾客姓名"}};
  TextBox LoanAmt{*this, "LoanAmt", {"Loan Amount", "贷款额"}, Kind::money};
  TextBox LoanDate{*this, "LoanDate", {"Loan Date", "贷款日期"}, Kind::date};
  TextBox TrxDate{*this, "TrxDate", {"Date", "日期"}, Kind::date};
  TextBox DrawDownAmt{*this, "DrawDownAmt", {"Drawdown Amount", "放款额"}, Kind::money};
  TextBox Payee{*this, "Payee", {"Payee", "收款人"}};
  ComboBox Bank{*this, "Bank", {"Bank", "银行"}};
  TextBox ChqNo{*this, "ChqNo", {"Cheque No", "支票号码"}};
  TextBox Remarks{*this, "Remarks", {"Remarks", "备注"}, Kind::memo};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CmdDelete{*this, "CmdDelete", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  bool IsNew() const { return SID.empty(); }
  void LoadRelease(const std::string& sid);
  void ProposeRelease();
  // Shows the loan of LoanID. False when there is none that the person may see.
  bool ShowLoan();
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
  // Runs a write; false when it failed, which has then been told.
  bool Write(const std::function<void()>& write);

  Record record_;
  std::string DragLoan_;
  std::vector<Value> loaded_values_;  // for the audit; none for a new release
};

}  // namespace kaunter
