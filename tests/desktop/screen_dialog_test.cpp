// A person at the keyboard: what is typed reaches the controls, Enter and Tab walk as they should.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QClipboard>
#include <QCompleter>
#include <QScrollArea>
#include <QScrollBar>

#include "test_screen.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;

TEST(ScreenDialogTest, FirstBoxHasTheFocusAndTypingReachesTheControl) {
  OpenScreen open;
  EXPECT_EQ(open.FocusName(), "LoanID");
  open.Type("L001");
  EXPECT_EQ(open.screen.LoanID.text(), "L001");
}

TEST(ScreenDialogTest, AnAltThatNothingHasTypesNothing) {
  OpenScreen open;
  for (Control* control :
       std::initializer_list<Control*>{&open.screen.LoanID, &open.screen.Remark}) {
    open.Go(*control);
    open.Press(Qt::Key_Q, Qt::AltModifier);
    EXPECT_EQ(control->Text(), "");
    open.Press(Qt::Key_Q);
    EXPECT_EQ(control->Text(), "q");
  }
}

TEST(ScreenDialogTest, WhatAScreenInsertsStandsWhereTheCursorStood) {
  OpenScreen open;
  TextBox& memo = open.screen.Remark;
  open.Go(memo);
  open.Type("ab");
  open.Press(Qt::Key_Return);
  open.Type("e.");
  open.Press(Qt::Key_Left);
  EXPECT_TRUE(memo.Insert("{X}"));
  EXPECT_EQ(memo.text(), "ab\r\ne{X}.");
  OpenScreen::Wait();
  open.Type("!");  // behind what was inserted
  EXPECT_EQ(memo.text(), "ab\r\ne{X}!.");
  memo.SetText("new");  // of the screen: its end counts
  EXPECT_TRUE(memo.Insert("er"));
  EXPECT_EQ(memo.text(), "newer");
  memo.max_length = 5;
  EXPECT_FALSE(memo.Insert("!"));
  EXPECT_EQ(memo.text(), "newer");
}

TEST(ScreenDialogTest, EnterLeavesOneBoxBeforeItEntersTheNext) {
  OpenScreen open;
  open.Press(Qt::Key_Return);
  EXPECT_THAT(open.screen.events, ElementsAre("leave LoanID", "enter Short"));
  EXPECT_EQ(open.FocusName(), "Short");
}

TEST(ScreenDialogTest, EnterPassesLockedDisabledAndHiddenBoxes) {
  OpenScreen open;
  open.screen.Short.SetLocked(true);
  open.screen.PayAmt.SetEnabled(false);
  open.screen.PayDate.SetVisible(false);
  open.Press(Qt::Key_Return);
  EXPECT_EQ(open.FocusName(), "NIC");
}

TEST(ScreenDialogTest, EnterTurnsThePageAndPressesThePrimaryButtonInTheLastBox) {
  OpenScreen open;
  open.Go(open.screen.Remark);
  open.Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(open.FocusName(), "Last");
  EXPECT_EQ(open.screen.Pages.page(), 1);
  EXPECT_FALSE(open.Heard("save"));
  open.Press(Qt::Key_Return);
  EXPECT_TRUE(open.Heard("save"));
}

TEST(ScreenDialogTest, AScreenThatUsesEnterKeepsIt) {
  OpenScreen open;
  open.screen.LoanID.onKey = [&](std::string_view key) {
    if (key == "Enter") open.desk.Message(MessageKind::information, "", "No record(s) found");
  };
  open.Press(Qt::Key_Return);
  EXPECT_EQ(open.FocusName(), "LoanID");
  // A key that the screen lets pass walks on.
  open.screen.LoanID.onKey = [](std::string_view) {};
  open.Press(Qt::Key_Return);
  EXPECT_EQ(open.FocusName(), "Short");
}

TEST(ScreenDialogTest, ABoxThatIsSentTheFocusBackKeepsItAndHoldsTheButton) {
  OpenScreen open;
  open.screen.LoanID.onLeave = [&] {
    open.desk.Message(MessageKind::critical, "", "Loan not found");
    open.screen.FocusOn(open.screen.LoanID);
  };
  open.Press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(open.FocusName(), "LoanID");
  EXPECT_EQ(open.desk.messages.size(), 1U);
  EXPECT_FALSE(open.Heard("save"));
}

TEST(ScreenDialogTest, SaveLeavesTheBoxFirst) {
  OpenScreen open;
  open.Press(Qt::Key_S, Qt::ControlModifier);
  ASSERT_GE(open.screen.events.size(), 2U);
  EXPECT_EQ(open.screen.events.front(), "leave LoanID");
  EXPECT_TRUE(open.Heard("save"));
}

TEST(ScreenDialogTest, DoubleClickIsOneOrder) {
  OpenScreen open;
  QWidget* button = open.View(open.screen.SaveCmd).widget();
  // What a double-click sends: press, release, the double one, release.
  QTest::mouseClick(button, Qt::LeftButton);
  QTest::mouseDClick(button, Qt::LeftButton);
  QTest::mouseRelease(button, Qt::LeftButton);
  OpenScreen::Wait();
  EXPECT_EQ(std::count(open.screen.events.begin(), open.screen.events.end(), "save"), 1);
}

