// ReportFrm at the keyboard, and what each report offers drawn whole in its window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCalendarWidget>
#include <QTableView>
#include <functional>

#include "desktop/look_check.h"
#include "desktop/text.h"
#include "reporting/report_frm.h"
#include "test_screen.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

using ::testing::IsEmpty;

struct ReportDesk : QuietDesk {
  void Show(std::string_view name) override {
    shown.emplace_back(name);
    if (on_show) on_show();
  }
  void Print(const ReportJob& job) override { printed.push_back(job); }
  std::function<void()> on_show;
  std::vector<std::string> shown;
  std::vector<ReportJob> printed;
};

struct OpenReport {
  explicit OpenReport(const std::string& file) {
    Session& session = office.session;
    session.CurrentLevel = 4;
    session.CurrentCompCode = "HQ";
    session.CurrentCompDesc = "Head Office";
    office.Run("INSERT INTO CompMast (CompCode,CompDesc) VALUES ('KL','Branch')");
    Open(file);
  }
  void Open(const std::string& file) {
    office.session.ReportFile = file;
    office.session.MsgTitle = "Loan Report";
    dialog.reset();
    screen = std::make_unique<ReportFrm>(office.session, desk);
    dialog = std::make_unique<ScreenDialog>(*screen, nullptr);
    ASSERT_TRUE(OpenScreen::Show(*dialog));
  }
  void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    OpenScreen::Press(*dialog, key, modifiers);
  }
  void Type(const char* text) {
    QTest::keyClicks(QApplication::focusWidget(), text);
    OpenScreen::Wait();
  }
  QTableView& Table(Grid& grid) {
    return static_cast<GridView&>(dialog->face().View(grid)).table();
  }
  std::string Focus() const { return screen->focus() ? screen->focus()->name() : ""; }

  Office office{Office::State::patched};
  ReportDesk desk;
  std::unique_ptr<ReportFrm> screen;
  std::unique_ptr<ScreenDialog> dialog;
};

TEST(ReportFrmKeys, EnterGoesThroughTheBoxesToTheListAndDoesNotPrint) {
  OpenReport open("LoanMastList.rpt");
  EXPECT_EQ(open.Focus(), "DateFrom");
  open.Type("01012024");
  open.Press(Qt::Key_Return);
  EXPECT_EQ(open.Focus(), "DateTo");
  open.Type("31012024");
  for (const char* next : {"IDFrom", "IDTo", "Check1", "Check2", "ListCombo", "List1"}) {
    open.Press(Qt::Key_Return);
    EXPECT_EQ(open.Focus(), next);
  }
  EXPECT_EQ(open.screen->DateFrom.text() + open.screen->DateTo.text(), "01-01-202431-01-2024");
  open.Press(Qt::Key_Down);
  open.Press(Qt::Key_Return);
  EXPECT_EQ(open.screen->SelectedLbl.Text(), "(Company Code - KL)");
  EXPECT_TRUE(open.desk.printed.empty());
  open.Press(Qt::Key_S, Qt::ControlModifier);
  ASSERT_EQ(open.desk.printed.size(), 1U);
  EXPECT_TRUE(open.desk.printed[0].SelectionFormula.ends_with(" ({LoanMast.CompCode} = 'KL' ) "));
}

TEST(ReportFrmKeys, TabStopsAreReadFromTheTopToTheFoot) {
  OpenReport open("RekodTrans.rpt");
  for (const char* next :
       {"DateTo", "IDFrom", "SearchCmd1", "IDTo", "SearchCmd2", "Check2", "Check3", "Check4",
        "ListCombo", "List1", "InAll", "List2", "SaveCmd", "CancelCmd", "DateFrom"}) {
    open.Press(Qt::Key_Tab);
    EXPECT_EQ(open.Focus(), next);
  }
}

TEST(ReportFrmKeys, ADoubleClickMovesAValue) {
  OpenReport open("LoanMastList.rpt");
  const auto click_twice = [&](Grid& grid, int row) {
    QTableView& table = open.Table(grid);
    const QPoint place = table.visualRect(table.model()->index(row, 0)).center();
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, place);
    OpenScreen::Wait();
  };
  click_twice(open.screen->List1, 1);
  EXPECT_EQ(open.screen->SelectedLbl.Text(), "(Company Code - KL)");
  click_twice(open.screen->List2, 0);
  EXPECT_EQ(open.screen->List1.RowCount(), 2);
}

TEST(ReportFrmKeys, F2OpensTheCalendarOfADateAndThePickerOfANumber) {
  OpenReport open("PaymentList.rpt");
  open.Press(Qt::Key_F2);
  auto* calendar =
      open.dialog->face().View(open.screen->DateFrom).widget()->findChild<QCalendarWidget*>();
  ASSERT_NE(calendar, nullptr);
  emit calendar->activated(QDate(2024, 1, 2));
  OpenScreen::Wait();
  EXPECT_EQ(open.screen->DateFrom.text(), "02-01-2024");
  std::string picker;
  open.desk.on_show = [&] {
    picker = open.office.session.PickerName;
    open.office.session.PickerName.clear();
    open.office.session.CallerTag = "P7";
  };
  open.screen->FocusOn(open.screen->IDTo);
  OpenScreen::Wait();
  open.Press(Qt::Key_F2);
  EXPECT_EQ(picker, "PaymentPop");
  EXPECT_EQ(open.screen->IDTo.text(), "P7");
  EXPECT_EQ(open.screen->IDFrom.text(), "");
  // Without picker buttons the key does nothing.
  open.desk.shown.clear();
  open.Open("SMSCompList.rpt");
  open.screen->FocusOn(open.screen->IDTo);
  OpenScreen::Wait();
  open.Press(Qt::Key_F2);
  EXPECT_TRUE(open.desk.shown.empty());
}

// The clerks' monitors, less the frame of a window and the bar of the desktop.
constexpr QSize kRoom(1342, 720);

TEST(ReportFrmLook, WhatEachReportOffersIsDrawnWhole) {
  OpenReport open("CBBalance.rpt");
  for (const bool chinese : {false, true}) {
    open.office.session.ChineseFlag = chinese;
    std::vector<std::string> files = {
        "CBIncome.rpt",    "LoanSchList.rpt",     "ExpectedCollection.rpt", "RekodTrans.rpt",
        "CashVoucher.rpt", "LoanCreatedDate.rpt", "LoanMastList2.rpt"};
    for (const ReportCriteria& row : AllReportCriteria()) files.push_back(row.files.front());
    for (const std::string& file : files) {
      open.Open(file);
      open.dialog->resize(open.dialog->FirstSize().boundedTo(kRoom));
      open.screen->InAll.Click();
      OpenScreen::Wait();
      EXPECT_THAT(LookProblems(*open.dialog), IsEmpty()) << file;
      EXPECT_LE(open.dialog->height(), kRoom.height()) << file;
    }
  }
}

}  // namespace
}  // namespace kaunter
