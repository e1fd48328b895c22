// Whole gestures of a clerk at the real windows: look up, refuse, save with a cell open, leave.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCalendarWidget>
#include <QFileDialog>
#include <QTabWidget>
#include <QTimer>
#include <fstream>
#include <tuple>

#include "app/catalogue.h"
#include "core/picker.h"
#include "core/popup_frm.h"
#include "customers/new_cust_frm.h"
#include "desktop/desktop_desk.h"
#include "desktop/look_check.h"
#include "desktop/text.h"
#include "desktop/today.h"
#include "file_answer.h"
#include "platform/clock.h"
#include "test_screen.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// --- a screen with typed text, refusals and cells

class StubbornDesk : public QuietDesk {
 public:
  bool Ask(std::string_view, std::string_view text) override {
    messages.emplace_back(text);
    ScreenFace::NoteTalk();
    return answer;
  }
  bool answer = false;
};

class TypedScreen : public TestScreen {
 public:
  using TestScreen::TestScreen;
  bool RequestClose() override { return LoanID.empty() || desk().Ask("", "Discard ?"); }
};

TEST(JourneyTest, EscapeAsksBeforeTypedTextIsLost) {
  StubbornDesk desk;
  TypedScreen screen(desk);
  ScreenDialog dialog(screen, nullptr);
  dialog.Open();
  OpenScreen::Wait();
  dialog.face().StartFocus();
  QTest::keyClicks(QApplication::focusWidget(), "L1");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  OpenScreen::Wait();
  EXPECT_THAT(desk.messages, ElementsAre("Discard ?"));
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(screen.LoanID.text(), "L1");
  desk.answer = true;
  dialog.close();  // the window's cross
  OpenScreen::Wait();
  EXPECT_TRUE(screen.closed());
}

TEST(JourneyTest, ARefusedBoxKeepsItsTextAndGetsTheFocusOnItsPage) {
  OpenScreen open;
  open.screen.Last.SetText("12x");
  open.screen.SaveCmd.onClick = [&] {
    open.desk.Message(MessageKind::critical, "", "Invalid number");
    open.screen.Last.SetMark(true);
    open.screen.FocusOn(open.screen.Last);
  };
  open.Press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(open.FocusName(), "Last");
  EXPECT_EQ(open.screen.Pages.page(), 1);
  EXPECT_TRUE(open.Edit(open.screen.Last).isVisible());
  EXPECT_EQ(open.Edit(open.screen.Last).text(), "12x");
  EXPECT_TRUE(open.Edit(open.screen.Last).property("marked").toBool());
  EXPECT_EQ(QApplication::focusWidget(), &open.Edit(open.screen.Last));
  // Once another text stands there and the box is left, the mark is gone.
  open.Type("12");
  open.Go(open.screen.LoanID);
  EXPECT_FALSE(open.Edit(open.screen.Last).property("marked").toBool());
}

TEST(JourneyTest, KeysTypedAheadStillLeaveTheBoxThatTheyFilled) {
  OpenScreen open;
  open.screen.FocusOn(open.screen.Short);
  QTest::keyClicks(QApplication::focusWidget(), "12");
  open.Press(Qt::Key_Return);
  EXPECT_TRUE(open.Heard("enter Short") && open.Heard("leave Short"));
}

TEST(JourneyTest, SaveTakesTheCellThatIsStillOpen) {
  OpenScreen open;
  open.screen.List.SetRows({{"1", "100.00"}, {"2", "200.00"}});
  OpenScreen::Wait();
  open.Go(open.screen.List);
  open.Table().setCurrentIndex(open.Table().model()->index(1, 1));
  open.Type("7");
  auto* editor = open.Table().findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  QTest::keyClicks(editor, "5");
  QTest::keyClick(editor, Qt::Key_S, Qt::ControlModifier);
  OpenScreen::Wait();
  EXPECT_EQ(open.screen.List.Cell(1, 1), "75");
  const auto cell =
      std::find(open.screen.events.begin(), open.screen.events.end(), "cell 1,1 was 200.00");
  const auto save = std::find(open.screen.events.begin(), open.screen.events.end(), "save");
  ASSERT_NE(save, open.screen.events.end());
  EXPECT_LT(cell, save);
}

