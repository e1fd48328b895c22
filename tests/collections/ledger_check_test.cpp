#include "collections/ledger_check.h"

#include <fmt/format.h>

#include <string>

#include "gtest/gtest.h"
#include "loans/loan_lifecycle.h"
#include "loans/rebuild.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

std::string Told(const std::vector<LedgerFault>& faults) {
  std::string text;
  for (const LedgerFault& fault : faults) {
    text += fmt::format("{}: {} for {}\n", fault.what.english, fault.stored, fault.should_be);
  }
  return text;
}

class LedgerCheckTest : public ::testing::Test, protected LoanOffice {
 protected:
  // A personal loan of 1,200.00 over a year: twelve rows of 100.00 and 12.00 interest. Two
  // payments: the first with late interest, the second pays a row and a half.
  void MakePersonal() {
    MakeLoan("P", LoanScheme::kPersonal, "1200", "12");
    Pay("P-001", "P", "2024-02-05", "112");
    Pay("P-002", "P", "2024-03-05", "168");
    office.Run(
        "UPDATE PaymentMast SET IntAmt=3.5,ChargeAmt=4,DiscAmt=6 WHERE PayID='P-001';"
        "INSERT INTO ChargeMast (ChargeID,LoanID,ChargeAmt,PType) VALUES ('B','P',9,'Batch')");
    ASSERT_TRUE(RebuildLoan(main(), "P").done);
  }
  void MakeFlexi() {
    MakeLoan("F", LoanScheme::kFlexi, "1200", "12");
    Pay("F-001", "F", "2024-02-05", "106.62");
    Pay("F-002", "F", "2024-02-10", "50", "300");
    ASSERT_TRUE(RebuildLoan(main(), "F").done);
  }
};

TEST_F(LedgerCheckTest, SoundLoans) {
  MakePersonal();
  MakeFlexi();
  MakeLoan("N", LoanScheme::kPersonal, "500", "6");  // no payment yet
  MakeLoan("M", LoanScheme::kFlexi, "500", "6");
  MakeLoan("C", LoanScheme::kPersonal, "600", "6");
  Pay("C-001", "C", "2024-02-05", "30");
  ASSERT_TRUE(RebuildLoan(main(), "C").done);
  CloseLoan(office.session, {"C", "HQ0001"}, Figures("C"));
  for (const char* loan : {"P", "F", "N", "M", "C", "none"}) {
    EXPECT_EQ(Told(CheckLoan(main(), loan)), "") << loan;
  }
  // Closed and rebuilt, as the repair leaves it.
  ASSERT_TRUE(RebuildLoan(main(), "C").done);
  EXPECT_EQ(Told(CheckLoan(main(), "C")), "");
}

// More late interest is paid than is charged: what mends it is told, step by step, until it holds.
TEST_F(LedgerCheckTest, ACreditOfLateInterestIsToldWithWhatMendsIt) {
  MakeLoan("P", LoanScheme::kPersonal, "1200", "12");
  office.Run("UPDATE LoanMast SET PayOutAmt=1200 WHERE LoanID='P'");
  Pay("P-001", "P", "2024-02-05", "70");
  Pay("P-002", "P", "2024-03-05", "115");
  office.Run(
      "UPDATE PaymentMast SET PayAmt=InstalAmt,IntAmt=42 WHERE PayID='P-001';"
      "UPDATE PaymentMast SET PayAmt=InstalAmt,IntAmt=-15 WHERE PayID='P-002';"
      "INSERT INTO ChargeMast (ChargeID,LoanID,ChargeAmt,PType) VALUES ('B','P',27,'Batch')");
  const char* const kCredit = "Outstanding charges: -15.00 for 0.00\n";
  for (const auto& [change, told, mend] : TextRows<3>{
           {"", kCredit, "Edit Payment P-002: Payment Installment 100.00, Interest Payment 0.00"},
           {"UPDATE PaymentMast SET PayAmt=100,InstalAmt=100,IntAmt=0 WHERE PayID='P-002'", kCredit,
            "Edit Payment P-001: Payment Installment 85.00, Interest Payment 27.00"},
           {"UPDATE PaymentMast SET settlement='1' WHERE PayID='P-001'", kCredit,
            "Invoice of 15.00"},
           {"UPDATE PaymentMast SET settlement='0',PayAmt=1335 WHERE PayID='P-001'", kCredit,
            "Invoice of 15.00"},
           {"UPDATE PaymentMast SET PayAmt=70,IntAmt=10 WHERE PayID='P-001';"
            "UPDATE ChargeMast SET ChargeAmt=-20 WHERE ChargeID='B'",
            "Outstanding charges: -30.00 for 0.00\n",
            "Edit Payment P-001: Payment Installment 80.00, Interest Payment 0.00"},
           {"UPDATE PaymentMast SET IntAmt=42 WHERE PayID='P-001';UPDATE ChargeMast SET "
            "ChargeAmt=42 WHERE ChargeID='B'",
            "", ""},
           {"UPDATE ChargeMast SET ChargeAmt=27 WHERE ChargeID='B';UPDATE LoanMast SET "
            "LoanStatus='CLOSED',CloseBal=LoanBal,LoanBal=0",
            "", ""}}) {
    office.Run(change);
    ASSERT_TRUE(RebuildLoan(main(), "P").done);
    const auto faults = CheckLoan(main(), "P");
    EXPECT_EQ(Told(faults), told) << change;
    EXPECT_EQ(faults.empty() ? "" : faults[0].mend.english, mend) << change;
  }
}

