#include "desktop/print_report.h"

#include <QWidget>

#include "desktop/preview_dialog.h"
#include "reports/report_csv.h"
#include "reports/run_report.h"
#include "screen/report_job.h"

namespace kaunter {

void PrintReport(QWidget* parent, const ReportJob& job, bool chinese) {
  ReportDocument document = RunReport(job);
  switch (job.Destination) {
    case ReportDestination::printer:
      PrintDocument(document, parent);
      return;
    case ReportDestination::pdf:
      SaveDocumentAsPdf(document, parent, chinese);
      return;
    case ReportDestination::preview:
      break;
  }
  PreviewDialog dialog(
      std::move(document), [job] { return ReportToCsv(job); }, chinese, parent);
  dialog.exec();
}

}  // namespace kaunter
