// What T-SQL through the embedded engine costs beside the same work on bare prepared statements of
// SQLite, on the same kind of file in the same run. The texts of the statements are made before the
// clock starts; on the bare side the values are already numbers.
#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "platform/sql/data_source.h"
#include "platform/sql/sqlite_functions.h"
#include "platform/sql/sqlite_statement.h"

namespace kaunter {
namespace {

constexpr int kLoans = 2000;
constexpr int kScanned = 10'000;
constexpr const char* kSchColumns =
    "SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,IntChargeAmt,IntAmt,Payment,"
    "CapitalPayment,InterestPayment,DragInt,DragIntPaid,LateInt,LoanBal,PayExtra,IntDate,FIntAmt";

struct Row {
  int sch_id;
  std::string due_date;
  double payable, capital, interest, balance;
};

std::vector<Row> Schedule(int count) {
  std::vector<Row> rows;
  for (int i = 1; i <= count; ++i) {
    const std::string date =
        fmt::format("20{:02}-{:02}-{:02}", 24 + i / 360, i % 12 + 1, i % 28 + 1);
    rows.push_back({i, date, 276.92, 230.77, 46.15, 12000.55 + i});
  }
  return rows;
}

// Two databases with the same tables and rows: one behind the layer, one bare.
class Office {
 public:
  static Office& Get() {
    static Office office;
    return office;
  }
  Connection& layer() { return *layer_; }
  sqlite3* bare() { return bare_; }

