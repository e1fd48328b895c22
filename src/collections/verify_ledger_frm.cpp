#include "collections/verify_ledger_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "core/company_access.h"
#include "core/log.h"
#include "core/values.h"
#include "loans/money_gate.h"
#include "loans/rebuild_and_tell.h"
#include "loans/schedule_store.h"
#include "screen/hourglass.h"
#include "screen/stop_bar.h"

namespace kaunter {
namespace {

constexpr int kLevel = 4;

// The first fault of each loan and each customer.
std::vector<LedgerFault> Books(const std::vector<LedgerFault>& faults) {
  std::vector<LedgerFault> books;
  for (const LedgerFault& fault : faults) {
    if (books.empty() || !books.back().SameBook(fault)) books.push_back(fault);
  }
  return books;
}
bool IsLoan(const LedgerFault& book) { return !book.LoanID.empty(); }

std::string Loans(std::size_t count) {
  return fmt::format("{} loan{}", count, count == 1 ? "" : "s");
}
std::string Customers(std::size_t count) {
  return fmt::format("{} customer{}", count, count == 1 ? "" : "s");
}
// "2 loans", "1 customer", "2 loans and 1 customer"
Caption Counted(const std::vector<LedgerFault>& books) {
  const auto loans = static_cast<std::size_t>(std::count_if(books.begin(), books.end(), IsLoan));
  const std::size_t customers = books.size() - loans;
  if (customers == 0) return {Loans(loans), fmt::format("{} 笔贷款", loans)};
  if (loans == 0) return {Customers(customers), fmt::format("{} 位顾客", customers)};
  return {Loans(loans) + " and " + Customers(customers),
          fmt::format("{} 笔贷款和 {} 位顾客", loans, customers)};
}
const char* DoNotHold(std::size_t count) { return count == 1 ? "does not hold" : "do not hold"; }

Caption Told(const LedgerReport& report) {
  const std::vector<LedgerFault> books = Books(report.faults);
  const auto broken = static_cast<std::size_t>(std::count_if(books.begin(), books.end(), IsLoan));
  const std::size_t customers = books.size() - broken;
  const auto loans = static_cast<std::size_t>(report.loans);
  Caption text{fmt::format("{} of {} {}", broken, Loans(loans), DoNotHold(broken)),
               fmt::format("已核对 {} 笔贷款，{} 笔不符", loans, broken)};
  if (broken == 0) {
    text = {fmt::format("{} verified", Loans(loans)), fmt::format("已核对 {} 笔贷款", loans)};
    if (customers == 0) {
      text.english += ", all hold";
      text.chinese += "，全部相符";
    }
  }
  if (customers > 0) {
    text.english += fmt::format("; the sums of {} {}", Customers(customers), DoNotHold(2));
    text.chinese += fmt::format("；{} 位顾客的总额不符", customers);
  }
  if (!report.complete) {
    text.english = "Stopped: " + text.english;
    text.chinese = "已停止：" + text.chinese;
  }
  return text;
}

Caption ToldOfRepair(const Caption& rebuilt, std::size_t left) {
  if (left == 0) {
    return {fmt::format("{} rebuilt, all hold", rebuilt.english),
            fmt::format("已重算 {}，全部相符", rebuilt.chinese)};
  }
  return {fmt::format("{} rebuilt, {} of the list {}", rebuilt.english, left, DoNotHold(left)),
          fmt::format("已重算 {}，列表中 {} 笔不符", rebuilt.chinese, left)};
}

}  // namespace

VerifyLedgerFrm::VerifyLedgerFrm(Session& session, Desk& desk)
    : SessionScreen("VerifyLedgerFrm", {"Verify Ledger", "核对账目"}, session, desk) {
  DG.SetHasChecks(true);
  DG.onTick = [this](int row) { TickBook(row); };
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
  ChooseHome(session(), CompCode);
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
    TickBook(row);
  }
  ResultLBL.SetText(session().In(told));
  Tell(MessageKind::information, told);
}

LedgerReport VerifyLedgerFrm::Check() {
  StopBar bar(*this);
  return CheckCompany(main(), CompCode.text(), [&](const LedgerProgress& progress) {
    return bar.GoOn(progress.done, progress.total,
                    session().In({fmt::format("{} of {} loans", progress.done, progress.total),
                                  fmt::format("{} / {} 笔贷款", progress.done, progress.total)}));
  });
}

void VerifyLedgerFrm::ShowFaults() {
  std::vector<std::vector<std::string>> rows;
  for (const LedgerFault& fault : faults_) {
    const bool rebuild = fault.mend.english.empty();
    rows.push_back({fault.LoanID, fault.CustID,
                    fault.closed ? session().In({"CLOSED", "已结束"}) : "",
                    session().In(fault.what), fault.stored, fault.should_be,
                    session().In(rebuild ? Caption{"Rebuild", "重算"} : fault.mend)});
  }
  DG.SetRows(std::move(rows));
  RepairCmd.SetEnabled(!faults_.empty());
}

