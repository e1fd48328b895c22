#include "play/expectations.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>

#include "play/control_view.h"
#include "play/sql_text.h"
#include "screen/text.h"

namespace kaunter {
namespace {

// `what` is empty where the expected text says enough by itself.
void Compare(const std::string& what, std::string_view expected, std::string_view found) {
  if (SameBreaks(expected) == SameBreaks(found)) return;
  throw ExpectFailure(
      fmt::format("{}: expected \"{}\", was \"{}\"", what, OneLine(expected), OneLine(found)));
}

void CompareSwitch(const std::string& what, const std::string& expected, bool found) {
  if (ParseSwitch(expected, what) != found) {
    throw ExpectFailure(fmt::format("{}: expected {}, was {}", what, expected, found ? 1 : 0));
  }
}

std::string_view StateName(MenuState state) {
  switch (state) {
    case MenuState::hidden:
      return "hidden";
    case MenuState::greyed:
      return "greyed";
    case MenuState::shown:
      return "shown";
    case MenuState::unknown:
      break;
  }
  return "unknown";
}

}  // namespace

const std::vector<Expectations::Rule>& Expectations::Rules() {
  using E = Expectations;
  static const std::vector<Rule> rules = {
      {{"message", 1, 1, "expect message TEXT"}, &E::Message},
      {{"question", 1, 1, "expect question TEXT"}, &E::Question},
      {{"title", 1, 1, "expect title TEXT"}, &E::Title},
      {{"no", 1, 1, "expect no message"}, &E::NoMessage},
      {{"cell", 4, 4, "expect cell G ROW COL TEXT"}, &E::CellText},
      {{"rows", 2, 2, "expect rows G N"}, &E::RowCount},
      {{"tick", 3, 3, "expect tick G ROW 1/0"}, &E::Ticked},
      {{"grid", 1, kAnyNumber, "expect grid G [COL...], rows, end"}, &E::WholeGrid},
      {{"enabled", 2, 2, "expect enabled C 1/0"}, &E::Enabled},
      {{"visible", 2, 2, "expect visible C 1/0"}, &E::Visible},
      {{"locked", 2, 2, "expect locked C 1/0"}, &E::Locked},
      {{"focus", 1, 1, "expect focus C"}, &E::Focus},
      {{"screen", 1, 1, "expect screen NAME"}, &E::ScreenName},
      {{"menu", 2, 2, "expect menu NAME shown/greyed/hidden"}, &E::Menu},
      {{"panel", 2, 2, "expect panel N TEXT"}, &E::Panel},
      {{"sql", 2, 2, "expect sql STATEMENT TEXT"}, &E::Sql},
      {{"report", 1, 1, "expect report FILE"}, &E::Report},
      {{"formula", 1, 1, "expect formula TEXT"}, &E::Formula},
      {{"parameter", 2, 2, "expect parameter N TEXT"}, &E::Parameter},
      {{"printer", 1, 1, "expect printer USER"}, &E::Printer},
  };
  return rules;
}

const Expectations::Rule* Expectations::FindRule(const Words& words) {
  const auto found = std::find_if(Rules().begin(), Rules().end(),
                                  [&words](const Rule& rule) { return rule.name == words[1]; });
  return found == Rules().end() ? nullptr : &*found;
}

void Expectations::Run(const std::vector<std::string>& words) {
  static constexpr CommandRule kAny{"expect", 2, kAnyNumber, "expect C TEXT"};
  CheckArguments(kAny, words.size() - 1);
  if (const Rule* rule = FindRule(words)) {
    const Words arguments(words.begin() + 2, words.end());
    CheckArguments(*rule, arguments.size());
    (this->*rule->run)(arguments);
    return;
  }
  static constexpr CommandRule kControl{"expect", 2, 2, "expect C TEXT"};
  CheckArguments(kControl, words.size() - 1);
  ControlText({words.begin() + 1, words.end()});
}

// --- what was said

void Expectations::OldestText(bool question, const std::string& text) {
  const char* what = question ? "question" : "message";
  TranscriptEntry* entry = context_.desk.transcript().OldestUnexpected(question);
  if (entry == nullptr) {
    throw ExpectFailure(
        fmt::format("{0}: expected \"{1}\", there was no {0} left", what, OneLine(text)));
  }
  // Looked at, whatever it says: the next expectation is about the next one.
  entry->expected = true;
  just_expected_ = last_expected_ = entry;
  Compare(what, text, entry->text);
}

void Expectations::Message(const Words& arguments) { OldestText(false, arguments[0]); }

void Expectations::Question(const Words& arguments) { OldestText(true, arguments[0]); }

void Expectations::Title(const Words& arguments) {
  const TranscriptEntry* entry = just_expected_;
  if (entry == nullptr) entry = context_.desk.transcript().OldestUnexpected(false);
  if (entry == nullptr) entry = last_expected_;
  if (entry == nullptr) {
    throw ExpectFailure(
        fmt::format("title: expected \"{}\", there was no message", OneLine(arguments[0])));
  }
  Compare("title", arguments[0], entry->title);
}

void Expectations::NoMessage(const Words& arguments) {
  if (arguments[0] != "message") {
    throw ScriptError("the line does not parse: it is written expect no message");
  }
  if (const TranscriptEntry* entry = context_.desk.transcript().OldestUnexpected(false)) {
    throw ExpectFailure(fmt::format("expected no message, was \"{}\"", OneLine(entry->text)));
  }
}

// --- controls

void Expectations::ControlText(const Words& arguments) {
  const Control& control = context_.FindControl(arguments[0]);
  if (control.type() == ControlType::grid) {
    throw ScriptError(control.name() +
                      " is a grid: expect cell, expect rows or expect grid look into it");
  }
  Compare(control.name(), arguments[1], SeenText(control));
}

void Expectations::Enabled(const Words& arguments) {
  const Control& control = context_.FindControl(arguments[0]);
  CompareSwitch("enabled " + control.name(), arguments[1], control.Active());
}

void Expectations::Visible(const Words& arguments) {
  const Control& control = context_.FindControl(arguments[0]);
  CompareSwitch("visible " + control.name(), arguments[1], control.Reachable());
}

void Expectations::Locked(const Words& arguments) {
  const Control& control = context_.FindControl(arguments[0]);
  CompareSwitch("locked " + control.name(), arguments[1], control.locked());
}

void Expectations::Focus(const Words& arguments) {
  const Control& control = context_.FindControl(arguments[0]);
  const Control* focus = context_.Top().focus();
  Compare("focus", control.name(), focus == nullptr ? "" : focus->name());
}

void Expectations::ScreenName(const Words& arguments) {
  const std::string& name = context_.Top().name();
  if (!SameName(name, arguments[0])) Compare("screen", arguments[0], name);
}

// --- grids

void Expectations::CellText(const Words& arguments) {
  const Grid& grid = context_.FindGrid(arguments[0]);
  const int row = ParseCount(arguments[1], "a row");
  const int column = PlayContext::FindColumn(grid, arguments[2]);
  const std::string what = fmt::format("{} row {} {}", grid.name(), arguments[1], arguments[2]);
  if (row < 1 || row > grid.RowCount()) {
    throw ExpectFailure(fmt::format("{}: expected \"{}\", the grid has {} rows", what,
                                    OneLine(arguments[3]), grid.RowCount()));
  }
  Compare(what, arguments[3], grid.Cell(row - 1, column));
}

void Expectations::RowCount(const Words& arguments) {
  const Grid& grid = context_.FindGrid(arguments[0]);
  const int expected = ParseCount(arguments[1], "a number of rows");
  if (grid.RowCount() != expected) {
    throw ExpectFailure(
        fmt::format("rows of {}: expected {}, were {}", grid.name(), expected, grid.RowCount()));
  }
}

void Expectations::Ticked(const Words& arguments) {
  const Grid& grid = context_.FindGrid(arguments[0]);
  const int row = PlayContext::FindRow(grid, arguments[1]);
  CompareSwitch(fmt::format("tick {} row {}", grid.name(), arguments[1]), arguments[2],
                grid.Ticked(row));
}

void Expectations::WholeGrid(const Words& arguments) {
  // The block is read first: an unknown name must not turn its rows into commands.
  const Words block = context_.reader.ReadBlock();
  const Grid& grid = context_.FindGrid(arguments[0]);
  std::vector<int> columns;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    columns.push_back(PlayContext::FindColumn(grid, arguments[i]));
  }
  if (columns.empty()) columns = VisibleColumns(grid);
  Words wrong;
  const auto rows = static_cast<std::size_t>(grid.RowCount());
  for (std::size_t i = 0; i < std::max(block.size(), rows); ++i) {
    const std::string expected = i < block.size() ? NormalRow(block[i]) : "(no row)";
    const std::string found =
        i < rows ? NormalRow(RowLine(grid, static_cast<int>(i), columns)) : "(no row)";
    if (expected != found) {
      wrong.push_back(fmt::format("row {}: expected \"{}\", was \"{}\"", i + 1, expected, found));
    }
  }
  if (wrong.empty()) return;
  throw ExpectFailure(
      fmt::format("grid {} ({} rows): {}", grid.name(), rows, fmt::join(wrong, "; ")));
}

