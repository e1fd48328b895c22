#include "upkeep/backup.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <chrono>
#include <optional>

#include "collections/ledger_check.h"
#include "loans/rebuild.h"
#include "platform/file_lock.h"
#include "screen/caption_error.h"
#include "tests/core/office.h"
#include "tests/support/full_disk.h"

namespace kaunter {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

bool GoOn(const UpkeepStep&) { return true; }

class BackupTest : public ::testing::Test {
 protected:
  BackupResult Take(const UpkeepGoOn& go_on = GoOn) {
    return TakeBackup(office.session, place, Keeping(), go_on);
  }
  std::vector<std::string> Left() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(place)) {
      names.push_back(entry.path().filename().string());
    }
    std::erase(names, ".kaunter-backup.lock");
    return names;
  }
  std::string LastBackup() {
    return office.Scalar("SELECT [Value] FROM Systemast WHERE Param='LastBackup'");
  }
  // A loan of one row that a payment has paid; its replay has not happened.
  void AddPaymentOnItsWay() {
    office.Run(
        "INSERT INTO CustMast (CustID,CompCode,CustStatus) VALUES ('C1','HQ','ACTIVE');"
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanStatus,DragLoan,LoanAmt,PayOutAmt,"
        "LoanBal,SchChanged,SpecialSch) VALUES ('L1','C1','HQ','ACTIVE','0',100,100,110,'0','0');"
        "INSERT INTO SchMast (SchID,LoanID,DueDate,PayableAmt,CapitalAmt,InterestAmt,Payment) "
        "VALUES (1,'L1','2024-02-01',110,100,10,0);"
        "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,PayAmt,InstalAmt,"
        "PaymentStatus,DragLoan) VALUES ('L1-001','L1','C1','HQ','2024-01-31',50,50,'ACTIVE','0')");
  }

  Office office{Office::State::patched};
  std::string place = office.folder.File("backups");
};

TEST_F(BackupTest, IsWholeAndItsOwnersAlone) {
  AddPaymentOnItsWay();
  CreateMissingAuditTables(
      *OpenSqlite("LogsConn", office.folder.File("office-Logs.db"), true, office.session.clock));
  const BackupRecord record = *Take().record;
  CheckBackupFiles(record);
  EXPECT_EQ(record.loans, 1);
  EXPECT_EQ(record.receipts, 1);
  EXPECT_EQ(LastBackup(), "2024-01-31 14:05:09");
  for (const std::string& path : {record.MainPath(), record.LogsPath(), record.folder, place}) {
    EXPECT_EQ(fs::status(path).permissions() & (fs::perms::group_all | fs::perms::others_all),
              fs::perms::none)
        << path;
  }
  const BackupRecord read = BackupsIn(place).at(0);
  EXPECT_EQ(read.folder, record.folder);
  EXPECT_EQ(read.main.digest, record.main.digest);
  std::ofstream(record.MainPath(), std::ios::app) << "x";
  EXPECT_THROW(CheckBackupFiles(record), std::runtime_error);
}

// The office replays the payment a while after the copy was checked: the copy is brought there too.
// Without that it is a fault of the office, and told.
TEST_F(BackupTest, APaymentOnItsWayIsReplayedInTheCopy) {
  AddPaymentOnItsWay();
  const BackupResult broken = Take();
  EXPECT_GT(broken.record->faults, 0);
  EXPECT_THAT(broken.warnings.back().english, HasSubstr("do not hold"));
  office.session.clock.Set({2024, 1, 31, 14, 5, 10});
  using Time = std::chrono::steady_clock;
  std::optional<Time::time_point> begun;
  const BackupResult mended = Take([&](const UpkeepStep& step) {
    if (!step.what.english.starts_with("Verifying")) return true;
    if (!begun) begun = Time::now();
    if (Time::now() - *begun > std::chrono::milliseconds(300)) {
      RebuildLoan(office.session.Main(), "L1");
      RebuildCustomer(office.session.Main(), "C1");
    }
    return true;
  });
  EXPECT_EQ(mended.record->faults, 0);
  const auto copy = OpenSqlite("Copy", mended.record->MainPath(), false, office.session.clock);
  EXPECT_THAT(CheckLoan(*copy, "L1"), IsEmpty());
  EXPECT_EQ(ScalarQuery(*copy, "SELECT TotPay FROM LoanMast WHERE LoanID='L1'"), "50");
}

TEST_F(BackupTest, StoppedAnywhereItLeavesNothing) {
  int questions = 0;
  Take([&](const UpkeepStep&) { return ++questions > 0; });
  fs::remove_all(place);
  for (int stop = 1; stop <= questions; ++stop) {
    int asked = 0;
    EXPECT_FALSE(Take([&](const UpkeepStep&) { return ++asked != stop; }).record) << stop;
    EXPECT_THAT(Left(), IsEmpty()) << stop;
  }
  EXPECT_GE(questions, 2);
}

// Killed, or on a disk that takes no more than so many bytes: nothing that looks like a backup,
// and the next one clears it away.
TEST_F(BackupTest, KilledOrOnAFullDiskItIsNone) {
  fs::create_directory(place);
  office.session.MainConn.reset();
  for (const bool full : {true, false}) {
    EXPECT_EQ(OnAFullDisk(full ? 100'000 : RLIM_INFINITY,
                          [&] {
                            office.Open();
                            Take([&](const UpkeepStep& step) {
                              if (!full && step.what.english.starts_with("Checking")) {
                                raise(SIGKILL);
                              }
                              return true;
                            });
                            return 0;
                          }),
              full ? 1 : -1);
    EXPECT_THAT(BackupsIn(place), IsEmpty());
  }
  EXPECT_EQ(Left().size(), 1u);  // what the killed one left
  office.Open();
  EXPECT_TRUE(Take().record);
  EXPECT_EQ(Left().size(), 1u);
}

TEST_F(BackupTest, WhatDoesNotFitIsTold) {
  const auto told = [&](const std::string& folder) -> std::string {
    try {
      TakeBackup(office.session, folder, {}, GoOn);
    } catch (const CaptionError& why) {
      return why.what();
    }
    return "";
  };
  EXPECT_THAT(told(office.folder.File("away/backups")), HasSubstr("is the disk"));
  EXPECT_EQ(told(place), "");
  EXPECT_THAT(told(place), HasSubstr("is there already"));
  const FileLock other(place + "/.kaunter-backup.lock");
  EXPECT_THAT(told(place), HasSubstr("under way"));
}

// Thinned by the rule, and those of another office left alone.
TEST_F(BackupTest, OldOnesGo) {
  for (int day = 1; day <= 20; ++day) {
    office.session.clock.Set(DateTime{2024, 2, 1, 21, 0, 0}.AddDays(day));
    Take();
  }
  const std::size_t own = BackupsIn(place).size();
  EXPECT_EQ(own,
            9u);  // seven days; Sundays the 4th and 11th of which one is a day's; none of January
  office.session.data_sources.Add("Office",
                                  {DataSource::Kind::kEmbedded, office.folder.File("other.db")});
  fs::copy_file(office.folder.File("office.db"), office.folder.File("other.db"));
  Take();
  EXPECT_EQ(BackupsIn(place).size(), own + 1);
}

}  // namespace
}  // namespace kaunter
