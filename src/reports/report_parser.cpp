#include "reports/report_parser.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <stdexcept>

#include "core/values.h"
#include "reports/list_lines.h"
#include "reports/reading_statement.h"
#include "reports/report_texts.h"

namespace kaunter {
namespace {

constexpr std::size_t kMostGroups = 3;

// A column or a group by its column of the query.
auto OfField(const std::string& field) {
  return [field](const auto& line) { return SameText(line.field, field); };
}

class FileParser {
 public:
  FileParser(std::string_view text, const std::string& path, const ReportReading& reading,
             const std::function<ReportFile(const std::string&)>& like)
      : lines_(std::string(text)), reading_(reading), like_(like) {
    file_.path = path;
    file_.chinese = reading.chinese;
    if (reading.chinese) file_.language = PaperLanguage::chinese;
  }

  ReportFile Run() {
    std::string line;
    while (Next(line)) {
      const std::string text = Trim(line);
      if (!text.empty() && text[0] != '#') Told([&] { Line(text); });
      // Without what the other file says, each line that changes it would be at fault.
      if (lost_) return std::move(file_);
    }
    if (line_number_ == 0) Refuse("the file is empty, it has no query");
    if (!faulty_) {
      Told([&] { Finish(); });
    } else if (!file_.query.empty()) {
      CheckQuery();
    }
    return std::move(file_);
  }

 private:
  [[noreturn]] void Refuse(const std::string& what) const {
    throw std::runtime_error(fmt::format("{}: {}.", Here().Told(), what));
  }

  FileLine Here() const { return {file_.path, line_number_}; }

  template <typename Act>
  void Told(const Act& act) {
    try {
      act();
    } catch (const std::invalid_argument& fault) {
      if (reading_.findings == nullptr) Refuse(fault.what());
      reading_.findings->faults.push_back(fmt::format("{}: {}.", Here().Told(), fault.what()));
      faulty_ = true;
    }
  }

  bool Next(std::string& line) {
    if (!std::getline(lines_, line)) return false;
    ++line_number_;
    return true;
  }

  void Line(const std::string& text) {
    const LineWords words(ReportWords(text, reading_.chinese));
    const std::string& key = words.key();
    if (key == "if" || key == "else" || key == "endif") return Condition(words);
    if (Skipping()) {
      if (key == "query") SkipQuery();
      return;
    }
    if (key == "like") return Like(words);
    begun_ = true;
    if (key == "add") {
      Add(words, text);
    } else if (key == "without") {
      Without(words);
    } else if (key == "query") {
      Query();
    } else if (key == "order") {
      words.Need(1);
      file_.order = Trim(text.substr(text.find("order") + 5));
      file_.order_line = Here();
    } else if (key == "parameter") {
      words.Need(1);
      file_.defaults[Lower(words.Word(1))] = words.size() > 2 ? words.Caption(2, file_) : "";
    } else if (!Settings(words) && !Layout(words) && !letter_.Take(words.all(), Here())) {
      throw std::invalid_argument(fmt::format(
          "\"{}\" is not known; a line begins with like, add, without, paper, language, title, "
          "field, picture, logo, "
          "parameter, alias, query, order, column, group, total, summary, chart, note, empty, if, "
          "else or "
          "endif, in "
          "a letter with {}",
          key, LetterWords()));
    }
  }

  // --- what depends on a parameter

  struct Branch {
    bool taken = false;
    bool outer = true;  // whether what stands around it is read
    bool has_else = false;
  };

  bool Skipping() const {
    return !branches_.empty() && (!branches_.back().taken || !branches_.back().outer);
  }

  void Condition(const LineWords& words) {
    if (words.key() == "if") {
      branches_.push_back({false, !Skipping(), false});
      words.Need(3);
      branches_.back().taken = Holds(words);
      return;
    }
    if (branches_.empty()) {
      throw std::invalid_argument(fmt::format("\"{}\" stands without its \"if\"", words.key()));
    }
    if (words.key() == "endif") {
      branches_.pop_back();
      return;
    }
    if (branches_.back().has_else) throw std::invalid_argument("a second \"else\"");
    branches_.back().has_else = true;
    branches_.back().taken = !branches_.back().taken;
  }

  bool Holds(const LineWords& words) const {
    const bool is = words.Word(2) == "is";
    if (!is && words.Word(2) != "not") {
      throw std::invalid_argument("after \"if\" and a parameter stands is or not, then its values");
    }
    const std::string value = ParameterValue(words.Word(1));
    bool among = false;
    for (std::size_t i = 3; i < words.size(); ++i) {
      among = among || SameText(value, words.Word(i));
      if (reading_.findings != nullptr) {
        reading_.findings->asked[Lower(words.Word(1))].insert(Lower(words.Word(i)));
      }
    }
    return among == is;
  }

