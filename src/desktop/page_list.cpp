#include "desktop/page_list.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

#include "desktop/theme.h"
#include "qtservices/report_painter.h"

namespace kaunter {
namespace {

constexpr QSize kRoom(112, 136);  // for one picture
constexpr int kAround = 8;
constexpr int kKept = 60;

class PageNumbers : public QAbstractListModel {
 public:
  PageNumbers(int pages, bool chinese, QObject* parent)
      : QAbstractListModel(parent), pages_(pages), chinese_(chinese) {}
  int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : pages_; }
  QVariant data(const QModelIndex& index, int role) const override {
    switch (role) {
      case Qt::DisplayRole:
        return QString::number(index.row() + 1);
      case Qt::AccessibleTextRole:
        return QString::fromUtf8(chinese_ ? "第 %1 页" : "Page %1").arg(index.row() + 1);
      default:
        return {};
    }
  }

 private:
  int pages_;
  bool chinese_;
};

class PageDelegate : public QStyledItemDelegate {
 public:
  explicit PageDelegate(PageList* list) : QStyledItemDelegate(list), list_(*list) {}

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
    return {list_.PictureSize().width() + 2 * kAround,
            list_.PictureSize().height() + 2 * kAround + option.fontMetrics.height()};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const bool current = index.row() == list_.page();
    QRect paper(QPoint(), list_.PictureSize());
    paper.moveCenter(option.rect.center());
    paper.moveTop(option.rect.top() + kAround);
    painter->save();
    painter->drawPixmap(paper, list_.PictureOf(index.row()));
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    const double width = current ? 2.4 : 1;
    painter->setPen(QPen(current ? Look().accent : Look().border, width));
    painter->drawRect(QRectF(paper).adjusted(-width / 2, -width / 2, width / 2, width / 2));
    QFont font = option.font;
    font.setBold(current);
    painter->setFont(font);
    painter->setPen(current ? Look().accent : Look().muted);
    painter->drawText(QRect(option.rect.left(), paper.bottom() + 3, option.rect.width(),
                            option.fontMetrics.height() + 2),
                      Qt::AlignCenter, index.data().toString());
    painter->restore();
  }

 private:
  PageList& list_;
};

}  // namespace

PageList::PageList(const ReportDocument& document, bool chinese, QWidget* parent)
    : QListView(parent),
      document_(document),
      size_(QSizeF(document.width_mm, document.height_mm)
                .scaled(kRoom, Qt::KeepAspectRatio)
                .toSize()
                .expandedTo({8, 8})),
      pictures_(kKept) {
  setObjectName("pages");
  setAccessibleName(QString::fromUtf8(chinese ? "页面" : "Pages"));
  setFrameShape(QFrame::NoFrame);
  setUniformItemSizes(true);  // thousands of pages are not measured one by one
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setItemDelegate(new PageDelegate(this));
  setModel(new PageNumbers(static_cast<int>(document.pages.size()), chinese, this));
  setFixedWidth(kRoom.width() + 2 * kAround + verticalScrollBar()->sizeHint().width());
}

void PageList::SetPage(int page) {
  if (page == this->page()) return;
  following_ = true;
  const QModelIndex index = model()->index(page, 0);
  setCurrentIndex(index);
  scrollTo(index, QAbstractItemView::EnsureVisible);
  following_ = false;
}

void PageList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QListView::currentChanged(current, previous);
  if (!following_ && current.isValid()) emit Chosen(current.row());
}

// Digits go to the page that begins with them. Every other sign is the window's: + is a zoom.
void PageList::keyPressEvent(QKeyEvent* event) {
  const QString text = event->text();
  const bool sign = !text.isEmpty() && text[0].isPrint();
  if (sign && !text[0].isDigit()) {
    event->ignore();
    return;
  }
  QListView::keyPressEvent(event);
}

const QPixmap& PageList::PictureOf(int page) {
  const double dots = devicePixelRatioF();
  const QPixmap* known = pictures_.object(page);
  if (known && known->devicePixelRatio() == dots) return *known;
  auto* picture = new QPixmap(size_ * dots);
  picture->setDevicePixelRatio(dots);
  picture->fill(Qt::white);  // paper is white under every theme
  {
    QPainter painter(picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.scale(size_.width() / document_.width_mm, size_.height() / document_.height_mm);
    PaintReportPage(painter, document_, static_cast<std::size_t>(page));
  }
  pictures_.insert(page, picture);
  return *picture;
}

}  // namespace kaunter
