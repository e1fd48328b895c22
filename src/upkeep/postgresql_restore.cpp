// An office on PostgreSQL: the dump is restored into a database beside it, and the two change their
// names in one transaction of the server, which refuses while a desk is connected.
#include <fmt/format.h>

#include <optional>

#include "core/new_office.h"
#include "core/values.h"
#include "screen/caption_error.h"
#include "upkeep/backup_copy.h"
#include "upkeep/postgresql_place.h"
#include "upkeep/restore.h"

namespace kaunter {
namespace {

const Caption kUnpacking{"Restoring the backup beside the office", "正在旁边还原备份"};
const Caption kVerifying{"Verifying the ledger of the backup", "正在核对备份的账目"};

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
      : OfficeRestore(session),
        place_(session, /*logs=*/false),
        trail_(session, /*logs=*/true),
        copy_(place_, place_.database() + "-restoring") {
    view_.record = std::move(record);
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

  // False when it was stopped.
  bool Prepare(const UpkeepGoOn& go_on) {
    if (!copy_.Fill(view_.record.MainPath(), [&] { return go_on({kUnpacking}); })) return false;
    const auto earlier = copy_.Open("Backup");
    Replay(*earlier, view_.record.replay);
    const OfficeCheck check =
        CheckOffice(*earlier, [&](const std::string&, const LedgerProgress& progress) {
          return go_on({kVerifying, progress.done, progress.total});
        });
    if (!check.complete) return false;
    earlier->Execute(fmt::format("UPDATE Systemast SET [Value]={} WHERE Param='LastBackup'",
                                 QuoteStr(view_.record.made.ToCanonical())));
    try {
      const auto office = place_.Open("Office", place_.database());
      exists_ = true;
      view_.there = !IsEmptyDatabase(*office);
      if (!view_.there) return true;
      const auto loss = WhatIsLost(*office, *earlier, [&](std::int64_t done) {
        return go_on({kComparing, done});
      });
      if (!loss) return false;
      view_.loss = *loss;
      view_.related = AreOneOffice(*office, *earlier);
    } catch (const SqlError& error) {
      if (exists_) throw;
    }
    return true;
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
      throw CaptionError(
          {"Kaunter is open on this office: close it at every desk, and try again. "
           "Nothing was restored.",
           "仍有电脑开着此公司：请全部关闭后再试。没有恢复任何资料。"});
    }
  }

  // A desk may have saved between the look and the exchange of names: then all goes back.
  void CheckKept(const std::string& office, const std::string& kept) const {
    std::optional<Loss> loss;
    {
      const auto replaced = place_.Open("Office", kept);
      const auto restored = place_.Open("Backup", office);
      loss = WhatIsLost(*replaced, *restored, [](std::int64_t) { return true; });
    }
    if (loss != view_.loss) Swap(office, copy_.name(), kept);
    CheckSameLoss(view_.loss, loss);
  }

  // The audit trail that is there stays, for it tells of what is lost; an empty database, and none,
  // take that of the backup.
  void BringTrail() const {
    if (view_.record.logs.name.empty()) return;
    bool exists = true;
    try {
      if (!IsEmptyDatabase(*trail_.Open("LogsConn", trail_.database()))) return;
    } catch (const SqlError&) {
      exists = false;
    }
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

std::unique_ptr<OfficeRestore> PreparePostgresqlRestore(Session& session, BackupRecord record,
                                                        const UpkeepGoOn& go_on) {
  auto restore = std::make_unique<PostgresqlRestore>(session, std::move(record));
  if (!restore->Prepare(go_on)) return nullptr;
  return restore;
}

}  // namespace kaunter
