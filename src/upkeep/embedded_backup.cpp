#include <fmt/format.h>
#include <fmt/ranges.h>

#include <stdexcept>

#include "platform/file_digest.h"
#include "platform/private_file.h"
#include "platform/sql/data_source.h"
#include "platform/sql/embedded_copy.h"
#include "upkeep/backup_copy.h"
#include "upkeep/office_place.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

const Caption kCopying{"Copying the database", "正在复制数据库"};
const Caption kCopyingLogs{"Copying the audit trail", "正在复制审计记录"};
const Caption kChecking{"Checking the copy", "正在检查副本"};

// Sound, and with all its rows. False when it was stopped.
bool CheckFile(const EmbeddedSnapshot& of, const std::string& copy, const UpkeepGoOn& go_on) {
  bool stopped = false;
  const auto watch = [&](std::int64_t done, std::int64_t total) {
    stopped = !go_on({kChecking, done, total});
    return !stopped;
  };
  if (!watch(0, 0)) return false;
  std::vector<std::string> faults;
  try {
    faults = FaultsOfEmbedded(copy, watch);
  } catch (const SqlError&) {
    if (stopped) return false;
    throw;
  }
  if (!faults.empty()) {
    throw std::runtime_error(
        fmt::format("The copy is not sound and was thrown away: {}. Open Verify Ledger; if the "
                    "office's own file is damaged, go back to the last backup",
                    fmt::join(faults, "; ")));
  }
  if (of.Rows() != EmbeddedSnapshot(copy).Rows()) {
    throw std::runtime_error("The copy has not the rows of the office and was thrown away");
  }
  return true;
}

}  // namespace

bool CopyEmbeddedOffice(Session& session, const fs::path& folder, BackupRecord* record,
                        const UpkeepGoOn& go_on) {
  const std::string office = *EmbeddedOffice(session);
  const std::string trail = *EmbeddedTrail(session);
  record->main.name = "office.db";
  const std::string copy = (folder / record->main.name).string();

  const EmbeddedSnapshot snapshot(office);
  std::optional<EmbeddedSnapshot> logs;
  if (fs::exists(trail)) logs.emplace(trail);
  if (!snapshot.CopyTo(copy, Told(go_on, kCopying))) return false;
  if (logs) {
    record->logs.name = "office-Logs.db";
    const std::string copied = (folder / record->logs.name).string();
    if (!logs->CopyTo(copied, Told(go_on, kCopyingLogs))) return false;
    if (!CheckFile(*logs, copied, go_on)) return false;
    record->logs.digest = DigestOfFile(copied);
  }
  if (!CheckFile(snapshot, copy, go_on)) return false;
  {
    const auto opened = OpenSqlite("Backup", copy, /*create=*/false, session.clock);
    const OfficeCheck check = CheckCopy(*opened, go_on);
    if (!check.complete) return false;
    if (!NoteCheck(session.Main(), check, record, go_on)) return false;
    Replay(*opened, record->replay);
    record->replay.clear();
  }
  SyncFile(copy);
  record->main.digest = DigestOfFile(copy);
  return true;
}

}  // namespace kaunter
