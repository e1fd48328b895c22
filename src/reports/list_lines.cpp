#include "reports/list_lines.h"

#include <fmt/format.h>

#include <optional>
#include <stdexcept>

#include "core/values.h"
#include "reports/report_texts.h"

namespace kaunter {
namespace {

[[noreturn]] void Refuse(const std::string& what) { throw std::invalid_argument(what); }

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

// "running(c1 - c2)": columns with signs between them.
std::vector<RunningTerm> RunningTerms(std::string_view text) {
  text.remove_prefix(text.find('(') + 1);
  text.remove_suffix(1);
  std::vector<RunningTerm> terms;
  bool minus = false;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find_first_of("+-", at), text.size());
    const std::string name = Trim(text.substr(at, end - at));
    const bool leading_sign = terms.empty() && name.empty() && end < text.size();
    if (name.empty() && !leading_sign) Refuse("a running figure is running(column - column ...)");
    if (!name.empty()) terms.push_back({name, minus});
    minus = end < text.size() && text[end] == '-';
    at = end + 1;
  }
  return terms;
}

}  // namespace

void LineWords::Need(std::size_t count) const {
  if (words_.size() <= count) Refuse(fmt::format("\"{}\" needs {} words behind it", key(), count));
}

void LineWords::Unknown(std::size_t at, std::string_view known) const {
  Refuse(fmt::format("\"{}\" is not known behind {}; it may be {}", Word(at), key(), known));
}

double LineWords::Number(std::size_t at, const std::string& what) const {
  if (at >= words_.size() || !IsNumeric(Word(at)) || CDbl(Word(at)) <= 0) {
    Refuse(fmt::format("the {} of a {} is a number above 0", what, key()));
  }
  return CDbl(Word(at));
}

std::string LineWords::Caption(std::size_t at, const ReportFile& file) const {
  std::size_t next = 0;
  return Caption(at, file, next);
}

std::string LineWords::Caption(std::size_t at, const ReportFile& file, std::size_t& next) const {
  Need(at);
  const bool two = Quoted(at) && Quoted(at + 1);
  next = at + (two ? 2 : 1);
  return Word(two && file.chinese ? at + 1 : at);
}

void LineWords::Paper(ReportFile& file) const {
  Need(2);
  if (Word(1) == "A4") {
    file.width_mm = 210;
    file.height_mm = 297;
  } else if (Word(1) == "A5") {
    file.width_mm = 148;
    file.height_mm = 210;
  } else {
    Refuse("paper is A4 or A5");
  }
  if (Word(2) == "landscape") {
    std::swap(file.width_mm, file.height_mm);
  } else if (Word(2) != "portrait") {
    Refuse("paper is portrait or landscape");
  }
}

// "alias l = LoanMast": where a formula says LoanMast, the query says l.
void LineWords::Alias(ReportFile& file) const {
  if (words_.size() != 4 || !Is(2, "=")) {
    Refuse("an alias is written: alias l = LoanMast");
  }
  file.aliases[Lower(Word(3))] = Word(1);
}

ReportField LineWords::Field(const ReportFile& file) const {
  Need(2);
  const std::size_t texts = words_.size() - 1;
  if (texts == 2) return {Word(1), Word(2)};
  if (texts > 4) Refuse("\"field\" takes a label and a text, each perhaps with the Chinese one");
  return {Word(file.chinese ? 2 : 1), Word(texts == 4 && file.chinese ? 4 : 3)};
}

ReportColumn LineWords::Column(const ReportFile& file, const FileLine& line) const {
  ReportColumn column;
  column.line = line;
  std::size_t at = 0;
  column.heading = Caption(1, file, at);
  if (Is(at, "=")) ++at;
  Need(at + 2);
  if (Word(at).starts_with("running(") && Word(at).ends_with(")")) {
    column.running = RunningTerms(Word(at));
  } else {
    column.field = Word(at);
  }
  const auto kind = KindOf(Word(++at));
  if (!kind) {
    Refuse(fmt::format("\"{}\" is no kind of column (text, integer, money, rate, date)", Word(at)));
  }
  column.kind = *kind;
  column.weight = Number(++at, "width");
  ColumnOptions(at + 1, column);
  if (column.sum && !column.running.empty()) {
    Refuse("a running figure has no sum; \"last\" shows where it ends");
  }
  if ((!column.restart.empty() || column.before) && column.running.empty()) {
    Refuse(fmt::format("\"{}\" belongs to a running figure", column.before ? "before" : "per"));
  }
  return column;
}

void LineWords::ColumnOptions(std::size_t at, ReportColumn& column) const {
  for (; at < words_.size(); ++at) {
    if (Is(at, "sum")) {
      column.sum = true;
    } else if (Is(at, "last")) {
      column.last = true;
    } else if (Is(at, "blank")) {
      column.blank_zero = true;
    } else if (Is(at, "wrap")) {
      column.wrap = true;
    } else if (Is(at, "before")) {
      column.before = true;
    } else if (Is(at, "per") && at + 1 < words_.size()) {
      column.restart = Word(++at);
    } else {
      Unknown(at, "sum, last, blank, wrap, before, or per and a column");
    }
  }
}

GroupBy LineWords::By(std::size_t& at) const {
  if (!Is(at, "by")) return GroupBy::value;
  at += 2;
  if (Is(at - 1, "year")) return GroupBy::year;
  if (Is(at - 1, "month")) return GroupBy::month;
  Refuse(fmt::format("a {} goes by year or by month", key()));
}

ReportGroup LineWords::Group(const ReportFile& file, const FileLine& line) const {
  Need(2);
  ReportGroup group;
  group.line = line;
  group.field = Word(1);
  std::size_t at = 2;
  group.by = By(at);
  group.label = Caption(at, file, at);
  while (at < words_.size()) {
    if (Is(at, "heading")) {
      group.heading = Caption(at + 1, file, at);
    } else if (Is(at, "new") && Is(at + 1, "page")) {
      group.new_page = true;
      at += 2;
    } else if (Is(at, "always")) {
      group.always = true;
      ++at;
    } else {
      Unknown(at, "heading and a text, new page, or always");
    }
  }
  return group;
}

ReportChart LineWords::Chart(const ReportFile& file, const FileLine& line) const {
  ReportChart chart;
  chart.line = line;
  std::size_t at = 0;
  chart.title = Caption(1, file, at);
  Need(at + 1);
  if (Is(at, "columns")) {
    ++at;
    while (at < words_.size() && !Is(at, "below") && !Is(at, "above")) {
      chart.columns.push_back(Word(at++));
    }
  } else {
    chart.label = Word(at++);
    chart.by = By(at);
    Need(at);
    chart.value = Word(at++);
  }
  if (Is(at, "below")) {
    chart.below = true;
    ++at;
  } else if (Is(at, "above")) {
    ++at;
  }
  if (at < words_.size()) Unknown(at, "above or below");
  return chart;
}

ReportPicture LineWords::Picture(const FileLine& line) const {
  Need(1);
  const std::string fault = PlaceFault(Word(1));
  if (!fault.empty()) Refuse(fault);
  return {Word(1), Number(2, "width"), Number(3, "height"), line};
}

}  // namespace kaunter
