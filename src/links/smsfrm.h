// SMSfrm, "SMS Master": short messages made from a template and handed to the queue of a gateway,
// or given back to it when they failed. Process fills the grid, Send queues what is ticked.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/session_screen.h"
#include "links/sms_queue.h"
#include "links/sms_rows.h"

namespace kaunter {

class SMSfrm : public SessionScreen {
 public:
  SMSfrm(Session& session, Desk& desk);

  void Load() override;

  ComboBox SMSCat{*this, "SMSCat", {"SMS Type", "短讯种类"}};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox DateFrom{*this, "DateFrom", {"Due Date From", "到期日由"}, Kind::date};
  TextBox DateTo{*this, "DateTo", {"Due Date To", "到期日至"}, Kind::date};
  ComboBox LoanStatus{*this, "LoanStatus", {"Loan Status", "贷款状态"}};
  ComboBox LoanType2{*this, "LoanType2", {"Loan Type", "贷款种类"}, {"", "Secured", "Unsecured"}};
  Option Option1{*this, "Option1", {"Show Loan Bal", "显示贷款结余"}};
  Option Option2{*this, "Option2", {"Show All Int Due", "显示全部到期利息"}};
  ComboBox CustStatus{*this, "CustStatus", {"Customer Status", "顾客状态"}};
  ComboBox CustRace{*this, "CustRace", {"Race", "种族"}};
  ComboBox MMonth{*this, "MMonth", {"Birth Month", "出生月份"}};
  ComboBox UserLevel{*this, "UserLevel", {"User Level", "用户级别"}};
  TextBox TextFileName{*this, "TextFileName", {"Text File", "文字档"}};
  Button Command4{*this, "Command4", {"Select &File", "选择文件(&F)"}};
  TextBox TID{*this, "TID", {"SMS Template", "短讯范本"}};
  Button SearchCmd1{*this, "SearchCmd1", {"Sea&rch Template", "查找范本(&R)"}};
  TextBox SMSContent{*this, "SMSContent", {"SMS Contents", "短讯内容"}, Kind::memo};
  ComboBox SMSField{*this, "SMSField", {"Insert Field", "插入栏位"}};
  Label CountLBL{*this, "CountLBL"};
  Label UnknownLBL{*this, "UnknownLBL"};
  TextBox Preview{*this, "Preview", {"Preview", "预览"}, Kind::memo};
  Label ResultLBL{*this, "ResultLBL"};
  Grid vsd{*this, "vsd", {"Messages", "短讯"}, {}};
  Button CmdCheckAll{*this, "CmdCheckAll", {"Select &All", "全选(&A)"}};
  Button CmdUncheckAll{*this, "CmdUncheckAll", {"Select &None", "全不选(&N)"}};
  Button CmdPreview{*this, "CmdPreview", {"Pre&view First", "预览第一则(&V)"}};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button SSCommand1{*this, "SSCommand1", {"&Process", "处理(&P)"}, ButtonRole::primary};
  Button SendCmd{*this, "SendCmd", {"&Send", "发送(&S)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  SmsType Type() const;
  bool IsResend() const { return Type() == SmsType::resend; }
  void ChooseType();
  void ShowGridOf(SmsType type);
  void ForgetList();
  void LoadTemplate(const std::string& id);
  void LeaveTemplate();
  void ShowSize();
  void ShowPreview();
  void Clear();

  bool Check();
  bool CheckTemplate();
  SmsChoice Choice() const;
  // Whom the choice leads to, each with the values of his placeholders. False when it failed, which
  // has been told.
  struct Reader {
    SmsRow row;
    SmsValues values;
  };
  bool Read(std::vector<Reader>& readers);
  void PreviewFirst();
  void Process();
  bool FillMessages();
  bool FillFailed();
  void TickAll(bool on);
  void ShowCount();

  void Send();
  // Takes away the rows without a number.
  bool MaySend(std::vector<int>& rows);
  std::vector<int> TickedRows() const;
  QueuedSms MessageOf(int row) const;
  bool CheckLength(const SmsQueue& queue, const std::vector<int>& rows);
  // Takes away what the queue holds and is not wanted again; false when nothing is left.
  bool AskAboutQueued(SmsQueue& queue, std::vector<int>& rows);
  void MarkQueued(int row, bool now);
  struct Outcome {
    int taken = 0;
    int refused = 0;  // another desktop was quicker
    bool stopped = false;
    bool failed = false;  // which has been told
  };
  // Runs `one` for each row under a bar that can be stopped.
  Outcome ForEach(const std::vector<int>& rows, const std::function<bool(int row)>& one);
  void TellOutcome(const Outcome& outcome, std::size_t asked);
  void TellSendFailed(const std::exception& failure, int taken);

  std::optional<SmsValues> sample_;  // of the first one, in the list or in a preview
  std::string chosen_template_;      // the number whose text was read
  std::string processed_text_;       // the text that the grid was made from
};

}  // namespace kaunter
