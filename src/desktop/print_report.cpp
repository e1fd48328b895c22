#include "desktop/print_report.h"

#include <QWidget>
#include <optional>

#include "desktop/paper_output.h"
#include "desktop/preview_dialog.h"
#include "desktop/report_wait.h"
#include "reports/run_report.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

// Nothing when the person stopped it.
std::optional<ReportRun> Run(QWidget* parent, const ReportJob& job, bool chinese) {
  ReportWait wait(parent, chinese);
  try {
    return RunWholeReport(job, wait.progress());
  } catch (const ReportStopped&) {
    return std::nullopt;
  }
}

}  // namespace

void PrintReport(QWidget* parent, const ReportJob& job, bool chinese) {
  std::optional<ReportRun> run = Run(parent, job, chinese);
  if (!run) return;
  switch (job.Destination) {
    case ReportDestination::printer:
      PrintDocument(run->document, parent, chinese);
      return;
    case ReportDestination::pdf:
      SaveDocumentAsPdf(run->document, parent, chinese);
      return;
    case ReportDestination::preview:
      break;
  }
  PreviewDialog dialog(std::move(*run), chinese, parent);
  dialog.exec();
}

}  // namespace kaunter
