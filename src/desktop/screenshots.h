// Pictures of the windows for the documents, taken by the program itself: it signs in, opens the
// screens that are asked for, fills them, and ends.
#pragma once

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QWidget>

#include "desktop/options.h"

namespace kaunter {

class MainWindow;
class ScreenDialog;

class Photographer : public QObject {
 public:
  explicit Photographer(const DesktopOptions& options);

  // Watches from now on: every dialog that opens is pictured, filled and closed again.
  void Start();
  // Opens the screens that were asked for, then ends the program.
  void Walk(MainWindow& window, Application& application, Desk& desk);
  void Take(QWidget& widget, const QString& name);

 private:
  void Look();
  void Settle();
  void SignIn(QWidget& dialog);
  void Fill(QWidget& dialog);
  void TakePages(ScreenDialog& dialog);
  // After what has changed is drawn; tells what is wrong with the look of the window.
  void TakeNow(ScreenDialog& dialog, const QString& name);

  const DesktopOptions& options_;
  QPointer<QWidget> seen_;
  QSet<QWidget*> filled_;  // those under way: a message that one has told leads back to it
  int ticks_ = 0;
  int messages_ = 0;
  bool signed_in_ = false;
};

}  // namespace kaunter
