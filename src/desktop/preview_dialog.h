// The preview of a report: its pages, zoom, search, print, PDF, CSV and Excel for an office's own
// tables.
#pragma once

#include <QDialog>
#include <functional>

#include "reports/run_report.h"

class QAbstractButton;
class QFrame;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QTimer;

namespace kaunter {

class PageList;
class PagesView;

class PreviewDialog : public QDialog {
 public:
  PreviewDialog(ReportRun run, bool chinese, QWidget* parent);
  ~PreviewDialog() override;

  PagesView& pages() { return *pages_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  QFrame* TopBar();
  QFrame* Foot();
  QAbstractButton* Button(QHBoxLayout* row, const QString& text, const QString& hint,
                          const std::function<void()>& act);
  void Shortcuts();
  void ZoomBy(double factor);
  void GoToTyped();
  void AskSearch();
  void Search();
  void NextHit(int step);
  void ShowPlace();
  void ShowHits();
  void ShowList(bool on);
  void Print();
  void SavePdf();
  void SaveCsv();
  void SaveExcel();
  QString In(const char* english, const char* chinese) const;
  void Try(const std::function<void()>& act);

  ReportRun run_;
  bool chinese_;
  PagesView* pages_;
  PageList* list_ = nullptr;  // none beside a single page
  QAbstractButton* list_button_ = nullptr;
  QLineEdit* page_box_ = nullptr;
  QLabel* of_pages_ = nullptr;
  QLabel* zoom_ = nullptr;
  QLineEdit* search_box_ = nullptr;
  QLabel* hits_ = nullptr;
  QTimer* search_soon_;  // a word is searched when nobody types any more
};

}  // namespace kaunter
