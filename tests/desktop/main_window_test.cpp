// The main window follows the state of the menu table: rights, what is not built, the language.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>

#include "app/menu_table.h"
#include "core/main_frm.h"
#include "desktop/home_page.h"
#include "desktop/main_window.h"
#include "test_screen.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;

MenuEntry Entry(const char* name, const char* parent, Caption caption, MenuAction action,
                const char* target = "") {
  MenuEntry entry;
  entry.name = name;
  entry.parent = parent;
  entry.caption = std::move(caption);
  entry.action = action;
  entry.target = target;
  return entry;
}

class ShowingDesk : public QuietDesk {
 public:
  void Show(std::string_view screen_name) override { shown.emplace_back(screen_name); }
  std::vector<std::string> shown;
};

class MainWindowTest : public ::testing::Test {
 protected:
  MainWindowTest() {
    main.menu().HideAll();
    SetVisible({"LoanMnu", "LoanCalcMnu", "NewLoanMnu"});
  }
  void SetVisible(const std::vector<std::string>& names) {
    for (MenuEntry& entry : main.menu().entries()) {
      entry.visible = std::find(names.begin(), names.end(), entry.name) != names.end();
    }
    main.Label4.SetVisible(true);
    if (main.observer) main.observer->TitleChanged();
    OpenScreen::Wait();
  }
  std::vector<std::string> Tops() {
    std::vector<std::string> tops;
    for (const QAction* action : window.menuBar()->actions()) {
      tops.push_back(action->text().toStdString());
    }
    return tops;
  }
  QList<QAction*> Entries(int top) {
    return window.menuBar()->actions().at(top)->menu()->actions();
  }

  Session session;
  ShowingDesk desk;
  MainFrm main{
      session,
      desk,
      {Entry("CustomerMnu", "", {"&Customer", "顾客(&C)"}, MenuAction::group),
       Entry("NewCustMnu", "CustomerMnu", {"&New", "新"}, MenuAction::screen, "NewCustFrm"),
       Entry("LoanMnu", "", {"&Loan", "贷款(&L)"}, MenuAction::group),
       Entry("NewLoanMnu", "LoanMnu", {"&New Loan", "新贷款"}, MenuAction::screen, "NewLoanFrm"),
       Entry("LoanCalcMnu", "LoanMnu", {"Loan C&alculation", "贷款计算"}, MenuAction::screen,
             "LoanCalcfrm")},
      [](std::string_view screen) { return screen == "LoanCalcfrm"; }};
  MainWindow window{main};
};

TEST_F(MainWindowTest, TheTilesComeBeforeTheButtonsOfTheNotices) {
  std::string met;
  for (QWidget* at = window.nextInFocusChain(); at != &window; at = at->nextInFocusChain()) {
    if (dynamic_cast<Tile*>(at) != nullptr && !met.ends_with("tile ")) met += "tile ";
    const auto* button = qobject_cast<QPushButton*>(at);
    if (button != nullptr && (button->text() == "Shut it" || button->text() == "Send again")) {
      met += button->text().toStdString() + " ";
    }
  }
  EXPECT_EQ(met, "tile Shut it Send again ");
}

TEST_F(MainWindowTest, EnterPressesWhatHasTheFocus) {
  window.show();
  for (auto* button : window.findChildren<Tile*>()) {
    if (!button->isEnabled()) continue;
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Return);
    OpenScreen::Wait();
  }
  EXPECT_THAT(desk.shown, ElementsAre("LoanCalcfrm"));
}

TEST(HomeLettersTest, NoButtonOfThePageSharesItsLetterWithAMenu) {
  Session session;
  QuietDesk desk;
  MainFrm main(session, desk, MenuTable(), [](std::string_view) { return true; });
  MainWindow window(main);
  for (const bool chinese : {false, true}) {
    main.SetChinese(chinese);
    OpenScreen::Wait();
    QStringList letters;
    for (const QAction* menu : window.menuBar()->actions()) {
      letters << QKeySequence::mnemonic(menu->text()).toString();
    }
    ASSERT_FALSE(letters.isEmpty());
    for (const auto* button : window.findChildren<QPushButton*>()) {
      const QString letter = QKeySequence::mnemonic(button->text()).toString();
      EXPECT_FALSE(!letter.isEmpty() && letters.contains(letter)) << button->text().toStdString();
    }
  }
}

TEST_F(MainWindowTest, HiddenEntriesAreNotThereAndUnbuiltOnesAreGreyedWithTheReason) {
  EXPECT_THAT(Tops(), ElementsAre("&Loan"));
  ASSERT_EQ(Entries(0).size(), 2);
  EXPECT_FALSE(Entries(0)[0]->isEnabled());
  EXPECT_EQ(Entries(0)[0]->toolTip().toStdString(), MainFrm::NotBuiltText().english);
  EXPECT_TRUE(Entries(0)[1]->isEnabled());
  SetVisible({"LoanMnu", "LoanCalcMnu", "CustomerMnu"});
  // A group that has nothing to show is no menu.
  EXPECT_THAT(Tops(), ElementsAre("&Loan"));
  EXPECT_EQ(Entries(0).size(), 1);
}

TEST_F(MainWindowTest, LanguageSwitchRedrawsMenusAndTiles) {
  main.SetChinese(true);
  OpenScreen::Wait();
  EXPECT_THAT(Tops(), ElementsAre("贷款(&L)"));
  std::vector<std::string> tiles;
  for (const auto* button : window.findChildren<QAbstractButton*>()) {
    if (dynamic_cast<const Tile*>(button)) tiles.push_back(button->text().toStdString());
  }
  EXPECT_THAT(tiles, ::testing::IsSupersetOf({"新贷款", "贷款计算"}));
  // Qt's own windows follow: this is the way out of its dialogs.
  const auto label = [] { return QCoreApplication::translate("QPlatformTheme", "Cancel"); };
  EXPECT_EQ(label(), "取消");
  main.SetChinese(false);
  OpenScreen::Wait();
  EXPECT_EQ(label(), "Cancel");
}

TEST_F(MainWindowTest, ChoosingAnEntryOpensItsScreen) {
  Entries(0)[1]->trigger();
  OpenScreen::Wait();
  EXPECT_THAT(desk.shown, ElementsAre("LoanCalcfrm"));
}

TEST_F(MainWindowTest, AListOfAmountsTellsTheirSum) {
  main.LS1.SetRows({{"L1", "31-01-2024", "Ah Beng", "", "1,200.50", ""},
                    {"L2", "31-01-2024", "Siti", "", "99.50", ""}});
  OpenScreen::Wait();
  QStringList texts;
  for (const auto* label : window.findChildren<QLabel*>()) texts << label->text();
  EXPECT_TRUE(texts.contains("Total Due 1,300.00")) << texts.join("|").toStdString();
}

TEST_F(MainWindowTest, AnOpenMenuOutlivesTheClock) {
  const QAction* before = window.menuBar()->actions().at(0);
  main.SetPanel(5, "Monday, 2 March 2026");
  OpenScreen::Wait();
  EXPECT_EQ(window.menuBar()->actions().at(0), before);
  QStringList texts;
  for (const auto* label : window.statusBar()->findChildren<QLabel*>()) texts << label->text();
  EXPECT_TRUE(texts.contains("Monday, 2 March 2026"));
}

}  // namespace
}  // namespace kaunter
