// VerifyLedgerFrm, "Verify Ledger": replays the payments of all loans of a company in memory, lists
// what does not hold, and repairs what was ticked by a rebuild. From level 4 on.
#pragma once

#include <string>
#include <vector>

#include "collections/ledger_check.h"
#include "core/session_screen.h"

namespace kaunter {

class VerifyLedgerFrm : public SessionScreen {
 public:
  VerifyLedgerFrm(Session& session, Desk& desk);

  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  Button VerifyCmd{*this, "VerifyCmd", {"&Verify", "核对(&V)"}, ButtonRole::primary};
  Label ResultLBL{*this, "ResultLBL"};
  Grid DG{*this,
          "DG",
          {"What Does Not Hold", "不符之处"},
          {{{"Loan Code", "贷款编号"}, Kind::text, 14},
           {{"Status", "状态"}, Kind::text, 8},
           {{"Figure", "项目"}, Kind::text, 30},
           {{"Stored", "现存"}, Kind::money, 14},
           {{"Should Be", "应为"}, Kind::money, 14},
           {{"Mended By", "更正方法"}, Kind::text, 46}}};
  Button RepairCmd{*this, "RepairCmd", {"&Rebuild Ticked Loans", "重算所选贷款(&R)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  struct BrokenLoan {
    std::string LoanID;
    std::string CustID;
    bool closed = false;
  };

  void Verify();
  LedgerReport Check();
  void ShowFaults();
  // The lines of a loan are ticked together.
  void TickLoan(int row);
  void Repair();
  std::vector<BrokenLoan> TickedLoans() const;
  // False when the person takes it back.
  bool ConfirmRepair(std::vector<BrokenLoan>* loans);
  // Rebuilds loan and customer and puts what is still wrong in the place of its lines.
  void RepairLoan(const BrokenLoan& loan);
  void Log(const std::string& text) const;

  std::vector<LedgerFault> faults_;  // a line of the grid each, loan after loan
};

}  // namespace kaunter
