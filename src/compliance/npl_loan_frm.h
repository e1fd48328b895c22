// NPLLoanFrm, "Nonperforming Loan (NPL)": counts a company's doubtful loans by year for the return,
// lets the figures be corrected before they are printed, and moves loans that are long overdue to a
// doubtful group.
#pragma once

#include <deque>
#include <string>

#include "compliance/npl_loans.h"
#include "core/session_screen.h"

namespace kaunter {

class NPLLoanFrm : public SessionScreen {
 public:
  NPLLoanFrm(Session& session, Desk& desk);

  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  // NoLoan(0), LoanAmt(0) to (5): 2015 to 2020.
  std::deque<TextBox> NoLoan = OfEachYear("NoLoan", {"Loans", "年笔数"}, Kind::integer);
  std::deque<TextBox> LoanAmt = OfEachYear("LoanAmt", {"Balance", "年结余"}, Kind::money);
  Button SaveCmd{*this, "SaveCmd", {"&Process", "处理(&P)"}, ButtonRole::primary};
  Button PrintCmd{*this, "PrintCmd", {"P&rint", "打印(&R)"}};
  Grid DG{*this,
          "DG",
          {"Nonperforming Loans", "不良贷款"},
          {{{"Loan Code", "贷款编号"}, Kind::text, 14},
           {{"Date", "日期"}, Kind::date, 11},
           {{"Company", "公司"}, Kind::text, 8},
           {{"Customer", "顾客"}, Kind::text, 26},
           {{"Loan Status", "贷款状态"}, Kind::text, 22},
           {{"Balance", "结余"}, Kind::money, 13}}};
  TextBox Months{*this, "Months", {"Overdue Months", "逾期月数"}, Kind::integer};
  ComboBox LoanGroupID{*this, "LoanGroupID", {"New Status", "新状态"}};
  Button UpdateCmd{*this, "UpdateCmd", {"&Update Status", "更新状态(&U)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  // The boxes hold figures of the company that is chosen.
  bool processed_ = false;

  std::deque<TextBox> OfEachYear(const char* name, const Caption& what, Kind kind);
  void Forget();
  bool Typed() const;
  bool CheckCompany();
  bool CheckCount(TextBox& box);
  bool CheckAmount(TextBox& box);
  void Process();
  bool Read();
  void UpdateStatus();
  void Print();
};

}  // namespace kaunter
