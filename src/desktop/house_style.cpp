#include "desktop/house_style.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOption>

#include "desktop/theme.h"

namespace kaunter {
namespace {

constexpr double kRadius = 5;
constexpr int kArrowWidth = 26;
constexpr int kIndicator = 18;

bool Flag(const QWidget* widget, const char* property) {
  return widget && widget->property(property).toBool();
}

void RoundedBox(QPainter& painter, const QRect& rect, const QColor& fill, const QColor& edge,
                double width) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(fill);
  painter.setPen(width > 0 ? QPen(edge, width) : QPen(Qt::NoPen));
  const double inset = width / 2;
  painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), kRadius, kRadius);
}

// The panel of everything that holds a text: field, locked, focused or marked.
void DrawBox(QPainter& painter, const QStyleOption& option, const QWidget* widget) {
  const Looks& t = Look();
  painter.save();
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool locked = !enabled || Flag(widget, "locked");
  if (locked && Flag(widget, "figure") && !Flag(widget, "marked")) {
    painter.restore();
    return;
  }
  const bool focus = enabled && (option.state & QStyle::State_HasFocus);
  const bool hover = enabled && (option.state & QStyle::State_MouseOver);
  QColor edge = locked ? t.line : t.border;
  if (hover && !locked) edge = t.muted;
  double width = 1;
  QColor fill = locked ? t.locked : t.field;
  if (Flag(widget, "marked")) {
    edge = t.bad;
    fill = t.bad_soft;
    width = 1.6;
  } else if (focus) {
    edge = t.accent;
    width = 1.6;
  }
  RoundedBox(painter, option.rect, fill, edge, width);
  painter.restore();
}

void DrawChevron(QPainter& painter, const QRect& rect, const QColor& color) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  const QPointF c = QRectF(rect).center();
  const QPointF points[] = {c + QPointF(-4, -2), c + QPointF(0, 2), c + QPointF(4, -2)};
  painter.drawPolyline(points, 3);
  painter.restore();
}

void DrawIndicator(QPainter& painter, const QStyleOption& option, bool round) {
  const Looks& t = Look();
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const bool on = option.state & QStyle::State_On;
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool focus = option.state & QStyle::State_HasFocus;
  const double side = std::min({option.rect.width(), option.rect.height(), 16});
  QRectF box(0, 0, side, side);
  box.moveCenter(QRectF(option.rect).center());
  box.adjust(0.8, 0.8, -0.8, -0.8);
  QColor edge = on || focus ? t.accent : t.border;
  if (option.state & QStyle::State_MouseOver && !on) edge = t.muted;
  QColor fill = on ? t.accent : t.field;
  if (!enabled) {
    edge = t.border;
    fill = on ? t.border : t.locked;
  }
  painter.setPen(QPen(edge, focus ? 1.8 : 1.2));
  painter.setBrush(fill);
  if (round) {
    painter.drawEllipse(box);
    if (on) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(t.on_accent);
      painter.drawEllipse(box.center(), side * 0.17, side * 0.17);
    }
  } else {
    painter.drawRoundedRect(box, 3.5, 3.5);
    if (on) {
      painter.setPen(QPen(t.on_accent, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
      const double l = box.left();
      const double y = box.top();
      const double w = box.width();
      const QPointF tick[] = {
          {l + w * 0.24, y + w * 0.54}, {l + w * 0.43, y + w * 0.72}, {l + w * 0.77, y + w * 0.30}};
      painter.drawPolyline(tick, 3);
    }
  }
  painter.restore();
}

void DrawButton(QPainter& painter, const QStyleOption& option, const QWidget* widget) {
  const Looks& t = Look();
  painter.save();
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool hover = enabled && (option.state & QStyle::State_MouseOver);
  const bool down = option.state & (QStyle::State_Sunken | QStyle::State_On);
  const bool focus = enabled && (option.state & QStyle::State_HasFocus);
  const bool primary = widget && widget->property("role").toString() == "primary";
  QColor fill = t.card;
  QColor edge = t.border;
  if (primary && enabled) {
    fill = hover || down ? t.accent_hover : t.accent;
    edge = fill;
  } else if (!enabled) {
    fill = t.locked;
    edge = t.line;
  } else if (down) {
    fill = t.accent_soft;
  } else if (hover) {
    fill = t.stripe;
    edge = t.muted;
  }
  RoundedBox(painter, option.rect, fill, edge, 1);
  if (focus) {
    const QRect inner = primary ? option.rect.adjusted(2, 2, -2, -2) : option.rect;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(primary ? t.on_accent : t.accent, primary ? 1.0 : 1.6));
    painter.drawRoundedRect(QRectF(inner).adjusted(0.8, 0.8, -0.8, -0.8), kRadius - 1, kRadius - 1);
  }
  painter.restore();
}

}  // namespace

