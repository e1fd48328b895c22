// Application: the whole program behind a face: session, start-up, the catalogue of screens, exit.
//
//   Application application(options, desk);
//   if (int status = application.Start()) return status;   // told through the desk already
//   ... the face shows application.main() ...
//   application.SignInFirst();                              // the sign-in dialog, as the program
//   opens it
//   ... until the main window is closed ...
//   application.Exit();
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/main_frm.h"
#include "core/session.h"
#include "screen/desk.h"
#include "screen/screen.h"

namespace kaunter {

struct ApplicationOptions {
  std::string app_path;  // folder of logs, Photo, MenuList.ini and the office's own files; "" for
                         // the one that core/places.h gives
  std::string database;  // embedded database file that replaces the data source; made when missing
  std::string settings;  // local settings file; "" for the user's own
  std::string
      now;  // "yyyy-mm-dd hh:mm:ss": sets the server's and the PC's clock; "" for the real one
  bool now_needs_right = false;  // a set clock is for administrators and for practice
  std::string
      trace;  // file that takes every statement; "" for none (the local settings may name one)
};

class Application {
 public:
  Application(ApplicationOptions options, Desk& desk);
  ~Application();

  // The assistant of the first start, where nothing says yet which office this PC works on; not
  // where the command line names one. False when the person wants no office now.
  bool FirstStart();
  // The start-up order up to the main window. 0 when the window is ready; else the exit status of
  // the program, and whatever was wrong has been told in one message.
  int Start();
  // Opens the sign-in dialog, modally.
  void SignInFirst();
  // Writes the exit line and the audit record and closes the connections; once, whoever calls it.
  void Exit();

  MainFrm& main() { return *main_; }
  Session& session() { return *session_; }
  // A new screen of the catalogue by name (without regard to case), its language and failure
  // handling set; null when it is unknown or not built yet.
  std::unique_ptr<Screen> Make(std::string_view screen_name);
  std::vector<std::string> ScreenNames() const;

 private:
  ApplicationOptions options_;
  Desk& desk_;
  std::unique_ptr<Session> session_;
  std::unique_ptr<MainFrm> main_;
  bool exited_ = false;
};

}  // namespace kaunter
