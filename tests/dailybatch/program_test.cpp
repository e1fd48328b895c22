// The program itself: what it says and how it ends, and that it may be killed at any moment; this
// on a PostgreSQL server too, where script/with-postgresql has started one.
#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <thread>

#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using ::testing::HasSubstr;

constexpr int kKilled = -1;

class DailyBatchProgramTest : public ::testing::Test {
 protected:
  virtual std::vector<std::string> WhichOffice() { return {"--database", file}; }
  virtual std::unique_ptr<Connection> Connect() {
    return OpenSqlite("MainConn", file, false, clock);
  }

  pid_t Start(const std::string& date) {
    const pid_t child = fork();
    if (child == 0) {
      const int out = open(folder.File("out.txt").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
      dup2(out, 1);
      dup2(out, 2);
      if (largest_file > 0) {
        const rlimit limit{largest_file, largest_file};
        setrlimit(RLIMIT_FSIZE, &limit);
      }
      const std::string program = test::BinaryDir() + "/bin/DailyBatch/DailyBatch";
      std::vector<std::string> words = {
          program, "--app", folder.path(), "--now", "2024-01-31 14:05:09", date};
      for (const std::string& word : WhichOffice()) words.push_back(word);
      std::vector<char*> arguments;
      for (std::string& word : words) arguments.push_back(word.data());
      arguments.push_back(nullptr);
      execv(program.c_str(), arguments.data());
      _exit(127);
    }
    return child;
  }

  static int StatusOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : kKilled;
  }

  // Runs the program on the office; `kill_after` is its life in milliseconds, 0 for as long as it
  // takes. Gives its exit status.
  int Run(const std::string& date, int kill_after = 0) {
    const pid_t child = Start(date);
    if (kill_after > 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(kill_after));
      kill(child, SIGKILL);
    }
    return StatusOf(child);
  }

  std::string Text(const std::string& path) {
    std::ifstream stream(path);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
  }
  std::string Said() { return Text(folder.File("out.txt")); }
  std::string Log() { return Text(folder.File("logs/log31-01-2024.log")); }

  // 150 loans of ten rows that fell due before the days in question.
  static void AddLoans(Connection& main) {
    main.BeginTrans();
    for (int loan = 1; loan <= 150; ++loan) {
      main.Execute(fmt::format(
          "INSERT INTO LoanMast (LoanID,LoanStatus,PayOutAmt,LateChargePerDay,LoanBal) VALUES "
          "('L{:04}','ACTIVE',1,{},1)",
          loan, 5 + loan % 20));
      for (int row = 1; row <= 10; ++row) {
        main.Execute(
            fmt::format("INSERT INTO SchMast (SchID,LoanID,DueDate,PayableAmt,Payment) VALUES "
                        "({},'L{:04}','2023-{:02}-15',{},0)",
                        row, loan, row, 100 + 7 * loan + row));
      }
    }
    main.Execute("INSERT INTO Systemast (Param,Value) VALUES ('DailyBatchDate','2024-01-28')");
    main.CommitTrans();
  }

  virtual void MakeOffice() {
    Office office{Office::State::patched};
    AddLoans(office.session.Main());
    office.session.MainConn.reset();
    std::filesystem::copy_file(office.folder.File("office.db"), kept);
  }

  virtual void Fresh() {
    for (const char* tail : {"", "-wal", "-shm"}) std::filesystem::remove(file + tail);
    std::filesystem::copy_file(kept, file);
  }

  std::string State() {
    std::string text;
    const auto main = Connect();
    for (const char* sql : {"SELECT ChargeID,ChargeAmt FROM ChargeMast ORDER BY ChargeID",
                            "SELECT LoanID,TotCollectorAmt FROM LoanMast ORDER BY LoanID",
                            "SELECT Value FROM Systemast WHERE Param='DailyBatchDate'"}) {
      text += LinesOf(main->Query(sql));
    }
    return text;
  }

  void ExpectToBearKilling();
  void ExpectTwoToBeAsOne();

  Clock clock;
  TempFolder folder;
  std::string file = folder.File("office.db");
  std::string kept = folder.File("kept.db");
  rlim_t largest_file = 0;  // in bytes, 0 for any
};

void DailyBatchProgramTest::ExpectToBearKilling() {
  MakeOffice();
  Fresh();
  const auto begin = std::chrono::steady_clock::now();
  ASSERT_EQ(Run("31-01-2024"), 0) << Said();
  const auto life = std::chrono::duration_cast<std::chrono::milliseconds>(
                        std::chrono::steady_clock::now() - begin)
                        .count();
  EXPECT_THAT(Said(), HasSubstr("Daily batch 29-01-2024 to 31-01-2024: 4500 charges, "));
  EXPECT_THAT(Log(), HasSubstr("[DailyBatch] Daily batch 29-01-2024 to 31-01-2024: 4500 charges"));
  const std::string undisturbed = State();
  std::mt19937 random(std::random_device{}());
  int killed = 0;
  int part_way = 0;
  for (int round = 0; round < 4; ++round) {
    Fresh();
    const std::string before = State();
    for (int i = 0; i < 3; ++i) {
      const int after = std::uniform_int_distribution<int>(1, static_cast<int>(life))(random);
      if (Run("31-01-2024", after) == kKilled) ++killed;
      const std::string now = State();
      if (now != before && now != undisturbed) ++part_way;
    }
    ASSERT_EQ(Run("31-01-2024"), 0) << Said();
    ASSERT_EQ(State(), undisturbed);
  }
  std::cout << killed << " killed, found part way " << part_way << " times\n";
  EXPECT_GT(killed, 0);
}

