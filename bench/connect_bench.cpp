// What a start costs: the connect step on an office that is there already, and on a new one,
// against a plain program over SQLite that opens the file and runs the same statements, already in
// SQLite's own words. And whether it grows with the history in the file.
#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "core/log.h"
#include "core/startup.h"
#include "platform/sql/sqlite_alter.h"
#include "platform/sql/sqlite_catalogue.h"
#include "platform/sql/sqlite_functions.h"
#include "platform/sql/sqlite_literal.h"
#include "platform/sql/sqlite_statement.h"
#include "platform/sql/translate.h"
#include "screen/desk.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr int kRuns = 21;
constexpr int kLoans = 2000;
constexpr int kRowsALoan = 60;

class QuietBar : public ProgressBar {
 public:
  void SetRange(int) override {}
  void SetText(std::string_view) override {}
  void Step(int) override {}
  void SetPosition(int) override {}
};

class QuietDesk : public Desk {
 public:
  void Message(MessageKind, std::string_view title, std::string_view text) override {
    std::fprintf(stderr, "%s: %s\n", std::string(title).c_str(), std::string(text).c_str());
    std::exit(1);
  }
  bool Ask(std::string_view, std::string_view) override { return false; }
  std::string Input(std::string_view, std::string_view, std::string_view) override { return {}; }
  std::string PickFile(std::string_view, std::string_view, std::string_view) override { return {}; }
  std::string PickFolder(std::string_view, std::string_view) override { return {}; }
  void Show(std::string_view) override {}
  void ShowModal(Screen&) override {}
  std::unique_ptr<ProgressBar> Progress(std::string_view) override {
    return std::make_unique<QuietBar>();
  }
  void Hourglass(bool) override {}
  void Beep() override {}
  void Print(const ReportJob&) override {}
  void Open(std::string_view) override {}
  bool Start(std::string_view, const std::vector<std::string>&) override { return false; }
};

// A working folder beside the program: the system's temporary folder may lie in memory, where a
// sync is free.
class Folder {
 public:
  Folder() : path_(fs::current_path() / fmt::format("bench_connect-{}", getpid())) {
    fs::create_directories(path_);
  }
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  std::string File(std::string_view name) const { return (path_ / name).string(); }

 private:
  fs::path path_;
};

void RemoveDatabase(const std::string& file) {
  for (const char* end : {"", "-wal", "-shm"}) fs::remove(file + end);
}

// --- the program's own start

void Start(const Folder& folder, const std::string& file, const Connection::TraceSink& trace) {
  QuietDesk desk;
  Session session;
  LocalSettings local;
  local.ConnDataSource = "Office";
  local.sources.Add("Office", {DataSource::Kind::kEmbedded, file});
  local.creatable.insert("office");
  session.AppPath = folder.File("");
  session.trace = trace;
  ApplyLocalSettings(session, local);
  MakeLogFolder(session);
  OpenMainConnection(session, local);
  Connect(session, desk);
}

// --- the plain program

sqlite3* OpenPlain(const std::string& file) {
  sqlite3* db = nullptr;
  if (sqlite3_open(file.c_str(), &db) != SQLITE_OK) throw std::runtime_error("cannot open " + file);
  sqlite3_busy_timeout(db, 5000);
  sqlite3_exec(db, "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL", nullptr, nullptr,
               nullptr);
  return db;
}

void RunPlain(const std::string& file, const std::vector<std::string>& statements) {
  sqlite3* db = OpenPlain(file);
  Clock clock;
  sql::RegisterSqliteFunctions(db, clock);  // the tables name the collation
  for (const std::string& statement : statements) {
    sqlite3_stmt* prepared = nullptr;
    int code = sqlite3_prepare_v2(db, statement.c_str(), -1, &prepared, nullptr);
    while (code == SQLITE_OK || code == SQLITE_ROW) code = sqlite3_step(prepared);
    if (code != SQLITE_DONE) throw std::runtime_error(statement + ": " + sqlite3_errmsg(db));
    sqlite3_finalize(prepared);
  }
  sqlite3_close(db);
}

