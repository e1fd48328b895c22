#include "desktop/line_layout.h"

#include <QWidget>
#include <algorithm>

#include "desktop/column_widths.h"
#include "desktop/theme.h"

namespace kaunter {
namespace {

constexpr int kRowGap = 6;

}  // namespace

bool LineLayout::Piece::Shown() const {
  const QWidget* widget = box->widget();
  return widget && !widget->isHidden();
}

int LineLayout::Piece::Least() const {
  return share > 0 ? box->minimumSize().width() : box->sizeHint().width();
}

int LineLayout::Piece::LabelWidth(int spacing) const {
  return label ? label->sizeHint().width() + spacing : 0;
}

int LineLayout::Piece::Height() const {
  return std::max({kBoxHeight, box->sizeHint().height(), label ? label->sizeHint().height() : 0});
}

LineLayout::LineLayout(int spacing) : spacing_(spacing) { setContentsMargins(0, 0, 0, 0); }

LineLayout::~LineLayout() {
  for (const Piece& piece : pieces_) {
    delete piece.label;
    delete piece.box;
  }
}

void LineLayout::Add(QWidget* label, QWidget* box, int share) {
  Piece piece;
  piece.share = share;
  if (label) {
    addChildWidget(label);
    piece.label = new QWidgetItem(label);
  }
  addChildWidget(box);
  piece.box = new QWidgetItem(box);
  pieces_.push_back(piece);
  invalidate();
}

void LineLayout::addItem(QLayoutItem* item) { pieces_.push_back({nullptr, item, 0}); }

int LineLayout::count() const {
  int items = 0;
  for (const Piece& piece : pieces_) items += piece.label ? 2 : 1;
  return items;
}

QLayoutItem* LineLayout::itemAt(int index) const {
  for (const Piece& piece : pieces_) {
    if (piece.label && index-- == 0) return piece.label;
    if (index-- == 0) return piece.box;
  }
  return nullptr;
}

QLayoutItem* LineLayout::takeAt(int index) {
  QLayoutItem* item = itemAt(index);
  for (Piece& piece : pieces_) {
    if (item && piece.label == item) piece.label = nullptr;
  }
  std::erase_if(pieces_, [item](const Piece& piece) {
    if (!item || piece.box != item) return false;
    delete piece.label;
    return true;
  });
  return item;
}

int LineLayout::Arrange(const QRect& rect, bool apply) const {
  int y = rect.top();
  std::vector<const Piece*> row;
  int used = 0;
  int height = 0;
  const auto close = [&] {
    if (row.empty()) return;
    if (apply) Place(row, {rect.left(), y, rect.width(), height});
    y += height + kRowGap;
    row.clear();
    used = height = 0;
  };
  for (const Piece& piece : pieces_) {
    if (!piece.Shown()) continue;
    const int width = piece.LabelWidth(spacing_) + piece.Least();
    if (!row.empty() && used + spacing_ + width > rect.width()) close();
    if (piece.label && width > rect.width()) {
      // Too narrow for both beside each other: the caption stands above its box.
      const int tall = piece.label->sizeHint().height();
      const int deep = std::max(kBoxHeight, piece.box->sizeHint().height());
      if (apply) {
        piece.label->setGeometry({rect.left(), y, rect.width(), tall});
        piece.box->setGeometry({rect.left(), y + tall, rect.width(), deep});
      }
      y += tall + deep + kRowGap;
      continue;
    }
    used += (row.empty() ? 0 : spacing_) + width;
    height = std::max(height, piece.Height());
    row.push_back(&piece);
  }
  close();
  return std::max(y - kRowGap - rect.top(), 0);
}

void LineLayout::Place(const std::vector<const Piece*>& row, const QRect& rect) const {
  int room = rect.width() - spacing_ * (static_cast<int>(row.size()) - 1);
  std::vector<ColumnNeed> needs;
  for (const Piece* piece : row) {
    room -= piece->LabelWidth(spacing_);
    needs.push_back({piece->share, piece->Least(), piece->Least()});
  }
  const std::vector<int> widths = SharedWidths(room, std::move(needs));
  int x = rect.left();
  for (std::size_t i = 0; i < row.size(); ++i) {
    const Piece& piece = *row[i];
    if (piece.label) {
      const int width = piece.label->sizeHint().width();
      piece.label->setGeometry({x, rect.top(), width, rect.height()});
      x += width + spacing_;
    }
    piece.box->setGeometry({x, rect.top(), widths[i], rect.height()});
    x += widths[i] + spacing_;
  }
}

int LineLayout::heightForWidth(int width) const { return Arrange({0, 0, width, 0}, false); }

QSize LineLayout::sizeHint() const {
  int width = 0;
  int height = 0;
  for (const Piece& piece : pieces_) {
    if (!piece.Shown()) continue;
    width += piece.LabelWidth(spacing_) + piece.Least() + spacing_;
    height = std::max(height, piece.Height());
  }
  return {std::max(width - spacing_, 0), height};
}

QSize LineLayout::minimumSize() const {
  int width = 0;
  for (const Piece& piece : pieces_) {
    if (!piece.Shown()) continue;
    width = std::max({width, piece.LabelWidth(spacing_) - spacing_, piece.Least()});
  }
  return {width, seen_ ? heightForWidth(geometry().width()) : sizeHint().height()};
}

void LineLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  seen_ = seen_ || (parentWidget() && parentWidget()->isVisible());
  Arrange(rect, true);
}

}  // namespace kaunter
