// The application as a script sees it.
#pragma once

#include "app/application.h"
#include "play/play_program.h"

namespace kaunter {

class ApplicationProgram : public PlayProgram {
 public:
  explicit ApplicationProgram(Application& application) : application_(application) {}

  int Start() override { return application_.Start(); }
  void SignIn() override { application_.SignInFirst(); }
  void Exit() override { application_.Exit(); }
  Screen& main_window() override { return application_.main(); }
  std::unique_ptr<Screen> Make(std::string_view screen_name) override {
    return application_.Make(screen_name);
  }
  std::vector<MenuLine> Menus() override;
  MenuState StateOf(std::string_view menu_name) override;
  void ChooseMenu(std::string_view menu_name) override;
  std::string Panel(int number) override { return application_.main().Panel(number); }
  Connection& main_connection() override { return application_.session().Main(); }
  void SetNow(const DateTime& now) override;
  void RequireRightToWrite(std::string_view sql) override;

 private:
  MenuState StateOf(const MenuEntry& entry);

  Application& application_;
};

}  // namespace kaunter
