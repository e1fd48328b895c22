#include "desktop/print_report.h"

#include <QWidget>
#include <optional>

#include "desktop/message_box.h"
#include "desktop/paper_output.h"
#include "desktop/preview_dialog.h"
#include "desktop/report_wait.h"
#include "qtservices/report_painter.h"
#include "reports/run_report.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

// Nothing when the person stopped it.
std::optional<ReportRun> Run(QWidget* parent, const ReportJob& job, bool chinese) {
  ReportWait wait(parent, chinese);
  try {
    return RunWholeReport(job, wait.progress(), MeasurePicture);
  } catch (const ReportStopped&) {
    return std::nullopt;
  }
}

void TellLeftOut(const ReportDocument& document, QWidget* parent, bool chinese) {
  for (const Caption& left_out : document.left_out) {
    ShowMessage(parent, MessageKind::warning, document.title, left_out.In(chinese), chinese);
  }
}

}  // namespace

void PrintReport(QWidget* parent, const ReportJob& job, bool chinese) {
  std::optional<ReportRun> run = Run(parent, job, chinese);
  if (!run) return;
  switch (job.Destination) {
    case ReportDestination::printer:
      if (PrintDocument(run->document, parent, chinese))
        TellLeftOut(run->document, parent, chinese);
      return;
    case ReportDestination::pdf:
      if (SaveDocumentAsPdf(run->document, parent, chinese)) {
        TellLeftOut(run->document, parent, chinese);
      }
      return;
    case ReportDestination::preview:
      break;
  }
  PreviewDialog dialog(std::move(*run), chinese, parent);
  dialog.exec();
}

}  // namespace kaunter
