// The table of commands.
#include "office_tool/check_command.h"
#include "office_tool/command.h"

namespace kaunter {

const std::vector<OfficeCommand>& OfficeCommands() {
  static const std::vector<OfficeCommand> commands = {
      {"check",
       "",
       "checks the ledger of all companies, as Verify Ledger does",
       {},
       {},
       0,
       RunCheckCommand},
  };
  return commands;
}

}  // namespace kaunter
