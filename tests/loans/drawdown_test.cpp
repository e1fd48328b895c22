// Releases of a loan's money: their limit, what they write to the loan, and that a failing write
// leaves nothing. The usual day stands in tests/play/drawdowns.play.
#include "loans/drawdown.h"

#include <gtest/gtest.h>

#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

const std::string kId = "HQ0001-001";

class DrawdownTest : public ::testing::Test, protected LoanOffice {
 protected:
  DrawdownTest() { MakeLoan(kId, LoanScheme::kPersonal, "1000", "10"); }

  // As the loan screen opens it: a document number, or the loan.
  std::unique_ptr<Drawdown> Open(const std::string& sid, const std::string& loan = kId) {
    office.session.CallerTag = sid;
    office.session.HandOverLoanID = sid.empty() ? loan : "";
    auto screen = std::make_unique<Drawdown>(office.session, desk);
    screen->Load();
    return screen;
  }
  void Release(const std::string& amount) {
    auto screen = Open("");
    Put(screen->DrawDownAmt, amount);
    screen->SaveCmd.Click();
    ASSERT_TRUE(screen->closed()) << LastMessage();
  }
  std::string LastMessage() { return desk.messages.empty() ? "" : desk.messages.back(); }
  std::string OfLoan() { return Lines("SELECT PayOutAmt,LastDownDate FROM LoanMast"); }
};

TEST_F(DrawdownTest, TheRestPassesAndOneSenMoreDoesNot) {
  auto screen = Open("");
  EXPECT_EQ(screen->DrawDownAmt.text() + " " + screen->Payee.text() + " " + screen->TrxDate.text(),
            "1,000.00 Tan 'Ah' Kow 05-01-2024");
  Put(screen->DrawDownAmt, "1000.01");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(),
            "Loan Progressive Drawdown: Drawdown amount cannot more than loan amount");
  EXPECT_FALSE(screen->closed());
  Release("400");
  EXPECT_EQ(OfLoan(), "400 2024-01-05\n");
  office.Run("UPDATE LoanMast SET StampingDate='2024-02-10'");
  screen = Open("");
  EXPECT_EQ(screen->DrawDownAmt.text() + " " + screen->TrxDate.text(), "600.00 10-02-2024");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Loan Progressive Drawdown: Record saved");
  EXPECT_EQ(OfLoan(), "1000 2024-02-10\n");
  EXPECT_EQ(Lines("SELECT SID,LoanID,CustID,CompCode,TrxDate,DrawDownAmt,Payee,UserID,DateCreated "
                  "FROM DrawDownMast ORDER BY SID"),
            "DL0001 HQ0001-001 HQ0001 HQ 2024-01-05 400 Tan 'Ah' Kow AMY 2024-01-31 14:05:09\n"
            "DL0002 HQ0001-001 HQ0001 HQ 2024-02-10 600 Tan 'Ah' Kow AMY 2024-01-31 14:05:09\n");
  // A change leaves its own old amount out of the sum.
  screen = Open("DL0001");
  Put(screen->DrawDownAmt, "400.01");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(),
            "Loan Progressive Drawdown: Drawdown amount cannot more than loan amount");
  Put(screen->DrawDownAmt, "399.99");
  Put(screen->TrxDate, "29-02-2024");
  screen->SaveCmd.Click();
  EXPECT_EQ(OfLoan(), "999.99 2024-02-29\n");
  EXPECT_EQ(Scalar("SELECT UserID FROM DrawDownMast WHERE SID='DL0001'"), "AMY");
}

TEST_F(DrawdownTest, BlanksLettersAndNothingAreRefusedInTheirOrder) {
  for (const auto& [date, amount, told] :
       TextRows<3>{{"", "", "Date is required"},
                   {"05-01-2024", "", "Drawdown amount is requured"},
                   {"05-01-2024", "0.00", "Drawdown amount is requured"},
                   {"05-01-2024", "0.004", "Drawdown amount is requured"},
                   {"05-01-2024", "-5", "Drawdown amount is requured"},
                   {"05-01-2024", "1'; DROP TABLE x", "Invalid Amount"},
                   {"31-02-2024", "10", "Invalid Date"}}) {
    auto screen = Open("");
    screen->TrxDate.SetText(date);
    screen->DrawDownAmt.SetText(amount);
    screen->SaveCmd.Click();
    EXPECT_EQ(LastMessage(), "Loan Progressive Drawdown: " + std::string(told));
    EXPECT_EQ(screen->DrawDownAmt.text(), amount);
  }
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM DrawDownMast"), "0");
}

