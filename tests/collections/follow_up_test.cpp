// Working arrears: the log of calls, the inquiry of due dates, and the reminder letters. A day of
// it stands in tests/play/follow-up.play.
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "collections/due_date_frm.h"
#include "collections/followup_frm.h"
#include "collections/reminder_frm.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

const std::string kId = "HQ0001-001";

// A printer that may be out of order, and a floor on which other screens are opened.
class ArrearsDesk : public AgreeingDesk {
 public:
  void Show(std::string_view screen) override {
    shown.push_back(std::string(screen) + " " + session->CallerTag + " " + session->HandOverCustID +
                    session->HandOverLoanID);
  }
  void Print(const ReportJob& job) override {
    const std::string file = job.ReportFileName.substr(job.ReportFileName.rfind('/') + 1);
    if (file == broken) throw std::runtime_error("the printer is on fire");
    printed.push_back(file + " " + job.SelectionFormula);
    if (after_print) after_print();
  }
  Session* session = nullptr;
  std::vector<std::string> printed;
  std::string broken;
  std::function<void()> after_print;
};

class ArrearsTest : public ::testing::Test, protected LoanOffice {
 protected:
  ArrearsTest() {
    counter.session = &office.session;
    counter.can_show = "*";
    MakeLoan(kId, LoanScheme::kPersonal, "1000", "10");
    office.Run(
        "UPDATE CustMast SET CustNIC='800101-14-5533',CustTel1='03-1',CustHP2='012-4';"
        "UPDATE LoanMast SET OldLoanCode='OLD9',PayOutAmt=LoanAmt;"
        "INSERT INTO HisStatusMast (HisStatusID) VALUES ('PROMISE')");
  }

  // A loan of its own customer, with one open instalment of 100.
  void Add(const std::string& id, const std::string& company, const std::string& due,
           const std::string& next_call = "", const std::string& balance = "100") {
    office.Run(fmt::format(
        "INSERT INTO CustMast (CustID,CompCode,CustName,CustNIC) VALUES ('C-{0}','{1}','Cust {0}',"
        "'IC-{0}');INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanBal,LoanAmt,PayOutAmt,"
        "NextDueDate,OldLoanCode) VALUES ('{0}','C-{0}','{1}',{3},100,100,'{2}','O-{0}');"
        "INSERT INTO SchMast (LoanID,SchID,CustID,DueDate,PayableAmt,Payment) VALUES "
        "('{0}',1,'C-{0}','{2}',100,0)",
        id, company, due, balance));
    if (!next_call.empty()) {
      office.Run(fmt::format("UPDATE LoanMast SET NextCall='{}' WHERE LoanID='{}'", next_call, id));
    }
  }

  std::unique_ptr<FollowupFrm> FollowUp(const std::string& loan = kId) {
    office.session.HandOverLoanID = loan;
    auto screen = std::make_unique<FollowupFrm>(office.session, counter);
    screen->Load();
    return screen;
  }
  static void Fill(FollowupFrm& screen, const std::string& next_call, const std::string& remarks) {
    screen.HisStatus.Pick("PROMISE");
    Put(screen.NextCall, next_call);
    Put(screen.HisRemarks, remarks);
  }
  std::string LastMessage() { return counter.messages.empty() ? "" : counter.messages.back(); }
  std::string NextCallOfLoan() {
    return Scalar("SELECT NextCall FROM LoanMast WHERE LoanID='HQ0001-001'");
  }
  std::string Calls() { return Scalar("SELECT COUNT(*) FROM FollowUpMast"); }

  ArrearsDesk counter;
};

// --- the log

