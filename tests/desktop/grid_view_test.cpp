// The table reads the grid in place and gives edits, ticks and choices back to it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QHeaderView>

#include "test_screen.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;

class GridViewTest : public ::testing::Test {
 protected:
  GridViewTest() {
    open.screen.List.SetRows({{"1", "100.00"}, {"2", "1,200.50"}, {"3", "0.05"}});
    OpenScreen::Wait();
    open.screen.events.clear();
  }
  Grid& grid() { return open.screen.List; }
  QAbstractItemModel& model() { return *open.Table().model(); }
  QString Cell(int row, int column) { return model().index(row, column).data().toString(); }

  OpenScreen open;
};

TEST_F(GridViewTest, ShowsTheRowsOfTheGridAndMoneyAtTheRight) {
  EXPECT_EQ(model().rowCount(), 3);
  EXPECT_EQ(Cell(1, 1), "1,200.50");
  const auto align = model().index(1, 1).data(Qt::TextAlignmentRole).value<Qt::Alignment>();
  EXPECT_TRUE(align & Qt::AlignRight);
  grid().SetCell(1, 1, "7.00");
  grid().RemoveRow(2);
  // Before the view is told, a row that is gone answers with a blank and not with a crash.
  EXPECT_EQ(Cell(2, 1), "");
  OpenScreen::Wait();
  EXPECT_EQ(model().rowCount(), 2);
  EXPECT_EQ(Cell(1, 1), "7.00");
}

TEST_F(GridViewTest, EditReachesTheGridOnceAndOnlyWhereItMay) {
  EXPECT_TRUE(model().setData(model().index(0, 1), "55.00", Qt::EditRole));
  EXPECT_EQ(grid().Cell(0, 1), "55.00");
  EXPECT_THAT(open.screen.events, ElementsAre("cell 0,1 was 100.00"));
  EXPECT_FALSE(model().setData(model().index(0, 0), "9", Qt::EditRole));
  EXPECT_EQ(grid().Cell(0, 0), "1");
  // Going through a cell is no edit.
  EXPECT_TRUE(model().setData(model().index(0, 1), "55.00", Qt::EditRole));
  EXPECT_EQ(open.screen.events.size(), 1U);
  grid().SetLocked(true);
  EXPECT_FALSE(model().index(0, 1).flags() & Qt::ItemIsEditable);
}

TEST_F(GridViewTest, TypingIntoACellEditsItAndEnterGoesToTheNextRow) {
  QTableView& table = open.Table();
  open.Go(grid());
  table.setCurrentIndex(model().index(0, 1));
  open.Type("8");
  auto* editor = table.findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  QTest::keyClicks(editor, "8.00");
  QTest::keyClick(editor, Qt::Key_Return);
  OpenScreen::Wait();
  EXPECT_EQ(grid().Cell(0, 1), "88.00");
  EXPECT_EQ(table.currentIndex().row(), 1);
  EXPECT_EQ(table.currentIndex().column(), 1);
}

TEST_F(GridViewTest, ScreenMayPutTheOldTextBack) {
  grid().onCellLeave = [&](int row, int column, const std::string& before) {
    grid().SetCell(row, column, before);
  };
  model().setData(model().index(0, 1), "99.00", Qt::EditRole);
  OpenScreen::Wait();
  EXPECT_EQ(Cell(0, 1), "100.00");
}

TEST_F(GridViewTest, ChoosingARowIsHeardOnceAndTheScreensOwnChoiceIsNot) {
  QTableView& table = open.Table();
  table.setCurrentIndex(model().index(1, 0));
  EXPECT_EQ(grid().current_row(), 1);
  EXPECT_THAT(open.screen.events, ElementsAre("row 1"));
  grid().SetCurrentRow(2);
  OpenScreen::Wait();
  EXPECT_EQ(table.currentIndex().row(), 2);
  EXPECT_THAT(open.screen.events, ElementsAre("row 1"));
}

TEST_F(GridViewTest, DoubleClickOpensARow) {
  QTableView& table = open.Table();
  const QPoint place = table.visualRect(model().index(2, 0)).center();
  QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, place);
  OpenScreen::Wait();
  EXPECT_TRUE(open.Heard("open 2"));
}

