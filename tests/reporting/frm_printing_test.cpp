#include "reporting/frm_printing.h"

#include <filesystem>
#include <fstream>

#include "tests/reporting/report_counter.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

struct PrintingCounter : ReportCounter {
  PrintingCounter() {
    std::filesystem::create_directories(office.session.AppPath + "/ReportList");
    WriteList(
        "Cover,Cover.rpt,{LoanMast.LoanID}\r\n"
        "Schedule J,AgreeJ.rpt,{LoanMast.LoanID}\r\n"
        "Schedule K,AgreeK.rpt,{LoanMast.LoanID}\r\n"
        "\"Due diligence, loan\",CDD.rpt,{LoanMast.LoanID}\r\n"
        "Note,Note.rpt,\r\n");
    for (const char* file : {"Cover.rpt", "AgreeJ.rpt", "AgreeK.rpt", "CDD.rpt"}) Install(file);
  }

  void WriteList(const std::string& text, const char* name = "loan.ini") {
    std::ofstream(office.session.AppPath + "/ReportList/" + name) << text;
  }
  void Install(const std::string& file) {
    std::ofstream(office.session.AppPath + "/" + file) << "title \"\"\n";
  }

  frmPrinting& OpenDesk(const std::string& loan, const std::string& kind = "loan") {
    office.session.HandOverLoanID = loan;
    office.session.CallerTag = kind;
    office.session.MsgTitle = "Printing";
    desk.messages.clear();
    printing = std::make_unique<frmPrinting>(office.session, desk);
    printing->Load();
    return *printing;
  }
  // Ticks the only document of the list and prints it.
  const ReportJob* PrintOnly(const std::string& line) {
    WriteList(line + "\n");
    desk.printed.clear();
    desk.questions.clear();
    frmPrinting& frm = OpenDesk("L1");
    frm.Check1.Tick(true);
    frm.Guard([&] { frm.SaveCmd.Click(); });
    return desk.printed.empty() ? nullptr : &desk.printed.back();
  }
  std::string Titles() const {
    std::string titles;
    for (int row = 0; row < printing->vsd.RowCount(); ++row) {
      titles +=
          (row == 0 ? "" : "|") + printing->vsd.Cell(row, 0) + " " + printing->vsd.Cell(row, 1);
    }
    return titles;
  }

  std::unique_ptr<frmPrinting> printing;
};

TEST(FrmPrinting, TheLoansTypeAndTheAmlSwitchDecideWhatIsListed) {
  PrintingCounter counter;
  counter.office.Run(
      "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanType) VALUES ('L3','C1','HQ','')");
  counter.OpenDesk("L1");
  EXPECT_EQ(counter.Titles(), "1 Cover|2 Schedule J|3 Note");
  counter.OpenDesk("L2");
  EXPECT_EQ(counter.Titles(), "1 Cover|2 Schedule K|3 Note");
  counter.OpenDesk("L3");
  EXPECT_EQ(counter.Titles(), "1 Cover|2 Note");
  counter.office.session.settings.AMLA = true;
  counter.office.Run("UPDATE CompMast SET AMLA='1' WHERE CompCode='HQ'");
  counter.OpenDesk("L1");
  EXPECT_EQ(counter.Titles(), "1 Cover|2 Schedule J|3 Due diligence, loan|4 Note");
  EXPECT_FALSE(counter.office.session.aml.AMLA) << "the rules of the screen below stay";
}

