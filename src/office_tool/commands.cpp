// The table of commands.
#include "office_tool/about_command.h"
#include "office_tool/backup_command.h"
#include "office_tool/check_command.h"
#include "office_tool/command.h"
#include "office_tool/move_command.h"

namespace kaunter {

const std::vector<OfficeCommand>& OfficeCommands() {
  static const std::vector<OfficeCommand> commands = {
      {"about",
       "",
       "prints what support asks first, as Help, About This Office does",
       {},
       {},
       0,
       RunAboutCommand},
      {"backup",
       "[--to FOLDER] [--keep DAYS,WEEKS,MONTHS]",
       "copies the office while desks work, and checks the copy",
       {"--to", "--keep"},
       {},
       0,
       RunBackupCommand},
      {"backups",
       "[--to FOLDER]",
       "lists the backups of a folder",
       {"--to"},
       {},
       0,
       RunBackupsCommand},
      {"restore",
       "[--to FOLDER] [--lose NUMBER] [--another-office] [--moved-office] [BACKUP]",
       "takes the office back to a backup, the newest when none is named",
       {"--to", "--lose"},
       {"--another-office", "--moved-office"},
       1,
       RunRestoreCommand},
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
