#include "core/user_login.h"

#include <fmt/format.h>

#include "core/audit.h"
#include "core/log.h"
#include "core/menu.h"
#include "core/sign_in.h"
#include "core/values.h"

namespace kaunter {
namespace {

class Hourglass {
 public:
  explicit Hourglass(Desk& desk) : desk_(desk) { desk_.Hourglass(true); }
  ~Hourglass() { desk_.Hourglass(false); }

 private:
  Desk& desk_;
};

}  // namespace

UserLogin::UserLogin(Session& session, Desk& desk, MainMenu& menu)
    : Screen("UserLogin", {"User Login", "用户进入"}, desk), session_(session), menu_(menu) {
  UserID.max_length = 50;
  OKCmd.SetEnabled(false);
  UserID.onChange = [this] { OKCmd.SetEnabled(!UserID.empty()); };
  UserID.onLeave = [this] { UserID.SetText(Upper(Trim(UserID.text()))); };
  OKCmd.onClick = [this] { SignIn(); };
  CancelCmd.onClick = [this] {
    ClearSignIn(session_);
    Close();
  };
}

bool UserLogin::RequestClose() {
  if (!closed()) ClearSignIn(session_);
  return true;
}

void UserLogin::SignIn() {
  std::optional<Caption> refusal;
  {
    Hourglass hourglass(desk());
    UserID.SetText(Upper(Trim(UserID.text())));
    refusal = TrySignIn(session_, UserID.text(), Password.text());
  }
  if (refusal) {
    Refuse(*refusal);
    return;
  }
  Welcome();
  Close();
}

void UserLogin::Refuse(const Caption& text) {
  session_.MsgText = session_.In(text);
  WriteLog(session_, LogLine(session_, session_.MsgTitle + " Fail"));
  desk().Message(MessageKind::critical, session_.MsgTitle, session_.MsgText);
  Password.Clear();
  FocusOn(Password);
}

void UserLogin::Welcome() {
  session_.MsgText = session_.In({fmt::format("User ID {} Sign in", session_.CurrentUserID),
                                  fmt::format("用户 {} 进入", session_.CurrentUserID)});
  menu_.ApplyRights(session_);
  session_.CurrentCompDesc =
      ScalarQuery(session_.Main(), fmt::format("SELECT CompDesc FROM CompMast WHERE CompCode={}",
                                               QuoteStr(session_.CurrentCompCode)));
  WriteLog(session_, LogLine(session_, fmt::format("****** {} ******", session_.MsgText)));
  WriteAudit(session_, "Log In", "User", session_.CurrentCompCode, session_.CurrentUserID, {});
  desk().Message(MessageKind::information, session_.MsgTitle, session_.MsgText);
}

}  // namespace kaunter
