// The pages of a report below each other, drawn when they are shown; search marks what it finds.
#pragma once

#include <QAbstractScrollArea>
#include <QString>
#include <vector>

#include "reports/report_document.h"

class QTimer;

namespace kaunter {

// A text of a page that holds what is searched for.
struct PageHit {
  int page = 0;
  int text = 0;
};

class PagesView : public QAbstractScrollArea {
  Q_OBJECT

 public:
  PagesView(const ReportDocument& document, QWidget* parent);

  // 1 is the size of the paper. What stands at the top of the window stays there.
  void SetZoom(double zoom);
  double zoom() const { return zoom_; }
  void FitWidth();
  bool fits_width() const { return fits_width_; }  // by FitWidth, and no zoom since
  int pages() const { return static_cast<int>(document_.pages.size()); }
  // From 0: the page last gone to until the view is scrolled, then the one in the middle of the
  // window. The last pages may all stand in it, and none of them but one in the middle.
  int page() const;
  void GoTo(int page);
  void Turn(int pages);  // from the page gone to, or the one at the window's top edge

  // Marks every text that holds these letters, in any case, and goes to the first from the page
  // that is shown. Thousands of pages are searched in portions: hits() grows while searching().
  void Find(const QString& wanted);
  bool searching() const;
  void NextHit(int step);
  int hits() const { return static_cast<int>(hits_.size()); }
  int hit() const { return hit_; }  // from 0; -1 for none
  const std::vector<PageHit>& found() const { return hits_; }

 signals:
  void Moved();  // another place, another zoom, another hit, or the search has come on

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;

 private:
  double Scale() const;  // pixels a millimetre
  QSize PageSize() const;
  int Step() const;                // from one page's top edge to the next one's
  QRect PageRect(int page) const;  // in the window
  void Ranges();
  void SearchOn();
  void SearchPage(int page);
  void ShowHit();
  void Shown();
  void PaintHits(QPainter& painter, int page) const;

  const ReportDocument& document_;
  double zoom_ = 1;
  bool fits_width_ = false;
  int gone_to_ = -1;  // -1 once the view was scrolled
  bool going_ = false;
  std::vector<PageHit> hits_;  // by page
  int hit_ = -1;
  QString needle_;
  int searched_from_ = 0;
  int searched_;  // pages that are done
  QTimer* search_on_;
};

}  // namespace kaunter
