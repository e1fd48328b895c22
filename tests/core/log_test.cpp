#include "core/log.h"

#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <stdexcept>

#include "core/session_screen.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "platform/rolling_file.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;

TEST(LogTest, LinesCarryTheStampAndStayOneLineEach) {
  Office office(Office::State::base);
  const Session& session = office.session;
  WriteLog(session, LogLine(session, " ****** User Logout ******"));
  LogRollback(session, "AB0001-001", SqlError(2627, "Violation of PRIMARY KEY\r\nin LoanMast"));
  LogRollback(session, "AB0001-001", std::runtime_error("no room"));
  EXPECT_THAT(
      office.Log(),
      ElementsAre("[31-01-2024 02:05:09 PM] [AMY]  ****** User Logout ******",
                  "[31-01-2024 02:05:09 PM] [AMY] AB0001-001 - error Rollback 2627 - "
                  "Violation of PRIMARY KEY  in LoanMast",
                  "[31-01-2024 02:05:09 PM] [AMY] AB0001-001 - error Rollback 0 - no room"));
}

// Its folder is gone, and a file stands where it was; then the disk is full.
TEST(LogTest, LinesThatCannotBeWrittenAreKeptAndToldAndDisturbNobody) {
  Office office(Office::State::base);
  const std::string logs = office.folder.File("logs");
  const std::string file = logs + "/log31-01-2024.log";
  std::filesystem::remove_all(logs);
  std::ofstream(logs) << "in the way";
  // An act is done to its end, and then fails once.
  SessionScreen screen("Screen", {}, office.session, office.desk);
  bool to_its_end = false;
  EXPECT_FALSE(screen.Guard([&] {
    WriteLog(office.session, "first");
    to_its_end = true;
  }));
  EXPECT_TRUE(to_its_end);
  EXPECT_THAT(office.desk.messages.back(), ::testing::HasSubstr(file));
  EXPECT_TRUE(screen.Guard([&] { LogRollback(office.session, "a save", SqlError(1, "told")); }));
  EXPECT_THAT(LogTrouble(office.session), ::testing::HasSubstr(file));
  std::filesystem::remove(logs);
  std::filesystem::create_directory(logs);
  std::filesystem::create_symlink("/dev/full", file);
  for (int i = 0; i < 1010; ++i) WriteLog(office.session, fmt::format("line {}", i));
  EXPECT_THAT(LogTrouble(office.session), ::testing::HasSubstr("No space"));
  EXPECT_THROW(LogSetClock(office.session), std::runtime_error);
  std::filesystem::remove_all(logs);
  WriteLog(office.session, "last");
  EXPECT_EQ(LogTrouble(office.session), "");
  const auto log = office.Log();
  EXPECT_EQ(log.front(), "15 lines could not be written");
  EXPECT_EQ(log.size(), 1001u);  // one of them is in the log of the real day
  EXPECT_THAT(log.back(), ::testing::HasSubstr("last"));
}

std::string ModeOf(const std::string& path) {
  return fmt::format("{:o}", static_cast<unsigned>(std::filesystem::status(path).permissions()));
}

TEST(LogTest, FolderAndFilesAreTheirOwnersAloneExistingOnesToo) {
  namespace fs = std::filesystem;
  const auto all = fs::perms(0777);
  for (const bool shared : {false, true}) {
    Office office(Office::State::base);
    const std::string logs = office.folder.File("logs");
    std::ofstream(logs + "/log30-01-2024.log") << "before";
    fs::permissions(logs, all);
    fs::permissions(logs + "/log30-01-2024.log", all);
    if (shared) fs::permissions(office.folder.path(), fs::perms(0770));
    MakeLogFolder(office.session);
    WriteLog(office.session, "now");
    EXPECT_EQ(ModeOf(logs), shared ? "770" : "700");
    for (const char* name : {"/log30-01-2024.log", "/log31-01-2024.log"}) {
      EXPECT_EQ(ModeOf(logs + name), shared ? "660" : "600") << name;
    }
  }
}

TEST(LogTest, TheOldestDaysGoAndNothingElse) {
  Office office(Office::State::base);
  const std::string logs = office.folder.File("logs");
  for (int i = 0; i < 402; ++i) {
    std::ofstream(
        logs + fmt::format("/log{:02}-{:02}-{}.log", 1 + i % 28, 1 + i / 28 % 12, 2020 + i / 336));
  }
  for (const char* name : {"/log01-01-2020.log.1", "/log01-01-2020.txt", "/slow01-01-2020.log"}) {
    std::ofstream(logs + name);
  }
  MakeLogFolder(office.session);
  for (const char* gone : {"01-01-2020.log", "02-01-2020.log", "01-01-2020.log.1"}) {
    EXPECT_FALSE(std::filesystem::exists(logs + "/log" + gone)) << gone;
  }
  for (const char* kept : {"log03-01-2020.log", "log01-01-2020.txt", "slow01-01-2020.log"}) {
    EXPECT_TRUE(std::filesystem::exists(logs + "/" + kept)) << kept;
  }
}

// Several processes add to one file while it is set aside again and again: what is left is the end
// of each one's lines, whole and in their order.
TEST(RollingFileTest, ProcessesAddWholeLinesAcrossItsFiles) {
  TempFolder folder;
  const std::string path = folder.File("trace.txt");
  constexpr int kProcesses = 4, kLines = 3000, kLargest = 20'000, kKept = 3;
  std::vector<pid_t> processes;
  for (int i = 0; i < kProcesses; ++i) {
    processes.push_back(fork());
    if (processes.back() != 0) continue;
    RollingFile file(path, kLargest, kKept, "head\n");
    for (int line = 0; line < kLines; ++line) file.Add(fmt::format("{} {}\n", i, line));
    _exit(0);
  }
  for (const pid_t process : processes) waitpid(process, nullptr, 0);
  std::map<int, int> next;
  int lines = 0;
  for (const char* behind : {".3", ".2", ".1", ""}) {
    EXPECT_LE(std::filesystem::file_size(path + behind), kLargest);
    std::ifstream file(path + behind);
    std::string head;
    std::getline(file, head);
    EXPECT_EQ(head, "head");
    for (int process = 0, line = 0; file >> process >> line; ++lines) {
      EXPECT_TRUE(!next.contains(process) || line == next[process]) << line;
      next[process] = line + 1;
    }
    EXPECT_TRUE(file.eof());
  }
  EXPECT_GT(lines, kLargest / 8);
  EXPECT_FALSE(std::filesystem::exists(path + ".4"));
  for (const auto& [process, line] : next) EXPECT_EQ(line, kLines);
}

}  // namespace
}  // namespace kaunter
