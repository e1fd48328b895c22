#include "desktop/grid_model.h"

#include <algorithm>

#include "desktop/row_order.h"
#include "desktop/text.h"

namespace kaunter {

GridModel::GridModel(Grid& grid, Edit edit, Tick tick, QObject* parent)
    : QAbstractTableModel(parent), grid_(grid), edit_(std::move(edit)), tick_(std::move(tick)) {}

bool GridModel::Sync(bool chinese) {
  const int rows = grid_.RowCount();
  const int columns = static_cast<int>(grid_.columns().size()) + (grid_.has_checks() ? 1 : 0);
  const bool reshaped = rows != rows_ || columns != columns_ || grid_.has_checks() != checks_;
  if (reshaped) beginResetModel();
  broken_.clear();
  rows_ = rows;
  columns_ = columns;
  checks_ = grid_.has_checks();
  chinese_ = chinese;
  if (sorted_by_ >= static_cast<int>(grid_.columns().size())) sorted_by_ = -1;
  Arrange();
  if (reshaped) {
    endResetModel();
  } else if (rows_ > 0 && columns_ > 0) {
    emit dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
  }
  if (columns_ > 0) emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
  return reshaped;
}

void GridModel::Arrange() {
  order_.clear();
  if (sorted_by_ >= 0 && MaySort(grid_)) order_ = SortedRows(grid_, sorted_by_, descending_);
}

void GridModel::SortBy(int grid_column, bool descending) {
  if (rows_ != grid_.RowCount()) return;  // about to be shown anew
  sorted_by_ = grid_column;
  descending_ = descending;
  Arrange();
  if (rows_ > 0 && columns_ > 0) emit dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
}

int GridModel::GridRowOf(int row) const {
  const auto at = static_cast<std::size_t>(row);
  return row < 0 || at >= order_.size() ? row : order_[at];
}

int GridModel::ViewRowOf(int grid_row) const {
  const auto found = std::find(order_.begin(), order_.end(), grid_row);
  return found == order_.end() ? grid_row : static_cast<int>(found - order_.begin());
}

int GridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

bool GridModel::Exists(const QModelIndex& index) const {
  return index.isValid() && GridRowOf(index.row()) < grid_.RowCount() &&
         GridColumnOf(index.column()) < static_cast<int>(grid_.columns().size());
}

const std::vector<std::string>& GridModel::ItemsOf(int column) const {
  static const std::vector<std::string> kNone;
  const auto at = static_cast<std::size_t>(GridColumnOf(column));
  return IsCheckColumn(column) || at >= grid_.columns().size() ? kNone : grid_.columns()[at].items;
}

bool GridModel::Right(int column) const {
  if (IsCheckColumn(column)) return false;
  const auto at = static_cast<std::size_t>(GridColumnOf(column));
  if (at >= grid_.columns().size()) return false;
  const Kind kind = grid_.columns()[at].kind;
  return kind == Kind::money || kind == Kind::rate || kind == Kind::integer;
}

RowTone GridModel::ToneOf(int row) const {
  const int at = GridRowOf(row);
  return at < grid_.RowCount() ? grid_.Tone(at) : RowTone::plain;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!Exists(index)) return {};
  if (IsCheckColumn(index.column())) {
    if (role == Qt::CheckStateRole)
      return grid_.Ticked(GridRowOf(index.row())) ? Qt::Checked : Qt::Unchecked;
    return {};
  }
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return Q(grid_.Cell(GridRowOf(index.row()), GridColumnOf(index.column())));
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(Qt::Alignment(
          Qt::AlignVCenter | (Right(index.column()) ? Qt::AlignRight : Qt::AlignLeft)));
    default:
      return {};
  }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) {
    return QVariant::fromValue(
        Qt::Alignment(Qt::AlignVCenter | (Right(section) ? Qt::AlignRight : Qt::AlignLeft)));
  }
  if (role != Qt::DisplayRole) return {};
  return section < broken_.size() ? broken_[section] : Heading(section);
}

QString GridModel::Heading(int column) const {
  const auto at = static_cast<std::size_t>(GridColumnOf(column));
  if (IsCheckColumn(column) || at >= grid_.columns().size()) return {};
  return Plain(grid_.columns()[at].header.In(chinese_)).simplified();
}

void GridModel::SetHeadings(const QStringList& broken) {
  if (broken == broken_) return;
  broken_ = broken;
  if (columns_ > 0) emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
  if (!Exists(index)) return flags;
  if (IsCheckColumn(index.column())) return flags | Qt::ItemIsUserCheckable;
  if (grid_.CellEditable(GridRowOf(index.row()), GridColumnOf(index.column())))
    flags |= Qt::ItemIsEditable;
  return flags;
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!Exists(index)) return false;
  if (role == Qt::CheckStateRole && IsCheckColumn(index.column())) {
    tick_(GridRowOf(index.row()), value.toInt() == Qt::Checked);
    return true;
  }
  if (role != Qt::EditRole || IsCheckColumn(index.column())) return false;
  const std::string text = S(value.toString());
  // Going through a cell without touching it is no edit.
  if (grid_.Cell(GridRowOf(index.row()), GridColumnOf(index.column())) == text) return true;
  return edit_(GridRowOf(index.row()), GridColumnOf(index.column()), text);
}

}  // namespace kaunter
