// Update Schedule and Extend Schedule: what they refuse, what they write, and that a failing write
// leaves nothing. The usual days stand in tests/play/schedule-changes.play.
#include <gtest/gtest.h>

#include "loans/loan_extend_frm.h"
#include "loans/rebuild.h"
#include "loans/update_sch.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

const std::string kId = "HQ0001-001";

class ScheduleScreensTest : public ::testing::Test, protected LoanOffice {
 protected:
  ScheduleScreensTest() {
    MakeLoan(kId, LoanScheme::kPersonal, "1200", "12");
    office.Run("UPDATE CustMast SET TotLoanBal=2000");
  }
  template <typename T>
  std::unique_ptr<T> Open() {
    auto screen = std::make_unique<T>(office.session, desk);
    screen->Load();
    screen->LoanID.Enter();
    screen->LoanID.Type(kId);
    screen->LoanID.Leave();
    return screen;
  }
  // A row of the list takes a date and an amount.
  static void Amend(UpdateSch& screen, int row, const char* date, const char* amount) {
    screen.SchLV.Select(row);
    screen.NextDueDate.SetText(date);
    screen.LoanAmt.SetText(amount);
    screen.Command2.Click();
  }
  std::string LastMessage() { return desk.messages.empty() ? "" : desk.messages.back(); }
};

TEST_F(ScheduleScreensTest, AnAmendedAmountOutlivesTheRebuild) {
  auto screen = Open<UpdateSch>();
  Amend(*screen, 0, "15-02-2024", "200");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Update Schedule: Schedule updated");
  // 12 of interest stay, the rest is capital; the balance is the new sum.
  const std::string row =
      "SELECT DueDate,IntDate,PayableAmt,CapitalAmt,InterestAmt,LoanBal FROM SchMast WHERE SchID=1";
  EXPECT_EQ(Lines(row), "2024-02-15 2024-02-15 200 188 12 1432\n");
  EXPECT_EQ(Lines("SELECT LoanBal,SchChanged FROM LoanMast"), "1432 1\n");
  EXPECT_EQ(Lines("SELECT TotLoanBal FROM CustMast"), "2088\n");
  Pay(kId + "-001", kId, "2024-02-20", "150");
  ASSERT_TRUE(RebuildLoan(main(), kId).done);
  EXPECT_EQ(Lines(row), "2024-02-15 2024-02-15 200 188 12 1282\n");
  EXPECT_EQ(Lines("SELECT LoanBal FROM LoanMast"), "1282\n");
}

TEST_F(ScheduleScreensTest, ASpecialScheduleKeepsTheAmendmentInItsBackup) {
  office.Run("UPDATE LoanMast SET DragLoan='1',SpecialSch='1'");
  auto screen = Open<UpdateSch>();
  Amend(*screen, 11, "31-12-2024", "500");
  screen->SaveCmd.Click();
  ASSERT_TRUE(RebuildLoan(main(), kId).done);
  EXPECT_EQ(Lines("SELECT PayableAmt,CapitalAmt FROM SchMast WHERE SchID=12"), "500 488\n");
}

TEST_F(ScheduleScreensTest, ADateStaysBetweenItsNeighboursAndAnAmountIsANumber) {
  auto screen = Open<UpdateSch>();
  ASSERT_EQ(screen->SchLV.RowCount(), 12);
  for (const auto& [date, amount, told] :
       TextRows<3>{{"31-01-2024", "10", "Date cannot less that 31-01-2024"},
                   {"31-03-2024", "10", "Date cannot more that 31-03-2024"},
                   {"30-02-2024", "10", "Invalid Dat"},
                   {"", "10", "Invalid Dat"},
                   {"01-02-2024", "", "Invalid Pay Amount"},
                   {"01-02-2024", "ten", "Invalid Pay Amount"},
                   {"01-02-2024", "-1", "Invalid Pay Amount"},
                   {"01-02-2024", "1e9", "Invalid Pay Amount"}}) {
    Amend(*screen, 1, date, amount);
    EXPECT_EQ(LastMessage(), "Update Schedule: " + std::string(told)) << date;
    EXPECT_EQ(screen->SchLV.Cell(1, 4), "112.00");
    EXPECT_EQ(screen->LoanAmt.text(), amount);  // nothing typed is lost
  }
  desk.messages.clear();
  Amend(*screen, 1, "01-02-2024", "1,000.555");
  EXPECT_TRUE(desk.messages.empty());
  EXPECT_EQ(screen->SchLV.Cell(1, 3) + " " + screen->SchLV.Cell(1, 4), "01-02-2024 1,000.56");
}

