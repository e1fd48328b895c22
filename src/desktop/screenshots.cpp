#include "desktop/screenshots.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "desktop/main_window.h"
#include "desktop/progress_dialog.h"
#include "desktop/screen_dialog.h"
#include "desktop/text.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr int kTickMilliseconds = 120;
constexpr int kTicksToSettle = 3;  // until fonts, columns and focus stand

// What a script would do: enter, put, leave.
void Put(Screen& screen, const std::string& name, const std::string& text) {
  Control* control = screen.Find(name);
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
  auto& dialog = static_cast<ScreenDialog&>(widget);
  Screen& screen = dialog.screen();
  for (const auto& [control, text] : options_.values) Put(screen, control, text);
  for (const auto& press : options_.presses) {
    auto* button = dynamic_cast<Button*>(screen.Find(press));
    if (button) screen.Guard([&] { button->Click(); });
    // Of a box that is searched, the magnifier.
    auto* box = dynamic_cast<TextBox*>(screen.Find(press));
    if (box && box->onSearch) screen.Guard([&] { box->onSearch(); });
  }
  dialog.face().RefreshNow();
  QApplication::processEvents();
  Take(dialog, Q(screen.name()));
  screen.Close();
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
    application.main().Guard([&] { desk.Show(screen); });
  }
}

}  // namespace kaunter
