// AMLADescFrm, "AML Reason Code": the reasons that a loan or a payment above the cash threshold may
// carry, a grid for each kind.
#pragma once

#include "core/session_screen.h"

namespace kaunter {

class AMLADescFrm : public SessionScreen {
 public:
  AMLADescFrm(Session& session, Desk& desk);

  Grid LoanDG{
      *this, "LoanDG", {"Loan Purpose", "贷款用途"}, {{{"Reason", "理由"}, Kind::text, 40, true}}};
  Grid PaymentDG{*this,
                 "PaymentDG",
                 {"Payment Reason", "付款理由"},
                 {{{"Reason", "理由"}, Kind::text, 40, true}}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

 private:
  void Read();
  void LeaveCell(Grid& grid, int row, const std::string& before);
  void Save();
  std::string Typed() const;

  std::string remembered_;
};

}  // namespace kaunter
