// The pages of a report as small pictures with their numbers: the current one is marked, a click
// or an arrow key goes to another.
#pragma once

#include <QCache>
#include <QListView>
#include <QPixmap>

#include "reports/report_document.h"

namespace kaunter {

class PageList : public QListView {
  Q_OBJECT

 public:
  PageList(const ReportDocument& document, bool chinese, QWidget* parent);

  // Marks a page and brings it into sight; Chosen is not emitted.
  void SetPage(int page);
  int page() const { return currentIndex().row(); }  // from 0

  // The small picture of a page. It is drawn when somebody looks at it, and some dozens are kept:
  // a report of thousands of pages opens at once.
  const QPixmap& PictureOf(int page);
  int kept() const { return static_cast<int>(pictures_.size()); }
  QSize PictureSize() const { return size_; }

 signals:
  void Chosen(int page);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  const ReportDocument& document_;
  QSize size_;
  QCache<int, QPixmap> pictures_;
  bool following_ = false;
};

}  // namespace kaunter
