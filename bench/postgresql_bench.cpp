// What T-SQL costs on PostgreSQL through the layer, beside a plain program that prepares
// PostgreSQL's own statements through ODBC, on the same tables of the same server in the same run.
// Without a server (script/with-postgresql starts one) nothing is measured.
#include <fmt/format.h>
#include <sql.h>
#include <sqlext.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "platform/sql/data_source.h"
#include "platform/sql/odbc/odbc_text.h"

namespace kaunter {
namespace {

constexpr int kLoans = 500;
constexpr int kRows = 360;

// A plain program's connection.
class Bare {
 public:
  explicit Bare(const std::string& text) {
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_);
    SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION,
                  reinterpret_cast<SQLPOINTER>(static_cast<std::uintptr_t>(SQL_OV_ODBC3)), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, environment_, &link_);
    std::string writable = text;
    Check(SQLDriverConnect(link_, nullptr, sql::AsNarrow(writable.data()), SQL_NTS, nullptr, 0,
                           nullptr, SQL_DRIVER_NOPROMPT));
  }
  ~Bare() {
    SQLDisconnect(link_);
    SQLFreeHandle(SQL_HANDLE_DBC, link_);
    SQLFreeHandle(SQL_HANDLE_ENV, environment_);
  }
  Bare(const Bare&) = delete;
  Bare& operator=(const Bare&) = delete;

  SQLHSTMT Prepare(std::string text) {
    SQLHSTMT statement = SQL_NULL_HSTMT;
    SQLAllocHandle(SQL_HANDLE_STMT, link_, &statement);
    Check(SQLPrepare(statement, sql::AsNarrow(text.data()), SQL_NTS));
    return statement;
  }
  void Autocommit(bool on) {
    SQLSetConnectAttr(link_, SQL_ATTR_AUTOCOMMIT,
                      reinterpret_cast<SQLPOINTER>(static_cast<std::uintptr_t>(on)), 0);
  }
  void Commit() { Check(SQLEndTran(SQL_HANDLE_DBC, link_, SQL_COMMIT)); }

  static void Check(SQLRETURN result) {
    if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) {
      throw std::runtime_error("a bare call fails");
    }
  }

 private:
  SQLHENV environment_ = SQL_NULL_HENV;
  SQLHDBC link_ = SQL_NULL_HDBC;
};

void BindText(SQLHSTMT statement, SQLUSMALLINT number, const std::string& text) {
  Bare::Check(SQLBindParameter(statement, number, SQL_PARAM_INPUT, SQL_C_CHAR, SQL_VARCHAR, 50, 0,
                               const_cast<char*>(text.c_str()),
                               static_cast<SQLLEN>(text.size() + 1), nullptr));
}

volatile std::size_t g_seen = 0;

class Bench {
 public:
  explicit Bench(const std::string& server)
      : text_(server + ";Database=postgres"),
        layer_(OpenOdbc("MainConn", text_, clock_)),
        bare_(text_) {
    layer_->Execute(
        "create table LoanMast (LoanID nvarchar(50) NOT NULL PRIMARY KEY, CustID nvarchar(50), "
        "LoanBal decimal(18, 2))");
    layer_->Execute(
        "create table SchMast (SchID int NOT NULL, LoanID nvarchar(50) NOT NULL, DueDate datetime, "
        "PayableAmt decimal(18, 2), CapitalAmt decimal(18, 2), InterestAmt decimal(18, 2), "
        "Payment decimal(18, 2), LoanBal decimal(18, 2), PRIMARY KEY (LoanID, SchID))");
    layer_->BeginTrans();
    for (int i = 0; i < kLoans; ++i) {
      keys_.push_back(fmt::format("L{:06}", i));
      layer_->Execute(fmt::format("insert into LoanMast values ('{}','C1',{}.{:02})", keys_.back(),
                                  1000 + i, i % 100));
    }
    layer_->CommitTrans();
  }

