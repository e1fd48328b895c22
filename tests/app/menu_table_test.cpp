#include "app/menu_table.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "app/catalogue.h"

namespace kaunter {
namespace {

TEST(MenuTable, EveryEntryHasItsGroupItsCaptionsAndSomethingToDo) {
  const auto entries = MenuTable();
  std::set<std::string> names;
  std::set<std::string> groups;
  for (const MenuEntry& entry : entries) {
    EXPECT_TRUE(names.insert(entry.name).second) << entry.name << " stands twice";
    EXPECT_FALSE(entry.caption.english.empty() || entry.caption.chinese.empty()) << entry.name;
    // A group stands before its entries: the faces build the menus in one pass.
    EXPECT_TRUE(entry.parent.empty() || groups.contains(entry.parent)) << entry.name;
    if (entry.action == MenuAction::group) groups.insert(entry.name);
    const bool opens = entry.action != MenuAction::group && entry.action != MenuAction::own;
    EXPECT_EQ(opens, !entry.target.empty()) << entry.name;
  }
}

TEST(MenuTable, NobodyIsUnableToSignOutOrExit) {
  for (const MenuEntry& entry : MenuTable()) {
    const std::set<std::string> always = {"UserLoginMnu", "UserLogoutMnu", "ExitMnu",
                                          "ChineseLan",   "WebSiteMnu",    "SystemMnu",
                                          "System2Mnu",   "Exits2Mnu",     "SoftwareUpdateMnu",
                                          "HelpMnu",      "AboutMnu"};
    EXPECT_EQ(entry.needs_right, !always.contains(entry.name)) << entry.name;
  }
}

TEST(Catalogue, EveryScreenOfItIsOpenedByTheMenuOrByOtherScreens) {
  // Those that other screens open.
  std::set<std::string> targets = {"PopupFrm",          "Drawdown",     "BatchListfrm",
                                   "LoanLateChargefrm", "SuppTransfrm", "ECustMast",
                                   "PhotoBrowseFrm"};
  for (const MenuEntry& entry : MenuTable()) {
    targets.insert(entry.action == MenuAction::report ? "ReportFrm" : entry.target);
  }
  for (const std::string& name : ScreenNames()) EXPECT_TRUE(targets.contains(name)) << name;
}

}  // namespace
}  // namespace kaunter