// What a start sends, in SQLite's words with its literals in place. `file` is as it was before that
// start and takes all statements.
std::vector<std::string> InPlainWords(const std::vector<std::string>& sent,
                                      const std::string& file) {
  std::vector<std::string> plain;
  sqlite3* db = OpenPlain(file);
  Clock clock;
  sql::RegisterSqliteFunctions(db, clock);
  {
    sql::SqliteCatalogue catalogue(db, file);
    for (const std::string& statement : sent) {
      if (statement == "BEGIN TRANSACTION" || statement == "COMMIT") {
        plain.push_back(statement == "COMMIT" ? "COMMIT" : "BEGIN IMMEDIATE");
        sql::RunPlain(db, plain.back().c_str(), file);
        continue;
      }
      const auto shapes = sql::SplitBatch(statement, nullptr);
      for (const auto& translated : sql::Translate(statement, catalogue, sql::Dialect::kSqlite)) {
        if (translated
                .alter_column) {  // several statements of SQLite; the plain program is let off
          sql::AlterColumnOf(db, file, catalogue, *translated.alter_column);
        } else {
          const auto prepared = sql::Prepare(db, translated.text, file);
          for (std::size_t i = 0; i < translated.parameters.size(); ++i) {
            const auto& parameter = translated.parameters[i];
            sql::BindLiteral(prepared.get(), static_cast<int>(i) + 1,
                             shapes.at(0).literals[parameter.literal], parameter);
          }
          char* expanded = sqlite3_expanded_sql(prepared.get());
          plain.emplace_back(expanded);
          sqlite3_free(expanded);
          while (sqlite3_step(prepared.get()) == SQLITE_ROW) {
          }
        }
        if (translated.is_ddl || translated.alter_column) catalogue.Clear();
      }
    }
  }
  sqlite3_close(db);
  return plain;
}

// --- measuring

double Milliseconds(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
      .count();
}

double Median(std::vector<double> times) {
  std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
  return times[times.size() / 2];
}

// Runs both in turn, so that a busy machine is busy for both. Prints and gives the ratio of the
// medians.
double Compare(const char* what, double limit, const std::function<void()>& prepare,
               const std::function<void()>& ours, const std::function<void()>& theirs) {
  std::vector<double> our_times, their_times;
  for (int run = 0; run < kRuns; ++run) {
    prepare();
    our_times.push_back(Milliseconds(ours));
    prepare();
    their_times.push_back(Milliseconds(theirs));
  }
  const double ratio = Median(our_times) / Median(their_times);
  fmt::print("{:<52} {:5.2f}  (limit {:.1f}; {:.1f} ms against {:.1f} ms){}\n", what, ratio, limit,
             Median(our_times), Median(their_times), ratio <= limit ? "" : "  TOO SLOW");
  return ratio;
}

void AddHistory(const std::string& file) {
  RunPlain(file,
           {"BEGIN IMMEDIATE",
            fmt::format("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<{0}) "
                        "INSERT INTO LoanMast (LoanID,CustID,CompCode,TrxDate,OrgDueDate) SELECT "
                        "'HQ'||i||'-001','HQ'||i,'HQ','2024-01-31','2024-02-29' FROM n",
                        kLoans),
            fmt::format("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<{0}) "
                        "INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt) SELECT "
                        "n.i,l.LoanID,l.CustID,'2024-02-29',100 FROM n CROSS JOIN LoanMast AS l",
                        kRowsALoan),
            "COMMIT"});
}

int Main() {
  Folder folder;
  const std::string made = folder.File("made.db");
  const std::string fresh = folder.File("new.db");
  const std::string plain = folder.File("plain.db");
  std::vector<std::string> first_start;
  std::vector<std::string> later_start;
  Start(folder, made,
        [&](std::string_view, std::string_view sql) { first_start.emplace_back(sql); });
  Start(folder, made,
        [&](std::string_view, std::string_view sql) { later_start.emplace_back(sql); });
  const auto first_plain = InPlainWords(first_start, plain);
  RemoveDatabase(plain);
  const auto later_plain = InPlainWords(later_start, made);
  fmt::print("connect step: {} statements on a new office, {} on one that is there\n",
             first_start.size(), later_start.size());

  bool good = true;
  good &= Compare(
              "connect, an office that is there / plain", 3.0, [] {},
              [&] { Start(folder, made, nullptr); }, [&] { RunPlain(made, later_plain); }) <= 3.0;
  good &= Compare(
              "connect, a new office / plain", 1.5,
              [&] {
                RemoveDatabase(fresh);
                RemoveDatabase(plain);
              },
              [&] { Start(folder, fresh, nullptr); }, [&] { RunPlain(plain, first_plain); }) <= 1.5;
  const std::string old = folder.File("old.db");
  fs::copy_file(made, old);
  AddHistory(old);
  good &= Compare(
              fmt::format("connect, {} loans of {} rows / none", kLoans, kRowsALoan).c_str(), 1.2,
              [] {}, [&] { Start(folder, old, nullptr); },
              [&] { Start(folder, made, nullptr); }) <= 1.2;
  return good ? 0 : 1;
}

}  // namespace
}  // namespace kaunter

int main() {
  try {
    return kaunter::Main();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
  }
}
