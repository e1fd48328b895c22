// What storing a schedule costs: GenerateSchedule with its arithmetic and statements, against a
// plain program over SQLite that runs the same statements prepared by hand with values ready to
// bind. Each statement commits by itself, as the program's do. And whether the cost grows with what
// is stored already.
#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "core/new_office.h"
#include "loans/calc_payment.h"
#include "loans/schedule_store.h"
#include "platform/sql/data_source.h"
#include "platform/sql/sqlite_functions.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr int kRuns = 15;
constexpr int kGrowthLoans = 1000;
constexpr int kGrowthRows = 60;

LoanTerms Terms(int rows) {
  LoanTerms terms;
  terms.LoanTypeID = "MONTH";
  terms.NextDueDate = {2024, 1, 31, 0, 0, 0};
  terms.LoanAmt = "10000.00";
  terms.InsRate = "18";
  terms.LoanTerm = terms.LoanTerm3 = std::to_string(rows);
  terms.LoanTerm2 = "0";
  terms.InstallmentAmt = terms.InstallmentAmt2 = terms.FirstPayment = "983.33";
  terms.LastPayment = "983.37";
  terms.LoanBal = "11800.00";
  return terms;
}

double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(1);
}

// The plain program: statements prepared once, values bound.
class Bare {
 public:
  Bare(const std::string& path, const Clock& clock) : clock_(clock) {
    if (sqlite3_open(path.c_str(), &db_) != SQLITE_OK) Fail("cannot open " + path);
    sql::RegisterSqliteFunctions(db_, clock_);
    for (const char* pragma : {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=FULL"}) {
      sqlite3_exec(db_, pragma, nullptr, nullptr, nullptr);
    }
    insert_ =
        Prepare("INSERT INTO SchMast VALUES (?1,?2,?3,?4,?5,?6,?7,0,0,0,0,0,0,0,0,?8,0,?4,?9)");
    total_ = Prepare("UPDATE LoanMast SET TotLoanInt=?2 WHERE LoanID=?1");
    due_ = Prepare("UPDATE LoanMast SET OrgDueDate=?2 WHERE LoanID=?1");
    clear_backup_ = Prepare("DELETE FROM SchMast2 WHERE LoanID=?1");
    backup_ = Prepare(
        "INSERT INTO SchMast2 SELECT "
        "SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,LoanBal,FIntAmt "
        "FROM SchMast WHERE LoanID=?1");
    clear_list_ = Prepare("DELETE FROM PaymentList WHERE LoanID=?1");
    list_ = Prepare(
        "INSERT INTO PaymentList (LoanID,SeqNo,DueDate,PayDate,PayAmt,PayID,DateCreated,UserID) "
        "SELECT "
        "LoanID,SchID,DueDate,DueDate,PayableAmt,'',NULL,'' FROM SchMast WHERE LoanID=?1");
  }
  ~Bare() {
    for (sqlite3_stmt* statement : all_) sqlite3_finalize(statement);
    sqlite3_close(db_);
  }

  void Store(const std::string& loan, const Schedule& schedule) {
    for (const ScheduleRow& row : schedule.rows) {
      sqlite3_bind_int(insert_, 1, row.SchID);
      Text(insert_, 2, loan);
      Text(insert_, 3, "C");
      Text(insert_, 4, row.DueDate.ToCanonical());
      sqlite3_bind_double(insert_, 5, row.PayableAmt.ToDouble());
      sqlite3_bind_double(insert_, 6, row.CapitalAmt.ToDouble());
      sqlite3_bind_double(insert_, 7, std::stod(row.InterestAmt));
      sqlite3_bind_double(insert_, 8, 11800);
      sqlite3_bind_double(insert_, 9, row.FIntAmt);
      Run(insert_);
    }
    sqlite3_bind_double(total_, 2, schedule.TotLoanInt.ToDouble());
    Text(due_, 2, "2024-01-31");
    for (sqlite3_stmt* statement : {total_, due_, clear_backup_, backup_, clear_list_, list_}) {
      Text(statement, 1, loan);
      Run(statement);
    }
  }

 private:
  sqlite3_stmt* Prepare(const char* text) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, text, -1, &statement, nullptr) != SQLITE_OK)
      Fail(sqlite3_errmsg(db_));
    all_.push_back(statement);
    return statement;
  }
  static void Text(sqlite3_stmt* statement, int place, const std::string& text) {
    sqlite3_bind_text(statement, place, text.data(), static_cast<int>(text.size()),
                      SQLITE_TRANSIENT);
  }
  void Run(sqlite3_stmt* statement) {
    if (sqlite3_step(statement) != SQLITE_DONE) Fail(sqlite3_errmsg(db_));
    sqlite3_reset(statement);
  }

  const Clock& clock_;
  sqlite3* db_ = nullptr;
  std::vector<sqlite3_stmt*> all_;
  sqlite3_stmt* insert_ = nullptr;
  sqlite3_stmt* total_ = nullptr;
  sqlite3_stmt* due_ = nullptr;
  sqlite3_stmt* clear_backup_ = nullptr;
  sqlite3_stmt* backup_ = nullptr;
  sqlite3_stmt* clear_list_ = nullptr;
  sqlite3_stmt* list_ = nullptr;
};

