// LineLayout: several boxes in one line, each behind its caption. Where the line is too short for
// what they hold, the boxes that do not fit go on in a further line: nothing is cut.
#pragma once

#include <QLayout>
#include <vector>

namespace kaunter {

class LineLayout : public QLayout {
 public:
  explicit LineLayout(int spacing);
  ~LineLayout() override;

  // `label` may be null. Of the room that is left a box takes its share; without one it keeps its
  // own width.
  void Add(QWidget* label, QWidget* box, int share);

  void addItem(QLayoutItem* item) override;
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  int count() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSize() const override;
  void setGeometry(const QRect& rect) override;

 private:
  struct Piece {
    QLayoutItem* label = nullptr;
    QLayoutItem* box = nullptr;
    int share = 0;
    bool Shown() const;
    int Least() const;  // of the box
    int LabelWidth(int spacing) const;
    int Height() const;
  };
  int Arrange(const QRect& rect, bool apply) const;
  void Place(const std::vector<const Piece*>& row, const QRect& rect) const;

  int spacing_;
  bool seen_ = false;  // its width is one that it has on the screen
  std::vector<Piece> pieces_;
};

}  // namespace kaunter