TEST_F(ArrearsTest, WhatIsMissingIsToldInItsOrder) {
  office.Run(
      "INSERT INTO FollowUpMast (HisDate,HisTime,LoanID,HisStatus,HisRemarks,UserID) VALUES "
      "('2024-01-02','09:00:00','HQ0001-001','PROMISE','','BOB')");
  // Each row breaks its own check and all that come after it.
  for (const auto& [history, loan, status, next_call, remarks, told] : std::initializer_list<
           std::tuple<bool, const char*, const char*, const char*, const char*, const char*>>{
           {true, "", "", "", "", "History data are not allow to change"},
           {false, "", "", "", "", "Loan ID is require"},
           {false, "NOLOAN", "", "", "", "Invalid Loan Code NOLOAN"},
           {false, "HQ0001-001", "", "", "", "Status is require"},
           {false, "HQ0001-001", "PROMISE", "", "", "Next call is require"},
           {false, "HQ0001-001", "PROMISE", "31-02-2024", "", "Next call is require"},
           {false, "HQ0001-001", "PROMISE", "05-02-2024", "  ", "Remarks is require"}}) {
    auto screen = FollowUp();
    if (history) screen->FollowUpDG.Open(0, 0);
    screen->HisLoanID.SetText(loan);
    screen->HisStatus.SetText(status);
    screen->NextCall.SetText(next_call);
    screen->HisRemarks.SetText(remarks);
    counter.questions.clear();
    screen->SaveCmd.Click();
    EXPECT_EQ(LastMessage(), "Follow Up: " + std::string(told));
    EXPECT_TRUE(counter.questions.empty());
    EXPECT_EQ(screen->HisRemarks.text(), remarks);
  }
  EXPECT_EQ(Calls(), "1");
  EXPECT_EQ(NextCallOfLoan(), "");
}

TEST_F(ArrearsTest, ACallIsWrittenOnceAndSetsTheNextOne) {
  auto screen = FollowUp();
  EXPECT_EQ(screen->CustName.text() + screen->Contact1.text() + screen->Contact4.text(),
            "Tan 'Ah' Kow03-1012-4");
  Fill(*screen, "05-02-2024", "He'll pay");
  counter.agrees = false;
  screen->SaveCmd.Click();
  EXPECT_EQ(counter.questions.back(), "Confirm to save Follow Up record?");
  EXPECT_EQ(Calls() + screen->HisRemarks.text(), "0He'll pay");
  counter.agrees = true;
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Follow Up: Record save");
  EXPECT_EQ(Lines("SELECT HisDate,HisTime,LoanID,HisStatus,HisRemarks,NextCall,UserID,DateCreated "
                  "FROM FollowUpMast"),
            "2024-01-31 14:05:09 HQ0001-001 PROMISE He'll pay 2024-02-05 AMY "
            "2024-01-31 14:05:09\n");
  EXPECT_EQ(NextCallOfLoan(), "2024-02-05");
  EXPECT_EQ(screen->HisDate.text() + " " + screen->HisTime.text(), "31-01-2024 14:05:09");
  EXPECT_EQ(Column(screen->FollowUpDG, 6), "05-02-2024 ");
  // Pressed twice by mistake: no second row.
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage() + Calls(), "Follow Up: Status is require1");
}

TEST_F(ArrearsTest, HistoryIsShownLatestFirstAndStaysAsItIs) {
  office.Run(
      "INSERT INTO FollowUpMast (HisDate,HisTime,LoanID,HisStatus,HisRemarks,NextCall,UserID) "
      "VALUES ('2024-01-02','09:00:00','HQ0001-001','PROMISE','first','2024-01-09','BOB'),"
      "('2024-01-09','08:30:00','HQ0001-001','PROMISE','second','2024-01-10',''),"
      "('2024-01-09','15:00:00','HQ0001-001','PROMISE','third','2024-01-20','BOB')");
  auto screen = FollowUp();
  EXPECT_EQ(Column(screen->FollowUpDG, 3), "third second first ");
  const std::string before = Stored();
  // A line whose user is unknown is history too.
  for (int row : {0, 1}) {
    screen->FollowUpDG.Open(row, 0);
    EXPECT_EQ(screen->HisUserID.text() + screen->NextCall.text(),
              row == 0 ? "BOB20-01-2024" : "10-01-2024");
    Put(screen->HisRemarks, "changed");
    screen->SaveCmd.Click();
    EXPECT_EQ(LastMessage(), "Follow Up: History data are not allow to change");
  }
  EXPECT_EQ(Stored(), before);
  screen->Command2.Click();
  EXPECT_EQ(screen->HisRemarks.text() + screen->HisUserID.text(), "");
  Fill(*screen, "01-02-2024", "fourth");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage() + Calls(), "Follow Up: Record save4");
}

