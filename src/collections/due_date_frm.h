// DueDateFrm, "Due Date Inquiry": the instalments that are still open, of a customer, of a loan, or
// of all, between two due dates. A key may be typed in three ways: as itself, as the loan's old
// code or as the customer's new IC.
#pragma once

#include <functional>
#include <string>

#include "core/session_screen.h"

namespace kaunter {

class DueDateFrm : public SessionScreen {
 public:
  DueDateFrm(Session& session, Desk& desk);

  TextBox DateFrom{*this, "DateFrom", {"Date From", "由日期"}, Kind::date};
  TextBox DateTo{*this, "DateTo", {"Date To", "至日期"}, Kind::date};
  TextBox CustID{*this, "CustID", {"Customer ID", "顾客编号"}};
  TextBox LoanID{*this, "LoanID", {"Loan ID", "贷款编号"}};
  CheckBox OwingCheck{*this, "OwingCheck", {"Loans with a balance only", "只列有结欠的贷款"}};
  CheckBox CompaniesCheck{*this, "CompaniesCheck", {"All my companies", "我的全部公司"}};
  Label LblCustName{*this, "LblCustName"};
  Grid DG{*this,
          "DG",
          {"On Due", "到期分期"},
          {{{"Due Date", "到期日"}, Kind::date, 11},
           {{"Loan ID", "贷款编号"}, Kind::text, 17},
           {{"Old Loan Code", "旧贷款编号"}, Kind::text, 14},
           {{"Customer ID", "顾客编号"}, Kind::text, 11},
           {{"Customer Name", "顾客姓名"}, Kind::text, 26},
           {{"Payable", "应还"}, Kind::money, 11},
           {{"Payment", "已还"}, Kind::money, 11},
           {{"Balance", "未还"}, Kind::money, 11}}};
  Label StatusLBL{*this, "StatusLBL"};
  Button SearchCmd{*this, "SearchCmd", {"&Search", "搜索(&S)"}, ButtonRole::primary};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  // Days in HandOverDays are asked for at once, for what a figure counts.
  void Load() override;

 private:
  void LeaveLoan();
  void LeaveCustomer();
  // The key that a typed text means; "" when there is none.
  std::string FindLoan(const std::string& typed);
  std::string FindCustomer(const std::string& typed);
  bool MayNameCustomer(const std::string& id);
  void ShowName();
  bool CheckDate(TextBox& box);
  bool CheckKeys();
  std::string Filter() const;
  void Search();
  void Clear();
  void Open(int row, int column);
  bool Read(const Caption& failed, const std::function<void()>& read);

  // What the boxes were found to mean, so that a key is looked up once.
  std::string found_loan_;
  std::string found_customer_;
  std::string named_customer_;  // whose name stands in LblCustName
};

}  // namespace kaunter
