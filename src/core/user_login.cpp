#include "core/user_login.h"

#include <fmt/format.h>

#include "core/audit.h"
#include "core/log.h"
#include "core/menu.h"
#include "core/sign_in.h"
#include "core/values.h"
#include "screen/hourglass.h"

namespace kaunter {
UserLogin::UserLogin(Session& session, Desk& desk, MainMenu& menu)
    : SessionScreen("UserLogin", {"User Login", "用户进入"}, session, desk), menu_(menu) {
  UserID.max_length = 50;
  OKCmd.SetEnabled(false);
  UserID.onChange = [this] { OKCmd.SetEnabled(!UserID.empty()); };
  UserID.onLeave = [this] { UserID.SetText(Upper(Trim(UserID.text()))); };
  OKCmd.onClick = [this] { SignIn(); };
  CancelCmd.onClick = [this] {
    ClearSignIn(this->session());
    Close();
  };
}

bool UserLogin::RequestClose() {
  if (!closed()) ClearSignIn(session());
  return true;
}

void UserLogin::SignIn() {
  std::optional<Caption> refusal;
  {
    Hourglass hourglass(desk());
    UserID.SetText(Upper(Trim(UserID.text())));
    refusal = TrySignIn(session(), UserID.text(), Password.text());
  }
  if (refusal) {
    Refuse(*refusal);
    return;
  }
  Welcome();
  Close();
}

void UserLogin::Refuse(const Caption& text) {
  session().MsgText = session().In(text);
  WriteLog(session(), LogLine(session(), session().MsgTitle + " Fail"));
  desk().Message(MessageKind::critical, session().MsgTitle, session().MsgText);
  Password.Clear();
  FocusOn(Password);
}

void UserLogin::Welcome() {
  session().MsgText = session().In({fmt::format("User ID {} Sign in", session().CurrentUserID),
                                    fmt::format("用户 {} 进入", session().CurrentUserID)});
  menu_.ApplyRights(session());
  session().CurrentCompDesc =
      ScalarQuery(session().Main(), fmt::format("SELECT CompDesc FROM CompMast WHERE CompCode={}",
                                                QuoteStr(session().CurrentCompCode)));
  WriteLog(session(), LogLine(session(), fmt::format("****** {} ******", session().MsgText)));
  WriteAudit(session(), "Log In", "User", session().CurrentCompCode, session().CurrentUserID, {});
  desk().Message(MessageKind::information, session().MsgTitle, session().MsgText);
}

}  // namespace kaunter
