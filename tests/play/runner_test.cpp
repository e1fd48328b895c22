// The commands of the language on the sample program: what holds, what fails, what stops.
#include "play/runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>

#include "tests/play/played.h"

namespace kaunter {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// Every script sees the exit entry of the program as its last line.
const std::string kExit = "[plain] Sample: exit\n";

TEST(Runner, WhatHolds) {
  const std::vector<std::string> scripts = {
      // events in their order, once each
      "set LoanID A1\nexpect LoanID A1\nexpect Log \"enter, change, leave\"",
      "type LoanID A1\nexpect Log \"enter, change\"\nleave LoanID\nleave LoanID\n"
      "expect Log \"enter, change, leave\"",
      // a box that was typed into is left when the hand goes elsewhere
      "type LoanID A1\nset Memo x\nexpect Log \"enter, change, leave\"",
      "type LoanID BAD\nanswer no\nclick SaveCmd\nexpect message \"Loan not found\\nTry again\"\n"
      "expect question \"Confirm to save ?\"\nexpect title Save",
      // the focus that comes back does not leave the box by itself
      "set LoanID BAD\nexpect focus LoanID\nset Memo x\nexpect message \"Loan not found\\nTry "
      "again\"\n"
      "expect no message",
      "set Memo \"a\\nb\"\nexpect Memo \"a\\nb\"",
      "set loanid 12345678\nexpect LOANID 12345678",
      // lists
      "set Bank maybank\nexpect Bank Maybank\nset Bank #0\nexpect Bank CIMB\n"
      "expect Log \"pick Maybank, pick CIMB\"",
      "set Purpose Boat\nexpect Purpose Boat\nset Purpose #0\nexpect Purpose Car",
      // ticks, options, pages
      "set Check1(2) 1\nset Check1(2) 1\nexpect Check1(2) 1\nclick Check1(2)\nexpect Check1(2) 0\n"
      "expect Log \"tick 1, tick 0\"",
      "click Month\nexpect Month 1\nset Day 1\nexpect Month 0\nexpect Log month",
      "set Pages Notes\nset Pages #0\nclick Notes",
      // grids
      "select DG 2\nselect DG 2\nopen DG 1\nopen DG 1 Amount\n"
      "expect Log \"row 1, row 1, row 0, open 0,0, open 0,2\"",
      "cell DG 1 Amount 50.00\nexpect cell DG 1 2 50.00\ncell DG 1 2 abc\n"
      "expect cell DG 1 amount 50.00",
      "tick DG 2\nexpect tick DG 2 1\ntick DG 2 0\nexpect tick DG 2 0\nexpect tick DG 1 0",
      "expect rows DG 2\nexpect rows Plain 0",
      "expect grid DG\n  1 | 31-01-2024 | 100.00\n  # the second is still open\n  "
      "2|29-02-2024|\nend",
      "expect grid DG Amount No\n100.00 | 1\n \"\" | 2\nend\nexpect grid Plain\nend",
      "expect grid DG 3\nK1\nK2\nend",
      // keys
      "key DG Delete\nexpect Log \"key Delete\"",
      "answer yes\nkey Memo Ctrl+S\nexpect message Saved",
      "key LoanID F2\nexpect screen PickFrm\nopen DG 2\nexpect screen SampleFrm\n"
      "expect message \"picked B2\"",
      "key Memo Esc\nexpect screen MainFrm",
      // state
      "expect enabled Off 0\nexpect enabled LoanID 1\nexpect visible Unseen 0\n"
      "expect visible Day 1\nexpect locked Locked1 1\nexpect locked Memo 0",
      "expect SaveCmd Save\nexpect screen sampleFRM",
      // messages and questions are two rows
      "answer yes no\nclick SaveCmd\nclick SaveCmd\nexpect title Save\nexpect message Saved\n"
      "expect title Save\nexpect no message\nexpect question \"Confirm to save ?\"\n"
      "expect question \"Confirm to save ?\"",
      "answer \"Tan Ah Kow\" \"\" /tmp\nclick AskCmd\nexpect Log \"Tan Ah Kow, , /tmp\"",
      // a screen that opens takes the word
      "click PickCmd\nexpect screen PickFrm\nopen DG 1\nexpect message \"picked A1\"\n"
      "expect message \"picked and back\"",
      "click PickCmd\nclose\nclose\nexpect screen MainFrm\nclick Label1\nexpect message \"picked "
      "and back\"\n"
      "expect message clicked",
      "click CloseCmd\nexpect screen MainFrm\nmenu samplemnu\nclose",
      "set Purpose Wedding\nanswer no yes\nclose\nexpect screen SampleFrm\nclose\nexpect screen "
      "MainFrm",
      // a failure is told and the screen goes on
      "click FailCmd\nexpect message \"server gone\"\nexpect title \"Sample Screen\"\nset LoanID A",
      // reports
      "click PrintCmd\nexpect report LoanMastList.rpt\nexpect formula "
      "\"{LoanMast.LoanID}='LC-1'\"\n"
      "expect parameter 0 \"RptID;7;True\"\nexpect parameter 1 \"\"",
      // behind the screens
      "expect sql \"select * from Kinds\" \"\"\nnow \"2024-02-29 08:30:00\"\n"
      "expect sql \"select getdate()\" \"2024-02-29 08:30:00\"\nnow 2024-03-01\n"
      "expect sql \"select getdate()\" 2024-03-01\nexpect sql \"update Nothing\" \"\"",
      "expect menu SampleMnu shown\nexpect menu GreyMnu greyed\nexpect menu HiddenMnu hidden\n"
      "expect panel 3 \"panel 3\"",
  };
  for (const std::string& script : scripts) {
    const Played played = PlayOnSample(script);
    EXPECT_EQ(played.status, Runner::kHeld) << script << "\n" << played.out;
    EXPECT_EQ(played.err, "") << script;
    EXPECT_THAT(played.out, EndsWith(kExit)) << script;
  }
}

TEST(Runner, WhatFailsGoesOnWithStatusOne) {
  struct Row {
    std::string script;
    std::string trouble;
  };
  const std::vector<Row> rows = {
      {"expect LoanID X", "line 2: LoanID: expected \"X\", was \"\"\n"},
      {"set Memo \"a\\nb\"\nexpect Memo ab", "line 3: Memo: expected \"ab\", was \"a\\nb\"\n"},
      {"expect message Saved", "line 2: message: expected \"Saved\", there was no message left\n"},
      {"expect question Sure", "line 2: question: expected \"Sure\", there was no question left\n"},
      {"expect title Save", "line 2: title: expected \"Save\", there was no message\n"},
      {"click FailCmd\nexpect message gone\nexpect no message",
       "line 3: message: expected \"gone\", was \"server gone\"\n"},
      {"click FailCmd\nexpect no message", "line 3: expected no message, was \"server gone\"\n"},
      {"expect cell DG 1 Amount 1.00",
       "line 2: DG row 1 Amount: expected \"1.00\", was \"100.00\"\n"},
      {"expect cell DG 3 Amount 1",
       "line 2: DG row 3 Amount: expected \"1\", the grid has 2 rows\n"},
      {"expect rows DG 3", "line 2: rows of DG: expected 3, were 2\n"},
      {"expect grid DG No Amount\n1 | 99.00\nend",
       "line 2: grid DG (2 rows): row 1: expected \"1 | 99.00\", was \"1 | 100.00\"; "
       "row 2: expected \"(no row)\", was \"2 | \"\n"},
      {"expect tick DG 1 1", "line 2: tick DG row 1: expected 1, was 0\n"},
      {"expect enabled Off 1", "line 2: enabled Off: expected 1, was 0\n"},
      {"expect visible Unseen 1", "line 2: visible Unseen: expected 1, was 0\n"},
      {"expect locked Memo 1", "line 2: locked Memo: expected 1, was 0\n"},
      {"expect focus LoanID\nexpect focus Memo",
       "line 3: focus: expected \"Memo\", was \"LoanID\"\n"},
      {"expect screen MainFrm", "line 2: screen: expected \"MainFrm\", was \"SampleFrm\"\n"},
      {"expect sql \"update Nothing\" 1", "line 2: sql: expected \"1\", was \"\"\n"},
      {"expect report A.rpt", "line 2: no report has been started\n"},
      {"click PrintCmd\nexpect report A.rpt",
       "line 3: report: expected \"A.rpt\", was \"LoanMastList.rpt\"\n"},
      {"click PrintCmd\nexpect parameter 1 x", "line 3: parameter 1: expected \"x\", was \"\"\n"},
      {"expect menu GreyMnu shown", "line 2: menu GreyMnu: expected \"shown\", was \"greyed\"\n"},
      {"expect panel 1 x", "line 2: panel 1: expected \"x\", was \"panel 1\"\n"},
  };
  for (const Row& row : rows) {
    const Played played = PlayOnSample(row.script + "\nclick Month\nshow Log");
    EXPECT_EQ(played.status, Runner::kExpectFailed) << row.script;
    EXPECT_EQ(played.err, row.trouble) << row.script;
    EXPECT_THAT(played.out, EndsWith("month\n" + kExit)) << row.script;
  }
}

TEST(Runner, WhatCannotBeDoneStopsWithStatusTwo) {
  struct Row {
    std::string script;
    std::string trouble;
  };
  const std::vector<Row> rows = {
      {"set LoanID \"A", "line 2: a quote is not closed\n"},
      {"sett LoanID A", "line 2: unknown command sett\n"},
      {"set LoanID", "line 2: the line does not parse: it is written set C TEXT\n"},
      {"set LoanID LC 1",
       "line 2: the line does not parse: it is written set C TEXT (an argument with blanks stands "
       "in double quotes)\n"},
      {"expect no question", "line 2: the line does not parse: it is written expect no message\n"},
      {"expect LoanID", "line 2: the line does not parse: it is written expect C TEXT\n"},
      {"set LoanNo A", "line 2: SampleFrm has no control LoanNo (describe prints what it has)\n"},
      {"expect LoanNo A",
       "line 2: SampleFrm has no control LoanNo (describe prints what it has)\n"},
      {"set Locked1 A", "line 2: Locked1 is locked\n"},
      {"set Off A", "line 2: Off is disabled\n"},
      {"set Unseen A", "line 2: Unseen is hidden\n"},
      {"set LoanID 123456789", "line 2: LoanID takes 8 characters, the text has 9\n"},
      {"set Bank HSBC", "line 2: Bank has no entry \"HSBC\"; it has: CIMB, Maybank\n"},
      {"set Bank #2", "line 2: Bank has no entry \"#2\"; it has: CIMB, Maybank\n"},
      {"set Check1(2) yes", "line 2: Check1(2) takes 1 or 0, not \"yes\"\n"},
      {"set Day 0", "line 2: Day is an option: it takes 1; choosing another one clears it\n"},
      {"set Pages Papers", "line 2: Pages has no page \"Papers\"\n"},
      {"set DG x", "line 2: DG takes no text\n"},
      {"click Memo", "line 2: Memo cannot be clicked\n"},
      {"click Off", "line 2: Off is disabled\n"},
      {"select LoanID 1", "line 2: LoanID is no grid\n"},
      {"select DG 3", "line 2: DG has no row 3; it has 2 rows\n"},
      {"open DG 0", "line 2: DG has no row 0; it has 2 rows\n"},
      {"open DG first", "line 2: a row is a whole number, not \"first\"\n"},
      {"cell DG 1 No 7", "line 2: column No of DG cannot be edited in row 1\n"},
      {"cell DG 1 9 7", "line 2: DG has no column 9; its 4 columns are numbered from 0\n"},
      {"tick Plain 1", "line 2: Plain has no row 1; it has 0 rows\n"},
      {"tick DG 1 on", "line 2: a tick is 1 or 0, not \"on\"\n"},
      {"expect grid DG\n1 | 2", "line 2: the lines that begin behind line 2 have no \"end\"\n"},
      {"expect DG x",
       "line 2: DG is a grid: expect cell, expect rows or expect grid look into it\n"},
      {"click SaveCmd",
       "line 2: no reply is queued for the question \"Confirm to save ?\" (Save)\n"},
      {"answer maybe\nclick SaveCmd",
       "line 3: the question \"Confirm to save ?\" wants yes or no, the reply is \"maybe\"\n"},
      {"answer yes", "line 2: the reply \"yes\" was never asked for\n"},
      {"click LoopCmd", "line 2: no reply is queued for the question \"Enough ?\" (Loop)\n"},
      {"menu ExitMnu", "line 2: the menu is covered by the open screen SampleFrm\n"},
      {"signin OWL hoot", "line 2: the menu is covered by the open screen SampleFrm\n"},
      {"close\nmenu HiddenMnu", "line 3: menu entry HiddenMnu is hidden\n"},
      {"close\nmenu GreyMnu", "line 3: menu entry GreyMnu is greyed\n"},
      {"close\nmenu NoMnu", "line 3: there is no menu entry NoMnu\n"},
      {"close\nmenu NoScreenMnu", "line 3: there is no screen NoFrm\n"},
      {"close\nmenu ExitMnu\nclose", "line 4: the program has ended\n"},
      {"sql \"select * from Nowhere\"", "line 2: Invalid object name\n"},
      {"now 31-01-2024", "line 2: \"31-01-2024\" is no time: yyyy-mm-dd hh:mm:ss\n"},
      {"set Purpose Wedding",
       "line 2: no reply is queued for the question \"Discard changes ?\" (Sample)\n"},
      {"set Purpose Wedding\nanswer no",
       "line 3: SampleFrm does not close at the end of the script\n"},
  };
  for (const Row& row : rows) {
    const Played played = PlayOnSample(row.script);
    EXPECT_EQ(played.status, Runner::kStopped) << row.script;
    EXPECT_EQ(played.err, row.trouble) << row.script;
    EXPECT_THAT(played.out, EndsWith(kExit)) << row.script;
  }
}

TEST(Runner, AStopEndsTheScriptAtOnce) {
  const Played played =
      PlayOnSample("expect LoanID X\nclick PickCmd\nset Nothing 1\nclick Label1\nshow DG");
  EXPECT_EQ(played.status, Runner::kStopped);
  EXPECT_EQ(played.err,
            "line 2: LoanID: expected \"X\", was \"\"\n"
            "line 4: PickFrm has no control Nothing (describe prints what it has)\n");
  // What was under way comes to its end; no further command ran.
  EXPECT_EQ(played.out, "[plain] Sample: picked and back\n" + kExit);
}

TEST(Runner, WhatThePersonWouldSee) {
  const Played played = PlayOnSample(
      "answer yes\nclick SaveCmd\nset LoanID BAD\nclick FailCmd\nclick OpenCmd\nclick PrintCmd\n"
      "answer Tan a.jpg /tmp\nclick AskCmd");
  EXPECT_EQ(played.status, Runner::kHeld);
  EXPECT_EQ(played.out,
            "[question] Save: Confirm to save ? -> yes\n"
            "[information] Save: Saved\n"
            "[critical] Sample: Loan not found\nTry again\n"
            "[critical] Sample Screen: server gone\n"
            "open http://www.kaunter.example/\n"
            "start DailyBatch 31-01-2024\n"
            "report LoanMastList.rpt\n"
            "[question] Name: Your name -> Tan\n"
            "[question] Picture: Pictures (*.jpg) -> a.jpg\n"
            "[question] Folder:  -> /tmp\n" +
                kExit);
}

TEST(Runner, WhatIsPrintedOnRequest) {
  const Played played = PlayOnSample(
      "set Secret hush\nset Memo \"a\\nb\"\nclick FailCmd\nshow Memo\nshow Secret\nshow DG\nsql "
      "\"select * from Kinds\"\nsql \"update Nothing\"\nmessages\nmenus");
  EXPECT_EQ(played.out,
            "[critical] Sample Screen: server gone\n"
            "a\nb\n"
            "****\n"
            "No | Due Date | Amount\n"
            "1 | 31-01-2024 | 100.00\n"
            "2 | 29-02-2024 | \n"
            "\t1234.50\t0.1234\t2024-01-31\ttab\\there\\r\\nback\\\\slash\n"
            "7\t2.5\t-3.00\t2024-01-31 09:00:00\t\n"
            "[critical] Sample Screen: server gone\n"
            "SampleMnu \"Sample\" shown\n"
            "GreyMnu \"Grey\" greyed\n"
            "HiddenMnu \"Hidden\" hidden\n"
            "NoScreenMnu \"No screen\" shown\n"
            "ExitMnu \"Exit\" shown\n" +
                kExit);
}

TEST(Runner, DescribeTellsEveryControl) {
  const Played played = PlayOnSample("set Memo \"say \\\"a\\nb\\\"\"\nset Secret hush\ndescribe");
  for (const char* line : {
           "LoanID TextBox \"Loan ID\" \"\" enabled=1 visible=1 locked=0\n",
           "Memo TextBox \"Memo\" \"say \\\"a\\nb\\\"\" enabled=1 visible=1 locked=0\n",
           "Secret TextBox \"Secret\" \"****\" enabled=1 visible=1 locked=0\n",
           "Locked1 TextBox \"Locked\" \"\" enabled=1 visible=1 locked=1\n",
           "Off TextBox \"Off\" \"\" enabled=0 visible=1 locked=0\n",
           "Unseen TextBox \"Unseen\" \"\" enabled=1 visible=0 locked=0\n",
           "Bank ComboBox \"Bank\" \"\" enabled=1 visible=1 locked=0 items=\"CIMB|Maybank\"\n",
           "Check1(2) CheckBox \"Check\" \"0\" enabled=1 visible=1 locked=0\n",
           "Terms Frame \"Terms\" \"Terms\" enabled=1 visible=1 locked=0\n",
           "DG Grid \"Rows\" \"\" enabled=1 visible=1 locked=0 rows=2\n",
           "SaveCmd Button \"Save\" \"Save\" enabled=1 visible=1 locked=0\n",
       }) {
    EXPECT_THAT(played.out, HasSubstr(line));
  }
}

TEST(Runner, SignInOpensTheDialogWhenItIsNotOnTop) {
  const Played accepted = Play(
      "signin OWL wrong\nexpect screen UserLogin\nexpect message \"Invalid Password, Please "
      "check\"\n"
      "signin OWL hoot\nexpect screen MainFrm\nexpect message \"User OWL Sign in\"");
  EXPECT_EQ(accepted.status, Runner::kHeld) << accepted.err;
  EXPECT_EQ(accepted.out,
            "[critical] User Login: Invalid Password, Please check\n"
            "[information] User Login: User OWL Sign in\n" +
                kExit);
  EXPECT_EQ(Play("signin \"\" x").err, "line 1: OKCmd is disabled\n");

  Stage at_start("signin OWL hoot\nmenu SampleMnu\nset LoanID A");
  at_start.program.sign_in_at_start = true;  // the dialog stands there before the first line
  EXPECT_EQ(at_start.Run().status, Runner::kHeld);
  EXPECT_TRUE(at_start.program.signed_in);

  Stage no_dialog("signin OWL hoot\nmenu SampleMnu");
  no_dialog.program.sign_in_works = false;
  EXPECT_EQ(no_dialog.Run().err, "line 1: the sign-in dialog does not open\n");
}

TEST(Runner, AnEmptyScriptClosesTheDialogOfTheStart) {
  Stage stage("");
  stage.program.sign_in_at_start = true;
  const Played played = stage.Run();
  EXPECT_EQ(played.status, Runner::kHeld);
  EXPECT_EQ(played.out, kExit);
}

TEST(Runner, AProgramThatDoesNotStart) {
  Stage stage("menu SampleMnu");
  stage.program.start_status = 1;
  const Played played = stage.Run();
  EXPECT_EQ(played.status, Runner::kStopped);
  EXPECT_EQ(played.out, "[critical] Sample: No database\n");
  EXPECT_EQ(played.err, "kaunter-play: the program did not start\n");
}

TEST(Runner, ReportsGoToTheFolderAndNeverOverEachOther) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("kaunter-paper-" + std::to_string(::getpid()));
  Stage stage("menu SampleMnu\nclick PrintCmd\nclick PrintCmd");
  std::vector<std::string> written;
  stage.desk.SetRenderer(
      [&](const ReportJob&, const std::string& path) {
        EXPECT_TRUE(std::filesystem::is_directory(folder));
        written.push_back(path);
      },
      folder.string());
  EXPECT_EQ(stage.Run().status, Runner::kHeld);
  EXPECT_THAT(written, testing::ElementsAre((folder / "LoanMastList.pdf").string(),
                                            (folder / "LoanMastList-2.pdf").string()));
  std::filesystem::remove_all(folder);

  Stage failing("menu SampleMnu\nclick PrintCmd\nexpect message \"no such report\"");
  failing.desk.SetRenderer(
      [](const ReportJob&, const std::string&) { throw std::runtime_error("no such report"); },
      folder.string());
  EXPECT_EQ(failing.Run().status, Runner::kHeld);
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace kaunter
