#include "reports/report_words.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

namespace kaunter {
namespace {

class Splitter {
 public:
  explicit Splitter(std::string_view line) : line_(line) {}

  std::vector<ReportWord> Run() {
    std::vector<ReportWord> words;
    for (at_ = 0; at_ < line_.size();) {
      if (Blank(line_[at_])) {
        ++at_;
      } else {
        words.push_back(line_[at_] == '"' ? Quoted() : Bare());
      }
    }
    return words;
  }

 private:
  static bool Blank(char c) { return c == ' ' || c == '\t'; }

  ReportWord Quoted() {
    const auto end = line_.find('"', at_ + 1);
    if (end == std::string_view::npos) throw std::invalid_argument("a text is not closed with \"");
    ReportWord word{std::string(line_.substr(at_ + 1, end - at_ - 1)), true};
    at_ = end + 1;
    return word;
  }

  ReportWord Bare() {
    const std::size_t begin = at_;
    int open = 0;
    while (at_ < line_.size() && line_[at_] != '"' && (open > 0 || !Blank(line_[at_]))) {
      if (line_[at_] == '(') ++open;
      if (line_[at_] == ')') --open;
      ++at_;
    }
    if (open > 0) throw std::invalid_argument("a bracket is not closed with )");
    return {std::string(line_.substr(begin, at_ - begin)), false};
  }

  std::string_view line_;
  std::size_t at_ = 0;
};

}  // namespace

std::string FileLine::Told() const {
  return number > 0 ? fmt::format("Report file {}, line {}", file, number)
                    : fmt::format("Report file {}", file);
}

std::vector<ReportWord> ReportWords(std::string_view line, bool chinese) {
  const std::vector<ReportWord> all = Splitter(line).Run();
  std::vector<ReportWord> words;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const bool pair = all[i].quoted && i + 2 < all.size() && !all[i + 1].quoted &&
                      all[i + 1].text == "/" && all[i + 2].quoted;
    if (pair) {
      words.push_back(chinese ? all[i + 2] : all[i]);
      i += 2;
    } else if (!all[i].quoted && all[i].text == "/") {
      throw std::invalid_argument("a / stands between the English and the Chinese text");
    } else {
      words.push_back(all[i]);
    }
  }
  return words;
}

}  // namespace kaunter
