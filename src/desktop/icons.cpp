#include "desktop/icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

#include "desktop/theme.h"

namespace kaunter {
namespace {

// All glyphs are drawn on a field of 24 by 24.
QPainterPath PathOf(Glyph glyph) {
  QPainterPath p;
  const auto line = [&p](double x1, double y1, double x2, double y2) {
    p.moveTo(x1, y1);
    p.lineTo(x2, y2);
  };
  switch (glyph) {
    case Glyph::calendar:
      p.addRoundedRect(4, 5.5, 16, 14.5, 2, 2);
      line(4, 10, 20, 10);
      line(8.5, 3.5, 8.5, 7.5);
      line(15.5, 3.5, 15.5, 7.5);
      break;
    case Glyph::search:
      p.addEllipse(QPointF(10.5, 10.5), 6, 6);
      line(15, 15, 20, 20);
      break;
    case Glyph::person:
      p.addEllipse(QPointF(12, 8), 4, 4);
      p.moveTo(4.5, 20.5);
      p.cubicTo(5, 11.5, 19, 11.5, 19.5, 20.5);
      break;
    case Glyph::paper:
      p.moveTo(6, 3.5);
      p.lineTo(14, 3.5);
      p.lineTo(18.5, 8);
      p.lineTo(18.5, 20.5);
      p.lineTo(6, 20.5);
      p.closeSubpath();
      line(9, 12, 15.5, 12);
      line(9, 16, 15.5, 16);
      break;
    case Glyph::coins:
      p.addEllipse(QPointF(12, 7), 7, 3);
      p.moveTo(5, 7);
      p.lineTo(5, 17);
      p.cubicTo(5, 21, 19, 21, 19, 17);
      p.lineTo(19, 7);
      p.moveTo(5, 12);
      p.cubicTo(5, 16, 19, 16, 19, 12);
      break;
    case Glyph::calculator:
      p.addRoundedRect(5, 3.5, 14, 17, 2, 2);
      p.addRect(8, 6.5, 8, 3);
      for (const double y : {13.0, 16.8}) {
        for (const double x : {8.5, 12.0, 15.5}) p.addEllipse(QPointF(x, y), 0.7, 0.7);
      }
      break;
    case Glyph::clock:
      p.addEllipse(QPointF(12, 12), 8.5, 8.5);
      line(12, 7, 12, 12);
      line(12, 12, 15.5, 14);
      break;
    case Glyph::book:
      p.moveTo(12, 6.5);
      p.cubicTo(10, 4.5, 6, 4.5, 3.5, 5.5);
      p.lineTo(3.5, 18.5);
      p.cubicTo(6, 17.5, 10, 17.5, 12, 19.5);
      p.cubicTo(14, 17.5, 18, 17.5, 20.5, 18.5);
      p.lineTo(20.5, 5.5);
      p.cubicTo(18, 4.5, 14, 4.5, 12, 6.5);
      line(12, 6.5, 12, 19.5);
      break;
    case Glyph::seal:
      p.addEllipse(QPointF(12, 10), 6, 6);
      p.moveTo(9, 15.5);
      p.lineTo(8, 21);
      p.lineTo(12, 18.8);
      p.lineTo(16, 21);
      p.lineTo(15, 15.5);
      break;
    case Glyph::shield:
      p.moveTo(12, 3.5);
      p.lineTo(19, 6);
      p.cubicTo(19.5, 13, 17, 18, 12, 20.5);
      p.cubicTo(7, 18, 4.5, 13, 5, 6);
      p.closeSubpath();
      break;
    case Glyph::card:
      p.addRoundedRect(3, 5.5, 18, 13, 2, 2);
      p.addEllipse(QPointF(8.5, 11), 2, 2);
      line(13.5, 10, 18, 10);
      line(13.5, 14, 18, 14);
      line(6, 15.5, 11, 15.5);
      break;
    case Glyph::arrow:
      line(5, 12, 19, 12);
      line(13.5, 6.5, 19, 12);
      line(13.5, 17.5, 19, 12);
      break;
    case Glyph::sidebar:
      p.addRoundedRect(3.5, 4.5, 17, 15, 2, 2);
      line(9.5, 4.5, 9.5, 19.5);
      line(5.8, 8.5, 7.2, 8.5);
      line(5.8, 12, 7.2, 12);
      line(5.8, 15.5, 7.2, 15.5);
      break;
  }
  return p;
}

class GlyphEngine : public QIconEngine {
 public:
  GlyphEngine(Glyph glyph, bool strong) : glyph_(glyph), strong_(strong) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    QColor color = strong_ ? Look().accent : Look().muted;
    if (mode == QIcon::Active) color = Look().accent;
    if (mode == QIcon::Disabled) color.setAlphaF(0.4F);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / 24.0, rect.height() / 24.0);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(color, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(PathOf(glyph_));
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new GlyphEngine(glyph_, strong_); }

 private:
  Glyph glyph_;
  bool strong_;
};

}  // namespace

QIcon MakeIcon(Glyph glyph, bool strong) { return QIcon(new GlyphEngine(glyph, strong)); }

}  // namespace kaunter
