// FieldsLayout: labels and boxes in aligned columns, as many as the width allows.
//
// Fields run down a column and then on in the next one, so that what belongs together stays
// together; a wide field (memo, bar) crosses all columns and ends the block before it. Hidden
// fields leave no hole.
#pragma once

#include <QLayout>
#include <QList>

class QLabel;

namespace kaunter {

class FieldsLayout : public QLayout {
 public:
  // `columns` 0 chooses by width and number of fields.
  explicit FieldsLayout(int columns = 0);
  ~FieldsLayout() override;

  // `label` may be null: the editor then stands under the boxes, or with `from_left` under the
  // labels. A wide field crosses all columns.
  void AddField(QWidget* label, QWidget* editor, bool wide, bool from_left);

  void addItem(QLayoutItem* item) override;
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  int count() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSize() const override;
  Qt::Orientations expandingDirections() const override;
  void setGeometry(const QRect& rect) override;

 private:
  struct Field {
    QLayoutItem* label = nullptr;
    QLayoutItem* editor = nullptr;
    bool wide = false;
    bool from_left = false;
    bool Shown() const;
  };
  struct Place {
    int field;
    int row;
    int column;
  };
  struct Plan {
    int columns = 1;
    std::vector<Place> places;
    std::vector<int> label_width;  // a column
    int rows = 0;
  };

  Plan MakePlan(int width) const;
  int ColumnsFor(int width) const;
  int ShownCount() const;
  bool HasWideStretch() const;
  // Places everything in `rect` when `apply`; gives the height that it takes.
  int Arrange(const QRect& rect, bool apply) const;

  int wanted_columns_;
  int height_ = 0;     // that it took at its last width
  bool seen_ = false;  // its width is one that it has on the screen
  QList<Field> fields_;
  QList<QLayoutItem*> items_;
};

}  // namespace kaunter
