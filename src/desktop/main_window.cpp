#include "desktop/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>

#include "desktop/home_page.h"
#include "desktop/qt_language.h"
#include "desktop/text.h"
#include "desktop/theme.h"
#include "desktop/window_memory.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr QSize kFirstSize(1280, 720);
constexpr std::array<int, 5> kPanelShares = {4, 3, 0, 4, 0};

}  // namespace

MainWindow::MainWindow(MainFrm& main) : main_(main), face_(main, this) {
  home_ = new HomePage(
      face_, main_, [this](const std::string& entry) { Choose(entry); }, this);
  setCentralWidget(home_);
  statusBar()->setSizeGripEnabled(false);
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    panels_[i] = new QLabel(this);
    panels_[i]->setTextFormat(Qt::PlainText);
    panels_[i]->setProperty("muted", i > 0);
    panels_[i]->setContentsMargins(12, 3, 12, 4);
    statusBar()->addWidget(panels_[i], kPanelShares[i]);
  }
  refresh_.setSingleShot(true);
  refresh_.setInterval(0);
  connect(&refresh_, &QTimer::timeout, this, [this] { Refresh(); });
  face_.onTitle = [this] { RefreshSoon(); };
  face_.onControl = [this](Control&) { RefreshSoon(); };
  face_.onClosed = [this] {
    close();
    QApplication::quit();
  };
  tick_.setInterval(1000);
  connect(&tick_, &QTimer::timeout, this, [this] {
    if (!face_.acting()) face_.Act([this] { main_.Tick(); });
  });
  tick_.start();
  // Back from another program: others may have worked in the office meanwhile.
  connect(qApp, &QGuiApplication::applicationStateChanged, this,
          [this](Qt::ApplicationState state) {
            if (state != Qt::ApplicationActive || face_.acting() || main_.closed()) return;
            face_.Act([this] { main_.home().Returned(); });
          });
  Refresh();
}

MainWindow::~MainWindow() {
  KeepWindow(*this, "MainFrm");
  // The widgets go before the views that they call.
  delete takeCentralWidget();
}

void MainWindow::OpenWindow() {
  if (!RestoreWindow(*this, "MainFrm")) FitToScreen(*this, kFirstSize);
  show();
}

void MainWindow::Choose(const std::string& entry) {
  if (face_.acting()) return;
  // The menu closes before the screen opens over the window.
  QTimer::singleShot(0, this, [this, entry] {
    if (face_.acting() || main_.closed()) return;
    face_.Act([&] { main_.ChooseMenu(entry); });
    if (!main_.closed()) Refresh();
  });
}

void MainWindow::RefreshSoon() {
  if (!refresh_.isActive()) refresh_.start();
}

void MainWindow::Refresh() {
  SpeakQtIn(main_.chinese());
  setWindowTitle(Plain(main_.title().In(main_.chinese())));
  for (int i = 0; i < 5; ++i) {
    QLabel& panel = *panels_[static_cast<std::size_t>(i)];
    const QString text = Q(main_.Panel(i + 1));
    if (panel.text() != text) panel.setText(text);
  }
  RefreshMenus();
  home_->Refresh();
}

// The state of all entries in one text: menus are made anew only when it has changed, never while
// the clock ticks under an open menu.
void MainWindow::RefreshMenus() {
  std::string state = main_.chinese() ? "zh" : "en";
  for (const MenuEntry& entry : main_.menu().entries()) {
    state += entry.visible ? (entry.enabled ? '1' : '0') : '-';
  }
  if (state == menu_state_) return;
  menu_state_ = state;
  menuBar()->clear();
  for (const MenuEntry& entry : main_.menu().entries()) {
    if (!entry.parent.empty() || !entry.visible) continue;
    QMenu* menu = menuBar()->addMenu(Q(entry.caption.In(main_.chinese())));
    if (FillMenu(*menu, entry.name) == 0) menuBar()->removeAction(menu->menuAction());
  }
}

int MainWindow::FillMenu(QMenu& menu, const std::string& group) {
  menu.setToolTipsVisible(true);
  int filled = 0;
  for (const MenuEntry& entry : main_.menu().entries()) {
    if (!SameName(entry.parent, group) || !entry.visible) continue;
    const QString caption = Q(entry.caption.In(main_.chinese()));
    if (entry.action == MenuAction::group) {
      auto* inner = new QMenu(caption, &menu);
      if (FillMenu(*inner, entry.name) == 0) continue;
      menu.addMenu(inner);
    } else {
      QAction* action = menu.addAction(caption);
      action->setEnabled(entry.enabled);
      action->setToolTip(entry.enabled ? QString()
                                       : Q(MainFrm::NotBuiltText().In(main_.chinese())));
      connect(action, &QAction::triggered, this, [this, name = entry.name] { Choose(name); });
    }
    ++filled;
  }
  return filled;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (main_.closed()) return;
  event->ignore();
  if (!face_.acting()) main_.TryClose();
}

void MainWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ThemeChange) FollowSystem(*qApp);
  QMainWindow::changeEvent(event);
}

}  // namespace kaunter
