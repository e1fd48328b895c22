// The assistant of the first start: each road leads to settings that open its office, and one that
// does not lead on has kept nothing.
#include "core/first_start.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/first_start_frm.h"
#include "core/places.h"
#include "core/startup.h"
#include "tests/core/home.h"

namespace kaunter {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

class AgreeingDesk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view text) override {
    questions.emplace_back(text);
    return agrees;
  }
  bool agrees = true;
  std::vector<std::string> questions;
};

struct Assistant {
  Assistant() { frm.Load(); }
  // What is told last; "" when nothing is.
  std::string Press(Option& road) {
    desk.messages.clear();
    road.Choose();
    frm.OKCmd.Click();
    return desk.messages.empty() ? "" : desk.messages.back();
  }
  // The office that the settings open now.
  std::unique_ptr<Session> Opened() const {
    auto office = std::make_unique<Session>();
    const LocalSettings local = LocalSettings::Read(frm.settings());
    EXPECT_TRUE(local.creatable.empty()) << "a file that is away would be made anew";
    ApplyLocalSettings(*office, local);
    OpenMainConnection(*office, local);
    return office;
  }

  AgreeingDesk desk;
  Session session;
  FirstStartFrm frm{session, desk};
};

TEST(FirstStart, ANewOfficeIsMadeAndASecondPersonJoinsIt) {
  const Home home;
  const std::string shared = home.Folder("srv");
  EXPECT_TRUE(IsFirstStart());
  {
    Assistant first;
    EXPECT_FALSE(first.frm.DemoOpt.enabled());
    first.frm.NewOpt.Choose();
    first.frm.Folder.SetText(shared);
    EXPECT_THAT(first.Press(first.frm.NewOpt), HasSubstr("ADMIN"));
    ASSERT_TRUE(first.frm.done());
    EXPECT_TRUE(first.desk.questions.empty());
    EXPECT_EQ(LocalSettings::Read("").DataFolder, shared);
    EXPECT_EQ(ScalarQuery(first.Opened()->Main(), "SELECT CompCode FROM CompMast"), "HQ");
    EXPECT_FALSE(IsFirstStart());
  }
  fs::remove(FirstSettingsFile());
  Assistant second;
  second.frm.Folder.SetText(shared);
  second.desk.agrees = false;
  second.Press(second.frm.NewOpt);
  EXPECT_FALSE(second.frm.done());
  EXPECT_TRUE(IsFirstStart());
  second.desk.agrees = true;
  EXPECT_EQ(second.Press(second.frm.NewOpt), "");
  EXPECT_TRUE(second.frm.done());
  EXPECT_THAT(second.desk.questions.back(), HasSubstr(OfficeFileIn(shared)));
}

TEST(FirstStart, AnOfficeInThePersonsOwnFolderIsNoFirstStart) {
  const Home home;
  home.Write(".local/share/kaunter/Kaunter.db", "x");
  EXPECT_FALSE(IsFirstStart());
}

TEST(FirstStart, ARoadThatDoesNotLeadOnNamesItsBoxAndKeepsNothing) {
  const Home home;
  Assistant at;
  home.Write("foreign/Kaunter.db", "");
  OpenSqlite("x", home.File("foreign/Kaunter.db"), true, Clock())
      ->Execute("CREATE TABLE a (b int)");
  home.Write("broken/Kaunter.db", "no database");
  const struct {
    std::string folder;
    const char* why;
  } folders[] = {{home.File("away"), "There is no folder"},
                 {"srv", "There is no folder"},
                 {"/proc", "writ"},
                 {home.File("foreign"), "no office of Kaunter"},
                 {home.File("broken"), "no database"},
                 {home.Folder("a\nb"), "control character"}};
  for (const auto& c : folders) {
    at.frm.Folder.SetText(c.folder);
    EXPECT_THAT(at.Press(at.frm.NewOpt), HasSubstr(c.why)) << c.folder;
    EXPECT_TRUE(IsFirstStart()) << c.folder;
  }
  const std::pair<TextBox*, const char*> boxes[] = {{&at.frm.Server, "address"},
                                                    {&at.frm.DatabaseName, "name of the database"},
                                                    {&at.frm.UserID, "user of the database"}};
  for (const auto& [box, why] : boxes) {
    EXPECT_THAT(at.Press(at.frm.JoinOpt), HasSubstr(why));
    EXPECT_TRUE(box->marked());
    box->SetText("127.0.0.1:1");
  }
  EXPECT_THAT(at.Press(at.frm.JoinOpt), HasSubstr("The server does not answer"));
  EXPECT_TRUE(at.frm.Server.marked());
  EXPECT_TRUE(IsFirstStart());
  EXPECT_FALSE(at.frm.done());
}

