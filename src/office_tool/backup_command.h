// kaunter-office backup, backups and restore: docs/backup.md.
#pragma once

namespace kaunter {

struct OfficeRun;

int RunBackupCommand(OfficeRun& run);
int RunBackupsCommand(OfficeRun& run);
int RunRestoreCommand(OfficeRun& run);

}  // namespace kaunter
