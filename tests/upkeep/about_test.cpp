#include "upkeep/about.h"

#include <fmt/format.h>

#include "core/slow_statements.h"
#include "core/startup.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "platform/sql/odbc/odbc_string.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

TEST(AboutTest, TellsNothingOfAPersonAndCountsNoFurtherThanItMay) {
  Office office(Office::State::patched);
  office.Run("INSERT INTO CustMast (CustID,CustName,CustNIC) VALUES ('C1','Tan Ah Kow','800101')");
  for (int i = 0; i < 18; ++i) {
    office.Run(i == 0
                   ? "INSERT INTO AMLACopy (CopyID,EntryNo,Name) VALUES (1,1,'Lim')"
                   : fmt::format("INSERT INTO AMLACopy (CopyID,EntryNo,Name) SELECT 1,EntryNo+{},"
                                 "Name FROM AMLACopy",
                                 1 << (i - 1)));
  }
  NoteSlowStatements(office.session, {});  // one that took no time counts too
  office.Run("UPDATE CustMast SET CustName='Lim' WHERE CustNIC='800101'");
  NoteSlowStatements(office.session);
  setenv("HOME", office.folder.path().c_str(), 1);
  const AboutOffice about = TellAbout(office.session, RowCounts::told);
  const std::string text = AboutText(about, false);
  EXPECT_THAT(
      text, AllOf(HasSubstr("Kaunter " + RunningVersion()), HasSubstr("Engine: SQLite 3."),
                  HasSubstr("Office: ~/office.db\n"), HasSubstr("Last backup: not known\n"),
                  HasSubstr("Customers: 1\n"), HasSubstr("GB of"),
                  HasSubstr("Watch list entries: more than 100,000\n"), HasSubstr("Logs: ~/logs\n"),
                  HasSubstr("\tUPDATE CustMast SET CustName=? WHERE CustNIC=?\n")));
  for (const char* person : {"Tan", "Lim", "800101", "AMY"}) {
    EXPECT_THAT(text, Not(HasSubstr(person)));
  }
  EXPECT_THAT(AboutText(TellAbout(office.session, RowCounts::withheld), true),
              AllOf(HasSubstr("最近备份: 未知"), Not(HasSubstr("顾客"))));
}

TEST(AboutTest, AServerIsToldWithoutAccountAndPassword) {
  EXPECT_EQ(
      sql::OdbcSourceName("Driver={PostgreSQL Unicode};Server=s;Port=1;Database=d;UID=aminah;PWD=x;"
                          "SSLmode=require"),
      "Driver=PostgreSQL Unicode; Server=s; Port=1; Database=d; SSLmode=require");
}

}  // namespace
}  // namespace kaunter
