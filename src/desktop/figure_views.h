// Figures to be looked at: a card with one amount, bars across for a few bands, bars upright for
// months. Each part can be pressed, by mouse or by arrow keys and Enter.
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

#include "core/office_figures.h"

namespace kaunter {

// Draws the ground of a card: rounded, framed in the accent while it has the focus.
void DrawCard(QPainter& painter, const QWidget& card, bool lit);

class FigureCard : public QAbstractButton {
 public:
  explicit FigureCard(QWidget* parent);
  // `alarm` draws the amount in the tone of arrears.
  void Set(const QString& title, const QString& amount, const QString& note, bool alarm);
  QSize sizeHint() const override { return {180, 82}; }
  QSize minimumSizeHint() const override { return {130, 82}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString title_, amount_, note_;
  bool alarm_ = false;
};

struct FigureBar {
  QString name;   // as the head of the chart says it
  QString label;  // beside the bar
  Tally tally;
  QColor tone;
};

class Chart : public QWidget {
 public:
  explicit Chart(QWidget* parent);
  // `note` stands in the head while no bar is pointed at; `empty` in the middle while all bars are
  // nothing.
  void Set(const QString& title, std::vector<FigureBar> bars, const QString& note,
           const QString& empty);
  // A press on a bar opens what is behind it; without, the chart is only looked at.
  std::function<void(int bar)> onOpen;
  void SetOpens(bool opens, const QString& tip);

  const std::vector<FigureBar>& bars() const { return bars_; }
  bool IsEmpty() const;
  // The room that belongs to a bar, label included.
  virtual QRect PlaceOf(int bar) const = 0;
  QSize sizeHint() const override { return {300, 190}; }
  QSize minimumSizeHint() const override { return {220, 150}; }

 protected:
  virtual void DrawBar(QPainter& painter, int bar, double share) const = 0;
  // Below the head.
  QRect Body() const;
  int pointed() const { return pointed_; }

  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  int BarAt(const QPoint& place) const;  // -1 for none
  void Point(int bar);
  QString HeadNote() const;

  QString title_, note_, empty_;
  std::vector<FigureBar> bars_;
  int pointed_ = -1;
  int pressed_ = -1;
  bool opens_ = false;
};

// Bars from the left, their names before them, their amounts behind.
class BandChart : public Chart {
 public:
  using Chart::Chart;
  QRect PlaceOf(int bar) const override;

 protected:
  void DrawBar(QPainter& painter, int bar, double share) const override;
};

// Bars from the bottom, their names below them.
class MonthChart : public Chart {
 public:
  using Chart::Chart;
  QRect PlaceOf(int bar) const override;

 protected:
  void DrawBar(QPainter& painter, int bar, double share) const override;
};

}  // namespace kaunter