TEST(FrmPrinting, AListIsReadAsFarAsItGoes) {
  const std::string trouble = "Printing: an error occur during reading printing code";
  std::string longest;
  for (int line = 1; line <= 51; ++line) longest += "A,A.rpt,\n";
  struct Case {
    std::string text;
    int rows;
    bool complete;
  };
  const Case cases[] = {
      {longest, 50, true},  // one of the 51 is for secured loans
      {longest + "A,A.rpt,\n", 50, false},
      {longest + "\nwhatever stands behind the end", 50, true},
      {"A,A.rpt,\n,B.rpt,\nC,C.rpt,\n", 1, true},  // an empty title ends the list
      {"\xEF\xBB\xBF"
       "A,A.rpt,{LoanMast.LoanID}",
       1, true},
      {"A,A.rpt,\nB,B.rpt\n", 1, false},
      {"A,A.rpt,\n\"B,B.rpt,\n", 1, false},
      {"", 0, true},
  };
  PrintingCounter counter;
  for (const Case& c : cases) {
    counter.WriteList(c.text);
    EXPECT_EQ(counter.OpenDesk("L1").vsd.RowCount(), c.rows) << c.text.substr(0, 40);
    EXPECT_EQ(counter.desk.messages,
              c.complete ? std::vector<std::string>{} : std::vector<std::string>{trouble})
        << c.text.substr(0, 40);
  }
  counter.OpenDesk("L1", "gold");  // has no list here
  EXPECT_EQ(counter.desk.messages.back(), trouble);
}

TEST(FrmPrinting, TickedDocumentsArePrintedInOrderWhereTheyAreSent) {
  PrintingCounter counter;
  frmPrinting& frm = counter.OpenDesk("L1");
  frm.vsd.Tick(2, true);
  EXPECT_FALSE(frm.vsd.Ticked(2)) << "Note.rpt is not there";
  EXPECT_NE(counter.desk.messages.back().find("Note.rpt"), std::string::npos);
  frm.Check1.Tick(true);
  counter.desk.agrees = false;
  frm.SaveCmd.Click();
  EXPECT_EQ(counter.desk.questions.back(), "Confirm to print report?");
  EXPECT_TRUE(counter.desk.printed.empty());
  counter.desk.agrees = true;
  frm.Option1.Choose();
  counter.office.session.Special = true;
  frm.SaveCmd.Click();
  ASSERT_EQ(counter.desk.printed.size(), 2U);
  EXPECT_EQ(ReportCounter::FileOf(&counter.desk.printed[0]), "Cover.rpt");
  EXPECT_TRUE(counter.desk.printed[0].ParameterFields.empty());
  EXPECT_EQ(counter.desk.printed[0].SelectionFormula, "{LoanMast.LoanID} = 'L1'");
  EXPECT_EQ(counter.desk.printed[1].ParameterFields.at(0), "RptID;True;True");
  EXPECT_EQ(counter.desk.printed[1].Destination, ReportDestination::printer);
  frm.Option2.Choose();
  frm.Check1.Tick(false);
  frm.vsd.Tick(0, true);
  frm.SaveCmd.Click();
  ASSERT_EQ(counter.desk.printed.size(), 3U);
  EXPECT_EQ(counter.desk.printed[2].Destination, ReportDestination::preview);
}

