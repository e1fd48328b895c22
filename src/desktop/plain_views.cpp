#include "desktop/plain_views.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/camera.h"
#include "desktop/picture_loader.h"
#include "desktop/text.h"
#include "desktop/theme.h"

namespace kaunter {
namespace {

constexpr int kBarHeight = 12;

// Tells its clicks. As a title its first line stands out and what does not fit is elided.
class ClickableLabel : public QLabel {
 public:
  using QLabel::QLabel;
  std::function<void()> clicked;

  QSize sizeHint() const override { return Titled() ? TitleSize() : QLabel::sizeHint(); }
  QSize minimumSizeHint() const override {
    if (!Titled()) return QLabel::minimumSizeHint();
    // One line stands beside others, several are the head of a window.
    const int most = text().contains('\n') ? kWholeHead : kWholeTitle;
    return {std::min(TitleSize().width(), most), TitleSize().height()};
  }
  bool hasHeightForWidth() const override { return !Titled() && QLabel::hasHeightForWidth(); }

 protected:
  void paintEvent(QPaintEvent* event) override {
    if (!Titled()) return QLabel::paintEvent(event);
    QPainter painter(this);
    int y = (height() - TitleSize().height()) / 2;
    const QStringList lines = text().split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
      painter.setFont(LineFont(i));
      painter.setPen(i ? Look().muted : property("marked").toBool() ? Look().bad : Look().text);
      const QFontMetrics metrics(LineFont(i));
      painter.drawText(0, y + metrics.ascent(),
                       metrics.elidedText(lines[i], Qt::ElideRight, width()));
      y += metrics.height() + kTitleGap;
    }
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    QLabel::mouseReleaseEvent(event);
    if (clicked) clicked();
  }

 private:
  static constexpr int kTitleGap = 2;
  static constexpr int kRounding = 2;  // of a width on a screen with a scale
  // Up to so wide a title is never cut.
  static constexpr int kWholeTitle = 200;
  static constexpr int kWholeHead = 400;
  bool Titled() const { return property("title").toBool(); }
  static QFont LineFont(qsizetype line) {
    return line ? QApplication::font() : ScaledFont(1.2, true);
  }
  QSize TitleSize() const {
    QSize size(0, 0);
    const QStringList lines = text().split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
      const QFontMetrics metrics(LineFont(i));
      size.setWidth(std::max(size.width(), metrics.horizontalAdvance(lines[i]) + kRounding));
      size.rheight() += metrics.height() + (i ? kTitleGap : 0);
    }
    return size;
  }
};

QColor PartColor(Bar::Part::Tone tone) {
  switch (tone) {
    case Bar::Part::Tone::good:
      return Look().good;
    case Bar::Part::Tone::warn:
      return Look().warn;
    case Bar::Part::Tone::bad:
      return Look().bad;
    case Bar::Part::Tone::quiet:
      break;
  }
  return Look().border;
}

}  // namespace

QLabel* CardTitle(QWidget* parent) {
  auto* title = new QLabel(parent);
  title->setFont(ScaledFont(1.05, true));
  title->setProperty("heading", true);
  title->setTextFormat(Qt::PlainText);
  return title;
}

LabelView::LabelView(ScreenFace& face, Label& label)
    : ControlView(face, label), label_control_(label) {
  auto* text = new ClickableLabel(face.host());
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  text->clicked = [this] {
    if (label_control_.onClick && label_control_.Active()) Act([&] { label_control_.onClick(); });
  };
  text_ = text;
}

void LabelView::Show() {
  const QString text = Q(label_control_.Text());
  // A label that says nothing takes no room.
  text_->setVisible(label_control_.Reachable() && !text.isEmpty());
  text_->setProperty("marked", label_control_.marked());
  if (text_->text() == text) return;
  text_->setText(text);
  text_->updateGeometry();
  text_->setToolTip(text_->property("title").toBool() ? text : QString());
}

void PictureWidget::SetPath(const QString& path) {
  constexpr QSize kRoom(800, 800);
  const QString wanted = FileMark(path);
  if (wanted == shown_) return;
  shown_ = wanted;
  picture_ = QPixmap();
  update();
  if (wanted.isEmpty()) return;
  LoadPicture(path, kRoom, this, [this, wanted](const QImage& picture) {
    if (wanted != shown_) return;  // another one is shown meanwhile
    picture_ = QPixmap::fromImage(picture);
    update();
  });
}

void PictureWidget::SetPicture(const QPixmap& picture) {
  shown_.reset();
  picture_ = picture;
  update();
}

void PictureWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.setPen(Look().line);
  painter.setBrush(Look().locked);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
  if (picture_.isNull()) return;
  const QSize size =
      picture_.size().scaled(rect().adjusted(4, 4, -4, -4).size(), Qt::KeepAspectRatio);
  QRect place(QPoint(), size);
  place.moveCenter(rect().center());
  painter.drawPixmap(place, picture_);
}

PictureView::PictureView(ScreenFace& face, Picture& picture)
    : ControlView(face, picture), picture_(picture), view_(new PictureWidget(face.host())) {}

void PictureView::Show() {
  auto* camera = dynamic_cast<LiveCamera*>(picture_.camera());
  if (camera == nullptr) return view_->SetPath(Q(picture_.Text()));
  QObject::connect(camera, &LiveCamera::Seen, view_, &PictureWidget::SetPicture,
                   Qt::UniqueConnection);
}

