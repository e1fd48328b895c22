// The screens that ask for a password: changing the own one, a manager's approval, and the own one
// again before something dangerous.
#pragma once

#include <string>
#include <string_view>

#include "core/session_screen.h"

namespace kaunter {

class ChangePasswordfrm : public SessionScreen {
 public:
  ChangePasswordfrm(Session& session, Desk& desk);

  TextBox UserID{*this, "UserID", {"User ID", "用户编号"}};
  TextBox UserName{*this, "UserName", {"Name", "姓名"}};
  TextBox OldPassword{*this, "OldPassword", {"Current Password", "现在的密码"}, Kind::password};
  TextBox NewPassword{*this, "NewPassword", {"New Password", "新密码"}, Kind::password};
  TextBox ConfirmPassword{
      *this, "ConfirmPassword", {"Confirm Password", "确认密码"}, Kind::password};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  void Save();
};

// A manager approves one action for a clerk. The approver is not recorded.
class frmUserSignIn : public SessionScreen {
 public:
  // Shows what is asked for ("save loan AB0003-001") and the company it is called for; the one in
  // work when that is "".
  frmUserSignIn(Session& session, Desk& desk, const Caption& what, std::string comp_code = {});

  Label RequestLBL{*this, "RequestLBL"};
  Label Company{*this, "Company"};
  TextBox UserID{*this, "UserID", {"User ID", "用户编号"}};
  TextBox Password{*this, "Password", {"Password", "密码"}, Kind::password};
  Button OKCmd{*this, "OKCmd", {"&OK", "确定(&O)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Cancel", "取消(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  void Approve();

  std::string comp_code_;
};

// The signed-in user types the own password again.
class AccessPasswordFrm : public SessionScreen {
 public:
  AccessPasswordFrm(Session& session, Desk& desk, const Caption& what);

  Label RequestLBL{*this, "RequestLBL"};
  TextBox Password{*this, "Password", {"Your Password", "您的密码"}, Kind::password};
  Button OKCmd{*this, "OKCmd", {"&OK", "确定(&O)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Cancel", "取消(&C)"}, ButtonRole::cancel};

  bool passed() const { return passed_; }

 private:
  bool passed_ = false;
};

// Shows frmUserSignIn; true when a manager has approved. `what` says what for, after "<user> asks:
// "; `comp_code` is only shown.
bool ManagerOverride(Session& session, Desk& desk, const Caption& what,
                     std::string_view comp_code = {});
// Shows AccessPasswordFrm; true when the own password was typed.
bool ConfirmOwnPassword(Session& session, Desk& desk, const Caption& what);

}  // namespace kaunter