TEST(FirstStart, TheDemoIsACopyOfOnesOwnAndBeginsAnewWhenAskedTo) {
  const Home home;
  home.Write("copy/ReportList/loan.ini", "");
  home.Write("copy/demo/Photo/AB0001/pic1.jpg", "a face");
  Clock clock;
  for (const char* name : {"office", "central", "sms", "accounts"}) {
    const std::string file = home.File(std::string("copy/demo/") + name + ".db");
    CreateEmptyOffice(*OpenSqlite("x", file, true, clock), "MainUser");
  }
  SetInstallation(InstallationAt(home.File("copy")));
  const auto try_demo = [&](bool anew) {
    Assistant at;
    at.frm.DemoOpt.Choose();
    at.frm.Anew.SetChecked(anew);
    EXPECT_EQ(at.Press(at.frm.DemoOpt), "");
    EXPECT_TRUE(at.frm.done());
    const LocalSettings local = LocalSettings::Read(at.frm.settings());
    EXPECT_EQ(local.Now, "2024-01-31 09:30:00");
    EXPECT_TRUE(local.sources.Find("AMLA") && local.sources.Find("AEDMTS"));
    EXPECT_TRUE(fs::exists(AppFolder("", local) + "/Photo/AB0001/pic1.jpg"));
    EXPECT_TRUE(IsFirstStart());
    return at.Opened();
  };
  try_demo(false)->Main().Execute("UPDATE CompMast SET CompDesc='tried'");
  EXPECT_EQ(ScalarQuery(try_demo(false)->Main(), "SELECT CompDesc FROM CompMast"), "tried");
  EXPECT_NE(ScalarQuery(try_demo(true)->Main(), "SELECT CompDesc FROM CompMast"), "tried");
}

TEST(FirstStartPostgresql, AnEmptyDatabaseIsFilledOnceAndOtherTablesAreLeftAlone) {
  const char* running = std::getenv("KAUNTER_POSTGRESQL");
  if (running == nullptr) GTEST_SKIP() << "no PostgreSQL server to play on";
  ASSERT_EQ(std::system("for name in joined foreign_tables; do dropdb --if-exists --force $name && "
                        "createdb -T template0 -E UTF8 $name; done && "
                        "psql -q -d foreign_tables -c 'CREATE TABLE a (b int)'"),
            0);
  const ConnectionString place = ConnectionString::Parse(running);
  const Home home;
  Assistant at;
  at.frm.Encrypted.SetChecked(false);
  at.frm.Server.SetText(place.Get("server") + ":" + place.Get("port"));
  at.frm.UserID.SetText(place.Get("uid"));
  const struct {
    TextBox& box;
    const char* text;
    const char* why;
  } wrong[] = {{at.frm.DatabaseName, "nowhere", "no database of this name"},
               {at.frm.DatabaseName, "foreign_tables", "no office of Kaunter"},
               {at.frm.UserID, "nobody; PWD=x", "no user of this name"}};
  for (const auto& c : wrong) {
    const std::string before = c.box.text();
    c.box.SetText(c.text);
    EXPECT_THAT(at.Press(at.frm.JoinOpt), HasSubstr(c.why));
    EXPECT_TRUE(c.box.marked() && IsFirstStart());
    if (!before.empty()) c.box.SetText(before);
  }
  at.frm.DatabaseName.SetText("joined");
  at.desk.agrees = false;
  at.Press(at.frm.JoinOpt);
  EXPECT_TRUE(IsFirstStart());
  at.desk.agrees = true;
  EXPECT_THAT(at.Press(at.frm.JoinOpt), HasSubstr("ADMIN"));
  EXPECT_EQ(ScalarQuery(at.Opened()->Main(), "SELECT CompCode FROM CompMast"), "HQ");
  EXPECT_FALSE(IsFirstStart());
  Assistant other;
  for (auto box : {&FirstStartFrm::Server, &FirstStartFrm::DatabaseName, &FirstStartFrm::UserID}) {
    (other.frm.*box).SetText((at.frm.*box).text());
  }
  other.frm.Encrypted.SetChecked(false);
  EXPECT_EQ(other.Press(other.frm.JoinOpt), "");
  EXPECT_TRUE(other.frm.done());
}

}  // namespace
}  // namespace kaunter
