// The view of a Grid: a striped table, columns by weight, tinted rows, editing in place.
#pragma once

#include <QFrame>
#include <QLabel>
#include <QPointer>
#include <QString>
#include <QTableView>
#include <string>
#include <vector>

#include "desktop/column_widths.h"
#include "desktop/control_view.h"
#include "desktop/grid_model.h"

namespace kaunter {

class GridView : public ControlView {
 public:
  GridView(ScreenFace& face, Grid& grid);
  ~GridView() override;

  QWidget* widget() override { return card_; }
  QWidget* focus_widget() override { return table_; }
  bool UseKey(const QKeyEvent& event) override;

  QTableView& table() { return *table_; }
  GridModel& model() { return *model_; }
  // What an empty grid says in its middle; nothing by default.
  void SetEmptyText(const Caption& text);
  void HideTitle() { title_hidden_ = true; }
  // Without a card of its own, where it stands in one already.
  void SetBare();
  // By how much its place is too narrow to show all uncut, each heading in one line.
  int Missing() const;
  // The names of the columns that cut a heading, a figure, a key or a name.
  std::vector<std::string> CutColumns() const;

 protected:
  void Show() override;

 private:
  struct Needed {
    int contents = 0;
    bool whole = false;
    bool prose = false;
    QString heading;
    QString broken;  // in two lines, where its texts are narrower
  };
  void MeasureColumns();
  std::vector<ColumnNeed> Needs(bool broken_headings) const;
  void ShareWidth();
  // Widths given by hand are kept for each set of columns: a picker's grid has many.
  void RecallColumns();
  void Sort(int column);
  void ShowSort();
  void ShowCurrent();
  void Moved(const QModelIndex& current);
  // To the next cell that can be edited, right and then down.
  void NextEditable(const QModelIndex& from);

  Grid& grid_;
  QFrame* card_;
  QLabel* title_;
  QLabel* empty_;
  QPointer<QTableView> table_;
  GridModel* model_;
  Caption empty_text_;
  bool title_hidden_ = false;
  bool showing_ = false;
  bool sized_by_hand_ = false;
  QString columns_name_;
  std::vector<Needed> needs_;
  QString measured_;  // what needs_ was measured of
};

}  // namespace kaunter