TEST_F(ScheduleScreensTest, OnlyLevelFourAmendsAndOnlyWhatWasChanged) {
  for (const int level : {1, 3, 5}) {
    office.session.CurrentLevel = level;
    auto screen = Open<UpdateSch>();
    Amend(*screen, 0, "15-02-2024", "200");
    screen->SaveCmd.Click();
    EXPECT_EQ(LastMessage(), "Update Schedule: Your level not allow to amend schedule") << level;
  }
  office.session.CurrentLevel = 4;
  auto screen = Open<UpdateSch>();
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Update Schedule: Nothing to amend");
  // Typed, but not brought into the list.
  screen->SchLV.Select(0);
  screen->LoanAmt.SetText("200");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Update Schedule: Please press Update or select another schedule first");
  desk.agrees = false;
  screen->Command2.Click();
  screen->SaveCmd.Click();
  EXPECT_EQ(desk.questions.back(), "Confirm to amend ?");
  EXPECT_EQ(Lines("SELECT LoanBal FROM LoanMast"), "1344\n");
}

TEST_F(ScheduleScreensTest, LoansWithPaymentsAndOtherCompaniesLoansDoNotOpen) {
  // Another company's loan looks as if it were not there.
  office.session.CurrentLevel = 3;
  office.session.CurrentCompCode = "AB";
  EXPECT_EQ(Open<UpdateSch>()->SchLV.RowCount(), 0);
  EXPECT_EQ(LastMessage(), "Update Schedule: Loan HQ0001-001 not found");
  EXPECT_EQ(Open<LoanExtendfrm>()->SchDG.RowCount(), 0);
  EXPECT_EQ(LastMessage(), "Extend Schedule: Laon ID HQ0001-001 belong to company HQ");
  office.session.CurrentLevel = 4;
  auto open_before = Open<UpdateSch>();
  Amend(*open_before, 0, "15-02-2024", "200");
  office.Run("UPDATE SchMast SET DueDate='2030-01-01' WHERE SchID=12");
  open_before->SaveCmd.Click();
  EXPECT_NE(LastMessage().find("was changed meanwhile, Please load it again"), std::string::npos);
  Pay(kId + "-001", kId, "2024-02-01", "0");  // cancelled out, and still a payment
  auto screen = Open<UpdateSch>();
  EXPECT_EQ(LastMessage(), "Update Schedule: Payment exist, no amendment allow");
  EXPECT_EQ(screen->LoanID.text() + screen->CustName.text(), "");
  // And one that came after the list was filled.
  const std::string before = Stored();
  open_before->SaveCmd.Click();
  EXPECT_EQ(LastMessage(),
            "Update Schedule: an error occur during saving schedule\nPayment exist, no amendment "
            "allow");
  EXPECT_EQ(Stored(), before);
}

TEST_F(ScheduleScreensTest, EachStatementThatFailsLeavesNoTrace) {
  auto amend = Open<UpdateSch>();
  Amend(*amend, 0, "15-02-2024", "200");
  EXPECT_GE(FailEverywhere([&] { amend->Guard([&] { amend->SaveCmd.Click(); }); }), 30);
  EXPECT_EQ(Lines("SELECT LoanBal FROM LoanMast"), "1432\n");
  EXPECT_NE(desk.messages[0].find("an error occur during saving schedule"), std::string::npos);
  // Confirmed and failed: the line of the log stands, with the failure behind it.
  EXPECT_NE(office.Log()[0].find("Update Schedule - Loan ID HQ0001-001 Schedule Updated"),
            std::string::npos);
  EXPECT_NE(office.Log()[1].find("Update Schedule - Loan ID HQ0001-001 - error Rollback 1105"),
            std::string::npos);
  desk.messages.clear();
  auto extend = Open<LoanExtendfrm>();
  EXPECT_GE(FailEverywhere([&] { extend->Guard([&] { extend->SaveCmd.Click(); }); }), 15);
  EXPECT_EQ(desk.messages[0],
            "Extend Schedule: an error occur during updating record"
            "\nthe disk is full\nNothing of it was kept. Mend the cause and do it again.");
  EXPECT_EQ(Lines("SELECT NextDueDate FROM LoanMast"), "2024-03-15\n");
}