void VerifyLedgerFrm::TickBook(int row) {
  const LedgerFault& book = faults_[static_cast<std::size_t>(row)];
  for (int other = 0; other < DG.RowCount(); ++other) {
    if (faults_[static_cast<std::size_t>(other)].SameBook(book)) {
      DG.SetTicked(other, DG.Ticked(row));
    }
  }
}

// --- repair

std::vector<LedgerFault> VerifyLedgerFrm::TickedBooks() const {
  std::vector<LedgerFault> ticked;
  for (int row = 0; row < DG.RowCount(); ++row) {
    if (DG.Ticked(row)) ticked.push_back(faults_[static_cast<std::size_t>(row)]);
  }
  return Books(ticked);
}

bool VerifyLedgerFrm::ConfirmRepair(std::vector<LedgerFault>* books) {
  if (books->empty()) {
    Refuse({"Tick the loans to be rebuilt first", "请先勾选要重算的贷款"});
    return false;
  }
  const Caption counted = Counted(*books);
  if (!Confirm({fmt::format("Confirm to rebuild {} from the payments ?", counted.english),
                fmt::format("确定按还款重算 {}？", counted.chinese)})) {
    return false;
  }
  const auto is_closed = [](const LedgerFault& book) { return book.closed; };
  const auto closed = std::count_if(books->begin(), books->end(), is_closed);
  if (closed > 0 &&
      !Confirm({fmt::format("{} of them closed: a closed loan stays closed, and the balance of "
                            "the rebuild goes to its CloseBal. Rebuild closed loans too ?",
                            closed),
                fmt::format("其中 {} 笔已结束。重算后仍为已结束，结余记入 CloseBal。也重算吗？",
                            closed)})) {
    std::erase_if(*books, is_closed);
  }
  return !books->empty();
}

void VerifyLedgerFrm::Repair() {
  std::vector<LedgerFault> books = TickedBooks();
  if (!ConfirmRepair(&books)) return;
  {
    const Hourglass hourglass(desk());
    std::erase_if(books, [this](const LedgerFault& book) { return !RepairBook(book); });
    // A loan's rebuild has mended its customer's sums, or moved them.
    for (const LedgerFault& book : Books(faults_)) {
      if (!IsLoan(book)) LookAgain(book);
    }
  }
  ShowFaults();
  const Caption told = ToldOfRepair(Counted(books), Books(faults_).size());
  ResultLBL.SetText(session().In(told));
  Tell(MessageKind::information, told);
}

// False: told, and still on the list.
bool VerifyLedgerFrm::RepairBook(const LedgerFault& book) {
  bool rebuilt = false;
  if (!IsLoan(book)) {
    rebuilt = RebuildCustomerAndTell(session(), desk(), book.CustID);
    if (rebuilt) Log(fmt::format("Verify Ledger - Customer {} rebuilt", book.CustID));
  } else {
    if (book.of_schedule) RegenerateOpen(book.LoanID);
    // A replay over no rows would leave the loan without a balance, and nobody would see it again.
    if (CheckRows(main(), book.LoanID)) return false;
    rebuilt = RebuildAndTell(session(), desk(), book.LoanID, book.CustID);
    if (rebuilt) Log(fmt::format("Verify Ledger - Loan {} rebuilt", book.LoanID));
  }
  LookAgain(book);
  return rebuilt;
}

void VerifyLedgerFrm::RegenerateOpen(const std::string& loan_id) {
  Attempt(
      fmt::format("Verify Ledger - Loan ID {}", loan_id),
      {fmt::format("The schedule of {} cannot be made from its terms: open the loan and save it "
                   "again",
                   loan_id),
       fmt::format("贷款 {} 的条款无法生成还款表：请打开该贷款并重新储存", loan_id)},
      [&] { RegenerateSchedule(main(), loan_id); });
}

void VerifyLedgerFrm::LookAgain(const LedgerFault& book) {
  std::vector<LedgerFault> left =
      IsLoan(book) ? CheckLoan(main(), book.LoanID) : CheckCustomer(main(), book.CustID);
  const auto of_book = [&book](const LedgerFault& fault) { return fault.SameBook(book); };
  const auto first = std::find_if(faults_.begin(), faults_.end(), of_book);
  const auto end = std::find_if_not(first, faults_.end(), of_book);
  const auto place = faults_.erase(first, end);
  faults_.insert(place, std::make_move_iterator(left.begin()), std::make_move_iterator(left.end()));
}

void VerifyLedgerFrm::Log(const std::string& text) const {
  WriteLog(session(), LogLine(session(), text));
}

}  // namespace kaunter