// With what a rebuild writes there, and none of its neighbours that a rebuild leaves as they are.
TEST_F(LedgerCheckTest, EachBrokenFigureIsTold) {
  MakePersonal();
  const std::array<const char*, 2> cases[] = {
      // Payment = CapitalPayment + InterestPayment, at most PayableAmt
      {"UPDATE SchMast SET Payment=111 WHERE SchID=1", "Row 1: Payment: 111.00 for 112.00\n"},
      {"UPDATE SchMast SET Payment=113,CapitalPayment=101 WHERE SchID=1",
       "Row 1: Payment: 113.00 for 112.00\nRow 1: CapitalPayment: 101.00 for 100.00\n"},
      // interest before capital
      {"UPDATE SchMast SET CapitalPayment=45,InterestPayment=11 WHERE SchID=3",
       "Row 3: CapitalPayment: 45.00 for 44.00\nRow 3: InterestPayment: 11.00 for 12.00\n"},
      // the sum of InstalAmt
      {"UPDATE LoanMast SET TotPay=281", "TotPay: 281.00 for 280.00\n"},
      // the balance of the last payment
      {"UPDATE LoanMast SET LoanBal=1000", "LoanBal: 1,000.00 for 1,064.00\n"},
      {"UPDATE PaymentMast SET NewLoanBal=1065 WHERE PayID='P-002'",
       "Payment P-002: NewLoanBal: 1,065.00 for 1,064.00\n"},
      // where it opened, and how it fell
      {"UPDATE PaymentMast SET OldLoanBal=1,NewLoanBal=1-InstalAmt WHERE PayID='P-001'",
       "Payment P-001: OldLoanBal: 1.00 for 1,344.00\n"
       "Payment P-001: NewLoanBal: -111.00 for 1,232.00\n"},
      // the charges
      {"UPDATE LoanMast SET TotCollectorAmt=8", "TotCollectorAmt: 8.00 for 9.00\n"},
      {"UPDATE LoanMast SET TotInt=0", "TotInt: 0.00 for -3.50\n"},
      {"UPDATE ChargeMast SET ChargeAmt=10 WHERE ChargeID='B'",
       "TotCollectorAmt: 9.00 for 10.00\n"},
      {"DELETE FROM ChargeMast WHERE ChargeID='P-001'", "Charge P-001:  for -3.50\n"},
      {"INSERT INTO ChargeMast (ChargeID,LoanID,ChargeAmt,PType) VALUES ('Z','P',0,'Payment')",
       "Charge Z: 0.00 for \n"},
      // the first row with something open
      {"UPDATE LoanMast SET NextDueDate='2024-04-30'", "NextDueDate: 30-04-2024 for 31-03-2024\n"},
      // what a rebuild would write
      {"UPDATE SchMast SET LoanBal=7 WHERE SchID=12", "Row 12: LoanBal: 7.00 for 1,064.00\n"},
      {"UPDATE SchMast SET PayExtra=7 WHERE SchID=12", "Row 12: PayExtra: 7.00 for 0.00\n"},
      {"UPDATE PaymentMast SET IntPay=13 WHERE PayID='P-001'",
       "Payment P-001: IntPay: 13.00 for 12.00\n"},
      {"UPDATE PaymentMast SET CapPay=0 WHERE PayID='P-002'",
       "Payment P-002: CapPay: 0.00 for 144.00\n"},
      {"UPDATE LoanMast SET TotCharge=0,TotDiscAmt=0,PayExtra=1",
       "TotCharge: 0.00 for 4.00\nTotDiscAmt: 0.00 for 6.00\nPayExtra: 1.00 for 0.00\n"},
      {"UPDATE LoanMast SET TotLoanInt=1", "TotLoanInt: 1.00 for 144.00\n"},
      {"UPDATE LoanMast SET LastPaymentDate=null,LastPaymentNo=''",
       "LastPaymentDate:  for 05-03-2024\nLastPaymentNo:  for P-002\n"},
      // one that was stored and never replayed
      {"UPDATE PaymentMast SET DiscAmt=9 WHERE PayID='P-001'", "TotDiscAmt: 6.00 for 9.00\n"},
      // a closed loan keeps its balance elsewhere
      {"UPDATE LoanMast SET LoanStatus='CLOSED'",
       "CloseBal: 0.00 for 1,064.00\nLoanBal: 1,064.00 for 0.00\n"},
  };
  for (const auto& [break_it, told] : cases) {
    SCOPED_TRACE(break_it);
    main().BeginTrans();
    office.Run(break_it);
    EXPECT_EQ(Told(CheckLoan(main(), "P")), told);
    EXPECT_TRUE(RebuildLoan(main(), "P").done);
    EXPECT_EQ(Told(CheckLoan(main(), "P")), "");
    main().RollbackTrans();
  }
}