 private:
  Office()
      : folder_(std::filesystem::temp_directory_path() / fmt::format("kaunter-bench-{}", getpid())),
        statement_clock_(clock_) {
    std::filesystem::create_directories(folder_);
    const std::string path = (folder_ / "layer.db").string();
    layer_ = OpenSqlite("MainConn", path, true, clock_);
    Fill(*layer_);
    // A copy of the same file, so that both have the same declarations and collations.
    layer_.reset();
    std::filesystem::copy_file(path, folder_ / "bare.db");
    layer_ = OpenSqlite("MainConn", path, true, clock_);
    sqlite3_open_v2((folder_ / "bare.db").c_str(), &bare_,
                    SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    sql::RegisterSqliteFunctions(bare_, &statement_clock_);
    sqlite3_exec(bare_, "PRAGMA synchronous = FULL; PRAGMA cache_size = -16000", nullptr, nullptr,
                 nullptr);
  }
  ~Office() {
    layer_.reset();
    sqlite3_close_v2(bare_);
    std::filesystem::remove_all(folder_);
  }

  void Fill(Connection& db) {
    db.Execute(
        "create table LoanMast (LoanID nvarchar(50) NOT NULL PRIMARY KEY, CustID nvarchar(50), "
        "LoanBal decimal(18, 2))");
    std::string columns;
    std::string table =
        "create table SchMast (SchID int NOT NULL, LoanID nvarchar(50) NOT NULL, "
        "CustID nvarchar(50), DueDate datetime";
    for (const char* name : {"PayableAmt", "CapitalAmt", "InterestAmt", "IntChargeAmt", "IntAmt",
                             "Payment", "CapitalPayment", "InterestPayment", "DragInt",
                             "DragIntPaid", "LateInt", "LoanBal", "PayExtra"}) {
      table += fmt::format(", {} decimal(18, 2)", name);
    }
    table += ", IntDate datetime, FIntAmt decimal(18, 2), PRIMARY KEY (LoanID, SchID))";
    db.Execute(table);
    db.BeginTrans();
    for (int i = 0; i < kLoans; ++i) {
      db.Execute(fmt::format("insert into LoanMast values ('L{:06}','C{:06}',{}.{:02})", i, i,
                             1000 + i, i % 100));
    }
    for (int i = 0; i < kScanned; ++i) {
      db.Execute(InsertText("S", Schedule(1).front(), i + 1));
    }
    db.CommitTrans();
  }

 public:
  static std::string InsertText(const char* loan, const Row& row, int sch_id) {
    return fmt::format(
        "INSERT INTO SchMast ({}) VALUES ({},'{}','C1','{}',{:.2f},{:.2f},{:.2f},0,0,0,0,0,0,0,0,"
        "{:.2f},0,'{}',{:.2f})",
        kSchColumns, sch_id, loan, row.due_date, row.payable, row.capital, row.interest,
        row.balance, row.due_date, row.interest);
  }

 private:
  std::filesystem::path folder_;
  Clock clock_;
  sql::StatementClock statement_clock_;
  std::unique_ptr<Connection> layer_;
  sqlite3* bare_ = nullptr;
};

std::vector<std::string> Keys() {
  std::vector<std::string> keys;
  for (int i = 0; i < kLoans; ++i) keys.push_back(fmt::format("L{:06}", i));
  return keys;
}

void ScalarLayer(benchmark::State& state) {
  std::vector<std::string> texts;
  for (const std::string& key : Keys()) {
    texts.push_back(fmt::format("SELECT LoanBal FROM LoanMast WHERE LoanID='{}'", key));
  }
  Connection& db = Office::Get().layer();
  std::size_t i = 0;
  for (auto _ : state) {
    const Recordset rows = db.Query(texts[i++ % texts.size()]);
    benchmark::DoNotOptimize(rows.Field(0).AsMoney()->ten_thousandths());
  }
}

void ScalarBare(benchmark::State& state) {
  const std::vector<std::string> keys = Keys();
  const auto statement =
      sql::Prepare(Office::Get().bare(), "SELECT LoanBal FROM LoanMast WHERE LoanID=?1", "", true);
  std::size_t i = 0;
  for (auto _ : state) {
    const std::string& key = keys[i++ % keys.size()];
    sqlite3_bind_text(statement.get(), 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
    sqlite3_step(statement.get());
    benchmark::DoNotOptimize(sqlite3_column_double(statement.get(), 0));
    sqlite3_reset(statement.get());
  }
}

void InsertLayer(benchmark::State& state, int count, bool one_transaction) {
  std::vector<std::string> texts;
  for (const Row& row : Schedule(count)) {
    texts.push_back(Office::InsertText("L1", row, row.sch_id));
  }
  Connection& db = Office::Get().layer();
  for (auto _ : state) {
    if (one_transaction) db.BeginTrans();
    db.Execute("DELETE FROM SchMast WHERE LoanID='L1'");
    for (const std::string& text : texts) db.Execute(text);
    if (one_transaction) db.CommitTrans();
  }
  db.Execute("DELETE FROM SchMast WHERE LoanID='L1'");
}

void BindRow(sqlite3_stmt* statement, const Row& row) {
  const auto text = [statement](int at, const std::string& value) {
    sqlite3_bind_text(statement, at, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
  };
  static const std::string kLoan = "L1", kCust = "C1";
  sqlite3_bind_int64(statement, 1, row.sch_id);
  text(2, kLoan);
  text(3, kCust);
  text(4, row.due_date);
  sqlite3_bind_double(statement, 5, row.payable);
  sqlite3_bind_double(statement, 6, row.capital);
  sqlite3_bind_double(statement, 7, row.interest);
  for (int at = 8; at <= 15; ++at) sqlite3_bind_int64(statement, at, 0);
  sqlite3_bind_double(statement, 16, row.balance);
  sqlite3_bind_int64(statement, 17, 0);
  text(18, row.due_date);
  sqlite3_bind_double(statement, 19, row.interest);
}

void InsertBare(benchmark::State& state, int count, bool one_transaction) {
  const std::vector<Row> rows = Schedule(count);
  sqlite3* db = Office::Get().bare();
  std::string text = fmt::format("INSERT INTO SchMast ({}) VALUES (", kSchColumns);
  for (int i = 1; i <= 19; ++i) text += fmt::format("{}?{}", i == 1 ? "" : ",", i);
  const auto insert = sql::Prepare(db, text + ")", "", true);
  const auto remove = sql::Prepare(db, "DELETE FROM SchMast WHERE LoanID='L1'", "", true);
  const auto begin = sql::Prepare(db, "BEGIN IMMEDIATE", "", true);
  const auto commit = sql::Prepare(db, "COMMIT", "", true);
  const auto run = [](const sql::SqliteStatement& statement) {
    if (sqlite3_step(statement.get()) != SQLITE_DONE) std::abort();
    sqlite3_reset(statement.get());
  };
  for (auto _ : state) {
    if (one_transaction) run(begin);
    run(remove);
    for (const Row& row : rows) {
      BindRow(insert.get(), row);
      run(insert);
    }
    if (one_transaction) run(commit);
  }
  run(remove);
}

constexpr const char* kScan =
    "SELECT PayableAmt,CapitalAmt,InterestAmt,Payment,LoanBal,FIntAmt FROM SchMast WHERE "
    "LoanID='S'";

void ScanLayer(benchmark::State& state) {
  Connection& db = Office::Get().layer();
  for (auto _ : state) benchmark::DoNotOptimize(db.Query(kScan).RowCount());
}

void ScanBare(benchmark::State& state) {
  const auto statement = sql::Prepare(Office::Get().bare(), kScan, "", true);
  for (auto _ : state) {
    std::vector<std::vector<double>> rows;
    while (sqlite3_step(statement.get()) == SQLITE_ROW) {
      std::vector<double>& row = rows.emplace_back(6);
      for (int i = 0; i < 6; ++i) {
        row[static_cast<std::size_t>(i)] = sqlite3_column_double(statement.get(), i);
      }
    }
    sqlite3_reset(statement.get());
    benchmark::DoNotOptimize(rows.size());
  }
}

constexpr const char* kSum =
    "SELECT SUM(PayableAmt-Payment),SUM(CapitalAmt) FROM SchMast WHERE LoanID='S' AND "
    "PayableAmt-Payment<>0";

void SumLayer(benchmark::State& state) {
  Connection& db = Office::Get().layer();
  for (auto _ : state) benchmark::DoNotOptimize(db.Query(kSum).RowCount());
}

void SumBare(benchmark::State& state) {
  const auto statement = sql::Prepare(Office::Get().bare(), kSum, "", true);
  for (auto _ : state) {
    sqlite3_step(statement.get());
    benchmark::DoNotOptimize(sqlite3_column_double(statement.get(), 0));
    sqlite3_reset(statement.get());
  }
}

// Keeps the best time of each benchmark; the ratios are made of these.
class Best : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      Times& best = best_[run.run_name.function_name];
      best.real = Least(best.real, run.GetAdjustedRealTime());
      best.cpu = Least(best.cpu, run.GetAdjustedCPUTime());
    }
    ConsoleReporter::ReportRuns(runs);
  }
  struct Times {
    double real = 0;  // 0: not run
    double cpu = 0;
  };
  Times Of(const std::string& name) const {
    const auto found = best_.find(name);
    return found == best_.end() ? Times() : found->second;
  }

