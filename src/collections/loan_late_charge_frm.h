// LoanLateChargefrm: the daily late interest of one loan in one month. The caller leaves the loan
// in HandOverLoanID and the month ("01-2024") in CallerTag. The screen speaks English whatever the
// language in force.
#pragma once

#include "core/session_screen.h"

namespace kaunter {

class LoanLateChargefrm : public SessionScreen {
 public:
  LoanLateChargefrm(Session& session, Desk& desk);

  void Load() override;

  Grid DG{*this,
          "DG",
          {"Late Charges"},
          {{{"Charge ID"}, Kind::text, 22},
           {{"Date"}, Kind::date, 11},
           {{"Amount"}, Kind::money, 11},
           {{"Description"}, Kind::text, 24},
           {{"Kind"}, Kind::text, 8},
           {{"Due Date"}, Kind::date, 11}}};
  Label TotalLBL{*this, "TotalLBL"};
  Button CancelCmd{*this, "CancelCmd", {"&Close"}, ButtonRole::cancel};
};

}  // namespace kaunter
