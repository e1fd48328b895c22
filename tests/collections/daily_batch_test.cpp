#include "collections/daily_batch.h"

#include <fmt/format.h>

#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

constexpr DateTime kToday{2024, 1, 31};
// 1,000.00 open at 18 per cent a year is 0.49315 a day.
constexpr const char* kLoan =
    "INSERT INTO LoanMast "
    "(LoanID,CustID,CompCode,LoanStatus,PayOutAmt,LateChargePerDay,OfferDays,LoanBal,InsRate) "
    "VALUES ('L1','C1','AB','ACTIVE',5000,18,0,5000,12);INSERT INTO SchMast "
    "(SchID,LoanID,CustID,DueDate,PayableAmt,Payment) VALUES (1,'L1','C1','2024-01-31',1000,0)";

std::string Charges(Connection& main) {
  return PlainLines(main, "SELECT ChargeID,ChargeAmt FROM ChargeMast ORDER BY ChargeID");
}

// What the batch must leave the same however often it was disturbed.
std::string State(Connection& main) {
  return Charges(main) +
         PlainLines(main, "SELECT LoanID,TotCollectorAmt,TotInt FROM LoanMast ORDER BY LoanID") +
         PlainLines(main, "SELECT Value FROM Systemast WHERE Param='DailyBatchDate'");
}

BatchOutcome Post(Connection& main, const DateTime& date) {
  return RunDailyBatch(main, date, "DailyBatch", {});
}

class DailyBatchTest : public ::testing::Test {
 protected:
  Connection& main() { return office.session.Main(); }
  void SetLast(const std::string& value) {
    office.Run("INSERT INTO Systemast (Param,Value) VALUES ('DailyBatchDate','" + value + "')");
  }
  std::string Noted() {
    return office.Scalar("SELECT Value FROM Systemast WHERE Param='DailyBatchDate'");
  }
  // Five loans of three rows each, due on 29, 30 and 31 January.
  void AddLoans() {
    for (int loan = 1; loan <= 5; ++loan) {
      office.Run(
          fmt::format("INSERT INTO LoanMast (LoanID,LoanStatus,PayOutAmt,LateChargePerDay,LoanBal) "
                      "VALUES ('M{}','ACTIVE',1,18,1)",
                      loan));
      for (int row = 1; row <= 3; ++row) {
        office.Run(
            fmt::format("INSERT INTO SchMast (SchID,LoanID,DueDate,PayableAmt,Payment) VALUES "
                        "({},'M{}','2024-01-{}',{},0)",
                        row, loan, 28 + row, 1000 * loan));
      }
    }
  }
  Office office{Office::State::patched};
};