TEST(JourneyTest, EscapeInACellKeepsItsOldTextAndTheWindow) {
  OpenScreen open;
  open.screen.List.SetRows({{"1", "100.00"}});
  OpenScreen::Wait();
  open.Go(open.screen.List);
  open.Table().setCurrentIndex(open.Table().model()->index(0, 1));
  open.Type("7");
  auto* editor = open.Table().findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  QTest::keyClick(editor, Qt::Key_Escape);
  OpenScreen::Wait();
  EXPECT_EQ(open.screen.List.Cell(0, 1), "100.00");
  EXPECT_TRUE(open.dialog.isVisible());
}

TEST(JourneyTest, AnAmountIsTypedOverAndADateComesFromTheCalendar) {
  OpenScreen open;
  open.screen.PayAmt.SetText("1,200.00");
  open.screen.PayDate.SetText("31-01-2024");
  OpenScreen::Wait();
  open.Go(open.screen.PayAmt);
  open.Type("55");
  EXPECT_EQ(open.screen.PayAmt.text(), "55");
  open.Go(open.screen.PayDate);
  open.Press(Qt::Key_F4);
  auto* calendar = open.Edit(open.screen.PayDate).findChild<QCalendarWidget*>();
  ASSERT_NE(calendar, nullptr);
  EXPECT_EQ(calendar->selectedDate(), QDate(2024, 1, 31));
  emit calendar->activated(QDate(2024, 2, 29));
  OpenScreen::Wait();
  EXPECT_EQ(open.screen.PayDate.text(), "29-02-2024");
  EXPECT_EQ(open.FocusName(), "PayDate");
  // A locked date offers no calendar.
  open.screen.PayDate.SetLocked(true);
  OpenScreen::Wait();
  open.Press(Qt::Key_F4);
  EXPECT_EQ(open.Edit(open.screen.PayDate).findChild<QCalendarWidget*>(), nullptr);
}

TEST(JourneyTest, AnAmountIsReckonedBeforeItsScreenHearsOfIt) {
  OpenScreen open;
  std::string heard;
  open.screen.PayAmt.onLeave = [&] { heard = open.screen.PayAmt.text(); };
  open.Go(open.screen.PayAmt);
  open.Type("100+20.50");
  EXPECT_EQ(open.screen.PayAmt.text(), "100+20.50");
  open.Press(Qt::Key_Return);
  EXPECT_EQ(heard, "120.5");
  // A text box is no calculator.
  open.Go(open.screen.LoanID);
  open.Type("1+1");
  open.Press(Qt::Key_Return);
  EXPECT_EQ(open.screen.LoanID.text(), "1+1");
}

TEST(JourneyTest, PlusAndMinusStepAWholeDateAndAreTextInOneThatIsTyped) {
  OpenScreen open;
  open.screen.PayDate.SetText("28-02-2024");
  OpenScreen::Wait();
  open.Go(open.screen.PayDate);
  open.Press(Qt::Key_Plus);
  open.Press(Qt::Key_Plus);
  EXPECT_EQ(open.screen.PayDate.text(), "01-03-2024");
  open.Press(Qt::Key_Minus);
  EXPECT_EQ(open.screen.PayDate.text(), "29-02-2024");
  open.Type("1-2-2026");
  EXPECT_EQ(open.screen.PayDate.text(), "1-2-2026");
  // Today is the program's, also on a machine whose own clock goes another way.
  Clock clock;
  clock.Set({2024, 2, 29, 23, 59, 59});
  TakeTodayFrom([&clock] { return clock.Now(); });
  open.screen.PayDate.SetText("");
  OpenScreen::Wait();
  open.Press(Qt::Key_Plus);
  EXPECT_EQ(open.screen.PayDate.text(), "29-02-2024");
  TakeTodayFrom(nullptr);
}

TEST(JourneyTest, ControlAndPageKeysTurnThePagesThatAreThere) {
  OpenScreen open;
  open.Press(Qt::Key_PageDown, Qt::ControlModifier);
  EXPECT_EQ(open.screen.Pages.page(), 1);
  open.Press(Qt::Key_PageDown, Qt::ControlModifier);
  EXPECT_EQ(open.screen.Pages.page(), 1);
  open.screen.First.SetVisible(false);
  OpenScreen::Wait();
  open.Press(Qt::Key_PageUp, Qt::ControlModifier);
  EXPECT_EQ(open.screen.Pages.page(), 1);
}

// --- the picker, by its keys alone

