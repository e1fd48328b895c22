// The recalculation of a cash book in which every balance is wrong, beside a plain program that
// reads the same rows in their order and writes as many balances with one prepared statement.
#include <fmt/format.h>

#include <stdexcept>

#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "cash/cash_recalculation.h"

namespace kaunter {
namespace {

struct Book : LargeOffice {
  explicit Book(int rows) : LargeOffice(1, 1) {
    Connection& main = session.Main();
    main.Execute("INSERT INTO CompMast (CompCode,CashInHand,CashInBank) VALUES ('BOOK',0,0)");
    main.BeginTrans();
    const char* const types[] = {"Cash In", "Bank In", "Cash Out", "Cash to Bank"};
    for (int i = 0; i < rows; ++i) {
      main.Execute(fmt::format(
          "INSERT INTO CashBook (CompCode,TranDate,TranType,TranDesc,TranAmt,CashBal,BankBal,"
          "CBType,CatCode) VALUES ('BOOK',DATEADD(day,{},'2020-01-01'),'{}','Movement {}',{}.{:02},"
          "0,0,'M','RENT')",
          (i * 7919) % 1500, types[i % 4], i, i % 900 + 1, i % 100));
    }
    main.CommitTrans();
  }
  void Spoil() {
    session.Main().Execute("UPDATE CashBook SET CashBal=-1,BankBal=-1 WHERE CompCode='BOOK'");
  }
};

bool Bench() {
  bool good = true;
  for (const int rows : {20'000, 200'000}) {
    Book book(rows);
    Plain plain(book.file());
    Measure measure{fmt::format("recalculation of {} rows / plain reads and writes", rows), 1.5, 3,
                    [&] { book.Spoil(); }};
    good &= Compare(
        measure,
        [&] {
          const CashBookReport report = RecalculateCashBook(
              book.session.Main(), "BOOK", {}, [](std::int64_t, std::int64_t) { return true; });
          if (report.differences.size() + 1000 < static_cast<std::size_t>(rows)) {
            throw std::runtime_error("too few rows changed");
          }
        },
        [&] {
          plain.Run({"BEGIN IMMEDIATE"});
          const auto rows_read = plain.Query(
              "SELECT DocID,TranDate,TranType,TranDesc,TranAmt,CashBal,BankBal FROM CashBook WHERE "
              "CompCode='BOOK' ORDER BY TranDate,DocID");
          const sql::SqliteStatement update = sql::Prepare(
              plain.handle(), "UPDATE CashBook SET CashBal=?2,BankBal=?3 WHERE DocID=?1", "");
          sqlite3_int64 balance = 0;
          for (const auto& row : rows_read) {
            ++balance;
            sqlite3_bind_text(update.get(), 1, row[0].c_str(), -1, SQLITE_STATIC);
            sqlite3_bind_int64(update.get(), 2, balance);
            sqlite3_bind_int64(update.get(), 3, balance);
            if (sqlite3_step(update.get()) != SQLITE_DONE) throw std::runtime_error("no update");
            sqlite3_reset(update.get());
          }
          plain.Run({"COMMIT"});
        });
  }
  return good;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
