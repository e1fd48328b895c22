// A connection that thinks for long, and one that is lost: what the desktop does meanwhile, what is
// told, and how the work goes on.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "platform/sql/data_source.h"
#include "platform/sql/odbc/odbc_connection.h"
#include "platform/sql/waiting.h"
#include "tests/platform/support/error_number.h"
#include "tests/platform/support/test_engine.h"
#include "tests/support/odbc_driver.h"

namespace kaunter {
namespace {

using sql::OdbcConnection;
using sql::OdbcSession;
using testing::PostgresServer;

PostgresServer& Server() { return testing::SharedPostgres(); }

class Acting {
 public:
  explicit Acting(std::function<void()> act) { SetWhileWaiting(std::move(act)); }
  ~Acting() { SetWhileWaiting({}); }
  Acting(const Acting&) = delete;
  Acting& operator=(const Acting&) = delete;
};

TEST(OdbcWaiting, TheDesktopActsWhileTheServerThinks) {
  OdbcSession session("MainConn", Server().OdbcText());
  const Clock clock;
  const auto other = OpenOdbc("Other", Server().OdbcText(), clock);
  const std::thread::id here = std::this_thread::get_id();
  int acts = 0;
  std::string refusal;
  const Acting acting([&] {
    ++acts;
    EXPECT_EQ(std::this_thread::get_id(), here);
    try {
      other->Query("SELECT 4711");
    } catch (const std::logic_error& fault) {
      refusal = fault.what();
    }
  });
  session.Run("SELECT pg_sleep(0.5)", true);
  EXPECT_GE(acts, 10);
  EXPECT_NE(refusal.find("4711"), std::string::npos) << refusal;
  // A failure behind a wait arrives as it would without one.
  acts = 0;
  EXPECT_THROW(session.Run("SELECT pg_sleep(0.2); SELECT 1/0", true), SqlError);
  EXPECT_GE(acts, 4);
  // Many short ones keep the windows from painting as one long one does.
  acts = 0;
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 100; ++i) session.Run("SELECT pg_sleep(0.003)", true);
  EXPECT_GE(acts, (std::chrono::steady_clock::now() - begin) / std::chrono::milliseconds(50));
}

// Another desktop holds the lock of the saves.
TEST(OdbcWaiting, TheDesktopActsWhileAnotherSaves) {
  const Clock clock;
  const auto mine = OpenOdbc("MainConn", Server().OdbcText(), clock);
  const auto others = OpenOdbc("Other", Server().OdbcText(), clock);
  others->BeginTrans();
  std::thread end([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
    others->RollbackTrans();
  });
  int acts = 0;
  const Acting acting([&] { ++acts; });
  mine->BeginTrans();
  end.join();
  mine->CommitTrans();
  EXPECT_GE(acts, 5);
}

TEST(OdbcLoss, ALostServerIsToldAndThenReachedAgain) {
  const Clock clock;
  OdbcConnection connection("MainConn", Server().OdbcText(), clock);
  NumberOf(connection, "DROP TABLE Lost");
  connection.Execute("CREATE TABLE Lost (K int)");
  connection.BeginTrans();
  connection.Execute("INSERT INTO Lost VALUES (1)");
  EXPECT_FALSE(connection.Lost());
  Server().Stop();
  std::string words;
  EXPECT_EQ(NumberOf(connection, "INSERT INTO Lost VALUES (2)", &words), 10054);
  EXPECT_NE(words.find("MainConn"), std::string::npos) << words;
  EXPECT_NE(words.find("nothing of that is kept"), std::string::npos) << words;
  EXPECT_TRUE(connection.Lost());

  Server();  // up again, but the save is over: the rest of it must not be stored by itself
  EXPECT_EQ(NumberOf(connection, "INSERT INTO Lost VALUES (3)", &words), 10054);
  EXPECT_NE(words.find("rolled back"), std::string::npos) << words;
  EXPECT_THROW(connection.CommitTrans(), SqlError);
  EXPECT_NO_THROW(connection.RollbackTrans());
  EXPECT_EQ(connection.Query("SELECT COUNT(*) FROM Lost").Field(0), Value(0));
  EXPECT_FALSE(connection.Lost());
  connection.BeginTrans();
  connection.Execute("INSERT INTO Lost VALUES (4)");
  connection.CommitTrans();
  EXPECT_EQ(connection.Query("SELECT K FROM Lost").Field(0), Value(4));
}

TEST(OdbcLoss, AServerThatStaysAwayIsToldAtEachTry) {
  const Clock clock;
  OdbcConnection connection("MainConn", Server().OdbcText(), clock);
  Server().Stop();
  std::string words;
  EXPECT_EQ(NumberOf(connection, "SELECT 1"), 10054);
  EXPECT_EQ(NumberOf(connection, "SELECT 1", &words), 4060);
  EXPECT_NE(words.find("that the server runs"), std::string::npos) << words;
  EXPECT_THROW(connection.BeginTrans(), SqlError);
  EXPECT_FALSE(connection.InTransaction());
  Server();
  EXPECT_EQ(NumberOf(connection, "SELECT 1"), 0);
}

// The set clock belongs to the session on the server.
TEST(OdbcLoss, ACutConnectionComesBackAsItWas) {
  Clock clock;
  clock.Set(DateTime{2024, 1, 31, 9, 0, 0});
  OdbcConnection connection("MainConn", Server().OdbcText(), clock);
  const std::string today = "SELECT getdate() AS Now";
  for (int i = 0; i < 3; ++i) connection.Query(today);  // prepared by now
  OdbcSession("Killer", Server().OdbcText())
      .Run("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE pid<>pg_backend_pid()",
           true);
  EXPECT_EQ(NumberOf(connection, today), 10054);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(connection.Query(today).Field(0), Value(DateTime{2024, 1, 31, 9, 0, 0}));
  }
}

TEST(OdbcLoss, ALostCommitSaysThatItIsNotKnown) {
  const Clock clock;
  OdbcConnection connection("MainConn", Server().OdbcText(), clock);
  connection.BeginTrans();
  connection.Execute("CREATE TABLE Lost2 (K int)");
  Server().Stop();
  try {
    connection.CommitTrans();
    ADD_FAILURE() << "a commit without a server passed";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.number(), 10054);
    EXPECT_NE(std::string(error.what()).find("not known"), std::string::npos) << error.what();
  }
  EXPECT_NO_THROW(connection.RollbackTrans());
  EXPECT_FALSE(connection.InTransaction());
  Server();
}

}  // namespace
}  // namespace kaunter
