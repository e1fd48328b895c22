#include "desktop/text_box_view.h"

#include <QAction>
#include <QApplication>
#include <QCalendarWidget>
#include <QFrame>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QScreen>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>

#include "desktop/column_widths.h"
#include "desktop/icons.h"
#include "desktop/text.h"
#include "desktop/theme.h"
#include "desktop/today.h"
#include "desktop/typed_sum.h"

namespace kaunter {
namespace {

constexpr auto kDateFormat = "dd-MM-yyyy";
constexpr int kMemoLines = 3;
constexpr int kBoxPadding = 16;  // both sides, with the frame
constexpr int kButtonRoom = 26;
constexpr int kLeastBox = 30;
constexpr int kCutTolerance = 2;

// A line box that selects its text when the mouse brings the focus: figures are typed over.
class LineBox : public QLineEdit {
 public:
  LineBox(QWidget* parent, bool select_on_click)
      : QLineEdit(parent), select_on_click_(select_on_click) {}

  // Keys and names are never cut where there is room: what stands in the box, or is usual there.
  // Not while it is typed in: a box must not move under the hands.
  void Fit(const QString& usual, bool button) {
    const QFontMetrics metrics(font());
    const QString shown = echoMode() == Normal ? text() : QString();
    const int width = std::max(metrics.horizontalAdvance(usual),
                               std::min(metrics.horizontalAdvance(shown), WholeTextWidth(metrics)));
    const int least = width == 0 ? 0 : width + kBoxPadding + (button ? kButtonRoom : 0);
    if (least == least_) return;
    least_ = least;
    updateGeometry();
  }
  // Whether its text is wider than the box shows.
  bool Cut() const {
    return echoMode() == Normal &&
           fontMetrics().horizontalAdvance(text()) > width() - kBoxPadding + kCutTolerance;
  }
  QSize minimumSizeHint() const override {
    return {std::max(least_, kLeastBox), QLineEdit::minimumSizeHint().height()};
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    const bool arriving = !hasFocus() || fresh_;
    fresh_ = false;
    QLineEdit::mousePressEvent(event);
    if (arriving && select_on_click_) selectAll();
  }
  void focusInEvent(QFocusEvent* event) override {
    fresh_ = event->reason() == Qt::MouseFocusReason;
    QLineEdit::focusInEvent(event);
  }
  bool event(QEvent* event) override {
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() && Cut()) {
      QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
      return true;
    }
    return QLineEdit::event(event);
  }

 private:
  bool select_on_click_;
  bool fresh_ = false;
  int least_ = 0;
};

// A few lines high; it grows where its layout has room to spare.
class MemoBox : public QPlainTextEdit {
 public:
  using QPlainTextEdit::QPlainTextEdit;
  QSize sizeHint() const override { return {280, fontMetrics().lineSpacing() * kMemoLines + 18}; }
  QSize minimumSizeHint() const override { return {160, fontMetrics().lineSpacing() * 2 + 18}; }
};

int DigitsBefore(const QString& text, int position) {
  return static_cast<int>(std::count_if(text.begin(),
                                        text.begin() + std::min<qsizetype>(position, text.size()),
                                        [](QChar c) { return c.isDigit(); }));
}

int PositionAfterDigits(const QString& text, int digits) {
  int position = 0;
  while (position < text.size() && digits > 0) {
    if (text[position++].isDigit()) --digits;
  }
  return position;
}

}  // namespace

QValidator::State LengthValidator::validate(QString& text, int&) const {
  return CharacterCount(text) > characters_ ? Invalid : Acceptable;
}

QString DateAsTyped(const QString& text) {
  static const QRegularExpression separators("[/. ]");
  static const QRegularExpression day("^(\\d{2})(\\d+)$");
  static const QRegularExpression month("^(\\d{1,2}-\\d{2})(\\d+)$");
  QString date = text;
  date.replace(separators, "-");
  date.replace(day, "\\1-\\2");
  date.replace(month, "\\1-\\2");
  return date;
}

QString DateAsLeft(const QString& text) {
  static const QRegularExpression parts("^(\\d{1,2})-(\\d{1,2})-(\\d{4})$");
  const auto found = parts.match(text);
  if (!found.hasMatch()) return text;
  return QString("%1-%2-%3")
      .arg(found.captured(1), 2, u'0')
      .arg(found.captured(2), 2, u'0')
      .arg(found.captured(3));
}

QString MaskAsTyped(const QString& mask, const QString& text) {
  QString digits;
  for (const QChar c : text) {
    if (c.isDigit()) digits += c;
  }
  QString shown;
  qsizetype next = 0;
  for (const QChar c : mask) {
    if (next == digits.size()) break;
    shown += c == u'#' ? digits[next++] : c;
  }
  return shown;
}

