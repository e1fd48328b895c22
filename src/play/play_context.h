// What every command of a script works with, and the look-ups that they share. A look-up that finds
// nothing throws ScriptError with the name and the place.
#pragma once

#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "play/play_desk.h"
#include "play/play_program.h"
#include "play/script.h"

namespace kaunter {

// An expectation that does not hold: the script goes on.
class ExpectFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// One command of the language: how many arguments it takes and how it is written.
struct CommandRule {
  std::string_view name;
  std::size_t fewest = 0;
  std::size_t most = 0;
  std::string_view usage;
};
inline constexpr std::size_t kAnyNumber = 1000000;

// Throws ScriptError when `given` arguments do not fit the rule.
void CheckArguments(const CommandRule& rule, std::size_t given);

class PlayContext {
 public:
  PlayContext(PlayProgram& program, PlayDesk& desk, ScriptReader& reader, std::ostream& out)
      : program(program), desk(desk), reader(reader), out(out) {}

  PlayProgram& program;
  PlayDesk& desk;
  ScriptReader& reader;
  std::ostream& out;

  // The screen on top: the last opened one, else the main window.
  Screen& Top() const;
  Control& FindControl(std::string_view name) const;
  Grid& FindGrid(std::string_view name) const;
  // A column by number from 0 or by header text.
  static int FindColumn(const Grid& grid, std::string_view column);
  // A row by number from 1, given as from 0; it must be there.
  static int FindRow(const Grid& grid, std::string_view row);
  // The rows of a statement that the script brings along.
  Recordset Ask(const std::string& sql) const;
};

// A whole number that is not negative.
int ParseCount(std::string_view text, std::string_view what);
// "1" or "0".
bool ParseSwitch(std::string_view text, std::string_view what);

}  // namespace kaunter
