#include "desktop/figure_views.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "core/shown.h"
#include "desktop/text.h"
#include "desktop/theme.h"

namespace kaunter {
namespace {

constexpr int kInside = 14;
constexpr int kHead = 40;

QString Elided(const QPainter& painter, const QString& text, int width) {
  return painter.fontMetrics().elidedText(text, Qt::ElideRight, width);
}

// Round at the end that grows: the other end lies outside of what is drawn.
void FillBar(QPainter& painter, const QRectF& bar, const QColor& tone, bool upright) {
  const QRect place = bar.toRect();
  const QRect whole = upright ? place.adjusted(0, 0, 0, 4) : place.adjusted(-4, 0, 0, 0);
  painter.save();
  painter.setClipRect(place);
  painter.setPen(Qt::NoPen);
  painter.setBrush(tone);
  painter.drawRoundedRect(whole, 3, 3);
  painter.restore();
}

}  // namespace

void DrawCard(QPainter& painter, const QWidget& card, bool lit) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(card.hasFocus() ? Look().accent : Look().line, card.hasFocus() ? 1.6 : 1));
  painter.setBrush(lit ? Look().accent_soft : Look().card);
  painter.drawRoundedRect(QRectF(card.rect()).adjusted(0.8, 0.8, -0.8, -0.8), 8, 8);
}

FigureCard::FigureCard(QWidget* parent) : QAbstractButton(parent) {
  setAttribute(Qt::WA_Hover);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void FigureCard::Set(const QString& title, const QString& amount, const QString& note, bool alarm) {
  title_ = title;
  amount_ = amount;
  note_ = note;
  alarm_ = alarm;
  setAccessibleName(title + " " + amount + " " + note);
  setCursor(isEnabled() ? Qt::PointingHandCursor : Qt::ArrowCursor);
  update();
}

void FigureCard::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  DrawCard(painter, *this, isEnabled() && (underMouse() || isDown()));
  const QRect inside = rect().adjusted(kInside, 9, -kInside, -8);
  painter.setPen(Look().muted);
  painter.drawText(inside, Qt::AlignTop | Qt::AlignLeft, Elided(painter, title_, inside.width()));
  painter.drawText(inside, Qt::AlignBottom | Qt::AlignLeft, Elided(painter, note_, inside.width()));
  painter.setPen(alarm_ ? Look().bad : Look().text);
  painter.setFont(ScaledFont(1.5, true));
  painter.drawText(inside, Qt::AlignVCenter | Qt::AlignLeft,
                   Elided(painter, amount_, inside.width()));
}

Chart::Chart(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
}

void Chart::Set(const QString& title, std::vector<FigureBar> bars, const QString& note,
                const QString& empty) {
  title_ = title;
  note_ = note;
  empty_ = empty;
  bars_ = std::move(bars);
  if (pointed_ >= static_cast<int>(bars_.size())) pointed_ = -1;
  setAccessibleName(title + " " + note);
  update();
}

void Chart::SetOpens(bool opens, const QString& tip) {
  opens_ = opens;
  setToolTip(tip);
}

bool Chart::IsEmpty() const {
  return std::all_of(bars_.begin(), bars_.end(),
                     [](const FigureBar& bar) { return bar.tally.count == 0; });
}

QRect Chart::Body() const { return rect().adjusted(kInside, kHead, -kInside, -10); }

QString Chart::HeadNote() const {
  if (pointed_ < 0) return note_;
  const FigureBar& bar = bars_[static_cast<std::size_t>(pointed_)];
  return QString("%1:  %2  (%3)")
      .arg(bar.name, Q(ShowMoney(bar.tally.amount)))
      .arg(bar.tally.count);
}

void Chart::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  DrawCard(painter, *this, false);
  const QRect head(kInside, 8, width() - 2 * kInside, kHead - 14);
  const QFont usual = painter.font();
  painter.setFont(ScaledFont(1.1, true));
  painter.setPen(Look().text);
  painter.drawText(head, Qt::AlignVCenter | Qt::AlignLeft, title_);
  const int title_width = painter.fontMetrics().horizontalAdvance(title_) + 12;
  painter.setFont(usual);
  if (IsEmpty()) {
    painter.setPen(Look().muted);
    painter.drawText(Body(), Qt::AlignCenter | Qt::TextWordWrap, empty_);
    return;
  }
  painter.setPen(pointed_ < 0 ? Look().muted : Look().text);
  painter.drawText(head, Qt::AlignVCenter | Qt::AlignRight,
                   Elided(painter, HeadNote(), head.width() - title_width));
  // An amount below nothing (more taken back than paid) has no bar; its figure tells it.
  Money most;
  for (const FigureBar& bar : bars_) most = std::max(most, bar.tally.amount);
  for (std::size_t i = 0; i < bars_.size(); ++i) {
    const double of_most = most > Money() ? bars_[i].tally.amount.ToDouble() / most.ToDouble() : 0;
    DrawBar(painter, static_cast<int>(i), std::max(0.0, of_most));
  }
}

int Chart::BarAt(const QPoint& place) const {
  if (IsEmpty()) return -1;
  for (int i = 0; i < static_cast<int>(bars_.size()); ++i) {
    if (PlaceOf(i).contains(place)) return i;
  }
  return -1;
}