  bool OneField() {
    std::vector<std::string> texts;
    for (const std::string& key : keys_) {
      texts.push_back(fmt::format("SELECT LoanBal FROM LoanMast WHERE LoanID='{}'", key));
    }
    SQLHSTMT statement = bare_.Prepare("SELECT \"LoanBal\" FROM \"LoanMast\" WHERE \"LoanID\" = ?");
    return Compare(
        {.what = "PostgreSQL: one field by key", .limit = 1.5},
        [&] {
          for (const std::string& text : texts) {
            g_seen = layer_->Query(text).RowCount();
          }
        },
        [&] {
          for (const std::string& key : keys_) {
            BindText(statement, 1, key);
            Bare::Check(SQLExecute(statement));
            Bare::Check(SQLFetch(statement));
            char field[64] = {};
            SQLLEN length = 0;
            Bare::Check(SQLGetData(statement, 1, SQL_C_CHAR, field, sizeof field, &length));
            g_seen = static_cast<std::size_t>(length);
            SQLFreeStmt(statement, SQL_CLOSE);
          }
        });
  }

  bool Schedule() {
    const auto rows = [](const std::string& loan) {
      std::vector<std::vector<std::string>> all;
      for (int i = 1; i <= kRows; ++i) {
        all.push_back({std::to_string(i), loan,
                       fmt::format("20{:02}-{:02}-{:02}", 24 + i / 12 % 30, i % 12 + 1, i % 28 + 1),
                       "276.92", "230.77", "46.15", "0.00", fmt::format("{}.55", 90000 - i)});
      }
      return all;
    };
    const auto own = rows("A1");
    const auto plain = rows("B1");
    std::vector<std::string> texts;
    for (const auto& row : own) {
      texts.push_back(fmt::format(
          "INSERT INTO SchMast (SchID,LoanID,DueDate,PayableAmt,CapitalAmt,InterestAmt,Payment,"
          "LoanBal) VALUES ({},'{}','{}',{},{},{},{},{})",
          row[0], row[1], row[2], row[3], row[4], row[5], row[6], row[7]));
    }
    SQLHSTMT remove = bare_.Prepare("DELETE FROM \"SchMast\" WHERE \"LoanID\" = 'B1'");
    SQLHSTMT insert = bare_.Prepare(
        "INSERT INTO \"SchMast\" (\"SchID\",\"LoanID\",\"DueDate\",\"PayableAmt\",\"CapitalAmt\","
        "\"InterestAmt\",\"Payment\",\"LoanBal\") VALUES (?::int,?,?::timestamp,?::numeric,"
        "?::numeric,?::numeric,?::numeric,?::numeric)");
    return Compare(
        {.what = "PostgreSQL: a schedule of 360 rows saved in one transaction", .limit = 1.5},
        [&] {
          layer_->BeginTrans();
          layer_->Execute("DELETE FROM SchMast WHERE LoanID='A1'");
          for (const std::string& text : texts) layer_->Execute(text);
          layer_->CommitTrans();
        },
        [&] {
          bare_.Autocommit(false);
          Bare::Check(SQLExecute(remove));
          for (const auto& row : plain) {
            for (std::size_t i = 0; i < row.size(); ++i) {
              BindText(insert, static_cast<SQLUSMALLINT>(i + 1), row[i]);
            }
            Bare::Check(SQLExecute(insert));
          }
          bare_.Commit();
          bare_.Autocommit(true);
        });
  }

 private:
  std::string text_;
  Clock clock_;
  std::unique_ptr<Connection> layer_;
  Bare bare_;
  std::vector<std::string> keys_;
};

bool Run() {
  const char* server = std::getenv("KAUNTER_POSTGRESQL");
  if (server == nullptr) {
    std::cout << "no PostgreSQL server: script/with-postgresql starts one\n";
    return true;
  }
  Bench bench(server);
  const bool field = bench.OneField();
  return bench.Schedule() && field;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Run); }
