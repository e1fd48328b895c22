// The screen of a move: what is in its way is told, it is asked twice, and no is no.
#include "upkeep/move_office_frm.h"
#include "core/companion.h"
#include "tests/upkeep/moved_offices.h"

namespace kaunter {
namespace {

struct AskedDesk : SilentDesk {
  bool AskBeforeLoss(std::string_view, std::string_view text) override {
    asked.emplace_back(text);
    return asked.size() <= yes;
  }
  std::vector<std::string> asked;
  std::size_t yes = 0;  // how many questions are answered so
};

class MoveScreen : public TwoPlaces {
 protected:
  void SetUp() override {
    Use(/*server=*/false);
    HandOn({.app = "", .database = "", .settings = request_.settings_file, .now = ""});
    session_.AppPath = File("");
    MakeLogFolder(session_);
    session_.CurrentLevel = 4;
    session_.CurrentUserID = "aminah";
    session_.MainConn = Open("Old");
  }
  void TearDown() override { HandOn({}); }

  Session session_;
  AskedDesk desk_;
};

TEST_F(MoveScreen, AsksTwiceAndMoves) {
  for (const std::size_t yes : {0u, 1u, 2u}) {
    MoveOfficeFrm screen(session_, desk_);
    screen.Load();
    EXPECT_THAT(screen.HereLBL.Text(), ::testing::HasSubstr("old.db"));
    EXPECT_EQ(screen.Target.items().front(), "New");  // not the office's own
    EXPECT_TRUE(screen.Target.Pick("New"));
    EXPECT_FALSE(screen.MoveCmd.enabled());  // not before it was looked at
    screen.LookCmd.Click();
    EXPECT_EQ(screen.DG.Cell(0, 1), File("old.db"));
    desk_.asked.clear();
    desk_.yes = yes;
    screen.MoveCmd.Click();
    EXPECT_EQ(desk_.asked.size(), std::min<std::size_t>(yes + 1, 2));
    EXPECT_EQ(SourceInForce(), yes == 2 ? "New" : "Old");
  }
  EXPECT_THAT(desk_.messages.back(), ::testing::HasSubstr("start it again"));
  EXPECT_THROW(RefuseMovedOffice(*session_.MainConn), SqlError);
}

TEST_F(MoveScreen, ToATypedFileThatIsWrittenIntoTheSettings) {
  std::ofstream(File("full.db")) << "no database";
  MoveOfficeFrm screen(session_, desk_);
  screen.Load();
  screen.Target.PickIndex(static_cast<int>(screen.Target.items().size()) - 1);
  EXPECT_FALSE(screen.Server.enabled());
  for (const auto& [typed, told] : std::initializer_list<std::pair<std::string, const char*>>{
           {"", "New File is required"},
           {"here.db", "whole path"},
           {File("old.db"), "is not empty"},
           {File("full.db"), "no database"},
           {"/no/such/folder/x.db", "there is no folder"}}) {
    screen.FileName.SetText(typed);
    screen.LookCmd.Click();
    EXPECT_THAT(desk_.messages.back(), ::testing::HasSubstr(told));
    EXPECT_EQ(screen.FileName.text(), typed);
    EXPECT_FALSE(screen.MoveCmd.enabled());
  }
  screen.FileName.SetText(File("typed.db"));
  screen.LookCmd.Click();
  desk_.yes = 2;
  screen.MoveCmd.Click();
  const LocalSettings local = LocalSettings::Read(request_.settings_file);
  EXPECT_EQ(local.ConnDataSource, "File");
  EXPECT_EQ(local.sources.Find("File")->target, File("typed.db"));
  EXPECT_EQ(local.sources.Find("Old")->target, File("old.db"));
}

TEST_F(MoveScreen, IsForAdministrators) {
  session_.CurrentLevel = 3;
  MoveOfficeFrm screen(session_, desk_);
  screen.Load();
  EXPECT_THAT(desk_.messages.back(), ::testing::HasSubstr("Level not allow"));
  EXPECT_FALSE(screen.LookCmd.enabled());
}

}  // namespace
}  // namespace kaunter
