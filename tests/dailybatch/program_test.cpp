// The program itself: what it says and how it ends, and that it may be killed at any moment.
#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <thread>

#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using ::testing::HasSubstr;

constexpr int kKilled = -1;

class DailyBatchProgramTest : public ::testing::Test {
 protected:
  pid_t Start(const std::string& date) {
    const pid_t child = fork();
    if (child == 0) {
      const int out = open(folder.File("out.txt").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
      dup2(out, 1);
      dup2(out, 2);
      const std::string program = KAUNTER_BINARY_DIR "/bin/DailyBatch/DailyBatch";
      execl(program.c_str(), program.c_str(), "--app", folder.path().c_str(), "--database",
            file.c_str(), "--now", "2024-01-31 14:05:09", date.c_str(), nullptr);
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
  void MakeOffice() {
    Office office{Office::State::patched};
    Connection& main = office.session.Main();
    main.BeginTrans();
    for (int loan = 1; loan <= 150; ++loan) {
      main.Execute(
          fmt::format("INSERT INTO LoanMast (LoanID,LoanStatus,PayOutAmt,LateChargePerDay) VALUES "
                      "('L{:04}','ACTIVE',1,{})",
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
    office.session.MainConn.reset();
    std::filesystem::copy_file(office.folder.File("office.db"), kept);
  }

  void Fresh() {
    for (const char* tail : {"", "-wal", "-shm"}) std::filesystem::remove(file + tail);
    std::filesystem::copy_file(kept, file);
  }

  std::string State() {
    std::string text;
    Clock clock;
    const auto main = OpenSqlite("MainConn", file, false, clock);
    for (const char* sql : {"SELECT ChargeID,ChargeAmt FROM ChargeMast ORDER BY ChargeID",
                            "SELECT LoanID,TotCollectorAmt FROM LoanMast ORDER BY LoanID",
                            "SELECT Value FROM Systemast WHERE Param='DailyBatchDate'"}) {
      const Recordset rows = main->Query(sql);
      for (const auto& row : rows.rows()) {
        for (const Value& field : row) text += field.ToText() + " ";
      }
      text += "\n";
    }
    return text;
  }

  TempFolder folder;
  std::string file = folder.File("office.db");
  std::string kept = folder.File("kept.db");
};

TEST_F(DailyBatchProgramTest, IsKilledAndRunAgain) {
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

TEST_F(DailyBatchProgramTest, TwoAtOnceAreAsOne) {
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

TEST_F(DailyBatchProgramTest, SaysWhatIsWrong) {
  EXPECT_EQ(Run("31-01-2024"), 2);
  EXPECT_THAT(Said(), HasSubstr("there is no such file"));
  EXPECT_FALSE(std::filesystem::exists(file));  // a batch never makes an office
  EXPECT_THAT(Log(), HasSubstr("Daily batch 31-01-2024 - error Rollback 4060"));
  std::ofstream(file).close();
  EXPECT_EQ(Run("31-01-2024"), 1);
  EXPECT_THAT(Said(), HasSubstr("holds no office yet"));
  MakeOffice();
  Fresh();
  const std::string before = State();
  const struct {
    const char* date;
    const char* told;
  } cases[] = {
      {"soon", "\"soon\" is no date: write it as dd-mm-yyyy"},
      {"31-02-2024", "\"31-02-2024\" is no date"},
      {"01-02-2024", "01-02-2024 lies in the future"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Run(c.date), 1);
    EXPECT_THAT(Said(), HasSubstr(c.told));
    EXPECT_THAT(Log(), HasSubstr(c.told));
    EXPECT_EQ(State(), before);
  }
}

}  // namespace
}  // namespace kaunter
