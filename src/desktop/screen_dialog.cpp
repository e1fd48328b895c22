#include "desktop/screen_dialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

#include "desktop/grid_view.h"
#include "desktop/layout_builder.h"
#include "desktop/layout_table.h"
#include "desktop/text.h"
#include "desktop/theme.h"
#include "desktop/window_memory.h"

namespace kaunter {
namespace {

constexpr QSize kWithTable(980, 640);  // enough for a table of eight columns
constexpr int kNarrowest = 420;

}  // namespace

ScreenDialog::ScreenDialog(Screen& screen, QWidget* parent)
    : QDialog(parent), screen_(screen), face_(screen, this) {
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setWindowFlag(Qt::WindowMaximizeButtonHint, true);
  setModal(true);
  face_.onTitle = [this] { ShowTitle(); };
  face_.onClosed = [this] { done(0); };
  face_.onControl = [this](Control& control) { ShowEarly(control); };
  tick_.setInterval(1000);
  connect(&tick_, &QTimer::timeout, this, [this] {
    if (!face_.acting()) face_.Act([this] { screen_.Tick(); });
  });
  Build();
}

ScreenDialog::~ScreenDialog() {
  KeepWindow(*this, Q(screen_.name()));
  // The widgets go before the views that they call.
  delete scroll_;
  delete foot_;
}

void ScreenDialog::Build() {
  const Layout* table = FindLayout(screen_.name());
  const Layout layout = table ? *table : GenericLayout(screen_);
  const BuiltScreen built = BuildScreen(face_, layout);
  wanted_ = layout.size;
  if (wanted_.isEmpty() && built.grows) wanted_ = kWithTable;

  auto* page = new QWidget(this);
  auto* page_layout = new QVBoxLayout(page);
  page_layout->setContentsMargins(kMargin, 10, kMargin, 8);
  if (built.body) page_layout->addWidget(built.body, 1);
  scroll_ = new QScrollArea(this);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setWidgetResizable(true);
  scroll_->setWidget(page);
  page->installEventFilter(this);
  scroll_->setFocusPolicy(Qt::NoFocus);
  scroll_->viewport()->setAutoFillBackground(false);
  page->setAutoFillBackground(false);
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->setSpacing(0);
  outer->addWidget(scroll_, 1);
  foot_ = built.buttons;
  if (foot_) outer->addWidget(foot_);
  AddShortcuts();
  ShowTitle();
}

void ScreenDialog::AddShortcuts() {
  connect(new QShortcut(QKeySequence("Ctrl+S"), this), &QShortcut::activated, this, [this] {
    if (Button* save = face_.SaveButton()) face_.Press(*save);
  });
  for (const auto& [keys, step] : {std::pair("Ctrl+PgDown", 1), std::pair("Ctrl+PgUp", -1)}) {
    connect(new QShortcut(QKeySequence(keys), this), &QShortcut::activated, this,
            [this, step = step] { TurnPage(step); });
  }
  for (Control* control : screen_.controls()) {
    auto* button = dynamic_cast<Button*>(control);
    if (!button || button->shortcut.empty() || button->shortcut == "Ctrl+S") continue;
    connect(new QShortcut(QKeySequence(Q(button->shortcut)), this), &QShortcut::activated, this,
            [this, button] { face_.Press(*button); });
  }
}

void ScreenDialog::TurnPage(int step) {
  auto* tabs = findChild<QTabWidget*>();
  if (!tabs) return;
  for (int page = tabs->currentIndex() + step; page >= 0 && page < tabs->count(); page += step) {
    if (!tabs->isTabVisible(page) || !tabs->isTabEnabled(page)) continue;
    tabs->setCurrentIndex(page);
    return;
  }
}

void ScreenDialog::ShowTitle() { setWindowTitle(Plain(screen_.title().In(screen_.chinese()))); }

QSize ScreenDialog::FirstSize() const {
  const QWidget* page = scroll_->widget();
  int width = std::max({page->sizeHint().width(), kNarrowest, wanted_.width()});
  if (foot_) width = std::max(width, foot_->sizeHint().width());
  if (!wanted_.isEmpty()) width = wanted_.width();
  const int contents =
      page->hasHeightForWidth() ? page->heightForWidth(width) : page->sizeHint().height();
  const int height = contents + (foot_ ? foot_->sizeHint().height() : 0) + 2;
  return {width, std::max(height, wanted_.height())};
}

bool ScreenDialog::Open() {
  loading_ = true;
  face_.Act([this] { screen_.Load(); });
  loading_ = false;
  if (screen_.closed()) return false;
  face_.RefreshAll();
  if (!RestoreWindow(*this, Q(screen_.name()))) FitToScreen(*this, FirstSize());
  show();
  GrowWithTables();
  needed_ = NeededHeight();
  face_.StartFocus();
  tick_.start();
  return true;
}

QSize ScreenDialog::SizeForTables() const {
  int missing = 0;
  for (Control* control : screen_.controls()) {
    const auto* grid = dynamic_cast<const GridView*>(face_.Find(*control));
    if (grid) missing = std::max(missing, grid->Missing());
  }
  return size() + QSize(missing, 0);
}

// As wide as its tables need, still in the middle of where it opened.
void ScreenDialog::GrowWithTables() {
  const int before = width();
  const QSize wanted = SizeForTables();
  if (wanted.width() <= before || isMaximized()) return;
  FitToScreen(*this, wanted);
  const QRect room = QWidget::screen()->availableGeometry();
  const int left = x() - (width() - before) / 2;
  move(std::clamp(left, room.left(), std::max(room.left(), room.right() - width())), y());
}

int ScreenDialog::NeededHeight() const {
  const QWidget& page = *scroll_->widget();
  return page.hasHeightForWidth() ? page.heightForWidth(scroll_->viewport()->width())
                                  : page.minimumSizeHint().height();
}

bool ScreenDialog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::LayoutRequest && isVisible()) {
    QTimer::singleShot(0, this, [this] { GrowWithContents(); });
  }
  return QDialog::eventFilter(watched, event);
}

void ScreenDialog::GrowWithContents() {
  const int before = std::exchange(needed_, NeededHeight());
  const int missing = needed_ - scroll_->viewport()->height();
  if (needed_ <= before || missing <= 0) return;
  const QSize old = size();
  FitToScreen(*this, old + QSize(0, missing));
  resize(size().expandedTo(old));
}

void ScreenDialog::Run() {
  if (Open()) exec();
  tick_.stop();
}

void ScreenDialog::ShowEarly(const Control& control) {
  if (!loading_ || control.type() != ControlType::bar) return;
  if (!isVisible()) {
    face_.RefreshAll();
    FitToScreen(*this, FirstSize());
    show();
  }
  face_.RefreshNow();
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void ScreenDialog::reject() {
  // In the middle of an act the screen is not asked again.
  if (face_.acting()) return;
  face_.Settle();
  if (!screen_.closed()) screen_.TryClose();
}

void ScreenDialog::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    reject();
    return;
  }
  // Enter belongs to the boxes; the default button of dialogs would press behind their back.
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (auto* button = qobject_cast<QAbstractButton*>(focusWidget())) button->click();
    event->accept();
    return;
  }
  QDialog::keyPressEvent(event);
}

void ScreenDialog::closeEvent(QCloseEvent* event) {
  if (!screen_.closed()) {
    event->ignore();
    reject();
  }
}

void ScreenDialog::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ThemeChange) FollowSystem(*qApp);
  QDialog::changeEvent(event);
}

}  // namespace kaunter
