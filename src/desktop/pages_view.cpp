#include "desktop/pages_view.h"

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "desktop/text.h"
#include "desktop/theme.h"
#include "qtservices/report_painter.h"
#include "reports/text_width.h"

namespace kaunter {
namespace {

constexpr int kPageGap = 18;
constexpr double kLeastZoom = 0.25;
constexpr double kMostZoom = 4;
constexpr double kWheelZoom = 1.1;
constexpr int kSearchAtOnce = 15;  // milliseconds
// Marks are paper's own: the same under every theme.
const QColor kMark(0xff, 0xe2, 0x7a);
const QColor kCurrentMark(0xff, 0xa6, 0x3d);

// Where the letters of a text stand in its box.
QRectF InkOf(const PageText& text) {
  const double width = std::min(TextWidth(text.text, text.points, text.bold), text.width);
  const double free = text.width - width;
  const double left = text.x + (text.align == TextAlign::right    ? free
                                : text.align == TextAlign::center ? free / 2
                                                                  : 0);
  return {left - 0.5, text.y + 0.3, width + 1, text.height - 0.6};
}

}  // namespace

PagesView::PagesView(const ReportDocument& document, QWidget* parent)
    : QAbstractScrollArea(parent),
      document_(document),
      searched_(static_cast<int>(document.pages.size())),
      search_on_(new QTimer(this)) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  viewport()->setBackgroundRole(QPalette::Window);  // the desk that the paper lies on
  search_on_->setSingleShot(true);
  connect(search_on_, &QTimer::timeout, this, [this] { SearchOn(); });
  Ranges();
}

double PagesView::Scale() const { return zoom_ * logicalDpiX() / 25.4; }

QSize PagesView::PageSize() const {
  return {static_cast<int>(document_.width_mm * Scale()),
          static_cast<int>(document_.height_mm * Scale())};
}

int PagesView::Step() const { return PageSize().height() + kPageGap; }

QRect PagesView::PageRect(int page) const {
  const QSize size = PageSize();
  const int room = viewport()->width();
  const int wide = size.width() + 2 * kPageGap;
  const int left =
      wide <= room ? (room - size.width()) / 2 : kPageGap - horizontalScrollBar()->value();
  return {QPoint(left, kPageGap + page * Step() - verticalScrollBar()->value()), size};
}

void PagesView::Ranges() {
  const QSize window = viewport()->size();
  verticalScrollBar()->setPageStep(window.height());
  verticalScrollBar()->setSingleStep(60);
  verticalScrollBar()->setRange(0, std::max(0, pages() * Step() + kPageGap - window.height()));
  horizontalScrollBar()->setPageStep(window.width());
  horizontalScrollBar()->setRange(0,
                                  std::max(0, PageSize().width() + 2 * kPageGap - window.width()));
}

void PagesView::SetZoom(double zoom) {
  const double place =
      gone_to_ >= 0 ? gone_to_ : verticalScrollBar()->value() / static_cast<double>(Step());
  zoom_ = std::clamp(zoom, kLeastZoom, kMostZoom);
  fits_width_ = false;
  {
    const QScopedValueRollback going(going_, true);
    Ranges();
    verticalScrollBar()->setValue(static_cast<int>(std::lround(place * Step())));
  }
  viewport()->update();
  emit Moved();
}

void PagesView::FitWidth() {
  const double paper = document_.width_mm * logicalDpiX() / 25.4;
  const auto fit = [&] { SetZoom((viewport()->width() - 2 * kPageGap) / paper); };
  const int room = viewport()->width();
  fit();
  // The page has become so high that a scroll bar takes its part of the width.
  if (viewport()->width() < room) fit();
  fits_width_ = true;
}

int PagesView::page() const {
  if (gone_to_ >= 0) return gone_to_;
  const int middle = verticalScrollBar()->value() + viewport()->height() / 2;
  return std::clamp((middle - kPageGap / 2) / Step(), 0, std::max(pages() - 1, 0));
}

void PagesView::GoTo(int page) {
  gone_to_ = std::clamp(page, 0, std::max(pages() - 1, 0));
  {
    const QScopedValueRollback going(going_, true);
    verticalScrollBar()->setValue(gone_to_ * Step());
  }
  emit Moved();
}

void PagesView::Turn(int pages) {
  const int here = gone_to_ >= 0 ? gone_to_ : (verticalScrollBar()->value() + kPageGap) / Step();
  GoTo(here + pages);
}

// The keys that turn pages are the window's; the arrows scroll.
void PagesView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_PageDown:
    case Qt::Key_PageUp:
      event->ignore();
      return;
    default:
      QAbstractScrollArea::keyPressEvent(event);
  }
}

void PagesView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  {
    const QScopedValueRollback going(going_, true);
    Ranges();
    if (gone_to_ >= 0) verticalScrollBar()->setValue(gone_to_ * Step());
  }
  emit Moved();
}

