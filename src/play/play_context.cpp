#include "play/play_context.h"

#include <fmt/format.h>

#include <charconv>

#include "play/sql_text.h"
#include "screen/text.h"

namespace kaunter {

void CheckArguments(const CommandRule& rule, std::size_t given) {
  if (given >= rule.fewest && given <= rule.most) return;
  std::string text = fmt::format("the line does not parse: it is written {}", rule.usage);
  if (given > rule.most) text += " (an argument with blanks stands in double quotes)";
  throw ScriptError(text);
}

Screen& PlayContext::Top() const {
  const auto& open = desk.open_screens();
  return open.empty() ? program.main_window() : *open.back().screen;
}

Control& PlayContext::FindControl(std::string_view name) const {
  const Screen& screen = Top();
  Control* control = screen.Find(name);
  if (control == nullptr) {
    throw ScriptError(
        fmt::format("{} has no control {} (describe prints what it has)", screen.name(), name));
  }
  return *control;
}

Grid& PlayContext::FindGrid(std::string_view name) const {
  Control& control = FindControl(name);
  auto* grid = dynamic_cast<Grid*>(&control);
  if (grid == nullptr) throw ScriptError(control.name() + " is no grid");
  return *grid;
}

int PlayContext::FindColumn(const Grid& grid, std::string_view column) {
  if (const int found = grid.ColumnIndex(column); found >= 0) return found;
  const int count = static_cast<int>(grid.columns().size());
  int number = -1;
  const auto parsed = std::from_chars(column.data(), column.data() + column.size(), number);
  if (parsed.ec == std::errc() && parsed.ptr == column.data() + column.size() && number >= 0 &&
      number < count) {
    return number;
  }
  for (int i = 0; i < count; ++i) {
    if (SameName(grid.columns()[static_cast<std::size_t>(i)].header.chinese, column)) return i;
  }
  throw ScriptError(fmt::format("{} has no column {}; its {} columns are numbered from 0",
                                grid.name(), column, count));
}

int PlayContext::FindRow(const Grid& grid, std::string_view row) {
  const int number = ParseCount(row, "a row");
  if (number < 1 || number > grid.RowCount()) {
    throw ScriptError(
        fmt::format("{} has no row {}; it has {} rows", grid.name(), row, grid.RowCount()));
  }
  return number - 1;
}

Recordset PlayContext::Ask(const std::string& sql) const {
  if (Writes(sql)) program.RequireRightToWrite(sql);
  return program.main_connection().Query(sql);
}

int ParseCount(std::string_view text, std::string_view what) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  if (text.empty() || parsed.ec != std::errc() || parsed.ptr != end || number < 0) {
    throw ScriptError(fmt::format("{} is a whole number, not \"{}\"", what, text));
  }
  return number;
}

bool ParseSwitch(std::string_view text, std::string_view what) {
  if (text == "1") return true;
  if (text == "0") return false;
  throw ScriptError(fmt::format("{} is 1 or 0, not \"{}\"", what, text));
}

}  // namespace kaunter