void BarWidget::Set(const std::vector<Bar::Part>& parts, const QString& text, bool chinese) {
  parts_ = parts;
  text_ = text;
  chinese_ = chinese;
  updateGeometry();
  update();
}

QSize BarWidget::sizeHint() const {
  bool legend = !text_.isEmpty();
  for (const auto& part : parts_) legend |= !part.caption.english.empty();
  return {320, kBarHeight + 8 + (legend ? fontMetrics().height() + 4 : 0)};
}

int BarWidget::PartWidth(const QString& caption) const {
  return 14 + fontMetrics().horizontalAdvance(caption) + 18;
}

int BarWidget::LegendWidth() const {
  int width = 0;
  for (const auto& part : parts_) {
    const QString caption = Plain(part.caption.In(chinese_));
    if (!caption.isEmpty()) width += PartWidth(caption);
  }
  return width;
}

void BarWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF whole(0, 4, width(), kBarHeight);
  QPainterPath shape;
  shape.addRoundedRect(whole, kBarHeight / 2.0, kBarHeight / 2.0);
  painter.save();
  painter.setClipPath(shape);
  painter.fillRect(whole, Look().line);
  double x = 0;
  for (const auto& part : parts_) {
    const double width_of_part = whole.width() * std::clamp(part.share, 0.0, 1.0);
    // The last part also fills what rounding leaves.
    painter.fillRect(QRectF(x, whole.top(), width_of_part, kBarHeight), PartColor(part.tone));
    x += width_of_part;
  }
  painter.restore();
  const int base = kBarHeight + 10;
  int left = 0;
  const int height_of_text = fontMetrics().height();
  // In a narrow place the text stands alone: it tells more than the captions do.
  const int text_width = fontMetrics().horizontalAdvance(text_);
  const bool alone = text_width > 0 && LegendWidth() + text_width > width();
  for (const auto& part : parts_) {
    const QString caption = Plain(part.caption.In(chinese_));
    if (caption.isEmpty() || alone) continue;
    painter.setPen(Qt::NoPen);
    painter.setBrush(PartColor(part.tone));
    painter.drawEllipse(QPointF(left + 5, base + height_of_text / 2.0), 4, 4);
    painter.setPen(Look().muted);
    painter.drawText(left + 14, base, width(), height_of_text, Qt::AlignLeft | Qt::AlignVCenter,
                     caption);
    left += PartWidth(caption);
  }
  painter.setPen(Look().text);
  painter.drawText(left, base, width() - left, height_of_text,
                   (left ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter, text_);
}

BarView::BarView(ScreenFace& face, Bar& bar)
    : ControlView(face, bar), bar_(bar), view_(new BarWidget(face.host())) {
  view_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void BarView::Show() { view_->Set(bar_.parts(), Q(bar_.Text()), face().chinese()); }

FrameView::FrameView(ScreenFace& face, Frame& frame) : ControlView(face, frame), frame_(frame) {
  card_ = new QFrame(face.host());
  card_->setProperty("card", true);
  auto* layout = new QVBoxLayout(card_);
  layout->setContentsMargins(kMargin, kGap, kMargin, kMargin);
  layout->setSpacing(kGap);
  title_ = CardTitle(card_);
  body_ = new QWidget(card_);
  layout->addWidget(title_);
  layout->addWidget(body_, 1);
}

void FrameView::SetBare() {
  card_->setProperty("card", false);
  card_->layout()->setContentsMargins(0, 0, 0, 0);
  card_->layout()->setSpacing(6);
}

void FrameView::SetLow() { card_->layout()->setContentsMargins(kMargin, 8, kMargin, 8); }

void FrameView::Show() {
  const QString title = Plain(frame_.caption().In(face().chinese()));
  title_->setText(title);
  title_->setVisible(!title.isEmpty());
}

TabView::TabView(ScreenFace& face, Tab& tab) : ControlView(face, tab), tab_(tab) {
  tabs_ = new QTabWidget(face.host());
  tabs_->setDocumentMode(false);
  QObject::connect(tabs_, &QTabWidget::currentChanged, tabs_, [this](int shown) {
    if (shown < 0) return;
    const int page = declared_[static_cast<std::size_t>(shown)];
    if (page == tab_.page()) return;
    this->face().Settle();
    Act([&] { tab_.SetPage(page); });
    Refresh();
  });
}

void TabView::AddPage(Frame& page, int declared, QWidget* contents) {
  const QSignalBlocker blocker(tabs_);
  pages_.push_back(&page);
  declared_.push_back(declared);
  tabs_->addTab(contents, QString());
}

void TabView::Show() {
  const QSignalBlocker blocker(tabs_);
  for (int i = 0; i < static_cast<int>(pages_.size()); ++i) {
    const Frame& page = *pages_[static_cast<std::size_t>(i)];
    tabs_->setTabText(i, Q(page.caption().In(face().chinese())));
    tabs_->setTabVisible(i, page.visible());
    tabs_->setTabEnabled(i, page.enabled());
  }
  const auto at = std::find(declared_.begin(), declared_.end(), tab_.page());
  const int shown = static_cast<int>(at - declared_.begin());
  if (at != declared_.end() && tabs_->currentIndex() != shown) tabs_->setCurrentIndex(shown);
}

}  // namespace kaunter
