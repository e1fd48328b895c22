// FirstStartFrm: the assistant of the first start. The three roads to an office, what each needs
// and where the data will lie. Closed before a road has led somewhere it has kept nothing.
#pragma once

#include <functional>
#include <string>

#include "core/session_screen.h"
#include "platform/sql/server_source.h"

namespace kaunter {

class FirstStartFrm : public SessionScreen {
 public:
  FirstStartFrm(Session& session, Desk& desk);

  Label IntroLBL{
      *this,
      "IntroLBL",
      {"Nobody has told this PC yet which office it works on.", "本机还没有指定要使用的办公室。"}};
  Option DemoOpt{*this, "DemoOpt", {"&Try the demo office", "试用示范办公室(&T)"}};
  Option NewOpt{*this, "NewOpt", {"A &new office on this PC", "在本机建立新办公室(&N)"}};
  Option JoinOpt{*this, "JoinOpt", {"&Join an office on a server", "加入服务器上的办公室(&J)"}};
  Label NeedsLBL{*this, "NeedsLBL", {}};
  CheckBox Anew{*this, "Anew", {"Begin the demo office anew", "重新开始示范办公室"}};
  TextBox Folder{*this, "Folder", {"&Folder", "文件夹(&F)"}};
  ComboBox ServerType{*this, "ServerType", {"&Kind of Server", "服务器种类(&K)"}};
  TextBox Server{*this, "Server", {"&Address", "地址(&A)"}};
  TextBox DatabaseName{*this, "DatabaseName", {"&Database", "数据库(&D)"}};
  TextBox UserID{*this, "UserID", {"Database &User", "数据库用户(&U)"}};
  TextBox Password{*this, "Password", {"&Password", "密码(&P)"}, Kind::password};
  CheckBox Encrypted{*this, "Encrypted", {"&Encrypted connection", "加密连接(&E)"}};
  Label PlaceLBL{*this, "PlaceLBL", {}};
  Button LanguageCmd{*this, "LanguageCmd", {"中文", "English"}};
  Button TestCmd{*this, "TestCmd", {"Te&st the Connection", "测试连接(&S)"}};
  Button OKCmd{*this, "OKCmd", {"&Open", "打开(&O)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"Not &Now", "以后再说(&N)"}, ButtonRole::cancel};

  void Load() override;

  // A road has led to an office.
  bool done() const { return done_; }
  // The settings that open it; "" for the person's own.
  const std::string& settings() const { return settings_; }

 private:
  void ShowRoad();
  bool Try(const std::function<void()>& road);
  void Test();
  void Go();
  void GoToDemo();
  void GoToFolder();
  void GoToServer();
  void TellHowToSignIn();
  ServerPlace Place() const;

  bool done_ = false;
  std::string settings_;
};

}  // namespace kaunter
