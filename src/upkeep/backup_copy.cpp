#include "upkeep/backup_copy.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "core/values.h"
#include "loans/money_gate.h"
#include "loans/rebuild.h"
#include "platform/sql/transaction.h"

namespace kaunter {

EmbeddedGoOn Told(const UpkeepGoOn& go_on, const Caption& what) {
  return [&go_on, what](std::int64_t done, std::int64_t total) {
    return go_on({what, done, total});
  };
}

OfficeCheck CheckCopy(Connection& copy, const UpkeepGoOn& go_on) {
  const Transaction as_one(copy);
  return CheckOffice(copy, [&](const std::string&, const LedgerProgress& progress) {
    return go_on({{"Verifying the ledger of the backup", "正在核对备份的账目"},
                  progress.done,
                  progress.total});
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

void NoteCheck(Connection& office, const OfficeCheck& check, BackupRecord* record) {
  record->loans = check.loans;
  record->receipts = check.receipts;
  record->ledger = true;
  std::set<std::string> replay;
  std::vector<LedgerFault> now;
  const LedgerFault* before = nullptr;
  for (const LedgerFault& fault : check.faults) {
    if (before == nullptr || !before->SameBook(fault)) {
      now = fault.LoanID.empty() ? CheckCustomer(office, fault.CustID)
                                 : CheckLoan(office, fault.LoanID);
    }
    before = &fault;
    if (std::find(now.begin(), now.end(), fault) != now.end()) {
      ++record->faults;
    } else if (!fault.LoanID.empty()) {
      replay.insert(fault.LoanID);
    } else {  // his loan was replayed, and his sums were not yet
      replay.insert(ScalarQuery(
          office, "SELECT MIN(LoanID) FROM LoanMast WHERE CustID=" + QuoteStr(fault.CustID)));
    }
  }
  record->replay.assign(replay.begin(), replay.end());
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
