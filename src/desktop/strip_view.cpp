#include "desktop/strip_view.h"

#include <QFileInfo>
#include <QPainter>
#include <QScrollBar>

#include "desktop/picture_loader.h"
#include "desktop/text.h"
#include "desktop/theme.h"

namespace kaunter {
namespace {

constexpr QSize kSmall(96, 72);
constexpr int kBesideText = 16;

// All of one size, so that nothing moves when a picture comes; what has none shows its ending.
QIcon Framed(const QImage& picture, const QString& ending) {
  QPixmap place(kSmall);
  place.fill(Qt::transparent);
  QPainter painter(&place);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Look().line);
  painter.setBrush(Look().locked);
  painter.drawRoundedRect(QRectF(place.rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
  if (picture.isNull()) {
    painter.setPen(Look().muted);
    painter.drawText(place.rect(), Qt::AlignCenter, ending.toUpper());
  } else {
    QRect inside(QPoint(), picture.size());
    inside.moveCenter(place.rect().center());
    painter.drawImage(inside, picture);
  }
  return QIcon(place);
}

}  // namespace

StripView::StripView(ScreenFace& face, PictureStrip& strip)
    : ControlView(face, strip), strip_(strip), list_(new QListWidget(face.host())) {
  list_->setViewMode(QListView::IconMode);
  list_->setFlow(QListView::LeftToRight);
  list_->setWrapping(false);
  list_->setMovement(QListView::Static);
  list_->setIconSize(kSmall);
  list_->setTextElideMode(Qt::ElideRight);
  list_->setFrameShape(QFrame::NoFrame);
  list_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  const int line = list_->fontMetrics().height();
  list_->setGridSize({kSmall.width() + kBesideText, kSmall.height() + line + 10});
  list_->setFixedHeight(kSmall.height() + line + 12 +
                        list_->horizontalScrollBar()->sizeHint().height());
  QObject::connect(list_, &QListWidget::itemSelectionChanged, list_, [this] {
    const int row = list_->currentRow();
    if (row < 0 || !strip_.onPick) return;
    Act([&] { strip_.onPick(row); });
  });
}

void StripView::Show() {
  QStringList marks;
  for (const PictureStrip::Item& item : strip_.items()) marks << FileMark(Q(item.path));
  if (shown_ == strip_.items() && marks_ == marks) return;
  const int picked = shown_ == strip_.items() ? list_->currentRow() : -1;
  shown_ = strip_.items();
  marks_ = marks;
  const QSignalBlocker quiet(list_);
  list_->clear();
  int row = 0;
  for (const PictureStrip::Item& item : shown_) {
    const QString path = Q(item.path);
    auto* entry = new QListWidgetItem(Framed({}, QFileInfo(path).suffix()), Q(item.caption), list_);
    entry->setToolTip(Q(item.caption));
    if (const QString mark = marks_[row]; !mark.isEmpty()) {
      LoadPicture(path, kSmall - QSize(6, 6), list_, [this, mark, row](const QImage& picture) {
        // Other items may stand there meanwhile.
        if (picture.isNull() || marks_.value(row) != mark) return;
        list_->item(row)->setIcon(Framed(picture, {}));
      });
    }
    ++row;
  }
  list_->setCurrentRow(picked);
}

}  // namespace kaunter
