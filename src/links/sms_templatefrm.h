// SMSTemplatefrm, "SMS Template": the texts of short messages, with places for what differs from
// customer to customer. What a text takes is counted while it is typed.
#pragma once

#include <string>

#include "core/record.h"
#include "core/session_screen.h"
#include "core/stored_row.h"

namespace kaunter {

class SMSTemplatefrm : public SessionScreen {
 public:
  SMSTemplatefrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox TID{*this, "TID", {"Template ID", "范本编号"}};
  TextBox TName{*this, "TName", {"Template Name", "范本名称"}};
  TextBox SMSContent{*this, "SMSContent", {"SMS Contents", "短讯内容"}, Kind::memo};
  ComboBox SMSField{*this, "SMSField", {"Insert Field", "插入栏位"}};
  Label CountLBL{*this, "CountLBL"};
  Label UnknownLBL{*this, "UnknownLBL"};
  Button SearchCmd{*this, "SearchCmd", {"Sea&rch", "查找(&R)"}};
  Button CmdDelete{*this, "CmdDelete", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  void StartNew();
  void LoadTemplate(std::string id);
  void ShowSize();
  bool Check();
  void Save();
  void Store();
  void Delete();
  bool Write(const Caption& failed, const std::function<void()>& write);
  Recordset Stored(const std::string& id) const;

  Record record_;
  StoredRow as_read_;
  std::string loaded_id_;  // "" for a new template
};

}  // namespace kaunter
