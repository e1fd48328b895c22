// An office on PostgreSQL: the dump is restored into a database beside it, and the two change their
// names in one transaction of the server, which refuses while a desk is connected.
#include <fmt/format.h>

#include "core/new_office.h"
#include "core/values.h"
#include "screen/caption_error.h"
#include "upkeep/backup_copy.h"
#include "upkeep/postgresql_place.h"
#include "upkeep/restore.h"

namespace kaunter {
namespace {

const Caption kUnpacking{"Restoring the backup beside the office", "正在旁边还原备份"};

bool All() { return true; }

std::string Quoted(const std::string& name) {
  std::string quoted = "\"";
  for (const char c : name) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + '"';
}

std::string Rename(const std::string& from, const std::string& to) {
  return fmt::format("ALTER DATABASE {} RENAME TO {}", Quoted(from), Quoted(to));
}

class PostgresqlRestore final : public OfficeRestore {
 public:
  PostgresqlRestore(Session& session, BackupRecord record)
      : OfficeRestore(session, std::move(record)),
        place_(session, /*logs=*/false),
        trail_(session, /*logs=*/true),
        copy_(place_, place_.database() + "-restoring") {
    view_.office = place_.database();
    if (!copy_.made()) {
      throw CaptionError(
          {fmt::format(
               "The backup could not be restored beside the office: {}\nMend the cause and do "
               "it again. (Where the account has no right to make a database: ALTER ROLE "
               "... CREATEDB.)",
               copy_.why()),
           fmt::format(
               "无法在公司旁边还原备份：{}\n请排除原因后再做一次。（若此账户没有建立数据库的"
               "权限：ALTER ROLE ... CREATEDB。）",
               copy_.why())});
    }
  }

  std::string Run() override {
    BringTrail();
    const std::string office = place_.database();
    const std::string kept = Kept(office);
    if (exists_) {
      Swap(office, kept, copy_.name());
      if (view_.there) CheckKept(office, kept);
    } else {
      Rename1(copy_.name(), office);
    }
    copy_.Keep();
    try {  // for the server's plans; it counts by itself after a while
      place_.Run("vacuumdb",
                 {"--analyze-only", "--quiet", "--dbname=" + place_.ToolDatabase(office)}, All);
    } catch (const std::runtime_error&) {
    }
    return exists_ ? kept : "";
  }

 private:
  bool Prepare(const UpkeepGoOn& go_on) override {
    if (!copy_.Fill(view_.record.MainPath(), [&] { return go_on({kUnpacking}); })) return false;
    const auto earlier = copy_.Open("Backup");
    Replay(*earlier, view_.record.replay);
    if (!CheckCopy(*earlier, go_on).complete) return false;
    KeepMoment(*earlier, view_.record);
    try {
      const auto office = place_.Open("Office", place_.database());
      exists_ = true;
      view_.there = !IsEmptyDatabase(*office);
      return !view_.there || Compare(*office, *earlier, go_on);
    } catch (const SqlError& error) {
      if (exists_) throw;
    }
    return true;
  }

  std::string Kept(const std::string& database) const {
    return fmt::format("{}-before-{}", database, Format(session_.clock.Now(), "yyyymmdd-hhnnss"));
  }

  void Rename1(const std::string& from, const std::string& to) const {
    place_.Run("psql",
               {"--no-psqlrc", "--quiet", "--set=ON_ERROR_STOP=1",
                "--dbname=" + place_.ToolDatabase("postgres"), "--command=" + Rename(from, to)},
               All);
  }

  // `office` becomes `kept` and `comes` becomes `office`, both or neither.
  void Swap(const std::string& office, const std::string& kept, const std::string& comes) const {
    try {
      place_.Run("psql",
                 {"--no-psqlrc", "--quiet", "--set=ON_ERROR_STOP=1", "--single-transaction",
                  "--dbname=" + place_.ToolDatabase("postgres"),
                  "--command=" + Rename(office, kept), "--command=" + Rename(comes, office)},
                 All);
    } catch (const std::runtime_error& error) {
      if (std::string(error.what()).find("is being accessed") != std::string::npos) {
        RefuseOpenDesk();
      }
      if (Opens(kept)) return;  // the answer alone was lost
      if (Opens(office)) throw;
      throw std::runtime_error(fmt::format(
          "{}\nWhether {} was restored cannot be known before the server answers again. Restore it "
          "once more then: that shows what would be lost. If it was, what was there before is {}.",
          error.what(), office, kept));
    }
  }

  bool Opens(const std::string& database) const {
    try {
      return place_.Open("Look", database) != nullptr;
    } catch (const SqlError&) {
      return false;
    }
  }

  // A desk may have saved between the look and the exchange of names: then all goes back.
  void CheckKept(const std::string& office, const std::string& kept) const {
    try {
      if (IsAsTold(*place_.Open("Office", kept), *place_.Open("Backup", office))) return;
    } catch (const SqlError& failure) {
      throw std::runtime_error(fmt::format(
          "{} is restored. Whether somebody saved in the last moment before could not be looked "
          "at: that would stand in {}, the office as it was. {}",
          office, kept, failure.what()));
    }
    Swap(office, copy_.name(), kept);
    RefuseChanged();
  }

  // An empty database, and none, take the trail of the backup.
  void BringTrail() const {
    std::unique_ptr<Connection> there;
    try {
      there = trail_.Open("LogsConn", trail_.database());
    } catch (const SqlError&) {  // no such database
    }
    if (there && !IsEmptyDatabase(*there)) return KeepTrail(std::move(there));
    if (view_.record.logs.name.empty()) return;
    const bool exists = there != nullptr;
    there.reset();
    PostgresqlScratch comes(trail_, trail_.database() + "-restoring");
    if (!comes.made()) throw std::runtime_error(comes.why());
    comes.Fill(view_.record.LogsPath(), All);
    if (exists) {
      Swap(trail_.database(), Kept(trail_.database()), comes.name());
    } else {
      Rename1(comes.name(), trail_.database());
    }
    comes.Keep();
  }

  PostgresqlPlace place_;
  PostgresqlPlace trail_;
  PostgresqlScratch copy_;
  bool exists_ = false;
};

}  // namespace

std::unique_ptr<OfficeRestore> PostgresqlRestoreOf(Session& session, BackupRecord record) {
  return std::make_unique<PostgresqlRestore>(session, std::move(record));
}

}  // namespace kaunter
