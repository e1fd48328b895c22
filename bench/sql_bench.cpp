// What T-SQL through the embedded engine costs beside the same work on bare prepared statements of
// SQLite, on the same kind of file in the same run. The texts of the statements are made before the
// clock starts; on the bare side the values are already numbers.
#include <fmt/format.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench/plain.h"
#include "bench/ratio.h"
#include "platform/sql/data_source.h"

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
  Office() : folder_(std::filesystem::current_path() / fmt::format("bench_sql-{}", getpid())) {
    std::filesystem::create_directories(folder_);
    const std::string path = (folder_ / "layer.db").string();
    layer_ = OpenSqlite("MainConn", path, true, clock_);
    Fill(*layer_);
    // A copy of the same file, so that both have the same declarations and collations.
    layer_.reset();
    std::filesystem::copy_file(path, folder_ / "bare.db");
    layer_ = OpenSqlite("MainConn", path, true, clock_);
    bare_ = std::make_unique<Plain>((folder_ / "bare.db").string());
  }
  ~Office() {
    layer_.reset();
    bare_.reset();
    std::filesystem::remove_all(folder_);
  }
  Connection& layer() { return *layer_; }
  sqlite3* bare() { return bare_->handle(); }

 private:
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
  std::unique_ptr<Connection> layer_;
  std::unique_ptr<Plain> bare_;
};

std::vector<std::string> Keys() {
  std::vector<std::string> keys;
  for (int i = 0; i < kLoans; ++i) keys.push_back(fmt::format("L{:06}", i));
  return keys;
}

sql::SqliteStatement Prepared(sqlite3* db, const std::string& text) {
  return sql::Prepare(db, text, "", true);
}

void RunOnce(sqlite3_stmt* statement) {
  if (sqlite3_step(statement) != SQLITE_DONE) throw std::runtime_error("a bare statement fails");
  sqlite3_reset(statement);
}

// Keeps the compiler from leaving out what nobody reads.
volatile double g_seen = 0;

bool CompareScalar(Office& office) {
  const std::vector<std::string> keys = Keys();
  std::vector<std::string> texts;
  for (const std::string& key : keys) {
    texts.push_back(fmt::format("SELECT LoanBal FROM LoanMast WHERE LoanID='{}'", key));
  }
  const auto statement = Prepared(office.bare(), "SELECT LoanBal FROM LoanMast WHERE LoanID=?1");
  return Compare(
      {"one field by key, warm", 1.3, 40},
      [&] {
        for (const std::string& text : texts) {
          const Recordset rows = office.layer().Query(text);
          g_seen = static_cast<double>(rows.Field(0).AsMoney()->ten_thousandths());
        }
      },
      [&] {
        for (const std::string& key : keys) {
          sqlite3_bind_text(statement.get(), 1, key.data(), static_cast<int>(key.size()),
                            SQLITE_STATIC);
          sqlite3_step(statement.get());
          g_seen = sqlite3_column_double(statement.get(), 0);
          sqlite3_reset(statement.get());
        }
      });
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

// A schedule is stored anew, `times` over, as one transaction or with each statement by itself.
bool CompareInsert(Office& office, const char* what, int count, bool one_transaction, int times) {
  const std::vector<Row> rows = Schedule(count);
  std::vector<std::string> texts;
  for (const Row& row : rows) texts.push_back(Office::InsertText("L1", row, row.sch_id));
  std::string text = fmt::format("INSERT INTO SchMast ({}) VALUES (", kSchColumns);
  for (int i = 1; i <= 19; ++i) text += fmt::format("{}?{}", i == 1 ? "" : ",", i);
  sqlite3* bare = office.bare();
  const auto insert = Prepared(bare, text + ")");
  const auto remove = Prepared(bare, "DELETE FROM SchMast WHERE LoanID='L1'");
  const auto begin = Prepared(bare, "BEGIN IMMEDIATE");
  const auto commit = Prepared(bare, "COMMIT");
  Connection& layer = office.layer();
  return Compare(
      {what, 1.5},
      [&] {
        for (int time = 0; time < times; ++time) {
          if (one_transaction) layer.BeginTrans();
          layer.Execute("DELETE FROM SchMast WHERE LoanID='L1'");
          for (const std::string& statement : texts) layer.Execute(statement);
          if (one_transaction) layer.CommitTrans();
        }
      },
      [&] {
        for (int time = 0; time < times; ++time) {
          if (one_transaction) RunOnce(begin.get());
          RunOnce(remove.get());
          for (const Row& row : rows) {
            BindRow(insert.get(), row);
            RunOnce(insert.get());
          }
          if (one_transaction) RunOnce(commit.get());
        }
      });
}

bool CompareScan(Office& office) {
  constexpr const char* kScan =
      "SELECT PayableAmt,CapitalAmt,InterestAmt,Payment,LoanBal,FIntAmt FROM SchMast WHERE "
      "LoanID='S'";
  const auto statement = Prepared(office.bare(), kScan);
  return Compare(
      {fmt::format("{} rows of 6 amounts into memory", kScanned)},
      [&] { g_seen = static_cast<double>(office.layer().Query(kScan).RowCount()); },
      [&] {
        std::vector<std::vector<double>> rows;
        while (sqlite3_step(statement.get()) == SQLITE_ROW) {
          std::vector<double>& row = rows.emplace_back(6);
          for (int i = 0; i < 6; ++i) {
            row[static_cast<std::size_t>(i)] = sqlite3_column_double(statement.get(), i);
          }
        }
        sqlite3_reset(statement.get());
        g_seen = static_cast<double>(rows.size());
      });
}

bool CompareSum(Office& office) {
  constexpr const char* kSum =
      "SELECT SUM(PayableAmt-Payment),SUM(CapitalAmt) FROM SchMast WHERE LoanID='S' AND "
      "PayableAmt-Payment<>0";
  const auto statement = Prepared(office.bare(), kSum);
  return Compare(
      {fmt::format("exact sums of differences over {} rows", kScanned)},
      [&] { g_seen = static_cast<double>(office.layer().Query(kSum).RowCount()); },
      [&] {
        sqlite3_step(statement.get());
        g_seen = sqlite3_column_double(statement.get(), 0);
        sqlite3_reset(statement.get());
      });
}

bool Bench() {
  Office office;
  fmt::print("T-SQL through the embedded engine / bare SQLite\n");
  bool good = CompareScalar(office);
  good &= CompareInsert(office, "12 rows, each its own commit", 12, false, 1);
  good &= CompareInsert(office, "12 rows in one transaction", 12, true, 1);
  good &= CompareInsert(office, "360 rows in one transaction", 360, true, 3);
  good &= CompareScan(office);
  good &= CompareSum(office);
  return good;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
