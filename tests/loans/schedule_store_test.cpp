#include "loans/schedule_store.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "core/values.h"
#include "gtest/gtest.h"
#include "tests/core/office.h"
#include "tests/loans/with_figures.h"

namespace kaunter {
namespace {

const LoanKey kLoan{"AB0001-001", "AB0001"};

LoanTerms Terms(LoanScheme scheme) {
  LoanTerms terms;
  terms.DragLoan = scheme;
  terms.LoanTypeID = "MONTH";
  terms.NextDueDate = {2024, 1, 31};
  terms.LoanAmt = "10,000.00";
  terms.InsRate = "12";
  terms.LoanTerm = terms.LoanTerm3 = "12";
  terms.LoanTerm2 = "1";
  return WithFigures(terms);
}

class ScheduleStoreTest : public ::testing::Test {
 protected:
  ScheduleStoreTest() {
    office.Run("INSERT INTO LoanMast (LoanID,CustID) VALUES ('AB0001-001','AB0001')");
  }
  Connection& main() { return office.session.Main(); }
  std::string Scalar(const char* sql) { return office.Scalar(sql); }
  std::string Lines(const std::string& sql) { return office.Lines(sql); }
  std::string Stored() {
    return Lines(
        "SELECT SchID,DueDate,PayableAmt,CapitalAmt,InterestAmt,FIntAmt,LoanBal FROM SchMast "
        "WHERE LoanID='AB0001-001' ORDER BY SchID");
  }
  std::string Backup() {
    return Lines(
        "SELECT SchID,DueDate,PayableAmt,CapitalAmt,InterestAmt,FIntAmt,LoanBal FROM SchMast2 "
        "WHERE LoanID='AB0001-001' ORDER BY SchID");
  }

