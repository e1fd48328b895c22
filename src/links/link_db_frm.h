// LinkDBfrm, "Linked Database": the connection text of the other office's database, from which
// customers are imported, and whom to call about it.
#pragma once

#include <string>

#include "core/session_screen.h"

namespace kaunter {

class LinkDBfrm : public SessionScreen {
 public:
  LinkDBfrm(Session& session, Desk& desk);

  TextBox LinkDB{*this, "LinkDB", {"Link Code", "连接码"}};
  TextBox LinkDBContact{*this, "LinkDBContact", {"Contact", "联络人"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

 private:
  void Save();

  std::string remembered_;
};

}  // namespace kaunter
