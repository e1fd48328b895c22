// LinkResendfrm, "Accounting Re-send": everything of the ledger between two dates that the bridge
// lacks or holds otherwise. Listed first; what is ticked is then sent, a document at a time. From
// level 2 on.
#pragma once

#include <string>
#include <vector>

#include "core/session_screen.h"
#include "links/link_recount.h"

namespace kaunter {

class LinkResendfrm : public SessionScreen {
 public:
  LinkResendfrm(Session& session, Desk& desk);

  void Load() override;
  void Unload() override;

  TextBox DateFrom{*this, "DateFrom", {"Date From", "日期由"}, Kind::date};
  TextBox DateTo{*this, "DateTo", {"Date To", "日期至"}, Kind::date};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  Button ListCmd{*this, "ListCmd", {"&List", "列出(&L)"}, ButtonRole::primary};
  Label ResultLBL{*this, "ResultLBL"};
  Grid DG{*this,
          "DG",
          {"What the Accounts Lack", "会计系统缺少的资料"},
          {{{"Record", "记录"}, Kind::text, 14},
           {{"Goes As", "传送为"}, Kind::text, 16},
           {{"Document", "编号"}, Kind::text, 16},
           {{"Date", "日期"}, Kind::date, 10},
           {{"Name", "姓名"}, Kind::text, 24},
           {{"Ledger", "账目"}, Kind::money, 13},
           {{"Accounts", "会计系统"}, Kind::money, 13},
           {{"Difference", "差异"}, Kind::text, 20},
           {{"Result", "结果"}, Kind::text, 24}}};
  Button CmdCheckAll{*this, "CmdCheckAll", {"Select &All", "全选(&A)"}};
  Button CmdUncheckAll{*this, "CmdUncheckAll", {"Select &None", "全不选(&N)"}};
  Button PrintCmd{*this, "PrintCmd", {"&Print", "打印(&P)"}};
  Button SendCmd{*this, "SendCmd", {"&Send Ticked", "传送所选(&S)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  bool CheckDates();
  void List();
  void ShowDifferences();
  void Forget();
  void TickAll(bool on);
  void Send();
  void ShowSent(int row, Resent outcome);
  void Print();

  std::vector<LinkDifference> differences_;  // a row of the grid each
};

}  // namespace kaunter