std::unique_ptr<Connection> NewOffice(const std::string& path, const Clock& clock) {
  auto main = OpenSqlite("MainConn", path, true, clock);
  CreateEmptyOffice(*main);
  main->Execute("ALTER TABLE LoanMast ADD OrgDueDate datetime");
  return main;
}

void AddLoan(Connection& main, const std::string& loan) {
  main.Execute(
      fmt::format("INSERT INTO LoanMast (LoanID,CustID,CompCode) VALUES ('{}','C','HQ')", loan));
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// Both sides in turn, a new loan each time; the median of the ratios.
void CompareStore(const fs::path& folder, int rows) {
  const Clock clock;
  auto main = NewOffice((folder / fmt::format("ours{}.db", rows)).string(), clock);
  const std::string bare_path = (folder / fmt::format("bare{}.db", rows)).string();
  auto bare_office = NewOffice(bare_path, clock);
  Bare bare(bare_path, clock);
  const LoanTerms terms = Terms(rows);
  const Schedule schedule = ComputeSchedule(terms);
  std::vector<double> ratios;
  std::vector<double> ours;
  for (int run = 0; run < kRuns + 2; ++run) {
    const std::string loan = fmt::format("C-{:03}", run);
    AddLoan(*main, loan);
    AddLoan(*bare_office, loan);
    const double layer = Seconds([&] { GenerateSchedule(*main, {loan, "C"}, terms, false); });
    const double plain = Seconds([&] { bare.Store(loan, schedule); });
    if (run < 2) continue;  // warm-up
    ratios.push_back(layer / plain);
    ours.push_back(layer);
  }
  std::printf(
      "GenerateSchedule, %3d rows: %.2f times the plain program (wanted: at most 1.5); %.1f ms\n",
      rows, Median(ratios), Median(ours) * 1000);
}

// Whether a loan costs more as the office grows. The plain program stands beside it in each
// hundred, since every row waits for the disk and the disk has its moods.
void Growth(const fs::path& folder) {
  const Clock clock;
  auto main = NewOffice((folder / "growth.db").string(), clock);
  const std::string bare_path = (folder / "bare-growth.db").string();
  auto bare_office = NewOffice(bare_path, clock);
  Bare bare(bare_path, clock);
  const LoanTerms terms = Terms(kGrowthRows);
  const Schedule schedule = ComputeSchedule(terms);
  std::vector<double> hundred[2];
  std::printf(
      "growth, a hundred loans of %d rows at a time, ms a loan (ours / the plain program):\n",
      kGrowthRows);
  for (int n = 0; n < kGrowthLoans; ++n) {
    const std::string loan = fmt::format("C-{:05}", n);
    AddLoan(*main, loan);
    AddLoan(*bare_office, loan);
    hundred[0].push_back(Seconds([&] { GenerateSchedule(*main, {loan, "C"}, terms, false); }));
    hundred[1].push_back(Seconds([&] { bare.Store(loan, schedule); }));
    if ((n + 1) % 100 != 0) continue;
    std::printf("  %4d loans: %.1f / %.1f\n", n + 1, Median(hundred[0]) * 1000,
                Median(hundred[1]) * 1000);
    hundred[0].clear();
    hundred[1].clear();
  }
}

}  // namespace
}  // namespace kaunter

int main() {
  std::string folder = (std::filesystem::temp_directory_path() / "kaunter-bench-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) return 1;
  kaunter::CompareStore(folder, 12);
  kaunter::CompareStore(folder, 360);
  kaunter::Growth(folder);
  std::filesystem::remove_all(folder);
  return 0;
}
