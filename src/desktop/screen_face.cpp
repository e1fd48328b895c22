#include "desktop/screen_face.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <algorithm>

#include "desktop/control_view.h"
#include "platform/sql/waiting.h"

namespace kaunter {
namespace {

// The name by which screens know a key; "" for keys that only make text.
std::string KeyName(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return "Enter";
    case Qt::Key_PageUp:
      return "PgUp";
    case Qt::Key_PageDown:
      return "PgDn";
    case Qt::Key_Delete:
      return "Delete";
    case Qt::Key_Insert:
      return "Insert";
    case Qt::Key_Up:
      return "Up";
    case Qt::Key_Down:
      return "Down";
    default:
      break;
  }
  if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F12) {
    return "F" + std::to_string(event.key() - Qt::Key_F1 + 1);
  }
  return {};
}

bool IsEnter(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

ScreenFace::ScreenFace(Screen& screen, QWidget* host) : screen_(screen), host_(host) {
  screen_.observer = this;
  refresh_.setSingleShot(true);
  refresh_.setInterval(0);
  QObject::connect(&refresh_, &QTimer::timeout, this, [this] { RefreshNow(); });
}

ScreenFace::~ScreenFace() {
  if (screen_.observer == this) screen_.observer = nullptr;
}

ControlView& ScreenFace::View(Control& control) {
  if (ControlView* found = Find(control)) return *found;
  views_.push_back(MakeView(*this, control));
  ControlView& view = *views_.back();
  by_control_[&control] = &view;
  if (QWidget* widget = view.focus_widget()) {
    by_widget_[widget] = &view;
    widget->installEventFilter(this);
  }
  return view;
}

ControlView* ScreenFace::Find(const Control& control) const {
  return by_control_.value(&control, nullptr);
}

void ScreenFace::SetOrder(const std::vector<Control*>& order) {
  order_ = order;
  QWidget* before = nullptr;
  for (Control* control : order_) {
    ControlView* view = Find(*control);
    QWidget* widget = view ? view->focus_widget() : nullptr;
    if (!widget || widget->focusPolicy() == Qt::NoFocus) continue;
    if (before) QWidget::setTabOrder(before, widget);
    before = widget;
  }
}

bool ScreenFace::Act(const std::function<void()>& act) {
  if (!Alive()) return false;
  ++acting_;
  const bool done = screen_.Guard(act);
  --acting_;
  return done;
}

// --- the focus

void ScreenFace::FocusArrived(ControlView& view) {
  pending_ = &view;
  if (pending_ == active_ || settling_) return;
  SettleSoon(0);
}

// While a window is painted in the middle of a statement no box is left or entered: what the screen
// does then may send statements of its own.
void ScreenFace::SettleSoon(int milliseconds) {
  QTimer::singleShot(milliseconds, this, [this] {
    constexpr int kNextLook = 20;
    if (IsWaiting()) return SettleSoon(kNextLook);
    Settle();
  });
}

void ScreenFace::Settle() {
  if (settling_ || !Alive()) return;
  settling_ = true;
  put_back_ = nullptr;
  if (active_) active_->Commit();
  // A screen that sends the focus round in a circle stops here instead of hanging.
  for (int turns = 0; pending_ != active_ && turns < 8 && Alive(); ++turns) {
    if (ControlView* old = active_) {
      active_ = nullptr;
      Act([&] { old->control().Leave(); });
      if (!Alive()) break;
      if (pending_ == old) put_back_ = &old->control();
    }
    active_ = pending_;
    if (active_) Act([&] { active_->control().Enter(); });
  }
  settling_ = false;
}

void ScreenFace::StartFocus() {
  Control* wanted = screen_.focus();
  if (!wanted || !wanted->Reachable()) {
    const auto first = std::find_if(order_.begin(), order_.end(), [this](Control* control) {
      const ControlView* view = Find(*control);
      return view && view->is_box() && control->Editable();
    });
    wanted = first == order_.end() ? nullptr : *first;
  }
  if (ControlView* view = wanted ? Find(*wanted) : nullptr) {
    view->TakeFocus();
    FocusArrived(*view);
  }
}

void ScreenFace::MoveOn(ControlView& from) {
  auto at = std::find(order_.begin(), order_.end(), &from.control());
  while (at != order_.end() && ++at != order_.end()) {
    ControlView* view = Find(**at);
    if (!view || !view->is_box() || !(*at)->Editable()) continue;
    // Of a group of options the chosen one is the stop.
    const auto* option = dynamic_cast<const Option*>(*at);
    const auto* here = dynamic_cast<const Option*>(&from.control());
    if (option && here && option->parent() == here->parent() && option->group() == here->group()) {
      continue;
    }
    screen_.FocusOn(**at);
    Settle();
    return;
  }
  if (Button* primary = PrimaryButton()) Press(*primary);
}

// --- buttons

Button* ScreenFace::PrimaryButton() const {
  for (Control* control : screen_.controls()) {
    auto* button = dynamic_cast<Button*>(control);
    if (button && button->role() == ButtonRole::primary && button->Reachable() &&
        button->Active()) {
      return button;
    }
  }
  return nullptr;
}

Button* ScreenFace::SaveButton() const {
  auto* save = dynamic_cast<Button*>(screen_.Find("SaveCmd"));
  return save && save->Reachable() && save->Active() ? save : PrimaryButton();
}

void ScreenFace::Press(Button& button) {
  if (settling_ || !Alive() || !button.Reachable() || !button.Active()) return;
  ControlView* view = Find(button);
  if (view) {
    if (pending_ != view) view->TakeFocus();
    pending_ = view;
  }
  Settle();
  // The box that was left kept the focus: its message comes first, the button waits.
  if (put_back_ && pending_ != view) return;
  Act([&] { button.Click(); });
}

// --- keys

bool ScreenFace::OnKey(ControlView& view, const QKeyEvent& event) {
  // Keys that were typed ahead arrive before the box below them has been entered: unless it is, it
  // would not be left either, and its screen would never hear of what stands in it.
  if (pending_ == &view && active_ != &view && acting_ == 0 && !settling_) {
    Settle();
    if (!Alive() || pending_ != &view) return true;
  }
  if (view.UseKey(event)) return true;
  const std::string name = KeyName(event);
  if (name.empty()) return TypeOnwards(view, event);
  Control& control = view.control();
  if (IsEnter(event)) view.Commit();
  const unsigned before = heard_ + talks_;
  if (control.onKey) Act([&] { control.Key(name); });
  // A screen that did something with the key has used it up.
  if (!Alive() || heard_ + talks_ != before) return true;
  if (IsEnter(event) && view.is_box()) {
    if (!LookUp(view)) MoveOn(view);
    return true;
  }
  if (name == "F2") {
    auto* box = dynamic_cast<TextBox*>(&control);
    if (box && box->onSearch && box->Editable()) {
      Act([&] { box->onSearch(); });
      return true;
    }
  }
  return false;
}

// Enter on a name looks it up; with what was chosen it goes on. True when the box keeps the cursor.
bool ScreenFace::LookUp(ControlView& view) {
  auto* box = dynamic_cast<TextBox*>(&view.control());
  if (!box || !box->onSearch || !box->onAskNoCode || !box->Editable()) return false;
  const std::string typed = box->text();
  bool kept = false;
  Act([&] {
    if (!box->onAskNoCode()) return;
    kept = true;
    box->onSearch();
    kept = box->text() == typed;
  });
  if (!Alive()) return true;
  if (kept) view.TakeFocus();
  return kept;
}

// Text typed over a table is "Type" for its screen, which may send the focus to a box: there the
// text goes on.
bool ScreenFace::TypeOnwards(ControlView& view, const QKeyEvent& event) {
  Control& control = view.control();
  const QString text = event.text();
  const bool command = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
  if (control.type() != ControlType::grid || !control.onKey || command || text.isEmpty() ||
      !text[0].isPrint() || text[0].isSpace()) {
    return false;
  }
  Act([&] { control.Key("Type"); });
  if (!Alive() || pending_ == &view || !pending_) return false;
  Settle();
  QKeyEvent again(event.type(), event.key(), event.modifiers(), text);
  if (QWidget* target = pending_ ? pending_->focus_widget() : nullptr) {
    QApplication::sendEvent(target, &again);
  }
  return true;
}

bool ScreenFace::eventFilter(QObject* watched, QEvent* event) {
  ControlView* view = by_widget_.value(watched, nullptr);
  if (!view) return false;
  if (event->type() == QEvent::FocusIn) {
    FocusArrived(*view);
  } else if (event->type() == QEvent::KeyPress) {
    return OnKey(*view, *static_cast<QKeyEvent*>(event));
  }
  return false;
}

// --- what the screen tells

void ScreenFace::ControlChanged(Control& control) {
  ++heard_;
  dirty_.insert(&control);
  // What stands in a container shows and hides with it.
  if (control.type() == ControlType::container) {
    if (control.parent()) dirty_.insert(control.parent());  // the tab of a page
    for (Control* other : screen_.controls()) {
      for (const Control* p = other->parent(); p; p = p->parent()) {
        if (p == &control) dirty_.insert(other);
      }
    }
  }
  if (onControl) onControl(control);
  if (!refresh_.isActive()) refresh_.start();
}

void ScreenFace::FocusMoved(Control& control) {
  ++heard_;
  ControlView* view = Find(control);
  if (!view) return;
  // A control that has just been shown or enabled must be so before it can take the focus.
  RefreshNow();
  view->TakeFocus();
  FocusArrived(*view);
}

void ScreenFace::TitleChanged() {
  ++heard_;
  if (onTitle) onTitle();
}

void ScreenFace::Closed() {
  ++heard_;
  if (onClosed) onClosed();
}

void ScreenFace::RefreshNow() {
  refresh_.stop();
  const QSet<Control*> changed = std::exchange(dirty_, {});
  for (Control* control : changed) {
    if (ControlView* view = Find(*control)) view->Refresh();
  }
}

void ScreenFace::RefreshAll() {
  dirty_.clear();
  for (const auto& view : views_) view->Refresh();
}

}  // namespace kaunter