  Office office{Office::State::patched};
};

std::string Computed(const Schedule& schedule, const std::string& loan_bal) {
  std::string text;
  for (const ScheduleRow& row : schedule.rows) {
    text += std::to_string(row.SchID) + " " + row.DueDate.ToCanonical() + " " +
            row.PayableAmt.ToText() + " " + row.CapitalAmt.ToText() + " " + row.InterestAmt + " " +
            NumberText(row.FIntAmt) + " " + Money::FromText(loan_bal).ToText() + " \n";
  }
  return text;
}

TEST_F(ScheduleStoreTest, StoredRowsAreTheComputedOnes) {
  for (const LoanScheme scheme : {LoanScheme::kPersonal, LoanScheme::kFlexi}) {
    const LoanTerms terms = Terms(scheme);
    ClearSchedule(main(), kLoan.LoanID);
    const Schedule schedule = GenerateSchedule(main(), kLoan, terms, false);
    ASSERT_EQ(schedule.rows.size(), 13u);
    EXPECT_EQ(Stored(), Computed(schedule, terms.LoanBal));
    EXPECT_EQ(Backup(), Stored());
    EXPECT_EQ(Lines("SELECT LoanID,CustID,IntDate,IntChargeAmt+IntAmt+Payment+CapitalPayment+"
                    "InterestPayment+DragInt+DragIntPaid+LateInt+PayExtra FROM SchMast WHERE "
                    "SchID=13"),
              "AB0001-001 AB0001 2025-01-31 0 \n");
    EXPECT_EQ(Money::FromText(Scalar("SELECT TotLoanInt FROM LoanMast")), schedule.TotLoanInt);
    EXPECT_EQ(Scalar("SELECT OrgDueDate FROM LoanMast"), "2024-01-31");
    EXPECT_EQ(Lines("SELECT SeqNo,DueDate,PayDate,PayAmt FROM PaymentList ORDER BY SeqNo"),
              Lines("SELECT SchID,DueDate,DueDate,PayableAmt FROM SchMast ORDER BY SchID"));
    if (scheme == LoanScheme::kFlexi) {
      EXPECT_EQ(Scalar("SELECT LastPayment FROM LoanMast"), *schedule.LastPayment);
    } else {
      EXPECT_EQ(Scalar("SELECT LastPayment FROM LoanMast"), "0");
    }
  }
}

// The order of the statements, since a failing one leaves what went before.
TEST_F(ScheduleStoreTest, StatementsGoOneByOneInTheirOrder) {
  std::vector<std::string> starts;
  main().SetTrace([&](std::string_view, std::string_view sql) {
    starts.push_back(std::string(sql.substr(0, sql.find(' ', 12))));
  });
  LoanTerms terms = Terms(LoanScheme::kFlexi);
  terms.LoanTerm = "2";
  terms.LoanTerm2 = "0";
  GenerateSchedule(main(), kLoan, terms, false);
  main().SetTrace(nullptr);
  EXPECT_EQ(starts, (std::vector<std::string>{
                        "Insert into SchMast", "UPDATE LoanMast", "Insert into SchMast",
                        "UPDATE LoanMast", "UPDATE LoanMast", "DELETE FROM SchMast2",
                        "DELETE FROM PaymentList", "INSERT INTO PaymentList"}));
}

TEST_F(ScheduleStoreTest, AFailedGenerationLeavesItsRows) {
  int inserts = 0;
  main().SetFaultHook([&](std::string_view sql) {
    if (sql.starts_with("Insert into SchMast ") && ++inserts == 5) {
      throw SqlError(1205, "deadlock");
    }
  });
  EXPECT_THROW(GenerateSchedule(main(), kLoan, Terms(LoanScheme::kPersonal), false), SqlError);
  main().SetFaultHook(nullptr);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM SchMast"), "4");
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM SchMast2"), "0");
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentList"), "0");
  EXPECT_EQ(Scalar("SELECT OrgDueDate FROM LoanMast"), "");
  // Terms that cannot be computed write nothing at all.
  LoanTerms terms = Terms(LoanScheme::kPersonal);
  terms.LoanTypeID = "DAYS";
  EXPECT_THROW(GenerateSchedule(main(), {"AB0001-002", "AB0001"}, terms, false),
               std::invalid_argument);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM SchMast"), "4");
}

TEST_F(ScheduleStoreTest, ASpecialScheduleIsACopyOfItsBackup) {
  EXPECT_EQ(CheckBackup(main(), kLoan.LoanID)->field, "SpecialSch");
  // Without a backup: no rows, and the loan stays untouched.
  GenerateSchedule(main(), kLoan, Terms(LoanScheme::kFlexi), true);
  EXPECT_EQ(Stored(), "");
  EXPECT_EQ(Scalar("SELECT OrgDueDate FROM LoanMast"), "");

  GenerateSchedule(main(), kLoan, Terms(LoanScheme::kFlexi), false);
  EXPECT_FALSE(CheckBackup(main(), kLoan.LoanID));
  const std::string generated = Stored();
  ClearSchedule(main(), kLoan.LoanID);
  EXPECT_EQ(Stored(), "");
  GenerateSchedule(main(), kLoan, Terms(LoanScheme::kFlexi), true);
  EXPECT_EQ(Stored(), generated);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM SchMast WHERE IntDate=DueDate AND Payment=0"), "13");

  // Figures only, and of this loan only.
  office.Run(
      "UPDATE SchMast SET PayableAmt=1,CapitalAmt=2,InterestAmt=3,LoanBal=4,FIntAmt=5,"
      "Payment=6");
  office.Run("INSERT INTO SchMast (SchID,LoanID,PayableAmt) VALUES (1,'AB0001-002',77)");
  CopySchedule(main(), kLoan.LoanID, true, false);
  EXPECT_EQ(Stored(), generated);
  EXPECT_EQ(Scalar("SELECT SUM(Payment) FROM SchMast"), "78");
  EXPECT_EQ(Scalar("SELECT PayableAmt FROM SchMast WHERE LoanID='AB0001-002'"), "77");
}

TEST_F(ScheduleStoreTest, AnEditedScheduleKeepsItsInterestAndReachesTheBackup) {
  GenerateSchedule(main(), kLoan, Terms(LoanScheme::kFlexi), false);
  const std::string interest = Lines("SELECT InterestAmt FROM SchMast ORDER BY SchID");
  std::vector<EditedLine> lines;
  for (Recordset rows = main().Query("SELECT * FROM SchMast ORDER BY SchID"); !rows.Eof();
       rows.MoveNext()) {
    lines.push_back({ShowInt(rows.Field("SchID")), ShowMoney(rows.Field("PayableAmt")),
                     ShowMoney(rows.Field("CapitalAmt")), ShowMoney(rows.Field("InterestAmt"))});
  }
  EXPECT_FALSE(CheckScheduleCapital(lines, "10,000.00"));

  const EditedLine before = lines[1];
  EXPECT_EQ(EditPayable(&lines[1], "1,0x0")->text.english, "Invlid amount");
  EXPECT_EQ(lines[1].PayableAmt, before.PayableAmt);
  EXPECT_FALSE(EditPayable(&lines[1], "1888.494"));
  EXPECT_EQ(lines[1].PayableAmt, "1,888.49");
  EXPECT_EQ(
      Money::FromText(lines[1].CapitalAmt),
      Money::FromText("1888.494") - Money::FromText(before.InterestAmt) - Money::FromText("0.004"));
  EXPECT_EQ(CheckScheduleCapital(lines, "10000")->text.english,
            "Total capital payable 11,000.00 not tally with loan amount 10,000.00");

  ApplyEditedSchedule(main(), kLoan.LoanID, lines);
  EXPECT_EQ(Scalar("SELECT PayableAmt FROM SchMast WHERE SchID=2"), "1888.49");
  EXPECT_EQ(Lines("SELECT InterestAmt FROM SchMast ORDER BY SchID"), interest);
  EXPECT_EQ(Backup(), Stored());
}

TEST_F(ScheduleStoreTest, AQuoteInAKeyStaysInTheKey) {
  const LoanKey key{"O'X-001", "O'X"};
  GenerateSchedule(main(), key, Terms(LoanScheme::kPersonal), false);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM SchMast WHERE CustID='O''X'"), "13");
  ClearSchedule(main(), key.LoanID);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM SchMast"), "0");
}

}  // namespace
}  // namespace kaunter
