#include "play/script.h"

#include <algorithm>

namespace kaunter {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// One line, read from left to right.
class LineScanner {
 public:
  explicit LineScanner(std::string_view line) : rest_(line) {}

  std::vector<std::string> Words() {
    while (true) {
      while (!rest_.empty() && IsBlank(rest_.front())) rest_.remove_prefix(1);
      if (rest_.empty() || AtComment()) return std::move(words_);
      words_.push_back(rest_.front() == '"' ? Quoted() : Plain());
    }
  }

 private:
  // "#" begins a comment where a word could begin, but "set Bank #2" names an entry by its number.
  bool AtComment() const {
    if (rest_.front() != '#') return false;
    const bool list_text = words_.size() == 2 && (words_[0] == "set" || words_[0] == "type");
    if (!list_text) return true;
    std::string_view digits = rest_.substr(1);
    digits = digits.substr(0, digits.find_first_of(" \t"));
    return digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos;
  }

  std::string Plain() {
    std::string word;
    while (!rest_.empty() && !IsBlank(rest_.front())) {
      if (rest_.front() == '"') {
        throw ScriptError("a quote inside the word " + word +
                          ": the whole argument stands in quotes, with \\\" for a quote in it");
      }
      word += rest_.front();
      rest_.remove_prefix(1);
    }
    return word;
  }

  std::string Quoted() {
    std::string word;
    rest_.remove_prefix(1);
    while (!rest_.empty() && rest_.front() != '"') {
      char c = rest_.front();
      rest_.remove_prefix(1);
      if (c == '\\') {
        AddEscape(word);
      } else {
        word += c;
      }
    }
    if (rest_.empty()) throw ScriptError("a quote is not closed");
    rest_.remove_prefix(1);
    if (!rest_.empty() && !IsBlank(rest_.front())) {
      throw ScriptError("text touches the closing quote of \"" + word + "\": a blank is missing");
    }
    return word;
  }

  void AddEscape(std::string& word) {
    const char c = rest_.empty() ? '\0' : rest_.front();
    switch (c) {
      case '"':
      case '\\':
        word += c;
        break;
      case 'n':
        word += "\r\n";
        break;
      case '\0':
        throw ScriptError("a quote is not closed");
      default:
        throw ScriptError(std::string("unknown escape \\") + c +
                          " inside quotes: \\\", \\\\ and \\n are known");
    }
    rest_.remove_prefix(1);
  }

  std::string_view rest_;
  std::vector<std::string> words_;
};

std::string WithBreaks(std::string_view text, std::string_view line_break) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' || text[i] == '\n') {
      if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
      out += line_break;
    } else {
      out += text[i];
    }
  }
  return out;
}

}  // namespace

std::vector<std::string> SplitScriptLine(std::string_view line) {
  return LineScanner(line).Words();
}

bool ScriptReader::ReadLine(std::string& line) {
  if (!std::getline(input_, line)) return false;
  ++line_;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  if (line_ == 1 && line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
  return true;
}

std::optional<ScriptCommand> ScriptReader::Next() {
  std::string line;
  while (ReadLine(line)) {
    std::vector<std::string> words = SplitScriptLine(line);
    if (!words.empty()) return ScriptCommand{line_, std::move(words)};
  }
  return std::nullopt;
}

std::vector<std::string> ScriptReader::ReadBlock() {
  std::vector<std::string> lines;
  const int first = line_;
  std::string line;
  while (ReadLine(line)) {
    const std::string_view text = Trimmed(line);
    if (text == "end") return lines;
    if (!text.empty() && text.front() != '#') lines.emplace_back(text);
  }
  throw ScriptError("the lines that begin behind line " + std::to_string(first) +
                    " have no \"end\"");
}

std::string OneLine(std::string_view text) { return WithBreaks(text, "\\n"); }

std::string SameBreaks(std::string_view text) { return WithBreaks(text, "\n"); }

}  // namespace kaunter