TEST_F(LedgerCheckTest, FlexiRowsAreDerivedAndCutAsTheRebuildDoes) {
  MakeFlexi();
  EXPECT_NE(Scalar("SELECT PayExtra FROM LoanMast WHERE LoanID='F'"), "0");
  for (const char* column : {"CapitalAmt", "InterestAmt", "PayableAmt"}) {
    main().BeginTrans();
    office.Run(fmt::format("UPDATE SchMast SET {0}={0}+0.01 WHERE SchID=7", column));
    EXPECT_NE(Told(CheckLoan(main(), "F")).find(fmt::format("Row 7: {}", column)),
              std::string::npos);
    main().RollbackTrans();
  }
}

// Each rebuild cuts the rows of such a loan anew; only what does not hang on them is asked for.
TEST_F(LedgerCheckTest, RowsThatEachRebuildCutsAnewAreNoFault) {
  MakeFlexi();
  // Nothing is derived, or there is nothing to take the rows from.
  for (const char* scheme : {"UPDATE LoanMast SET DragLoan='2' WHERE LoanID='F'",
                             "UPDATE LoanMast SET DragLoan='1',SpecialSch='1' WHERE "
                             "LoanID='F';UPDATE PaymentMast SET PayExtra=500 WHERE PayID='F-001';"
                             "DELETE FROM SchMast2"}) {
    office.Run(scheme);
    for (int again = 0; again < 2; ++again) {
      ASSERT_TRUE(RebuildLoan(main(), "F").done);
      EXPECT_EQ(Told(CheckLoan(main(), "F")), "") << scheme;
    }
  }
  office.Run("UPDATE LoanMast SET TotPay=0 WHERE LoanID='F'");
  EXPECT_EQ(Told(CheckLoan(main(), "F")), "TotPay: 0.00 for 156.62\n");
}

// A save that was cut between the loan and its rows, and a payment before its customer's sums. Of a
// loan without rows nothing else is told: it is as wrong as they.
TEST_F(LedgerCheckTest, WhatACutLeftIsTold) {
  MakePersonal();
  MakeFlexi();
  office.Run("DELETE FROM LoanMast WHERE LoanID='N'");
  ASSERT_TRUE(RebuildCustomer(main(), "HQ0001").done);
  const std::array<const char*, 2> cases[] = {
      {"", ""},
      {"DELETE FROM SchMast WHERE LoanID='P'", "Schedule rows: 0 for 12\n"},
      {"DELETE FROM SchMast WHERE LoanID='P';UPDATE LoanMast SET PayOutAmt=0.01",
       "Schedule rows: 0 for 12\n"},
      {"DELETE FROM SchMast WHERE LoanID='F';UPDATE LoanMast SET LoanStatus='CLOSED',LoanBal=0,"
       "CloseBal=5 WHERE LoanID='F'",
       "Schedule rows: 0 for 12\nTotLoanBal: 1,830.15 for 1,064.00\n"},
      {"UPDATE LoanMast SET LoanAmt=1300 WHERE LoanID='P'",
       "Capital of the schedule: 1,200.00 for 1,300.00\nTotLoan: 2,400.00 for 2,500.00\n"},
      {"UPDATE LoanMast SET LoanAmt=1300,SchChanged='1' WHERE LoanID='P'",
       "TotLoan: 2,400.00 for 2,500.00\n"},
      {"UPDATE CustMast SET TotLoan=null,TotTopUpAmt=11,TotLoanBal=TotLoanBal-0.01",
       "TotLoan: 0.00 for 2,400.00\nTotTopUpAmt: 11.00 for 10.00\n"
       "TotLoanBal: 1,830.14 for 1,830.15\n"},
      // As a new flexi loan adds its instalments, the last one not yet known, and not its balance.
      {"INSERT INTO LoanMast (LoanID,CustID,CompCode,DragLoan,LoanAmt,LoanBal,FirstPayment,"
       "InstallmentAmt2,LoanTerm) VALUES ('N','HQ0001','AB','1',1000,1000,90,90,'12');"
       "UPDATE CustMast SET TotLoan=TotLoan+1000,TotLoanBal=TotLoanBal+990",
       ""},
  };
  for (const auto& [break_it, says] : cases) {
    SCOPED_TRACE(break_it);
    main().BeginTrans();
    if (*break_it != '\0') office.Run(break_it);
    std::string told;
    for (const char* loan : {"P", "F"}) told += Told(CheckLoan(main(), loan));
    EXPECT_EQ(told + Told(CheckCustomer(main(), "HQ0001")), says);
    main().RollbackTrans();
  }
}

