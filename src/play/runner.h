// Runner: reads a script and does what it says, as a person before the screen would.
//
// A screen that opens takes the word: the commands that follow act on it, and the command that
// opened it is done when it is closed.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "play/expectations.h"
#include "play/hand.h"
#include "play/play_context.h"

namespace kaunter {

class Runner : public PlayHost {
 public:
  static constexpr int kHeld = 0;
  static constexpr int kExpectFailed = 1;
  static constexpr int kStopped = 2;

  // Output is the desk's; troubles go to `troubles` as "line N: ...".
  Runner(PlayProgram& program, PlayDesk& desk, ScriptReader& reader, std::ostream& out,
         std::ostream& troubles);
  ~Runner() override;

  // Starts the program, runs the script to its end, closes what is open and ends the program. Gives
  // the exit status.
  int Run();

  void RunUntilClosed(Screen& screen) override;
  std::unique_ptr<Screen> MakeScreen(std::string_view name) override;
  void StopScript(const std::string& why) override;
  bool stopped() const override { return stopped_; }

 private:
  using Words = std::vector<std::string>;
  struct Rule : CommandRule {
    void (Runner::*run)(const Words& arguments);
  };
  static const std::vector<Rule>& Rules();

  // Runs the next command; false at the end of the script.
  bool Step();
  std::optional<ScriptCommand> NextCommand();
  void Execute(const ScriptCommand& command);
  void Trouble(int line, const std::string& text);
  void ClosePersonally(Screen& screen);
  void RequireMainOnTop() const;
  Grid& GoToGrid(const std::string& name);

  void SignIn(const Words& arguments);
  void Menu(const Words& arguments);
  void Menus(const Words& arguments);
  void Set(const Words& arguments);
  void Type(const Words& arguments);
  void Leave(const Words& arguments);
  void Click(const Words& arguments);
  void Select(const Words& arguments);
  void Drop(const Words& arguments);
  void Open(const Words& arguments);
  void Cell(const Words& arguments);
  void Tick(const Words& arguments);
  void Key(const Words& arguments);
  void Answer(const Words& arguments);
  void Sql(const Words& arguments);
  void Show(const Words& arguments);
  void Messages(const Words& arguments);
  void Describe(const Words& arguments);
  void Now(const Words& arguments);
  void Close(const Words& arguments);

  PlayContext context_;
  Hand hand_;
  Expectations expectations_;
  std::ostream& troubles_;
  std::optional<ScriptCommand> injected_;  // done before the next line of the script
  int line_ = 0;                           // of the command that runs
  int status_ = kHeld;
  bool stopped_ = false;
  bool finished_ = false;  // no line is left
  int closed_at_end_ = 0;
};

}  // namespace kaunter
