// GridModel: a Grid of the screen as Qt's views read it, in place, without a copy of the rows.
//
// The screen changes its rows in the middle of an act; the model tells the view only when it is
// synchronised, and answers with blanks for rows that are gone until then.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <functional>
#include <vector>

#include "screen/grid.h"

namespace kaunter {

class GridModel : public QAbstractTableModel {
 public:
  using Edit = std::function<bool(int row, int column, const std::string& text)>;
  using Tick = std::function<void(int row, bool on)>;

  GridModel(Grid& grid, Edit edit, Tick tick, QObject* parent);

  // Tells the view what has changed since the last time. True when rows or columns came or went.
  bool Sync(bool chinese);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  Grid& grid() const { return grid_; }
  // The column of check marks stands first, where the grid has one.
  bool IsCheckColumn(int column) const { return checks_ && column == 0; }
  int GridColumnOf(int column) const { return column - (checks_ ? 1 : 0); }
  int ViewColumnOf(int grid_column) const { return grid_column + (checks_ ? 1 : 0); }
  bool Right(int column) const;
  QString Heading(int column) const;
  // As the view has broken them into lines; empty for the headings as they are.
  void SetHeadings(const QStringList& broken);
  const std::vector<std::string>& ItemsOf(int column) const;  // empty for any text
  RowTone ToneOf(int row) const;
  // A table may be sorted: its rows are then others than the grid's.
  int GridRowOf(int row) const;
  int ViewRowOf(int grid_row) const;
  // Sorts by a column of the grid; -1 shows the rows as the screen gave them.
  void SortBy(int grid_column, bool descending);
  int sorted_by() const { return sorted_by_; }
  bool descending() const { return descending_; }

 private:
  void Arrange();
  bool Exists(const QModelIndex& index) const;

  Grid& grid_;
  Edit edit_;
  Tick tick_;
  int rows_ = 0;
  int columns_ = 0;
  bool checks_ = false;
  bool chinese_ = false;
  QStringList broken_;
  int sorted_by_ = -1;
  bool descending_ = false;
  std::vector<int> order_;  // row of the grid by row of the table; empty while not sorted
};

}  // namespace kaunter
