// PlayProgram: the program that a script works on, as far as the language can reach it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/date_time.h"
#include "platform/sql/connection.h"
#include "screen/screen.h"

namespace kaunter {

enum class MenuState { unknown, hidden, greyed, shown };

struct MenuLine {
  std::string name;
  std::string caption;  // in the language in force, without keyboard marks
  MenuState state = MenuState::shown;
};

class PlayProgram {
 public:
  virtual ~PlayProgram() = default;

  // The start up to the main window: 0, or what went wrong has been told through the desk.
  virtual int Start() = 0;
  // Opens the sign-in dialog over the main window and returns when it is closed.
  virtual void SignIn() = 0;
  // The last act of the program, behind the closing of its main window.
  virtual void Exit() = 0;

  virtual Screen& main_window() = 0;
  virtual std::unique_ptr<Screen> Make(std::string_view screen_name) = 0;
  virtual std::vector<MenuLine> Menus() = 0;
  virtual MenuState StateOf(std::string_view menu_name) = 0;
  // Chooses an entry that is shown; screens that it opens run before this returns.
  virtual void ChooseMenu(std::string_view menu_name) = 0;
  // Text of a panel of the status line, from 1.
  virtual std::string Panel(int number) = 0;

  virtual Connection& main_connection() = 0;
  // Refuses (ScriptError) a statement that writes where this person may not, and logs it otherwise.
  virtual void RequireRightToWrite(std::string_view sql) = 0;
  // Sets the clock of the server and of the PC.
  virtual void SetNow(const DateTime& now) = 0;
};

}  // namespace kaunter
