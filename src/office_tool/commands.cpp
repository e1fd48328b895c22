// The table of commands.
#include "office_tool/check_command.h"
#include "office_tool/command.h"
#include "office_tool/move_command.h"

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
      {"move",
       "--to SOURCE [--to-database NAME] [--undo] [--yes]",
       "moves the office to another data source of the settings, or back",
       {"--to", "--to-database"},
       {"--undo", "--yes"},
       0,
       RunMoveCommand},
  };
  return commands;
}

}  // namespace kaunter
