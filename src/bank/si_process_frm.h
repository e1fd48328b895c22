// SIProcessfrm, "Direct Debit Process": the loans with something due up to a day, the largest open
// instalment of each, and the file that asks the bank to debit those that are ticked. Nothing is
// changed here: the money comes back later, as payments.
#pragma once

#include <string>
#include <vector>

#include "bank/direct_debit.h"
#include "core/session_screen.h"

namespace kaunter {

class SIProcessfrm : public SessionScreen {
 public:
  SIProcessfrm(Session& session, Desk& desk);

  TextBox ToDate{*this, "ToDate", {"Process Date", "处理至日期"}, Kind::date};
  TextBox PDate{*this, "PDate", {"Debit Date", "扣账日期"}, Kind::date};
  Button SaveCmd{*this, "SaveCmd", {"&List", "列出(&L)"}, ButtonRole::primary};
  Grid vsd{*this,
           "vsd",
           {"Due for Debit", "到期扣账"},
           {{{"Loan Code", "贷款编号"}, Kind::text, 14},
            {{"Due Date", "到期日"}, Kind::date, 11},
            {{"Customer Name", "顾客姓名"}, Kind::text, 26},
            {{"Bank Account No", "银行户口号码"}, Kind::text, 17},
            {{"Bank Transfer Name", "转账名称"}, Kind::text, 18},
            {{"Alternate Code", "另用编号"}, Kind::text, 13},
            {{"Memo 5", "备注 5"}, Kind::text, 14},
            {{"Amount", "金额"}, Kind::money, 12}}};
  Label TotalLBL{*this, "TotalLBL"};
  Button CmdCheckAll{*this, "CmdCheckAll", {"Select &All", "全选(&A)"}};
  Button CmdUncheckAll{*this, "CmdUncheckAll", {"Select &None", "全不选(&N)"}};
  Button SSCommand1{*this, "SSCommand1", {"&Export", "输出(&E)"}};
  Button SetupCmd{*this, "SetupCmd", {"Set&up", "设定(&U)"}};
  Button CmdClear{*this, "CmdClear", {"Clea&r", "清除(&R)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  void List();
  void Clear();
  void TickAll(bool on);
  void ShowTotal();

  void Export();
  std::vector<Debit> Ticked() const;
  // False where it failed, which has then been told.
  bool ReadSetup(DebitSetup* setup);
  bool Write(const std::string& path, const DebitSetup& setup, const DateTime& now);
  bool TellFailure(const Caption& why);
};

}  // namespace kaunter
