// Gold that is bought and sold: what is refused, what a failure leaves, and long histories at two
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
    office.session.AllowEdit = office.session.AllowDelete = true;
    office.session.MsgTitle = "Gold";
    office.Run(
        "INSERT INTO CompMast (CompCode) VALUES ('KL');"
        "INSERT INTO CustMast (CustID,CompCode,CustName) VALUES ('KL0001','KL','Muthu')");
  }
  template <typename Screen>
  std::unique_ptr<Screen> Open(Session& session) {
    auto screen = std::make_unique<Screen>(session, counter);
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
        "INSERT INTO GoldTransMast (LoanID,CompCode,CustID,TrxDate,TotAmt,PayAmt) VALUES "
        "('B0001','HQ','HQ0001','2024-01-05',30,30);"
        "INSERT INTO LoanCollateral "
        "(LoanID,SeqNo,CompCode,CustID,GoldDesc,LoanAmt,SoldDate,SoldAmt) "
        "VALUES ('B0001',1,'HQ','HQ0001','Ring',10,'2024-01-09',12);"
        "INSERT INTO LoanCollateral (LoanID,SeqNo,CompCode,CustID,GoldDesc,LoanAmt) VALUES "
        "('B0001',2,'HQ','HQ0001','Coin',20)");
  }
  std::string Kept() {
    return Lines("SELECT LoanID,CompCode,CustID,TrxDate,TotAmt,PayAmt FROM GoldTransMast") +
           Lines("SELECT LoanID,SeqNo,GoldDesc,LoanAmt,SoldDate,SoldAmt FROM LoanCollateral");
  }

  GoldDesk counter;
};

constexpr const char* kAsked = "?Confirm to save record?|";
constexpr const char* kLost =
    "?What is noted of these sales is lost when the purchase is saved again:\n1 Ring, 09-01-2024, "
    "12.00\n\nGo on ?|";

TEST_F(Gold, WhatIsRefusedWritesNothingAndKeepsWhatIsTyped) {
  Bought();
  const std::string kept = Kept();
  struct Case {
    std::string date, customer, item_amount, other, pay, said;
    bool clerk = false;
  };
  for (const Case& one : std::initializer_list<Case>{
           {"", "HQ0001", "5", "", "5", "Date is require|"},
           {"30-02-2024", "HQ0001", "5", "", "5", "Invalid Date|"},
           {"05-01-2024", "", "5", "", "5", "Customer ID is require|"},
           {"05-01-2024", "NOBODY", "5", "", "5", "Customer ID NOBODY not found|"},
           {"05-01-2024", "KL0001", "5", "", "5", "Customer ID KL0001 not found|", true},
           {"05-01-2024", "HQ0001", "5", "", "", "Pay Amount is require|"},
           {"05-01-2024", "HQ0001", "5", "", "five", "Invalid Amount|"},
           {"05-01-2024", "HQ0001", "5", "", "-5", "Invalid Amount|"},
           {"05-01-2024", "HQ0001", "", "", "5", "Gold Detail is require|"},
           {"05-01-2024", "HQ0001", "five", "", "5", "Gold Detail is require|"},
           {"05-01-2024", "HQ0001", "-5", "", "5", "Gold Detail is require|"},
           {"05-01-2024", "HQ0001", "9e9", "", "5", "Gold Detail is require|"},
           {"05-01-2024", "HQ0001", "5", "less", "5", "Invalid Amount|"}}) {
    office.session.CurrentLevel = one.clerk ? 1 : 4;
    auto screen = Open<FrmBuyGold>(office.session);
    Put(screen->TrxDate, one.date);
    Put(screen->CustID, one.customer);
    Cell(screen->Vsd2, 0, "Amount", one.item_amount);
    Put(screen->OtherAmt, one.other);
    screen->PayAmt.Type(one.pay);
    EXPECT_EQ(Press(screen->SaveCmd), one.said);
    EXPECT_EQ(screen->CustID.text(), one.customer);
    EXPECT_TRUE(screen->PayAmt.text().starts_with(one.pay));
    EXPECT_EQ(Kept(), kept);
  }
  // Whose purchase it is, and what may be done with it.
  struct Right {
    int level;
    std::string company;
    bool edit, remove;
    std::string opened, save, del;
  };
  const std::string no_edit = "User AMY Level not allow to edit or delete record|";
  for (const Right& one : std::initializer_list<Right>{
           {1, "KL", true, true, "", "Record not found|", ""},
           {1, "HQ", false, false, "B0001", no_edit, "You are not allow to delete record|"},
           {4, "KL", false, true, "B0001", no_edit, "?Confirm to Delete Buy Gold Record ?|"}}) {
    office.session.CurrentLevel = one.level;
    office.session.CurrentCompCode = one.company;
    office.session.AllowEdit = one.edit;
    office.session.AllowDelete = one.remove;
    auto screen = Open<FrmBuyGold>(office.session);
    Put(screen->LoanID, "b0001");
    EXPECT_EQ(screen->CmdDelete.enabled() ? screen->LoanID.text() : "", one.opened);
    EXPECT_EQ(Press(screen->SaveCmd), one.save);
    counter.agrees = false;
    EXPECT_EQ(Press(screen->CmdDelete), one.del);
    counter.agrees = true;
    auto sale = Open<FrmSellGold>(office.session);
    Put(sale->DateFrom, "01-01-2024");
    Press(sale->CmdGo);
    EXPECT_EQ(sale->Vsd2.RowCount(), one.opened.empty() ? 0 : 2);
    EXPECT_EQ(sale->HandDG.RowCount(), one.opened.empty() ? 0 : 1);
    if (one.edit) continue;
    Cell(sale->Vsd2, 0, "Sold Amount", "1");
    EXPECT_EQ(Press(sale->SaveCmd),
              "User AMY Level not allow to edit or delete record (B0001 1 Ring)|");
  }
  EXPECT_EQ(counter.asked_manager, 5);
  EXPECT_EQ(Kept(), kept);
}

