// A layout and its screen must agree: every control placed once, none unknown.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "app/catalogue.h"
#include "core/first_start_frm.h"
#include "core/menu.h"
#include "core/password_screens.h"
#include "core/session.h"
#include "core/user_login.h"
#include "core/web_cam.h"
#include "desktop/layout_table.h"
#include "test_screen.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

// The screen that a table is for: of the catalogue, or one that only its caller makes.
std::unique_ptr<Screen> ScreenOf(const Layout& layout, Session& session, Desk& desk,
                                 MainMenu& menu) {
  if (layout.screen == "FirstStartFrm") return std::make_unique<FirstStartFrm>(session, desk);
  if (layout.screen == "WebCam") return std::make_unique<WebCam>(session, desk);
  if (layout.screen == "UserLogin") return std::make_unique<UserLogin>(session, desk, menu);
  const Caption what("save loan X");
  if (layout.screen == "frmUserSignIn") {
    return std::make_unique<frmUserSignIn>(session, desk, what);
  }
  if (layout.screen == "AccessPasswordFrm") {
    return std::make_unique<AccessPasswordFrm>(session, desk, what);
  }
  return MakeScreen(layout.screen, session, desk);
}

TEST(LayoutTest, EveryTableFitsItsScreen) {
  Session session;
  QuietDesk desk;
  MainMenu menu({});
  std::string all;
  for (const Layout& layout : AllLayouts()) {
    all += layout.screen + " ";
    const std::unique_ptr<Screen> screen = ScreenOf(layout, session, desk, menu);
    ASSERT_NE(screen, nullptr) << layout.screen;
    EXPECT_THAT(LayoutProblems(layout, *screen), IsEmpty()) << layout.screen;
    // A period is read and typed as one: its end behind its beginning.
    const std::vector<std::string> order = PlacedControls(layout);
    const auto from = std::find(order.begin(), order.end(), "DateFrom");
    if (from != order.end()) {
      EXPECT_EQ(*std::next(from), "DateTo") << layout.screen;
    }
  }
  // A table that nobody has put into the catalogue would never be used.
  int functions = 0;
  const std::filesystem::path folder = test::SourceDir() + "/src/desktop/layouts";
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    if (file.path().extension() != ".cpp") continue;
    std::ifstream in(file.path());
    for (std::string line; std::getline(in, line);) functions += line.starts_with("Layout ");
  }
  EXPECT_EQ(functions, static_cast<int>(AllLayouts().size())) << all;
}

TEST(LayoutTest, EveryScreenIsDrawnWithEachControlOnceAndInItsLanguages) {
  Session session;
  QuietDesk desk;
  for (const std::string& name : ScreenNames()) {
    const std::unique_ptr<Screen> screen = MakeScreen(name, session, desk);
    const Layout* table = FindLayout(name);
    EXPECT_THAT(LayoutProblems(table ? *table : GenericLayout(*screen), *screen), IsEmpty())
        << name;
    // A screen that speaks English alone has no Chinese title.
    if (screen->title().chinese.empty()) continue;
    for (const Control* control : screen->controls()) {
      const Caption& caption = control->caption();
      EXPECT_EQ(caption.english.empty(), caption.chinese.empty()) << name << " " << control->name();
    }
  }
}

TEST(LayoutTest, GenericOrderPlacesEverythingInOrderOfDeclaration) {
  QuietDesk desk;
  TestScreen screen(desk);
  const Layout layout = GenericLayout(screen);
  EXPECT_THAT(LayoutProblems(layout, screen), IsEmpty());
  std::vector<std::string> declared;
  for (const Control* control : screen.controls()) declared.push_back(control->name());
  EXPECT_EQ(PlacedControls(layout), declared);
  EXPECT_THAT(layout.buttons, ElementsAre("SaveCmd", "CancelCmd"));
}

TEST(LayoutTest, ProblemsAreNamed) {
  QuietDesk desk;
  TestScreen screen(desk);
  Layout layout = GenericLayout(screen);
  layout.buttons = {"SaveCmd", "SaveCmd", "LoanID", "Nobody"};
  EXPECT_THAT(
      LayoutProblems(layout, screen),
      UnorderedElementsAre("SaveCmd is placed twice", "LoanID is placed twice", "Nobody is unknown",
                           "CancelCmd is not placed", "LoanID is no button"));
  layout = GenericLayout(screen);
  layout.root = Down({Fill("Kinds"), layout.root});
  EXPECT_THAT(LayoutProblems(layout, screen),
              UnorderedElementsAre("Kinds is placed twice", "Kinds cannot stand there"));
}

}  // namespace
}  // namespace kaunter