// Shows the picker as the desktop does and plays a person at it.
class KeyboardDesk : public QuietDesk {
 public:
  explicit KeyboardDesk(Session& session_of_test) : session(session_of_test) {}
  void Show(std::string_view name) override {
    if (name != "PopupFrm") return;
    ScreenFace::NoteTalk();
    PopupFrm popup(session, *this);
    ScreenDialog dialog(popup, nullptr);
    if (!dialog.Open()) return;
    OpenScreen::Wait();
    act(popup, dialog);
    popup.Close();
  }
  static void Press(int key) {
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
    OpenScreen::Wait();
  }
  static void Type(const char* text) {
    for (const char* c = text; *c; ++c) QTest::keyClick(QApplication::focusWidget(), *c);
    OpenScreen::Wait();
  }
  std::function<void(PopupFrm&, ScreenDialog&)> act;
  Session& session;
};

class PickerJourney : public ::testing::Test {
 protected:
  PickerJourney() {
    office.session.CurrentLevel = 4;
    for (int i = 1; i <= 120; ++i) {
      const std::string id = "C" + std::to_string(1000 + i);
      office.Run("INSERT INTO CustMast (CustID,CustName,CompCode,AreaCode,TotLoan) VALUES ('" + id +
                 "','" + (i % 40 ? "Ah Beng " : "Goh ") + id + "','HQ','PERSONAL',0)");
    }
  }
  Office office{Office::State::patched};
  KeyboardDesk desk{office.session};
};

TEST_F(PickerJourney, TypingOverTheRowsSearchesAndEnterChooses) {
  desk.act = [&](PopupFrm& popup, ScreenDialog&) {
    popup.FocusOn(popup.DG);
    OpenScreen::Wait();
    KeyboardDesk::Type("goh");
    EXPECT_EQ(popup.focus(), &popup.SearchString);
    EXPECT_EQ(popup.SearchString.text(), "goh");
    KeyboardDesk::Press(Qt::Key_Return);
    EXPECT_EQ(popup.DG.RowCount(), 3);
    EXPECT_EQ(popup.focus(), &popup.DG);
    KeyboardDesk::Press(Qt::Key_Down);
    KeyboardDesk::Press(Qt::Key_Return);
    EXPECT_TRUE(popup.closed());
  };
  EXPECT_EQ(Pick(office.session, desk, "CustPop"), "C1080");
}

TEST_F(PickerJourney, PageKeysTurnThePagesOfTheServer) {
  desk.act = [&](PopupFrm& popup, ScreenDialog&) {
    popup.FocusOn(popup.DG);
    OpenScreen::Wait();
    EXPECT_EQ(popup.DG.Cell(0, 0), "C1001");
    KeyboardDesk::Press(Qt::Key_PageDown);
    EXPECT_EQ(popup.DG.Cell(popup.DG.RowCount() - 1, 0), "C1120");
    KeyboardDesk::Press(Qt::Key_PageUp);
    EXPECT_EQ(popup.DG.Cell(0, 0), "C1001");
    KeyboardDesk::Press(Qt::Key_Escape);
    EXPECT_TRUE(popup.closed());
  };
  EXPECT_EQ(Pick(office.session, desk, "CustPop"), "");
}

TEST_F(PickerJourney, F2OnABoxOpensItsPickerAndTheChoiceFillsIt) {
  desk.act = [&](PopupFrm& popup, ScreenDialog&) {
    popup.FocusOn(popup.DG);
    OpenScreen::Wait();
    KeyboardDesk::Press(Qt::Key_Return);
  };
  NewCustFrm screen(office.session, desk);
  ScreenDialog dialog(screen, nullptr);
  ASSERT_TRUE(dialog.Open());
  OpenScreen::Wait();
  screen.FocusOn(screen.CustID);
  OpenScreen::Wait();
  KeyboardDesk::Press(Qt::Key_F2);
  EXPECT_EQ(screen.CustID.text(), "C1001");
  EXPECT_EQ(screen.CustName.text(), "Ah Beng C1001");
  EXPECT_FALSE(screen.closed());
}