TEST_F(ArrearsTest, AFailingStatementIsToldForWhatItIs) {
  const std::string before = Stored();
  auto screen = FollowUp();
  Fill(*screen, "05-02-2024", "pays");
  const auto fail_on = [this](const std::string& start) {
    main().SetFaultHook([start](std::string_view sql) {
      if (sql.starts_with(start)) throw SqlError(1105, "the disk is full");
    });
  };
  fail_on("INSERT INTO FollowUpMast");
  screen->SaveCmd.Click();
  main().SetFaultHook({});
  EXPECT_EQ(LastMessage(),
            "Follow Up: an error occur during saving record\nthe disk is full\nNothing of it was "
            "kept. Mend the cause and do it again.");
  EXPECT_EQ(Stored(), before);
  EXPECT_EQ(screen->HisRemarks.text() + screen->NextCall.text(), "pays05-02-2024");
  // The row stands without the loan's date: there is no transaction around the two.
  fail_on("UPDATE LoanMast");
  screen->SaveCmd.Click();
  main().SetFaultHook({});
  EXPECT_EQ(LastMessage(),
            "Follow Up: The call is recorded, but its next call date is not on the loan\nthe disk "
            "is full\nMend the cause. Do not enter the call again; the next one sets the date.");
  EXPECT_EQ(Calls() + NextCallOfLoan(), "1");
  EXPECT_EQ(screen->FollowUpDG.RowCount(), 1);
  // Deleted by another desktop: no call for a loan that is gone.
  Fill(*screen, "05-02-2024", "again");
  office.Run("DELETE FROM LoanMast");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage() + Calls(), "Follow Up: an error occur during saving record1");
  for (const char* start : {"SELECT CustID,CompCode", "Select cm.", "Select HisDate"}) {
    office.Run(
        "DELETE FROM LoanMast;INSERT INTO LoanMast (LoanID,CustID,CompCode) VALUES "
        "('L7','HQ0001','HQ')");
    fail_on(start);
    auto other = FollowUp("L7");
    main().SetFaultHook({});
    EXPECT_EQ(LastMessage(), (start == std::string("Select cm.")
                                  ? "Follow Up: an error occur during reading customer record"
                                  : "Follow Up: an error occur during reading loan record") +
                                 kReadAgain);
    EXPECT_EQ(other->HisLoanID.text() + other->CustName.text(), "L7");
  }
}

TEST_F(ArrearsTest, ALoanThatIsNotThereOrNotOursIsRefused) {
  Add("AB1", "AB", "2024-01-10");
  FollowUp("HQ0001-777");
  EXPECT_EQ(LastMessage(), "Follow Up: Laon ID not found");
  auto screen = FollowUp();
  Put(screen->HisLoanID, "HQ'1");
  EXPECT_EQ(LastMessage(), "Follow Up: Invalid Loan Code HQ'1");
  EXPECT_EQ(screen->HisLoanID.text() + screen->CustName.text(), "HQ'1");
  office.session.CurrentLevel = 3;
  office.session.MsgTitle = "Follow Up";
  Put(screen->HisLoanID, "AB1");
  EXPECT_EQ(LastMessage(), "Follow Up: You Cannot Access Company AB");
  EXPECT_EQ(screen->CustName.text(), "");
  office.session.AllowedCompanies = "\"AB\"";
  Put(screen->HisLoanID, "HQ0001-001");
  Put(screen->HisLoanID, "AB1");
  EXPECT_EQ(screen->CustName.text(), "Cust AB1");
  screen->Command3.Click();
  screen->Command4.Click();
  EXPECT_EQ(counter.shown, (std::vector<std::string>{"NewCustFrm Edit Customer C-AB1",
                                                     "NewLoanFrm Edit Loan AB1"}));
}

// --- calls due

