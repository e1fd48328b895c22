#include "upkeep/restore.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "screen/caption_error.h"
#include "tests/core/office.h"
#include "tests/support/full_disk.h"
#include "upkeep/move_end.h"

namespace kaunter {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

bool GoOn(const UpkeepStep&) { return true; }

class RestoreTest : public ::testing::Test {
 protected:
  RestoreTest() {
    office.Run(
        "INSERT INTO CompMast (CompCode,CompDesc) VALUES ('AB','Second');"
        "INSERT INTO CustMast (CustID,CompCode) VALUES ('C1','HQ');"
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanAmt) VALUES ('L1','C1','HQ',100)");
    for (int i = 1; i <= 3; ++i) Pay(fmt::format("P{}", i), "HQ", "10.00", "2024-01-30 09:00:00");
    CreateMissingAuditTables(*OpenSqlite("LogsConn", trail, true, office.session.clock));
    record = *TakeBackup(office.session, office.folder.File("backups"), {}, GoOn).record;
  }

  void Pay(const std::string& id, const char* company, const char* amount, const char* entered) {
    office.Run(fmt::format(
        "INSERT INTO PaymentMast (PayID,LoanID,CompCode,PayAmt,PayDate,DateCreated) VALUES "
        "({},'L0','{}',{},'2024-01-31','{}')",
        QuoteStr(id), company, amount, entered));
  }
  std::string Receipts() {
    office.Open();
    const std::string receipts =
        office.Lines("SELECT PayID,PayAmt FROM PaymentMast ORDER BY PayID", " ");
    office.session.MainConn.reset();
    return receipts;
  }
  std::unique_ptr<OfficeRestore> Prepare() {
    office.session.MainConn.reset();
    return PrepareRestore(office.session, record.folder, GoOn);
  }
  std::string Told(const std::function<void()>& act) {
    try {
      act();
    } catch (const std::exception& error) {
      return error.what();
    }
    return "";
  }
  void Write(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
  }

