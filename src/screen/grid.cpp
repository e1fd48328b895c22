#include "screen/grid.h"

#include <algorithm>

#include <utility>

#include "screen/text.h"

namespace kaunter {

Grid::Grid(Screen& screen, std::string name, Caption caption, std::vector<GridColumn> columns,
           Control* parent)
    : Control(screen, parent, ControlType::grid, std::move(name), std::move(caption)),
      columns_(std::move(columns)) {}

void Grid::SetColumns(std::vector<GridColumn> columns) {
  columns_ = std::move(columns);
  for (RowData& row : rows_) row.cells.resize(columns_.size());
  ++revision_;
  Changed();
}

void Grid::SetColumnEditable(int column, bool on) {
  columns_.at(static_cast<std::size_t>(column)).editable = on;
  ++revision_;
  Changed();
}

void Grid::SetColumnItems(int column, std::vector<std::string> items) {
  columns_.at(static_cast<std::size_t>(column)).items = std::move(items);
}

int Grid::ColumnIndex(std::string_view header) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (SameName(columns_[i].name, header)) return static_cast<int>(i);
  }
  return -1;
}

const std::string& Grid::Cell(int row, int column) const {
  return rows_.at(static_cast<std::size_t>(row)).cells.at(static_cast<std::size_t>(column));
}

void Grid::SetCell(int row, int column, std::string text) {
  std::string& cell =
      rows_.at(static_cast<std::size_t>(row)).cells.at(static_cast<std::size_t>(column));
  if (cell == text) return;
  cell = std::move(text);
  ++revision_;
  Changed();
}

void Grid::Clear() {
  rows_.clear();
  current_ = -1;
  ++revision_;
  Changed();
}

int Grid::AddRow(std::vector<std::string> cells, RowTone tone) {
  cells.resize(columns_.size());
  rows_.push_back({std::move(cells), tone, false});
  ++revision_;
  Changed();
  return RowCount() - 1;
}

void Grid::RemoveRow(int row) {
  (void)rows_.at(static_cast<std::size_t>(row));
  rows_.erase(rows_.begin() + row);
  if (current_ > row || current_ >= RowCount()) --current_;
  ++revision_;
  Changed();
}

void Grid::SetRows(std::vector<std::vector<std::string>> rows, const std::vector<RowTone>& tones) {
  rows_.clear();
  rows_.reserve(rows.size());
  for (std::vector<std::string>& cells : rows) {
    cells.resize(columns_.size());
    const RowTone tone = rows_.size() < tones.size() ? tones[rows_.size()] : RowTone::plain;
    rows_.push_back({std::move(cells), tone, false});
  }
  current_ = -1;
  ++revision_;
  Changed();
}

void Grid::SetTone(int row, RowTone tone) {
  RowData& data = rows_.at(static_cast<std::size_t>(row));
  if (data.tone == tone) return;
  data.tone = tone;
  Changed();
}

void Grid::SetCurrentRow(int row) {
  const int wanted = row >= 0 && row < RowCount() ? row : -1;
  if (current_ == wanted) return;
  current_ = wanted;
  Changed();
}

void Grid::SetHasChecks(bool on) {
  if (has_checks_ == on) return;
  has_checks_ = on;
  ++revision_;
  Changed();
}

void Grid::SetTicked(int row, bool on) {
  RowData& data = rows_.at(static_cast<std::size_t>(row));
  if (data.ticked == on) return;
  data.ticked = on;
  Changed();
}

void Grid::Select(int row) {
  if (row < 0 || row >= RowCount()) return;
  SetCurrentRow(row);
  if (onRow) onRow(row);
}

void Grid::Open(int row, int column) {
  if (row < 0 || row >= RowCount()) return;
  if (row != current_) Select(row);
  // The handler of the row may have emptied the grid.
  if (row < RowCount() && onOpen) onOpen(row, column);
}

void Grid::Tick(int row, bool on) {
  if (!has_checks_ || row < 0 || row >= RowCount() || Ticked(row) == on) return;
  SetTicked(row, on);
  if (onTick) onTick(row);
}

void Grid::EnterCell(int row, int column) {
  if (row < 0 || row >= RowCount()) return;
  if (row != current_) Select(row);
  if (row < RowCount() && onCellEnter) onCellEnter(row, column);
}

bool Grid::CellEditable(int row, int column) const {
  return row >= 0 && row < RowCount() && column >= 0 &&
         static_cast<std::size_t>(column) < columns_.size() && Editable() &&
         columns_[static_cast<std::size_t>(column)].editable;
}

bool Grid::Edit(int row, int column, std::string text) {
  if (!CellEditable(row, column)) return false;
  const std::string before = Cell(row, column);
  const auto& items = columns_[static_cast<std::size_t>(column)].items;
  if (!items.empty() && !text.empty() && text != before &&
      std::find(items.begin(), items.end(), text) == items.end()) {
    return false;
  }
  SetCell(row, column, std::move(text));
  if (onCellLeave) onCellLeave(row, column, before);
  return true;
}

}  // namespace kaunter
