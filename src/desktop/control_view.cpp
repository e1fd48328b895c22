#include "desktop/control_view.h"

#include <QPlainTextEdit>
#include <QStyle>

#include "desktop/choice_views.h"
#include "desktop/grid_view.h"
#include "desktop/plain_views.h"
#include "desktop/strip_view.h"
#include "desktop/text.h"
#include "desktop/text_box_view.h"
#include "desktop/theme.h"

namespace kaunter {

QLabel* ControlView::label() {
  if (!label_ && has_label()) {
    label_ = new QLabel(face_.host());
    label_->setWordWrap(true);
    label_->setProperty("muted", true);
    label_->setBuddy(focus_widget());
  }
  return label_;
}

void ControlView::Refresh() {
  const bool visible = control_.Reachable();
  // A page of a tab set hides what stands on it; its tab is hidden by the set itself.
  if (widget()->isHidden() == visible) widget()->setVisible(visible);
  widget()->setEnabled(control_.Active());
  Flag(focus_widget(), "marked", control_.marked());
  Flag(focus_widget(), "locked", control_.locked());
  const QString tip = Q(control_.tip.In(face_.chinese()));
  if (widget()->toolTip() != tip) widget()->setToolTip(tip);
  if (label_) {
    label_->setVisible(visible);
    label_->setEnabled(control_.Active());
    const QString caption = Q(control_.caption().In(face_.chinese()));
    if (label_->text() != caption) label_->setText(caption);
  }
  Show();
}

void ControlView::TakeFocus() {
  if (QWidget* target = focus_widget()) target->setFocus(Qt::OtherFocusReason);
}

void ControlView::DrawAsFigure() {
  widget()->setProperty("figure", true);
  widget()->setFont(ScaledFont(1.25, true));
}

void ControlView::Flag(QWidget* widget, const char* property, bool on) {
  if (!widget || widget->property(property).toBool() == on) return;
  widget->setProperty(property, on);
  // A style sheet looks at properties only while it polishes.
  if (qobject_cast<QPlainTextEdit*>(widget)) {
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
  }
  widget->update();
}

std::unique_ptr<ControlView> MakeView(ScreenFace& face, Control& control) {
  switch (control.type()) {
    case ControlType::text_box: {
      auto& box = static_cast<TextBox&>(control);
      if (box.kind() == Kind::memo) return std::make_unique<MemoView>(face, box);
      return std::make_unique<TextBoxView>(face, box);
    }
    case ControlType::combo_box:
      return std::make_unique<ComboBoxView>(face, static_cast<ComboBox&>(control));
    case ControlType::check_box:
      return std::make_unique<CheckBoxView>(face, static_cast<CheckBox&>(control));
    case ControlType::option:
      return std::make_unique<OptionView>(face, static_cast<Option&>(control));
    case ControlType::button:
      return std::make_unique<ButtonView>(face, static_cast<Button&>(control));
    case ControlType::grid:
      return std::make_unique<GridView>(face, static_cast<Grid&>(control));
    case ControlType::picture:
      if (auto* strip = dynamic_cast<PictureStrip*>(&control)) {
        return std::make_unique<StripView>(face, *strip);
      }
      return std::make_unique<PictureView>(face, static_cast<Picture&>(control));
    case ControlType::bar:
      return std::make_unique<BarView>(face, static_cast<Bar&>(control));
    case ControlType::container:
      if (static_cast<Frame&>(control).is_tab_set()) {
        return std::make_unique<TabView>(face, static_cast<Tab&>(control));
      }
      return std::make_unique<FrameView>(face, static_cast<Frame&>(control));
    case ControlType::label:
      break;
  }
  return std::make_unique<LabelView>(face, static_cast<Label&>(control));
}

}  // namespace kaunter
