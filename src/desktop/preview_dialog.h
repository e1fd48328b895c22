// The preview of a report: its pages below each other, zoom, print, PDF, and CSV for an office's
// own tables.
#pragma once

#include <QDialog>
#include <QPageLayout>
#include <QWidget>
#include <functional>
#include <string>

#include "reports/report_document.h"

class QLabel;
class QScrollArea;

namespace kaunter {

// Draws the pages at a zoom; 1 is the size of the paper.
class PagesView : public QWidget {
 public:
  PagesView(const ReportDocument& document, QWidget* parent);
  void SetZoom(double zoom);
  double zoom() const { return zoom_; }
  double ZoomForWidth(int width) const;
  QRect PageRect(int page) const;
  int PageAt(int y) const;
  int pages() const { return static_cast<int>(document_.pages.size()); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  double PixelsPerMillimetre() const;
  const ReportDocument& document_;
  double zoom_ = 1;
};

class PreviewDialog : public QDialog {
 public:
  // `save_csv` gives the rows as CSV text when it is asked for.
  PreviewDialog(ReportDocument document, std::function<std::string()> save_csv, bool chinese,
                QWidget* parent);
  ~PreviewDialog() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void ZoomBy(double factor);
  void FitWidth();
  void Turn(int pages);
  void ShowPlace();
  void Print();
  void SavePdf();
  void SaveCsv();
  QString In(const char* english, const char* chinese) const;
  bool Try(const std::function<void()>& act);

  ReportDocument document_;
  std::function<std::string()> save_csv_;
  bool chinese_;
  PagesView* pages_;
  QScrollArea* scroll_;
  QLabel* place_;
};

// The sheet as printers know it: A5 turned round, not a paper of its own size, which few printers
// take.
QPageLayout SheetOf(const ReportDocument& document);
// Through the printer's own dialog onto paper; false when the person thought better of it.
bool PrintDocument(const ReportDocument& document, QWidget* parent);
// Asks for the file's name and writes it; false when the person thought better of it.
bool SaveDocumentAsPdf(const ReportDocument& document, QWidget* parent, bool chinese);

}  // namespace kaunter