TEST_F(PickerJourney, EnterLooksUpANameAndARefusedCodeStaysToBeTypedOver) {
  NewCustFrm screen(office.session, desk);
  ScreenDialog dialog(screen, nullptr);
  ASSERT_TRUE(OpenScreen::Show(dialog));
  screen.FocusOn(screen.CustID);
  OpenScreen::Wait();
  std::string offered;
  desk.act = [&](PopupFrm& popup, ScreenDialog&) {
    offered = popup.SearchString.text() + " " + std::to_string(popup.DG.RowCount());
    KeyboardDesk::Press(Qt::Key_Return);
  };
  KeyboardDesk::Type("goh");
  KeyboardDesk::Press(Qt::Key_Return);
  EXPECT_EQ(offered, "goh 3");
  EXPECT_EQ(screen.CustName.text(), "Goh C1040");
  EXPECT_NE(screen.focus(), &screen.CustID);

  dialog.activateWindow();
  OpenScreen::Wait();
  screen.FocusOn(screen.CustID);
  OpenScreen::Wait();
  KeyboardDesk::Type("C9999");
  KeyboardDesk::Press(Qt::Key_Return);
  EXPECT_THAT(desk.messages, ElementsAre("Customer not found"));
  EXPECT_EQ(screen.CustID.text(), "C9999");
  EXPECT_EQ(screen.focus(), &screen.CustID);
  KeyboardDesk::Type("C1001");  // over it
  KeyboardDesk::Press(Qt::Key_Return);
  EXPECT_EQ(screen.CustName.text(), "Ah Beng C1001");
}

// The order of the tabs is the layout's, the number of a page the screen's.
TEST_F(PickerJourney, ATabThatStandsElsewhereOpensItsOwnPage) {
  NewCustFrm screen(office.session, desk);
  ScreenDialog dialog(screen, nullptr);
  ASSERT_TRUE(dialog.Open());
  OpenScreen::Wait();
  auto* tabs = dialog.findChild<QTabWidget*>();
  ASSERT_NE(tabs, nullptr);
  EXPECT_EQ(tabs->tabText(1), "Loans");
  tabs->setCurrentIndex(1);
  OpenScreen::Wait();
  EXPECT_EQ(screen.Children(&screen.Pages)[static_cast<std::size_t>(screen.Pages.page())],
            &screen.LoanPage);
  EXPECT_TRUE(dialog.face().View(screen.LoanDG).widget()->isVisible());
  screen.FocusOn(screen.HouseStatus);
  OpenScreen::Wait();
  EXPECT_EQ(tabs->tabText(tabs->currentIndex()), "Home");
}

// --- the look

// The clerks' monitors, less the frame of a window and the bar of the desktop.
constexpr QSize kRoom(1342, 720);

TEST_F(PickerJourney, EveryPageOfEveryScreenFitsTheClerksMonitors) {
  for (const bool chinese : {false, true}) {
    office.session.ChineseFlag = chinese;
    for (const std::string& name : ScreenNames()) {
      if (name == "PopupFrm") office.session.PickerName = "CustPop";
      const std::unique_ptr<Screen> screen = MakeScreen(name, office.session, desk);
      ScreenDialog dialog(*screen, nullptr);
      if (!dialog.Open()) continue;
      dialog.resize(dialog.FirstSize().boundedTo(kRoom));
      OpenScreen::Wait();
      auto* tabs = dialog.findChild<QTabWidget*>();
      for (int page = 0; page < (tabs ? tabs->count() : 1); ++page) {
        if (tabs && !tabs->isTabVisible(page)) continue;
        if (tabs) tabs->setCurrentIndex(page);
        // A page of wrapped texts is laid out in several rounds, and a busy machine takes its time.
        std::ignore = QTest::qWaitFor([&dialog] { return LookProblems(dialog).empty(); }, 2000);
        EXPECT_THAT(LookProblems(dialog), IsEmpty())
            << name << (tabs ? " " + S(tabs->tabText(page)) : "");
      }
      screen->Close();
    }
  }
}

// --- files

TEST(FileJourneyTest, PickersGiveThePathAndNothingWhenCancelled) {
  TempFolder folder;
  std::ofstream(folder.File("贷款 1.jpg")) << "x";
  DesktopDesk desk;
  AnswerFileDialog(Q(folder.File("贷款 1.jpg")));
  EXPECT_EQ(desk.PickFile("Photo", folder.path(), "Pictures (*.jpg *.png)|All files (*)"),
            folder.File("贷款 1.jpg"));
  AnswerFileDialog("");
  EXPECT_EQ(desk.PickFile("Photo", folder.path(), "Pictures (*.jpg)"), "");
  AnswerFileDialog(Q(folder.path()));
  EXPECT_EQ(desk.PickFolder("Folder", folder.path()), folder.path());
  AnswerFileDialog("");
  EXPECT_EQ(desk.PickFolder("Folder", folder.path()), "");
}

}  // namespace
}  // namespace kaunter
