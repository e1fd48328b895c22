// A small program for the tests of the language: a sign-in dialog, one screen with a control of
// every kind, a picker, a menu, and a database that knows a handful of statements.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "play/play_program.h"

namespace kaunter {

class SampleDatabase : public Connection {
 public:
  SampleDatabase() : Connection("MainConn") {}
  bool InTransaction() const override { return false; }
  std::string EngineName() const override { return "sample"; }
  DateTime now{2024, 1, 31, 9, 0, 0};

 protected:
  std::int64_t DoExecute(std::string_view) override { return 0; }
  Recordset DoQuery(std::string_view sql) override;
  Recordset DoQueryOnly(std::string_view sql) override { return DoQuery(sql); }
  void DoBegin() override {}
  void DoBeginReading() override {}
  void DoCommit() override {}
  void DoRollback() override {}
};

class SampleProgram : public PlayProgram {
 public:
  explicit SampleProgram(Desk& desk);
  ~SampleProgram() override;

  int Start() override;
  void SignIn() override;
  void Exit() override;
  Screen& main_window() override { return *main_; }
  std::unique_ptr<Screen> Make(std::string_view screen_name) override;
  std::vector<MenuLine> Menus() override;
  MenuState StateOf(std::string_view menu_name) override;
  void ChooseMenu(std::string_view menu_name) override;
  std::string Panel(int number) override { return "panel " + std::to_string(number); }
  Connection& main_connection() override { return database_; }
  void RequireRightToWrite(std::string_view) override {}
  void SetNow(const DateTime& now) override { database_.now = now; }

  int start_status = 0;
  bool sign_in_at_start = false;
  bool signed_in = false;
  bool sign_in_works = true;

 private:
  Desk& desk_;
  std::unique_ptr<Screen> main_;
  SampleDatabase database_;
};

}  // namespace kaunter
