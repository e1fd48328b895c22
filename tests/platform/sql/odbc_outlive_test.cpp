// A desktop whose server is lost at a commit: what is stored, what is told, and how it goes on.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "platform/sql/data_source.h"
#include "platform/sql/odbc/odbc_connection.h"
#include "platform/sql/waiting.h"
#include "tests/platform/support/test_engine.h"
#include "tests/support/cutting_proxy.h"
#include "tests/support/odbc_driver.h"

namespace kaunter {
namespace {

using std::chrono::milliseconds;
using Cut = test::CuttingProxy::Cut;

class OdbcOutlive : public ::testing::Test {
 protected:
  OdbcOutlive()
      : plain(OpenOdbc("Plain", testing::SharedPostgres().OdbcText(), clock)),
        proxy(testing::SharedPostgres().port()) {
    plain->Execute(
        "CREATE TABLE SaveMark (Mark nvarchar(50) NOT NULL PRIMARY KEY, SavedAt datetime)");
    plain->Execute("CREATE TABLE Paid (K int)");
    desk = Open();
    desk->OutliveServer(milliseconds(5000));
  }
  ~OdbcOutlive() override {
    plain->Execute("DROP TABLE SaveMark");
    plain->Execute("DROP TABLE Paid");
  }

  std::unique_ptr<Connection> Open() {
    std::string text = testing::SharedPostgres().OdbcText();
    const std::string port = std::to_string(testing::SharedPostgres().port());
    text.replace(text.find(port), port.size(), std::to_string(proxy.port()));
    return OpenOdbc("MainConn", text, clock);
  }
  void Pay(int k) {
    desk->BeginTrans();
    const std::string before = desk->Query("SELECT COUNT(*) FROM Paid").Field(0).ToText();
    desk->Execute("INSERT INTO Paid VALUES (" + std::to_string(k) + ")");
    desk->CommitTrans();
  }
  // What became of it: "stored" when it passes.
  std::string Told(int k) {
    try {
      Pay(k);
      return "stored";
    } catch (const ServerLost& lost) {
      desk->RollbackTrans();
      if (lost.stored() == ServerLost::Stored::nothing) return "nothing stored";
      return lost.stored() == ServerLost::Stored::earlier ? "an earlier one is stored"
                                                          : "not known";
    }
  }
  std::string Paid() {
    std::string all;
    for (Recordset rows = plain->Query("SELECT K FROM Paid ORDER BY K"); !rows.Eof();
         rows.MoveNext()) {
      all += rows.Field(0).ToText() + " ";
    }
    return all;
  }

  const Clock clock;
  std::unique_ptr<Connection> plain;
  test::CuttingProxy proxy;
  std::unique_ptr<Connection> desk;
};

TEST_F(OdbcOutlive, ALineThatIsCutAtACommitCostsNothingAndDoublesNothing) {
  std::string paid;
  int k = 0;
  for (const Cut cut : {Cut::before, Cut::behind, Cut::never, Cut::behind, Cut::before}) {
    proxy.CutAtCommit(cut);
    const std::uint64_t kept = desk->kept();
    EXPECT_EQ(Told(++k), "stored");
    EXPECT_EQ(desk->kept(), kept + 1);
    EXPECT_FALSE(desk->InTransaction());
    paid += std::to_string(k) + " ";
    EXPECT_EQ(Paid(), paid);
  }
  EXPECT_EQ(proxy.cuts(), 4);
  // A row for the desktop, however much it has stored.
  EXPECT_EQ(plain->Query("SELECT COUNT(*) FROM SaveMark").Field(0), Value(1));
}

TEST_F(OdbcOutlive, WhatIsNotKnownIsFoundOutBeforeTheNextSave) {
  desk->OutliveServer(milliseconds(200));
  int k = 0;
  std::string paid;
  for (const Cut cut : {Cut::behind, Cut::before, Cut::behind}) {
    proxy.CutAtCommit(cut, /*and_away=*/true);
    const int first = ++k;
    EXPECT_EQ(Told(first), "not known");
    EXPECT_EQ(Told(first), "not known");
    proxy.ComeBack();
    if (cut == Cut::behind) {
      EXPECT_EQ(Told(first), "an earlier one is stored");
    } else {
      EXPECT_EQ(Told(first), "stored");
    }
    paid += std::to_string(first) + " ";
    EXPECT_EQ(Paid(), paid);
    EXPECT_EQ(Told(++k), "stored");
    paid += std::to_string(k) + " ";
    EXPECT_EQ(Paid(), paid);
  }
}

// The server does not hear of the end of the line: the transaction is open there and might still be
// committed.
TEST_F(OdbcOutlive, ATransactionThatIsStillOpenOnTheServerIsWaitedFor) {
  proxy.CutAtCommit(Cut::before_unseen);
  std::thread end([this] {
    std::this_thread::sleep_for(milliseconds(700));
    sql::OdbcSession("Killer", testing::SharedPostgres().OdbcText())
        .Run(
            "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE state='idle in "
            "transaction'",
            true);
  });
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(Told(1), "stored");
  EXPECT_GE(std::chrono::steady_clock::now() - begin, milliseconds(700));
  end.join();
  EXPECT_EQ(Paid(), "1 ");
}

// The wish to stop goes to a server that does not hear it.
TEST_F(OdbcOutlive, AStopIsNotHeldUpByAServerThatStandsStill) {
  using Time = std::chrono::steady_clock;
  for (const bool within : {false, true}) {
    SCOPED_TRACE(within);
    if (within) desk->BeginTrans();
    desk->Query("SELECT COUNT(*) FROM Paid");
    proxy.Hold(true);
    const auto begin = Time::now();
    int asked = 0;  // whoever paints the windows is not held up either
    {
      const MayStop stop([&] {
        ++asked;
        return Time::now() - begin > milliseconds(300);
      });
      EXPECT_THROW(desk->Query("SELECT COUNT(*) FROM Paid"), SqlError);
    }
    if (within) desk->RollbackTrans();
    EXPECT_LT(Time::now() - begin, std::chrono::seconds(8));
    EXPECT_GT(asked, 100);
    proxy.Hold(false);
    EXPECT_EQ(Told(1), "stored");
    plain->Execute("DELETE FROM Paid");
  }
}

// What it has read is another thing by now: it must not be stored on that.
TEST_F(OdbcOutlive, ASaveWhoseGroundHasMovedIsRefused) {
  desk->BeginTrans();
  desk->Query("SELECT COUNT(*) FROM Paid");
  desk->Execute("INSERT INTO Paid VALUES (1)");
  sql::OdbcSession knife("Knife", testing::SharedPostgres().OdbcText());
  knife.Run("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE pid<>pg_backend_pid()",
            true);
  knife.Run("INSERT INTO \"Paid\" VALUES (7)", false);
  EXPECT_THROW(desk->Execute("INSERT INTO Paid VALUES (2)"), SqlError);
  EXPECT_TRUE(desk->InTransaction());  // what follows in it does not pass by itself
  EXPECT_THROW(desk->Execute("INSERT INTO Paid VALUES (3)"), SqlError);
  desk->RollbackTrans();
  plain = OpenOdbc("Plain", testing::SharedPostgres().OdbcText(), clock);
  EXPECT_EQ(Paid(), "7 ");
  EXPECT_EQ(Told(4), "stored");
}

}  // namespace
}  // namespace kaunter
