// ChqCtrlFrm, "Cheque": the post-dated cheques that are held against a loan. A cheque is added,
// amended and removed here while it is new; once a payment has taken it, it stays as it is until
// that payment is deleted.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/session_screen.h"

namespace kaunter {

class ChqCtrlFrm : public SessionScreen {
 public:
  ChqCtrlFrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox LoanID{*this, "LoanID", {"Loan ID", "贷款编号"}};
  Button SearchCmd{*this, "SearchCmd", {"Sea&rch", "搜索(&R)"}};
  TextBox CustName{*this, "CustName", {"Customer Name", "顾客姓名"}};
  TextBox LoanDate{*this, "LoanDate", {"Loan Date", "贷款日期"}, Kind::date};
  TextBox ChqNo{*this, "ChqNo", {"Cheque No", "支票号码"}};
  TextBox ChqDate{*this, "ChqDate", {"Cheque Date", "支票日期"}, Kind::date};
  TextBox ChqAmt{*this, "ChqAmt", {"Cheque Amount", "支票金额"}, Kind::money};
  ComboBox ChqBank{*this, "ChqBank", {"Bank", "银行"}, {}, true};
  TextBox ChqStatus{*this, "ChqStatus", {"Status", "状态"}};
  Grid ChqDG{*this,
             "ChqDG",
             {"Cheques", "支票"},
             {{{"Cheque No", "支票号码"}, Kind::text, 14},
              {{"Cheque Date", "支票日期"}, Kind::date, 11},
              {{"Bank", "银行"}, Kind::text, 12},
              {{"Cheque Amount", "支票金额"}, Kind::money, 13},
              {{"Status", "状态"}, Kind::text, 9},
              {{"Payment ID", "付款编号"}, Kind::text, 18},
              {{"Payment Date", "付款日期"}, Kind::date, 12}}};
  Button Cmd1{*this, "Cmd1", {"&Add", "新增(&A)"}, ButtonRole::primary};
  Button Cmd3{*this, "Cmd3", {"A&mend", "更改(&M)"}};
  Button Cmd4{*this, "Cmd4", {"R&emove", "删除(&E)"}, ButtonRole::danger};
  Button ExitCmd{*this, "ExitCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  // Date, amount and bank as they stand in the boxes.
  std::string Rest() const;
  // Something of a cheque is typed and not written.
  bool Typed() const;
  void Remember();

  void LeaveLoanID();
  void PickLoan();
  void LoadLoan(const std::string& id);
  void ReadCheques();
  void ClearLoan();
  void ClearCheque();
  void ShowCheque(int row);
  void LeaveChqNo();
  bool CheckAmount();

  bool CheckLoan();
  bool CheckCheque();
  void Add();
  void Amend();
  void Remove();
  // The condition that finds the cheque of the boxes.
  std::string OfThisCheque() const;
  // The status of the stored cheque as it is shown; nothing when there is none.
  std::optional<std::string> StoredStatus();
  void Written(const Caption& done, const char* what);
  bool RefuseStatus(const Caption& before, const std::string& status, const Caption& behind);

  // Runs a read or a write; false when it failed, which has then been told.
  bool Read(const std::function<void()>& read);
  bool Write(const std::function<void()>& write);

  std::string loaded_loan_;
  // What the boxes showed when nothing was typed in them yet.
  std::string shown_number_;
  std::string shown_rest_;
};

}  // namespace kaunter
