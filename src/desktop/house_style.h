// HouseStyle draws what a style sheet cannot without picture files: boxes, lists, check marks and
// buttons, in the tones of the theme.
//
// Widgets tell it more through properties: "marked" (a refusal is about this box), "locked" (shown,
// not editable), "role" of a button ("primary", "danger").
#pragma once

#include <QProxyStyle>

namespace kaunter {

class HouseStyle : public QProxyStyle {
 public:
  HouseStyle();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option,
                       const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                       SubControl sub_control, const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
  void polish(QWidget* widget) override;
  using QProxyStyle::polish;
};

}  // namespace kaunter
