#include "core/password_screens.h"

#include <fmt/format.h>

#include "core/company_access.h"
#include "core/log.h"
#include "core/password.h"
#include "core/password_tries.h"
#include "core/record.h"
#include "core/values.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

constexpr int kLongestUserID = 50;

// "AMINAH asks: save loan AB0003-001".
std::string Request(const Session& session, const Caption& what) {
  return session.In({fmt::format("{} asks: {}", session.CurrentUserID, what.english),
                     fmt::format("{} 请求：{}", session.CurrentUserID, what.chinese)});
}

}  // namespace

ChangePasswordfrm::ChangePasswordfrm(Session& session, Desk& desk)
    : SessionScreen("ChangePasswordfrm", {"Change User Password", "更改用户密码"}, session, desk) {
  UserID.SetLocked(true);
  UserName.SetLocked(true);
  SaveCmd.onClick = [this] { Save(); };
}

void ChangePasswordfrm::Load() {
  UserID.SetText(session().CurrentUserID);
  UserName.SetText(ScalarQuery(main(), fmt::format("SELECT UserName FROM UserMast WHERE UserID={}",
                                                   QuoteStr(session().CurrentUserID))));
  FocusOn(OldPassword);
}

void ChangePasswordfrm::Save() {
  const std::string id = session().CurrentUserID;
  if (OldPassword.empty()) {
    Refuse(OldPassword, {"Current Password is require", "请输入现在的密码"});
  } else if (NewPassword.empty()) {
    Refuse(NewPassword, {"New Password is require", "请输入新密码"});
  } else if (ConfirmPassword.empty()) {
    Refuse(ConfirmPassword, {"Confirm Password is require", "请输入确认密码"});
  } else if (NewPassword.text() != ConfirmPassword.text()) {
    Refuse(ConfirmPassword, {"Password mismatch", "密码不符"});
  } else {
    const Recordset row =
        main().Query(fmt::format("SELECT UserDept FROM UserMast WHERE UserID={}", QuoteStr(id)));
    if (row.Eof()) {
      Refuse({fmt::format("User {} not found", id), fmt::format("找不到用户 {}", id)});
    } else if (!TryPassword(session(), id, title().english, [&] {
                 return NullToEmpty(row.Field("UserDept")) == PasswordHash(OldPassword.text());
               })) {
      Refuse(OldPassword, {"Invalid Current password", "现在的密码不正确"});
    } else if (Confirm({"Confirm to change password?", "确定更改密码？"})) {
      ExecuteOnRow(main(),
                   fmt::format("UPDATE UserMast SET UserDept={} WHERE UserID={}",
                               QuoteStr(PasswordHash(NewPassword.text())), QuoteStr(id)),
                   id);
      WriteLog(session(),
               LogLine(session(), fmt::format(" - {0} changed the password of {0}", id)));
      Tell(MessageKind::information, {"Password change successfully", "密码已更改"});
      Close();
    }
  }
}

frmUserSignIn::frmUserSignIn(Session& session, Desk& desk, const Caption& what,
                             std::string comp_code)
    : SessionScreen("frmUserSignIn", {"Manager Sign In", "经理进入"}, session, desk),
      comp_code_(std::move(comp_code)) {
  RequestLBL.SetText(Request(session, what));
  UserID.max_length = kLongestUserID;
  UserID.onLeave = [this] { UserID.SetText(Upper(Trim(UserID.text()))); };
  OKCmd.onClick = [this] { Approve(); };
}

void frmUserSignIn::Load() {
  session().OverrideOK = false;
  Company.SetText(comp_code_.empty() ? session().CurrentCompCode : comp_code_);
}

void frmUserSignIn::Approve() {
  const Hourglass busy(desk());
  session().OverrideOK = TryPassword(session(), UserID.text(), title().english, [this] {
    const Recordset rows = main().Query(fmt::format(
        "SELECT UserID FROM UserMast WHERE UserID={} AND UserDept={} AND (Userlevel = 'Manager' or "
        "UserLevel='Admin')",
        QuoteStr(UserID.text()), QuoteStr(PasswordHash(Password.text()))));
    return rows.RowCount() == 1;
  });
  if (session().OverrideOK) {
    Close();
    return;
  }
  Password.Clear();
  Refuse(Password, {"Invalid Password, Please check", "密码不正确，请检查"});
}

AccessPasswordFrm::AccessPasswordFrm(Session& session, Desk& desk, const Caption& what)
    : SessionScreen("AccessPasswordFrm", {"Password", "密码"}, session, desk) {
  RequestLBL.SetText(Request(session, what));
  OKCmd.onClick = [this] {
    const Hourglass busy(this->desk());
    passed_ = TryPassword(this->session(), this->session().CurrentUserID, title().english, [this] {
      return CheckUserPassword(this->session(), PasswordHash(Password.text()));
    });
    Close();
  };
}

bool ManagerOverride(Session& session, Desk& desk, const Caption& what,
                     std::string_view comp_code) {
  session.OverrideOK = false;
  frmUserSignIn dialog(session, desk, what, std::string(comp_code));
  desk.ShowModal(dialog);
  return session.OverrideOK;
}

bool ConfirmOwnPassword(Session& session, Desk& desk, const Caption& what) {
  AccessPasswordFrm dialog(session, desk, what);
  desk.ShowModal(dialog);
  return dialog.passed();
}

}  // namespace kaunter