TEST_F(ArrearsTest, CallsDueComePageByPageEachOnce) {
  Add("A1", "HQ", "2024-01-01", "2024-01-31");
  Add("A2", "HQ", "2024-01-01", "2024-01-20");
  Add("A3", "HQ", "2024-01-01", "2024-01-20");
  Add("A4", "HQ", "2024-01-01", "2024-01-20");
  Add("A5", "HQ", "2024-01-01", "2024-01-05");
  Add("LATER", "HQ", "2024-01-01", "2024-02-01");
  Add("PAID", "HQ", "2024-01-01", "2024-01-10", "0");
  Add("NEVER", "HQ", "2024-01-01");
  auto screen = FollowUp("");
  EXPECT_EQ(Column(screen->NextCallDG, 2), "A1 A4 A3 A2 A5 ");
  screen->iLimit.Pick("two");
  EXPECT_EQ(LastMessage(), "Follow Up: Invalid number");
  EXPECT_EQ(screen->iLimit.text(), "100");
  screen->iLimit.Pick("2");
  std::string pages = Column(screen->NextCallDG, 2) + "| ";
  for (int i = 0; i < 3; ++i) {
    screen->Command5.Click();
    pages += Column(screen->NextCallDG, 2) + "| ";
  }
  // Three loans of one day across two pages; the last page repeats a row and comes again.
  EXPECT_EQ(pages, "A1 A4 | A3 A2 | A2 A5 | A2 A5 | ");
  EXPECT_EQ(screen->Label8.Text(), "Limit From 8");
  for (int i = 0; i < 9; ++i) screen->Command6.Click();
  EXPECT_EQ(Column(screen->NextCallDG, 2) + screen->Label8.Text(), "A1 A4 Limit From 2");
  screen->NextCallDG.Open(1, 0);
  EXPECT_EQ(screen->CustName.text(), "Cust A4");
}

// --- due dates

class DueDateTest : public ArrearsTest {
 protected:
  DueDateTest() {
    Add("A1", "HQ", "2024-01-10");
    Add("A2", "HQ", "2024-02-10");
    Add("B1", "AB", "2024-01-20");
    office.Run("DELETE FROM SchMast WHERE LoanID='HQ0001-001'");
    screen.Load();
  }
  DueDateFrm screen{office.session, counter};
};

TEST_F(DueDateTest, OnlyWhatIsFilledNarrowsTheList) {
  office.Run(
      "INSERT INTO SchMast (LoanID,SchID,CustID,DueDate,PayableAmt,Payment) VALUES "
      "('A1',2,'C-A1','2024-01-15',100,100),('A1',3,'C-A1','2024-02-15',100,99.99)");
  for (const auto& [level, from, to, customer, loan, dates] : std::initializer_list<
           std::tuple<int, const char*, const char*, const char*, const char*, const char*>>{
           {4, "", "", "", "", ""},
           {3, "", "", "", "", ""},
           {4, "01-01-2000", "", "", "", "15-02-2024 10-02-2024 20-01-2024 10-01-2024 "},
           {4, "10-01-2024", "20-01-2024", "", "", "20-01-2024 10-01-2024 "},
           {4, "11-01-2024", "19-01-2024", "", "", ""},
           {4, "", "10-02-2024", "C-A1", "", "10-01-2024 "},
           {4, "", "", "C-A1", "", "15-02-2024 10-01-2024 "},
           {4, "", "", "", "A2", "10-02-2024 "},
           {4, "", "", "C-A1", "A2", ""},
           // Below level 4 the home company alone, whatever else is allowed.
           {3, "", "31-01-2024", "", "", "10-01-2024 "}}) {
    office.session.CurrentLevel = level;
    office.session.AllowedCompanies = "\"HQ\",\"AB\"";
    screen.CmdClear.Click();
    Put(screen.DateFrom, from);
    Put(screen.DateTo, to);
    Put(screen.CustID, customer);
    Put(screen.LoanID, loan);
    screen.SearchCmd.Click();
    EXPECT_EQ(Column(screen.DG, 0), dates) << from << to << customer << loan;
    EXPECT_EQ(screen.StatusLBL.Text(), fmt::format("{} record(s) found", screen.DG.RowCount()));
  }
  EXPECT_TRUE(counter.messages.empty());
  EXPECT_EQ(screen.DG.Cell(0, 7), "100.00");
  screen.DG.Open(0, 3);
  screen.DG.Open(0, 1);
  screen.DG.Open(0, 0);  // a date is no way to anywhere
  EXPECT_EQ(counter.shown,
            (std::vector<std::string>{"NewCustFrm Edit Customer C-A1", "NewLoanFrm Edit Loan A1"}));
  // Days that a figure hands over: of all the person's companies, and what is owed alone.
  office.Run("UPDATE LoanMast SET LoanBal=0 WHERE LoanID='A1'");
  office.session.HandOverDays = {"", "31-01-2024"};
  DueDateFrm of_figure{office.session, counter};
  of_figure.Load();
  EXPECT_EQ(Column(of_figure.DG, 1), "B1 ");
}

