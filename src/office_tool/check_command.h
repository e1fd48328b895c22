// kaunter-office check: the ledger of all companies. Ends with exit_status::kFailed where one does
// not hold.
#pragma once

namespace kaunter {

struct OfficeRun;

int RunCheckCommand(OfficeRun& run);

}  // namespace kaunter