  std::string ParameterValue(const std::string& name) const {
    if (SameText(name, "language")) return reading_.chinese ? "chinese" : "english";
    const auto given = reading_.parameters.find(Lower(name));
    if (given != reading_.parameters.end()) return given->second;
    const auto usual = file_.defaults.find(Lower(name));
    return usual != file_.defaults.end() ? usual->second : "";
  }

  // --- what another file says, and this one says otherwise

  void Like(const LineWords& words) {
    words.Need(1);
    if (begun_) throw std::invalid_argument("\"like\" stands before all other lines");
    begun_ = like_seen_ = true;
    const std::string path = file_.path;
    lost_ = true;
    file_ = like_(words.Word(1));
    lost_ = false;
    file_.path = path;
    letter_ = LetterParser(file_.letter);
    for (const char* word : {"field", "picture", "column", "group", "chart"})
      inherited_.insert(word);
  }

  void NeedLike(const LineWords& words) const {
    if (!like_seen_) {
      throw std::invalid_argument(fmt::format(
          "\"{}\" changes what another file says, and this one is \"like\" none", words.key()));
    }
  }

  // "add column ..." beside those of the other file, "add read Table.Column" to what its query
  // reads.
  void Add(const LineWords& words, const std::string& text) {
    NeedLike(words);
    words.Need(2);
    const std::string& key = words.Word(1);
    if (key == "read") {
      file_.query = WithMoreRead(file_.query, Trim(text.substr(text.find("read") + 4)));
      return;
    }
    if (key != "column" && key != "group" && key != "field" && key != "chart") {
      throw std::invalid_argument(
          "what is added is a column, group, field or chart, or read and a column of a table");
    }
    std::vector<ReportWord> line(words.all().begin() + 1, words.all().end());
    std::string behind;
    const std::size_t size = line.size();
    if (key == "column" && size > 2 && !line[size - 2].quoted && line[size - 2].text == "behind") {
      behind = line.back().text;
      line.resize(size - 2);
    }
    inherited_.erase(key);
    Layout(LineWords(line));
    if (behind.empty()) return;
    auto& columns = file_.columns;
    const auto place = std::find_if(columns.begin(), columns.end() - 1, OfField(behind));
    if (place == columns.end() - 1) {
      throw std::invalid_argument(fmt::format("there is no column {} to stand behind", behind));
    }
    std::rotate(place + 1, columns.end() - 1, columns.end());
  }

  // What the other file has, and this one leaves out.
  void Without(const LineWords& words) {
    NeedLike(words);
    words.Need(1);
    const std::string& key = words.Word(1);
    const std::string field = words.size() > 2 ? words.Word(2) : "";
    // What is left stays, whatever is put beside it.
    inherited_.erase(key);
    std::size_t gone = 0;
    if (key == "column") {
      gone = std::erase_if(file_.columns, OfField(field));
    } else if (key == "group") {
      gone = std::erase_if(file_.groups, OfField(field));
    } else if (key == "field" || key == "chart" || key == "picture") {
      gone = file_.fields.size() * (key == "field") + file_.charts.size() * (key == "chart") +
             file_.pictures.size() * (key == "picture");
      if (key == "field") file_.fields.clear();
      if (key == "chart") file_.charts.clear();
      if (key == "picture") file_.pictures.clear();
    } else if (key == "total" || key == "note") {
      std::string& text = key == "total" ? file_.total_label : file_.note;
      gone = text.empty() ? 0 : 1;
      text.clear();
    } else {
      throw std::invalid_argument(
          "what may be left out is a column or a group, by its column of the query, and all of "
          "field, chart, picture, total, note");
    }
    if (gone == 0) {
      throw std::invalid_argument(fmt::format("there is no {} {} to leave out", key, field));
    }
  }

  // The first line of a kind takes the place of all lines of that kind of the file that is like
  // this one.
  template <typename Lines>
  Lines& Own(const std::string& key, Lines& lines) {
    if (inherited_.erase(key) > 0) lines.clear();
    return lines;
  }

  bool Settings(const LineWords& words) {
    const std::string& key = words.key();
    if (key == "paper") {
      words.Paper(file_);
    } else if (key == "language") {
      words.Need(1);
      const auto language = PaperLanguageNamed(words.Word(1));
      if (!language) throw std::invalid_argument("language is english, chinese or malay");
      file_.language = *language;
    } else if (key == "title") {
      file_.title = words.Caption(1, file_);
      file_.title_line = Here();
    } else if (key == "alias") {
      words.Alias(file_);
    } else if (key == "total") {
      file_.total_label = words.Caption(1, file_);
      file_.total_line = Here();
    } else if (key == "summary") {
      ListOnly();
      file_.summary = true;
      if (words.size() > 1) file_.summary_heading = words.Caption(1, file_);
    } else if (key == "logo") {
      ListOnly();
      file_.logo = true;
    } else if (key == "note") {
      ListOnly();
      file_.note = words.Caption(1, file_);
      file_.note_line = Here();
    } else if (key == "empty") {
      words.Need(1);
      file_.empty = words.Caption(1, file_);
    } else {
      return false;
    }
    return true;
  }

