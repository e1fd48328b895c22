// FollowupFrm, "Follow Up": the log of collection calls. A call is written once and never changed;
// it says when to call next, and the loans whose next call has come stand in a list of their own,
// page by page.
#pragma once

#include <functional>
#include <string>

#include "core/paging.h"
#include "core/session_screen.h"

namespace kaunter {

class FollowupFrm : public SessionScreen {
 public:
  FollowupFrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox HisLoanID{*this, "HisLoanID", {"Loan ID", "贷款编号"}};
  Button SearchCmd{*this, "SearchCmd", {"Sea&rch", "搜索(&R)"}};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}, {}, true};
  TextBox HisCustID{*this, "HisCustID", {"Customer ID", "顾客编号"}};
  TextBox CustName{*this, "CustName", {"Customer Name", "顾客姓名"}};
  TextBox Contact1{*this, "Contact1", {"Telephone 1", "电话 1"}};
  TextBox Contact2{*this, "Contact2", {"Telephone 2", "电话 2"}};
  TextBox Contact3{*this, "Contact3", {"Mobile 1", "手机 1"}};
  TextBox Contact4{*this, "Contact4", {"Mobile 2", "手机 2"}};
  Button Command3{*this, "Command3", {"&Customer", "顾客(&C)"}};
  Button Command4{*this, "Command4", {"&Loan Detail", "贷款资料(&L)"}};
  ComboBox HisStatus{*this, "HisStatus", {"Status", "状态"}};
  TextBox NextCall{*this, "NextCall", {"Next Call", "下次联络"}, Kind::date};
  TextBox HisRemarks{*this, "HisRemarks", {"Remarks", "备注"}, Kind::memo};
  TextBox HisDate{*this, "HisDate", {"Date", "日期"}, Kind::date};
  TextBox HisTime{*this, "HisTime", {"Time", "时间"}, Kind::time};
  TextBox HisUserID{*this, "HisUserID", {"User ID", "用户"}};
  Grid FollowUpDG{*this,
                  "FollowUpDG",
                  {"History", "联络记录"},
                  {{{"Date", "日期"}, Kind::date, 10},
                   {{"Time", "时间"}, Kind::time, 8},
                   {{"Loan ID", "贷款编号"}, Kind::text, 14},
                   {{"Remarks", "备注"}, Kind::memo, 40},
                   {{"Status", "状态"}, Kind::text, 12},
                   {{"User ID", "用户"}, Kind::text, 10},
                   {{"Next Call", "下次联络"}, Kind::date, 10}}};
  Grid NextCallDG{*this,
                  "NextCallDG",
                  {"Calls Due", "应联络名单"},
                  {{{"Next Call", "下次联络"}, Kind::date, 11},
                   {{"Next Due Date", "下期到期日"}, Kind::date, 13},
                   {{"Loan ID", "贷款编号"}, Kind::text, 17},
                   {{"Company Code", "公司"}, Kind::text, 11},
                   {{"Customer Name", "顾客姓名"}, Kind::text, 26}}};
  ComboBox iLimit{*this,   "iLimit", {"Result Limit", "每页行数"}, {"50", "100", "200", "500"},
                  nullptr, true};
  Label Label8{*this, "Label8"};
  Button Command6{*this, "Command6", {"&Previous", "上一页(&P)"}};
  Button Command5{*this, "Command5", {"&Next", "下一页(&N)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button Command2{*this, "Command2", {"C&lear", "清除(&L)"}};
  Button CancelCmd{*this, "CancelCmd", {"Cl&ose", "关闭(&O)"}, ButtonRole::cancel};

 private:
  // Something of a new call is typed and not saved.
  bool Typed() const;
  void LeaveLoanID();
  void PickLoan();
  // `not_found` is told when the loan is not there; the screen then shows none.
  void LoadLoan(const std::string& id, const Caption& not_found);
  void ReadContacts();
  void ClearLoan();
  void ClearEntry();
  void ReadHistory();
  void ShowHistory(int row);

  bool Check();
  void Save();
  // The call, then its next date on the loan. `recorded` is set once the call is stored: what fails
  // behind that does not take it back.
  void Store(bool& recorded);

  // The page of calls due that ends with row `limit_from`.
  void ShowCalls(int limit_from);
  void OpenCall(int row);

  // Runs a read; false when it failed, which has then been told.
  bool Read(const Caption& failed, const std::function<void()>& read);

  std::string loaded_loan_;
  bool history_shown_ = false;  // the entry fields show a line of the history
  PageTurner pages_{session(), iLimit, Label8, [this](int limit_from) { ShowCalls(limit_from); }};
};

}  // namespace kaunter
