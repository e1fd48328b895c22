// The language of kaunter-play as text: lines, words, quotes, comments. What a command means stands
// in the runner.
#pragma once

#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

// What cannot be done, or cannot be read: it stops the script.
class ScriptError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct ScriptCommand {
  int line = 0;
  std::vector<std::string> words;  // the command's name first; never empty
};

// The words of one line; none for an empty line or a comment. `\n` inside quotes becomes CR LF, the
// line break of a box. Throws ScriptError for a quote that is not closed, an unknown escape, or
// text that touches a quote.
std::vector<std::string> SplitScriptLine(std::string_view line);

// Reads a script line by line, so that a person may type one.
class ScriptReader {
 public:
  explicit ScriptReader(std::istream& input) : input_(input) {}
  // The next command, nothing at the end. Throws ScriptError for a line that does not parse; line()
  // is then its number.
  std::optional<ScriptCommand> Next();
  // The lines up to "end", without blank ones and comments. Throws ScriptError when the script ends
  // before it.
  std::vector<std::string> ReadBlock();
  int line() const { return line_; }

 private:
  bool ReadLine(std::string& line);

  std::istream& input_;
  int line_ = 0;
};

// The text with line breaks of any kind as the two characters \n, so that it stays on one line.
std::string OneLine(std::string_view text);
// Line breaks of any kind brought to one form: what a comparison looks at.
std::string SameBreaks(std::string_view text);

}  // namespace kaunter
