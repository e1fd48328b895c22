// Controls: the order and number of their events, what a box and a list take, who excludes whom.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "screen/screen.h"
#include "screen/text.h"
#include "tests/screen/silent_desk.h"

namespace kaunter {
namespace {

using testing::ElementsAre;

class SampleFrm : public Screen {
 public:
  explicit SampleFrm(Desk& desk) : Screen("SampleFrm", {"Sample"}, desk) {}
  TextBox LoanID{*this, "LoanID", {"Loan ID"}};
  TextBox IC{*this, "IC", {"IC"}};
  ComboBox Bank{*this, "Bank", {"Bank"}, {"CIMB", "Maybank"}};
  ComboBox Purpose{*this, "Purpose", {"Purpose"}, {"Car", "House"}, nullptr, true};
  CheckBox Active1{*this, "Active1", {"Active"}};
  Tab Pages{*this, "Pages"};
  Frame First{*this, "First", {"First"}, &Pages};
  Frame Second{*this, "Second", {"Second"}, &Pages};
  Frame Inner{*this, "Inner", {}, &Second};
  TextBox Deep{*this, "Deep", {"Deep"}, Kind::money, &Inner};
  Option Day{*this, "Day", {"Day"}, &Inner, "period"};
  Option Month{*this, "Month", {"Month"}, &Inner, "period"};
  Option Cash{*this, "Cash", {"Cash"}, &Inner, "mode"};
  Option Elsewhere{*this, "Elsewhere", {"Elsewhere"}, nullptr, "period"};
  Button SaveCmd{*this, "SaveCmd", {"&Save"}, ButtonRole::primary, &Inner};
};

class ControlTest : public testing::Test {
 protected:
  SilentDesk desk;
  SampleFrm screen{desk};
  std::vector<std::string> events;
};

TEST_F(ControlTest, EnterAndLeaveFireOnceAndOnlyInTurn) {
  screen.LoanID.onEnter = [this] { events.push_back("enter"); };
  screen.LoanID.onLeave = [this] { events.push_back("leave"); };
  screen.LoanID.Leave();
  screen.LoanID.Enter();
  screen.LoanID.Enter();
  screen.LoanID.Leave();
  screen.LoanID.Leave();
  EXPECT_THAT(events, ElementsAre("enter", "leave"));
  EXPECT_EQ(screen.focus(), &screen.LoanID);
}

TEST_F(ControlTest, ALeaveHandlerMayBringTheFocusBack) {
  screen.LoanID.onLeave = [this] {
    events.push_back("refused");
    screen.LoanID.Enter();
  };
  screen.LoanID.Enter();
  screen.LoanID.Leave();
  EXPECT_TRUE(screen.LoanID.entered());
  EXPECT_THAT(events, ElementsAre("refused"));
}

TEST_F(ControlTest, AMarkStaysUntilTheTextIsAnother) {
  screen.LoanID.SetText("X");
  screen.LoanID.SetMark(true);
  screen.LoanID.Enter();
  screen.LoanID.Leave();
  EXPECT_TRUE(screen.LoanID.marked());
  screen.LoanID.Enter();
  EXPECT_TRUE(screen.LoanID.Type("Y"));
  EXPECT_TRUE(screen.LoanID.marked());
  screen.LoanID.Leave();
  EXPECT_FALSE(screen.LoanID.marked());
}

TEST_F(ControlTest, ABoxCountsCharactersAndRefusesWhole) {
  int changes = 0;
  screen.LoanID.onChange = [&changes] { ++changes; };
  screen.LoanID.max_length = 4;
  EXPECT_TRUE(screen.LoanID.Type("贷款编号"));
  EXPECT_FALSE(screen.LoanID.Type("贷款编号1"));
  EXPECT_EQ(screen.LoanID.text(), "贷款编号");
  EXPECT_TRUE(screen.LoanID.Type("贷款编号"));
  EXPECT_EQ(changes, 1);
  screen.LoanID.SetText("12345");  // the screen's own code is not bound
  EXPECT_EQ(screen.LoanID.text(), "12345");
  EXPECT_EQ(changes, 1);
}

TEST_F(ControlTest, BareDigitsTakeTheSignsOfTheMask) {
  struct Row {
    const char* typed;
    const char* text;
  };
  screen.IC.mask = "######-##-####";
  screen.IC.max_length = 14;
  for (const Row& row : {Row{"800131145678", "800131-14-5678"}, Row{"80013114567", "80013114567"},
                         Row{"800131-14-5678", "800131-14-5678"},
                         Row{"A12345678901", "A12345678901"}, Row{"", ""}}) {
    EXPECT_TRUE(screen.IC.Type(row.typed));
    EXPECT_EQ(screen.IC.text(), row.text);
  }
}

TEST_F(ControlTest, AListTakesItsEntriesAndAFreeOneTakesMore) {
  screen.Bank.onPick = [this] { events.push_back("bank " + screen.Bank.text()); };
  screen.Purpose.onPick = [this] { events.push_back("purpose " + screen.Purpose.text()); };
  EXPECT_TRUE(screen.Bank.Pick("maybank"));
  EXPECT_TRUE(screen.Bank.Pick("MAYBANK"));
  EXPECT_FALSE(screen.Bank.Pick("May"));
  EXPECT_FALSE(screen.Bank.PickIndex(2));
  EXPECT_FALSE(screen.Bank.PickIndex(-1));
  EXPECT_EQ(screen.Bank.index(), 1);
  EXPECT_TRUE(screen.Bank.PickIndex(0));
  screen.Purpose.max_length = 5;
  EXPECT_TRUE(screen.Purpose.Pick("Boat"));
  EXPECT_EQ(screen.Purpose.index(), -1);
  EXPECT_FALSE(screen.Purpose.Pick("Wedding"));
  EXPECT_TRUE(screen.Purpose.Pick("house"));
  EXPECT_THAT(events, ElementsAre("bank Maybank", "bank CIMB", "purpose Boat", "purpose House"));
}

TEST_F(ControlTest, OptionsExcludeOnlyTheirOwnGroupAndContainer) {
  screen.Cash.SetChosen(true);
  screen.Elsewhere.SetChosen(true);
  screen.Day.SetChosen(true);
  screen.Month.Choose();
  EXPECT_FALSE(screen.Day.chosen());
  EXPECT_TRUE(screen.Month.chosen());
  EXPECT_TRUE(screen.Cash.chosen());
  EXPECT_TRUE(screen.Elsewhere.chosen());
}

TEST_F(ControlTest, ContainersDecideWhatCanBeReachedAndChanged) {
  int clicks = 0;
  screen.SaveCmd.onClick = [&clicks] { ++clicks; };
  screen.SaveCmd.Click();
  EXPECT_TRUE(screen.Deep.Editable());
  screen.Second.SetEnabled(false);
  EXPECT_TRUE(screen.Deep.Reachable());
  EXPECT_FALSE(screen.Deep.Editable());
  screen.SaveCmd.Click();
  screen.Second.SetEnabled(true);
  screen.Pages.SetVisible(false);
  EXPECT_FALSE(screen.Deep.Reachable());
  screen.SaveCmd.Click();
  EXPECT_EQ(clicks, 1);
}

TEST_F(ControlTest, TheFocusTurnsThePageThatHidesIt) {
  int turns = 0;
  screen.Pages.onPage = [&turns] { ++turns; };
  screen.FocusOn(screen.Deep);
  EXPECT_EQ(screen.Pages.page(), 1);
  screen.FocusOn(screen.SaveCmd);
  EXPECT_EQ(turns, 1);
  EXPECT_EQ(screen.focus(), &screen.SaveCmd);
  EXPECT_THROW(screen.Pages.SetPage(2), std::out_of_range);
}

TEST_F(ControlTest, ATickIsAnEventOnlyWhenItChanges) {
  int clicks = 0;
  screen.Active1.onClick = [&clicks] { ++clicks; };
  screen.Active1.Tick(true);
  screen.Active1.Tick(true);
  screen.Active1.SetChecked(false);
  EXPECT_EQ(clicks, 1);
}

TEST(ScreenText, CharactersAndMnemonics) {
  EXPECT_EQ(CharacterCount(""), 0U);
  EXPECT_EQ(CharacterCount("a€😀"), 3U);
  EXPECT_EQ(CharacterCount("\x80\xff"), 2U);  // stray bytes are counted, never skipped
  EXPECT_EQ(WithoutMnemonic("Summary P && &L&"), "Summary P & L");
}

}  // namespace
}  // namespace kaunter
