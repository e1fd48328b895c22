#include <fmt/format.h>

#include "core/settings.h"
#include "core/values.h"
#include "platform/file_digest.h"
#include "platform/private_file.h"
#include "upkeep/backup_copy.h"
#include "upkeep/postgresql_place.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

const Caption kDumping{"Dumping the database", "正在导出数据库"};
const Caption kDumpingLogs{"Dumping the audit trail", "正在导出审计记录"};
const Caption kRestoring{"Restoring the dump into a database of its own, to check it",
                         "正在还原导出文件以作检查"};

bool Dump(const PostgresqlPlace& place, const fs::path& file, const Caption& what,
          const UpkeepGoOn& go_on) {
  MakePrivateFile(file);
  if (!place.Run("pg_dump",
                 {"--format=custom", "--file=" + file.string(),
                  "--dbname=" + place.ToolDatabase(place.database())},
                 [&] { return go_on({what}); })) {
    return false;
  }
  SyncFile(file);
  return true;
}

}  // namespace

bool DumpPostgresqlOffice(Session& session, const fs::path& folder, BackupRecord* record,
                          std::vector<Caption>* warnings, const UpkeepGoOn& go_on) {
  const PostgresqlPlace office(session, /*logs=*/false);
  record->main.name = "office.dump";
  const std::string dump = (folder / record->main.name).string();
  if (!Dump(office, dump, kDumping, go_on)) return false;
  record->main.digest = DigestOfFile(dump);
  if (ReadSetting(session.Main(), "TransLogs") == "1") {
    const PostgresqlPlace trail(session, /*logs=*/true);
    record->logs.name = "office-Logs.dump";
    const fs::path logs = folder / record->logs.name;
    if (!Dump(trail, logs, kDumpingLogs, go_on)) return false;
    trail.Run("pg_restore", {"--list", logs.string()}, [] { return true; });
    record->logs.digest = DigestOfFile(logs.string());
  }

  const PostgresqlScratch scratch(office, office.database() + "-backup-check");
  if (!scratch.made()) {
    office.Run("pg_restore", {"--list", dump}, [] { return true; });
    record->loans = CLng(ScalarQuery(session.Main(), "SELECT COUNT(*) FROM LoanMast"));
    record->receipts = CLng(ScalarQuery(session.Main(), "SELECT COUNT(*) FROM PaymentMast"));
    warnings->push_back(
        {fmt::format("The dump can be read, but was not restored: its rows and its ledger were not "
                     "checked. The account needs the right to make a database on the server (ALTER "
                     "ROLE ... CREATEDB). {}",
                     scratch.why()),
         fmt::format("导出文件可以读取，但没有试行还原：行数和账目未核对。此账户需要在服务器上建立"
                     "数据库的权限（ALTER ROLE ... CREATEDB）。{}",
                     scratch.why())});
    return true;
  }
  if (!scratch.Fill(dump, [&] { return go_on({kRestoring}); })) return false;
  const auto copy = scratch.Open("Backup");
  const OfficeCheck check = CheckCopy(*copy, go_on);
  if (!check.complete) return false;
  return NoteCheck(session.Main(), check, record, go_on);
}

}  // namespace kaunter