TEST_F(ScheduleScreensTest, UnpaidRowsMoveOneStepAndTheFirstLeadsTheLoan) {
  // Row 3 is the first that is not paid, due on 31-03-2024; row 4 is due on 30-04-2024.
  for (const auto& [code, back, first, second] :
       std::initializer_list<std::tuple<const char*, bool, const char*, const char*>>{
           {"MONTH", false, "2024-04-30", "2024-05-30"},
           {"MONTH", true, "2024-02-29", "2024-03-30"},
           {"WEEK", true, "2024-03-24", "2024-04-23"},
           {"DAILY", false, "2024-04-01", "2024-05-01"},
           {"10DAYS", true, "2024-03-21", "2024-04-20"}}) {
    office.Run("DELETE FROM LoanMast;DELETE FROM SchMast;DELETE FROM NumberMast");
    MakeLoan(kId, LoanScheme::kPersonal, "1200", "12");
    main().Execute(fmt::format("UPDATE LoanMast SET LoanTypeID={}", QuoteStr(code)));
    office.Run("UPDATE SchMast SET Payment=PayableAmt WHERE SchID < 3");
    auto screen = Open<LoanExtendfrm>();
    (back ? screen->Command2 : screen->SaveCmd).Click();
    EXPECT_EQ(LastMessage(), back ? "Extend Schedule: Laon ID HQ0001-001 schedule cut shorted"
                                  : "Extend Schedule: Laon ID HQ0001-001 schedule extended");
    EXPECT_EQ(Lines("SELECT DueDate FROM SchMast WHERE SchID IN (2,3,4) ORDER BY SchID"),
              fmt::format("2024-02-29\n{}\n{}\n", first, second))
        << code << back;
    // What interest counts from, and the first due date as it was made, stay.
    EXPECT_EQ(Lines("SELECT IntDate FROM SchMast WHERE SchID=3"), "2024-03-31\n");
    EXPECT_EQ(Lines("SELECT NextDueDate,NextCall,OrgDueDate FROM LoanMast"),
              fmt::format("{0} {0} 2024-01-31\n", first));
    EXPECT_EQ(screen->SchDG.Cell(2, 1), Format(*DateTime::FromCanonical(first), "dd-mm-yyyy"));
  }
}

TEST_F(ScheduleScreensTest, APaidLoanDoesNotMoveAndAnOddCodeIsAFailure) {
  office.Run("UPDATE SchMast SET Payment=PayableAmt");
  const std::string before = Stored();
  auto screen = Open<LoanExtendfrm>();
  screen->SaveCmd.Click();
  EXPECT_EQ(desk.questions.back(), "Conform to Extend Schedule?");
  EXPECT_EQ(Stored(), before);
  office.Run("UPDATE SchMast SET Payment=0;UPDATE LoanMast SET LoanTypeID='YEARLY'");
  // Shown as paid: what is stored is looked at first.
  screen->SaveCmd.Click();
  EXPECT_NE(LastMessage().find("changed meanwhile and is shown anew"), std::string::npos);
  EXPECT_EQ(screen->SchDG.Cell(0, 3), "0.00");
  screen = Open<LoanExtendfrm>();
  screen->Command2.Click();
  EXPECT_EQ(desk.questions.back(), "Conform to Cut Short Schedule?");
  EXPECT_EQ(LastMessage(), "Extend Schedule: an error occur during updating record");
  screen->LoanID.Enter();
  screen->LoanID.Type("HQ0001-9");
  screen->LoanID.Leave();
  EXPECT_EQ(LastMessage(), "Extend Schedule: Loan ID HQ0001-9 not found");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Extend Schedule: Loan ID is required");
}

}  // namespace
}  // namespace kaunter
