// A long report shows how far it has come, and a button that stops it.
#pragma once

#include <QElapsedTimer>
#include <memory>

#include "reports/report_progress.h"

class QWidget;

namespace kaunter {

class ProgressDialog;

class ReportWait {
 public:
  ReportWait(QWidget* parent, bool chinese);
  ~ReportWait();
  ReportWait(const ReportWait&) = delete;
  ReportWait& operator=(const ReportWait&) = delete;

  // What the report is given to tell its progress. A short report shows nothing.
  ReportProgress progress();

 private:
  bool Tell(ReportStage stage, std::size_t done, std::size_t of);
  void Open();

  QWidget* parent_;
  bool chinese_;
  QElapsedTimer since_;
  std::unique_ptr<ProgressDialog> dialog_;
};

}  // namespace kaunter
