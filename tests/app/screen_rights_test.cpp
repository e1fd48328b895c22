// A clerk with a single right presses everything she can reach, on every screen.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "app/catalogue.h"
#include "app/menu_table.h"
#include "core/main_frm.h"
#include "core/screen_rights.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

const std::set<std::string> kLoanScreens = {"NewLoanFrm", "UpdateSch", "LoanExtendfrm",
                                            "LoanAppFrm", "Drawdown"};
const std::set<std::string> kPaymentScreens = {
    "PaymentFrm",   "LoanSettlementfrm", "Settlementfrm", "Invoicefrm",     "LateIntfrm",
    "BatchLinkfrm", "SpecialRpt",        "ReceiptNoFrm",  "RecalcReceiptNo"};

// Opens what the gate lets through, yet does not run it.
class GateDesk : public SilentDesk {
 public:
  explicit GateDesk(Session& session) : session_(session) {}
  bool Ask(std::string_view, std::string_view) override { return true; }
  bool CanShow(std::string_view name) const override { return ScreenExists(name); }
  void Show(std::string_view name) override {
    const auto screen = MakeScreen(name, session_, *this);
    if (screen->MayOpen()) opened.emplace_back(name);
  }
  bool Refused() const {
    return std::ranges::any_of(messages, [](const std::string& text) {
      return text.find("is not among your") != std::string::npos;
    });
  }
  std::vector<std::string> opened;

 private:
  Session& session_;
};

class OneRight {
 public:
  OneRight(const MenuEntry& entry, int access_loan, int access_payment)
      : office(Office::State::patched),
        session(office.session),
        desk(session),
        main(session, desk, MenuTable(), ScreenExists) {
    session.CurrentLevel = 1;
    session.CurrentCompCode = "HQ";
    office.Run(fmt::format(
        "INSERT INTO UserMast (UserID,UserLevel,CompCode,AccessLoan,AccessPayment) VALUES "
        "('AMY','Clerk','HQ',{},{})",
        access_loan, access_payment));
    office.Run(
        "INSERT INTO CustMast (CustID,CustName,CompCode) VALUES ('HQ0001','Wong','HQ');"
        "INSERT INTO LoanMast "
        "(LoanID,CustID,CompCode,TrxDate,NextDueDate,LoanAmt,PayOutAmt,LoanBal,"
        "LoanTerm,InstallmentAmt,DragLoan,AgreementNo) VALUES ('HQ0001-001','HQ0001','HQ',"
        "'2023-12-31','2024-01-15',1000,1000,1000,'10',100,'0','');"
        "INSERT INTO SchMast "
        "(SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,Payment) "
        "VALUES (1,'HQ0001-001','HQ0001','2024-01-15',100,100,0,0);"
        "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,PayAmt) VALUES "
        "('HQ0001-001-001','HQ0001-001','HQ0001','HQ','2024-01-20',10);"
        "INSERT INTO DrawDownMast (SID,LoanID,CustID,DrawDownAmt) VALUES "
        "('DL0001','HQ0001-001','HQ0001',1000)");
    std::string name = entry.name;
    while (!name.empty()) {
      office.Run(fmt::format("INSERT INTO UserAccess (UserID,MenuList,MenuNo) VALUES ('AMY',{},1)",
                             QuoteStr(name)));
      name = main.menu().Find(name)->parent;
    }
    main.menu().ApplyRights(session);
  }

  // False for the few entries that a level or a name opens, not a right.
  bool sees(const MenuEntry& entry) { return main.menu().Reachable(*main.menu().Find(entry.name)); }

  // Everything but what saves and deletes. True when a button was refused: it should be grey.
  bool Press(Screen& screen) {
    bool refused = false;
    for (Control* control : screen.controls()) {
      if (!control->Reachable() || screen.closed()) continue;
      if (auto* button = dynamic_cast<Button*>(control)) {
        if (button->role() != ButtonRole::plain) continue;
        desk.messages.clear();
        screen.Guard([&] { button->Click(); });
        refused = refused || desk.Refused();
      } else if (auto* grid = dynamic_cast<Grid*>(control)) {
        for (int row = 0; row < grid->RowCount(); ++row) {
          grid->Select(row);
          screen.Guard([&] { grid->Open(row, 0); });
        }
      } else if (control->type() == ControlType::label && control->onClick) {
        screen.Guard([&] { control->onClick(); });
      }
    }
    return refused;
  }

