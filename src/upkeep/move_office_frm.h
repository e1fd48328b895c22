// MoveOfficeFrm, "Move the Office": the office of this PC into another database. From level 4 on,
// asked twice.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/session_screen.h"
#include "upkeep/office_move.h"

namespace kaunter {

class MoveOfficeFrm : public SessionScreen {
 public:
  MoveOfficeFrm(Session& session, Desk& desk);

  Label HereLBL{*this, "HereLBL"};
  ComboBox Target{*this, "Target", {"&Move to", "搬移至(&M)"}};
  TextBox FileName{*this, "FileName", {"New &File", "新文件(&F)"}};
  Button FileCmd{*this, "FileCmd", {"&Browse", "浏览(&B)"}};
  TextBox Server{*this, "Server", {"&Address of the Server", "服务器地址(&A)"}};
  TextBox DatabaseName{*this, "DatabaseName", {"&Database", "数据库(&D)"}};
  TextBox UserID{*this, "UserID", {"Database &User", "数据库用户(&U)"}};
  TextBox Password{*this, "Password", {"&Password", "密码(&P)"}, Kind::password};
  CheckBox Encrypted{*this, "Encrypted", {"&Encrypted connection", "加密连接(&E)"}};
  Grid DG{*this,
          "DG",
          {"What Would Be Moved", "将搬移的内容"},
          {{{"Item", "项目"}, Kind::text, 24}, {{"Found", "内容"}, Kind::text, 60}}};
  Label ResultLBL{*this, "ResultLBL"};
  Button LookCmd{*this, "LookCmd", {"&Look First", "先查看(&L)"}, ButtonRole::primary};
  Button MoveCmd{*this, "MoveCmd", {"M&ove the Office", "搬移(&O)"}, ButtonRole::danger};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  enum class Road { known, server, file };

  Road road() const;
  void ShowRoad();
  // Nothing where a box is refused.
  std::optional<MoveRequest> Request();
  // A name for a data source that the settings do not know yet.
  std::string NewName(const LocalSettings& local, const std::string& wish) const;
  void Look();
  void Move();
  void ShowLook(const MoveLook& look);
  // Runs it and tells what is in its way; false then.
  bool Try(const std::function<void()>& work);
  void Log(const std::string& text) const;

  std::vector<std::string> known_;  // the data sources that an office can go to
};

}  // namespace kaunter