TextBoxView::TextBoxView(ScreenFace& face, TextBox& box) : ControlView(face, box), box_(box) {
  const bool figures = IsRightAligned();
  edit_ = new LineBox(face.host(), figures);
  if (figures) edit_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  if (box.kind() == Kind::password) edit_->setEchoMode(QLineEdit::Password);
  QObject::connect(edit_, &QLineEdit::textEdited, edit_,
                   [this](const QString& text) { Edited(text); });
  QObject::connect(edit_, &QLineEdit::inputRejected, edit_, [] { QApplication::beep(); });
}

bool TextBoxView::IsRightAligned() const {
  return box_.kind() == Kind::money || box_.kind() == Kind::rate || box_.kind() == Kind::integer;
}

// A screen may give a box its picker or its length as late as in Load.
void TextBoxView::Equip() {
  if (box_.max_length > 0 && !edit_->validator()) {
    edit_->setValidator(new LengthValidator(box_.max_length, edit_));
  }
  if (button_) return;
  if (box_.kind() == Kind::date) {
    button_ = edit_->addAction(MakeIcon(Glyph::calendar), QLineEdit::TrailingPosition);
    QObject::connect(button_, &QAction::triggered, edit_, [this] { OpenCalendar(); });
  } else if (box_.onSearch || !box_.picker.empty()) {
    button_ = edit_->addAction(MakeIcon(Glyph::search), QLineEdit::TrailingPosition);
    button_->setToolTip("F2");
    QObject::connect(button_, &QAction::triggered, edit_, [this] { Search(); });
  }
}

void TextBoxView::Show() {
  Equip();
  edit_->setReadOnly(box_.locked());
  if (button_) button_->setVisible(box_.Editable());
  if (box_.kind() == Kind::date) edit_->setPlaceholderText(box_.Editable() ? "dd-mm-yyyy" : "");
  const QString text = Q(box_.text());
  if (edit_->text() != text) ShowText(text);
  if (!edit_->hasFocus()) Fit();
}

void TextBoxView::Fit() {
  const bool date = box_.kind() == Kind::date;
  const QString usual = date ? "00-00-0000" : box_.picker.empty() ? "" : "AB0000-000";
  static_cast<LineBox*>(edit_)->Fit(usual, button_ && button_->isVisible());
}

void TextBoxView::ShowText(const QString& text) {
  edit_->setText(text);
  shown_ = text;
  // A text longer than the box is read from its beginning.
  if (!edit_->hasFocus()) edit_->setCursorPosition(0);
}

void TextBoxView::Put(const QString& text) {
  if (edit_->text() == text) return;
  edit_->setText(text);
}

void TextBoxView::Edited(const QString& typed) {
  QString text = typed;
  const int cursor = edit_->cursorPosition();
  const bool grows = typed.size() > shown_.size();
  if (!box_.mask.empty()) {
    text = MaskAsTyped(Q(box_.mask), typed);
    if (text != typed) {
      const int digits = DigitsBefore(typed, cursor);
      Put(text);
      edit_->setCursorPosition(PositionAfterDigits(text, digits));
    }
  } else if (box_.kind() == Kind::date && grows && cursor == typed.size()) {
    text = DateAsTyped(typed);
    Put(text);
  }
  bool taken = false;
  Act([&] { taken = box_.Type(S(text)); });
  if (taken) {
    shown_ = text;
    return;
  }
  QApplication::beep();
  Put(Q(box_.text()));
  shown_ = Q(box_.text());
}

void TextBoxView::TakeFocus() {
  edit_->setFocus(Qt::OtherFocusReason);
  edit_->selectAll();
}

