// Gold that is bought and sold: what is refused, what a failure leaves, and a long history at two
// desktops against a second model.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>

#include "cash/buy_gold_frm.h"
#include "cash/gold_figures.h"
#include "cash/sell_gold_frm.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

struct GoldDesk : AgreeingDesk {
  bool Ask(std::string_view title, std::string_view text) override {
    AgreeingDesk::Ask(title, text);
    if (meanwhile) std::exchange(meanwhile, nullptr)();
    return agrees;
  }
  void ShowModal(Screen&) override { ++asked_manager; }
  std::function<void()> meanwhile;  // what happens while the next question stands
  int asked_manager = 0;
};

class Gold : public ::testing::Test, protected LoanOffice {
 protected:
  Gold() {
    Allow(office.session);
    office.Run(
        "INSERT INTO CompMast (CompCode) VALUES ('KL');"
        "INSERT INTO CustMast (CustID,CompCode,CustName) VALUES ('KL0001','KL','Muthu')");
  }
  static void Allow(Session& session) {
    session.CurrentLevel = 4;
    session.AllowEdit = session.AllowDelete = true;
    session.MsgTitle = "Gold";
  }
  template <typename Form>
  std::unique_ptr<Form> Open(Session& session) {
    auto screen = std::make_unique<Form>(session, counter);
    screen->Load();
    return screen;
  }
  static void Put(TextBox& box, const std::string& text) {
    box.Enter();
    ASSERT_TRUE(box.Type(text)) << box.name();
    box.screen().Guard([&] { box.Leave(); });
  }
  static void Cell(Grid& grid, int row, const char* column, const std::string& text) {
    ASSERT_TRUE(grid.Edit(row, grid.ColumnIndex(column), text)) << column;
  }
  // What a press of the button asks and tells.
  std::string Press(Button& button) {
    counter.messages.clear();
    counter.questions.clear();
    button.screen().Guard([&] { button.Click(); });
    std::string all;
    for (const std::string& text : counter.questions) all += "?" + text + "|";
    for (const std::string& text : counter.messages) all += text.substr(6) + "|";
    return all;
  }
  // A purchase of two items; the first is sold.
  void Bought() {
    office.Run(
        "INSERT INTO GoldTransMast (LoanID,CompCode,CustID,TrxDate) VALUES ('B0001','HQ','HQ0001',"
        "'2024-01-05');"
        "INSERT INTO LoanCollateral (LoanID,SeqNo,GoldDesc,LoanAmt,SoldDate,SoldAmt) VALUES "
        "('B0001',1,'Ring',10,'2024-01-09',12);"
        "INSERT INTO LoanCollateral (LoanID,SeqNo,GoldDesc,LoanAmt) VALUES ('B0001',2,'Coin',20)");
  }

  GoldDesk counter;
};

TEST_F(Gold, WhatIsRefusedWritesNothingAndKeepsWhatIsTyped) {
  struct Case {
    std::string date, customer, amount, other, pay, said;
    int level = 4;
  };
  for (const Case& one : std::initializer_list<Case>{
           {"", "HQ0001", "5", "", "5", "Date is require|"},
           {"30-02-2024", "HQ0001", "5", "", "5", "Invalid Date|"},
           {"05-01-2024", "", "5", "", "5", "Customer ID is require|"},
           {"05-01-2024", "NOBODY", "5", "", "5", "Customer ID NOBODY not found|"},
           {"05-01-2024", "KL0001", "5", "", "5", "Customer ID KL0001 not found|", 1},
           {"05-01-2024", "HQ0001", "5", "", "", "Pay Amount is require|"},
           {"05-01-2024", "HQ0001", "5", "", "five", "Invalid Amount|"},
           {"05-01-2024", "HQ0001", "5", "", "-5", "Invalid Amount|"},
           {"05-01-2024", "HQ0001", "", "", "5", "Gold Detail is require|"},
           {"05-01-2024", "HQ0001", "five", "", "5", "Gold Detail is require|"},
           {"05-01-2024", "HQ0001", "-5", "", "5", "Gold Detail is require|"},
           {"05-01-2024", "HQ0001", "5", "less", "5", "Invalid Amount|"}}) {
    office.session.CurrentLevel = one.level;
    auto screen = Open<FrmBuyGold>(office.session);
    Put(screen->TrxDate, one.date);
    Put(screen->CustID, one.customer);
    Cell(screen->Vsd2, 0, "Amount", one.amount);
    Put(screen->OtherAmt, one.other);
    screen->PayAmt.Type(one.pay);
    EXPECT_EQ(Press(screen->SaveCmd), one.said);
    EXPECT_EQ(screen->CustID.text(), one.customer);
    EXPECT_TRUE(screen->PayAmt.text().starts_with(one.pay));
  }
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM GoldTransMast"), "0");
}