  Office office{Office::State::patched};
  std::string file = office.folder.File("office.db");
  std::string trail = office.folder.File("office-Logs.db");
  BackupRecord record;
};

constexpr const char* kAsBackedUp = "P1 10 \nP2 10 \nP3 10 \n";

TEST_F(RestoreTest, TellsWhatIsLostAndKeepsIt) {
  Pay("P4", "HQ", "20.50", "2024-01-31 15:00:00");
  Pay("P5", "AB", "1.25", "2024-01-31 16:30:00");
  office.Run(
      "UPDATE PaymentMast SET PayAmt=11 WHERE PayID='P2';DELETE FROM PaymentMast WHERE PayID='P3';"
      "UPDATE LoanMast SET LoanAmt=90;INSERT INTO CustMast (CustID,CompCode) VALUES ('C2','HQ')");
  const auto restore = Prepare();
  const Loss expected{
      .companies = {{"AB", 1, *Money::TryText("1.25"), DateTime{2024, 1, 31, 16, 30, 0},
                     DateTime{2024, 1, 31, 16, 30, 0}},
                    {"HQ", 2, *Money::TryText("31.50"), DateTime{2024, 1, 30, 9, 0, 0},
                     DateTime{2024, 1, 31, 15, 0, 0}}},
      .loans = 1,
      .customers = 1,
      .deleted = 1};
  EXPECT_EQ(restore->view().loss, expected);
  EXPECT_TRUE(restore->view().related);
  OpenSqlite("LogsConn", trail, false, office.session.clock)
      ->Execute("DELETE FROM TransLogs;INSERT INTO TransLogs (UserID) VALUES ('THIEF')");
  const std::string kept = restore->Run();
  EXPECT_EQ(Receipts(), kAsBackedUp);
  const auto replaced = OpenSqlite("Kept", kept, false, office.session.clock);
  EXPECT_EQ(ScalarQuery(*replaced, "SELECT COUNT(*) FROM PaymentMast"), "4");
  // What was done since stays in the audit trail.
  EXPECT_EQ(ScalarQuery(*OpenSqlite("LogsConn", trail, false, office.session.clock),
                        "SELECT UserID FROM TransLogs"),
            "THIEF");
}

TEST_F(RestoreTest, NeitherUnderAnOpenDeskNorOverWhatWasSavedMeanwhile) {
  const auto restore = Prepare();
  office.Open();
  EXPECT_THAT(Told([&] { restore->Run(); }), HasSubstr("close it at every desk"));
  Pay("P4", "HQ", "20.50", "2024-01-31 15:00:00");
  office.session.MainConn.reset();
  EXPECT_THAT(Told([&] { restore->Run(); }), HasSubstr("look again"));
  EXPECT_EQ(Receipts(), std::string(kAsBackedUp) + "P4 20.5 \n");
  EXPECT_THAT(Told([&] { Prepare(); }), HasSubstr("Another restore"));
}

TEST_F(RestoreTest, WhatIsNoOfficeGivesWay) {
  office.session.MainConn.reset();
  fs::remove(trail);
  for (const char* there : {"no database", "", static_cast<const char*>(nullptr)}) {
    SCOPED_TRACE(there == nullptr ? "missing" : there);
    for (const char* ending : {"", "-wal", "-shm"}) fs::remove(file + ending);
    if (there != nullptr) Write(file, there);
    Prepare()->Run();
    EXPECT_EQ(Receipts(), kAsBackedUp);
    EXPECT_TRUE(fs::exists(trail));
    EXPECT_FALSE(fs::exists(file + ".restoring"));
  }
}

TEST_F(RestoreTest, ABackupThatDoesNotFitIsRefused) {
  const std::string told = record.folder + "/backup.txt";
  std::ifstream stream(told);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  const struct {
    const char* from;
    const char* to;
    const char* why;
  } cases[] = {
      {"Program = 0.", "Program = 77.", "newer Kaunter"},
      {"Engine = SQLite", "Engine = PostgreSQL", "office on PostgreSQL"},
      {"Made = ", "Made = x", "no whole backup"},
      {" office.db", " ../office.db", "no whole backup"},
      {"Main = ", "Main = 0", "is damaged"},
  };
  for (const auto& c : cases) {
    std::string changed = text;
    changed.replace(changed.find(c.from), std::string_view(c.from).size(), c.to);
    Write(told, changed);
    EXPECT_THAT(Told([&] { Prepare(); }), HasSubstr(c.why));
  }
  fs::remove(told);
  EXPECT_THAT(Told([&] { Prepare(); }), HasSubstr("is no backup"));
  EXPECT_EQ(Receipts(), kAsBackedUp);
}

// No room for the backup beside the office, then none for what is kept of it, which has grown
// since.
TEST_F(RestoreTest, ADiskThatFillsLeavesTheOffice) {
  office.Run("CREATE TABLE Bulk (T nvarchar(max))");
  office.Run("INSERT INTO Bulk VALUES ('" + std::string(500'000, 'x') + "')");
  Pay("P4", "HQ", "20.50", "2024-01-31 15:00:00");
  const std::string before = Receipts();
  const auto size = fs::file_size(file);
  const auto files = [&] {
    return std::distance(fs::directory_iterator(office.folder.path()), fs::directory_iterator());
  };
  const auto there = files();
  for (const auto& [most, end] : {std::pair{size / 10, 1}, {size - 4096, 3}, {2 * size, 0}}) {
    EXPECT_EQ(OnAFullDisk(most,
                          [&] {
                            const auto restore = Prepare();
                            return Told([&] { restore->Run(); }).empty() ? 0 : 3;
                          }),
              end);
    EXPECT_EQ(files(), end == 0 ? there + 1 : there);
    EXPECT_EQ(Receipts(), end == 0 ? kAsBackedUp : before);
  }
}

// Over another office, or over one that was moved away: told, and left to the person.
TEST_F(RestoreTest, AnotherOfficeIsTold) {
  office.Run("UPDATE CompMast SET CompCode='X'+CompCode");
  {
    const auto restore = Prepare();
    EXPECT_FALSE(restore->view().related);
    EXPECT_FALSE(restore->view().moved);
    for (const std::string& moved : {file, trail}) {
      MoveDatabase database(OpenSqlite("Old", moved, false, office.session.clock));
      database.LockOut();
      database.Seal({"1", MoveMark::State::moved, record.made, "the new place", "aminah"});
      database.Commit();
    }
    EXPECT_THAT(Told([&] { restore->Run(); }), HasSubstr("look again"));
  }
  office.Open();
  EXPECT_THAT(Told([&] { TakeBackup(office.session, office.folder.File("new"), {}, GoOn); }),
              HasSubstr("moved to the new place"));
  const auto restore = Prepare();
  EXPECT_EQ(restore->view().moved.value().place, "the new place");
  restore->Run();
  EXPECT_EQ(Receipts(), kAsBackedUp);
  office.Open();
  Pay("P4", "HQ", "20.50", "2024-01-31 15:00:00");
  EXPECT_EQ(OpenSqlite("LogsConn", trail, false, office.session.clock)
                ->Execute("INSERT INTO TransLogs (UserID) VALUES ('AMINAH')"),
            1);
}

}  // namespace
}  // namespace kaunter
