#include "collections/verify_ledger_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "core/log.h"
#include "core/values.h"
#include "loans/rebuild_and_tell.h"
#include "screen/cancel_offer.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

constexpr int kLevel = 4;

std::size_t CountLoans(const std::vector<LedgerFault>& faults) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < faults.size(); ++i) {
    if (i == 0 || faults[i].LoanID != faults[i - 1].LoanID) ++count;
  }
  return count;
}

std::string Loans(std::size_t count) {
  return fmt::format("{} loan{}", count, count == 1 ? "" : "s");
}
const char* DoNotHold(std::size_t count) { return count == 1 ? "does not hold" : "do not hold"; }

Caption Told(const LedgerReport& report) {
  const std::size_t broken = CountLoans(report.faults);
  const auto loans = static_cast<std::size_t>(report.loans);
  Caption text{fmt::format("{} of {} {}", broken, Loans(loans), DoNotHold(broken)),
               fmt::format("已核对 {} 笔贷款，{} 笔不符", loans, broken)};
  if (broken == 0) {
    text = {fmt::format("{} verified, all hold", Loans(loans)),
            fmt::format("已核对 {} 笔贷款，全部相符", loans)};
  }
  if (!report.complete) {
    text.english = "Stopped: " + text.english;
    text.chinese = "已停止：" + text.chinese;
  }
  return text;
}

Caption ToldOfRepair(std::size_t rebuilt, std::size_t left) {
  if (left == 0) {
    return {fmt::format("{} rebuilt, all hold", Loans(rebuilt)),
            fmt::format("已重算 {} 笔贷款，全部相符", rebuilt)};
  }
  return {fmt::format("{} rebuilt, {} of the list {}", Loans(rebuilt), left, DoNotHold(left)),
          fmt::format("已重算 {} 笔贷款，列表中 {} 笔不符", rebuilt, left)};
}

}  // namespace

VerifyLedgerFrm::VerifyLedgerFrm(Session& session, Desk& desk)
    : SessionScreen("VerifyLedgerFrm", {"Verify Ledger", "核对账目"}, session, desk) {
  DG.SetHasChecks(true);
  DG.onTick = [this](int row) { TickLoan(row); };
  VerifyCmd.onClick = [this] { Verify(); };
  RepairCmd.onClick = [this] { Repair(); };
}

void VerifyLedgerFrm::Load() {
  RepairCmd.SetEnabled(false);
  if (session().CurrentLevel < kLevel) {
    CompCode.SetEnabled(false);
    VerifyCmd.SetEnabled(false);
    Refuse({fmt::format("User {} Level not allow to verify the ledger", session().CurrentUserID),
            fmt::format("用户 {} 的级别不可核对账目", session().CurrentUserID)});
    return;
  }
  FillCompanies(CompCode, session());
  CompCode.SetText(session().CurrentCompCode);
  if (CompCode.empty() && CompCode.items().size() == 1) CompCode.SetIndex(0);
}

// --- verify

void VerifyLedgerFrm::Verify() {
  if (CompCode.empty()) {
    Refuse(CompCode, {"Company Code is required", "请选择公司"});
    return;
  }
  LedgerReport report = Check();
  const Caption told = Told(report);
  Log(fmt::format("Verify Ledger {} - {}", CompCode.text(), told.english));
  faults_ = std::move(report.faults);
  ShowFaults();
  for (int row = 0; row < DG.RowCount(); ++row) {
    const LedgerFault& fault = faults_[static_cast<std::size_t>(row)];
    if (fault.closed || !fault.mend.english.empty()) continue;
    DG.SetTicked(row, true);
    TickLoan(row);
  }
  ResultLBL.SetText(session().In(told));
  Tell(MessageKind::information, told);
}

LedgerReport VerifyLedgerFrm::Check() {
  const auto bar = desk().Progress(session().In(title()));
  CancelOffer* const offer = OfferCancel(*bar, session().In({"Stop", "停止"}));
  return CheckCompany(main(), CompCode.text(), [&](const LedgerProgress& progress) {
    bar->SetRange(std::max(progress.total, 1));
    bar->SetText(session().In({fmt::format("{} of {} loans", progress.done, progress.total),
                               fmt::format("{} / {} 笔贷款", progress.done, progress.total)}));
    bar->SetPosition(progress.done);
    return offer == nullptr || !offer->Cancelled();
  });
}