  std::unique_ptr<Screen> Open(const MenuEntry& entry) {
    session.MsgTitle = entry.title;
    session.CallerTag = entry.command;
    session.HandOverCustID = "HQ0001";
    session.HandOverLoanID = "HQ0001-001";
    auto screen = MakeScreen(entry.target, session, desk);
    if (!screen->MayOpen()) return nullptr;
    screen->Guard([&] { screen->Load(); });
    for (const char* name : {"LoanID", "HisLoanID", "CustID"}) {
      auto* box = dynamic_cast<TextBox*>(screen->Find(name));
      if (box == nullptr || !box->empty() || !box->Editable()) continue;
      screen->Guard([&] {
        box->Enter();
        box->Type(std::string_view(name) == "CustID" ? "HQ0001" : "HQ0001-001");
        box->Leave();
      });
    }
    return screen;
  }

  Office office;
  Session& session;
  GateDesk desk;
  MainFrm main;
};

TEST(ScreenRights, OneMenuRightOpensItsOwnScreenFromEverywhere) {
  const std::vector<MenuEntry> table = MenuTable();
  std::set<std::string> with_entry;
  for (const MenuEntry& entry : table) with_entry.insert(entry.target);
  // A save opens it where an account is missing.
  with_entry.erase("LinkAccSetupfrm");
  std::set<std::string> seen;
  for (const MenuEntry& entry : table) {
    if (entry.action != MenuAction::screen || !ScreenExists(entry.target)) continue;
    SCOPED_TRACE(entry.name);
    OneRight clerk(entry, 1, 1);
    if (!clerk.sees(entry)) continue;
    clerk.main.Guard([&] { clerk.main.RefreshMainLists(); });
    EXPECT_FALSE(clerk.Press(clerk.main));
    // A document of a supplier is behind the door of its supplier.
    EXPECT_EQ(WhyClosed(clerk.session, "SuppTransfrm", "T0001").has_value(),
              entry.target != "Supplierfrm");
    const auto screen = clerk.Open(entry);
    ASSERT_NE(screen, nullptr);
    EXPECT_FALSE(clerk.Press(*screen));
    for (const std::string& name : clerk.desk.opened) {
      seen.insert(name);
      EXPECT_TRUE(name == entry.target || !with_entry.contains(name)) << name;
    }
  }
  // The walk did come to doors.
  EXPECT_TRUE(seen.contains("Drawdown"));
  EXPECT_TRUE(seen.contains("NewLoanFrm"));
}

TEST(ScreenRights, LoanAndPaymentScreensAskTheirFlagAtEachOpening) {
  for (const MenuEntry& entry : MenuTable()) {
    if (entry.action != MenuAction::screen || !ScreenExists(entry.target)) continue;
    for (const auto& [loan, payment] : {std::pair(0, 1), std::pair(1, 0), std::pair(2, 2)}) {
      SCOPED_TRACE(fmt::format("{} {} {}", entry.name, loan, payment));
      OneRight clerk(entry, loan, payment);
      if (!clerk.sees(entry)) continue;
      const bool closed = (loan != 1 && kLoanScreens.contains(entry.target)) ||
                          (payment != 1 && kPaymentScreens.contains(entry.target));
      if (const auto screen = clerk.Open(entry)) {
        EXPECT_FALSE(closed);
        EXPECT_FALSE(clerk.Press(*screen));
      } else {
        EXPECT_TRUE(closed && clerk.desk.Refused());
      }
      for (const std::string& name : clerk.desk.opened) {
        EXPECT_FALSE(loan != 1 && kLoanScreens.contains(name)) << name;
        EXPECT_FALSE(payment != 1 && kPaymentScreens.contains(name)) << name;
      }
      clerk.office.Run("UPDATE UserMast SET AccessLoan=1,AccessPayment=1");
      EXPECT_NE(clerk.Open(entry), nullptr);
      // The built-in logon has no row.
      clerk.office.Run("DELETE FROM UserMast");
      clerk.session.CurrentLevel = 5;
      EXPECT_NE(clerk.Open(entry), nullptr);
    }
  }
}

}  // namespace
}  // namespace kaunter