// Whose record it is: tests/app/other_company_test.cpp.
TEST_F(Gold, AStoredRecordIsChangedByRightOrByAManagersWord) {
  Bought();
  const std::string stored = Stored();
  office.session.AllowEdit = office.session.AllowDelete = false;
  auto screen = Open<FrmBuyGold>(office.session);
  Put(screen->LoanID, "b0001");
  const std::string no_edit = "User AMY Level not allow to edit or delete record";
  EXPECT_EQ(Press(screen->SaveCmd), no_edit + "|");
  EXPECT_EQ(Press(screen->CmdDelete), "You are not allow to delete record|");
  auto sale = Open<FrmSellGold>(office.session);
  Press(sale->CmdGo);
  Cell(sale->Vsd2, 0, "Sold Amount", "1");
  EXPECT_EQ(Press(sale->SaveCmd), no_edit + " (B0001 1 Ring)|");
  EXPECT_EQ(counter.asked_manager, 3);
  EXPECT_EQ(Stored(), stored);
}

TEST_F(Gold, AListThatAnotherDesktopWroteToFollowsOnceAndIsSavedThen) {
  Bought();
  auto sale = Open<FrmSellGold>(office.session);
  Press(sale->CmdGo);
  Cell(sale->Vsd2, 1, "Sold Date", "31-01-2024");
  Cell(sale->Vsd2, 1, "Sold Amount", "25");
  counter.meanwhile = [&] {
    office.Run("UPDATE LoanCollateral SET SoldDate='2024-01-30',SoldAmt=5*SeqNo");
  };
  EXPECT_EQ(
      Press(sale->SaveCmd),
      "?Confirm to save?|Another desktop has changed what is listed, and nothing was written:\n"
      "B0001 1 Ring is now 30-01-2024 5.00 \n"
      "B0001 2 Coin is stored as 30-01-2024 10.00 . What you typed is written in its place "
      "when you save again|");
  EXPECT_EQ(Press(sale->SaveCmd), "?Confirm to save?|Sell Gold Saved|");
  EXPECT_EQ(Lines("SELECT SoldDate,SoldAmt,SoldUserID FROM LoanCollateral"),
            "2024-01-30 5 AMY\n2024-01-31 25 AMY\n");
}

TEST_F(Gold, EachStatementThatFailsLeavesNoTrace) {
  auto screen = Open<FrmBuyGold>(office.session);
  Put(screen->CustID, "HQ0001");
  Cell(screen->Vsd2, 0, "Amount", "5");
  Put(screen->PayAmt, "5");
  // The failure behind the commit is the reading of what is stored now.
  const auto write = [&](Button& button) {
    EXPECT_GE(FailEverywhere([&] { Press(button); }), 6) << button.name();
    Put(screen->LoanID, "");
    Put(screen->LoanID, "B0001");
  };
  write(screen->SaveCmd);
  Cell(screen->Vsd2, 0, "Amount", "6");
  write(screen->SaveCmd);
  auto sale = Open<FrmSellGold>(office.session);
  Press(sale->CmdGo);
  Cell(sale->Vsd2, 0, "Sold Date", "31-01-2024");
  EXPECT_GE(FailEverywhere([&] { Press(sale->SaveCmd); }), 4);
  EXPECT_EQ(Lines("SELECT LoanAmt,SoldDate FROM LoanCollateral"), "6 2024-01-31\n");
  Put(screen->LoanID, "");
  Put(screen->LoanID, "B0001");
  write(screen->CmdDelete);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM LoanCollateral"), "0");
}

// --- a history

