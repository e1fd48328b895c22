// The figures of the home page: cards for what counts today, charts for what is behind and for the
// last twelve months. An office that has lent nothing yet gets a word of welcome in their place.
#pragma once

#include <QLabel>
#include <QWidget>
#include <array>
#include <functional>

#include "core/home_figures.h"
#include "desktop/figure_views.h"

namespace kaunter {

class ScreenFace;

class FiguresPanel : public QWidget {
 public:
  FiguresPanel(ScreenFace& face, HomeFigures& figures, QWidget* parent);
  ~FiguresPanel() override;
  void Refresh();

 private:
  // A card shows an amount and opens a row of a table.
  struct Card {
    FigureCard* view;
    Grid* grid;
    int row;
  };
  Card MakeCard(Grid& grid, int row);
  void RefreshCard(const Card& card, const Caption& title, const Tally& tally,
                   const Caption& counted, bool alarm);
  void RefreshAges();
  void RefreshYear(MonthChart& chart, const Grid& grid, const Year& year, const Caption& empty);
  QString Tip(const Grid& grid) const;
  bool Opens(const Grid& grid) const;
  void Open(Grid& grid, int row);
  QString Unread() const;
  // Reads a part of the figures, milliseconds from now or when the person waits for nothing else.
  void ReadWhenIdle(int after, std::function<void()> part);

  ScreenFace& face_;
  HomeFigures& figures_;
  Card today_, week_, overdue_, collected_, disbursed_, unsent_;
  BandChart* ages_;
  MonthChart* in_;
  MonthChart* out_;
  QWidget* cards_;
  QWidget* charts_;
  QWidget* first_steps_;
  QLabel* first_title_;
  QLabel* first_text_;
};

}  // namespace kaunter
