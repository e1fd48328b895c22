// What storing a schedule costs: GenerateSchedule with its arithmetic and statements, against a
// plain program over SQLite that runs the same statements prepared by hand with values ready to
// bind. Each statement commits by itself, as the program's do. And whether the cost grows with what
// is stored already.
#include <fmt/format.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench/plain.h"
#include "bench/ratio.h"
#include "core/new_office.h"
#include "loans/calc_payment.h"
#include "loans/schedule_store.h"
#include "platform/sql/data_source.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

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

// The plain program: statements prepared once, values bound.
class Bare {
 public:
  explicit Bare(const std::string& path) : plain_(path) {
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
    kept_.push_back(std::move(plain_.Prepare({text}).front()));
    return kept_.back().get();
  }
  static void Text(sqlite3_stmt* statement, int place, const std::string& text) {
    sqlite3_bind_text(statement, place, text.data(), static_cast<int>(text.size()),
                      SQLITE_TRANSIENT);
  }
  void Run(sqlite3_stmt* statement) { plain_.Query(statement); }

  Plain plain_;
  std::vector<sql::SqliteStatement> kept_;
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

// A new loan each time, on both sides.
bool CompareStore(const fs::path& folder, int rows) {
  const Clock clock;
  auto main = NewOffice((folder / fmt::format("ours{}.db", rows)).string(), clock);
  const std::string bare_path = (folder / fmt::format("bare{}.db", rows)).string();
  auto bare_office = NewOffice(bare_path, clock);
  Bare bare(bare_path);
  const LoanTerms terms = Terms(rows);
  const Schedule schedule = ComputeSchedule(terms);
  int number = 0;
  std::string loan;
  const auto next_loan = [&] {
    loan = fmt::format("C-{:03}", ++number);
    AddLoan(*main, loan);
    AddLoan(*bare_office, loan);
  };
  return Compare(
      {fmt::format("GenerateSchedule, {} rows / plain", rows), 1.5, 15, next_loan},
      [&] {
        GenerateSchedule(*main, {loan, "C"}, terms, false);
      },
      [&] { bare.Store(loan, schedule); });
}

// Whether a loan costs more as the office grows.
bool Growth(const fs::path& folder) {
  const Clock clock;
  auto grown = NewOffice((folder / "grown.db").string(), clock);
  auto fresh = NewOffice((folder / "fresh.db").string(), clock);
  const LoanTerms terms = Terms(kGrowthRows);
  grown->BeginTrans();
  for (int n = 0; n < kGrowthLoans; ++n) {
    const std::string loan = fmt::format("B-{:05}", n);
    AddLoan(*grown, loan);
    GenerateSchedule(*grown, {loan, "C"}, terms, false);
  }
  grown->CommitTrans();
  int number = 0;
  std::string loan;
  const auto next_loan = [&] {
    loan = fmt::format("C-{:03}", ++number);
    AddLoan(*grown, loan);
    AddLoan(*fresh, loan);
  };
  return Compare(
      {fmt::format("the same, {} loans of {} rows stored / none", kGrowthLoans, kGrowthRows), 1.2,
       15, next_loan},
      [&] {
        GenerateSchedule(*grown, {loan, "C"}, terms, false);
      },
      [&] {
        GenerateSchedule(*fresh, {loan, "C"}, terms, false);
      });
}

// Beside the program: the system's temporary folder may lie in memory, where a sync is free.
bool Bench() {
  const fs::path folder = fs::current_path() / fmt::format("bench_schedule-{}", getpid());
  fs::create_directories(folder);
  bool good = CompareStore(folder, 12);
  good &= CompareStore(folder, 360);
  good &= Growth(folder);
  fs::remove_all(folder);
  return good;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