void Chart::Point(int bar) {
  if (bar == pointed_) return;
  pointed_ = bar;
  setCursor(bar >= 0 && opens_ ? Qt::PointingHandCursor : Qt::ArrowCursor);
  update();
}

void Chart::mouseMoveEvent(QMouseEvent* event) { Point(BarAt(event->pos())); }

void Chart::mousePressEvent(QMouseEvent* event) {
  pressed_ = event->button() == Qt::LeftButton ? BarAt(event->pos()) : -1;
}

void Chart::mouseReleaseEvent(QMouseEvent* event) {
  const int bar = pressed_;
  pressed_ = -1;
  if (bar >= 0 && bar == BarAt(event->pos()) && opens_ && onOpen) onOpen(bar);
}

void Chart::leaveEvent(QEvent*) { Point(-1); }

void Chart::keyPressEvent(QKeyEvent* event) {
  const int last = static_cast<int>(bars_.size()) - 1;
  const int key = event->key();
  if (last < 0 || IsEmpty()) return QWidget::keyPressEvent(event);
  if (key == Qt::Key_Left || key == Qt::Key_Up) {
    Point(pointed_ < 0 ? last : std::max(0, pointed_ - 1));
  } else if (key == Qt::Key_Right || key == Qt::Key_Down) {
    Point(std::min(last, pointed_ + 1));
  } else if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
    if (opens_ && onOpen) onOpen(pointed_ < 0 ? last : pointed_);
  } else {
    QWidget::keyPressEvent(event);
  }
}

QRect BandChart::PlaceOf(int bar) const {
  const QRect body = Body();
  const int count = std::max(1, static_cast<int>(bars().size()));
  const int top = body.top() + body.height() * bar / count;
  return {body.left(), top, body.width(), body.top() + body.height() * (bar + 1) / count - top};
}

void BandChart::DrawBar(QPainter& painter, int bar, double share) const {
  const QRect place = PlaceOf(bar);
  int names = 0;
  int amounts = 0;
  for (const FigureBar& each : bars()) {
    names = std::max(names, painter.fontMetrics().horizontalAdvance(each.label));
    amounts =
        std::max(amounts, painter.fontMetrics().horizontalAdvance(Q(ShowMoney(each.tally.amount))));
  }
  const FigureBar& shown = bars()[static_cast<std::size_t>(bar)];
  painter.setPen(bar == pointed() ? Look().text : Look().muted);
  painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft, shown.label);
  painter.setPen(shown.tally.count == 0 ? Look().muted : Look().text);
  painter.drawText(place, Qt::AlignVCenter | Qt::AlignRight, Q(ShowMoney(shown.tally.amount)));
  const double room = std::max(0, place.width() - names - amounts - 24);
  const double thick = std::min(16.0, place.height() * 0.62);
  QRectF ground(place.left() + names + 12, place.center().y() + 0.5 - thick / 2, room, thick);
  QColor pale = Look().line;
  pale.setAlphaF(bar == pointed() ? 0.9F : 0.45F);
  FillBar(painter, ground, pale, false);
  if (shown.tally.count == 0) return;
  ground.setWidth(std::max(3.0, room * share));
  FillBar(painter, ground, shown.tone, false);
}

QRect MonthChart::PlaceOf(int bar) const {
  const QRect body = Body();
  const int count = std::max(1, static_cast<int>(bars().size()));
  const int left = body.left() + body.width() * bar / count;
  return {left, body.top(), body.left() + body.width() * (bar + 1) / count - left, body.height()};
}

void MonthChart::DrawBar(QPainter& painter, int bar, double share) const {
  const QRect place = PlaceOf(bar);
  const FigureBar& shown = bars()[static_cast<std::size_t>(bar)];
  const int label = painter.fontMetrics().height() + 3;
  const double floor = place.bottom() - label;
  const bool last = bar + 1 == static_cast<int>(bars().size());
  painter.setPen(Look().line);
  painter.drawLine(QPointF(place.left(), floor + 0.5), QPointF(place.right() + 1, floor + 0.5));
  painter.setPen(bar == pointed() || (last && pointed() < 0) ? Look().text : Look().muted);
  // Where names are wider than their bars every second or third has one, the last among them.
  int widest = 0;
  for (const FigureBar& each : bars()) {
    widest = std::max(widest, painter.fontMetrics().horizontalAdvance(each.label));
  }
  const int behind = static_cast<int>(bars().size()) - 1 - bar;
  if (behind % (widest / std::max(1, place.width()) + 1) == 0) {
    painter.drawText(
        QRect(place.center().x() - widest, place.bottom() - label + 4, 2 * widest, label),
        Qt::AlignCenter, shown.label);
  }
  if (shown.tally.count == 0) return;
  const double tall = std::max(2.0, (floor - place.top()) * share);
  const double side = place.width() * 0.16;
  QColor tone = shown.tone;
  if (bar != pointed() && !(last && pointed() < 0)) tone.setAlphaF(0.6F);
  FillBar(painter, QRectF(place.left() + side, floor - tall, place.width() - 2 * side, tall), tone,
          true);
}

}  // namespace kaunter
