// "Verify ledger" over 10,000 loans, beside a plain program that reads the same rows once, table by
// table, and does nothing with them.
#include <fmt/format.h>

#include <stdexcept>
#include <string_view>

#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "collections/ledger_check.h"
#include "loans/rebuild.h"

namespace kaunter {
namespace {

constexpr int kRows = 24;
constexpr int kPayments = 12;
constexpr int kDays = 20;

// Personal and flexi loans of one company, half way through their schedule, some late.
struct PaidOffice : LargeOffice {
  explicit PaidOffice(int loans) : LargeOffice(1'000, loans) {
    Connection& main = session.Main();
    main.BeginTrans();
    main.Execute(
        "UPDATE LoanMast SET CompCode='HQ',LoanStatus='ACTIVE',LoanAmt=9600,InsRate=12,"
        "InstallmentAmt2=451.90,DragLoan=CASE WHEN OldLoanCode LIKE '%[0-4]' THEN '0' ELSE '1' "
        "END");
    for (int row = 1; row <= kRows; ++row) {
      main.Execute(fmt::format(
          "INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt) "
          "SELECT {0},LoanID,CustID,DATEADD(month,{0},'2023-01-15'),448,400,48 FROM LoanMast",
          row));
    }
    for (int payment = 1; payment <= kPayments; ++payment) {
      main.Execute(fmt::format(
          "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,PayAmt,InstalAmt,IntAmt) "
          "SELECT LoanID+'-{0:03}',LoanID,CustID,'HQ',DATEADD(month,{0},'2023-01-20'),450,450,"
          "{1} FROM LoanMast",
          payment, payment % 4 == 0 ? 2 : 0));
    }
    for (int day = 1; day <= kDays; ++day) {
      main.Execute(
          fmt::format("INSERT INTO ChargeMast (ChargeID,LoanID,TrxDate,ChargeAmt,PType) SELECT "
                      "LoanID+'-B{0:02}',LoanID,'2024-01-{0:02}',0.21,'Batch' FROM LoanMast",
                      day));
    }
    const Recordset ids = main.Query("SELECT LoanID FROM LoanMast");
    for (const auto& row : ids.rows()) {
      if (!RebuildLoan(main, row[0].ToText()).done) throw std::runtime_error("no rebuild");
    }
    main.CommitTrans();
    const Recordset customers = main.Query("SELECT CustID FROM CustMast");
    for (const auto& row : customers.rows()) RebuildCustomer(main, row[0].ToText());
  }
};

// Steps over the rows and takes each field as it is stored; keeps nothing.
std::size_t ReadOnce(Plain& plain, const char* statement) {
  const sql::SqliteStatement prepared = sql::Prepare(plain.handle(), statement, statement);
  std::size_t read = 0;
  while (sqlite3_step(prepared.get()) == SQLITE_ROW) {
    for (int i = 0; i < sqlite3_column_count(prepared.get()); ++i) {
      if (sqlite3_column_type(prepared.get(), i) == SQLITE_TEXT) {
        read +=
            std::string_view(reinterpret_cast<const char*>(sqlite3_column_text(prepared.get(), i)))
                .size();
      } else {
        read += sqlite3_column_double(prepared.get(), i) > 0;
      }
    }
  }
  return read;
}

bool Bench() {
  constexpr int kLoans = 10'000;
  PaidOffice office(kLoans);
  Plain plain(office.file());
  Measure measure{"verify 10,000 loans / plain reading", 3, 5};
  return Compare(
      measure,
      [&] {
        const LedgerReport report =
            CheckCompany(office.session.Main(), "HQ", [](const LedgerProgress&) { return true; });
        if (report.loans != kLoans || !report.faults.empty()) {
          throw std::runtime_error(
              fmt::format("{} loans, {} faults", report.loans, report.faults.size()));
        }
      },
      [&] {
        for (const char* statement :
             {"SELECT LoanID,CustID,DragLoan,SpecialSch,InsRate,InstallmentAmt2,LoanStatus,LoanAmt,"
              "LoanBal,CloseBal,TotPay,TotInt,TotCharge,TotCollectorAmt,TotDiscAmt,PayExtra,"
              "TotLoanInt,NextDueDate,LastPaymentDate,LastPaymentNo FROM LoanMast WHERE "
              "CompCode='HQ' ORDER BY LoanID",
              "SELECT LoanID,SchID,DueDate,PayableAmt,CapitalAmt,InterestAmt,Payment,"
              "CapitalPayment,InterestPayment,PayExtra,LoanBal FROM SchMast ORDER BY LoanID,SchID",
              "SELECT LoanID,PayID,PayDate,IntAmt,ChargeAmt,DiscAmt,TopTerm,TopAmt,InstalAmt,"
              "PayExtra,Memo5,OldLoanBal,NewLoanBal,IntPay,CapPay FROM PaymentMast ORDER BY "
              "LoanID,PayID",
              "SELECT LoanID,ChargeID,ChargeAmt,PType FROM ChargeMast ORDER BY LoanID"}) {
          if (ReadOnce(plain, statement) == 0) throw std::runtime_error("nothing read");
        }
      });
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
