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
  const auto act = [this] {
    main().Execute("UPDATE PaymentMast SET Bank='saved'");
    RebuildAndTell(office.session, desk, kId, "HQ0001");
  };
  FailAt(2, act);
  FailAt(4, act);
  ASSERT_EQ(desk.messages.size(), 2u);
  // The payment before it is kept, and told so.
  const std::string kept =
      "\nWhat was saved before stays saved, only the balances are behind. Mend the cause, then "
      "choose Recalculate Loan Balance: it lists what is behind and rebuilds it. Do not enter it "
      "again.";
  EXPECT_EQ(desk.messages[0], "Rebuild Loan: the disk is full" + kept);
  EXPECT_EQ(desk.messages[1],
            "Rebuild Loan: an error occur during rebuild loan, Please contact software "
            "vendor\nthe disk is full" +
                kept);
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
            "vendor" +
                kept);
  // The message of the customer says no cause; the log does.
  EXPECT_TRUE(office.Log().back().ends_with(
      "Rebuild Customer HQ0001 - error Rollback 1105 - the disk is full"));
  EXPECT_TRUE(office.Log()
                  .at(office.Log().size() - 2)
                  .ends_with("Rebuild Loan HQ0001-001 - error Rollback 1105 - the disk is full"));
  EXPECT_EQ(Stored(), before);
  EXPECT_FALSE(main().InTransaction());
}

}  // namespace
}  // namespace kaunter
