// The figures on the home page: drawn when they have been read, and each opens what is behind it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/main_frm.h"
#include "desktop/figures_panel.h"
#include "desktop/home_page.h"
#include "desktop/main_window.h"
#include "test_screen.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ShowingDesk : public QuietDesk {
 public:
  explicit ShowingDesk(Session& session) : session_(session) {}
  bool CanShow(std::string_view) const override { return true; }
  void Show(std::string_view screen_name) override {
    shown.push_back(std::string(screen_name) + " " + session_.HandOverLoanID +
                    session_.HandOverDays.from + ".." + session_.HandOverDays.to);
  }
  std::vector<std::string> shown;

 private:
  Session& session_;
};

MenuEntry Entry(const char* name, const char* target) {
  MenuEntry entry;
  entry.name = name;
  entry.action = MenuAction::screen;
  entry.target = target;
  return entry;
}

class HomePageTest : public ::testing::Test {
 protected:
  HomePageTest() {
    office.session.CurrentLevel = 4;
    for (MenuEntry& entry : main.menu().entries()) entry.visible = true;
    main.Label4.SetVisible(true);
    window.resize(1366, 768);
    window.show();
  }
  void LendSomething() {
    office.Run("INSERT INTO CustMast (CustID,CustName) VALUES ('C1','Ah Beng')");
    office.Run("INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanBal) VALUES ('L1','C1','HQ',900)");
    office.Run(
        "INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,Payment) VALUES "
        "(1,'L1','C1','2023-12-10',90,0), (2,'L1','C1','2024-01-10',250,0)");
  }
  // Until the parts, read one at a time, and their drawing are over.
  void SignIn() {
    main.home().SignedIn();
    QTRY_VERIFY(main.home().ready());
    OpenScreen::Wait();
  }
  template <typename T>
  T* Shown() {
    for (QWidget* widget : window.findChildren<QWidget*>()) {
      auto* wanted = dynamic_cast<T*>(widget);
      if (wanted && wanted->isVisible()) return wanted;
    }
    return nullptr;
  }
  bool Says(const char* text) {
    for (const auto* label : window.findChildren<QLabel*>()) {
      if (label->isVisible() && label->text() == text) return true;
    }
    return false;
  }

  Office office{Office::State::patched};
  ShowingDesk desk{office.session};
  MainFrm main{office.session,
               desk,
               {Entry("FolloUpMnu", "FollowupFrm"), Entry("EditPaymentMnu", "PaymentFrm"),
                Entry("EditLoanMnu", "NewLoanFrm"), Entry("DueDateInq", "DueDateFrm")},
               [](std::string_view screen) { return screen != "PaymentFrm"; }};
  MainWindow window{main};
};

TEST_F(HomePageTest, AnEmptyOfficeIsWelcomedInsteadOfShownEmptyCharts) {
  SignIn();
  EXPECT_TRUE(Says("A new office"));
  EXPECT_EQ(Shown<Chart>(), nullptr);
  EXPECT_EQ(Shown<FigureCard>(), nullptr);
  LendSomething();
  main.home().Refresh();
  QTRY_VERIFY(main.home().ready());
  OpenScreen::Wait();
  EXPECT_FALSE(Says("A new office"));
  ASSERT_NE(Shown<BandChart>(), nullptr);
  EXPECT_EQ(Shown<BandChart>()->bars()[kTo60Days].tally, (Tally{1, Money::FromText("90")}));
  EXPECT_EQ(window.height(), 768) << "what comes and goes made the window grow";
}