TEST(ScreenDialogTest, F2OpensThePickerOfTheBoxOnly) {
  OpenScreen open;
  open.Press(Qt::Key_F2);
  EXPECT_THAT(open.screen.events, ElementsAre("search LoanID"));
  open.screen.LoanID.SetLocked(true);
  open.Press(Qt::Key_F2);
  EXPECT_THAT(open.screen.events, ElementsAre("search LoanID"));
}

TEST(ScreenDialogTest, EscapeClosesUnlessTheScreenRefuses) {
  OpenScreen open;
  open.Press(Qt::Key_Escape);
  EXPECT_TRUE(open.screen.closed());
  EXPECT_FALSE(open.dialog.isVisible());
  EXPECT_TRUE(open.Heard("unload"));
}

TEST(ScreenDialogTest, TooLongATextIsRefusedWhole) {
  OpenScreen open;
  open.Go(open.screen.Short);
  open.Type("abc");
  QApplication::clipboard()->setText("defg");
  open.Edit(open.screen.Short).end(false);
  open.Edit(open.screen.Short).paste();
  EXPECT_EQ(open.screen.Short.text(), "abc");
  EXPECT_EQ(open.Edit(open.screen.Short).text(), "abc");
  // Characters count, not bytes.
  open.Edit(open.screen.Short).clear();
  open.screen.Short.SetText("");
  QApplication::clipboard()->setText("贷款编号码");
  open.Edit(open.screen.Short).paste();
  EXPECT_EQ(open.screen.Short.text(), "贷款编号码");
  open.Type("x");
  EXPECT_EQ(open.screen.Short.text(), "贷款编号码");
}

TEST(ScreenDialogTest, MemoRefusesTooLongAPasteAndHoldsLineEndsOfTheDatabase) {
  OpenScreen open;
  open.screen.Remark.max_length = 12;
  open.Go(open.screen.Remark);
  open.Type("one");
  open.Press(Qt::Key_Return);
  open.Type("two");
  EXPECT_EQ(open.screen.Remark.text(), "one\r\ntwo");
  QApplication::clipboard()->setText("far too long");
  static_cast<QPlainTextEdit*>(open.View(open.screen.Remark).widget())->paste();
  OpenScreen::Wait();
  EXPECT_EQ(open.screen.Remark.text(), "one\r\ntwo");
}

TEST(ScreenDialogTest, MasksAndDatesGrowTheirSignsAsTheyAreTyped) {
  struct Case {
    const char* typed;
    const char* shown;
    const char* left = "";  // a date, once its box is left
  };
  const Case dates[] = {{"0102", "01-02", "01-02"},
                        {"01022026", "01-02-2026", "01-02-2026"},
                        {"1/2/2026", "1-2-2026", "01-02-2026"},
                        {"1.12.2026", "1-12-2026", "01-12-2026"},
                        {"31-2-2026", "31-2-2026", "31-02-2026"},  // its screen refuses it
                        {"1-2-26", "1-2-26", "1-2-26"},
                        {"01", "01", "01"}};
  for (const Case& c : dates) {
    OpenScreen open;
    open.Go(open.screen.PayDate);
    open.Type(c.typed);
    EXPECT_EQ(open.screen.PayDate.text(), c.shown) << c.typed;
    std::string heard;
    open.screen.PayDate.onLeave = [&] { heard = open.screen.PayDate.text(); };
    open.Press(Qt::Key_Return);
    EXPECT_EQ(heard, c.left) << c.typed;
  }
  const Case masks[] = {{"900101145566", "900101-14-5566"},
                        {"9001011", "900101-1"},
                        {"900101", "900101"},
                        {"90x01-01", "900101"},
                        {"9001011455667", "900101-14-5566"}};
  for (const Case& c : masks) {
    OpenScreen open;
    open.Go(open.screen.NIC);
    open.Type(c.typed);
    EXPECT_EQ(open.screen.NIC.text(), c.shown) << c.typed;
    open.Press(Qt::Key_Backspace);
    EXPECT_LT(open.screen.NIC.text().size(), std::string(c.shown).size()) << c.typed;
  }
}

TEST(ScreenDialogTest, ListTakesTheEntryThatThePersonMeansAndNothingElse) {
  struct Case {
    const char* typed;
    const char* picked;
  };
  const Case cases[] = {
      {"cimb", "CIMB"}, {"pub", "Public Bank"}, {"xyz", "Maybank"}, {"bank", "Maybank"}};
  for (const Case& c : cases) {
    OpenScreen open;
    open.screen.Bank.SetText("Maybank");
    OpenScreen::Wait();
    open.Go(open.screen.Bank);
    open.Combo(open.screen.Bank).setEditText(c.typed);
    open.Press(Qt::Key_Return);
    EXPECT_EQ(open.screen.Bank.text(), c.picked) << c.typed;
    EXPECT_EQ(open.Combo(open.screen.Bank).currentText().toStdString(), c.picked) << c.typed;
  }
}