TEST_F(DailyBatchTest, WhichRowsTakeACharge) {
  const std::string charged = "L1-1-B20240131 0.49\n";
  const std::string none;
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {"due on the day", "", charged},
      {"due tomorrow", "UPDATE SchMast SET DueDate='2024-02-01'", none},
      {"the last day of grace", "UPDATE LoanMast SET OfferDays=1", none},
      {"grace is over", "UPDATE LoanMast SET OfferDays=3;UPDATE SchMast SET DueDate='2024-01-28'",
       charged},
      {"no days of grace on record", "UPDATE LoanMast SET OfferDays=null", charged},
      {"days of grace below none",
       "UPDATE LoanMast SET OfferDays=-5;UPDATE SchMast SET DueDate='2024-02-01'", none},
      {"part paid", "UPDATE SchMast SET Payment=600", "L1-1-B20240131 0.2\n"},
      {"paid", "UPDATE SchMast SET Payment=1000", none},
      {"over-paid", "UPDATE SchMast SET Payment=1010", none},
      {"next to nothing open", "UPDATE SchMast SET Payment=999.99", none},
      {"a row left open behind extra capital", "UPDATE LoanMast SET LoanBal=0", none},
      {"a term end that is worth nothing a day",
       "UPDATE LoanMast SET EndTermIntDate='2024-01-01',LoanBal=0.1", none},
      {"no rate", "UPDATE LoanMast SET LateChargePerDay=0", none},
      {"a rate below none", "UPDATE LoanMast SET LateChargePerDay=-18", none},
      {"half a sen goes to even",
       "UPDATE LoanMast SET LateChargePerDay=1;UPDATE SchMast SET PayableAmt=182.5", none},
      {"and up to even",
       "UPDATE LoanMast SET LateChargePerDay=1;UPDATE SchMast SET PayableAmt=547.5",
       "L1-1-B20240131 0.02\n"},
      {"not paid out", "UPDATE LoanMast SET PayOutAmt=0", none},
      {"closed", "UPDATE LoanMast SET LoanStatus='CLOSED'", none},
      {"a loan in legal hands", "UPDATE LoanMast SET LoanStatus='LEGAL'", none},
      {"interest stops today", "UPDATE LoanMast SET StopInt='2024-01-31'", none},
      {"interest stops tomorrow", "UPDATE LoanMast SET StopInt='2024-02-01'", charged},
      {"an unset stop", "UPDATE LoanMast SET StopInt='1900-01-01'", charged},
      {"the term ends today", "UPDATE LoanMast SET EndTermIntDate='2024-01-31'",
       "L1-T20240131 1.64\n"},  // 5,000.00 at 12 per cent: 1.64383
      {"the term ends tomorrow", "UPDATE LoanMast SET EndTermIntDate='2024-02-01'", charged},
      {"an unset end of term", "UPDATE LoanMast SET EndTermIntDate='1900-01-01'", charged},
      {"past the term and stopped",
       "UPDATE LoanMast SET EndTermIntDate='2024-01-01',StopInt='2024-01-31'", none},
      {"past the term with nothing owed",
       "UPDATE LoanMast SET EndTermIntDate='2024-01-01',LoanBal=0", none},
  };
  for (const auto& [what, change, charges] : cases) {
    SCOPED_TRACE(what);
    office.Run("DELETE FROM LoanMast;DELETE FROM SchMast;DELETE FROM ChargeMast");
    office.Run(kLoan);
    if (*change != '\0') office.Run(change);
    Post(main(), kToday);
    EXPECT_EQ(Charges(main()), charges);
  }
}

TEST_F(DailyBatchTest, TheColumnsOfAChargeAndTheTotalsOfTheLoan) {
  office.Run(kLoan);
  office.Run(
      "UPDATE SchMast SET DueDate='2024-01-20',Payment=250;UPDATE LoanMast SET "
      "LateChargePerDay=18.25,TotCollectorAmt=999,TotInt=999;INSERT INTO ChargeMast "
      "(ChargeID,LoanID,ChargeAmt,PType) VALUES ('I','L1',10,'Invoice');INSERT INTO ChargeMast "
      "(ChargeID,LoanID,ChargeAmt,PType) VALUES ('P','L1',-4,'Payment');INSERT INTO ChargeMast "
      "(ChargeID,LoanID,ChargeAmt,PType) VALUES ('X','L1',70,'Batch Loan Interest')");
  const BatchOutcome outcome = Post(main(), kToday);
  EXPECT_EQ(outcome.posted, 1);
  EXPECT_EQ(outcome.amount.ToText(), "0.38");  // 750 x 0.1825 / 365 = 0.375, the even side
  EXPECT_EQ(PlainLines(main(),
                       "SELECT "
                       "ChargeID,TrxDate,BatchDate,LoanID,CustID,CompCode,DueDate,LateAmt,LateInt,"
                       "ChargeAmt,OrgAmt,UserID,PType FROM ChargeMast WHERE PType='Batch'"),
            "L1-1-B20240131 2024-01-31 2024-01-31 L1 C1 AB 2024-01-20 750 18.25 0.38 0 DailyBatch "
            "Batch\n");
  EXPECT_EQ(PlainLines(main(), "SELECT TotCollectorAmt,TotInt FROM LoanMast"), "10.38 -4\n");
}

