// The main window: menu bar, home page, status line. Every screen opens modally over it.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <array>

#include "core/main_frm.h"
#include "desktop/screen_face.h"

class QLabel;
class QMenu;

namespace kaunter {

class HomePage;

class MainWindow : public QMainWindow {
 public:
  explicit MainWindow(MainFrm& main);
  ~MainWindow() override;

  void OpenWindow();
  void Choose(const std::string& entry);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void RefreshSoon();
  void Refresh();
  void RefreshMenus();
  // Adds the entries of a group; gives how many are there.
  int FillMenu(QMenu& menu, const std::string& group);

  MainFrm& main_;
  ScreenFace face_;
  HomePage* home_;
  std::array<QLabel*, 5> panels_{};
  std::string menu_state_;
  QTimer refresh_;
  QTimer tick_;
};

}  // namespace kaunter