void DailyBatchProgramTest::ExpectTwoToBeAsOne() {
  MakeOffice();
  Fresh();
  ASSERT_EQ(Run("31-01-2024"), 0) << Said();
  const std::string undisturbed = State();
  Fresh();
  const pid_t first = Start("31-01-2024");
  const pid_t second = Start("31-01-2024");
  EXPECT_EQ(StatusOf(first), 0) << Said();
  EXPECT_EQ(StatusOf(second), 0) << Said();
  EXPECT_EQ(State(), undisturbed);
}

TEST_F(DailyBatchProgramTest, IsKilledAndRunAgain) { ExpectToBearKilling(); }
TEST_F(DailyBatchProgramTest, TwoAtOnceAreAsOne) { ExpectTwoToBeAsOne(); }

class PostgresqlBatchTest : public DailyBatchProgramTest {
 protected:
  void SetUp() override {
    const char* server = std::getenv("KAUNTER_POSTGRESQL");
    if (server == nullptr) GTEST_SKIP() << "no PostgreSQL server to play on";
    ASSERT_EQ(std::system("dropdb --if-exists --force daily_batch 2>/dev/null && "
                          "createdb -T template0 -E UTF8 daily_batch"),
              0);
    odbc = std::string(server) + ";Database=daily_batch";
    std::ofstream(folder.File("settings.ini"))
        << "ConnDataSource = Office\n[Office]\nodbc = " << odbc << "\n";
  }
  std::vector<std::string> WhichOffice() override {
    return {"--settings", folder.File("settings.ini")};
  }
  std::unique_ptr<Connection> Connect() override { return OpenOdbc("MainConn", odbc, clock); }
  void MakeOffice() override {
    Session session;
    SilentDesk desk;
    session.AppPath = folder.path();
    MakeLogFolder(session);
    session.MainConn = Connect();
    CreateEmptyOffice(session.Main());
    RunConnectSequence(session, desk, [](std::string_view) {});
    AddLoans(session.Main());
  }
  void Fresh() override {
    const auto main = Connect();
    main->BeginTrans();
    main->Execute("DELETE FROM ChargeMast");
    main->Execute("UPDATE LoanMast SET TotCollectorAmt=0");
    main->Execute("UPDATE Systemast SET Value='2024-01-28' WHERE Param='DailyBatchDate'");
    main->CommitTrans();
  }

  std::string odbc;
};

TEST_F(PostgresqlBatchTest, IsKilledAndRunAgain) { ExpectToBearKilling(); }
TEST_F(PostgresqlBatchTest, TwoAtOnceAreAsOne) { ExpectTwoToBeAsOne(); }

TEST_F(DailyBatchProgramTest, GoesOnFromWhereThereWasNoRoom) {
  MakeOffice();
  Fresh();
  ASSERT_EQ(Run("31-01-2024"), 0) << Said();
  const std::string undisturbed = State();
  Fresh();
  const std::string before = State();
  largest_file = std::filesystem::file_size(kept) + 200'000;
  EXPECT_EQ(Run("31-01-2024"), 2);
  EXPECT_THAT(Said(), HasSubstr("What was posted stays"));
  largest_file = 0;
  const std::string part = State();
  EXPECT_TRUE(part != before && part != undisturbed);
  EXPECT_EQ(Run("31-01-2024"), 0) << Said();
  EXPECT_EQ(State(), undisturbed);
}

TEST_F(DailyBatchProgramTest, SaysWhatIsWrong) {
  EXPECT_EQ(Run("31-01-2024"), 2);
  EXPECT_THAT(Said(), HasSubstr("there is no such file"));
  EXPECT_FALSE(std::filesystem::exists(file));  // a batch never makes an office
  EXPECT_THAT(Log(), HasSubstr("Daily batch 31-01-2024 - error Rollback 4060"));
  OpenSqlite("MainConn", file, true, clock);
  EXPECT_EQ(Run("31-01-2024"), 1);
  EXPECT_THAT(Said(), HasSubstr("holds no office yet"));
  MakeOffice();
  Fresh();
  const struct {
    const char* date;
    const char* told;
  } cases[] = {
      {"soon", "\"soon\" is no date: write it as dd-mm-yyyy"},
      {"31-02-2024", "\"31-02-2024\" is no date"},
      {"01-02-2024", "01-02-2024 lies in the future"},
      {"today", "last day that was posted is 30-12-2023, and today would be 31-01-2024"},
  };
  OpenSqlite("MainConn", file, false, clock)
      ->Execute("UPDATE Systemast SET Value='2023-12-30' WHERE Param='DailyBatchDate'");
  const std::string before = State();
  for (const auto& c : cases) {
    EXPECT_EQ(Run(c.date), 1);
    EXPECT_THAT(Said(), HasSubstr(c.told));
    EXPECT_THAT(Log(), HasSubstr(c.told));
    EXPECT_EQ(State(), before);
  }
}

}  // namespace
}  // namespace kaunter