// Raised with each charge, and summed anew at the end of a run, which mends what another program
// spoilt.
TEST_F(DailyBatchTest, TheTotalOfALoanThatWasChargedIsSummedAnew) {
  office.session.clock.Set({2024, 3, 5, 9, 0, 0});
  office.Run(kLoan);
  const std::tuple<const char*, const char*, DateTime, const char*> cases[] = {
      {"lateness begins",
       "UPDATE LoanMast SET TotCollectorAmt=999,TotInt=999",
       {2024, 1, 31},
       "0.49 0\n"},
      {"a first of the month", "UPDATE LoanMast SET TotCollectorAmt=999", {2024, 2, 1}, "0.98 0\n"},
      {"the next day", "UPDATE LoanMast SET TotCollectorAmt=100", {2024, 2, 2}, "1.47 0\n"},
      {"a waived charge is a charge",
       "UPDATE ChargeMast SET ChargeAmt=0 WHERE ChargeID='L1-1-B20240202';UPDATE LoanMast SET "
       "TotCollectorAmt=0.98",
       {2024, 2, 3},
       "1.47 0\n"},
      {"the same day again, though it was waived",
       "UPDATE ChargeMast SET ChargeAmt=0 WHERE TrxDate='2024-02-03';"
       "UPDATE LoanMast SET TotCollectorAmt=7",
       {2024, 2, 3},
       "7 0\n"},
      {"a second row of a day",
       "UPDATE ChargeMast SET ChargeAmt=0.49 WHERE TrxDate='2024-02-03';"
       "INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,Payment) VALUES "
       "(2,'L1','C1','2024-02-03',2000,0);UPDATE LoanMast SET TotCollectorAmt=1.47",
       {2024, 2, 3},
       "2.46 0\n"},  // 0.98630 more
      {"after a day without",
       "DELETE FROM ChargeMast WHERE TrxDate='2024-02-03'",
       {2024, 2, 4},
       "2.46 0\n"},
      {"the term ends",
       "UPDATE LoanMast SET EndTermIntDate='2024-02-05',TotCollectorAmt=9",
       {2024, 2, 5},
       "4.1 0\n"},
      {"and goes on", "UPDATE LoanMast SET TotCollectorAmt=5", {2024, 2, 6}, "5.74 0\n"},
      {"no total at all", "UPDATE LoanMast SET TotCollectorAmt=null", {2024, 2, 7}, "7.38 0\n"},
  };
  for (const auto& [what, change, day, totals] : cases) {
    SCOPED_TRACE(what);
    if (*change != '\0') office.Run(change);
    office.Run("DELETE FROM Systemast WHERE Param='DailyBatchDate'");
    Post(main(), day);
    EXPECT_EQ(PlainLines(main(), "SELECT TotCollectorAmt,TotInt FROM LoanMast"), totals);
  }
}

TEST_F(DailyBatchTest, MissedDaysAreCaughtUp) {
  office.Run(kLoan);
  office.Run("UPDATE SchMast SET DueDate='2024-01-30'");
  SetLast("2024-01-28");
  std::vector<int> percents;
  const BatchOutcome outcome =
      RunDailyBatch(main(), kToday, "DailyBatch",
                    [&](const BatchProgress& progress) { percents.push_back(progress.percent); });
  EXPECT_EQ(outcome.first_day, (DateTime{2024, 1, 29}));
  EXPECT_EQ(Charges(main()), "L1-1-B20240130 0.49\nL1-1-B20240131 0.49\n");
  EXPECT_EQ(Noted(), "2024-01-31");
  EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end()));
  EXPECT_EQ(percents.back(), 100);
}

TEST_F(DailyBatchTest, AnEarlierDayStandsAloneAndLowersNothing) {
  office.Run(kLoan);
  office.Run("UPDATE SchMast SET DueDate='2024-01-01'");
  SetLast("2024-01-30");
  Post(main(), {2024, 1, 10});
  EXPECT_EQ(Charges(main()), "L1-1-B20240110 0.49\n");
  EXPECT_EQ(Noted(), "2024-01-30");
}

TEST_F(DailyBatchTest, ARefusalChangesNothing) {
  office.Run(kLoan);
  EXPECT_THROW(Post(main(), {2024, 2, 1}), BatchRefused);
  SetLast("yesterday");
  EXPECT_THROW(Post(main(), kToday), BatchRefused);
  EXPECT_EQ(Charges(main()), "");
  EXPECT_EQ(Noted(), "yesterday");
}

