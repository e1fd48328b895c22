#include "desktop/paper_output.h"

#include <QFileDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QRegularExpression>
#include <QStandardPaths>
#include <stdexcept>

#include "desktop/report_wait.h"
#include "desktop/text.h"
#include "qtservices/report_output.h"
#include "qtservices/report_painter.h"
#include "reports/run_report.h"

namespace kaunter {
namespace {

// A file name made of the report's title, in the user's documents.
QString Proposed(const ReportDocument& document, const QString& ending) {
  QString name = Q(document.title).simplified();
  name.replace(QRegularExpression("[\\\\/:*?\"<>|]"), "-");
  if (name.isEmpty()) name = "Report";
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + "/" + name + "." +
         ending;
}

// The name with its ending: it is added before the question whether a file may be replaced. Empty
// when the person thought better of it.
std::string AskName(const ReportDocument& document, QWidget* parent, const QString& title,
                    const QString& ending) {
  QFileDialog dialog(parent, title, Proposed(document, ending),
                     ending.toUpper() + " (*." + ending + ")");
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(ending);
  if (dialog.exec() != QDialog::Accepted) return {};
  return S(dialog.selectedFiles().value(0));
}

[[noreturn]] void NoPrinter(const QPrinter& printer, bool chinese) {
  const QString name = printer.printerName();
  throw std::runtime_error(S(
      chinese ? QString("打印机 %1 没有回应。请检查它是否开着、有纸、已连接，或存为PDF。").arg(name)
              : QString("The printer %1 does not answer. Is it switched on, connected, and has it "
                        "paper? The report can be saved as PDF instead.")
                    .arg(name)));
}

}  // namespace

QPageLayout SheetOf(const ReportDocument& document) {
  QSizeF size(document.width_mm, document.height_mm);
  const bool turned = size.width() > size.height();
  if (turned) size.transpose();
  const QPageSize sheet(size, QPageSize::Millimeter, QString(), QPageSize::FuzzyMatch);
  QPageLayout layout(sheet, turned ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF());
  layout.setMode(QPageLayout::FullPageMode);
  return layout;
}

bool PrintDocument(const ReportDocument& document, QWidget* parent, bool chinese) {
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(Q(document.title));
  printer.setPageLayout(SheetOf(document));
  printer.setFullPage(true);
  QPrintDialog dialog(&printer, parent);
  const int last = static_cast<int>(document.pages.size());
  dialog.setMinMax(1, std::max(1, last));
  if (dialog.exec() != QDialog::Accepted) return false;
  QPainter painter;
  if (!printer.isValid() || !painter.begin(&printer)) NoPrinter(printer, chinese);
  const int from = printer.fromPage() > 0 ? printer.fromPage() : 1;
  const int to = printer.toPage() > 0 ? std::min(printer.toPage(), last) : last;
  const double scale = printer.resolution() / 25.4;
  ReportWait wait(parent, chinese);
  const ReportProgress progress = wait.progress();
  for (int page = from; page <= to; ++page) {
    const auto done = static_cast<std::size_t>(page - from);
    if (!progress(ReportStage::writing, done, static_cast<std::size_t>(to - from + 1))) {
      printer.abort();
      return false;
    }
    if (page > from && !printer.newPage()) NoPrinter(printer, chinese);
    painter.save();
    painter.scale(scale, scale);
    PaintReportPage(painter, document, static_cast<std::size_t>(page - 1));
    painter.restore();
  }
  if (!painter.end() || printer.printerState() == QPrinter::Error) NoPrinter(printer, chinese);
  return true;
}

bool SaveDocumentAsPdf(const ReportDocument& document, QWidget* parent, bool chinese) {
  const std::string path = AskName(document, parent, chinese ? "存PDF" : "Save PDF", "pdf");
  if (path.empty()) return false;
  ReportWait wait(parent, chinese);
  try {
    WritePdf(document, path, wait.progress());
  } catch (const ReportStopped&) {
    return false;
  }
  return true;
}

bool SaveRowsAsCsv(const ReportRun& run, QWidget* parent, bool chinese) {
  const std::string path = AskName(run.document, parent, chinese ? "存CSV" : "Save CSV", "csv");
  if (path.empty()) return false;
  WriteCsv(run, path);
  return true;
}

}  // namespace kaunter