TEST_F(HomePageTest, APressOnABarOrACardOpensWhatIsBehindIt) {
  LendSomething();
  SignIn();
  auto* ages = Shown<BandChart>();
  ASSERT_NE(ages, nullptr);
  QTest::mouseClick(ages, Qt::LeftButton, {}, ages->PlaceOf(kTo30Days).center());
  OpenScreen::Wait();
  EXPECT_THAT(desk.shown, ElementsAre("DueDateFrm 01-01-2024..30-01-2024"));
  Shown<FigureCard>()->click();
  OpenScreen::Wait();
  EXPECT_EQ(desk.shown.back(), "DueDateFrm 31-01-2024..31-01-2024");
  QTest::keyClick(ages, Qt::Key_Up);
  QTest::keyClick(ages, Qt::Key_Return);
  OpenScreen::Wait();
  EXPECT_EQ(desk.shown.back(), "DueDateFrm ..01-11-2023");
  // Pressed on one bar, let go on another: the person thought better of it.
  desk.shown.clear();
  QTest::mousePress(ages, Qt::LeftButton, {}, ages->PlaceOf(kTo30Days).center());
  QTest::mouseRelease(ages, Qt::LeftButton, {}, ages->PlaceOf(kOver90Days).center());
  OpenScreen::Wait();
  EXPECT_THAT(desk.shown, IsEmpty());
}

TEST_F(HomePageTest, AFigureWithoutAScreenIsOnlyLookedAt) {
  LendSomething();
  office.Run(
      "INSERT INTO PaymentMast (PayID,LoanID,CompCode,PayDate,PayAmt) VALUES "
      "('P1','L1','HQ','2024-01-05',70)");
  SignIn();
  auto* months = Shown<MonthChart>();
  ASSERT_NE(months, nullptr);
  EXPECT_EQ(months->bars().back().tally, (Tally{1, Money::FromText("70")}));
  QTest::mouseClick(months, Qt::LeftButton, {}, months->PlaceOf(kMonthsShown - 1).center());
  OpenScreen::Wait();
  EXPECT_THAT(desk.shown, IsEmpty());
  EXPECT_EQ(months->toolTip().toStdString(), MainFrm::NotBuiltText().english);
}

TEST_F(HomePageTest, TheFiguresAreReadAgainWhenTheProgramComesBackToTheFront) {
  LendSomething();
  main.home().patience = 1e9;
  SignIn();
  office.Run("INSERT INTO LoanMast (LoanID,CustID,CompCode,LoanBal) VALUES ('L2','C1','HQ',0)");
  office.Run("UPDATE SchMast SET Payment=40 WHERE SchID=2");
  office.Run(
      "INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,Payment) VALUES "
      "(1,'L2','C1','2023-12-10',77,0)");
  qApp->applicationStateChanged(Qt::ApplicationActive);
  QTRY_COMPARE(Shown<BandChart>()->bars()[kTo30Days].tally.amount.ToDouble(), 210.0);
  // The list agrees with the figures; a loan without a balance owes nothing.
  EXPECT_EQ(main.LS1.RowCount(), 2);
  EXPECT_TRUE(Says("Total Due 300.00"));
}

TEST_F(HomePageTest, NothingIsReadBetweenTheStatementsOfATransaction) {
  LendSomething();
  SignIn();
  office.session.Main().BeginTrans();
  office.Run("UPDATE SchMast SET Payment=40 WHERE SchID=2");
  main.home().Refresh();
  QTest::qWait(250);
  EXPECT_EQ(main.home().AgeDG.Cell(0, 2), "250.00");
  office.session.Main().RollbackTrans();
  QTRY_VERIFY(main.home().ready());
  EXPECT_EQ(main.home().AgeDG.Cell(0, 2), "250.00");
}

TEST_F(HomePageTest, AnOfficeThatCannotBeReadSaysSoOnThePage) {
  LendSomething();
  SignIn();
  office.session.Main().SetTrace(
      [](std::string_view, std::string_view) { throw std::runtime_error("no connection"); });
  main.home().Refresh();
  QTRY_VERIFY(main.home().failed());
  OpenScreen::Wait();
  EXPECT_TRUE(Says("The figures cannot be read now."));
  EXPECT_TRUE(Shown<BandChart>()->IsEmpty());
  EXPECT_THAT(desk.messages, IsEmpty());
}

TEST_F(HomePageTest, AnOverdueLoanIsOpenedByItself) {
  LendSomething();
  SignIn();
  main.home().OverdueDG.Open(0, 0);
  EXPECT_THAT(desk.shown, ElementsAre("NewLoanFrm L1.."));
  EXPECT_EQ(office.session.HandOverLoanID, "");
}

}  // namespace
}  // namespace kaunter
