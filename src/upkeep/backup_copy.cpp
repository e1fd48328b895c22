#include "upkeep/backup_copy.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <thread>

#include "core/values.h"
#include "loans/money_gate.h"
#include "loans/rebuild.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

const Caption kVerifying{"Verifying the ledger of the backup", "正在核对备份的账目"};

// A desktop on a busy PC may take so long from the save of a payment to its replay.
constexpr std::chrono::seconds kLongestSave(5);
constexpr std::chrono::milliseconds kBetweenLooks(50);

bool Contains(const std::vector<LedgerFault>& faults, const LedgerFault& fault) {
  return std::find(faults.begin(), faults.end(), fault) != faults.end();
}

}  // namespace

EmbeddedGoOn Told(const UpkeepGoOn& go_on, const Caption& what) {
  return [&go_on, what](std::int64_t done, std::int64_t total) {
    return go_on({what, done, total});
  };
}

OfficeCheck CheckCopy(Connection& copy, const UpkeepGoOn& go_on) {
  const Transaction as_one(copy);
  return CheckOffice(copy, [&](const std::string&, const LedgerProgress& progress) {
    return go_on({kVerifying, progress.done, progress.total});
  });
}

void KeepMoment(Connection& office, const BackupRecord& record) {
  const std::string moment = QuoteStr(record.made.ToCanonical());
  if (office.Execute(
          fmt::format("UPDATE Systemast SET [Value]={} WHERE Param='LastBackup'", moment)) == 0) {
    office.Execute(
        fmt::format("INSERT INTO Systemast (Param,[Value]) VALUES ('LastBackup',{})", moment));
  }
}

bool NoteCheck(Connection& office, const OfficeCheck& check, BackupRecord* record,
               const UpkeepGoOn& go_on) {
  using Time = std::chrono::steady_clock;
  const auto until = Time::now() + kLongestSave;
  const auto look = [&office](const LedgerFault& fault) {
    return fault.LoanID.empty() ? CheckCustomer(office, fault.CustID)
                                : CheckLoan(office, fault.LoanID);
  };
  record->loans = check.loans;
  record->receipts = check.receipts;
  record->ledger = true;
  std::set<std::string> replay;
  std::vector<LedgerFault> now;
  const LedgerFault* before = nullptr;
  for (const LedgerFault& fault : check.faults) {
    if (before == nullptr || !before->SameBook(fault)) {
      now = look(fault);
      while (Contains(now, fault) && Time::now() < until) {
        if (!go_on({kVerifying})) return false;
        std::this_thread::sleep_for(kBetweenLooks);
        now = look(fault);
      }
    }
    before = &fault;
    if (Contains(now, fault)) {
      ++record->faults;
    } else if (!fault.LoanID.empty()) {
      replay.insert(fault.LoanID);
    } else {  // his loan was replayed, and his sums were not yet
      replay.insert(ScalarQuery(
          office, "SELECT MIN(LoanID) FROM LoanMast WHERE CustID=" + QuoteStr(fault.CustID)));
    }
  }
  record->replay.assign(replay.begin(), replay.end());
  return true;
}

void Replay(Connection& copy, const std::vector<std::string>& loans) {
  std::set<std::string> customers;
  for (const std::string& loan : loans) {
    Transaction transaction(copy);
    LockLoan(copy, loan);
    const Rebuilt rebuilt = RebuildLoan(copy, loan);
    if (rebuilt.error) std::rethrow_exception(rebuilt.error);
    transaction.Commit();
    customers.insert(
        ScalarQuery(copy, "SELECT CustID FROM LoanMast WHERE LoanID=" + QuoteStr(loan)));
  }
  for (const std::string& customer : customers) {
    Transaction transaction(copy);
    SumLoansOfCustomer(copy, customer);
    transaction.Commit();
  }
}

}  // namespace kaunter
