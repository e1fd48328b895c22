// kaunter-play on the real program: what it leaves in the office, and how it refuses to start.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/play/office.h"

namespace kaunter {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

const std::string kSignIn = "signin ADMIN zebrawindmill\n";

int Count(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

TEST(Program, ANewOfficeIsMadeOnceAndKept) {
  const Office office;
  const Played first =
      office.Play(kSignIn +
                  "expect sql \"SELECT COUNT(*) FROM CompMast\" 1\n"
                  "expect sql \"SELECT Value FROM Systemast WHERE Param='KEY'\" MainUser\n"
                  "sql \"UPDATE Systemast SET [Value]='Open all day' WHERE Param='TestMode'\"\n"
                  "sql \"UPDATE Systemast SET [Value]='kept' WHERE Param='KEY'\"\n");
  EXPECT_EQ(first.status, Runner::kHeld) << first.err;
  // A changed key is not set back by the next start: the built-in sign-in is off.
  const Played second = office.Play(kSignIn + "expect message \"Invalid User ID, Please check\"");
  EXPECT_EQ(second.status, Runner::kHeld) << second.err;
}

TEST(Program, ItEndsOnceHoweverTheScriptEnds) {
  for (const char* script : {"", "menu ExitMnu", "close", "menu LoanCalcMnu\nset Nothing 1"}) {
    const Office office;
    office.Play(kSignIn + script);
    EXPECT_EQ(Count(office.Read("logs/log31-01-2024.log"), "******** Exit ********"), 1) << script;
  }
}

TEST(Program, BothClocksAreSet) {
  const Office office;
  const Played played = office.Play(
      kSignIn +
      "expect sql \"SELECT GETDATE()\" \"2024-01-31 09:00:00\"\n"
      "now \"2024-02-29 17:30:00\"\nexpect sql \"SELECT GETDATE()\" \"2024-02-29 17:30:00\"");
  EXPECT_EQ(played.status, Runner::kHeld) << played.err;
  EXPECT_THAT(office.Read("logs/log29-02-2024.log"), HasSubstr("Exit"));
}

TEST(Program, AnEntryThatOpensNothingSaysWhy) {
  const Office office;
  std::filesystem::create_directory(office.Path("DailyBatch"));
  office.Write("DailyBatch/DailyBatch", "no program");
  const Played played = office.Play(
      kSignIn +
      "expect message \"User ID ADMIN Sign in\"\nmenu WebSiteMnu\nexpect message \"This program "
      "was "
      "built without the address of a web site, so nothing opens.\"\n"
      "menu SoftwareUpdateMnu\nexpect message \"This office has no address for updates, so nothing "
      "opens. It is kept in the setting URL.\"\n"
      "sql \"INSERT INTO Systemast (Param,[Value]) VALUES ('URL','https://office.example')\"\n"
      "menu SoftwareUpdateMnu\nexpect no message\n"
      // The date is asked for until it is one, with what was typed in its box.
      "answer 31-02-2024 01-02-2024 31-01-2024\nmenu DailyBatchMnu\n"
      "expect message \"Daily Batch Date: \\\"31-02-2024\\\" is no date. Write it as dd-mm-yyyy, "
      "such "
      "as 31-01-2024.\"\n"
      "expect message \"Daily Batch Date: 01-02-2024 lies in the future. Late interest is posted "
      "up "
      "to "
      "today, 31-01-2024, at most.\"\n"
      "answer \"\"\nmenu DailyBatchMnu\n"
      "click RefreshCmd\nexpect PostedLBL \"No late interest has been posted yet.\"\n"
      "sql \"INSERT INTO Systemast (Param,[Value]) VALUES ('DailyBatchDate','2024-01-29')\"\n"
      "click RefreshCmd\nexpect PostedLBL \"Late interest is posted up to 29-01-2024\"\n"
      "expect ClockLBL \"Today is taken to be 31-01-2024: the program was started for that day.\"\n"
      "menu LoanMnu");
  EXPECT_EQ(played.status, Runner::kStopped);
  EXPECT_THAT(played.err, StartsWith("line 22: LoanMnu is a group of the menu"));
  EXPECT_EQ(Count(played.out, "open "), 1);
  EXPECT_EQ(Count(played.out, "start "), 1);
  EXPECT_THAT(played.out, HasSubstr("DailyBatch/DailyBatch 31-01-2024\n"));
}

TEST(Program, TheTraceHasAStatementALineAndSpoilsNoOtherFile) {
  Office office;
  office.trace = office.Path("trace.txt");
  office.Play(kSignIn + "sql \"SELECT 'a\\nb\\\\c'\"");
  office.Play("");
  const std::string trace = office.Read("trace.txt");
  EXPECT_THAT(trace, HasSubstr("MainConn\tSELECT 'a\\r\\nb\\\\c'\n"));
  EXPECT_EQ(Count(trace, "#\tKaunter trace, opened "), 2);
  office.Write("letter.txt", "Dear Sir");
  for (const char* other : {"letter.txt", "office.db"}) {
    office.trace = office.Path(other);
    const std::string before = office.Read(other);
    const Played played = office.Play("");
    EXPECT_EQ(played.status, Runner::kStopped);
    EXPECT_THAT(played.out, HasSubstr("is no trace of Kaunter"));
    EXPECT_EQ(office.Read(other), before);
  }
}

TEST(Program, WhatAScriptWritesIsAnAdministratorsOnceThereAreUsers) {
  const Office office;
  EXPECT_EQ(office
                .Play("sql \"INSERT INTO UserMast (UserID,UserLevel,UserDept,CompCode) VALUES "
                      "('ALI','Manager','5EBE2294ECD0E0F08EAB7690D2A6EE69','HQ')\"")
                .status,
            Runner::kHeld);
  for (const char* who : {"", "signin ALI secret\n"}) {
    for (const char* sql : {"UPDATE LoanMast SET LoanAmt=0", "SELECT 1; DELETE FROM LoanMast",
                            "DROP TABLE LoanMast", "SELECT 1 AS A INTO T", "BEGIN TRANSACTION"}) {
      const std::string quoted = "sql \"" + std::string(sql) + "\"";
      for (const std::string& how : {quoted, "expect " + quoted + " 1"}) {
        EXPECT_THAT(office.Play(who + how).err, HasSubstr("needs an administrator")) << who << how;
      }
    }
    EXPECT_EQ(office.Play(std::string(who) + "sql \"SELECT 'update' FROM LoanMast\"").status,
              Runner::kHeld);
  }
  EXPECT_EQ(office.Play(kSignIn + "sql \"UPDATE UserMast SET UserDept='5EBE' \"").status,
            Runner::kHeld);
  const std::string log = office.Read("logs/log31-01-2024.log");
  EXPECT_THAT(log, HasSubstr("[ADMIN] sql - UPDATE UserMast SET UserDept='***'"));
  // The set clock and the real one.
  EXPECT_THAT(log, HasSubstr("is set to 31-01-2024 09:00:00 AM (real time 2"));
}

TEST(Program, WhatSqlPrints) {
  const Office office;
  const Played played =
      office.Play(kSignIn +
                  "sql \"INSERT INTO LoanMast (LoanID,LoanAmt,InsRate,TrxDate) VALUES "
                  "('L1',1234.5,1.125,'2024-01-31')\"\n"
                  "sql \"SELECT LoanID,LoanAmt,InsRate,TrxDate,NextDueDate FROM LoanMast\"\n"
                  "sql \"DELETE FROM LoanMast\"\nsql \"SELECT LoanID FROM LoanMast\"");
  EXPECT_EQ(played.status, Runner::kHeld) << played.err;
  EXPECT_THAT(played.out, EndsWith("Sign in\nL1\t1234.50\t1.125\t2024-01-31\t\n"));
}

TEST(Program, ADatabaseThatIsNoneStopsTheStartAndIsLeftAsItWas) {
  const Office office;
  office.Write("office.db", "This is a letter to the bank, and no database at all.");
  const Played played = office.Play(kSignIn);
  EXPECT_EQ(played.status, Runner::kStopped);
  EXPECT_THAT(played.out, StartsWith("[critical] "));
  EXPECT_THAT(played.out, HasSubstr("office.db"));
  EXPECT_EQ(Count(played.out, "[critical]"), 1);
  EXPECT_EQ(office.Read("office.db"), "This is a letter to the bank, and no database at all.");
}

TEST(Program, LocalSettingsThatDoNotFitStopTheStart) {
  struct Row {
    std::string settings;
    std::string message;
  };
  const std::vector<Row> rows = {
      {"ShortDate = MM-dd-yyyy\n",
       "[critical] Verify Date Setting: Invalid PC date format, please set to dd-MM-yyyy\n"},
      {"ConnAccount\n", "settings.ini"},
      {"[Office\n", "settings.ini"},
  };
  for (const Row& row : rows) {
    Office office;
    office.settings = office.Path("settings.ini");
    office.Write("settings.ini", row.settings);
    const Played played = office.Play(kSignIn);
    EXPECT_EQ(played.status, Runner::kStopped) << row.settings;
    EXPECT_THAT(played.out, HasSubstr(row.message)) << row.settings;
    EXPECT_EQ(played.err, "kaunter-play: the program did not start\n");
    EXPECT_EQ(office.Read("settings.ini"), row.settings);
    EXPECT_EQ(office.Read("office.db"), "");  // nothing was made for a start that was refused
  }
}

TEST(Program, AStatementThatIsNotKnownShowsItselfAndThePlace) {
  const Office office;
  const Played played = office.Play(kSignIn + "sql \"SELECT FROB FROM CompMast FOR XML\"");
  EXPECT_EQ(played.status, Runner::kStopped);
  EXPECT_THAT(played.err, StartsWith("line 2: "));
  EXPECT_THAT(played.err, HasSubstr("SELECT FROB FROM CompMast FOR XML"));
}

}  // namespace
}  // namespace kaunter
