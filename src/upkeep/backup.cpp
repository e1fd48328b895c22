#include "upkeep/backup.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "core/audit.h"
#include "core/moved_office.h"
#include "core/values.h"
#include "platform/disk.h"
#include "platform/file_lock.h"
#include "platform/host.h"
#include "platform/installation.h"
#include "platform/private_file.h"
#include "platform/sql/engine_version.h"
#include "screen/caption_error.h"
#include "upkeep/backup_copy.h"
#include "upkeep/office_place.h"
#include "upkeep/postgresql_place.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLock = ".kaunter-backup.lock";
constexpr const char* kUnfinished = ".unfinished-";

void MakeFolder(const fs::path& folder) {
  std::error_code none;
  const fs::path parent = fs::absolute(folder).parent_path();
  if (parent == UserDataFolder()) MakeUserDataFolder();
  if (!fs::is_directory(parent, none)) {
    throw CaptionError(
        {fmt::format("There is no folder {}: is the disk of the backups there ?", parent.string()),
         fmt::format("找不到文件夹 {}：备份用的磁盘接上了吗？", parent.string())});
  }
  if (!fs::is_directory(folder, none)) {
    fs::rename(MakePrivateFolder(folder.string() + ".new-"), folder);
  }
}

// What runs left behind that were killed. Only with the lock: nobody else is at work here then.
void RemoveUnfinished(const fs::path& folder) {
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(folder, ignored)) {
    if (entry.path().filename().string().starts_with(kUnfinished)) {
      fs::remove_all(entry.path(), ignored);
    }
  }
}

void CheckRoom(const std::string& file, const fs::path& folder) {
  std::error_code unknown;
  std::uintmax_t needed = 0;
  for (const char* ending : {"", "-wal"}) {
    const std::uintmax_t size = fs::file_size(file + ending, unknown);
    if (!unknown) needed += size;
  }
  const fs::space_info disk = fs::space(folder, unknown);
  if (unknown || disk.available > needed) return;
  constexpr std::uintmax_t kMegabyte = 1 << 20;
  throw CaptionError(
      {fmt::format("The disk of {} has no room: {} MB are free, and {} MB are needed. Nothing was "
                   "backed up; make room, or name another folder.",
                   folder.string(), disk.available / kMegabyte, needed / kMegabyte + 1),
       fmt::format("{} 所在磁盘空间不足：剩余 {} MB，需要 {} MB。没有备份；请腾出空间或选择其他文件"
                   "夹。",
                   folder.string(), disk.available / kMegabyte, needed / kMegabyte + 1)});
}

// Those of other offices in the same folder are not counted.
std::vector<std::string> RemoveOutlived(const BackupRecord& newest, const fs::path& folder,
                                        const Keeping& keeping, std::vector<Caption>* warnings) {
  std::vector<BackupRecord> own = BackupsIn(folder.string());
  std::erase_if(own, [&](const BackupRecord& record) { return record.source != newest.source; });
  std::vector<DateTime> made;
  std::vector<std::string> removed;
  bool later = false;
  for (const BackupRecord& record : own) {
    made.push_back(record.made);
    later = later || record.made > newest.made;
  }
  for (const std::size_t i : Outlived(made, newest.made, keeping)) {
    if (own[i].folder == newest.folder) continue;
    // By another name first: one that is half gone must not look like a backup.
    const fs::path going = folder / (kUnfinished + fs::path(own[i].folder).filename().string());
    std::error_code error;
    fs::rename(own[i].folder, going, error);
    if (!error) fs::remove_all(going, error);
    if (!error) removed.push_back(own[i].folder);
  }
  if (later) {
    warnings->push_back(
        {"There are backups from after today: was the clock wrong ? They are left alone.",
         "有日期在今天之后的备份：时钟曾经不准吗？这些备份不予处理。"});
  }
  return removed;
}

}  // namespace

BackupResult TakeBackup(Session& session, const std::string& folder,
                        const std::optional<Keeping>& keeping, const UpkeepGoOn& go_on) {
  // A desk may have been open all the time.
  if (const auto moved = ReadMoveMark(session.Main())) throw CaptionError(MovedWords(*moved));
  const auto file = EmbeddedOffice(session);
  const bool postgresql = !file && session.Main().EngineName() == kPostgresqlEngine;
  if (!file && !postgresql) {
    throw CaptionError({"This office lies on a server: its administrator backs it up there.",
                        "此公司的资料在服务器上：由服务器管理员备份。"});
  }
  const fs::path place = fs::absolute(folder).lexically_normal();
  MakeFolder(place);
  const FileLock lock(place / kLock);
  if (!lock.held()) {
    throw CaptionError({fmt::format("Another backup into {} is under way.", place.string()),
                        fmt::format("另一个备份正在写入 {}。", place.string())});
  }
  RemoveUnfinished(place);
  if (file) CheckRoom(*file, place);

  BackupResult result;
  BackupRecord record;
  record.made = ServerTime(session.Main());
  record.program = fmt::format("{}.{}.{}", KAUNTER_VERSION_MAJOR, KAUNTER_VERSION_MINOR,
                               KAUNTER_VERSION_REVISION);
  record.engine = session.Main().EngineName();
  record.source = OfficeSource(session);
  record.machine = ThisHostName();
  record.office = ScalarQuery(session.Main(), "SELECT CompanyName FROM CompanyProfile");
  const std::string name = BackupName(OfficeShortName(session), record.made);
  const fs::path whole = place / name;
  if (fs::exists(whole)) {
    throw CaptionError({fmt::format("{} is there already: wait a second.", whole.string()),
                        fmt::format("{} 已存在：请稍等。", whole.string())});
  }
  try {
    const fs::path unfinished = MakePrivateFolder((place / kUnfinished).string());
    const bool whole_copy =
        file ? CopyEmbeddedOffice(session, unfinished, &record, go_on)
             : DumpPostgresqlOffice(session, unfinished, &record, &result.warnings, go_on);
    if (!whole_copy) {
      RemoveUnfinished(place);
      return result;
    }
    WriteBackupRecord(record, unfinished);
    fs::rename(unfinished, whole);
  } catch (...) {
    RemoveUnfinished(place);
    throw;
  }
  SyncFolder(place);
  record.folder = whole.string();
  result.record = record;

  if (file ? OnOneDisk(place, *file) : PostgresqlPlace(session, false).OnThisMachine()) {
    result.warnings.push_back(
        {fmt::format("{} lies on the {} of the office itself: if it breaks, both are lost.",
                     place.string(), file ? "disk" : "machine"),
         fmt::format("{} 与公司资料在同一{}上：损坏时两者都会丢失。", place.string(),
                     file ? "磁盘" : "机器")});
  }
  if (record.faults > 0) {
    result.warnings.push_back(
        {fmt::format("{} figures of the ledger do not hold, in the office as in the backup: open "
                     "Verify Ledger.",
                     record.faults),
         fmt::format("账目中有 {} 个数字不符（公司与备份相同）：请打开核对账目。", record.faults)});
  }
  if (keeping) result.removed = RemoveOutlived(record, place, *keeping, &result.warnings);
  try {
    KeepMoment(session.Main(), record);
  } catch (const SqlError& failure) {
    result.warnings.push_back(
        {fmt::format("The backup is whole, but its moment could not be noted in the office, whose "
                     "home page still tells of the one before: {}",
                     failure.what()),
         fmt::format("备份完好，但无法在公司资料中记下时间，主页仍显示上一次备份：{}",
                     failure.what())});
  }
  WriteAudit(session, "Create", "Backup", "", name, {});
  return result;
}

}  // namespace kaunter
