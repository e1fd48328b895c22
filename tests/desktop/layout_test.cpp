// A layout and its screen must agree: every control placed once, none unknown.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "core/menu.h"
#include "core/popup_frm.h"
#include "core/session.h"
#include "core/user_login.h"
#include "desktop/layout_table.h"
#include "loans/loan_calc_frm.h"
#include "test_screen.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

TEST(LayoutTest, EveryTableFitsItsScreen) {
  Session session;
  QuietDesk desk;
  MainMenu menu({});
  UserLogin user_login(session, desk, menu);
  LoanCalcfrm calculator(session, desk);
  PopupFrm popup(session, desk);
  const std::map<std::string, const Screen*> screens = {
      {"UserLogin", &user_login}, {"LoanCalcfrm", &calculator}, {"PopupFrm", &popup}};
  for (const Layout& layout : AllLayouts()) {
    const auto screen = screens.find(layout.screen);
    // A new table needs its screen here, or nobody holds the two against each other.
    ASSERT_NE(screen, screens.end()) << layout.screen;
    EXPECT_THAT(LayoutProblems(layout, *screen->second), IsEmpty()) << layout.screen;
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
