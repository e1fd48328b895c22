// Moving an office: what is copied is the same, a difference is found, and at every moment exactly
// one office is in force.
#include "platform/sql/waiting.h"
#include "screen/caption_error.h"
#include "tests/support/full_disk.h"
#include "tests/upkeep/moved_offices.h"

namespace kaunter {
namespace {

class Move : public TwoPlaces, public ::testing::WithParamInterface<bool> {
 protected:
  void SetUp() override { Use(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(Embedded, Move, ::testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Postgresql, Move, ::testing::Values(true));

TEST_P(Move, ThereAndBackIsTheSameOffice) {
  for (const unsigned seed : {1u, 2u, 3u}) {
    const auto main = Open("Old");
    FillAtRandom(*main, seed, 40);
    main->Execute(
        "INSERT INTO CustMast (CustID,CompCode) VALUES ('C1','HQ'); INSERT INTO LoanMast "
        "(LoanID,CustID,CompCode,LoanStatus,DragLoan,LoanAmt,LoanBal) VALUES "
        "('C1-1','C1','HQ','ACTIVE','0',100,100)");
    EXPECT_TRUE(RunRaw(File("old.db"), "UPDATE \"Own Table\" SET Bin=x'00ff5c22' WHERE N%2=0"));
    main->Execute("INSERT INTO Systemast (Param,Value) VALUES ('TransLogs','1')");
    {
      const auto logs = Open("Old", /*logs=*/true);
      CreateMissingAuditTables(*logs);
      logs->Execute("INSERT INTO TransLogs (Remarks) VALUES (' a line ')");
    }
    const auto before = Dump(File("old.db"));
    const auto logs_before = Dump(File("old-Logs.db"));
    MoveDone done = MoveOffice(request_, All);
    EXPECT_GT(done.look.rows, 150);
    EXPECT_FALSE(done.ledger.faults.empty());  // they are no reason to stay
    ReadSettings();
    EXPECT_EQ(request_.local.ConnDataSource, "New");
    request_.to = "Back";
    MoveOffice(request_, All);
    EXPECT_EQ(Unlike(Dump(File("back.db")), before), "");
    EXPECT_EQ(Unlike(Dump(File("back-Logs.db")), logs_before), "");
    EXPECT_EQ(SourceInForce(), "Back");
    // The counter goes on, and the dialect reads and writes what came.
    const auto back = Open("Back");
    back->Execute("INSERT INTO Counted (Name) VALUES ('next')");
    EXPECT_EQ(back->Query("SELECT MAX(ID) FROM Counted").Field(0), Value(41));
    Use(GetParam());
  }
}

TEST_P(Move, EachDifferenceIsFoundAndNamed) {
  const auto main = Open("Old");
  FillAtRandom(*main, 7, 12);
  main->Execute("INSERT INTO Loose VALUES ('blank ',1,NULL),('',77,NULL)");
  MoveEnd from(request_, "Old", "");
  MoveEnd to(request_, "New", "");
  from.OpenMain();
  if (GetParam()) {
    to.OpenMain();
  } else {
    to.main = MoveDatabase(OpenSqlite("MainConn", File("new.db"), true, request_.clock));
  }
  from.main.LockOut();
  from.main.ReadTables();
  to.main.LockOut();
  const CopyGoOn on = [](CopyStep, const std::string&, std::int64_t) {};
  CopyTables(*from.main.whole, *to.main.whole, from.main.tables, on);
  to.main.Commit();
  const auto differences = [&] {
    to.main.ReadTables();
    return CompareTables(*from.main.whole, *to.main.whole, from.main.tables, to.main.tables, on);
  };
  to.main.LockOut();
  EXPECT_THAT(differences(), ::testing::IsEmpty());
  to.main.GiveUp();
  const std::pair<const char*, const char*> mutants[] = {
      {"UPDATE [Own Table] SET Amt=Amt+0.01 WHERE N=(SELECT MIN(N) FROM [Own Table])", "Amt"},
      {"UPDATE Loose SET Memo='blank' WHERE Memo='blank'", "Loose"},
      {"UPDATE Loose SET Memo=NULL WHERE Amt=77", "Loose"},
      {"INSERT INTO Loose SELECT TOP 1 * FROM Loose", "is in the copy alone"},
      {"DELETE FROM Counted WHERE ID=3", "Counted ID=3: is missing in the copy"},
      {"UPDATE [Own Table] SET Code=lower(Code)+'x' WHERE Code='k1'", "k1"},
      {"DROP INDEX IX_Own ON [Own Table]", "other indexes"},
      {"ALTER TABLE Loose ADD C int NULL", "other columns"},
      {"ALTER TABLE Loose ALTER COLUMN Memo nvarchar(301) NULL", "the column Memo"},
      {"DROP TABLE Counted", "Counted: is missing"},
      {"CREATE TABLE Extra (A int NULL)", "Extra: is in the copy alone"},
      // Last: what counts is not taken back with the transaction.
      {"INSERT INTO Counted (Name) VALUES ('y'); DELETE FROM Counted WHERE Name='y'",
       "another number to go on from"},
  };
  for (const auto& [statement, told] : mutants) {
    to.main.LockOut();
    to.main.connection->Execute(statement);
    const auto found = differences();
    EXPECT_THAT(found, ::testing::Contains(::testing::HasSubstr(told))) << statement;
    EXPECT_LE(found.size(), 2u) << statement;
    to.main.GiveUp();
  }
}

TEST_P(Move, NobodySavesMeanwhileAndTheOldOfficeIsClosedAfterwards) {
  const auto desk = Open("Old");  // open all the time
  bool tried = false;
  std::string refused;
  MoveOffice(request_, [&](const OfficeMoveProgress& progress) {
    if (progress.phase != MovePhase::compare || tried) return true;
    tried = true;
    EXPECT_EQ(SourceInForce(), "Old");
    EXPECT_THROW(RefuseMovedOffice(*Open("New")), SqlError);  // a copy is no office yet
    EXPECT_EQ(desk->Query("SELECT COUNT(*) FROM CompMast").Field(0), Value(1));
    const MayStop at_once([] { return true; });
    try {
      desk->Execute("UPDATE CompMast SET CompDesc='lost'");
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number(), 1222);
      refused = error.what();
    }
    return true;
  });
  EXPECT_THAT(refused, ::testing::HasSubstr("is being moved"));
  for (const bool transaction : {false, true}) {
    try {
      if (transaction) desk->BeginTrans();
      desk->Execute("UPDATE CompMast SET CompDesc='lost'");
      ADD_FAILURE() << "saved in an office that was moved";
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number(), 3906);
      EXPECT_THAT(error.what(), ::testing::HasSubstr("by aminah"));
    }
    desk->RollbackTrans();
  }
  EXPECT_THROW(RefuseMovedOffice(*desk), SqlError);
  RefuseMovedOffice(*Open("New"));

  // Back, as long as nothing was saved there.
  ReadSettings();
  request_.to = "Old";
  UndoMove(request_, All);
  EXPECT_EQ(SourceInForce(), "Old");
  RefuseMovedOffice(*desk);
  desk->Execute("UPDATE CompMast SET CompDesc='kept'");
  EXPECT_THROW(RefuseMovedOffice(*Open("New")), SqlError);
  ReadSettings();
  request_.to = "New";
  EXPECT_THROW(MoveOffice(request_, All), CaptionError);  // it is not empty
  EXPECT_EQ(desk->Execute("UPDATE CompMast SET CompDesc='kept'"), 1);
}

TEST_P(Move, WhatWasSavedSinceIsNotLostByTheWayBack) {
  MoveOffice(request_, All);
  Open("New")->Execute("UPDATE CompMast SET CompDesc='since'");
  ReadSettings();
  request_.to = "Old";
  try {
    UndoMove(request_, All);
    ADD_FAILURE();
  } catch (const CaptionError& why) {
    EXPECT_THAT(why.what(), ::testing::HasSubstr("CompDesc 'since' is"));
  }
  EXPECT_EQ(SourceInForce(), "New");
  EXPECT_EQ(Open("New")->Execute("UPDATE CompMast SET CompDesc='goes on'"), 1);
}

TEST_P(Move, CutBehindTheSealItIsFinishedByTheNext) {
  MoveOffice(request_, All);
  // As it stands when the program dies between the seal and the end.
  MoveMark mark = *ReadMoveMark(*Open("Old"));
  mark.state = MoveMark::State::copy;
  WriteMoveMark(*Open("New"), mark);
  ChangeSettingsFile(request_.settings_file, {{"", "ConnDataSource", "Old"}});
  EXPECT_THROW(RefuseMovedOffice(*Open("Old")), SqlError);
  EXPECT_THROW(RefuseMovedOffice(*Open("New")), SqlError);
  EXPECT_TRUE(
      MoveOffice(request_, [](const OfficeMoveProgress&) { return false; }).look.only_finish);
  RefuseMovedOffice(*Open("New"));
  EXPECT_EQ(SourceInForce(), "New");
  EXPECT_TRUE(MoveOffice(request_, All).look.only_finish);  // and once more, for the settings alone
  // Nobody else's rest is cleared away.
  mark.id = "of another move";
  WriteMoveMark(*Open("New"), mark);
  EXPECT_THROW(MoveOffice(request_, All), CaptionError);
}

// Given up, cut or failing at each question that the move asks.
TEST_P(Move, GivenUpAnywhereItLeavesTheOldOfficeAndBeginsAnew) {
  FillAtRandom(*Open("Old"), 5, 30);
  const auto before = Dump(File("old.db"));
  int asked = 0;
  MoveOffice(request_, [&](const OfficeMoveProgress&) { return ++asked > 0; });
  ReadSettings();
  request_.to = "Old";
  UndoMove(request_, All);
  const int all = asked;
  ReadSettings();
  for (int at = 1; at <= all; at += std::max(1, all / 5)) {
    std::filesystem::remove(File("new.db"));
    if (GetParam()) NewServerDatabases();
    request_.to = "New";
    asked = 0;
    EXPECT_THROW(MoveOffice(request_,
                            [&](const OfficeMoveProgress&) {
                              if (++asked < at) return true;
                              if (at % 2 == 0 && GetParam()) {  // the server is gone instead
                                EXPECT_EQ(std::system("psql -q -d postgres -c \"SELECT "
                                                      "pg_terminate_backend(pid) FROM "
                                                      "pg_stat_activity WHERE datname='moved'\" "
                                                      ">/dev/null"),
                                          0);
                                return true;
                              }
                              return false;
                            }),
                 std::runtime_error)
        << at;
    EXPECT_EQ(SourceInForce(), "Old");
    EXPECT_EQ(Open("Old")->Execute("UPDATE CompMast SET CompDesc=CompDesc"), 1);
    EXPECT_EQ(Unlike(Dump(File("old.db")), before), "") << at;
    EXPECT_FALSE(std::filesystem::exists(File("new.db")));
  }
  request_.to = "New";
  MoveOffice(request_, All);
}

// Keys that are two here and one there, whichever engine blurs more.
class PostgresqlMoveKeys : public TwoPlaces {};

TEST_F(PostgresqlMoveKeys, ThatClashAreNamedBeforeAnythingIsSwitched) {
  Use(/*server=*/true);
  if (IsSkipped()) return;
  {
    const auto main = Open("Old");
    main->Execute("INSERT INTO CustMast (CustID,CustName) VALUES ('A1','narrow'),('Ａ1','wide')");
  }
  try {
    MoveOffice(request_, All);
    ADD_FAILURE();
  } catch (const SqlError& error) {
    EXPECT_THAT(error.what(), ::testing::HasSubstr("rows of CustMast"));
    EXPECT_THAT(error.what(), ::testing::HasSubstr("Ａ1"));
  }
  EXPECT_EQ(SourceInForce(), "Old");
  Open("Old")->Execute("DELETE FROM CustMast WHERE CustName='wide'");
  MoveOffice(request_, All);
  ReadSettings();
  request_.to = "Back";
  // A letter whose capital is one for the embedded engine, and a mark for the server.
  Open("New")->Execute("INSERT INTO CustMast (CustID) VALUES ('B\u0345'),('B\u03b9')");
  try {
    MoveOffice(request_, All);
    ADD_FAILURE();
  } catch (const SqlError& error) {
    EXPECT_THAT(error.what(),
                ::testing::HasSubstr("CustMast CustID='B\u0345' and CustMast CustID='B\u03b9'"));
  }
  EXPECT_EQ(SourceInForce(), "New");
  EXPECT_EQ(Open("New")->Execute("DELETE FROM CustMast WHERE CustID LIKE 'B%'"), 2);
  MoveOffice(request_, All);
}

// A file, its log among them, may not grow past so much: then nothing has moved. With room enough
// the audit trail is closed with its office, by the next move where this one was cut between both.
TEST_F(TwoPlaces, ADiskThatFillsLeavesTheOldOfficeAndItsTrail) {
  Use(/*server=*/false);
  {
    const auto main = Open("Old");
    FillAtRandom(*main, 6, 30);
    main->Execute("INSERT INTO Systemast (Param,[Value]) VALUES ('TransLogs','1')");
    CreateMissingAuditTables(*Open("Old", /*logs=*/true));
  }
  const auto before = Dump(File("old.db"));
  int refused = 0;
  for (rlim_t most = 40'000;; most += most / 3, ++refused) {
    const int end = OnAFullDisk(most, [&] {
      MoveOffice(request_, All);
      return 0;
    });
    if (end == 0) break;
    ASSERT_EQ(end, 1) << most;
    ASSERT_EQ(SourceInForce(), "Old") << most;
    EXPECT_EQ(Open("Old")->Execute("UPDATE CompMast SET CompDesc=CompDesc"), 1) << most;
    EXPECT_EQ(Unlike(Dump(File("old.db")), before), "") << most;
    for (const char* made : {"new.db", "new-Logs.db"}) {
      EXPECT_FALSE(std::filesystem::exists(File(made))) << most;
    }
  }
  EXPECT_GT(refused, 3);
  EXPECT_EQ(SourceInForce(), "New");
  EXPECT_EQ(Unlike(Dump(File("new.db")), before), "");
  const auto trail_takes_a_line = [&] {
    return RunRaw(File("old-Logs.db"), "INSERT INTO TransLogs (Remarks) VALUES ('x')");
  };
  EXPECT_FALSE(trail_takes_a_line());
  MoveDatabase(Open("Old", /*logs=*/true)).Reopen();
  EXPECT_TRUE(trail_takes_a_line());
  EXPECT_TRUE(MoveOffice(request_, All).look.only_finish);
  EXPECT_FALSE(trail_takes_a_line());
}

// What only another tool can have put into a file.
TEST_F(TwoPlaces, AFieldThatNoOtherEngineTakesIsNamed) {
  Use(/*server=*/false);
  Open("Old")->Execute("INSERT INTO CustMast (CustID) VALUES ('C1')");
  const std::pair<const char*, const char*> fields[] = {
      {"CustCompIncome=1.005", "CustMast CustID='C1', column CustCompIncome (decimal(18, 2))"},
      {"CustCompIncome='abc'", "column CustCompIncome"},
      {"CustName=x'41ff'", "column CustName"},
      {"CustName='a'||char(0)||'b'", "column CustName"},
      {"TrxDate='soon'", "column TrxDate"},
      {"CustChild='x'", "column CustChild"},
  };
  for (const auto& [field, told] : fields) {
    ASSERT_TRUE(RunRaw(File("old.db"), fmt::format("UPDATE CustMast SET {}", field)));
    try {
      MoveOffice(request_, All);
      ADD_FAILURE() << field;
    } catch (const SqlError& error) {
      EXPECT_THAT(error.what(), ::testing::HasSubstr(told));
    }
    ASSERT_TRUE(
        RunRaw(File("old.db"),
               "UPDATE CustMast SET CustCompIncome=0,CustName='',TrxDate=NULL,CustChild=0"));
  }
}

}  // namespace
}  // namespace kaunter