// --- the main window

void Expectations::Menu(const Words& arguments) {
  static constexpr std::array<std::string_view, 3> kStates{"shown", "greyed", "hidden"};
  if (std::find(kStates.begin(), kStates.end(), arguments[1]) == kStates.end()) {
    throw ScriptError(
        fmt::format("a menu entry is shown, greyed or hidden, not \"{}\"", arguments[1]));
  }
  const MenuState state = context_.program.StateOf(arguments[0]);
  if (state == MenuState::unknown) throw ScriptError("there is no menu entry " + arguments[0]);
  Compare("menu " + arguments[0], arguments[1], StateName(state));
}

void Expectations::Panel(const Words& arguments) {
  const int number = ParseCount(arguments[0], "a panel");
  if (number < 1 || number > 5) throw ScriptError("the panels are numbered from 1 to 5");
  Compare("panel " + arguments[0], arguments[1], context_.program.Panel(number));
}

// --- behind the screens

void Expectations::Sql(const Words& arguments) {
  const Recordset rows = context_.Ask(arguments[0]);
  const bool none = rows.rows().empty() || rows.rows().front().empty();
  Compare("sql", arguments[1], none ? "" : SqlText(rows.rows().front().front()));
}

const ReportJob& Expectations::LastReport() const {
  if (!context_.desk.last_report()) throw ExpectFailure("no report has been started");
  return *context_.desk.last_report();
}

void Expectations::Report(const Words& arguments) {
  Compare("report", ReportBaseName(arguments[0]), ReportBaseName(LastReport().ReportFileName));
}

void Expectations::Formula(const Words& arguments) {
  Compare("formula", arguments[0], LastReport().SelectionFormula);
}

void Expectations::Printer(const Words& arguments) {
  Compare("printer", arguments[0], LastReport().PrintedBy);
}

void Expectations::Parameter(const Words& arguments) {
  const int number = ParseCount(arguments[0], "a parameter");
  const auto& fields = LastReport().ParameterFields;
  const auto found = fields.find(number);
  Compare("parameter " + arguments[0], arguments[1],
          found == fields.end() ? std::string() : found->second);
}

}  // namespace kaunter
