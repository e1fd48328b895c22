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
          {fmt::format("The backup could not be restored beside the office: {}\nThe account needs "
                       "the right to make a database: ALTER ROLE ... CREATEDB.",
                       copy_.why()),
           fmt::format("无法在公司旁边还原备份：{}\n此账户需要建立数据库的权限：ALTER ROLE ... "
                       "CREATEDB。",
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
      place_.Run("vacuumdb", {"--analyze-only", "--quiet", "--dbname=" + office}, All);
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
               {"--no-psqlrc", "--quiet", "--set=ON_ERROR_STOP=1", "--dbname=postgres",
                "--command=" + Rename(from, to)},
               All);
  }

  // `office` becomes `kept` and `comes` becomes `office`, both or neither.
  void Swap(const std::string& office, const std::string& kept, const std::string& comes) const {
    try {
      place_.Run("psql",
                 {"--no-psqlrc", "--quiet", "--set=ON_ERROR_STOP=1", "--single-transaction",
                  "--dbname=postgres", "--command=" + Rename(office, kept),
                  "--command=" + Rename(comes, office)},
                 All);
    } catch (const std::runtime_error& error) {
      if (std::string(error.what()).find("is being accessed") == std::string::npos) throw;
      RefuseOpenDesk();
    }
  }

  // A desk may have saved between the look and the exchange of names: then all goes back.
  void CheckKept(const std::string& office, const std::string& kept) const {
    if (IsAsTold(*place_.Open("Office", kept), *place_.Open("Backup", office))) return;
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