TEST(FrmPrinting, AReminderNotesItsDayBeforeThePrintWhenWanted) {
  PrintingCounter counter;
  const auto dates = [&] {
    return counter.office.Scalar("SELECT ReminderDate FROM LoanMast WHERE LoanID='L1'") + "/" +
           counter.office.Scalar("SELECT ReminderDate2 FROM LoanMast WHERE LoanID='L1'");
  };
  counter.Install("Reminder.rpt");
  counter.Install("Reminder2.rpt");
  // Nothing is overdue: no letter, no date.
  EXPECT_EQ(counter.PrintOnly("First,Reminder.rpt,{LoanMast.LoanID}"), nullptr);
  EXPECT_NE(counter.desk.messages.back().find("no reminder is printed"), std::string::npos);
  EXPECT_EQ(counter.desk.questions.size(), 1u);
  counter.office.Run(
      "UPDATE LoanMast SET LoanBal=1;INSERT INTO SchMast (LoanID,SchID,DueDate,PayableAmt) VALUES "
      "('L1',1,'2024-01-30',1)");
  // A second letter without a first one, or within its time, is asked about.
  counter.desk.declined = "No first reminder";
  EXPECT_EQ(counter.PrintOnly("Second,Reminder2.rpt,{LoanMast.LoanID}"), nullptr);
  // Yes to the print, no to the day.
  counter.desk.declined = "1st reminder";
  EXPECT_NE(counter.PrintOnly("First,Reminder.rpt,{LoanMast.LoanID}"), nullptr);
  EXPECT_EQ(dates(), "/");
  counter.desk.declined.clear();
  EXPECT_NE(counter.PrintOnly("First,Reminder.rpt,{LoanMast.LoanID}"), nullptr);
  EXPECT_EQ(counter.desk.questions.back(), "Confirm to update 1st reminder date as today ?");
  EXPECT_EQ(dates(), "2024-01-31/");
  counter.desk.declined = "gives time until 14-02-2024";
  EXPECT_EQ(counter.PrintOnly("Second,Reminder2.rpt,{LoanMast.LoanID}"), nullptr);
  counter.desk.declined.clear();
  EXPECT_NE(counter.PrintOnly("Second,Reminder2.rpt,{LoanMast.LoanID}"), nullptr);
  EXPECT_EQ(counter.desk.questions.back(), "Confirm to update 2nd reminder date as today ?");
  EXPECT_EQ(dates(), "2024-01-31/2024-01-31");
  EXPECT_EQ(counter.office.Scalar("SELECT COUNT(*) FROM LoanMast WHERE ReminderDate is not null"),
            "1");
}

TEST(FrmPrinting, ALateInvoiceAsksForItsDay) {
  PrintingCounter counter;
  counter.Install("LateInvoice.rpt");
  const char* line = "Late,LateInvoice.rpt,{ChargeMast.LoanID}";
  counter.desk.input = "15-02-2024";
  const ReportJob* job = counter.PrintOnly(line);
  ASSERT_NE(job, nullptr);
  EXPECT_EQ(job->SelectionFormula,
            "{ChargeMast.LoanID}='L1' AND {ChargeMast.TrxDate} >= DateTime (2024, 2, 1, 00, 00, "
            "00) and {ChargeMast.TrxDate} <= DateTime (2024, 2, 15, 23, 59, 59)");
  EXPECT_EQ(job->ParameterFields.at(0), "TrxDate;date(2024,02,15);True");
  EXPECT_EQ(job->ParameterFields.at(1), "InvNo;-;True");
  counter.desk.input.reset();  // as offered
  EXPECT_EQ(counter.PrintOnly(line)->ParameterFields.at(0), "TrxDate;date(2024,01,31);True");
  for (const char* nothing : {"", "31-02-2024"}) {
    counter.desk.input = nothing;
    EXPECT_EQ(counter.PrintOnly(line), nullptr) << nothing;
  }
}

TEST(FrmPrinting, FormulasThatAreNotTheLoan) {
  PrintingCounter counter;
  for (const char* file : {"RefererList2.rpt", "StatementList.rpt", "Cover.rpt"}) {
    counter.Install(file);
  }
  EXPECT_EQ(counter.PrintOnly("R,RefererList2.rpt,{CustMast.CustID}")->SelectionFormula,
            "{CustMast.CustID} = 'C1'");
  EXPECT_EQ(counter.PrintOnly("C,Cover.rpt,")->SelectionFormula, "");
  std::string handed_over;
  counter.desk.on_show = [&] {
    const Session& session = counter.office.session;
    handed_over = session.MsgTitle + "|" + session.ReportFile + "|" + session.HandOverLoanID;
  };
  EXPECT_EQ(counter.PrintOnly("S,StatementList.rpt,{LoanMast.LoanID}"), nullptr);
  EXPECT_EQ(counter.desk.shown, std::vector<std::string>{"ReportFrm"});
  EXPECT_EQ(handed_over, "Statement of Account|StatementList.rpt|L1");
  EXPECT_EQ(counter.office.session.MsgTitle, "Printing");
}