TEST_F(DueDateTest, AKeyIsTypedInThreeWays) {
  for (const auto& [typed, loan, customer] : TextRows<3>{{"A1", "A1", ""},
                                                         {"O-A2", "A2", "C-A2"},
                                                         {"IC-A1", "A1", "C-A1"},
                                                         {"C-A1", "", "C-A1"},
                                                         {"O'Brien", "", ""}}) {
    screen.CmdClear.Click();
    counter.messages.clear();
    Put(screen.LoanID, typed);
    EXPECT_EQ(screen.LoanID.text(), *loan ? loan : typed);
    EXPECT_EQ(LastMessage(),
              *loan ? "" : fmt::format("Due Date Inquiry: Loan ID {} not found", typed));
    screen.CmdClear.Click();
    counter.messages.clear();
    Put(screen.CustID, typed);
    EXPECT_EQ(screen.CustID.text(), *customer ? customer : typed);
    EXPECT_EQ(LastMessage(),
              *customer ? "" : fmt::format("Due Date Inquiry: Customer ID {} not found", typed));
  }
  // What was refused does not widen the list to everything that is due.
  Put(screen.DateFrom, "01-01-2000");
  screen.SearchCmd.Click();
  EXPECT_EQ(screen.DG.RowCount(), 0);
  EXPECT_EQ(LastMessage(), "Due Date Inquiry: Customer ID O'Brien not found");
  office.session.CurrentLevel = 3;
  screen.CmdClear.Click();
  for (const char* typed : {"B1", "O-B1", "IC-B1"}) {
    Put(screen.LoanID, typed);
    EXPECT_EQ(LastMessage(), fmt::format("Due Date Inquiry: Loan ID {} not found", typed));
  }
  screen.CmdClear.Click();
  Put(screen.LoanID, "A2");
  EXPECT_EQ(screen.LblCustName.Text(), "Cust A2");
  screen.LblCustName.onClick();
  EXPECT_EQ(counter.shown.back(), "NewCustFrm Edit Customer C-A2");
}

TEST_F(DueDateTest, BadDatesAndFailingReadsAreTold) {
  Put(screen.DateFrom, "30-02-2024");
  EXPECT_EQ(LastMessage(), "Due Date Inquiry: Invalid date, Please Check!");
  counter.messages.clear();
  screen.SearchCmd.Click();
  EXPECT_EQ(LastMessage(), "Due Date Inquiry: Invalid date, Please Check!");
  EXPECT_EQ(screen.DateFrom.text(), "30-02-2024");
  screen.CmdClear.Click();
  main().SetFaultHook([](std::string_view) { throw SqlError(1105, "the disk is full"); });
  Put(screen.LoanID, "A1");
  EXPECT_EQ(LastMessage(),
            "Due Date Inquiry: an error occur during reading loan record" + kReadAgain);
  screen.LoanID.Clear();
  Put(screen.CustID, "C-A1");
  EXPECT_EQ(LastMessage(),
            "Due Date Inquiry: an error occur during reading customer record" + kReadAgain);
  screen.CustID.Clear();
  Put(screen.DateTo, "31-01-2024");
  screen.SearchCmd.Click();
  main().SetFaultHook({});
  EXPECT_EQ(LastMessage(),
            "Due Date Inquiry: An error occur during geting schedule record" + kReadAgain);
}

