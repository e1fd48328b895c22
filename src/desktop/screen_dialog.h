// ScreenDialog draws any screen as a modal window: its layout, its row of buttons, the keys that
// all windows share (Enter moves on, F2 searches, Ctrl+S saves, Esc closes).
#pragma once

#include <QDialog>
#include <QTimer>

#include "desktop/screen_face.h"

class QScrollArea;

namespace kaunter {

class ScreenDialog : public QDialog {
 public:
  // The screen outlives the dialog.
  ScreenDialog(Screen& screen, QWidget* parent);
  ~ScreenDialog() override;

  // Loads the screen, shows it, and returns when it has been closed.
  void Run();
  // The two halves of Run, for those who do not wait: false when the screen closed itself already.
  bool Open();

  // What it opens with on a screen that is large enough.
  QSize FirstSize() const;
  // At which the tables that are in sight show all of their columns uncut.
  QSize SizeForTables() const;

  ScreenFace& face() { return face_; }
  Screen& screen() { return screen_; }

  void reject() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Build();
  void ShowTitle();
  void AddShortcuts();
  void TurnPage(int step);
  // The height below which the contents scroll.
  int NeededHeight() const;
  // After a control has appeared.
  void GrowWithContents();
  void GrowWithTables();
  // Long work in Load: the window shows with its first moving bar.
  void ShowEarly(const Control& control);

  Screen& screen_;
  ScreenFace face_;
  QScrollArea* scroll_ = nullptr;
  QWidget* foot_ = nullptr;
  QSize wanted_;
  int needed_ = 0;
  QTimer tick_;
  bool loading_ = false;
};

}  // namespace kaunter
