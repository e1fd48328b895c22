#include "office_tool/check_command.h"

#include <fmt/format.h>

#include "office_tool/command.h"
#include "upkeep/office_check.h"

namespace kaunter {

int RunCheckCommand(OfficeRun& run) {
  OpenReachedOffice(run.session, run.reach);
  const OfficeCheck check = CheckOffice(
      run.session.Main(), [](const std::string&, const LedgerProgress&) { return true; });
  for (const LedgerFault& fault : check.faults) {
    run.Report(fmt::format("{}: {} is {}, should be {}",
                           fault.LoanID.empty() ? fault.CustID : fault.LoanID, fault.what.english,
                           fault.stored, fault.should_be));
  }
  run.Report(fmt::format("{} loans and {} receipts checked, {} figures do not hold", check.loans,
                         check.receipts, check.faults.size()));
  return check.faults.empty() ? exit_status::kDone : exit_status::kFailed;
}

}  // namespace kaunter
