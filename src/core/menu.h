// The main menu as data: every entry with its captions, its group, and what choosing it does. The
// table itself is assembled at the top of the house (app/menu_table); here stand the type and the
// rule of visibility.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "screen/caption.h"

namespace kaunter {

class Session;

enum class MenuAction {
  group,        // opens a submenu
  screen,       // sets MsgTitle and CallerTag and opens a screen
  report,       // sets MsgTitle and ReportFile and opens ReportFrm
  direct_list,  // runs a code-table listing straight to the preview
  own,          // a handler of its own in MainFrm
};

struct MenuEntry {
  std::string name;    // "NewCustMnu"
  Caption caption;     // with & accelerators
  std::string parent;  // name of the group; "" for a top menu
  MenuAction action = MenuAction::group;
  std::string title;            // MsgTitle, in English whatever the language
  std::string command;          // CallerTag
  std::string target;           // screen name, or report file
  bool chinese_report = false;  // the report has a variant <Name>C.rpt
  bool needs_right = true;      // false: no row in the rights table, always there
  // State, set by MainFrm.
  bool visible = true;
  bool enabled = true;  // false: its screen is not built yet, or switched off
};

class MainMenu {
 public:
  explicit MainMenu(std::vector<MenuEntry> entries) : entries_(std::move(entries)) {}
  const std::vector<MenuEntry>& entries() const { return entries_; }
  std::vector<MenuEntry>& entries() { return entries_; }
  void HideLink();
  MenuEntry* Find(std::string_view name);  // without regard to case; null when unknown

  // Nobody signed in: only System2Mnu.
  void HideAll();
  // The entries that the signed-in user may see: all for ADMIN, else those of the user's rights
  // rows, with the exceptions that are settled in code. Reads UserAccess and the home company.
  void ApplyRights(Session& session);
  // Visible together with all its groups.
  bool Reachable(const MenuEntry& entry) const;

 private:
  std::vector<MenuEntry> entries_;
};

// A caption for running text: without its keyboard mark, which Chinese carries as "(&C)".
std::string PlainCaption(const Caption& caption, bool chinese);

// Path of the companion program that posts late charges.
std::string DailyBatchProgram(const Session& session);

}  // namespace kaunter
