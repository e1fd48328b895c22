#include "desktop/choice_views.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWheelEvent>

#include "desktop/accelerators.h"
#include "desktop/column_widths.h"
#include "desktop/text.h"
#include "desktop/text_box_view.h"

namespace kaunter {
namespace {

constexpr int kAroundText = 44;  // padding, frame and arrow

// The wheel scrolls the window, it never changes a choice in passing.
class StillComboBox : public QComboBox {
 public:
  using QComboBox::QComboBox;

  // As wide as what is chosen, so that a code is not cut.
  QSize minimumSizeHint() const override {
    const QFontMetrics metrics(font());
    const int text = std::min(metrics.horizontalAdvance(currentText()), WholeTextWidth(metrics));
    return {text + kAroundText, QComboBox::minimumSizeHint().height()};
  }

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

class PopupKeys : public QObject {
 public:
  using QObject::QObject;
  std::function<bool(QKeyEvent&)> pressed;
  bool eventFilter(QObject*, QEvent* event) override {
    return event->type() == QEvent::KeyPress && pressed(*static_cast<QKeyEvent*>(event));
  }
};

// Takes the second press of a double-click for no second order; buttons that only turn pages take
// as many presses as come.
class OncePushButton : public QPushButton {
 public:
  OncePushButton(QWidget* parent, bool once) : QPushButton(parent), once_(once) {}

 protected:
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    if (once_) {
      event->accept();
    } else {
      QPushButton::mouseDoubleClickEvent(event);
    }
  }

