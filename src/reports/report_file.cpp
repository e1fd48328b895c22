#include "reports/report_file.h"

#include <fmt/format.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "core/values.h"

namespace kaunter {
namespace {

std::vector<ReportWord> Words(std::string_view line, bool& closed) {
  std::vector<ReportWord> words;
  closed = true;
  for (std::size_t i = 0; i < line.size();) {
    if (line[i] == ' ' || line[i] == '\t') {
      ++i;
      continue;
    }
    ReportWord word;
    if (line[i] == '"') {
      const auto end = line.find('"', i + 1);
      if (end == std::string_view::npos) closed = false;
      word = {std::string(line.substr(i + 1, end == std::string_view::npos ? end : end - i - 1)),
              true};
      i = end == std::string_view::npos ? line.size() : end + 1;
    } else {
      const auto end = line.find_first_of(" \t", i);
      word.text = line.substr(i, end == std::string_view::npos ? end : end - i);
      i = end == std::string_view::npos ? line.size() : end;
    }
    words.push_back(std::move(word));
  }
  return words;
}

std::optional<CellKind> KindOf(std::string_view word) {
  static constexpr std::pair<std::string_view, CellKind> kKinds[] = {{"text", CellKind::text},
                                                                     {"integer", CellKind::integer},
                                                                     {"money", CellKind::money},
                                                                     {"rate", CellKind::rate},
                                                                     {"date", CellKind::date}};
  for (const auto& [name, kind] : kKinds) {
    if (name == word) return kind;
  }
  return std::nullopt;
}

class FileParser {
 public:
  FileParser(std::string_view text, const std::string& path) : lines_(std::string(text)) {
    file_.path = path;
  }

  ReportFile Run() {
    std::string line;
    while (Next(line)) {
      const std::string text = Trim(line);
      if (!text.empty() && text[0] != '#') Line(text);
    }
    if (file_.query.empty()) Refuse("the report has no query");
    FinishLetter();
    if (file_.columns.empty() && !file_.IsLetter()) Refuse("the report has no column");
    if (file_.query.find("{selection}") == std::string::npos) {
      Refuse("the query has no {selection} where the condition goes");
    }
    return std::move(file_);
  }

 private:
  [[noreturn]] void Refuse(const std::string& what) const {
    throw std::runtime_error(
        fmt::format("Report file {}, line {}: {}.", file_.path, line_number_, what));
  }

  bool Next(std::string& line) {
    if (!std::getline(lines_, line)) return false;
    ++line_number_;
    return true;
  }

  void FinishLetter() {
    if (!letter_.seen()) {
      if (letter_.first_item_line() == 0) return;
      line_number_ = letter_.first_item_line();
      Refuse("this line belongs to a letter; a line \"letter\" and a column must say of what");
    }
    if (list_line_ > 0) {
      line_number_ = list_line_;
      Refuse("\"field\", \"group\" and \"note\" belong to a list, and this is a letter");
    }
    try {
      file_.letter = letter_.Finish(!file_.columns.empty());
    } catch (const std::invalid_argument& fault) {
      Refuse(fault.what());
    }
  }

  bool LetterLine() {
    try {
      return letter_.Take(words_, line_number_);
    } catch (const std::invalid_argument& fault) {
      Refuse(fault.what());
    }
  }

  void Line(const std::string& text) {
    bool closed = true;
    words_ = Words(text, closed);
    if (!closed) Refuse("a text is not closed with \"");
    const std::string& key = words_[0].text;
    if (key == "field" || key == "group" || key == "note") list_line_ = line_number_;
    if (key == "paper") {
      Paper();
    } else if (key == "title") {
      Need(1);
      file_.title = Word(1);
    } else if (key == "field") {
      Need(2);
      file_.fields.push_back({Word(1), Word(2)});
    } else if (key == "query") {
      Query();
    } else if (key == "order") {
      Need(1);
      file_.order = text.substr(text.find("order") + 5);
    } else if (key == "column") {
      Column();
    } else if (key == "group") {
      Group();
    } else if (key == "total") {
      Need(1);
      file_.total_label = Word(1);
    } else if (key == "note") {
      Need(1);
      file_.note = Word(1);
    } else if (!LetterLine()) {
      Refuse(fmt::format(
          "\"{}\" is not known; a line begins with paper, title, field, query, order, column, "
          "group, total or note, in a letter with {}",
          key, LetterWords()));
    }
  }

  const std::string& Word(std::size_t at) const { return words_[at].text; }

  void Need(std::size_t count) const {
    if (words_.size() <= count)
      Refuse(fmt::format("\"{}\" needs {} words behind it", Word(0), count));
  }

  void Paper() {
    Need(2);
    if (Word(1) == "A4") {
      file_.width_mm = 210;
      file_.height_mm = 297;
    } else if (Word(1) == "A5") {
      file_.width_mm = 148;
      file_.height_mm = 210;
    } else {
      Refuse("paper is A4 or A5");
    }
    if (Word(2) == "landscape") {
      std::swap(file_.width_mm, file_.height_mm);
    } else if (Word(2) != "portrait") {
      Refuse("paper is portrait or landscape");
    }
  }

  void Query() {
    std::string line;
    while (Next(line)) {
      if (Trim(line) == "end") return;
      file_.query += line + "\n";
    }
    Refuse("the query does not end with a line \"end\"");
  }

  void Column() {
    Need(4);
    const auto kind = KindOf(Word(3));
    if (!kind)
      Refuse(
          fmt::format("\"{}\" is no kind of column (text, integer, money, rate, date)", Word(3)));
    if (!IsNumeric(Word(4)) || CDbl(Word(4)) <= 0)
      Refuse("the width of a column is a number above 0");
    file_.columns.push_back(
        {Word(1), Word(2), *kind, CDbl(Word(4)), words_.size() > 5 && Word(5) == "sum"});
  }

  void Group() {
    Need(3);
    ReportGroup group;
    group.field = Word(1);
    std::size_t label = 2;
    if (Word(2) == "by") {
      Need(4);
      if (Word(3) == "year") {
        group.by = ReportGroup::By::year;
      } else if (Word(3) == "month") {
        group.by = ReportGroup::By::month;
      } else {
        Refuse("a group goes by year or by month");
      }
      label = 4;
    }
    group.label = Word(label);
    file_.groups.push_back(group);
  }

  std::istringstream lines_;
  int line_number_ = 0;
  std::vector<ReportWord> words_;
  LetterParser letter_;
  int list_line_ = 0;  // a line that only a list has
  ReportFile file_;
};

}  // namespace

ReportFile ReportFile::Parse(std::string_view text, const std::string& path) {
  return FileParser(text, path).Run();
}

ReportFile ReportFile::Read(const std::string& path) {
  // A slash and a backslash before the file's name mean the same.
  std::string file = path;
  for (char& c : file) {
    if (c == '\\') c = '/';
  }
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error(fmt::format("The report file {} cannot be read.", file));
  std::ostringstream text;
  text << stream.rdbuf();
  return Parse(text.str(), file);
}

}  // namespace kaunter