struct Item {
  int cost = 0, grams = 0, day = 0, brought = 0;  // day of the sale, in February; 0: in hand
  bool operator==(const Item&) const = default;
};
struct Purchase {
  std::string company;
  std::vector<Item> items;
  bool operator==(const Purchase&) const = default;
};
using Books = std::map<std::string, Purchase>;

// Its screens, and the books as it saw them last.
struct Desktop {
  Session session;
  std::unique_ptr<FrmBuyGold> buy;
  std::unique_ptr<FrmSellGold> sell;
  std::string open;
  Purchase seen;
  Books listed;
};

class GoldHistory : public Gold {
 protected:
  void Begin(Desktop& at) {
    at.session.AppPath = office.session.AppPath;
    at.session.CurrentUserID = "BOB";
    at.session.clock = office.session.clock;
    at.session.MainConn =
        OpenSqlite("Desk", office.folder.File("office.db"), false, at.session.clock);
    Allow(at.session);
    at.buy = Open<FrmBuyGold>(at.session);
    at.sell = Open<FrmSellGold>(at.session);
  }
  int Die(int sides) { return std::uniform_int_distribution<int>(0, sides - 1)(random); }

  void AddItem(Desktop& at, Purchase& to) {
    Grid& grid = at.buy->Vsd2;
    to.items.push_back({1 + Die(9000), 1 + Die(500)});
    Cell(grid, grid.RowCount() - 1, "Weight (g)", std::to_string(to.items.back().grams));
    Cell(grid, grid.RowCount() - 2, "Amount", std::to_string(to.items.back().cost));
  }
  void Buy(Desktop& at) {
    Press(at.buy->CmdClear);
    at.seen = {Die(2) ? "HQ" : "KL", {}};
    ASSERT_TRUE(at.buy->CompCode.Pick(at.seen.company));
    Put(at.buy->CustID, "HQ0001");
    for (int left = 1 + Die(3); left > 0; --left) AddItem(at, at.seen);
    at.buy->PayAmt.Enter();
    at.buy->PayAmt.Leave();
    EXPECT_EQ(Press(at.buy->SaveCmd), "?Confirm to save record?|Record Saved|");
    do {
      at.open = fmt::format("B{:04}", ++drawn[at.seen.company]);
    } while (books.contains(at.open));
    EXPECT_EQ(at.buy->LoanID.text(), at.open);
    books[at.open] = at.seen;
  }
  void Find(Desktop& at) {
    if (books.empty()) return;
    at.open = std::next(books.begin(), Die(static_cast<int>(books.size())))->first;
    at.seen = books[at.open];
    Press(at.buy->CmdClear);
    Put(at.buy->LoanID, at.open);
  }
  // False when the other desktop was there first; then all that is typed still stands.
  bool MayWrite(Desktop& at, Button& button) {
    const bool there = books.contains(at.open) && books[at.open] == at.seen;
    const int typed = at.buy->Vsd2.RowCount();
    const std::string said = Press(button);
    EXPECT_EQ(said.ends_with(" Saved|") || said.ends_with(" Deleted|"), there) << said;
    EXPECT_TRUE(there || at.buy->Vsd2.RowCount() == typed);
    return there;
  }
  void Edit(Desktop& at) {
    if (at.open.empty()) return;
    Purchase typed = at.seen;
    if (typed.items.size() > 1 && Die(2)) {
      const int row = Die(static_cast<int>(typed.items.size()));
      at.buy->Vsd2.SetCurrentRow(row);
      at.buy->Vsd2.Key("Delete");
      typed.items.erase(typed.items.begin() + row);
    } else {
      AddItem(at, typed);
    }
    for (Item& item : typed.items) item.day = item.brought = 0;
    if (!MayWrite(at, at.buy->SaveCmd)) return Find(at);
    at.seen = books[at.open] = typed;
  }
  void Delete(Desktop& at) {
    if (at.open.empty()) return;
    if (!MayWrite(at, at.buy->CmdDelete)) return Find(at);
    books.erase(std::exchange(at.open, {}));
  }
  void List(Desktop& at) {
    Put(at.sell->DateFrom, "01-01-2024");
    Press(at.sell->CmdGo);
    at.listed = books;
  }
  void Sell(Desktop& at) {
    Grid& grid = at.sell->Vsd2;
    if (grid.RowCount() == 0) return;
    Books typed = at.listed;
    const int row = Die(grid.RowCount());
    Item& item = typed[grid.Cell(row, 1)].items[std::stoul(grid.Cell(row, 2)) - 1];
    item.day = Die(4) ? 1 + Die(29) : 0;
    item.brought = item.day ? Die(9000) : 0;
    Cell(grid, row, "Sold Date", item.day ? fmt::format("{:02}-02-2024", item.day) : "");
    Cell(grid, row, "Sold Amount", std::to_string(item.brought));
    // Purchases and items that came since then are none of the list's.
    bool there = true;
    for (const auto& [number, was] : at.listed) {
      const Purchase now = books.contains(number) ? books[number] : Purchase();
      there = there && now.company == was.company && now.items.size() >= was.items.size() &&
              std::equal(was.items.begin(), was.items.end(), now.items.begin());
    }
    const std::string said = Press(at.sell->SaveCmd);
    EXPECT_EQ(said.ends_with("Sell Gold Saved|"), there) << said;
    if (!there) return List(at);
    at.listed = typed;
    for (const auto& [number, sold] : typed) {
      std::copy(sold.items.begin(), sold.items.end(), books[number].items.begin());
    }
  }

