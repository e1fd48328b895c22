// kaunter-office backup and backups: docs/backup.md.
#pragma once

namespace kaunter {

struct OfficeRun;

int RunBackupCommand(OfficeRun& run);
int RunBackupsCommand(OfficeRun& run);

}  // namespace kaunter