TEST_F(LedgerCheckTest, ARowWithoutADateIsTold) {
  MakeFlexi();
  office.Run("UPDATE SchMast SET DueDate=null WHERE LoanID='F' AND SchID=9");
  EXPECT_NE(Told(CheckLoan(main(), "F")).find("Schedule 9 has no due date"), std::string::npos);
}

// Where the counter never pauses some figure lags at each look. What does not move is told at once.
TEST_F(LedgerCheckTest, AFigureThatKeepsMovingIsNoFault) {
  MakePersonal();
  ASSERT_TRUE(RebuildCustomer(main(), "HQ0001").done);
  office.Run("UPDATE CustMast SET TotTopUpAmt=7");
  int saves = 0;
  const auto counter =
      OpenSqlite("Counter", office.folder.File("office.db"), false, office.session.clock);
  main().SetFaultHook([&](std::string_view statement) {
    if (statement != "BEGIN TRANSACTION") return;
    counter->Execute(fmt::format("UPDATE CustMast SET TotLoanBal={}", ++saves));
  });
  const LedgerReport report = CheckCompany(main(), "HQ", [](const auto&) { return true; });
  main().SetFaultHook({});
  EXPECT_EQ(Told(report.faults), "TotTopUpAmt: 7.00 for 5.00\n");
  EXPECT_GT(saves, 4);
  main().BeginTrans();  // nobody saves meanwhile: each is read once, and told
  main().SetTrace([](std::string_view, std::string_view sql) {
    EXPECT_EQ(sql.find("WHERE CustID="), sql.npos) << sql;
  });
  EXPECT_EQ(CheckCompany(main(), "HQ", [](const auto&) { return true; }).faults.size(), 2U);
  main().SetTrace({});
}

TEST_F(LedgerCheckTest, ACompanyInPortions) {
  main().BeginTrans();
  for (int i = 0; i < 600; ++i) {
    office.Run(fmt::format(
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,DragLoan,LoanAmt,LoanBal) VALUES "
        "('X{0:03}','HQ0001','{1}','1',100,100);"
        "INSERT INTO SchMast (SchID,LoanID,DueDate,PayableAmt,CapitalAmt,LoanBal) VALUES "
        "(1,'X{0:03}','2024-02-01',100,100,100)",
        i, i % 6 == 0 ? "AB" : "HQ"));
  }
  office.Run("UPDATE LoanMast SET NextDueDate='2024-02-01'");
  office.Run("UPDATE LoanMast SET TotPay=1 WHERE LoanID IN ('X006','X007','X500','X599')");
  office.Run("UPDATE CustMast SET TotLoan=60000,TotLoanBal=60000");
  main().CommitTrans();
  std::vector<int> done;
  const auto watch = [&done](const LedgerProgress& progress) {
    EXPECT_EQ(progress.total, 500);
    done.push_back(progress.done);
    return true;
  };
  std::vector<std::string> sent;
  main().SetTrace([&sent](std::string_view, std::string_view sql) { sent.emplace_back(sql); });
  const LedgerReport report = CheckCompany(main(), "HQ", watch);
  main().SetTrace({});
  EXPECT_EQ(report.loans, 500);
  EXPECT_TRUE(report.complete);
  ASSERT_EQ(report.faults.size(), 3U);
  EXPECT_EQ(report.faults[0].LoanID, "X007");
  EXPECT_EQ(report.faults[1].LoanID, "X500");
  EXPECT_EQ(report.faults[2].LoanID, "X599");
  EXPECT_EQ(done, (std::vector<int>{0, 250, 500}));
  EXPECT_LT(sent.size(), 70U);
  for (const std::string& sql : sent) {
    EXPECT_TRUE(sql.starts_with("SELECT") || sql.starts_with("BEGIN") ||
                sql.starts_with("ROLLBACK") ||
                // the lock of saves
                sql.starts_with("UPDATE LoanMast SET LoanBal=LoanBal WHERE"))
        << sql;
  }
  const LedgerReport cut =
      CheckCompany(main(), "HQ", [](const LedgerProgress& progress) { return progress.done == 0; });
  EXPECT_FALSE(cut.complete);
  EXPECT_EQ(cut.loans, 250);
  EXPECT_EQ(cut.faults.size(), 1U);
}

}  // namespace
}  // namespace kaunter
