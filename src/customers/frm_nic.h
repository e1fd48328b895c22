// frmNIC, "Check IC": who an identity number belongs to, as borrower and as guarantor.
#pragma once

#include <string>

#include "core/session_screen.h"

namespace kaunter {

class frmNIC : public SessionScreen {
 public:
  frmNIC(Session& session, Desk& desk);

  TextBox CustIC{*this, "CustIC", {"Customer IC", "顾客身份证"}};
  Button CmdGo{*this, "CmdGo", {"&Go", "查询(&G)"}, ButtonRole::primary};
  Label CustName{*this, "CustName"};
  Grid DG;
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  void Go();
  std::string NameOf(const std::string& quoted_ic);
  // Both kinds of rows are those of the home company, whatever the level; ADMIN, with no home
  // company, gets none.
  void AddRows(const std::string& condition, const std::string& relation);
};

}  // namespace kaunter