 private:
  bool once_;
};

constexpr int kVisibleEntries = 14;

}  // namespace

ComboBoxView::ComboBoxView(ScreenFace& face, ComboBox& combo)
    : ControlView(face, combo), combo_(combo) {
  box_ = new StillComboBox(face.host());
  box_->setEditable(true);
  box_->setInsertPolicy(QComboBox::NoInsert);
  box_->setMaxVisibleItems(kVisibleEntries);
  box_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box_->setMinimumContentsLength(3);
  box_->completer()->setCompletionMode(QCompleter::PopupCompletion);
  box_->completer()->setFilterMode(Qt::MatchContains);
  box_->completer()->setCaseSensitivity(Qt::CaseInsensitive);
  auto* keys = new PopupKeys(box_);
  keys->pressed = [this](QKeyEvent& event) { return PopupKey(event); };
  box_->completer()->popup()->installEventFilter(keys);
  if (combo.max_length > 0) {
    box_->lineEdit()->setValidator(new LengthValidator(combo.max_length, box_));
  }
  QObject::connect(box_, &QComboBox::activated, box_, [this](int) { Commit(); });
  QObject::connect(box_->completer(), qOverload<const QString&>(&QCompleter::activated), box_,
                   [this](const QString& text) {
                     box_->setEditText(text);
                     Commit();
                   });
}

void ComboBoxView::FillItems() {
  if (shown_items_ == combo_.items()) return;
  shown_items_ = combo_.items();
  box_->clear();
  for (const std::string& item : shown_items_) box_->addItem(Q(item));
}

void ComboBoxView::Show() {
  const QSignalBlocker blocker(box_);
  FillItems();
  box_->setCurrentIndex(combo_.index());
  if (box_->currentText() != Q(combo_.text())) box_->setEditText(Q(combo_.text()));
  box_->lineEdit()->setReadOnly(combo_.locked());
  if (!box_->hasFocus()) {
    box_->lineEdit()->setCursorPosition(0);
    box_->updateGeometry();
  }
}

void ComboBoxView::Commit() {
  if (committing_ || !combo_.Editable()) return;
  const QString typed = box_->currentText();
  if (typed == Q(combo_.text())) return;
  committing_ = true;
  bool taken = false;
  Act([&] {
    const QString meant = Meant(typed);
    // An editable list takes the text as it is when it is typed a second time.
    const bool insists = combo_.editable() && typed == completed_;
    completed_ = meant != typed && !insists ? typed : QString();
    taken = combo_.Pick(S(insists ? typed : meant));
  });
  committing_ = false;
  if (!taken && !typed.isEmpty()) QApplication::beep();
  // What was no entry gives way to the entry that still holds.
  Refresh();
}

// The one entry that begins with what was typed, or has it anywhere; the text itself for none or
// several. Figures in a list that takes others stand for themselves, and so does a part in the
// middle of an entry.
QString ComboBoxView::Meant(const QString& typed) const {
  const bool letters =
      std::any_of(typed.begin(), typed.end(), [](QChar c) { return c.isLetter(); });
  if (typed.isEmpty() || (combo_.editable() && !letters)) return typed;
  for (const bool anywhere : {false, true}) {
    if (anywhere && combo_.editable()) break;
    QStringList found;
    for (const std::string& item : combo_.items()) {
      const QString entry = Q(item);
      if (entry.compare(typed, Qt::CaseInsensitive) == 0) return entry;
      const bool fits = anywhere ? entry.contains(typed, Qt::CaseInsensitive)
                                 : entry.startsWith(typed, Qt::CaseInsensitive);
      if (fits) found << entry;
    }
    if (found.size() == 1) return found.front();
  }
  return typed;
}

// The popup of what fits would eat Enter and Tab: they mean the box.
bool ComboBoxView::PopupKey(QKeyEvent& event) {
  const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  if (!enter && event.key() != Qt::Key_Tab) return false;
  QAbstractItemView& popup = *box_->completer()->popup();
  const QModelIndex chosen = popup.currentIndex();
  popup.hide();
  if (chosen.isValid()) box_->setEditText(chosen.data().toString());
  if (enter) {
    face().OnKey(*this, event);
  } else {
    QApplication::sendEvent(box_, &event);
  }
  return true;
}

void ComboBoxView::TakeFocus() {
  box_->setFocus(Qt::OtherFocusReason);
  box_->lineEdit()->selectAll();
}

bool ComboBoxView::UseKey(const QKeyEvent& event) {
  const bool opens = event.key() == Qt::Key_F4 ||
                     (event.key() == Qt::Key_Down && (event.modifiers() & Qt::AltModifier));
  if (opens && combo_.Editable()) {
    box_->showPopup();
    return true;
  }
  // A locked list does not move under the arrow keys.
  return combo_.locked() && (event.key() == Qt::Key_Up || event.key() == Qt::Key_Down);
}

CheckBoxView::CheckBoxView(ScreenFace& face, CheckBox& check)
    : ControlView(face, check), check_(check) {
  box_ = new QCheckBox(face.host());
  QObject::connect(box_, &QCheckBox::clicked, box_, [this](bool on) {
    this->face().Settle();
    if (check_.Editable()) Act([&] { check_.Tick(on); });
    Refresh();
  });
}

void CheckBoxView::Show() {
  const QSignalBlocker blocker(box_);
  box_->setText(Q(check_.caption().In(face().chinese())));
  box_->setChecked(check_.checked());
  box_->setEnabled(check_.Active() && !check_.locked());
}

OptionView::OptionView(ScreenFace& face, Option& option)
    : ControlView(face, option), option_(option) {
  box_ = new QRadioButton(face.host());
  // The control knows who excludes whom; Qt's own grouping would go by parents.
  box_->setAutoExclusive(false);
  QObject::connect(box_, &QRadioButton::clicked, box_, [this](bool) {
    this->face().Settle();
    if (option_.Editable()) Act([&] { option_.Choose(); });
    Refresh();
  });
}

void OptionView::Show() {
  const QSignalBlocker blocker(box_);
  box_->setText(Q(option_.caption().In(face().chinese())));
  box_->setChecked(option_.chosen());
  box_->setEnabled(option_.Active() && !option_.locked());
}

ButtonView::ButtonView(ScreenFace& face, Button& button)
    : ControlView(face, button), button_(button) {
  const bool stores = button.role() != ButtonRole::plain || button.name() == "SaveCmd";
  box_ = new OncePushButton(face.host(), stores);
  box_->setAutoDefault(false);
  if (button.role() == ButtonRole::primary) box_->setProperty("role", "primary");
  if (button.role() == ButtonRole::danger) box_->setProperty("role", "danger");
  QObject::connect(box_, &QPushButton::clicked, box_, [this] { this->face().Press(button_); });
}

void ButtonView::Show() {
  const QString caption = Q(ButtonText(button_, face().chinese()));
  if (box_->text() != caption) box_->setText(caption);
}

}  // namespace kaunter
