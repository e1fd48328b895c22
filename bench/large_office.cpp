#include "bench/large_office.h"

#include <fmt/format.h>
#include <unistd.h>

#include <iterator>

#include "core/connect_sequence.h"
#include "core/log.h"
#include "core/new_office.h"
#include "core/values.h"
#include "platform/sql/data_source.h"

namespace kaunter {
namespace {

constexpr const char* kCompanies[] = {"HQ", "AB", "CD"};
constexpr const char* kSurnames[] = {"Tan",         "Lim",       "Wong",    "Ahmad bin",
                                     "Siti binti",  "Muthu a/l", "陈",      "Ong",
                                     "Nurul binti", "Chan",      "Raju a/l"};
constexpr const char* kNames[] = {"Ah Kow",   "Mei Ling", "Hassan", "Aminah", "Krishnan",
                                  "美玲",     "Kok Wai",  "Ismail", "Rosnah", "Subramaniam",
                                  "Siew Lan", "Farid",    "O'Brien"};
constexpr const char* kStatus[] = {"PINJAMAN SEMASA", "PINJAMAN TERTUNGGAK", "SELESAI"};

template <std::size_t N>
const char* Nth(const char* const (&list)[N], int i) {
  return list[static_cast<std::size_t>(i) % N];
}

std::string Date(int i) {
  return fmt::format("'{}-{:02}-{:02}'", 2010 + i % 14, i % 12 + 1, i % 28 + 1);
}

}  // namespace

// Beside the program: the system's temporary folder may lie in memory.
LargeOffice::LargeOffice(int customers, int loans, int schedule_rows)
    : folder_(std::filesystem::current_path() /
              fmt::format("bench_office-{}-{}", getpid(), customers)) {
  std::filesystem::create_directories(folder_);
  session.AppPath = folder_.string();
  session.clock.Set({2024, 1, 31, 9, 0, 0});
  session.CurrentUserID = "AMY";
  session.CurrentLevel = 4;
  session.CurrentCompCode = "HQ";
  MakeLogFolder(session);
  session.MainConn = OpenSqlite("MainConn", file(), true, session.clock);
  CreateEmptyOffice(session.Main());
  RunConnectSequence(session, desk, [](std::string_view) {});
  session.Main().BeginTrans();
  for (const char* company : {"AB", "CD"}) {
    session.Main().Execute(fmt::format(
        "INSERT INTO CompMast (CompCode,CompDesc) VALUES ('{0}','Company {0}')", company));
  }
  AddCustomers(customers);
  AddLoans(customers, loans);
  AddSchedules(schedule_rows);
  session.Main().CommitTrans();
}

LargeOffice::~LargeOffice() {
  session.MainConn.reset();
  session.LogsConn.reset();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

void LargeOffice::AddCustomers(int count) {
  for (int i = 1; i <= count; ++i) {
    session.Main().Execute(fmt::format(
        "INSERT INTO CustMast (CustID,CustName,CustNIC,CustOIC,CompCode,AreaCode,TrxDate,"
        "CustStatus,TotLoan,TotLoanBal) VALUES ('C{:06}',{},'{:06}-{:02}-{:04}','A{:07}','{}',"
        "'PERSONAL',{},'ACTIVE',{},{})",
        i, QuoteStr(fmt::format("{} {} {}", Nth(kSurnames, i), Nth(kNames, i / 7), i % 997)),
        i * 7 % 1000000, i % 16, i % 10000, i, Nth(kCompanies, i), Date(i), i % 5 == 0 ? 0 : 5000,
        i % 3 == 0 ? 0 : 1200));
  }
}

void LargeOffice::AddLoans(int customers, int count) {
  for (int i = 0; i < count; ++i) {
    const int customer = i % customers + 1;
    session.Main().Execute(fmt::format(
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,TrxDate,LoanAmt,LoanTerm,InstallmentAmt,"
        "LoanBal,PayOutAmt,LoanGroupID,LoanTypeID,DragLoan,LoanType,OldLoanCode) VALUES "
        "('C{0:06}-{1:03}','C{0:06}','{2}',{3},5000,'12',{4}.30,{5},5000,'{6}','MONTH','0',"
        "'Unsecured','OLD{7}')",
        customer, i / customers + 1, Nth(kCompanies, i % 10 == 0 ? customer + 1 : customer),
        Date(i), 400 + i % 300, i % 3 == 0 ? 0 : 1200, Nth(kStatus, i), i));
  }
}

void LargeOffice::AddSchedules(int rows) {
  Connection& main = session.Main();
  for (int row = 1; row <= rows; ++row) {
    const int months = row - rows + 1;
    main.Execute(fmt::format(
        "INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,Payment) SELECT "
        "{0},LoanID,CustID,DATEADD(month,{1},'2024-01-15'),430.30,400,CASE WHEN LoanBal=0 OR "
        "({1}<=0 AND NOT OldLoanCode LIKE '%[05]7') THEN 430.30 ELSE 0 END FROM LoanMast",
        row, months));
  }
  if (rows == 0) return;
  main.Execute(
      "UPDATE LoanMast SET AgreementNo='S'+OldLoanCode,NextDueDate=CASE WHEN OldLoanCode LIKE "
      "'%[05]7' THEN '2024-01-15' ELSE '2024-02-15' END");
  main.Execute("UPDATE LoanMast SET AgreementNo='' WHERE LoanID<'C000501'");
}

}  // namespace kaunter