// --- reminders

class ReminderTest : public ArrearsTest {
 protected:
  ReminderTest() {
    Add("A1", "HQ", "2024-01-10");
    Add("A2", "AB", "2024-01-05");
    Add("A3", "HQ", "2024-01-30");
    Add("TODAY", "HQ", "2024-01-31");
    Add("PAID", "HQ", "2024-01-01", "", "0");
    Add("PART", "HQ", "2024-01-02");
    office.Run(
        "UPDATE LoanMast SET PayOutAmt=60 WHERE LoanID='PART';"
        "UPDATE LoanMast SET ReminderDate='2024-01-12' WHERE LoanID='A2';"
        // No date as another program may have left it.
        "UPDATE LoanMast SET ReminderDate='1900-01-01' WHERE LoanID='A3';"
        "UPDATE LoanMast SET NextDueDate='2024-03-31' WHERE LoanID='HQ0001-001'");
    screen.Load();
  }
  std::string Dates() {
    return Lines(
        "SELECT LoanID,ReminderDate,ReminderDate2 FROM LoanMast WHERE LoanID LIKE 'A%' "
        "ORDER BY LoanID");
  }
  Reminderfrm screen{office.session, counter};
};

TEST_F(ReminderTest, TheFirstLetterThenTheSecond) {
  EXPECT_EQ(Column(screen.vsd, 0), "A2 A1 A3 ");
  screen.SaveCmd.Click();
  EXPECT_TRUE(counter.questions.empty());  // nothing ticked, nothing to ask
  screen.SelectAllCmd.Click();
  counter.agrees = false;
  screen.SaveCmd.Click();
  EXPECT_TRUE(counter.printed.empty());
  counter.agrees = true;
  counter.questions.clear();
  screen.SaveCmd.Click();
  EXPECT_EQ(counter.questions,
            (std::vector<std::string>{"Confirm to process",
                                      "Confirm to update reminder date of 3 loan(s) as today ?"}));
  EXPECT_EQ(counter.printed, (std::vector<std::string>{
                                 "Reminder.rpt {LoanMast.LoanID}='A1' or {LoanMast.LoanID}='A3'",
                                 "Reminder2.rpt {LoanMast.LoanID}='A2'"}));
  EXPECT_EQ(LastMessage(), "Reminder Letter: Process completed");
  EXPECT_EQ(Dates(), "A1 2024-01-31 \nA2 2024-01-12 2024-01-31\nA3 2024-01-31 \n");
  EXPECT_EQ(Column(screen.vsd, 3), "12-01-2024 31-01-2024 31-01-2024 ");
  // Only what is ticked; the first date stays. Its letter gives time, this day does not end it.
  screen.vsd.Tick(1, true);
  screen.SaveCmd.Click();
  EXPECT_EQ(counter.printed.size(), 2u);
  EXPECT_EQ(counter.messages.at(counter.messages.size() - 2),
            "Reminder Letter: The 14 days of the first reminder are not over, no letter: A1");
  // A first letter of arrears that were paid since is none: A3's row fell due on 2024-01-30.
  office.Run("UPDATE LoanMast SET ReminderDate='2024-01-16' WHERE LoanID IN ('A1','A3')");
  screen.SelectAllCmd.Click();
  screen.vsd.Tick(0, false);
  screen.SaveCmd.Click();
  EXPECT_EQ(counter.printed.at(2), "Reminder.rpt {LoanMast.LoanID}='A3'");
  EXPECT_EQ(counter.printed.at(3), "Reminder2.rpt {LoanMast.LoanID}='A1'");
  EXPECT_EQ(Dates(), "A1 2024-01-16 2024-01-31\nA2 2024-01-12 2024-01-31\nA3 2024-01-31 \n");
}

