// The lists of late interest, its correction by hand, and the run that writes no charge.
#include "collections/batch_link_frm.h"
#include "collections/batch_list_frm.h"
#include "collections/late_int_frm.h"
#include "collections/loan_late_charge_frm.h"
#include "tests/collections/charge_counter.h"

namespace kaunter {
namespace {

class ChargesTest : public ChargeCounter {
 protected:
  ChargesTest() {
    AddCharge("B1", "Batch", "2024-02-01", "1.10");
    AddCharge("B2", "Batch", "2024-02-29", "1.20");
    AddCharge("B3", "Batch", "2024-03-01", "1.30");
    AddCharge("L1", "Batch Loan Interest", "2024-02-10", "77");
    AddCharge("I1", "Invoice", "2024-02-10", "50");
    AddCharge("O1", "Batch", "2024-02-10", "9", kOther);
  }
  std::unique_ptr<BatchLinkfrm> Link() {
    auto screen = std::make_unique<BatchLinkfrm>(office.session, counter);
    screen->Load();
    return screen;
  }
  std::string Stored() {
    return Lines("SELECT ChargeAmt,OrgAmt FROM ChargeMast ORDER BY ChargeID");
  }
};

TEST_F(ChargesTest, TheListShowsWhatTheCallerSelected) {
  office.session.HandOverSelection =
      "SELECT ChargeID,LoanID,TrxDate,DueDate,ChargeAmt FROM ChargeMast WHERE PType='Batch' AND "
      "LoanID='HQ0001-001' ORDER BY TrxDate";
  BatchListfrm list(office.session, counter);
  list.Load();
  EXPECT_EQ(list.DG.Row(0),
            (std::vector<std::string>{"B1", kLoan, "01-02-2024", "31-01-2024", "1.10"}));
  EXPECT_EQ(list.TotalLBL.Text(), "3 late charges, 3.60");
  office.session.HandOverSelection.clear();
  BatchListfrm empty(office.session, counter);
  empty.Load();
  EXPECT_EQ(empty.DG.RowCount(), 0);
}

TEST_F(ChargesTest, AMonthHoldsItsFirstAndItsLastDayAndNothingElse) {
  office.session.HandOverLoanID = kLoan;
  for (const auto& [month, level, days] :
       std::initializer_list<std::tuple<const char*, int, const char*>>{{"02-2024", 4, "B1 B2 "},
                                                                        {"03-2024", 4, "B3 "},
                                                                        {"12-2023", 4, ""},
                                                                        {"", 4, ""},
                                                                        {"02-2024", 3, ""}}) {
    office.session.CallerTag = month;
    office.session.CurrentLevel = level;
    office.session.CurrentCompCode = level == 4 ? "HQ" : "AB";
    LoanLateChargefrm list(office.session, counter);
    list.Load();
    EXPECT_EQ(list.title().english, "Late Charge - HQ0001-001");
    EXPECT_EQ(Column(list.DG, 0), days) << month;
  }
}

TEST_F(ChargesTest, AChangedChargeKeepsItsOldAmountAndTheTotalsFollow) {
  auto screen = Link();
  Put(screen->LoanID, kLoan);
  EXPECT_EQ(LastQuestion(), "Confirm to retrieve all Late Charges from Loan ID HQ0001-001 ?");
  EXPECT_EQ(Column(screen->DG, 0), "B1 B2 B3 ");
  screen->DG.Edit(0, 4, "0");
  screen->DG.Edit(1, 4, "2,000.5");
  screen->DG.Edit(2, 4, "9");
  screen->DG.Edit(2, 4, "1.3");  // as it was: no change
  screen->SaveCmd.Click();
  EXPECT_EQ(LastQuestion(), "Confirm to update changes ?");
  EXPECT_EQ(LastMessage(), "Title: Process changs done");
  EXPECT_EQ(Stored(), "0 1.1\n2000.5 1.2\n1.3 0\n50 0\n77 0\n9 0\n");
  // 2000.50 + 1.30 + 50; what the batch posted past the term counts for nothing.
  EXPECT_EQ(Totals(), "2051.8 0\n");
  EXPECT_EQ(Column(screen->DG, 5), "1.10 1.20 0.00 ");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Title: No changes, please check");
  // A second change keeps what stood before it.
  screen->DG.Edit(1, 4, "3");
  screen->SaveCmd.Click();
  EXPECT_EQ(Stored(), "0 1.1\n3 2000.5\n1.3 0\n50 0\n77 0\n9 0\n");
}

TEST_F(ChargesTest, WhatIsNoAmountGoesBackToWhatStoodThere) {
  auto screen = Link();
  Put(screen->LoanID, kLoan);
  for (const char* typed : {"abc", "1;2", "-0.01", "1e3"}) {
    counter.messages.clear();
    screen->DG.Edit(0, 4, typed);
    EXPECT_EQ(LastMessage(), "Title: Invalid Amount") << typed;
    EXPECT_EQ(screen->DG.Cell(0, 4), "1.10");
  }
  screen->DG.Edit(0, 4, "");
  EXPECT_EQ(screen->DG.Cell(0, 4), "0.00");
  EXPECT_FALSE(screen->DG.Edit(0, 5, "4"));
}

TEST_F(ChargesTest, RetrievalByDateAsksForBothDatesAndTheLoan) {
  for (const auto& [from, to, loan, told, rows] :
       TextRows<5>{{"", "", "", "Title: Date From is require", ""},
                   {"30-02-2024", "", "", "Title: Invalid Date", ""},
                   {"01-02-2024", "", "", "Title: Date To is require", ""},
                   {"01-02-2024", "x", "", "Title: Invalid Date", ""},
                   {"01-02-2024", "29-02-2024", "", "Title: Loan ID is required", ""},
                   {"01-02-2024", "29-02-2024", "X", "Title: Loan ID X not found", ""},
                   {"02-02-2024", "29-02-2024", "HQ0001-001", "", "B2 "}}) {
    auto screen = Link();
    counter.messages.clear();
    screen->DateFrom.SetText(from);
    screen->DateTo.SetText(to);
    screen->LoanID.SetText(loan);
    screen->Command1.Click();
    EXPECT_EQ(LastMessage(), told);
    EXPECT_EQ(Column(screen->DG, 0), rows);
  }
  // Another company's loan is not there; a refused question retrieves nothing and is not repeated.
  office.session.CurrentLevel = 3;
  office.session.CurrentCompCode = "AB";
  auto screen = Link();
  Put(screen->LoanID, kLoan);
  EXPECT_EQ(LastMessage(), "Title: Loan ID HQ0001-001 not found");
  office.session.CurrentCompCode = "HQ";
  counter.refused = "Confirm to retrieve all Late Charges from Loan ID HQ0001-001 ?";
  counter.questions.clear();
  screen = Link();
  Put(screen->LoanID, kLoan);
  Put(screen->LoanID, kLoan);
  EXPECT_EQ(screen->DG.RowCount(), 0);
  EXPECT_EQ(counter.questions.size(), 1u);
}

TEST_F(ChargesTest, AFailedUpdateChangesNothing) {
  auto screen = Link();
  Put(screen->LoanID, kLoan);
  screen->DG.Edit(0, 4, "0");
  screen->DG.Edit(2, 4, "7");
  EXPECT_GE(FailEverywhere(Click(*screen, screen->SaveCmd)), 6);
  EXPECT_EQ(Totals(), "58.2 0\n");  // 1.20 + 7 + 50
  // Another desktop deleted one of two: neither is changed, and what was typed stays.
  screen->DG.Edit(0, 4, "5");
  screen->DG.Edit(1, 4, "6");
  office.Run("DELETE FROM ChargeMast WHERE ChargeID='B2'");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Title: an error occur during retrieve late charge");
  EXPECT_EQ(Scalar("SELECT ChargeAmt FROM ChargeMast WHERE ChargeID='B1'"), "0");
  EXPECT_EQ(Column(screen->DG, 4), "5.00 6.00 7.00 ");
  main().SetFaultHook([](std::string_view) { throw SqlError(1105, "away"); });
  screen->DateFrom.SetText("01-01-2024");
  screen->DateTo.SetText("31-12-2024");
  screen->Command2.Click();
  EXPECT_EQ(LastMessage(),
            "Title: an error occur during retrieve late charge\naway\nMend the cause and read it "
            "again.");
}

TEST_F(ChargesTest, PaymentsEnteredAfterTheyFellDue) {
  office.Run("UPDATE LoanMast SET OldLoanCode='A7',Memo5='Lot 9' WHERE LoanID='HQ0001-001'");
  for (const auto& [id, created, due] :
       TextRows<3>{{"P1", "2024-02-05 23:59:59", "2024-01-31"},     // on the last day
                   {"P2", "2024-02-06", "2024-01-31"},              // a day later
                   {"P3", "2024-02-01 00:00:00", "2024-02-01"},     // on the very day
                   {"P4", "2024-01-31 23:59:59", "2024-01-30"}}) {  // before the first day
    office.Run(fmt::format(
        "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,PayAmt,IntAmt,DiscAmt,"
        "DateCreated,LastDueDate) VALUES ('{}','HQ0001-001','HQ0001','HQ','2024-01-30',100,2.5,1,"
        "'{}','{}')",
        id, created, due));
  }
  auto screen = Link();
  screen->DateFrom.SetText("01-02-2024");
  screen->DateTo.SetText("05-02-2024");
  screen->Command2.Click();
  ASSERT_EQ(screen->DG2.RowCount(), 1);
  EXPECT_EQ(screen->DG2.Row(0),
            (std::vector<std::string>{"P1", "05-02-2024 23:59:59", "30-01-2024", kLoan, "101.50",
                                      "31-01-2024", "Tan 'Ah' Kow", "A7 (Lot 9)"}));
  screen->DG2.Open(0, 0);
  EXPECT_EQ(Column(screen->DG, 0), "B1 B2 B3 ");
  office.session.CurrentLevel = 3;
  office.session.CurrentCompCode = "AB";
  screen->Command2.Click();
  EXPECT_EQ(screen->DG2.RowCount(), 0);
}

// --- the run that writes no charge

class LateIntTest : public ChargeCounter {
 protected:
  LateIntTest() {
    office.Run("UPDATE LoanMast SET LateChargePerDay=18");
    screen.Load();
  }
  std::string Noted() { return Scalar("SELECT [Value] FROM Systemast WHERE ID='LateIntDate'"); }
  void Process(const std::string& date) {
    screen.TrxDate.SetText(date);
    screen.Guard([this] { screen.SaveCmd.Click(); });
  }
  LateIntfrm screen{office.session, counter};
};

TEST_F(LateIntTest, TheFirstRunAsksForADateToBeginWith) {
  Process("");
  EXPECT_EQ(LastMessage(), "Title: Date is required");
  Process("30-02-2024");
  EXPECT_EQ(LastMessage(), "Title: Invalid Date");
  EXPECT_TRUE(counter.questions.empty());
  // A month before 31 March is the end of February.
  counter.refused = "Previous process date not found, Auto defauld to 29-02-2024";
  Process("31-03-2024");
  EXPECT_EQ(LastQuestion(), counter.refused);
  EXPECT_EQ(LastMessage(),
            "Title: Process Aborted!\nPlease contact vendor for more information, thanks");
  EXPECT_EQ(Noted(), "");
  counter.refused.clear();
  Process("31-03-2024");
  EXPECT_EQ(Noted(), "2024-03-31");
  EXPECT_EQ(screen.LateIntDate.text(), "31-03-2024");
  counter.questions.clear();
  Process("01-04-2024");
  EXPECT_TRUE(counter.questions.empty());
  EXPECT_EQ(Noted(), "2024-04-01");
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM ChargeMast"), "0");
}

TEST_F(LateIntTest, AFailureLeavesTheDayOpen) {
  office.Run("UPDATE Systemast SET [Value]='2024-02-01' WHERE ID='LateIntDate'");
  const auto run = [this] { Process("05-03-2024"); };
  int at = 1;
  for (; FailAt(at, run) && !committed; ++at) {
    EXPECT_EQ(Noted(), "2024-02-01") << at;
    EXPECT_FALSE(main().InTransaction());
    if (at == 1) continue;  // the look at the day done last, before the run
    EXPECT_EQ(LastMessage(),
              "Title: an error occur during process late interest charges\nthe disk is full\n"
              "Nothing of it was kept. Mend the cause and do it again.");
  }
  EXPECT_GE(at, 4);
  Process("05-03-2024");
  EXPECT_EQ(Noted(), "2024-03-05");
}

}  // namespace
}  // namespace kaunter
