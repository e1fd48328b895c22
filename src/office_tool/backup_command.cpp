#include "office_tool/backup_command.h"

#include <fmt/format.h>

#include "core/values.h"
#include "office_tool/command.h"
#include "screen/caption_error.h"
#include "upkeep/backup.h"

namespace kaunter {
namespace {

std::string FolderOf(const OfficeRun& run) {
  if (const std::string named = run.Value("--to"); !named.empty()) return named;
  if (!run.local.BackupFolder.empty()) return run.local.BackupFolder;
  return UsualBackupFolder(run.session);
}

std::string Shown(const DateTime& moment) { return Format(moment, "dd-MM-yyyy hh:nn:ss"); }

}  // namespace

int RunBackupCommand(OfficeRun& run) {
  const std::string keep = run.Value("--keep");
  const Keeping keeping = keep.empty() ? Keeping() : Keeping::Parse(keep);
  OpenReachedOffice(run.session, run.reach);
  std::string said;
  const BackupResult result =
      TakeBackup(run.session, FolderOf(run), keeping, [&](const UpkeepStep& step) {
        if (step.what.english != said) OfficeRun::Say(said = step.what.english);
        return true;
      });
  for (const Caption& warning : result.warnings) run.Report("Warning: " + warning.english);
  for (const std::string& folder : result.removed) run.Report("Removed " + folder);
  run.Report(fmt::format("Backed up into {}: {} loans, {} receipts", result.record->folder,
                         result.record->loans, result.record->receipts));
  return exit_status::kDone;
}

int RunBackupsCommand(OfficeRun& run) {
  for (const BackupRecord& record : BackupsIn(FolderOf(run))) {
    OfficeRun::Say(fmt::format("{}  {}  {} loans, {} receipts  {}", Shown(record.made),
                               record.office, record.loans, record.receipts, record.folder));
  }
  return exit_status::kDone;
}

}  // namespace kaunter
