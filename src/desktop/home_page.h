// The page that the main window shows while no screen is open: the slogan, the ways that are taken
// most, today's due loans and the loans without a stamp number.
#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QWidget>
#include <functional>
#include <vector>

#include "core/main_frm.h"
#include "desktop/icons.h"

class QHBoxLayout;
class QPushButton;

namespace kaunter {

class GridView;
class ScreenFace;

// A large button with an icon and a caption.
class Tile : public QAbstractButton {
 public:
  Tile(Glyph glyph, QWidget* parent);
  QSize sizeHint() const override { return {190, 62}; }
  QSize minimumSizeHint() const override { return {120, 62}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QIcon icon_;
};

// One of the two side lists in a card: its title, how many rows, and what to say when empty.
class ListCard : public QWidget {
 public:
  ListCard(ScreenFace& face, Label& title, Grid& grid, Caption empty, QWidget* parent);
  void Refresh();

 private:
  QString Sum() const;

  ScreenFace& face_;
  Label& title_;
  Grid& grid_;
  QLabel* title_label_;
  QLabel* count_;
  QLabel* sum_;
};

class HomePage : public QWidget {
 public:
  HomePage(ScreenFace& face, MainFrm& main, std::function<void(const std::string&)> choose,
           QWidget* parent);
  // After a change of language, user, lists or rights.
  void Refresh();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void RefreshTiles();
  QWidget* MakeWelcome();
  QWidget* MakeNotice();

  ScreenFace& face_;
  MainFrm& main_;
  std::function<void(const std::string&)> choose_;
  QLabel* slogan_;
  QLabel* company_;
  QWidget* notice_;
  QLabel* notice_text_;
  QPushButton* shut_;
  QWidget* desk_;     // tiles and lists, for those who are signed in
  QWidget* welcome_;  // for nobody
  QLabel* welcome_text_;
  QPushButton* sign_in_;
  QHBoxLayout* tiles_;
  std::vector<std::string> shown_tiles_;
  ListCard* due_;
  ListCard* stamps_;
};

}  // namespace kaunter
