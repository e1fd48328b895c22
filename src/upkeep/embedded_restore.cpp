// The embedded office: its file takes over the backup in a transaction of its own, so that neither
// a log beside it nor a desk that waits for it is ever left with another file.
#include <fmt/format.h>

#include <filesystem>
#include <optional>

#include "core/values.h"
#include "platform/file_lock.h"
#include "platform/sql/data_source.h"
#include "platform/sql/embedded_copy.h"
#include "screen/caption_error.h"
#include "upkeep/backup_copy.h"
#include "upkeep/office_place.h"
#include "upkeep/restore.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr int kInUse = 1222;

void RemoveDatabase(const std::string& file) {
  std::error_code ignored;
  for (const char* ending : {"", "-wal", "-shm", "-journal"}) fs::remove(file + ending, ignored);
}

class EmbeddedRestore final : public OfficeRestore {
 public:
  EmbeddedRestore(Session& session, BackupRecord record)
      : OfficeRestore(session, std::move(record)),
        file_(*EmbeddedOffice(session)),
        trail_(*EmbeddedTrail(session)),
        copy_(file_ + ".restoring"),
        lock_(copy_ + "-lock") {
    view_.office = file_;
    if (!lock_.held()) {
      throw CaptionError(
          {"Another restore of this office is under way.", "此公司的另一个恢复正在进行。"});
    }
    RemoveDatabase(copy_);
  }

  ~EmbeddedRestore() override {
    RemoveDatabase(copy_);
    std::error_code ignored;
    fs::remove(copy_ + "-lock", ignored);
  }

  std::string Run() override {
    const std::string kept = Kept(file_);
    if (view_.there && view_.trouble.empty()) {
      const EmbeddedAlone alone = Alone();
      alone.CopyTo(kept);
      const auto office = OpenSqlite("Office", kept, /*create=*/false, session_.clock);
      const auto earlier = OpenSqlite("Backup", copy_, /*create=*/false, session_.clock);
      if (!IsAsTold(*office, *earlier)) {
        std::error_code ignored;
        fs::remove(kept, ignored);
        RefuseChanged();
      }
      BringTrail();
      alone.Become(copy_);
    } else {
      BringTrail();
      PutInPlace(copy_, file_, kept);
    }
    return fs::exists(kept) || fs::exists(kept + "-wal") ? kept : "";
  }

 private:
  bool Prepare(const UpkeepGoOn& go_on) override {
    // Never opened where it lies: its disk may be one that takes no more writes.
    if (!EmbeddedSnapshot(view_.record.MainPath())
             .CopyTo(copy_, Told(go_on, {"Unpacking the backup", "正在读取备份"}))) {
      return false;
    }
    if (!FaultsOfEmbedded(copy_, Told(go_on, {"Checking the backup", "正在检查备份"})).empty()) {
      throw CaptionError({"The backup is damaged: take another one.", "备份已损坏：请用另一个。"});
    }
    const auto earlier = OpenSqlite("Backup", copy_, /*create=*/false, session_.clock);
    KeepMoment(*earlier, view_.record);
    view_.there = fs::exists(file_);
    if (!view_.there) return true;
    try {
      const auto office = OpenSqlite("Office", file_, /*create=*/false, session_.clock);
      return Compare(*office, *earlier, go_on);
    } catch (const SqlError& error) {
      view_.trouble = error.what();
    }
    return true;
  }

  std::string Kept(const std::string& file) const {
    const std::string name =
        fmt::format("{}.before-{}", file, Format(session_.clock.Now(), "yyyymmdd-hhnnss"));
    std::string free = name;
    for (int i = 2; fs::exists(free) || fs::exists(free + "-wal"); ++i) {
      free = fmt::format("{}-{}", name, i);
    }
    return free;
  }

  EmbeddedAlone Alone() const {
    try {
      return EmbeddedAlone(file_);
    } catch (const SqlError& error) {
      if (error.number() != kInUse) throw;
      RefuseOpenDesk();
    }
  }

  // Only a missing or damaged trail comes out of the backup.
  void BringTrail() const {
    const bool exists = fs::exists(trail_);
    std::unique_ptr<Connection> there;
    try {
      if (exists) there = OpenSqlite("LogsConn", trail_, /*create=*/false, session_.clock);
    } catch (const SqlError&) {  // damaged
    }
    if (there) return KeepTrail(std::move(there));
    if (view_.record.logs.name.empty()) return;
    if (exists) {
      PutInPlace(view_.record.LogsPath(), trail_, Kept(trail_));
    } else {
      CopySqlite(view_.record.LogsPath(), trail_);
    }
  }

  std::string file_;
  std::string trail_;
  std::string copy_;
  FileLock lock_;
};

}  // namespace

std::unique_ptr<OfficeRestore> EmbeddedRestoreOf(Session& session, BackupRecord record) {
  return std::make_unique<EmbeddedRestore>(session, std::move(record));
}

}  // namespace kaunter
