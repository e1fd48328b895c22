#include "qtservices/report_output.h"

#include <fmt/format.h>

#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <filesystem>
#include <stdexcept>

#include "qtservices/report_painter.h"
#include "reports/report_csv.h"
#include "reports/run_report.h"

namespace kaunter {
namespace {

[[noreturn]] void Refuse(const QSaveFile& file) {
  throw std::runtime_error(
      fmt::format("{} cannot be written: {}. Is the folder there, and is there room on the disk? "
                  "What was there before stays as it was.",
                  file.fileName().toStdString(), file.errorString().toStdString()));
}

void Open(QSaveFile& file) {
  if (!file.open(QIODevice::WriteOnly)) Refuse(file);
}

// The writer of a PDF does not tell when the disk is full; the file does.
void Check(const QSaveFile& file) {
  if (file.error() != QFileDevice::NoError) Refuse(file);
}

void Close(QSaveFile& file) {
  Check(file);
  if (!file.commit()) Refuse(file);
}

}  // namespace

void WritePdf(const ReportDocument& document, const std::string& path,
              const ReportProgress& progress) {
  QSaveFile file(QString::fromStdString(path));
  Open(file);
  QPdfWriter writer(&file);
  writer.setTitle(QString::fromStdString(document.title));
  writer.setCreator("Kaunter");
  writer.setResolution(600);
  writer.setPageSize(QPageSize(QSizeF(document.width_mm, document.height_mm), QPageSize::Millimeter,
                               QString(), QPageSize::ExactMatch));
  writer.setPageMargins(QMarginsF(0, 0, 0, 0));
  QPainter painter;
  if (!painter.begin(&writer)) Refuse(file);
  for (std::size_t page = 0; page < document.pages.size(); ++page) {
    TellProgress(progress, ReportStage::writing, page, document.pages.size());
    Check(file);
    if (page > 0) writer.newPage();
    painter.save();
    painter.scale(writer.resolution() / 25.4, writer.resolution() / 25.4);
    PaintReportPage(painter, document, page);
    painter.restore();
  }
  if (!painter.end()) Refuse(file);
  Close(file);
}

void WriteCsv(const ReportRun& run, const std::string& path) {
  const std::string text = ReportToCsv(run);
  QSaveFile file(QString::fromStdString(path));
  Open(file);
  file.write(text.data(), static_cast<qint64>(text.size()));
  Close(file);
}

void RenderReport(const ReportJob& job, const std::string& pdf_path) {
  const ReportRun run = RunWholeReport(job);
  WritePdf(run.document, pdf_path);
  if (run.file.IsLetter()) return;
  WriteCsv(run, std::filesystem::path(pdf_path).replace_extension(".csv").string());
}

}  // namespace kaunter