TEST_F(GridViewTest, TicksHaveAColumnOfTheirOwn) {
  grid().SetHasChecks(true);
  OpenScreen::Wait();
  EXPECT_EQ(model().columnCount(), 3);
  EXPECT_EQ(Cell(0, 2), "100.00");
  const QPoint place = open.Table().visualRect(model().index(1, 0)).center();
  QTest::mouseClick(open.Table().viewport(), Qt::LeftButton, {}, place);
  EXPECT_TRUE(grid().Ticked(1));
  EXPECT_TRUE(open.Heard("tick row 1"));
  open.Go(grid());
  open.Press(Qt::Key_Space);
  EXPECT_FALSE(grid().Ticked(1));
}

TEST_F(GridViewTest, AnAmountIsNeverCut) {
  grid().SetRows({{"1", "123,456,789,012.00"}});
  open.dialog.resize(420, 500);
  OpenScreen::Wait();
  const int wanted = QFontMetrics(open.Table().font()).horizontalAdvance("123,456,789,012.00");
  EXPECT_GT(open.Table().columnWidth(1), wanted);
}

TEST_F(GridViewTest, ManyChangesAreOneRedraw) {
  int told = 0;
  QObject::connect(&model(), &QAbstractItemModel::dataChanged, [&] { ++told; });
  for (int i = 0; i < 100; ++i) grid().SetCell(0, 0, std::to_string(i));
  OpenScreen::Wait();
  EXPECT_EQ(told, 1);
  EXPECT_EQ(Cell(0, 0), "99");
}

TEST_F(GridViewTest, AClickOnAHeadingSortsWhatIsOnlyRead) {
  QTableView& table = open.Table();
  QHeaderView& header = *table.horizontalHeader();
  const auto click = [&](int column) {
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                      {header.sectionViewportPosition(column) + 5, header.height() / 2});
    OpenScreen::Wait();
  };
  const auto column = [&](int at) {
    std::string all;
    for (int row = 0; row < model().rowCount(); ++row) {
      all += Cell(row, at).toStdString() + ";";
    }
    return all;
  };
  // What is typed in keeps its place.
  click(1);
  EXPECT_EQ(column(0), "1;2;3;");

  grid().SetColumns({{{"Loan"}}, {{"Amount"}, Kind::money}, {{"Due"}, Kind::date}});
  grid().SetRows({{"AB1-9", "100.00", "31-01-2024"},
                  {"AB1-10", "1,200.50", "01-02-2024"},
                  {"ab1-2", "", "15-12-2023"},
                  {"AB1-1", "99.90", "01-02-2024"},
                  {"Total", "1,400.40", ""}},
                 {RowTone::plain, RowTone::plain, RowTone::plain, RowTone::plain, RowTone::total});
  OpenScreen::Wait();
  click(0);
  EXPECT_EQ(column(0), "AB1-1;ab1-2;AB1-9;AB1-10;Total;");
  click(2);
  EXPECT_EQ(column(2), "15-12-2023;31-01-2024;01-02-2024;01-02-2024;;");
  EXPECT_EQ(column(0), "ab1-2;AB1-9;AB1-10;AB1-1;Total;");
  click(1);
  EXPECT_EQ(column(1), ";99.90;100.00;1,200.50;1,400.40;");
  click(1);
  EXPECT_EQ(column(1), "1,200.50;100.00;99.90;;1,400.40;");

  // The screen hears of its own rows, and its choice is shown where the row stands now.
  open.screen.events.clear();
  table.setCurrentIndex(model().index(1, 0));
  EXPECT_EQ(grid().current_row(), 0);
  grid().SetCurrentRow(3);
  OpenScreen::Wait();
  EXPECT_EQ(table.currentIndex().row(), 2);
  open.Go(grid());
  QTest::keyClick(&table, Qt::Key_Return);
  EXPECT_THAT(open.screen.events, ElementsAre("row 0", "open 3"));

  // Rows that come are sorted in; the third click gives the screen's own order back.
  grid().SetRows({{"X", "5.00", ""}, {"Y", "7.00", ""}, {"Z", "6.00", ""}});
  OpenScreen::Wait();
  EXPECT_EQ(column(0), "Y;Z;X;");
  click(1);
  EXPECT_EQ(column(0), "X;Y;Z;");
}

}  // namespace
}  // namespace kaunter
