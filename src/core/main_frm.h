// MainFrm: the main window as the logic sees it: menu dispatch, the two side lists, the figures of
// the office, the status line, the language switch, sign-in, sign-out and exit.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "core/home_figures.h"
#include "core/menu.h"
#include "core/session_screen.h"

namespace kaunter {

class MainFrm : public SessionScreen {
 public:
  MainFrm(Session& session, Desk& desk, std::vector<MenuEntry> entries,
          std::function<bool(std::string_view screen)> screen_exists);
  ~MainFrm() override;

  Label Label1{*this, "Label1"};  // the slogan
  Label Label4{*this, "Label4", {"Today's due", "今日到期"}};
  Grid LS1;
  Label Label5{*this, "Label5", {"Sijil Stamp no", "印花证书号码"}};
  Grid LS2;
  // The built-in logon opens every new office with a password that everybody can read: once the
  // office has an administrator of its own, its home page offers to shut it.
  Label KeyNotice{
      *this,
      "KeyNotice",
      {"The built-in logon ADMIN still opens this office.", "内置登录 ADMIN 仍可进入本系统。"}};
  Button EmptyKeyCmd{*this, "EmptyKeyCmd", {"Shut it", "关闭它"}};
  // Photos and documents of this PC that the office's server does not have yet.
  Label UnsentLBL{*this, "UnsentLBL"};
  Button SendFilesCmd{*this, "SendFilesCmd", {"Send again", "重新传送"}};
  // Where the program was started for another day than the real one.
  Label ClockLBL{*this, "ClockLBL"};
  // Where one of two servers is away.
  Label StandbyLBL{*this, "StandbyLBL"};

  MainMenu& menu() { return menu_; }
  HomeFigures& home() { return home_; }
  // Why an entry is greyed; one text for all whose screen is not built yet.
  static const Caption& NotBuiltText();

  // Chooses an entry that is reachable and enabled; false otherwise (nothing happens).
  bool ChooseMenu(std::string_view name);
  // Texts of the five status panels, from 1.
  const std::string& Panel(int number) const {
    return panels_.at(static_cast<std::size_t>(number - 1));
  }
  void SetPanel(int number, std::string text);
  // Called behind each sign-in, with the person and the home company in the session.
  std::function<void()> onSignedIn;

  // The steps of the start-up that belong to the window: menus hidden, language, status line,
  // slogan.
  void FillAtStart();
  // Opens the sign-in dialog as UserLoginMnu does, and the follow-up screen behind it for those who
  // have it.
  void SignIn();
  void RefreshMainLists();
  // Title and file of a report entry into the session, ReportFrm, and the program title back.
  void ShowReportFromMenu(std::string_view title, std::string_view file);

  bool RequestClose() override { return true; }
  // Log line, audit record "Log Out"; once.
  void Unload() override;
  // Rewrites panel 5 with the date kept from the start: it does not roll over while the program is
  // open. Looks after the files that are on their way to the server.
  void Tick() override;

 private:
  void OpenScreen(const MenuEntry& entry);
  void RunDirectListing(const MenuEntry& entry);
  void RunOwn(const MenuEntry& entry);
  void SignOut();
  void OpenAddress(const std::string& address, const Caption& why_not);
  void StartDailyBatch();
  void SwitchLanguage();
  void EditSlogan();
  void OpenListedLoan(const std::string& loan_id);
  void ShowStatus();
  void LookAfterFiles();
  void ApplyMenus();
  void QuietClosedLoans(const std::string& company, const std::string& today);
  bool BuiltInLogonIsOpen();
  void ShutBuiltInLogon();
  std::string ReportName(const MenuEntry& entry) const;

  MainMenu menu_;
  HomeFigures home_;
  std::function<bool(std::string_view)> screen_exists_;
  std::array<std::string, 5> panels_;
  std::string long_date_;
  bool files_begun_ = false;
};

}  // namespace kaunter
