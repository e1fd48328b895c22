// UserLogin: the sign-in dialog. It stays open after a refusal; Cancel leaves nobody signed in.
#pragma once

#include "core/session_screen.h"

namespace kaunter {

class MainMenu;

class UserLogin : public SessionScreen {
 public:
  UserLogin(Session& session, Desk& desk, MainMenu& menu);

  TextBox UserID{*this, "UserID", {"&User ID", "用户(&U)"}};
  TextBox Password{*this, "Password", {"&Password", "密码(&P)"}, Kind::password};
  Button OKCmd{*this, "OKCmd", {"&Sign in", "进入(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Cancel", "取消(&C)"}, ButtonRole::cancel};

  bool RequestClose() override;

 private:
  void SignIn();
  void Refuse(const Caption& text);
  void Welcome();

  MainMenu& menu_;
};

}  // namespace kaunter
