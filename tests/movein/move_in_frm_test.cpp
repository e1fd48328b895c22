#include "movein/move_in_frm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <tuple>

#include "movein/access_db.h"
#include "reports/run_report.h"
#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using ::testing::HasSubstr;

// Says yes, picks the office's folder, and runs what is printed.
struct ReadingDesk : SilentDesk {
  explicit ReadingDesk(const TempFolder& place) : folder(place) {}
  bool Ask(std::string_view, std::string_view text) override {
    asked = text;
    return true;
  }
  bool AskBeforeLoss(std::string_view title, std::string_view text) override {
    before_loss = text;
    return Ask(title, text);
  }
  std::string PickFolder(std::string_view, std::string_view) override { return folder.path(); }
  void Print(const ReportJob& job) override {
    const ReportRun run = RunWholeReport(job);
    for (const auto& row : run.rows.rows()) {
      for (const Value& field : row) printed += field.ToText() + "|";
    }
  }
  const TempFolder& folder;
  std::string asked;
  std::string before_loss;
  std::string printed;
};

std::string TextOfFile(const std::string& path) {
  std::ifstream in(path);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST(MoveInFrm, AMappingIsKeptAndTheListIsPrintedAndWritten) {
  Office office(Office::State::patched);
  office.session.CurrentLevel = 4;
  ReadingDesk desk(office.folder);
  std::filesystem::copy_file(test::SourceDir() + "/reports/MoveInList.rpt",
                             office.folder.File("MoveInList.rpt"));
  std::ofstream(office.folder.File("c.csv")) << "Code,Nama,Jantina,Who\nA1,=Ali,X,MELAYU\n";
  MoveInFrm screen(office.session, desk);
  screen.Load();
  screen.CompCode.SetText("HQ");
  MovePage& page = screen.pages[0];
  page.File.Type(office.folder.File("c.csv"));
  page.File.Leave();
  screen.CmdDry.Click();
  EXPECT_THAT(desk.messages.back(), HasSubstr("Customers: say which column is Race"));
  const int race = 11;
  ASSERT_TRUE(page.MapDG.Edit(race, 1, "Who"));
  page.MapName.Pick("old books");
  page.CmdKeep.Click();
  const std::string kept = TextOfFile(office.folder.File("MoveIn/old books.map"));
  EXPECT_THAT(kept, HasSubstr("column CustRace = Who\n"));
  screen.CmdDry.Click();
  screen.CmdPrint.Click();
  EXPECT_THAT(desk.printed, HasSubstr("\"X\" is none of MALE|FEMALE"));
  screen.CmdExport.Click();
  EXPECT_THAT(TextOfFile(office.folder.File("MoveIn-20240131-140509.csv")),
              HasSubstr("\"customers\",\"2\",\"CustGender\",\"X\",\"refused\""));
  // What X is may be told in the table; the next screen has it by the mapping's name.
  ASSERT_TRUE(page.MapDG.Edit(10, 4, "MALE"));
  page.CmdKeep.Click();
  EXPECT_THAT(desk.asked, HasSubstr("Replace it ?"));
  MoveInFrm next(office.session, desk);
  next.Load();
  next.CompCode.SetText("HQ");
  next.pages[0].MapName.Pick("old books");
  next.pages[0].File.Type(office.folder.File("c.csv"));
  next.pages[0].File.Leave();
  next.CmdDry.Click();
  EXPECT_EQ(next.TotalDG.Cell(0, 5), "1");
  // The file is another one since: it is tried again first.
  std::ofstream(office.folder.File("c.csv"), std::ios::app) << "A2,Abu,X,MELAYU\n";
  next.SaveCmd.Click();
  EXPECT_THAT(desk.messages.back(), HasSubstr("Make a dry run"));
  next.CmdDry.Click();
  next.SaveCmd.Click();
  EXPECT_THAT(desk.before_loss, HasSubstr("Move 2 customers"));
  EXPECT_EQ(office.Lines("SELECT CustID,CustName,CustGender FROM CustMast"),
            "HQ0001 =Ali MALE \nHQ0002 Abu MALE \n");
}

TEST(MoveInFrm, OnlyAnAdministratorBringsOldDataIn) {
  Office office(Office::State::patched);
  for (const auto& [level, special, may] :
       {std::tuple{3, false, false}, {4, true, false}, {4, false, true}}) {
    office.session.CurrentLevel = level;
    office.session.Special = special;
    MoveInFrm books(office.session, office.desk);
    AccessDB edition(office.session, office.desk);
    books.Load();
    edition.Load();
    EXPECT_EQ(books.SaveCmd.enabled(), may) << level;
    EXPECT_EQ(books.CmdDry.enabled(), may) << level;
    EXPECT_EQ(edition.SSCommand1.enabled(), may) << level;
  }
}

}  // namespace
}  // namespace kaunter