  void Compare() {
    std::string rows, hand, sold;
    std::map<std::string, std::array<int, 3>> in_hand;
    int items = 0, brought = 0, cost = 0;
    for (const auto& [number, purchase] : books) {
      for (const Item& item : purchase.items) {
        rows += fmt::format("{} {} {} {} {} {}\n", number, purchase.company, item.cost, item.grams,
                            item.day ? fmt::format("2024-02-{:02}", item.day) : "", item.brought);
        std::array<int, 3>& sum = in_hand[item.day ? "" : purchase.company];
        sum = {sum[0] + 1, sum[1] + item.grams, sum[2] + item.cost};
        if (item.day) items += 1, brought += item.brought, cost += item.cost;
      }
    }
    ASSERT_EQ(Lines("SELECT g.LoanID,g.CompCode,LoanAmt,Weight,SoldDate,SoldAmt FROM GoldTransMast "
                    "as g left join LoanCollateral as l on g.LoanID=l.LoanID ORDER BY "
                    "g.LoanID,SeqNo"),
              rows);
    in_hand.erase("");
    std::string expected;
    for (const auto& [company, sum] : in_hand) {
      expected += fmt::format("{} {} {} {}\n", company, sum[0], sum[1], sum[2]);
    }
    if (items > 0) expected += fmt::format("2024-2 {} {} {}\n", items, brought, cost);
    for (const GoldInHand& one : ReadGoldInHand(office.session)) {
      hand += fmt::format("{} {} {} {}\n", one.company, one.items, one.weight.ToText(),
                          one.cost.ToText());
    }
    for (const GoldMonth& one : ReadGoldResult(office.session)) {
      sold += fmt::format("{}-{} {} {} {}\n", one.year, one.month, one.items, one.sold.ToText(),
                          one.cost.ToText());
    }
    ASSERT_EQ(hand + sold, expected);
  }

  void Act(Desktop& at) {
    using Deed = void (GoldHistory::*)(Desktop&);
    constexpr Deed kDeeds[] = {&GoldHistory::Buy,  &GoldHistory::Find, &GoldHistory::Edit,
                               &GoldHistory::Edit, &GoldHistory::List, &GoldHistory::Sell,
                               &GoldHistory::Sell, &GoldHistory::Sell, &GoldHistory::Delete};
    (this->*kDeeds[Die(9)])(at);
  }

  Books books;
  std::map<std::string, int> drawn;
  std::mt19937 random;
};

TEST_F(GoldHistory, TwoDesktopsKeepWhatTheModelKeeps) {
  Desktop desktops[2];
  for (Desktop& desktop : desktops) Begin(desktop);
  for (int step = 0; step < 400 && !HasFailure(); ++step) {
    SCOPED_TRACE(step);
    Act(desktops[Die(2)]);
    Compare();
  }
}

}  // namespace
}  // namespace kaunter
