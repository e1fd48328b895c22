#include "upkeep/office_move.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <tuple>

#include "core/data_access.h"
#include "core/local_settings_write.h"
#include "core/settings.h"
#include "core/values.h"
#include "platform/sql/transaction.h"
#include "platform/sql/waiting.h"
#include "screen/caption_error.h"
#include "upkeep/move_end.h"
#include "upkeep/office_copy.h"

namespace kaunter {
namespace {

using Time = std::chrono::steady_clock;

constexpr std::size_t kMostTold = 10;

double Since(Time::time_point begun) {
  return std::chrono::duration<double>(Time::now() - begun).count();
}

std::string Listed(const std::vector<std::string>& names) {
  std::string list;
  for (std::size_t i = 0; i < names.size() && i < kMostTold; ++i) {
    list += (i == 0 ? "" : ", ") + names[i];
  }
  if (names.size() > kMostTold) list += fmt::format(" (+{})", names.size() - kMostTold);
  return list;
}

std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (std::size_t i = 0; i < lines.size() && i < kMostTold; ++i) text += "\n" + lines[i];
  return text;
}

// --- what has to hold before

bool IsStandIn(const std::string& source) {
  for (const char* name : {"AEDMTS", "AMLA", "SMS"}) {
    if (SameText(name, source)) return true;
  }
  return false;
}

void RefuseSource(const MoveRequest& request) {
  if (request.to.empty()) {
    throw CaptionError(
        {"Name the data source to which the office goes", "请指定公司要搬移到哪个资料来源"});
  }
  if (SameText(request.to, request.local.ConnDataSource)) {
    throw CaptionError({fmt::format("The office is in {} already", request.to),
                        fmt::format("公司已在 {}", request.to)});
  }
  if (IsStandIn(request.to)) {
    throw CaptionError({fmt::format("{} is the name of another program's database", request.to),
                        fmt::format("{} 是其他程式资料库的名称", request.to)});
  }
  if (!request.local.sources.Find(request.to)) {
    throw CaptionError(
        {fmt::format("The settings of this PC know no data source {}. Write it into them, [{}] "
                     "with file= or odbc=, and come again",
                     request.to, request.to),
         fmt::format("本机设定没有资料来源 {}。请先加入 [{}] 及 file= 或 odbc=", request.to,
                     request.to)});
  }
}

// A database that holds something is refused, unless it is the rest of an earlier move from here.
void RefuseFilled(const MoveDatabase& database, const std::string& place, const std::string& from) {
  const auto mark = database.Mark();
  if (mark && mark->state == MoveMark::State::copy && mark->place == from) return;
  const std::vector<std::string> there = database.whole->Contents();
  if (there.empty()) return;
  throw CaptionError(
      {fmt::format("{} is not empty; it holds {}. An office moves into an empty database only. "
                   "Name another one, or have this one made anew",
                   place, Listed(there)),
       fmt::format("{} 不是空的，内有 {}。公司只能搬移到空的资料库，请指定另一个或重新建立", place,
                   Listed(there))});
}

// --- a move

class Mover {
 public:
  Mover(const MoveRequest& request, const MoveGoOn& go_on)
      : request_(request),
        go_on_(go_on),
        from_(request, request.local.ConnDataSource, request.local.ConnDatabase),
        to_(request, request.to, request.to_database) {}

  MoveLook Look() {
    Check();
    Count();
    return done_.look;
  }
  MoveDone Move();
  MoveDone Undo();

 private:
  struct Pair {
    MoveDatabase& from;
    MoveDatabase& to;
  };
  std::vector<Pair> Pairs();
  void OpenBoth();
  void Check();
  void OpenTarget();
  void OpenTargetLogs();
  void LockSource();
  void Copy();
  void Compare(std::string_view unlike);
  void CheckLedgers();
  void SealSource();
  void SealRest();
  void Finish();
  void SwitchSettings();
  void CleanTarget() noexcept;
  void Count();
  void Ask(MovePhase phase, const std::string& what, std::int64_t rows);
  CopyGoOn Asker();

