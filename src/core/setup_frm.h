// SetupFrm lists a code table, SetupModifyFrm adds, changes or deletes one row of it. The title of
// the menu entry says which table.
#pragma once

#include <string>

#include "core/code_tables.h"
#include "core/session_screen.h"

namespace kaunter {

class SetupFrm : public SessionScreen {
 public:
  SetupFrm(Session& session, Desk& desk);

  Grid DG;
  Button SaveCmd{*this, "SaveCmd", {"&New", "新增(&N)"}, ButtonRole::primary};
  Button Command1{*this, "Command1", {"&Edit", "更改(&E)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  void List();
  void Edit(int row);

  const CodeTable* table_ = nullptr;
};

class SetupModifyFrm : public SessionScreen {
 public:
  enum class Mode { add, edit };
  SetupModifyFrm(Session& session, Desk& desk, const CodeTable& table, Mode mode, std::string code);

  TextBox SetupModifyCode{*this, "SetupModifyCode", {"Code", "编号"}};
  TextBox SetupModifyDesc{*this, "SetupModifyDesc", {"Description", "说明"}};
  TextBox SetupModifyMore{*this, "SetupModifyMore", {"Power of Attorney No", "授权书号码"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button Command2{*this, "Command2", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

 private:
  bool CheckNewCode();
  void Save();
  void Insert();
  void Delete();
  bool Typed() const;

  const CodeTable& table_;
  Mode mode_;
  std::string code_;
  std::string loaded_;  // description and more, as loaded
};

}  // namespace kaunter
