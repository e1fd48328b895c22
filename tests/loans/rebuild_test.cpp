// The rebuild on small loans worked out by hand, and what it does at its borders. The random loans
// stand in rebuild_property_test.cpp.
#include "loans/rebuild.h"

#include <gtest/gtest.h>

#include "loans/rebuild_and_tell.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

const std::string kId = "HQ0001-001";

class RebuildTest : public ::testing::Test, protected LoanOffice {
 protected:
  std::string Row(int sch_id) {
    return Lines(fmt::format(
        "SELECT PayableAmt,CapitalAmt,InterestAmt,Payment,CapitalPayment,InterestPayment,LoanBal,"
        "PayExtra FROM SchMast WHERE SchID={}",
        sch_id));
  }
  void Rebuild() {
    const Rebuilt rebuilt = RebuildLoan(main(), kId);
    ASSERT_TRUE(rebuilt.done) << rebuilt.failure.english;
  }
};

// 10,000 at 12 per cent over 12 months: 101.92 of interest in January, 9,213.43 left after it.
// 1,000 of extra capital on the day of the first instalment leaves 8,213.43, on which 29 days of
// February are 78.31; 888.49 less that is 810.18, and 7,403.25 are left for March: 75.45.
TEST_F(RebuildTest, ExtraCapitalCutsTheRowsAhead) {
  MakeLoan(kId, LoanScheme::kFlexi, "10000", "12");
  Pay(kId + "-001", kId, "2024-01-31", "888.49", "1000");
  Rebuild();
  EXPECT_EQ(Row(1), "888.49 786.57 101.92 888.49 786.57 101.92 9213.43 0\n");
  EXPECT_EQ(Row(2), "888.49 810.18 78.31 0 0 0 8213.43 1000\n");
  EXPECT_EQ(Row(3), "888.49 813.04 75.45 0 0 0 8213.43 0\n");
  EXPECT_EQ(Lines("SELECT OldLoanBal,NewLoanBal,IntPay,CapPay FROM PaymentMast"),
            "10000 8213.43 101.92 1786.57\n");
  EXPECT_EQ(Lines("SELECT LoanBal,TotPay,PayExtra,NextDueDate,LastPaymentDate,LastPaymentNo FROM "
                  "LoanMast"),
            "8213.43 888.49 1000 2024-02-29 2024-01-31 HQ0001-001-001\n");
}

// 1,200 at 12 per cent over 12 months: rows of 112 with 12 of interest.
TEST_F(RebuildTest, APersonalLoanPaysInterestBeforeCapitalAndBackDatedPaymentsByTheirNumber) {
  MakeLoan(kId, LoanScheme::kPersonal, "1200", "12");
  Pay(kId + "-001", kId, "2024-03-01", "12");
  Pay(kId + "-002", kId, "2024-02-01", "150.10");  // dated before the one above
  Rebuild();
  EXPECT_EQ(Row(1), "112 100 12 112 100 12 1232 0\n");
  EXPECT_EQ(Row(2), "112 100 12 50.1 38.1 12 1181.9 0\n");
  EXPECT_EQ(Row(12), "112 100 12 0 0 0 1181.9 0\n");
  EXPECT_EQ(Lines("SELECT OldLoanBal,NewLoanBal,IntPay,CapPay FROM PaymentMast ORDER BY PayID"),
            "1344 1332 12 0\n1332 1181.9 12 138.1\n");
  EXPECT_EQ(Lines("SELECT LoanBal,LastPaymentDate FROM LoanMast"), "1181.9 2024-02-01\n");
}

// The index is the one way to them that needs no sorting, and it tells them turned round.
TEST_F(RebuildTest, RowsDueOnOneDayGoByTheirNumberHoweverTheServerTellsThem) {
  MakeLoan(kId, LoanScheme::kPersonal, "1200", "12");
  office.Run(
      "UPDATE SchMast SET DueDate='2024-01-31' WHERE SchID <= 3;"
      "CREATE INDEX ByDay ON SchMast (LoanID,DueDate,SchID DESC)");
  ASSERT_EQ(Lines("SELECT TOP 1 SchID FROM SchMast WHERE LoanID='HQ0001-001' ORDER BY DueDate"),
            "3\n");
  Pay(kId + "-001", kId, "2024-02-01", "120");
  Rebuild();
  EXPECT_EQ(Row(1), "112 100 12 112 100 12 1232 0\n");
  EXPECT_EQ(Row(2), "112 100 12 8 0 8 1224 0\n");
  EXPECT_EQ(Row(3), "112 100 12 0 0 0 1224 0\n");
}