// A figure stands under its caption, not at the far end of its place.
void TextBoxView::DrawAsFigure() {
  ControlView::DrawAsFigure();
  edit_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void TextBoxView::Commit() {
  if (!box_.Editable()) return;
  if (box_.kind() == Kind::date) {
    const std::string date = S(DateAsLeft(Q(box_.text())));
    if (date != box_.text()) Act([&] { box_.Type(date); });
  }
  if (box_.kind() != Kind::money) return;
  try {
    if (const auto sum = TypedSum(box_.text())) Act([&] { box_.Type(sum->ToText()); });
  } catch (const std::overflow_error&) {
    // Too large to be reckoned: it stays as typed, and its screen refuses it.
  }
}

// On a whole date that would be typed over anyway, + and - are the next and the last day; in an
// empty box + is today.
bool TextBoxView::StepDate(const QKeyEvent& event) {
  const bool on = event.key() == Qt::Key_Plus || event.key() == Qt::Key_Equal;
  if (!on && event.key() != Qt::Key_Minus) return false;
  QDate date = QDate::fromString(edit_->text(), kDateFormat).addDays(on ? 1 : -1);
  if (on && edit_->text().isEmpty()) date = Today();
  if (!date.isValid() || edit_->selectedText() != edit_->text()) return false;
  Act([&] { box_.Type(S(date.toString(kDateFormat))); });
  Refresh();
  edit_->selectAll();
  return true;
}

bool TextBoxView::UseKey(const QKeyEvent& event) {
  const bool opens = event.key() == Qt::Key_F2 || event.key() == Qt::Key_F4 ||
                     (event.key() == Qt::Key_Down && (event.modifiers() & Qt::AltModifier));
  if (!button_ || !box_.Editable()) return false;
  if (box_.kind() == Kind::date && StepDate(event)) return true;
  if (box_.kind() == Kind::date && opens) {
    OpenCalendar();
    return true;
  }
  return false;
}

void TextBoxView::Search() {
  if (!box_.Editable()) return;
  TakeFocus();
  face().FocusArrived(*this);
  face().Settle();
  QKeyEvent f2(QEvent::KeyPress, Qt::Key_F2, Qt::NoModifier);
  face().OnKey(*this, f2);
}

void TextBoxView::OpenCalendar() {
  if (!box_.Editable()) return;
  auto* popup = new QFrame(edit_, Qt::Popup);
  popup->setAttribute(Qt::WA_DeleteOnClose);
  popup->setProperty("card", true);
  auto* calendar = new QCalendarWidget(popup);
  calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
  calendar->setFirstDayOfWeek(Qt::Monday);
  calendar->setLocale(face().chinese() ? QLocale(QLocale::Chinese, QLocale::China)
                                       : QLocale(QLocale::English, QLocale::Malaysia));
  const QDate date = QDate::fromString(edit_->text(), kDateFormat);
  calendar->setSelectedDate(date.isValid() ? date : Today());
  auto* layout = new QVBoxLayout(popup);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(calendar);
  const auto take = [this, popup](QDate picked) {
    const QString text = picked.toString(kDateFormat);
    popup->close();
    edit_->setFocus(Qt::OtherFocusReason);
    Act([&] { box_.Type(S(text)); });
  };
  QObject::connect(calendar, &QCalendarWidget::clicked, popup, take);
  QObject::connect(calendar, &QCalendarWidget::activated, popup, take);
  popup->adjustSize();
  QPoint place = edit_->mapToGlobal(QPoint(0, edit_->height() + 2));
  const QRect room = edit_->screen()->availableGeometry();
  place.setX(std::min(place.x(), room.right() - popup->width()));
  if (place.y() + popup->height() > room.bottom()) {
    place.setY(edit_->mapToGlobal(QPoint(0, -popup->height() - 2)).y());
  }
  popup->move(place);
  popup->show();
  calendar->setFocus();
}

// --- memo

MemoView::MemoView(ScreenFace& face, TextBox& box) : ControlView(face, box), box_(box) {
  edit_ = new MemoBox(face.host());
  edit_->setTabChangesFocus(true);
  edit_->setProperty("memo", true);
  edit_->setFrameShape(QFrame::StyledPanel);
  edit_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  QObject::connect(edit_, &QPlainTextEdit::textChanged, edit_, [this] { Edited(); });
  QObject::connect(edit_, &QPlainTextEdit::cursorPositionChanged, edit_, [this] {
    if (!showing_) box_.NoteCursor(BytesBefore(edit_->textCursor().position()));
  });
}

void MemoView::Show() {
  edit_->setReadOnly(box_.locked());
  QString text = Q(box_.text());
  text.replace("\r\n", "\n");
  if (edit_->toPlainText() == text) return;
  const bool typed_into = box_.cursor() < box_.text().size();
  showing_ = true;
  edit_->setPlainText(text);
  showing_ = false;
  if (!typed_into) return;
  QTextCursor cursor = edit_->textCursor();
  QString before = Q(box_.text().substr(0, box_.cursor()));
  before.replace("\r\n", "\n");
  cursor.setPosition(static_cast<int>(before.size()));
  edit_->setTextCursor(cursor);
}

// A line end is two bytes of the value.
std::size_t MemoView::BytesBefore(int position) const {
  QString before = edit_->toPlainText().left(position);
  before.replace("\n", "\r\n");
  return S(before).size();
}

void MemoView::Edited() {
  if (showing_) return;
  QString text = edit_->toPlainText();
  // The value holds line ends as the database has them.
  text.replace("\n", "\r\n");
  bool taken = false;
  Act([&] { taken = box_.Type(S(text)); });
  if (taken) return;
  QApplication::beep();
  showing_ = true;
  edit_->undo();
  showing_ = false;
}

bool MemoView::UseKey(const QKeyEvent& event) {
  const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  if (!enter) return false;
  // Enter makes a line here; with Ctrl it moves on.
  if (event.modifiers() & Qt::ControlModifier) {
    face().MoveOn(*this);
    return true;
  }
  edit_->insertPlainText("\n");
  return true;
}

}  // namespace kaunter
