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
           {{"Customer", "顾客"}, Kind::text, 10},
           {{"Status", "状态"}, Kind::text, 8},
           {{"Figure", "项目"}, Kind::text, 30},
           {{"Stored", "现存"}, Kind::money, 14},
           {{"Should Be", "应为"}, Kind::money, 14},
           {{"Mended By", "更正方法"}, Kind::text, 46}}};
  Button RepairCmd{*this, "RepairCmd", {"&Rebuild Ticked Loans", "重算所选贷款(&R)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  void Verify();
  LedgerReport Check();
  void ShowFaults();
  // The lines of a loan, or of a customer, are ticked together.
  void TickBook(int row);
  void Repair();
  // The first line of each.
  std::vector<LedgerFault> TickedBooks() const;
  // False when the person takes it back.
  bool ConfirmRepair(std::vector<LedgerFault>* books);
  // Rebuilds loan and customer, the schedule before them where it is at fault and its terms are
  // open.
  bool RepairBook(const LedgerFault& book);
  void RegenerateOpen(const std::string& loan_id);
  // Puts what is wrong now in the place of its lines.
  void LookAgain(const LedgerFault& book);
  void Log(const std::string& text) const;

  std::vector<LedgerFault> faults_;  // a line of the grid each, loan after loan
};

}  // namespace kaunter