TEST_F(RebuildTest, AClosedLoanStaysClosed) {
  MakeLoan(kId, LoanScheme::kPersonal, "1200", "12");
  Pay(kId + "-001", kId, "2024-02-01", "112");
  office.Run("UPDATE LoanMast SET LoanStatus='CLOSED',CloseBal=5,LoanBal=0");
  Rebuild();
  EXPECT_EQ(Lines("SELECT LoanStatus,LoanBal,CloseBal FROM LoanMast"), "CLOSED 0 1232\n");
  ASSERT_TRUE(RebuildCustomer(main(), "HQ0001").done);
  EXPECT_EQ(Lines("SELECT TotLoan,TotLoanBal,TotTopUpAmt FROM CustMast"), "1200 0 5\n");
}

TEST_F(RebuildTest, ALoanThatIsNotThereIsNoFailure) {
  const Rebuilt rebuilt = RebuildLoan(main(), "HQ0001-404");
  EXPECT_FALSE(rebuilt.done);
  EXPECT_EQ(rebuilt.failure.english, "");
  EXPECT_TRUE(RebuildCustomer(main(), "HQ0404").done);
}

TEST_F(RebuildTest, AFailureIsTrappedToldAndRepairedByTheNextRun) {
  MakeLoan(kId, LoanScheme::kFlexi, "1000", "3");
  Pay(kId + "-001", kId, "2024-01-31", "340", "100");
  Rebuild();
  const std::string whole = Stored();
  bool reached = true;
  int at = 1;
  for (; reached && at < 200; ++at) {
    Rebuilt rebuilt;
    reached = FailAt(at, [&] { rebuilt = RebuildLoan(main(), kId); });
    EXPECT_EQ(rebuilt.done, !reached) << at;
    EXPECT_EQ(rebuilt.failure.english,
              reached ? "an error occur during rebuild loan, Please contact software vendor\nthe "
                        "disk is full"
                      : "");
    Rebuild();
    ASSERT_EQ(Stored(), whole) << at;
  }
  EXPECT_GT(at, 20);
}

TEST_F(RebuildTest, AfterAPaymentBothRunAndEachFailureIsToldOnce) {
  MakeLoan(kId, LoanScheme::kPersonal, "1200", "12");
  Pay(kId + "-001", kId, "2024-02-01", "112");
  RebuildAndTell(office.session, desk, kId, "HQ0001");
  EXPECT_TRUE(desk.messages.empty());
  EXPECT_EQ(Lines("SELECT TotLoanBal FROM CustMast"), "1232\n");
  FailAt(1, [this] { RebuildAndTell(office.session, desk, kId, "HQ0001"); });
  FailAt(3, [this] { RebuildAndTell(office.session, desk, kId, "HQ0001"); });
  ASSERT_EQ(desk.messages.size(), 2u);
  EXPECT_EQ(desk.messages[0], "Rebuild Loan: the disk is full");
  EXPECT_EQ(desk.messages[1],
            "Rebuild Loan: an error occur during rebuild loan, Please contact software "
            "vendor\nthe disk is full");
  EXPECT_FALSE(main().InTransaction());
  // The customer's own transaction rolls back.
  const std::string before = Stored();
  office.session.MainConn->SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("UPDATE CustMast")) throw SqlError(1105, "the disk is full");
  });
  RebuildAndTell(office.session, desk, kId, "HQ0001");
  office.session.MainConn->SetFaultHook({});
  EXPECT_EQ(desk.messages.back(),
            "Rebuild Customer: an error occur during rebuild customer, Please contact software "
            "vendor");
  // The message of the customer says no cause; the log does.
  EXPECT_TRUE(office.Log().back().ends_with(
      "Rebuild Customer HQ0001 - error Rollback 1105 - the disk is full"));
  EXPECT_TRUE(office.Log()
                  .at(office.Log().size() - 2)
                  .ends_with("Rebuild Loan HQ0001-001 - error Rollback 1105 - the disk is full"));
  EXPECT_EQ(Stored(), before);
  EXPECT_FALSE(main().InTransaction());
}

// 28-day months of February are counted as 29 in every year divisible by 4, 2100 included; the rate
// takes part with two decimals: 12.345 as 12.35.
TEST_F(RebuildTest, ARowsInterestCountsTheHousesDaysAndTwoDecimalsOfTheRate) {
  MakeLoan(kId, LoanScheme::kFlexi, "100000", "2");
  office.Run("UPDATE LoanMast SET InsRate=12.345");
  office.Run("UPDATE SchMast SET DueDate='2100-02-28' WHERE SchID=1");
  office.Run("UPDATE SchMast SET DueDate='2100-03-28' WHERE SchID=2");
  Rebuild();
  // 29 x 12.35 x 1000 / 365.
  EXPECT_EQ(Lines("SELECT InterestAmt FROM SchMast WHERE SchID=1"), "981.23\n");
}

}  // namespace
}  // namespace kaunter