HouseStyle::HouseStyle() : QProxyStyle(QStyleFactory::create("Fusion")) {}

void HouseStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
  switch (element) {
    case PE_PanelLineEdit: {
      const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
      if (frame && frame->lineWidth > 0) DrawBox(*painter, *option, widget);
      return;
    }
    case PE_FrameLineEdit:
    case PE_FrameDefaultButton:
      return;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
      return DrawIndicator(*painter, *option, false);
    case PE_IndicatorRadioButton:
      return DrawIndicator(*painter, *option, true);
    case PE_PanelButtonCommand:
      return DrawButton(*painter, *option, widget);
    case PE_FrameFocusRect:
      // The indicator and the row show the focus themselves.
      return;
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void HouseStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
  if (element == CE_PushButtonLabel) {
    if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
      QStyleOptionButton copy(*button);
      const QString role = widget ? widget->property("role").toString() : QString();
      if (copy.state & State_Enabled) {
        if (role == "primary") copy.palette.setColor(QPalette::ButtonText, Look().on_accent);
        if (role == "danger") copy.palette.setColor(QPalette::ButtonText, Look().bad);
      }
      QProxyStyle::drawControl(element, &copy, painter, widget);
      return;
    }
  }
  if (element == CE_ComboBoxLabel) {
    if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
        combo && !combo->editable) {
      const QRect edit = subControlRect(CC_ComboBox, combo, SC_ComboBoxEditField, widget);
      painter->save();
      painter->setPen(combo->palette.color(QPalette::Text));
      painter->drawText(
          edit.adjusted(8, 0, -2, 0), Qt::AlignVCenter | Qt::AlignLeft,
          combo->fontMetrics.elidedText(combo->currentText, Qt::ElideRight, edit.width() - 10));
      painter->restore();
      return;
    }
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void HouseStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
  if (control == CC_ComboBox) {
    DrawBox(*painter, *option, widget);
    const bool live = (option->state & State_Enabled) && !Flag(widget, "locked");
    QColor color = Look().muted;
    if (!live) color.setAlphaF(0.5F);
    DrawChevron(*painter, subControlRect(control, option, SC_ComboBoxArrow, widget), color);
    return;
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect HouseStyle::subElementRect(SubElement element, const QStyleOption* option,
                                 const QWidget* widget) const {
  if (element == SE_LineEditContents) {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    // A figure without its frame begins under its caption.
    const bool bare = Flag(widget, "figure") && Flag(widget, "locked");
    const int side = bare ? -2 : frame && frame->lineWidth > 0 ? 6 : 5;
    return option->rect.adjusted(side, 1, -side, -1);
  }
  return QProxyStyle::subElementRect(element, option, widget);
}

QRect HouseStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                 SubControl sub_control, const QWidget* widget) const {
  if (control == CC_ComboBox) {
    const QRect r = option->rect;
    if (sub_control == SC_ComboBoxArrow) {
      return {r.right() - kArrowWidth, r.top(), kArrowWidth, r.height()};
    }
    if (sub_control == SC_ComboBoxEditField) return r.adjusted(1, 1, -kArrowWidth, -1);
    if (sub_control == SC_ComboBoxFrame) return r;
  }
  return QProxyStyle::subControlRect(control, option, sub_control, widget);
}

QSize HouseStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
  QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
  switch (type) {
    case CT_LineEdit:
      // The editor of a table cell keeps the height of its row.
      result.setHeight(std::max(size.height() + 6, kBoxHeight));
      break;
    case CT_ComboBox:
      result = QSize(size.width() + kArrowWidth + 16, std::max(size.height() + 6, kBoxHeight));
      break;
    case CT_PushButton:
      result = QSize(std::max(size.width() + 32, 88), std::max(size.height() + 10, 32));
      break;
    case CT_CheckBox:
    case CT_RadioButton:
      result.setHeight(std::max(result.height(), kBoxHeight));
      break;
    default:
      break;
  }
  return result;
}

int HouseStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                            const QWidget* widget) const {
  switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      return kIndicator;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
      return 7;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
      return 0;
    case PM_ButtonDefaultIndicator:
      return 0;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int HouseStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* data) const {
  switch (hint) {
    case SH_ComboBox_Popup:
      return 0;  // a list below the box, not a menu over it
    case SH_ToolTip_WakeUpDelay:
      return 400;
    case SH_DialogButtonBox_ButtonsHaveIcons:
      return 0;
    default:
      return QProxyStyle::styleHint(hint, option, widget, data);
  }
}

void HouseStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  if (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QComboBox*>(widget) ||
      qobject_cast<QLineEdit*>(widget)) {
    widget->setAttribute(Qt::WA_Hover);
  }
}

}  // namespace kaunter