TEST_F(ReminderTest, ALetterThatWasNotPrintedLeavesNoDate) {
  const std::string before = Dates();
  screen.SelectAllCmd.Click();
  counter.broken = "Reminder.rpt";
  screen.SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Reminder Letter: the printer is on fire");
  EXPECT_EQ(Dates(), before);
  // The first letters went out before the second ones failed: their dates stand.
  counter.broken = "Reminder2.rpt";
  screen.SelectAllCmd.Click();
  screen.SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Reminder Letter: the printer is on fire");
  EXPECT_EQ(Dates(), "A1 2024-01-31 \nA2 2024-01-12 \nA3 2024-01-31 \n");
}

TEST_F(ReminderTest, AnOnlyPreviewedLetterLeavesNoDate) {
  const std::string before = Dates();
  screen.SelectAllCmd.Click();
  counter.refused = "Confirm to update reminder date of 3 loan(s) as today ?";
  screen.SaveCmd.Click();
  EXPECT_EQ(counter.printed.size(), 2u);
  EXPECT_EQ(LastMessage(), "Reminder Letter: Process completed");
  EXPECT_EQ(Dates(), before);
}

TEST_F(ReminderTest, DatesAreStoredTogetherOrNotAtAll) {
  const std::string before = Dates();
  screen.vsd.Tick(1, true);
  screen.vsd.Tick(2, true);
  main().SetFaultHook([](std::string_view sql) {
    if (sql.find("WHERE LoanID='A3'") != std::string_view::npos && sql.starts_with("UPDATE"))
      throw SqlError(1105, "the disk is full");
  });
  screen.SaveCmd.Click();
  main().SetFaultHook({});
  EXPECT_EQ(LastMessage(),
            "Reminder Letter: The letters are printed, but their dates are not on the loans"
            "\nthe disk is full\nNothing of it was kept. Mend the cause and do it again.");
  EXPECT_EQ(Dates(), before);
  EXPECT_FALSE(main().InTransaction());
  main().SetFaultHook([](std::string_view) { throw SqlError(1105, "the disk is full"); });
  screen.SelectAllCmd.Click();
  screen.SaveCmd.Click();
  main().SetFaultHook({});
  EXPECT_EQ(LastMessage(),
            "Reminder Letter: an error occur during reading loan record" + kReadAgain);
  EXPECT_EQ(counter.printed.size(), 1u);
}

// The list may stand on the screen for hours.
TEST_F(ReminderTest, WhoHasPaidMeanwhileGetsNoLetter) {
  Add("A4", "HQ", "2024-01-30");  // its date was not moved on with its payment
  office.Run("UPDATE SchMast SET Payment=100 WHERE LoanID='A4'");
  screen.SearchCmd.Click();
  screen.SelectAllCmd.Click();
  office.Run(
      "UPDATE LoanMast SET NextDueDate='2024-02-10' WHERE LoanID='A1';"
      "DELETE FROM LoanMast WHERE LoanID='A2'");
  screen.SaveCmd.Click();
  EXPECT_EQ(counter.printed, std::vector<std::string>{"Reminder.rpt {LoanMast.LoanID}='A3'"});
  EXPECT_EQ(counter.messages.at(counter.messages.size() - 2),
            "Reminder Letter: Not in arrears any more, no letter: A2, A1, A4");
  Put(screen.CalSearchTo, "31/02/2024");
  EXPECT_EQ(LastMessage(), "Reminder Letter: Invalid date, Please Check!");
  EXPECT_EQ(screen.vsd.RowCount(), 2);
  Put(screen.CalSearchTo, "01-02-2024");
  EXPECT_EQ(Column(screen.vsd, 0), "A3 A4 TODAY ");
}

// Many letters go out in several prints, each loan once.
TEST_F(ReminderTest, ManyLettersAreSeveralPrints) {
  for (int i = 0; i < 205; ++i) Add(fmt::format("M{:03}", i), "HQ", "2024-01-02");
  screen.SearchCmd.Click();
  screen.SelectAllCmd.Click();
  screen.SaveCmd.Click();
  EXPECT_EQ(counter.printed.size(), 3u);  // 200 and 7 first ones, one second
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM LoanMast WHERE ReminderDate='2024-01-31'"), "207");
}

}  // namespace
}  // namespace kaunter
