// The page that the main window shows while no screen is open: the slogan, the ways that are taken
// most, the figures of the office, the loans that are most behind, today's due loans and the loans
// without a stamp number.
#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QWidget>
#include <array>
#include <functional>
#include <vector>

#include "core/main_frm.h"
#include "desktop/icons.h"

class QHBoxLayout;
class QPushButton;
class QStackedWidget;
class QTabBar;

namespace kaunter {

class FiguresPanel;
class ScreenFace;

// A large button with an icon and a caption.
class Tile : public QAbstractButton {
 public:
  Tile(Glyph glyph, QWidget* parent);
  QSize sizeHint() const override { return {190, 54}; }
  QSize minimumSizeHint() const override { return {120, 54}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QIcon icon_;
};

// Lists in one card, one of them shown: their names with how many rows, the sum of the first column
// of amounts, and what to say when empty.
class ListCard : public QWidget {
 public:
  struct Listed {
    const Control* title;
    Grid* grid;
    std::function<Caption()> empty;
    Caption tip = {};
  };
  ListCard(ScreenFace& face, std::vector<Listed> lists, QWidget* parent);
  void Refresh();

 private:
  QString Sum(const Grid& grid) const;
  QString Title(const Listed& list) const;

  ScreenFace& face_;
  std::vector<Listed> lists_;
  QLabel* title_ = nullptr;   // of the only list
  QTabBar* names_ = nullptr;  // of several
  QStackedWidget* pages_;
  QLabel* sum_ = nullptr;  // with names
};

class HomePage : public QWidget {
 public:
  HomePage(ScreenFace& face, MainFrm& main, std::function<void(const std::string&)> choose,
           QWidget* parent);
  // After a change of language, user, lists, figures or rights.
  void Refresh();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void RefreshTiles();
  QWidget* MakeWelcome();
  QString CompanyLine() const;
  // Something that stays true until somebody acts.
  struct Notice {
    Label& told;
    Button& act;
    QFrame* card = nullptr;
    QLabel* text = nullptr;
    QPushButton* button = nullptr;
  };
  void MakeNotice(Notice& notice);
  QHBoxLayout* MakeHead();

  ScreenFace& face_;
  MainFrm& main_;
  std::function<void(const std::string&)> choose_;
  QLabel* slogan_;
  QLabel* company_;
  std::array<Notice, 2> notices_;
  QWidget* desk_;     // tiles and lists, for those who are signed in
  QWidget* welcome_;  // for nobody
  QLabel* welcome_text_;
  QPushButton* sign_in_;
  QHBoxLayout* tiles_;
  std::vector<std::string> shown_tiles_;
  FiguresPanel* figures_;
  ListCard* overdue_;
  ListCard* lists_;
  QLabel* as_of_;
  QPushButton* refresh_;
};

}  // namespace kaunter
