// Screens and grids: failures that reach nobody else, closing, rows that go away under the cursor.
#include "screen/screen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/screen/silent_desk.h"

namespace kaunter {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LedgerFrm : public Screen {
 public:
  explicit LedgerFrm(Desk& desk) : Screen("LedgerFrm", {"Ledger", "账簿"}, desk) {}
  bool RequestClose() override {
    if (fails) throw std::runtime_error("disk full");
    return agrees;
  }
  void Unload() override { ++unloads; }

  Grid DG{*this, "DG", {"Rows"}, {{"No"}, {{"Amount", "数额"}, Kind::money, 10, true}}};
  bool fails = false;
  bool agrees = true;
  int unloads = 0;
};

class ScreenTest : public testing::Test {
 protected:
  SilentDesk desk;
  LedgerFrm screen{desk};
  std::vector<std::string> events;
};

TEST_F(ScreenTest, GuardTellsEveryFailureAndLetsNonePass) {
  EXPECT_TRUE(screen.Guard([] {}));
  EXPECT_FALSE(screen.Guard([] { throw std::runtime_error("no server"); }));
  screen.SetChinese(true);
  EXPECT_FALSE(screen.Guard([] { throw 7; }));
  EXPECT_THAT(desk.messages,
              ElementsAre("Ledger: no server", "账簿: the action failed for an unknown reason"));
  desk.messages.clear();
  screen.onFailure = [this](const std::exception& e) { events.emplace_back(e.what()); };
  EXPECT_FALSE(screen.Guard([] { throw std::out_of_range("row 9"); }));
  EXPECT_THAT(events, ElementsAre("row 9"));
  EXPECT_THAT(desk.messages, IsEmpty());
  screen.onFailure = [](const std::exception&) { throw std::runtime_error("log is full"); };
  EXPECT_FALSE(screen.Guard([] { throw std::runtime_error("first"); }));
  EXPECT_THAT(desk.messages, ElementsAre("账簿: first"));
}

TEST_F(ScreenTest, APersonClosesOnlyWhatAgrees) {
  screen.agrees = false;
  EXPECT_FALSE(screen.TryClose());
  screen.agrees = true;
  screen.fails = true;
  EXPECT_FALSE(screen.TryClose());
  EXPECT_THAT(desk.messages, ElementsAre("Ledger: disk full"));
  EXPECT_EQ(screen.unloads, 0);
  screen.fails = false;
  EXPECT_TRUE(screen.TryClose());
  screen.Close();
  EXPECT_EQ(screen.unloads, 1);
  screen.Reopen();
  screen.Close();
  EXPECT_EQ(screen.unloads, 2);
}

TEST_F(ScreenTest, ControlsAreFoundByNameWithoutCase) {
  EXPECT_EQ(screen.Find("dg"), &screen.DG);
  EXPECT_EQ(screen.Find("DG1"), nullptr);
}

TEST_F(ScreenTest, RowsTakeTheWidthOfTheGrid) {
  screen.DG.SetRows({{"1", "2", "3"}, {"4"}});
  EXPECT_THAT(screen.DG.Row(0), ElementsAre("1", "2"));
  EXPECT_THAT(screen.DG.Row(1), ElementsAre("4", ""));
  EXPECT_EQ(screen.DG.ColumnIndex("AMOUNT"), 1);
  EXPECT_THROW(screen.DG.Cell(2, 0), std::out_of_range);
}

TEST_F(ScreenTest, TheCurrentRowFollowsRemovedRows) {
  screen.DG.SetRows({{"1"}, {"2"}, {"3"}});
  screen.DG.SetCurrentRow(1);
  screen.DG.RemoveRow(0);
  EXPECT_EQ(screen.DG.current_row(), 0);
  screen.DG.SetCurrentRow(1);
  screen.DG.RemoveRow(1);
  EXPECT_EQ(screen.DG.current_row(), 0);
  screen.DG.RemoveRow(0);
  EXPECT_EQ(screen.DG.current_row(), -1);
}

TEST_F(ScreenTest, OpeningPicksTheRowFirstAndBearsAnEmptiedGrid) {
  screen.DG.SetRows({{"1"}, {"2"}});
  screen.DG.onRow = [this](int row) { events.push_back("row " + std::to_string(row)); };
  screen.DG.onOpen = [this](int row, int column) {
    events.push_back("open " + std::to_string(row) + "," + std::to_string(column));
  };
  screen.DG.Open(1, 0);
  screen.DG.Open(1, 1);
  screen.DG.Open(2, 0);
  EXPECT_THAT(events, ElementsAre("row 1", "open 1,0", "open 1,1"));
  events.clear();
  screen.DG.onRow = [this](int) { screen.DG.Clear(); };
  screen.DG.Open(0, 0);
  EXPECT_THAT(events, IsEmpty());
}

TEST_F(ScreenTest, AnEditHandsOverWhatStoodThere) {
  screen.DG.AddRow({"1", "100.00"});
  screen.DG.onCellLeave = [this](int row, int column, const std::string& before) {
    events.push_back(before + "->" + screen.DG.Cell(row, column));
    screen.DG.SetCell(row, column, before);
  };
  EXPECT_TRUE(screen.DG.Edit(0, 1, "abc"));
  EXPECT_EQ(screen.DG.Cell(0, 1), "100.00");
  EXPECT_FALSE(screen.DG.Edit(0, 0, "2"));
  EXPECT_FALSE(screen.DG.Edit(1, 1, "2"));
  screen.DG.SetLocked(true);
  EXPECT_FALSE(screen.DG.Edit(0, 1, "2"));
  EXPECT_THAT(events, ElementsAre("100.00->abc"));
}

TEST_F(ScreenTest, TicksNeedCheckBoxesAndRows) {
  int ticks = 0;
  screen.DG.onTick = [&ticks](int) { ++ticks; };
  screen.DG.AddRow({"1"});
  screen.DG.Tick(0, true);
  EXPECT_EQ(ticks, 0);
  screen.DG.SetHasChecks(true);
  screen.DG.Tick(0, true);
  screen.DG.Tick(0, true);
  screen.DG.Tick(5, true);
  EXPECT_EQ(ticks, 1);
}

}  // namespace
}  // namespace kaunter
