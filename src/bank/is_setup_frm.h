// ISSetupfrm, "Direct Debit Setup": the six identifiers that a bank gives an office for its
// direct-debit files.
#pragma once

#include <string>
#include <vector>

#include "bank/direct_debit.h"
#include "core/session_screen.h"

namespace kaunter {

class ISSetupfrm : public SessionScreen {
 public:
  ISSetupfrm(Session& session, Desk& desk);

  TextBox HeaderID{*this, "txt(0)", {"Header File ID", "首行识别码"}};
  TextBox DetailID{*this, "txt(1)", {"Detail File ID", "明细行识别码"}};
  TextBox FooterID{*this, "txt(2)", {"Footer File ID", "尾行识别码"}};
  TextBox SenderID{*this, "txt(3)", {"Sender ID", "发送方编号"}};
  TextBox ReceiverID{*this, "txt(4)", {"Receiver ID", "接收方编号"}};
  TextBox PayeeCode{*this, "txt(5)", {"Payee Corporation Code", "收款公司代码"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

 private:
  void Save();
  std::vector<std::string> Typed() const;

  const std::vector<TextBox*> txt_{&HeaderID, &DetailID,   &FooterID,
                                   &SenderID, &ReceiverID, &PayeeCode};
  std::vector<std::string> stored_;
};

}  // namespace kaunter