void PagesView::scrollContentsBy(int, int dy) {
  viewport()->update();
  if (going_) return;  // who goes tells it when it stands
  if (dy != 0) gone_to_ = -1;
  emit Moved();
}

void PagesView::wheelEvent(QWheelEvent* event) {
  if (!(event->modifiers() & Qt::ControlModifier)) {
    QAbstractScrollArea::wheelEvent(event);
    return;
  }
  SetZoom(zoom_ * std::pow(kWheelZoom, event->angleDelta().y() / 120.0));
  event->accept();
}

void PagesView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  const int top = verticalScrollBar()->value() + event->rect().top();
  const int first = std::max(0, (top - kPageGap) / Step());
  for (int page = first; page < pages(); ++page) {
    const QRect rect = PageRect(page);
    if (rect.top() > event->rect().bottom()) break;
    painter.fillRect(rect.translated(2, 3), QColor(0, 0, 0, 40));
    // Paper is white under every theme.
    painter.fillRect(rect.adjusted(-1, -1, 1, 1), Look().border);
    painter.fillRect(rect, Qt::white);
    painter.save();
    painter.setClipRect(rect);
    painter.translate(rect.topLeft());
    painter.scale(Scale(), Scale());
    PaintReportPage(painter, document_, static_cast<std::size_t>(page));
    PaintHits(painter, page);
    painter.restore();
  }
}

// Over the page, so that they show on the head of a table as well: the text shines through.
void PagesView::PaintHits(QPainter& painter, int page) const {
  painter.setCompositionMode(QPainter::CompositionMode_Multiply);
  const auto from = std::lower_bound(hits_.begin(), hits_.end(), page,
                                     [](const PageHit& hit, int at) { return hit.page < at; });
  const auto& texts = document_.pages[static_cast<std::size_t>(page)].texts;
  for (auto hit = from; hit != hits_.end() && hit->page == page; ++hit) {
    const bool current = hit - hits_.begin() == hit_;
    painter.fillRect(InkOf(texts[static_cast<std::size_t>(hit->text)]),
                     current ? kCurrentMark : kMark);
  }
}

void PagesView::Find(const QString& wanted) {
  needle_ = wanted.trimmed();
  hits_.clear();
  hit_ = -1;
  searched_from_ = page();
  searched_ = needle_.isEmpty() ? pages() : 0;
  SearchOn();
}

bool PagesView::searching() const { return searched_ < pages(); }

// The window lives between two portions.
void PagesView::SearchOn() {
  QElapsedTimer clock;
  clock.start();
  const int known = hit_;
  while (searching() && clock.elapsed() < kSearchAtOnce) SearchPage(searched_++);
  if (searching()) {
    search_on_->start(0);
  } else {
    search_on_->stop();
    if (hit_ < 0 && !hits_.empty()) hit_ = 0;
  }
  if (known < 0 && hit_ >= 0) return ShowHit();
  if (!searching()) return Shown();
  emit Moved();
}

void PagesView::SearchPage(int page) {
  const auto& texts = document_.pages[static_cast<std::size_t>(page)].texts;
  for (int t = 0; t < static_cast<int>(texts.size()); ++t) {
    const std::string& text = texts[static_cast<std::size_t>(t)].text;
    if (!Q(text).contains(needle_, Qt::CaseInsensitive)) continue;
    if (hit_ < 0 && page >= searched_from_) hit_ = static_cast<int>(hits_.size());
    hits_.push_back({page, t});
  }
}

void PagesView::NextHit(int step) {
  if (hits_.empty()) return;
  hit_ = (hit_ + step % hits() + hits()) % hits();
  ShowHit();
}

void PagesView::ShowHit() {
  if (hit_ >= 0) {
    gone_to_ = -1;
    const PageHit& hit = hits_[static_cast<std::size_t>(hit_)];
    const PageText& text = document_.pages[static_cast<std::size_t>(hit.page)]
                               .texts[static_cast<std::size_t>(hit.text)];
    const QRectF ink = InkOf(text);
    const QRect page = PageRect(hit.page);
    const QRect place(page.topLeft() + QPoint(static_cast<int>(ink.left() * Scale()),
                                              static_cast<int>(ink.top() * Scale())),
                      (ink.size() * Scale()).toSize());
    const QRect window = viewport()->rect();
    if (place.top() < 0 || place.bottom() > window.bottom()) {
      verticalScrollBar()->setValue(verticalScrollBar()->value() + place.top() -
                                    window.height() / 3);
    }
    if (place.left() < 0 || place.right() > window.right()) {
      horizontalScrollBar()->setValue(horizontalScrollBar()->value() + place.left() -
                                      window.width() / 3);
    }
  }
  Shown();
}

void PagesView::Shown() {
  viewport()->update();
  emit Moved();
}

}  // namespace kaunter
