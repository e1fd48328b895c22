// The ledger of random loans with random payments, of each scheme: it adds up row by row, and over
// all its rows to what the loan has stored. KAUNTER_SEED repeats a run.
#include <map>

#include "loans/rebuild.h"
#include "tests/loans/stored_loan.h"
#include "tests/reporting/report_office.h"

namespace kaunter {
namespace {

using Line = std::map<std::string, std::string>;

std::vector<Line> LedgerOf(Connection& main, const std::string& file) {
  ReportJob job;
  job.Connect = &main;
  job.ReportFileName = test::SourceDir() + "/reports/" + file;
  const auto rows = CsvRows(ReportToCsv(RunWholeReport(job)));
  std::vector<Line> lines;
  for (std::size_t row = 1; row < rows.size(); ++row) {
    for (std::size_t i = 0; i < rows[0].size(); ++i) {
      if (i == 0) lines.emplace_back();
      lines.back()[rows[0][i]] = rows[row][i];
    }
  }
  return lines;
}

Money In(const Line& line, const char* column) {
  const auto found = line.find(column);
  return found == line.end() || found->second.empty() ? Money() : Money::FromText(found->second);
}

TEST(LedgerPaper, EachRowAddsUp) {
  const std::uint64_t seed = FromEnvironment("KAUNTER_SEED", 11);
  SCOPED_TRACE(fmt::format("KAUNTER_SEED={}", seed));
  Random random(seed);
  Office office(Office::State::patched);
  Connection& main = office.session.Main();
  const auto stored = [&](const char* what) {
    return Money::FromText(
        ScalarQuery(main, fmt::format("SELECT isnull(SUM({}), 0) FROM PaymentMast", what)));
  };
  int top_ups = 0;
  for (int i = 0; i < 50; ++i) {
    const model::StoredLoan loan = DrawLoan(random, "L");
    for (const char* table : {"LoanMast", "SchMast", "SchMast2", "PaymentMast"}) {
      office.Run(fmt::format("DELETE FROM {}", table));
    }
    office.Run(fmt::format(
        "INSERT INTO LoanMast (LoanID,CompCode,TrxDate,DragLoan,LoanAmt,InsRate,InstallmentAmt2,"
        "LoanBal) VALUES ('L','HQ','1999-12-31','{}',{},{},{},0)",
        loan.scheme, Text(loan.amount), Money::FromTenThousandths(loan.rate4).ToText(),
        Text(loan.instalment)));
    StoreRows(main, "SchMast", "L", loan.rows);
    StoreRows(main, "SchMast2", "L", loan.rows);
    for (const model::Payment& payment : loan.payments) StorePayment(main, "L", payment);
    if (loan.payments.empty()) continue;
    ASSERT_TRUE(RebuildLoan(main, "L").done);
    const bool personal = loan.scheme == "0";
    const Money owed = Money::FromText(ScalarQuery(main, "SELECT LoanBal FROM LoanMast"));

    Money balance;
    std::map<std::string, Money> sums;
    for (const Line& line : LedgerOf(main, "LejarAkuan.rpt")) {
      EXPECT_EQ(In(line, "Jumlah besar"), balance);
      const Money lowered = In(line, "Pokok") + (personal ? In(line, "Faedah") : Money());
      balance = balance + In(line, "Tambahan") - lowered;
      EXPECT_EQ(In(line, "Baki"), balance);
      for (const char* column : {"Bayaran", "Pokok", "Faedah"}) sums[column] += In(line, column);
      if (line.at("Catatan") == "Tambahan pinjaman") ++top_ups;
    }
    EXPECT_EQ(balance, owed);
    EXPECT_EQ(sums["Bayaran"], stored("PayAmt"));
    EXPECT_EQ(sums["Faedah"], stored("IntPay"));
    EXPECT_EQ(sums["Pokok"], personal ? stored("PayAmt-IntPay") : stored("CapPay"));
    EXPECT_EQ(In(LedgerOf(main, "LejarAkuan60.rpt").back(), "Baki"), owed);
  }
  EXPECT_GT(top_ups, 0);
}

}  // namespace
}  // namespace kaunter
