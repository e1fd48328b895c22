#include "play/control_view.h"

#include <fmt/format.h>

#include <string_view>

#include "play/script.h"
#include "screen/text.h"

namespace kaunter {
namespace {

std::string_view KindName(const Control& control) {
  switch (control.type()) {
    case ControlType::container:
      return static_cast<const Frame&>(control).is_tab_set() ? "Tab" : "Frame";
    case ControlType::label:
      return "Label";
    case ControlType::text_box:
      return "TextBox";
    case ControlType::combo_box:
      return "ComboBox";
    case ControlType::check_box:
      return "CheckBox";
    case ControlType::option:
      return "Option";
    case ControlType::button:
      return "Button";
    case ControlType::grid:
      return "Grid";
    case ControlType::picture:
      return "Picture";
    case ControlType::bar:
      break;
  }
  return "Bar";
}

std::string ShownCaption(const Control& control) {
  return WithoutMnemonic(control.caption().In(control.screen().chinese()));
}

// As an argument in quotes would be written.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return OneLine(quoted) + '"';
}

std::string_view TrimBlanks(std::string_view text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

std::string SeenText(const Control& control) {
  switch (control.type()) {
    case ControlType::button:
    case ControlType::container:
      return ShownCaption(control);
    default:
      return control.Text();
  }
}

std::string PrintedText(const Control& control) {
  const auto* box = dynamic_cast<const TextBox*>(&control);
  if (box == nullptr || box->kind() != Kind::password) return SeenText(control);
  return std::string(CharacterCount(box->text()), '*');
}

std::string DescribeControl(const Control& control) {
  std::string line =
      fmt::format("{} {} {} {} enabled={} visible={} locked={}", control.name(), KindName(control),
                  Quoted(ShownCaption(control)), Quoted(PrintedText(control)),
                  control.Active() ? 1 : 0, control.Reachable() ? 1 : 0, control.locked() ? 1 : 0);
  if (const auto* grid = dynamic_cast<const Grid*>(&control)) {
    line += fmt::format(" rows={}", grid->RowCount());
  }
  if (const auto* list = dynamic_cast<const ComboBox*>(&control)) {
    std::string items;
    for (const std::string& item : list->items()) {
      if (&item != &list->items().front()) items += '|';
      items += item;
    }
    line += " items=" + Quoted(items);
  }
  const std::string& tip = control.tip.In(control.screen().chinese());
  if (!tip.empty()) line += " tip=" + Quoted(tip);
  return line;
}

std::vector<int> VisibleColumns(const Grid& grid) {
  std::vector<int> columns;
  for (std::size_t i = 0; i < grid.columns().size(); ++i) {
    if (grid.columns()[i].weight > 0) columns.push_back(static_cast<int>(i));
  }
  return columns;
}

std::string HeaderLine(const Grid& grid, const std::vector<int>& columns) {
  std::string line;
  for (const int column : columns) {
    if (column != columns.front()) line += " | ";
    const GridColumn& head = grid.columns().at(static_cast<std::size_t>(column));
    line += OneLine(head.header.In(grid.screen().chinese()));
  }
  return line;
}

std::string RowLine(const Grid& grid, int row, const std::vector<int>& columns) {
  std::string line;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) line += " | ";
    line += OneLine(grid.Cell(row, columns[i]));
  }
  return line;
}

std::string NormalRow(const std::string& line) {
  std::string normal;
  std::string_view rest = line;
  while (true) {
    const std::size_t bar = rest.find('|');
    const std::string_view cell = TrimBlanks(rest.substr(0, bar));
    if (cell != "\"\"") normal += cell;
    if (bar == std::string_view::npos) return normal;
    normal += " | ";
    rest.remove_prefix(bar + 1);
  }
}

}  // namespace kaunter
