#include "desktop/paper_output.h"

#include <QFileDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <map>
#include <stdexcept>
#include <utility>

#include "desktop/report_wait.h"
#include "desktop/text.h"
#include "qtservices/report_output.h"
#include "qtservices/report_painter.h"
#include "reports/run_report.h"

namespace kaunter {
namespace {

constexpr int kPatienceMs = 3000;

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

enum class Trouble { none_here, vanished, rejects, silent, lost_behind, stopped };

[[noreturn]] void Tell(Trouble trouble, const QString& printer, bool chinese) {
  static const std::map<Trouble, std::pair<const char*, const char*>> kTexts = {
      {Trouble::none_here,
       {"This PC knows no printer, or its print service does not run. Set a printer up in the "
        "settings of the system and print again, or save the report as PDF. Nothing was printed.",
        "此电脑没有打印机，或打印服务没有运行。请在系统设置里添加打印机后再打印，或存为PDF。"
        "没有打印任何内容。"}},
      {Trouble::vanished,
       {"The printer %1 is not there any more, or the print service does not run. Choose another "
        "printer, or save the report as PDF. Nothing was printed.",
        "找不到打印机 %1，或打印服务没有运行。请选择另一台打印机，或存为PDF。没有打印任何内容。"}},
      {Trouble::rejects,
       {"The printer %1 takes no work at present: its queue rejects it. Have the queue opened in "
        "the settings of the system, choose another printer, or save the report as PDF. Nothing "
        "was printed.",
        "打印机 %1 的队列目前拒收任务。请在系统设置里恢复接收，或选择另一台打印机，或存为PDF。"
        "没有打印任何内容。"}},
      {Trouble::silent,
       {"The printer %1 does not answer. Is it switched on, connected, and has it paper? Look what "
        "came out before printing again; the report can be saved as PDF instead.",
        "打印机 %1 "
        "没有回应。请检查它是否开着、有纸、已连接。再打印前请先看看已印出什么；也可存为PDF。"}},
      {Trouble::lost_behind,
       {"The print service went away before the printer %1 took the report: it is not known "
        "whether it is printed. Look at the printer before printing again.",
        "打印服务在打印机 %1 接收报告之前中断，不知是否已印出。再打印前请先查看打印机。"}},
      {Trouble::stopped,
       {"The printer %1 has stopped. The report waits in its queue and is printed once the printer "
        "is started again: do not print it a second time.",
        "打印机 %1 已停止。报告在队列中等候，打印机恢复后会印出：请勿再次打印。"}}};
  const auto& [english, simplified] = kTexts.at(trouble);
  const QString text = QString::fromUtf8(chinese ? simplified : english);
  throw std::runtime_error(S(text.contains("%1") ? text.arg(printer) : text));
}

// A queue that rejects jobs looks idle to Qt, and what is sent to it is lost. The print service's
// own command tells; where there is none, the print goes its way.
bool Rejects(const QString& printer) {
  QProcessEnvironment english = QProcessEnvironment::systemEnvironment();
  english.insert("LC_ALL", "C");
  QProcess ask;
  ask.setProcessEnvironment(english);
  ask.start("lpstat", {"-a", printer.section('/', 0, 0)});  // without the name of a preset
  return ask.waitForFinished(kPatienceMs) &&
         ask.readAllStandardOutput().contains(" not accepting requests ");
}

// Some pages of a report as a report.
ReportDocument Part(const ReportDocument& document, int from, int to) {
  ReportDocument part = document;
  part.pages.assign(document.pages.begin() + (from - 1), document.pages.begin() + to);
  return part;
}

// False when the person stopped it.
bool WriteWithWait(const ReportDocument& document, const std::string& path, QWidget* parent,
                   bool chinese) {
  ReportWait wait(parent, chinese);
  try {
    WritePdf(document, path, wait.progress());
    return true;
  } catch (const ReportStopped&) {
    return false;
  }
}

bool PaintOnto(QPrinter& printer, const ReportDocument& document, int from, int to, QWidget* parent,
               bool chinese) {
  const QString name = printer.printerName();
  QPainter painter;
  if (!printer.isValid() || !painter.begin(&printer)) Tell(Trouble::silent, name, chinese);
  const double scale = printer.resolution() / 25.4;
  ReportWait wait(parent, chinese);
  const ReportProgress progress = wait.progress();
  for (int page = from; page <= to; ++page) {
    const auto done = static_cast<std::size_t>(page - from);
    if (!progress(ReportStage::writing, done, static_cast<std::size_t>(to - from + 1))) {
      printer.abort();
      return false;
    }
    if (page > from && !printer.newPage()) Tell(Trouble::silent, name, chinese);
    painter.save();
    painter.scale(scale, scale);
    PaintReportPage(painter, document, static_cast<std::size_t>(page - 1));
    painter.restore();
  }
  if (!painter.end() || printer.printerState() == QPrinter::Error) {
    Tell(Trouble::silent, name, chinese);
  }
  return true;
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
  return PrintOn(printer, document, parent, chinese);
}

bool PrintOn(QPrinter& printer, const ReportDocument& document, QWidget* parent, bool chinese) {
  const int last = static_cast<int>(document.pages.size());
  const int from = std::max(1, printer.fromPage());
  const int to = printer.toPage() > 0 ? std::min(printer.toPage(), last) : last;
  // A printer that writes a file does not tell of a full disk.
  if (const QString file = printer.outputFileName(); !file.isEmpty()) {
    return WriteWithWait(from > 1 || to < last ? Part(document, from, to) : document, S(file),
                         parent, chinese);
  }
  const QString name = printer.printerName();
  if (name.isEmpty()) Tell(Trouble::none_here, name, chinese);
  if (QPrinterInfo::printerInfo(name).isNull()) Tell(Trouble::vanished, name, chinese);
  if (Rejects(name)) Tell(Trouble::rejects, name, chinese);
  if (!PaintOnto(printer, document, from, to, parent, chinese)) return false;
  // The paper counts as printed even when no print service has taken it; so that is asked.
  const QPrinterInfo after = QPrinterInfo::printerInfo(name);
  if (after.isNull()) Tell(Trouble::lost_behind, name, chinese);
  if (after.state() == QPrinter::Error) Tell(Trouble::stopped, name, chinese);
  return true;
}

bool SaveDocumentAsPdf(const ReportDocument& document, QWidget* parent, bool chinese) {
  const std::string path = AskName(document, parent, chinese ? "存PDF" : "Save PDF", "pdf");
  if (path.empty()) return false;
  return WriteWithWait(document, path, parent, chinese);
}

bool SaveRowsAsCsv(const ReportRun& run, QWidget* parent, bool chinese) {
  const std::string path = AskName(run.document, parent, chinese ? "存CSV" : "Save CSV", "csv");
  if (path.empty()) return false;
  WriteCsv(run, path);
  return true;
}

bool SaveRowsAsExcel(const ReportRun& run, QWidget* parent, bool chinese) {
  const std::string path =
      AskName(run.document, parent, chinese ? "存Excel" : "Save Excel", "xlsx");
  if (path.empty()) return false;
  WriteXlsx(run, path);
  return true;
}

}  // namespace kaunter