TEST(FrmPrinting, WithoutALoanItAsksForOneThatThePersonMaySee) {
  PrintingCounter counter;
  counter.office.session.CurrentLevel = 3;
  counter.office.Run("UPDATE LoanMast SET CompCode='KL' WHERE LoanID='L2'");
  frmPrinting& frm = counter.OpenDesk("");
  EXPECT_EQ(frm.vsd.RowCount(), 0);
  EXPECT_TRUE(counter.desk.messages.empty());
  const auto type = [&](const char* loan) {
    frm.LoanID.Enter();
    frm.LoanID.Type(loan);
    frm.LoanID.Leave();
  };
  type("l1");
  EXPECT_EQ(frm.vsd.RowCount(), 3);
  EXPECT_EQ(frm.CustName.text(), "Tan Ah Kow");
  for (const char* hidden : {"L2", "L9"}) {
    type(hidden);
    EXPECT_EQ(counter.desk.messages.back(),
              std::string("Printing: Loan ID ") + hidden + " not found");
    EXPECT_EQ(frm.vsd.RowCount(), 0) << "no document of another loan";
  }
}

TEST(FrmPrinting, TheListsThatComeWithTheProgramAreWhole) {
  for (const char* name : {"loan", "gold"}) {
    const PrintingList list =
        ReadPrintingList(std::string(test::SourceDir()) + "/reports/ReportList/" + name + ".ini");
    EXPECT_TRUE(list.complete) << name;
    ASSERT_GT(list.documents.size(), 3U) << name;
    EXPECT_EQ(list.documents[1].file, "AgreeJ.rpt");
    EXPECT_EQ(list.documents[2].file, "AgreeK.rpt");
  }
}

// The next paper may well be printed; behind the last one there is nothing to ask.
TEST(FrmPrinting, APaperThatFailsLeavesTheOthersToTheClerk) {
  const struct {
    const char* jammed;
    bool goes_on;
    std::size_t printed;
    std::size_t questions;  // the first one confirms the printing
    std::size_t messages;
  } cases[] = {{"Cover", true, 2, 2, 0}, {"Cover", false, 0, 2, 0}, {"Letter", true, 2, 1, 1}};
  for (const auto& c : cases) {
    PrintingCounter counter;
    counter.WriteList(
        "Cover,Cover.rpt,{LoanMast.LoanID}\r\nSchedule,AgreeJ.rpt,{LoanMast.LoanID}\r\n"
        "For others,AgreeK.rpt,{LoanMast.LoanID}\r\nLetter,Letter.rpt,{LoanMast.LoanID}\r\n");
    counter.Install("Letter.rpt");
    frmPrinting& frm = counter.OpenDesk("L1");
    for (int row = 0; row < frm.vsd.RowCount(); ++row) frm.vsd.SetTicked(row, true);
    ASSERT_EQ(frm.vsd.RowCount(), 3) << counter.Titles();
    counter.desk.jammed = c.jammed;
    if (!c.goes_on) counter.desk.declined = "Go on";
    frm.Guard([&] { frm.SaveCmd.Click(); });
    EXPECT_EQ(counter.desk.printed.size(), c.printed);
    ASSERT_EQ(counter.desk.questions.size(), c.questions);
    ASSERT_EQ(counter.desk.messages.size(), c.messages);
    const std::string& told =
        c.messages > 0 ? counter.desk.messages[0] : counter.desk.questions.back();
    EXPECT_NE(told.find("The printer has no paper."), std::string::npos) << told;
    EXPECT_EQ(told.find("Go on with Schedule?") != std::string::npos, c.questions > 1) << told;
    EXPECT_TRUE(frm.vsd.Ticked(2));
  }
}

}  // namespace
}  // namespace kaunter