  const MoveRequest& request_;
  const MoveGoOn& go_on_;
  MoveEnd from_;
  MoveEnd to_;
  MoveMark mark_;
  MoveDone done_;
  OfficeMoveProgress progress_;
  bool target_is_ours_ = false;
  bool sealing_ = false;
};

std::vector<Mover::Pair> Mover::Pairs() {
  std::vector<Pair> pairs{{from_.main, to_.main}};
  if (from_.logs.exists()) pairs.push_back({from_.logs, to_.logs});
  return pairs;
}

void Mover::OpenBoth() {
  RefuseSource(request_);
  from_.OpenMain();
  if (!TableExists(*from_.main.connection, "LoanMast")) {
    throw CaptionError({fmt::format("{} holds no office", from_.place()),
                        fmt::format("{} 内没有公司资料", from_.place())});
  }
  from_.OpenLogs(ReadSetting(*from_.main.connection, "TransLogs") == "1");
  done_.look.from = from_.place();
  done_.look.to = to_.place();
  done_.look.logs = from_.logs.exists();
  mark_.id = NullToEmpty(from_.main.connection->Query("SELECT newid()").Field(0));
  mark_.at = request_.clock.Now();
  mark_.user = request_.user;
}

// The target's databases; files are made here.
void Mover::OpenTarget() {
  mark_.state = MoveMark::State::copy;
  mark_.place = from_.place();
  to_.MakeFiles(mark_, from_.logs.exists());
  to_.OpenMain();
  OpenTargetLogs();
  for (const Pair& pair : Pairs()) RefuseFilled(pair.to, to_.place(), from_.place());
}

void Mover::OpenTargetLogs() {
  if (!from_.logs.exists()) return;
  try {
    to_.OpenLogs(/*needed=*/true);
  } catch (const SqlError& error) {
    throw CaptionError(
        {fmt::format("The audit records of this office need a database of their own there, with "
                     "-Logs behind the name; make it first (docs/servers.md). {}",
                     error.what()),
         fmt::format("审计记录在该处需要另一个名称以 -Logs 结尾的资料库，请先建立。{}",
                     error.what())});
  }
}

void Mover::Check() {
  OpenBoth();
  const auto moved = from_.main.Mark();
  if (moved && moved->state == MoveMark::State::copy) {
    throw CaptionError(MovedWords(*moved));
  }
  // A file that is not there needs no look; nothing is made by looking.
  const auto file = to_.File(/*logs=*/false);
  std::error_code missing;
  const bool is_new = file && (std::filesystem::file_size(*file, missing) == 0 || missing);
  if (is_new) {
    sql::CheckSqliteFile(*file, /*create=*/true);
  } else {
    to_.OpenMain();
  }
  if (moved) {
    const auto copy = is_new ? std::nullopt : to_.main.Mark();
    const bool same = !is_new && (copy ? copy->id == moved->id : moved->place == to_.place());
    if (!same) throw CaptionError(MovedWords(*moved));
    done_.look.only_finish = true;
  } else if (!is_new) {
    OpenTargetLogs();
    for (const Pair& pair : Pairs()) RefuseFilled(pair.to, to_.place(), from_.place());
  }
}

// --- the steps

void Mover::LockSource() {
  for (const Pair& pair : Pairs()) {
    pair.from.LockOut();
    pair.from.ReadTables();
  }
  Count();
}

void Mover::Count() {
  MoveLook& look = done_.look;
  look.tables = 0;
  look.rows = 0;
  look.behind.clear();
  for (MoveDatabase* database : {&from_.main, &from_.logs}) {
    if (!database->exists()) continue;
    if (database->tables.empty()) database->ReadTables();
    for (const sql::WholeTable& table : database->tables) {
      ++look.tables;
      look.rows += CLng(ScalarQuery(*database->connection,
                                    "SELECT COUNT(*) FROM " + sql::BracketName(table.name)));
    }
    for (const std::string& thing : database->whole->Contents()) {
      if (!thing.starts_with("table ")) look.behind.push_back(thing);
    }
  }
}

void Mover::Ask(MovePhase phase, const std::string& what, std::int64_t rows) {
  if (phase != progress_.phase) progress_ = {phase, what, 0, done_.look.rows};
  progress_.what = what;
  progress_.total = phase == MovePhase::ledger ? 0 : done_.look.rows;
  progress_.done += rows;
  if (!go_on_(progress_)) throw CopyStopped();
}

CopyGoOn Mover::Asker() {
  return [this](CopyStep step, const std::string& table, std::int64_t rows) {
    Ask(step == CopyStep::copy ? MovePhase::copy : MovePhase::compare, table, rows);
  };
}

void Mover::Copy() {
  const auto begun = Time::now();
  for (const Pair& pair : Pairs()) {
    pair.to.LockOut();
    // The rest of an earlier move goes, and so does the mark with which a file was made.
    pair.to.whole->DropTables();
    WriteMoveMark(*pair.to.connection, mark_);
    target_is_ours_ = true;
    CopyTables(*pair.from.whole, *pair.to.whole, pair.from.tables, Asker());
    pair.to.Commit();
    pair.to.whole->Settle();
  }
  done_.copy_seconds = Since(begun);
}

void Mover::Compare(std::string_view unlike) {
  const auto begun = Time::now();
  std::vector<std::string> differences;
  for (const Pair& pair : Pairs()) {
    pair.to.ReadTables();
    const auto found =
        CompareTables(*pair.from.whole, *pair.to.whole, pair.from.tables, pair.to.tables, Asker());
    differences.insert(differences.end(), found.begin(), found.end());
  }
  done_.compare_seconds = Since(begun);
  if (differences.empty()) return;
  throw CaptionError({fmt::format("{}{}", unlike, Lines(differences)),
                      fmt::format("两边的资料不同：{}", Lines(differences))});
}

// The rows are equal; that the engines read the same out of them is what this asks.
void Mover::CheckLedgers() {
  const auto check = [this](const MoveEnd& end) {
    OfficeCheck found = CheckOffice(*end.main.connection,
                                    [this](const std::string& company, const LedgerProgress&) {
                                      Ask(MovePhase::ledger, company, 0);
                                      return true;
                                    });
    std::sort(found.faults.begin(), found.faults.end(),
              [](const LedgerFault& a, const LedgerFault& b) {
                return std::tie(a.LoanID, a.CustID, a.what.english) <
                       std::tie(b.LoanID, b.CustID, b.what.english);
              });
    return found;
  };
  done_.ledger = check(from_);
  const OfficeCheck there = check(to_);
  const bool same =
      done_.ledger.loans == there.loans && done_.ledger.receipts == there.receipts &&
      std::equal(done_.ledger.faults.begin(), done_.ledger.faults.end(), there.faults.begin(),
                 there.faults.end(), [](const LedgerFault& a, const LedgerFault& b) {
                   return a.LoanID == b.LoanID && a.CustID == b.CustID &&
                          a.what.english == b.what.english && a.stored == b.stored &&
                          a.should_be == b.should_be;
                 });
  if (same) return;
  throw CaptionError(
      {fmt::format("Verify Ledger finds {} figures here and {} in the copy that do not hold",
                   done_.ledger.faults.size(), there.faults.size()),
       fmt::format("核对账目：此处 {} 项不符，副本 {} 项不符", done_.ledger.faults.size(),
                   there.faults.size())});
}

// From this commit on the new place is in force.
void Mover::SealSource() {
  MoveMark seal = mark_;
  seal.state = MoveMark::State::moved;
  seal.place = to_.place();
  from_.main.Seal(seal);
  sealing_ = true;
  try {
    from_.main.Commit();
  } catch (const SqlError& error) {
    throw std::runtime_error(
        fmt::format("It is not known whether the office is in {} now: {} Do the same once more.",
                    to_.place(), error.what()));
  }
}

void Mover::SealRest() {
  const MoveMark seal = *from_.main.Mark();
  for (const Pair& pair : Pairs()) {
    if (pair.from.Mark()) continue;
    if (!pair.from.connection->InTransaction()) pair.from.LockOut();
    pair.from.Seal(seal);
    pair.from.Commit();
  }
}

// What may follow on the seal in any number of tries.
void Mover::Finish() {
  try {
    SealRest();
    for (const Pair& pair : Pairs()) pair.to.Reopen();
    SwitchSettings();
  } catch (const std::exception& error) {
    throw std::runtime_error(
        fmt::format("The office is in {} now, but the move was not finished: {} Do the same once "
                    "more; only the rest is then done.",
                    to_.place(), error.what()));
  }
}

void Mover::SwitchSettings() {
  std::vector<SettingChange> changes{{"", "ConnDataSource", request_.to}};
  changes.push_back(
      {"", "ConnDatabase",
       request_.to_database.empty() ? std::nullopt : std::optional(request_.to_database)});
  const auto write = [&](const std::string& name) {
    const auto source = request_.local.sources.Find(name);
    if (!source) return;
    changes.push_back(
        {name, source->kind == DataSource::Kind::kEmbedded ? "file" : "odbc", source->target});
  };
  // A PC without a file worked on the data source that it has by itself; the way back needs it.
  if (!std::filesystem::exists(request_.settings_file)) write(request_.local.ConnDataSource);
  if (request_.write_source) write(request_.to);
  ChangeSettingsFile(request_.settings_file, changes);
}

void Mover::CleanTarget() noexcept {
  for (const Pair& pair : Pairs()) {
    pair.from.GiveUp();
    pair.to.GiveUp();
  }
  if (!target_is_ours_) return;
  try {
    for (const Pair& pair : Pairs()) {
      if (!pair.to.exists()) continue;
      const auto mark = pair.to.Mark();
      if (!mark || mark->id != mark_.id) continue;
      pair.to.LockOut();
      pair.to.whole->DropTables();
      pair.to.Commit();
    }
  } catch (const std::exception&) {  // it bears the mark of a copy; the next move clears it
  }
}

MoveDone Mover::Move() {
  const auto begun = Time::now();
  Check();
  if (done_.look.only_finish) {
    Count();
    OpenTargetLogs();
    Finish();
    done_.seconds = Since(begun);
    return done_;
  }
  to_.main = {};
  to_.logs = {};
  try {
    LockSource();
    OpenTarget();
    Copy();
    for (const Pair& pair : Pairs()) pair.to.LockOut();
    Compare("The copy is not the same as the office:");
    CheckLedgers();
    for (const Pair& pair : Pairs()) pair.to.GiveUp();
    SealSource();
  } catch (...) {
    if (!sealing_) {
      CleanTarget();
      to_.RemoveMadeFiles();
    }
    throw;
  }
  Finish();
  done_.seconds = Since(begun);
  return done_;
}

// The new place is closed before the old one is opened: at no moment are both in force.
MoveDone Mover::Undo() {
  const auto begun = Time::now();
  OpenBoth();
  to_.OpenMain();
  if (from_.logs.exists()) to_.OpenLogs(/*needed=*/true);
  const auto old = to_.main.Mark();
  const auto closed = from_.main.Mark();
  const bool half_done = closed && closed->place == to_.place();
  if (!half_done &&
      (closed || !old || old->state != MoveMark::State::moved || old->place != from_.place())) {
    throw CaptionError(
        {fmt::format("{} is not the office that was moved to {}", to_.place(), from_.place()),
         fmt::format("{} 不是搬移到 {} 的公司", to_.place(), from_.place())});
  }
  if (!half_done) {
    try {
      LockSource();
      for (const Pair& pair : Pairs()) pair.to.LockOut();
      Compare(
          "Something was saved since the office was moved, so the way back would lose it. Move "
          "the office into a new database instead. These differ:");
      for (const Pair& pair : Pairs()) pair.to.GiveUp();
      SealSource();
    } catch (...) {
      for (const Pair& pair : Pairs()) {
        pair.from.GiveUp();
        pair.to.GiveUp();
      }
      throw;
    }
  }
  Finish();
  done_.seconds = Since(begun);
  return done_;
}

}  // namespace

std::vector<std::string> TargetsOf(const LocalSettings& local, const std::string& settings_file) {
  std::vector<std::string> targets;
  std::ifstream file(settings_file, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    line = Trim(line);
    if (!line.starts_with('[') || !line.ends_with(']')) continue;
    const std::string name = Trim(std::string_view(line).substr(1, line.size() - 2));
    if (!SameText(name, local.ConnDataSource) && !IsStandIn(name)) targets.push_back(name);
  }
  return targets;
}

MoveLook LookAtMove(const MoveRequest& request) {
  const MoveGoOn on = [](const OfficeMoveProgress&) { return true; };
  return Mover(request, on).Look();
}

MoveDone MoveOffice(const MoveRequest& request, const MoveGoOn& go_on) {
  return Mover(request, go_on).Move();
}

MoveDone UndoMove(const MoveRequest& request, const MoveGoOn& go_on) {
  return Mover(request, go_on).Undo();
}

}  // namespace kaunter
