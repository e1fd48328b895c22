// LinkAccSetupfrm, "Accounting Link Setup": which account of the accounting package takes which
// kind of money. The chart of accounts is read from the bridge, each time anew.
#pragma once

#include <string>

#include "core/session_screen.h"

namespace kaunter {

class LinkAccSetupfrm : public SessionScreen {
 public:
  LinkAccSetupfrm(Session& session, Desk& desk);

  Grid DG{*this,
          "DG",
          {"Accounts", "账户"},
          {{{"No", "序号"}, Kind::integer, 5},
           {{"Link", "连接"}, Kind::text, 8},
           {{"Kind of Money", "款项"}, Kind::text, 28},
           {{"Account", "账户"}, Kind::text, 16, true},
           {{"Account Name", "账户名称"}, Kind::text, 28}}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

 private:
  bool ReadChart();
  void ReadMapping();
  void ChooseAccount(int row, const std::string& before);
  void Save();

  bool changed_ = false;
};

}  // namespace kaunter
