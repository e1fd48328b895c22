// What a start costs: the connect step on an office that is there already, and on a new one,
// against a plain program over SQLite that opens the file and runs the same statements, already in
// SQLite's own words. And whether it grows with the history in the file.
#include <fmt/format.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "bench/plain.h"
#include "bench/ratio.h"
#include "bench/strict_desk.h"
#include "core/log.h"
#include "core/startup.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr int kLoans = 2000;
constexpr int kRowsALoan = 60;

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
  StrictDesk desk;
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

// A start of the plain program.
void RunPlain(const std::string& file, const std::vector<std::string>& statements) {
  Plain(file).Run(statements);
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

bool Bench() {
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
  bool good = Compare(
      {"connect, an office that is there / plain", 3.0}, [&] { Start(folder, made, nullptr); },
      [&] { RunPlain(made, later_plain); });
  good &= Compare(
      {"connect, a new office / plain", 1.5, 15,
       [&] {
         RemoveDatabase(fresh);
         RemoveDatabase(plain);
       }},
      [&] { Start(folder, fresh, nullptr); }, [&] { RunPlain(plain, first_plain); });
  const std::string old = folder.File("old.db");
  fs::copy_file(made, old);
  AddHistory(old);
  good &= Compare(
      {fmt::format("connect, {} loans of {} rows / none", kLoans, kRowsALoan), 1.2},
      [&] { Start(folder, old, nullptr); }, [&] { Start(folder, made, nullptr); });
  return good;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