// Other desktops write while the question stands; a list follows once and is saved then.
TEST_F(Gold, WhatAnotherDesktopDidMeanwhileStopsTheSave) {
  Bought();
  auto screen = Open<FrmBuyGold>(office.session);
  const auto load = [&] {
    Press(screen->CmdClear);
    Put(screen->LoanID, "B0001");
    Cell(screen->Vsd2, 1, "Amount", "21");
  };
  load();
  counter.meanwhile = [&] { office.Run("UPDATE LoanCollateral SET SoldAmt=13 WHERE SeqNo=1"); };
  EXPECT_TRUE(Press(screen->SaveCmd)
                  .starts_with(std::string(kAsked) + kLost +
                               "B0001 was changed or sold from on another desktop"));
  EXPECT_EQ(screen->Vsd2.Cell(1, 7), "21.00");
  EXPECT_EQ(Scalar("SELECT SUM(SoldAmt) FROM LoanCollateral"), "13");
  load();
  counter.meanwhile = [&] { office.Run("DELETE FROM GoldTransMast"); };
  EXPECT_NE(Press(screen->SaveCmd).find("|B0001 not found: it was deleted"), std::string::npos);
  EXPECT_EQ(screen->Vsd2.Cell(1, 7) + Scalar("SELECT SUM(LoanAmt) FROM LoanCollateral"), "21.0030");
  office.Run("DELETE FROM LoanCollateral");
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
  EXPECT_GE(FailEverywhere([&] { Press(screen->SaveCmd); }), 7);
  EXPECT_EQ(screen->LoanID.text(), "B0001");
  // The failure behind the commit was the reading of what is stored now.
  const auto reload = [&] {
    Put(screen->LoanID, "");
    Put(screen->LoanID, "B0001");
  };
  reload();
  Cell(screen->Vsd2, 0, "Amount", "6");
  EXPECT_GE(FailEverywhere([&] { Press(screen->SaveCmd); }), 7);
  auto sale = Open<FrmSellGold>(office.session);
  Press(sale->CmdGo);
  Cell(sale->Vsd2, 0, "Sold Date", "31-01-2024");
  EXPECT_GE(FailEverywhere([&] { Press(sale->SaveCmd); }), 4);
  EXPECT_EQ(Scalar("SELECT SoldDate FROM LoanCollateral"), "2024-01-31");
  reload();
  EXPECT_GE(FailEverywhere([&] { Press(screen->CmdDelete); }), 6);
  EXPECT_EQ(Kept(), "");
}

// --- histories

struct Item {
  std::string what;
  int cost = 0;  // sen, as all amounts here
  int grams = 0;
  int day = 0;  // of the sale, in February; 0: in hand
  int brought = 0;
  bool operator==(const Item&) const = default;
};
struct Purchase {
  std::string company;
  std::vector<Item> items;
  bool operator==(const Purchase&) const = default;
};
using Books = std::map<std::string, Purchase>;

std::string Ringgit(int sen) { return fmt::format("{}.{:02}", sen / 100, sen % 100); }