TEST_F(DrawdownTest, DeletingTheOnlyReleaseOpensTheTermsAgain) {
  Release("1000");
  Pay(kId + "-001", kId, "2024-02-01", "110");
  desk.questions.clear();
  auto screen = Open("DL0001");
  screen->CmdDelete.Click();
  // Money has come in already: asked twice.
  ASSERT_EQ(desk.questions.size(), 2u);
  EXPECT_EQ(desk.questions[0], "Confirm to delete drawdown amount 1,000.00 dated 05-01-2024 ?");
  EXPECT_EQ(desk.questions[1], "Warning! The loan has 1 payment record(s)\n Proceed on ?");
  EXPECT_EQ(LastMessage(), "Loan Progressive Drawdown: Record deleted ");
  EXPECT_EQ(OfLoan(), "0 \n");
  EXPECT_FALSE(screen->SaveCmd.enabled() || screen->CmdDelete.enabled());
  EXPECT_EQ(screen->DrawDownAmt.text() + screen->LoanID.text() + screen->CustName.text(), "");
}

TEST_F(DrawdownTest, WhatIsNotThereCannotBeSaved) {
  office.session.CurrentLevel = 3;
  office.Run(
      "INSERT INTO LoanMast (LoanID,CustID,CompCode) VALUES ('AB1','HQ0001','AB');"
      "INSERT INTO DrawDownMast (SID,LoanID,CompCode) VALUES ('DL9','AB1','AB')");
  for (const auto& [sid, loan, told] : TextRows<3>{{"", "HQ0001-2", "Loan HQ0001-2 not found"},
                                                   {"DL7", "", "Loan DL7 not found"},
                                                   {"", "AB1", "Loan AB1 not found"},
                                                   {"DL9", "", "Loan AB1 not found"}}) {
    auto screen = Open(sid, loan);
    EXPECT_EQ(LastMessage(), "Loan Progressive Drawdown: " + std::string(told));
    EXPECT_FALSE(screen->SaveCmd.enabled() || screen->CmdDelete.enabled());
  }
}

TEST_F(DrawdownTest, NumbersOfTwoCompaniesDoNotMeet) {
  office.Run("INSERT INTO DrawDownMast (SID,LoanID,CompCode) VALUES ('DL0001','X','AB')");
  Release("1");
  EXPECT_EQ(Scalar("SELECT SID FROM DrawDownMast WHERE LoanID='HQ0001-001'"), "DL0002");
}

TEST_F(DrawdownTest, EachStatementThatFailsLeavesNoTrace) {
  std::unique_ptr<Drawdown> screen = Open("");
  const auto click = [&](Button& button) {
    return [&] { screen->Guard([&] { button.Click(); }); };
  };
  EXPECT_GE(FailEverywhere(click(screen->SaveCmd)), 8);
  EXPECT_EQ(OfLoan(), "1000 2024-01-05\n");
  // The number that a failed save had drawn went back.
  EXPECT_EQ(Scalar("SELECT SID FROM DrawDownMast"), "DL0001");
  screen = Open("DL0001");
  Put(screen->Payee, "Kedai Emas");
  EXPECT_GE(FailEverywhere(click(screen->SaveCmd)), 6);
  EXPECT_EQ(Scalar("SELECT Payee FROM DrawDownMast"), "Kedai Emas");
  screen = Open("DL0001");
  EXPECT_GE(FailEverywhere(click(screen->CmdDelete)), 6);
  EXPECT_EQ(OfLoan(), "0 \n");
}

TEST_F(DrawdownTest, AnotherDesktopTookTheRestOrTheLoanWhileTheQuestionStood) {
  auto screen = Open("");
  Release("500");  // the other desktop
  office.session.CallerTag.clear();
  office.session.HandOverLoanID = kId;
  Drawdown slow(office.session, desk);
  slow.Load();
  desk.on_ask = [this] { office.Run("UPDATE DrawDownMast SET DrawDownAmt=600"); };
  slow.SaveCmd.Click();
  EXPECT_EQ(
      LastMessage(),
      "Loan Progressive Drawdown: an error occur during saving record\nDrawdown amount cannot "
      "more than loan amount");
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM DrawDownMast"), "1");
  EXPECT_EQ(slow.SID.text(), "");
  // The schedule goes while the question stands; the next press sees it at once.
  desk.on_ask = [this] {
    office.Run("UPDATE DrawDownMast SET DrawDownAmt=500;DELETE FROM SchMast");
  };
  slow.DrawDownAmt.SetText("400");
  slow.SaveCmd.Click();
  slow.SaveCmd.Click();
  EXPECT_EQ(LastMessage(),
            "Loan Progressive Drawdown: Loan HQ0001-001 has no schedule: delete its drawdown and "
            "save the loan again first");
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM DrawDownMast"), "1");
  MakeLoan("HQ0001-002", LoanScheme::kPersonal, "1000", "10");
  office.Run("UPDATE SchMast SET LoanID='HQ0001-001'");
  desk.on_ask = [this] { office.Run("DELETE FROM LoanMast"); };
  slow.DrawDownAmt.SetText("400");
  slow.SaveCmd.Click();
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM DrawDownMast"), "1");
}

}  // namespace
}  // namespace kaunter
