#include "core/log.h"

#include <stdexcept>

#include "gmock/gmock.h"
#include "gtest/gtest.h"
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

TEST(LogTest, ALogThatCannotBeWrittenIsAnErrorThatNamesTheFile) {
  Office office(Office::State::base);
  std::filesystem::remove_all(office.folder.File("logs"));
  try {
    WriteLog(office.session, "lost");
    FAIL() << "written without a folder";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), ::testing::HasSubstr("log31-01-2024.log"));
  }
  MakeLogFolder(office.session);
  WriteLog(office.session, "kept");
  EXPECT_THAT(office.Log(), ElementsAre("kept"));
}

TEST(LogTest, AFullDiskIsAnErrorToo) {
  Office office(Office::State::base);
  const std::string file = office.folder.File("logs/log31-01-2024.log");
  std::filesystem::create_symlink("/dev/full", file);
  EXPECT_THROW(WriteLog(office.session, "lost"), std::runtime_error);
}

}  // namespace
}  // namespace kaunter