 private:
  static double Least(double best, double time) { return best == 0 ? time : std::min(best, time); }

  std::map<std::string, Times> best_;
};

struct Pair {
  const char* name;
  const char* what;
  double target;
};

constexpr Pair kPairs[] = {
    {"scalar", "one field by key, warm", 1.3},
    {"rows_12_each", "12 rows, each its own commit", 1.5},
    {"rows_12", "12 rows in one transaction", 1.5},
    {"rows_360", "360 rows in one transaction", 1.5},
    {"scan", "10,000 rows of 6 amounts into memory", 0},
    {"sum", "exact sums of differences over 10,000 rows", 0},
};

void Register() {
  const auto add = [](const char* name, const char* side, auto function) {
    benchmark::RegisterBenchmark(fmt::format("{}/{}", name, side).c_str(), function)
        ->Repetitions(7)
        ->ReportAggregatesOnly(false)
        ->UseRealTime();
  };
  add("scalar", "layer", ScalarLayer);
  add("scalar", "bare", ScalarBare);
  const struct {
    const char* name;
    int count;
    bool one;
  } kInserts[] = {{"rows_12_each", 12, false}, {"rows_12", 12, true}, {"rows_360", 360, true}};
  for (const auto& insert : kInserts) {
    add(insert.name, "layer",
        [insert](benchmark::State& state) { InsertLayer(state, insert.count, insert.one); });
    add(insert.name, "bare",
        [insert](benchmark::State& state) { InsertBare(state, insert.count, insert.one); });
  }
  add("scan", "layer", ScanLayer);
  add("scan", "bare", ScanBare);
  add("sum", "layer", SumLayer);
  add("sum", "bare", SumBare);
}

}  // namespace
}  // namespace kaunter

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  kaunter::Register();
  kaunter::Best best;
  benchmark::RunSpecifiedBenchmarks(&best);
  std::printf(
      "\nT-SQL through the embedded engine, in times of bare SQLite (best of each run):\n"
      "  %-45s %6s %6s\n",
      "", "time", "CPU");
  for (const auto& pair : kaunter::kPairs) {
    const auto layer = best.Of(fmt::format("{}/layer", pair.name));
    const auto bare = best.Of(fmt::format("{}/bare", pair.name));
    if (bare.real <= 0 || bare.cpu <= 0) continue;
    std::printf(
        "  %-45s %6.2f %6.2f%s\n", pair.what, layer.real / bare.real, layer.cpu / bare.cpu,
        pair.target > 0 ? fmt::format("   (wanted: {:.1f} or less)", pair.target).c_str() : "");
  }
  return 0;
}
