// BatchListfrm: the late charges that a payment on an earlier date would waive. The caller leaves
// the selection in HandOverSelection; nothing can be changed here.
#pragma once

#include "core/session_screen.h"

namespace kaunter {

class BatchListfrm : public SessionScreen {
 public:
  BatchListfrm(Session& session, Desk& desk);

  void Load() override;

  Grid DG{*this,
          "DG",
          {"Late Charges", "逾期利息"},
          {{{"Charge ID", "收费编号"}, Kind::text, 22},
           {{"Loan Code", "贷款编号"}, Kind::text, 14},
           {{"Date", "日期"}, Kind::date, 11},
           {{"Due Date", "到期日"}, Kind::date, 11},
           {{"Amount", "金额"}, Kind::money, 11}}};
  Label TotalLBL{*this, "TotalLBL"};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};
};

}  // namespace kaunter
