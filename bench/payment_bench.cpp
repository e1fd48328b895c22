// The save of a payment with its rebuild, on a loan of 12, 60 and 360 rows with about as many
// payments; beside the statements that it sends, run by a plain program that keeps them prepared.
#include <fmt/format.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "collections/payment_store.h"
#include "loans/rebuild.h"
#include "loans/rebuild_and_tell.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

constexpr const char* kLoan = "C000500-001";
constexpr const char* kCustomer = "C000500";

// A personal loan among a thousand others, each payment a little less than a row.
struct PayingOffice : LargeOffice {
  PayingOffice(int number, int rows) : LargeOffice(1'000 + number, 1'000, 12) {
    Connection& main = session.Main();
    main.BeginTrans();
    main.Execute(fmt::format("DELETE FROM SchMast WHERE LoanID='{}'", kLoan));
    main.Execute(
        fmt::format("INSERT INTO NumberMast (CustID,LoanNo,PaymentNo) VALUES ('{}','001','{:03}')",
                    kLoan, rows));
    for (int row = 1; row <= rows; ++row) {
      main.Execute(fmt::format(
          "INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt) "
          "VALUES ({0},'{1}','{2}',DATEADD(month,{0},'2000-01-15'),110,100,10)",
          row, kLoan, kCustomer));
      if (row == rows) break;
      main.Execute(fmt::format(
          "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,PayAmt,InstalAmt) VALUES "
          "('{0}-{1:03}','{0}','{2}','HQ','2024-01-30',100,100)",
          kLoan, row, kCustomer));
    }
    main.CommitTrans();
    if (!RebuildLoan(main, kLoan).done) throw std::runtime_error("no rebuild");
  }

  void Save() {
    Payment payment;
    payment.LoanID = kLoan;
    payment.CustID = kCustomer;
    payment.CompCode = "HQ";
    payment.PayDate = "31-01-2024";
    payment.PayAmt = payment.InstalAmt = Money::FromInteger(50);
    Transaction transaction(session.Main());
    CreatePayment(session, payment);
    transaction.Commit();
    RebuildAndTell(session, desk, kLoan, kCustomer);
  }
};

// The freeing and tying of a cheque goes as one text of two statements.
void Split(std::string_view text, std::vector<std::string>& statements) {
  const std::size_t end = text.find(";Update ");
  statements.emplace_back(text.substr(0, end));
  if (end != std::string_view::npos) statements.emplace_back(text.substr(end + 1));
}

// What each of the saves sends, one payment behind the other, in SQLite's words.
std::vector<std::vector<std::string>> Sent(int rows, int saves) {
  PayingOffice recorded(0, rows);
  const PayingOffice played(1, rows);
  std::vector<std::vector<std::string>> all;
  for (int i = 0; i < saves; ++i) {
    std::vector<std::string> sent;
    recorded.session.Main().SetTrace(
        [&](std::string_view, std::string_view sql) { Split(sql, sent); });
    recorded.Save();
    recorded.session.Main().SetTrace({});
    all.push_back(InPlainWords(sent, played.file()));
  }
  return all;
}

bool SaveOn(int rows, int runs) {
  Measure measure{fmt::format("save on {} rows and payments / plain", rows), 1.5, runs};
  const auto words = Sent(rows, measure.runs + 1);
  fmt::print("a save sends {} statements\n", words[0].size());
  PayingOffice ours(2, rows);
  const PayingOffice theirs(3, rows);
  Plain plain(theirs.file());
  std::size_t turn = 0;
  std::vector<sql::SqliteStatement> prepared;
  measure.prepare = [&] {
    if (turn < words.size()) prepared = plain.Prepare(words[turn]);
  };
  return Compare(
      measure, [&] { ours.Save(); },
      [&] {
        for (const auto& statement : prepared) plain.Query(statement.get());
        ++turn;
      });
}

bool Bench() {
  const bool a_year = SaveOn(12, 30);
  const bool five_years = SaveOn(60, 10);
  const bool thirty_years = SaveOn(360, 4);
  return a_year && five_years && thirty_years;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