  bool Layout(const LineWords& words) {
    const std::string& key = words.key();
    if (key == "field") {
      ListOnly();
      Own(key, file_.fields).push_back(words.Field(file_));
      file_.fields.back().line = Here();
    } else if (key == "column") {
      Own(key, file_.columns).push_back(words.Column(file_, Here()));
    } else if (key == "group") {
      ListOnly();
      if (Own(key, file_.groups).size() == kMostGroups) {
        throw std::invalid_argument("a report has at most three groups");
      }
      file_.groups.push_back(words.Group(file_, Here()));
    } else if (key == "chart") {
      ListOnly();
      Own(key, file_.charts).push_back(words.Chart(file_, Here()));
    } else if (key == "picture" && !letter_.seen()) {
      Own(key, file_.pictures).push_back(words.Picture(Here()));
    } else {
      return false;
    }
    return true;
  }

  void ListOnly() { list_line_ = list_line_ > 0 ? list_line_ : line_number_; }

  void Query() {
    file_.query.clear();
    file_.query_line = Here();
    std::string line;
    while (Next(line)) {
      if (Trim(line) == "end") return;
      file_.query += line + "\n";
    }
    file_.query.clear();
    throw std::invalid_argument("the query does not end with a line \"end\"");
  }

  void SkipQuery() {
    std::string line;
    while (Next(line) && Trim(line) != "end") {
    }
  }

  void Finish() {
    if (!branches_.empty()) throw std::invalid_argument("an \"if\" has no \"endif\"");
    if (file_.query.empty()) throw std::invalid_argument("the report has no query");
    FinishLetter();
    if (file_.columns.empty() && !file_.IsLetter()) {
      throw std::invalid_argument("the report has no column");
    }
    if (file_.summary && file_.groups.empty()) {
      throw std::invalid_argument("a summary needs a line \"group\"");
    }
    if (file_.query.find("{selection}") == std::string::npos) {
      throw std::invalid_argument("the query has no {selection} where the condition goes");
    }
    CheckQuery();
  }

  // As it stands in the file, so that the line can be told; what the places make of it is looked at
  // before it is sent.
  void CheckQuery() const {
    std::string statement = WithoutPlaces(file_.query);
    const std::size_t order = statement.size();
    if (!file_.order.empty()) statement += " ORDER BY " + WithoutPlaces(file_.order);
    const auto fault = FaultOfReading(statement);
    if (!fault) return;
    FileLine line = fault->at < order ? file_.query_line : file_.order_line;
    if (fault->at < order) {
      line.number += 1 + static_cast<int>(std::count(
                             statement.begin(),
                             statement.begin() + static_cast<std::ptrdiff_t>(fault->at), '\n'));
    }
    throw std::runtime_error(fmt::format("{}: {}.", line.Told(), fault->what));
  }

  // A place gives one value: it is a figure as long as its name.
  static std::string WithoutPlaces(std::string text) {
    for (auto open = text.find('{'); open != std::string::npos; open = text.find('{', open)) {
      const auto close = text.find('}', open);
      if (close == std::string::npos) break;
      text.replace(open, close + 1 - open, close + 1 - open, ' ');
      text[open] = '1';
    }
    return text;
  }

  void FinishLetter() {
    if (!letter_.seen()) {
      if (letter_.first_item_line() == 0) return;
      line_number_ = letter_.first_item_line();
      Refuse("this line belongs to a letter; a line \"letter\" and a column must say of what");
    }
    if (list_line_ > 0) {
      line_number_ = list_line_;
      Refuse("this line belongs to a list, and this is a letter");
    }
    file_.letter = letter_.Finish(!file_.columns.empty());
  }

  std::istringstream lines_;
  const ReportReading& reading_;
  const std::function<ReportFile(const std::string&)>& like_;
  int line_number_ = 0;
  bool like_seen_ = false;
  bool begun_ = false;   // a line other than "like" has been read
  bool lost_ = false;    // the file that this one is like cannot be read
  bool faulty_ = false;  // a line is at fault, and the reading went on
  std::vector<Branch> branches_;
  std::set<std::string> inherited_;  // words whose lines are still those of the other file
  LetterParser letter_;
  int list_line_ = 0;  // a line that only a list has
  ReportFile file_;
};

}  // namespace

ReportFile ParseReport(std::string_view text, const std::string& path, const ReportReading& reading,
                       const std::function<ReportFile(const std::string&)>& like) {
  return FileParser(text, path, reading, like).Run();
}

}  // namespace kaunter
