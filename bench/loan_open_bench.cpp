// A loan on the screen: what opening one of 360 instalments and 500 payments costs beside the
// statements that it sends, run by a plain program that keeps them prepared; and how it grows with
// the office.
#include <fmt/format.h>

#include <string>
#include <vector>

#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "loans/new_loan_frm.h"

namespace kaunter {
namespace {

constexpr const char* kLoan = "C000500-001";
constexpr const char* kOther = "C000501-001";
constexpr int kInstalments = 360;
constexpr int kPayments = 500;

void AddRows(Connection& main, const std::string& loan) {
  main.BeginTrans();
  main.Execute(fmt::format("DELETE FROM SchMast WHERE LoanID='{}'", loan));
  for (int i = 1; i <= kInstalments; ++i) {
    const bool paid = i <= 100;
    main.Execute(fmt::format(
        "INSERT INTO SchMast (SchID,LoanID,DueDate,PayableAmt,CapitalAmt,InterestAmt,Payment,"
        "LoanBal) VALUES ({},'{}','{:04}-{:02}-28',1234.56,1000.06,234.5,{},123456.78)",
        i, loan, 2010 + (i - 1) / 12, 1 + (i - 1) % 12, paid ? "1234.56" : "0"));
  }
  for (int i = 1; i <= kPayments; ++i) {
    main.Execute(fmt::format(
        "INSERT INTO PaymentMast (PayID,LoanID,PayDate,PayAmt,CapPay,IntPay,NewLoanBal,ReceiptNo,"
        "Memo1) VALUES ('{0}-{1:03}','{0}','2015-06-15',246.91,200.01,46.9,100000,'R{1:05}',"
        "'over the counter')",
        loan, i));
  }
  main.Execute(fmt::format("UPDATE LoanMast SET LoanStatus='ACTIVE' WHERE LoanID='{}'", loan));
  main.CommitTrans();
}

// As a clerk does it: a key typed into the box, which is then left.
void LoadLoan(NewLoanFrm& screen, const char* loan) {
  screen.LoanID.Enter();
  screen.LoanID.Type(loan);
  screen.LoanID.Leave();
}

// In turn two loans, so that the screen loads each anew.
void LoadSome(NewLoanFrm& screen) {
  for (int i = 0; i < 4; ++i) LoadLoan(screen, i % 2 == 0 ? kLoan : kOther);
}

// What a load sends, in SQLite's words.
std::vector<std::string> Sent(LargeOffice& office, NewLoanFrm& screen, const char* loan) {
  std::vector<std::string> sent;
  office.session.Main().SetTrace(
      [&](std::string_view, std::string_view sql) { sent.emplace_back(sql); });
  LoadLoan(screen, loan);
  office.session.Main().SetTrace({});
  return InPlainWords(sent, office.file());
}

bool CompareLoad(LargeOffice& office, NewLoanFrm& screen) {
  Plain plain(office.file());
  std::vector<std::vector<sql::SqliteStatement>> sides;
  for (const char* loan : {kLoan, kOther}) {
    sides.push_back(plain.Prepare(Sent(office, screen, loan)));
  }
  fmt::print("opening a loan sends {} statements\n", sides[0].size());
  return Compare(
      {"open a loan, 4 times / plain", 3.0, 30}, [&] { LoadSome(screen); },
      [&] {
        for (std::size_t i = 0; i < 4; ++i) {
          for (const auto& statement : sides[i % 2]) plain.Query(statement.get());
        }
      });
}

bool Bench() {
  LargeOffice small(1'000, 2'000);
  LargeOffice large(50'000, 100'000);
  for (LargeOffice* office : {&small, &large}) {
    for (const char* loan : {kLoan, kOther}) AddRows(office->session.Main(), loan);
  }
  NewLoanFrm small_screen(small.session, small.desk);
  NewLoanFrm large_screen(large.session, large.desk);
  for (NewLoanFrm* screen : {&small_screen, &large_screen}) {
    screen->Load();
    LoadSome(*screen);  // the repayment text is built at the first opening
    if (screen->vsd3.RowCount() != kInstalments || screen->vsd4.RowCount() != kPayments) {
      fmt::print("the loan did not come in\n");
      return false;
    }
  }
  fmt::print("{} instalments and {} payments, among 100,000 loans\n", kInstalments, kPayments);
  bool good = CompareLoad(large, large_screen);
  good &= Compare(
      {"growth of an opening from 2,000 loans", 1.2}, [&] { LoadSome(large_screen); },
      [&] { LoadSome(small_screen); });
  good &= Report("open two loans", 50, 15,
                 [&] { LoadLoan(large_screen, kLoan), LoadLoan(large_screen, kOther); });
  return good;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