TEST(ScreenDialogTest, EnterOverTheListOfWhatFitsTakesTheOneAndGoesOn) {
  OpenScreen open;
  open.Go(open.screen.Bank);
  open.Type("pub");
  QAbstractItemView* popup = open.Combo(open.screen.Bank).completer()->popup();
  ASSERT_TRUE(popup->isVisible());
  QTest::keyClick(popup, Qt::Key_Return);
  OpenScreen::Wait();
  EXPECT_EQ(open.screen.Bank.text(), "Public Bank");
  EXPECT_FALSE(popup->isVisible());
  EXPECT_EQ(open.FocusName(), "Special");
}

TEST(ScreenDialogTest, AnEditableListTakesTheOneEntryThatFitsAndOtherTextsAsTheyAre) {
  class StateScreen : public Screen {
   public:
    explicit StateScreen(Desk& desk_of_test) : Screen("StateFrm", {"State", "州"}, desk_of_test) {}
    ComboBox State{*this, "State", {"State", "州"}, {"Kedah", "Kelantan", "Kuala Lumpur"}, true};
    TextBox Next{*this, "Next", {"Next", "下"}};
  };
  QuietDesk desk;
  StateScreen screen(desk);
  ScreenDialog dialog(screen, nullptr);
  ASSERT_TRUE(OpenScreen::Show(dialog));
  const char* const kCases[][2] = {
      {"kual", "Kuala Lumpur"}, {"kual", "kual"},   {"ke", "ke"},
      {"lumpur", "lumpur"},     {"kedah", "Kedah"}, {"kelan", "Kelantan"}};
  for (const auto& [typed, stored] : kCases) {
    screen.FocusOn(screen.State);
    OpenScreen::Wait();
    static_cast<QComboBox*>(dialog.face().View(screen.State).widget())->setEditText(typed);
    OpenScreen::Press(dialog, Qt::Key_Return);
    EXPECT_EQ(screen.State.text(), stored) << typed;
    EXPECT_EQ(screen.focus(), &screen.Next);
  }
}

TEST(ScreenDialogTest, WhatTheScreenChangesIsDrawn) {
  OpenScreen open;
  open.screen.LoanID.SetText("L777");
  open.screen.PayAmt.SetLocked(true);
  open.screen.Short.SetMark(true);
  open.screen.NIC.SetVisible(false);
  open.screen.Special.SetChecked(true);
  open.screen.Term.SetChosen(true);
  OpenScreen::Wait();
  EXPECT_EQ(open.Edit(open.screen.LoanID).text(), "L777");
  EXPECT_TRUE(open.Edit(open.screen.PayAmt).isReadOnly());
  EXPECT_TRUE(open.Edit(open.screen.Short).property("marked").toBool());
  EXPECT_TRUE(open.Edit(open.screen.NIC).isHidden());
  EXPECT_TRUE(open.View(open.screen.NIC).label()->isHidden());
  EXPECT_TRUE(static_cast<QCheckBox*>(open.View(open.screen.Special).widget())->isChecked());
  EXPECT_TRUE(static_cast<QRadioButton*>(open.View(open.screen.Term).widget())->isChecked());
  open.screen.SetChinese(true);
  OpenScreen::Wait();
  EXPECT_EQ(open.View(open.screen.Short).label()->text(), "短");
  EXPECT_EQ(open.dialog.windowTitle(), "测试");
}

TEST(ScreenDialogTest, AHiddenContainerHidesWhatStandsInIt) {
  OpenScreen open;
  open.screen.Kinds.SetVisible(false);
  OpenScreen::Wait();
  EXPECT_FALSE(open.View(open.screen.Personal).widget()->isVisible());
}

TEST(ScreenDialogTest, FailureOfAnActStaysInsideTheScreen) {
  OpenScreen open;
  open.screen.SaveCmd.onClick = [] { throw std::runtime_error("disk full"); };
  open.Press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_THAT(open.desk.messages, ElementsAre("disk full"));
  EXPECT_TRUE(open.dialog.isVisible());
}

// A box that was hidden when the window opened appears in full.
class HidingScreen : public Screen {
 public:
  explicit HidingScreen(Desk& desk_of_test) : Screen("HidingFrm", {"Hiding"}, desk_of_test) {
    StartFrom.SetVisible(false);
  }
  TextBox Style{*this, "Style", {"Style"}};
  TextBox StartFrom{*this, "StartFrom", {"Last number"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close"}, ButtonRole::cancel};
};

TEST(ScreenDialogTest, TheWindowGrowsWithABoxThatAppears) {
  QuietDesk desk;
  HidingScreen screen(desk);
  ScreenDialog dialog(screen, nullptr);
  dialog.Open();
  OpenScreen::Wait();
  const int before = dialog.height();
  screen.StartFrom.SetVisible(true);
  QTest::qWait(30);
  EXPECT_GT(dialog.height(), before);
  EXPECT_EQ(dialog.findChild<QScrollArea*>()->verticalScrollBar()->maximum(), 0);
}

}  // namespace
}  // namespace kaunter
