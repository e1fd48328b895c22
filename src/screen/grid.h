// Grid: a table of texts with headers, a current row, optional check boxes and editable columns.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "screen/control.h"

namespace kaunter {

struct GridColumn {
  std::string name;  // as scripts name it: the English header
  Caption header;
  Kind kind = Kind::text;
  bool editable = false;
  int weight = 10;  // share of the width; 0 hides the column
  // What an editable column takes besides a blank; empty for any text.
  std::vector<std::string> items;
  GridColumn(Caption header_caption, Kind column_kind = Kind::text, int column_weight = 10,
             bool is_editable = false)
      : name(header_caption.english),
        header(std::move(header_caption)),
        kind(column_kind),
        editable(is_editable),
        weight(column_weight) {}
};

enum class RowTone { plain, good, warn, bad, info, quiet, total };

class Grid : public Control {
 public:
  Grid(Screen& screen, std::string name, Caption caption, std::vector<GridColumn> columns,
       Control* parent = nullptr);

  const std::vector<GridColumn>& columns() const { return columns_; }
  void SetColumns(std::vector<GridColumn> columns);
  void SetColumnEditable(int column, bool on);
  void SetColumnItems(int column, std::vector<std::string> items);
  int ColumnIndex(std::string_view header) const;  // -1 when there is none

  int RowCount() const { return static_cast<int>(rows_.size()); }
  const std::string& Cell(int row, int column) const;
  void SetCell(int row, int column, std::string text);  // no events
  const std::vector<std::string>& Row(int row) const {
    return rows_.at(static_cast<std::size_t>(row)).cells;
  }
  void Clear();
  int AddRow(std::vector<std::string> cells, RowTone tone = RowTone::plain);
  void RemoveRow(int row);
  // All rows at once: one redraw. Rows past the end of `tones` are plain.
  void SetRows(std::vector<std::vector<std::string>> rows, const std::vector<RowTone>& tones = {});
  RowTone Tone(int row) const { return rows_.at(static_cast<std::size_t>(row)).tone; }
  void SetTone(int row, RowTone tone);

  // Another number after each change of a text or a column; ticks, tones and the current row do not
  // count.
  unsigned revision() const { return revision_; }

  int current_row() const { return current_; }  // -1 for none
  void SetCurrentRow(int row);                  // no events

  bool has_checks() const { return has_checks_; }
  void SetHasChecks(bool on);
  bool Ticked(int row) const { return rows_.at(static_cast<std::size_t>(row)).ticked; }
  void SetTicked(int row, bool on);  // no events

  std::function<void(int row)> onRow;               // a row became current
  std::function<void(int row, int column)> onOpen;  // double-click or Enter
  std::function<void(int row)> onTick;
  // After an edit, with the text that stood there before; the screen may put it back with SetCell.
  std::function<void(int row, int column, const std::string& before)> onCellLeave;
  std::function<void(int row, int column)> onCellEnter;

  // The face's side.
  // A person picks the row: fires onRow, for the current row too. Nothing for a row that is not
  // there.
  void Select(int row);
  // Double-click or Enter: picks the row when it is another one, then fires onOpen.
  void Open(int row, int column);
  void Tick(int row, bool on);
  // The cursor comes to a cell, to be edited or not; fires onCellEnter.
  void EnterCell(int row, int column);
  bool CellEditable(int row, int column) const;
  // Puts the text and fires onCellLeave, for an unchanged text too. False when the cell is not
  // editable or its column takes only its items.
  bool Edit(int row, int column, std::string text);

 private:
  struct RowData {
    std::vector<std::string> cells;
    RowTone tone = RowTone::plain;
    bool ticked = false;
  };
  std::vector<GridColumn> columns_;
  std::vector<RowData> rows_;
  int current_ = -1;
  bool has_checks_ = false;
  unsigned revision_ = 0;
};

}  // namespace kaunter