// A desktop: its screens, and the books as it saw them last.
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
  void Begin(Desktop& desktop) {
    Session& session = desktop.session;
    session.AppPath = office.session.AppPath;
    session.CurrentUserID = "BOB";
    session.CurrentLevel = 4;
    session.AllowEdit = session.AllowDelete = true;
    session.MsgTitle = "Gold";
    session.clock = office.session.clock;
    session.MainConn = OpenSqlite("Desk", office.folder.File("office.db"), false, session.clock);
    desktop.buy = Open<FrmBuyGold>(session);
    desktop.sell = Open<FrmSellGold>(session);
  }
  int Die(int sides) { return std::uniform_int_distribution<int>(0, sides - 1)(random); }
  Item NewItem() { return {fmt::format("Piece {}", ++pieces), 1 + Die(90000), 1 + Die(500)}; }
  void Type(FrmBuyGold& screen, const Item& item) {
    const int row = screen.Vsd2.RowCount() - 1;
    Cell(screen.Vsd2, row, "Description", item.what);
    Cell(screen.Vsd2, row, "Amount", Ringgit(item.cost));
    Cell(screen.Vsd2, row, "Weight (g)", std::to_string(item.grams));
  }

  void Buy(Desktop& at) {
    Press(at.buy->CmdClear);
    Purchase bought{Die(2) ? "HQ" : "KL", {}};
    ASSERT_TRUE(at.buy->CompCode.Pick(bought.company));
    Put(at.buy->CustID, "HQ0001");
    for (int left = 1 + Die(3); left > 0; --left) {
      bought.items.push_back(NewItem());
      Type(*at.buy, bought.items.back());
    }
    at.buy->PayAmt.Enter();
    at.buy->PayAmt.Leave();
    EXPECT_EQ(Press(at.buy->SaveCmd), std::string(kAsked) + "Record Saved|");
    std::string number;
    do {
      number = fmt::format("B{:04}", ++drawn[bought.company]);
    } while (books.contains(number));
    EXPECT_EQ(at.buy->LoanID.text(), number);
    at.open = number;
    at.seen = books[number] = bought;
  }
  void Find(Desktop& at) {
    if (books.empty()) return;
    at.open = std::next(books.begin(), Die(static_cast<int>(books.size())))->first;
    at.seen = books[at.open];
    Press(at.buy->CmdClear);
    Put(at.buy->LoanID, at.open);
  }
  // False when the other desktop was there first.
  bool MayWrite(Desktop& at, Button& button) {
    const bool there = books.contains(at.open) && books[at.open] == at.seen;
    const std::string said = Press(button);
    EXPECT_EQ(said.ends_with(" Saved|") || said.ends_with(" Deleted|"), there) << said;
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
      typed.items.push_back(NewItem());
      Type(*at.buy, typed.items.back());
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
    for (int left = 1 + Die(2); left > 0; --left) {
      const int row = Die(grid.RowCount());
      Item& item = typed[grid.Cell(row, 1)].items[std::stoul(grid.Cell(row, 2)) - 1];
      item.day = Die(4) ? 1 + Die(29) : 0;
      item.brought = item.day ? Die(90000) : 0;
      Cell(grid, row, "Sold Date", item.day ? fmt::format("{:02}-02-2024", item.day) : "");
      Cell(grid, row, "Sold Amount", Ringgit(item.brought));
    }
    // Purchases and items that came since then are none of the list's.
    bool there = true;
    for (const auto& [number, purchase] : at.listed) {
      const auto& now = books[number];
      const auto& was = purchase.items;
      there = there && now.company == purchase.company && now.items.size() >= was.size() &&
              std::equal(was.begin(), was.end(), now.items.begin());
      if (now.items.empty()) books.erase(number);
    }
    const std::string said = Press(at.sell->SaveCmd);
    EXPECT_EQ(said.ends_with("Sell Gold Saved|"), there) << said;
    if (!there) return List(at);
    at.listed = typed;
    for (const auto& [number, purchase] : typed) {
      std::copy(purchase.items.begin(), purchase.items.end(), books[number].items.begin());
    }
  }

  void Compare() {
    std::string rows;
    std::map<std::string, std::array<int, 3>> hand;
    std::array<int, 3> month{};
    for (const auto& [number, purchase] : books) {
      int line = 0;
      for (const Item& item : purchase.items) {
        rows += fmt::format("{} {} {} {} {} {} {}\n", number, purchase.company, ++line, item.what,
                            Money::FromText(Ringgit(item.cost)).ToText(),
                            item.day ? fmt::format("2024-02-{:02}", item.day) : "",
                            Money::FromText(Ringgit(item.brought)).ToText());
        std::array<int, 3>& sum = item.day ? month : hand[purchase.company];
        sum[0] += 1;
        sum[1] += item.cost;
        sum[2] += item.day ? item.brought : item.grams;
      }
    }
    ASSERT_EQ(Lines("SELECT g.LoanID,g.CompCode,SeqNo,GoldDesc,LoanAmt,SoldDate,SoldAmt FROM "
                    "GoldTransMast as g inner join LoanCollateral as l on g.LoanID=l.LoanID ORDER "
                    "BY g.LoanID,SeqNo"),
              rows);
    ASSERT_EQ(Scalar("SELECT COUNT(*) FROM GoldTransMast"), std::to_string(books.size()));
    const auto in_hand = ReadGoldInHand(office.session);
    ASSERT_EQ(in_hand.size(), hand.size());
    for (const GoldInHand& one : in_hand) {
      EXPECT_EQ(one.items, hand[one.company][0]);
      EXPECT_EQ(one.cost, Money::FromText(Ringgit(hand[one.company][1])));
      EXPECT_EQ(one.weight, Money::FromInteger(hand[one.company][2]));
    }
    const auto result = ReadGoldResult(office.session);
    ASSERT_EQ(result.size(), month[0] ? 1u : 0u);
    if (result.empty()) return;
    EXPECT_EQ(result[0].items, month[0]);
    EXPECT_EQ(result[0].sold - result[0].cost,
              Money::FromText(Ringgit(month[2])) - Money::FromText(Ringgit(month[1])));
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
  int pieces = 0;
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