TEST_F(DailyBatchTest, ALoanIsNeverPartedAndEachHasItsTotal) {
  // 700 rows a loan: two of them are more than one transaction takes.
  for (const char* loan : {"A", "b", "C"}) {
    office.Run(
        fmt::format("INSERT INTO LoanMast (LoanID,LoanStatus,PayOutAmt,LateChargePerDay,LoanBal) "
                    "VALUES ('{}','ACTIVE',1,18,1)",
                    loan));
    main().BeginTrans();
    for (int row = 1; row <= 700; ++row) {
      office.Run(
          fmt::format("INSERT INTO SchMast (SchID,LoanID,DueDate,PayableAmt,Payment) VALUES "
                      "({},'{}','2024-01-02',1000,0)",
                      row, loan));
    }
    main().CommitTrans();
  }
  EXPECT_EQ(Post(main(), kToday).posted, 2100);
  EXPECT_EQ(PlainLines(main(), "SELECT LoanID,TotCollectorAmt FROM LoanMast ORDER BY LoanID"),
            "A 343\nb 343\nC 343\n");
}

TEST_F(DailyBatchTest, AFailureAtAnyStatementIsMadeGoodByAnotherRun) {
  AddLoans();
  office.Run(
      "UPDATE LoanMast SET EndTermIntDate='2024-01-30',LoanBal=800,InsRate=12 WHERE LoanID='M5'");
  SetLast("2024-01-28");
  std::int64_t told = 0;  // posted when all is done
  const BatchOutcome outcome =
      RunDailyBatch(main(), kToday, "DailyBatch", [&](const BatchProgress& progress) {
        if (progress.percent == 100 && told == 0) told = progress.posted;
      });
  EXPECT_EQ(told, outcome.posted);
  const std::string undisturbed = State(main());
  int at = 1;
  for (bool reached = true; reached && at < 500; ++at) {
    office.Run(
        "DELETE FROM ChargeMast;UPDATE LoanMast SET TotCollectorAmt=0;UPDATE Systemast SET "
        "Value='2024-01-28' WHERE Param='DailyBatchDate'");
    int count = 0;
    reached = false;
    main().SetFaultHook([&](std::string_view sql) {
      if (sql.starts_with("ROLLBACK") || ++count != at) return;
      reached = true;
      throw SqlError(1105, "the disk is full");
    });
    try {
      Post(main(), kToday);
    } catch (const SqlError&) {
      ASSERT_TRUE(reached);
    }
    main().SetFaultHook({});
    ASSERT_FALSE(main().InTransaction());
    Post(main(), kToday);
    ASSERT_EQ(State(main()), undisturbed) << "statement " << at;
  }
  EXPECT_GT(at, 40);
}

TEST_F(DailyBatchTest, AnotherBatchGetsInBetween) {
  AddLoans();
  Post(main(), kToday);
  const std::string undisturbed = State(main());
  const auto other =
      OpenSqlite("MainConn", office.folder.File("office.db"), false, office.session.clock);
  office.Run("DELETE FROM ChargeMast;DELETE FROM Systemast WHERE Param='DailyBatchDate'");
  bool done = false;
  main().SetFaultHook([&](std::string_view sql) {
    if (done || !sql.starts_with("BEGIN")) return;
    done = true;
    Post(*other, kToday);
  });
  EXPECT_EQ(Post(main(), kToday).posted, 0);
  main().SetFaultHook({});
  EXPECT_TRUE(done);
  EXPECT_EQ(State(main()), undisturbed);
}

// The key stops the slower of two batches on a server where both have read; it looks again.
TEST_F(DailyBatchTest, ARowThatAnotherBatchWroteFirstIsLeftToIt) {
  AddLoans();
  Post(main(), kToday);
  const std::string undisturbed = State(main());
  office.Run("DELETE FROM ChargeMast");
  int inserts = 0;
  main().SetFaultHook([&](std::string_view sql) {
    if (sql.starts_with("INSERT INTO ChargeMast") && ++inserts == 3) {
      throw SqlError(2627, "Violation of PRIMARY KEY constraint");
    }
  });
  EXPECT_EQ(Post(main(), kToday).posted, 15);
  main().SetFaultHook({});
  EXPECT_EQ(State(main()), undisturbed);
}

}  // namespace
}  // namespace kaunter
