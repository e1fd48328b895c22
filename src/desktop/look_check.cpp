#include "desktop/look_check.h"

#include <fmt/format.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>

#include "desktop/column_widths.h"
#include "desktop/control_view.h"
#include "desktop/grid_view.h"
#include "desktop/screen_dialog.h"
#include "desktop/text.h"

namespace kaunter {
namespace {

constexpr int kBoxPadding = 14;  // of a box, both sides, with its frame

// The least width that the words of a text need, and their height at the width that there is.
bool LabelIsCut(const QLabel& label) {
  const QFontMetrics metrics(label.font());
  if (!label.wordWrap()) {
    const QString shown = Plain(S(label.text()));
    return metrics.horizontalAdvance(shown) > label.contentsRect().width() + 1;
  }
  const QRect room(0, 0, label.contentsRect().width(), 10000);
  const QRect taken = metrics.boundingRect(room, Qt::TextWordWrap, Plain(S(label.text())));
  return taken.width() > room.width() + 1 || taken.height() > label.contentsRect().height() + 2;
}

// Of a text only what is picked, or comes with it.
bool BoxIsCut(const TextBox& box, const QLineEdit& edit) {
  if (box.kind() == Kind::password) return false;
  const bool key = box.locked() || !box.picker.empty();
  const bool name = QFontMetrics(edit.font()).horizontalAdvance(edit.text()) <=
                    WholeTextWidth(QFontMetrics(edit.font()));
  const bool whole = box.kind() != Kind::text || (key && name);
  return whole &&
         QFontMetrics(edit.font()).horizontalAdvance(edit.text()) + kBoxPadding > edit.width();
}

void CheckControl(ControlView& view, std::vector<std::string>& problems) {
  const Control& control = view.control();
  QWidget* widget = view.widget();
  if (!widget->isVisible()) return;
  const auto tell = [&](const std::string& what) {
    problems.push_back(fmt::format("{} {}", control.name(), what));
  };
  const QWidget* place = widget->parentWidget();
  if (place && widget->geometry().right() > place->width()) tell("reaches out of its place");
  const QLabel* caption = view.made_label();
  if (caption && caption->isVisible() && LabelIsCut(*caption)) {
    tell("has a caption that is cut");
  }
  if (const auto* label = qobject_cast<QLabel*>(widget); label && LabelIsCut(*label)) {
    tell("is cut");
  }
  if (const auto* button = qobject_cast<QAbstractButton*>(widget);
      button && button->width() < button->sizeHint().width()) {
    tell("is too narrow for its text");
  }
  if (const auto* grid = dynamic_cast<GridView*>(&view)) {
    for (const std::string& column : grid->CutColumns()) tell("cuts " + column);
  }
  const auto* edit = qobject_cast<QLineEdit*>(widget);
  if (edit && BoxIsCut(static_cast<const TextBox&>(control), *edit)) tell("is cut");
  const QWidget* keyboard = view.focus_widget();
  if (view.is_box() && control.Editable() && keyboard &&
      !(keyboard->focusPolicy() & Qt::TabFocus)) {
    tell("is not reached by Tab");
  }
}

}  // namespace

std::vector<std::string> LookProblems(ScreenDialog& dialog) {
  std::vector<std::string> problems;
  for (const auto* area : dialog.findChildren<QScrollArea*>()) {
    const QScrollBar& down = *area->verticalScrollBar();
    if (down.maximum() > 0) problems.push_back(fmt::format("scrolls by {}", down.maximum()));
    const QScrollBar& right = *area->horizontalScrollBar();
    if (right.maximum() > 0) {
      problems.push_back(fmt::format("scrolls sideways by {}", right.maximum()));
    }
  }
  for (Control* control : dialog.screen().controls()) {
    if (ControlView* view = dialog.face().Find(*control)) CheckControl(*view, problems);
  }
  return problems;
}

}  // namespace kaunter
