// kaunter-office move: the office into another database, or back.
#pragma once

namespace kaunter {

struct OfficeRun;

int RunMoveCommand(OfficeRun& run);

}  // namespace kaunter
