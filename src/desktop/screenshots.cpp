#include "desktop/screenshots.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QTimer>
#include <cstdio>

#include "desktop/look_check.h"
#include "desktop/main_window.h"
#include "desktop/progress_dialog.h"
#include "desktop/screen_dialog.h"
#include "desktop/text.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr int kTickMilliseconds = 120;
constexpr int kTicksToSettle = 3;  // until fonts, columns and focus stand

// The control that "Control" or "Screen.Control" means on this screen; null for none.
Control* Meant(Screen& screen, const std::string& name) {
  const auto dot = name.find('.');
  if (dot == std::string::npos) return screen.Find(name);
  return SameName(name.substr(0, dot), screen.name()) ? screen.Find(name.substr(dot + 1)) : nullptr;
}

// What a script would do: enter, put, leave.
void Put(Screen& screen, const std::string& name, const std::string& text) {
  Control* control = Meant(screen, name);
  if (!control) return;
  screen.Guard([&] {
    control->Enter();
    if (auto* box = dynamic_cast<TextBox*>(control)) box->Type(text);
    if (auto* combo = dynamic_cast<ComboBox*>(control)) {
      if (text.starts_with("#")) {
        combo->PickIndex(std::stoi(text.substr(1)));
      } else {
        combo->Pick(text);
      }
    }
    if (auto* check = dynamic_cast<CheckBox*>(control)) check->Tick(text == "1");
    if (auto* option = dynamic_cast<Option*>(control)) option->Choose();
    control->Leave();
  });
}

}  // namespace

Photographer::Photographer(const DesktopOptions& options) : options_(options) {
  QDir().mkpath(Q(options.picture_folder));
}

// A timer does not ring again while it is being heard, and what is done here opens further windows:
// each look therefore sets the next one first.
void Photographer::Start() {
  QTimer::singleShot(kTickMilliseconds, this, [this] {
    Start();
    Look();
  });
}

void Photographer::Take(QWidget& widget, const QString& name) {
  const QString language = options_.chinese ? "zh" : "en";
  const QString theme = kaunter::Look().dark ? "dark" : "light";
  const QString path =
      QDir(Q(options_.picture_folder)).filePath(name + "-" + language + "-" + theme + ".png");
  widget.grab().save(path);
}

void Photographer::Look() {
  QWidget* modal = QApplication::activeModalWidget();
  if (modal != seen_) {
    seen_ = modal;
    ticks_ = 0;
  }
  if (!modal) return;
  if (dynamic_cast<ProgressDialog*>(modal)) {
    // Work that goes on by itself and ends soon: its picture cannot wait.
    Take(*modal, "Progress");
    return;
  }
  if (++ticks_ < kTicksToSettle) return;
  ticks_ = -1000;  // once is enough
  if (auto* dialog = dynamic_cast<ScreenDialog*>(modal)) {
    if (SameName(dialog->screen().name(), "UserLogin")) return SignIn(*dialog);
    return Fill(*dialog);
  }
  const bool message = qobject_cast<QMessageBox*>(modal) != nullptr;
  Take(*modal, message ? QString("message-%1").arg(++messages_) : QString("Preview"));
  auto* box = qobject_cast<QMessageBox*>(modal);
  if (box && box->defaultButton()) {
    box->defaultButton()->click();
  } else {
    modal->close();
  }
}

void Photographer::SignIn(QWidget& widget) {
  auto& dialog = static_cast<ScreenDialog&>(widget);
  Screen& screen = dialog.screen();
  Take(dialog, "UserLogin");
  if (signed_in_) {
    screen.Close();
    return;
  }
  signed_in_ = true;
  Put(screen, "UserID", options_.user);
  Put(screen, "Password", options_.password);
  if (auto* ok = dynamic_cast<Button*>(screen.Find("OKCmd"))) screen.Guard([&] { ok->Click(); });
  // A refused sign-in leaves the dialog open: the walk goes on signed out.
  if (!screen.closed()) screen.Close();
}

void Photographer::Fill(QWidget& widget) {
  if (filled_.contains(&widget)) return;
  filled_.insert(&widget);
  const auto done = qScopeGuard([&] { filled_.remove(&widget); });
  auto& dialog = static_cast<ScreenDialog&>(widget);
  Screen& screen = dialog.screen();
  for (const auto& [control, text] : options_.values) Put(screen, control, text);
  for (const auto& press : options_.presses) {
    Control* control = Meant(screen, press);
    if (auto* button = dynamic_cast<Button*>(control)) screen.Guard([&] { button->Click(); });
    // Of a box that is searched, the magnifier.
    auto* box = dynamic_cast<TextBox*>(control);
    if (box && box->onSearch) screen.Guard([&] { box->onSearch(); });
    // Of a table, its first row.
    auto* grid = dynamic_cast<Grid*>(control);
    if (grid && grid->onOpen && grid->RowCount() > 0) screen.Guard([&] { grid->onOpen(0, 0); });
    if (screen.closed()) return;
  }
  if (options_.pages) {
    TakePages(dialog);
  } else {
    TakeNow(dialog, Q(screen.name()));
  }
  screen.Close();
}

// Page by page; a screen without pages as it stands.
void Photographer::TakePages(ScreenDialog& dialog) {
  Screen& screen = dialog.screen();
  bool any = false;
  for (Control* control : screen.controls()) {
    auto* tab = dynamic_cast<Tab*>(control);
    if (!tab) continue;
    const std::vector<Control*> pages = screen.Children(tab);
    for (std::size_t i = 0; i < pages.size(); ++i) {
      if (!pages[i]->visible()) continue;
      screen.Guard([&] { tab->SetPage(static_cast<int>(i)); });
      TakeNow(dialog, QString("%1-%2-%3").arg(Q(screen.name())).arg(i).arg(Q(pages[i]->name())));
      any = true;
    }
  }
  if (!any) TakeNow(dialog, Q(screen.name()));
}

void Photographer::TakeNow(ScreenDialog& dialog, const QString& name) {
  dialog.face().RefreshNow();
  QApplication::processEvents();
  QApplication::processEvents();
  Take(dialog, name);
  for (const std::string& problem : LookProblems(dialog)) {
    std::printf("%s: %s\n", S(name).c_str(), problem.c_str());
  }
}

void Photographer::Settle() {
  QEventLoop loop;
  QTimer::singleShot(kTickMilliseconds * kTicksToSettle, &loop, &QEventLoop::quit);
  loop.exec();
}

void Photographer::Walk(MainWindow& window, Application& application, Desk& desk) {
  Settle();
  Take(window, "signed-out");
  application.SignInFirst();
  Settle();
  Take(window, "MainFrm");
  for (const std::string& screen : options_.screens) {
    constexpr std::string_view kMenu = "menu:";
    if (screen.starts_with(kMenu)) {
      application.main().Guard([&] { application.main().ChooseMenu(screen.substr(kMenu.size())); });
    } else {
      application.main().Guard([&] { desk.Show(screen); });
    }
  }
}

}  // namespace kaunter