void VerifyLedgerFrm::ShowFaults() {
  std::vector<std::vector<std::string>> rows;
  for (const LedgerFault& fault : faults_) {
    const bool rebuild = fault.mend.english.empty();
    rows.push_back({fault.LoanID, fault.closed ? session().In({"CLOSED", "已结束"}) : "",
                    session().In(fault.what), fault.stored, fault.should_be,
                    session().In(rebuild ? Caption{"Rebuild", "重算"} : fault.mend)});
  }
  DG.SetRows(std::move(rows));
  RepairCmd.SetEnabled(!faults_.empty());
}

void VerifyLedgerFrm::TickLoan(int row) {
  const std::string loan = faults_[static_cast<std::size_t>(row)].LoanID;
  for (int other = 0; other < DG.RowCount(); ++other) {
    if (faults_[static_cast<std::size_t>(other)].LoanID == loan) {
      DG.SetTicked(other, DG.Ticked(row));
    }
  }
}

// --- repair

std::vector<VerifyLedgerFrm::BrokenLoan> VerifyLedgerFrm::TickedLoans() const {
  std::vector<BrokenLoan> loans;
  for (int row = 0; row < DG.RowCount(); ++row) {
    const LedgerFault& fault = faults_[static_cast<std::size_t>(row)];
    if (!DG.Ticked(row) || (!loans.empty() && loans.back().LoanID == fault.LoanID)) continue;
    loans.push_back({fault.LoanID, fault.CustID, fault.closed});
  }
  return loans;
}

bool VerifyLedgerFrm::ConfirmRepair(std::vector<BrokenLoan>* loans) {
  if (loans->empty()) {
    Refuse({"Tick the loans to be rebuilt first", "请先勾选要重算的贷款"});
    return false;
  }
  if (!Confirm({fmt::format("Confirm to rebuild {} from the payments ?", Loans(loans->size())),
                fmt::format("确定按还款重算 {} 笔贷款？", loans->size())})) {
    return false;
  }
  const auto is_closed = [](const BrokenLoan& loan) { return loan.closed; };
  const auto closed = std::count_if(loans->begin(), loans->end(), is_closed);
  if (closed > 0 &&
      !Confirm({fmt::format("{} of them closed: a closed loan stays closed, and the balance of "
                            "the rebuild goes to its CloseBal. Rebuild closed loans too ?",
                            closed),
                fmt::format("其中 {} 笔已结束。重算后仍为已结束，结余记入 CloseBal。也重算吗？",
                            closed)})) {
    std::erase_if(*loans, is_closed);
  }
  return !loans->empty();
}

void VerifyLedgerFrm::Repair() {
  std::vector<BrokenLoan> loans = TickedLoans();
  if (!ConfirmRepair(&loans)) return;
  {
    const Hourglass hourglass(desk());
    for (const BrokenLoan& loan : loans) RepairLoan(loan);
  }
  ShowFaults();
  const Caption told = ToldOfRepair(loans.size(), CountLoans(faults_));
  ResultLBL.SetText(session().In(told));
  Tell(MessageKind::information, told);
}

void VerifyLedgerFrm::RepairLoan(const BrokenLoan& loan) {
  RebuildAndTell(session(), desk(), loan.LoanID, loan.CustID);
  Log(fmt::format("Verify Ledger - Loan {} rebuilt", loan.LoanID));
  std::vector<LedgerFault> left = CheckLoan(main(), loan.LoanID);
  const auto of_loan = [&loan](const LedgerFault& fault) { return fault.LoanID == loan.LoanID; };
  const auto first = std::find_if(faults_.begin(), faults_.end(), of_loan);
  const auto end = std::find_if_not(first, faults_.end(), of_loan);
  const auto place = faults_.erase(first, end);
  faults_.insert(place, std::make_move_iterator(left.begin()), std::make_move_iterator(left.end()));
}

void VerifyLedgerFrm::Log(const std::string& text) const {
  WriteLog(session(), LogLine(session(), text));
}

}  // namespace kaunter
