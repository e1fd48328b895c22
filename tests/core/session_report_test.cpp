// What every print of a screen begins with.
#include "core/session_report.h"

#include <gtest/gtest.h>

#include "tests/core/office.h"

namespace kaunter {
namespace {

TEST(SessionReport, SaysWhoPrintsWhatFromWhere) {
  Office office(Office::State::base);
  const ReportJob job = SessionReport(office.session, "Reminder.rpt");
  EXPECT_EQ(job.ReportFileName, office.folder.File("Reminder.rpt"));
  EXPECT_EQ(job.Connect, office.session.MainConn.get());
  EXPECT_EQ(job.PrintedBy, "AMY");
  // The office may have taken another name since the start, on another desktop.
  office.Run("UPDATE CompanyProfile SET CompanyName='Ros'' Holdings'");
  EXPECT_EQ(SessionReport(office.session, "Reminder.rpt").Company, "Ros' Holdings");
  office.session.CurrentCompCode = "D'OR";
  EXPECT_EQ(SessionReport(office.session, "Reminder.rpt").Companies, "'D''OR'");
  office.session.AllowedCompanies = R"("A","B'C")";
  EXPECT_EQ(SessionReport(office.session, "Reminder.rpt").Companies, "'A','B''C'");
  office.session.CurrentLevel = 4;
  EXPECT_EQ(SessionReport(office.session, "Reminder.rpt").Companies, "");
  office.session.CurrentUserID = "BOSS";
  EXPECT_EQ(SessionReport(office.session, "Reminder.rpt").PrintedBy, "BOSS");
}

}  // namespace
}  // namespace kaunter
