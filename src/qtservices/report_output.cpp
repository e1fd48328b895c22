#include "qtservices/report_output.h"

#include <fmt/format.h>

#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <filesystem>
#include <stdexcept>

#include "platform/private_file.h"
#include "qtservices/pdf_text.h"
#include "qtservices/report_painter.h"
#include "qtservices/xlsx_file.h"
#include "reports/report_csv.h"
#include "reports/report_rows.h"
#include "reports/run_report.h"

namespace kaunter {
namespace {

// What is written goes to a file beside the place and takes it at the end, when it is whole.
class WholeFile : public QSaveFile {
 public:
  explicit WholeFile(const std::string& path) : QSaveFile(QString::fromStdString(path)) {
    if (!open(QIODevice::WriteOnly)) Refuse();
  }

  [[noreturn]] void Refuse() const {
    throw std::runtime_error(
        fmt::format("{} cannot be written: {}. Is the folder there, and is there room on the disk? "
                    "What was there before stays as it was.",
                    fileName().toStdString(), errorString().toStdString()));
  }

  // The writer of a PDF does not tell when the disk is full; the file does.
  void Check() const {
    if (error() != NoError) Refuse();
    if (short_write_) Refuse();
  }

  void Finish() {
    flush();
    Check();
    if (!commit()) Refuse();
    KeepPrivate(fileName().toStdString());
  }

 protected:
  // A disk that becomes full takes a part, which Qt does not count as an error.
  qint64 writeData(const char* data, qint64 size) override {
    const qint64 written = WritePart(data, size);
    short_write_ = short_write_ || written != size;
    return written;
  }

 private:
  virtual qint64 WritePart(const char* data, qint64 size) {
    return QSaveFile::writeData(data, size);
  }

  bool short_write_ = false;
};

class PdfFile : public WholeFile {
 public:
  using WholeFile::WholeFile;

 private:
  qint64 WritePart(const char* data, qint64 size) override {
    const QByteArray part = WithTypedLetters(QByteArray::fromRawData(data, size));
    return QSaveFile::writeData(part.constData(), part.size());
  }
};

}  // namespace

void WritePdf(const ReportDocument& document, const std::string& path,
              const ReportProgress& progress) {
  PdfFile file(path);
  QPdfWriter writer(&file);
  writer.setTitle(QString::fromStdString(document.title));
  writer.setCreator("Kaunter");
  writer.setResolution(600);
  writer.setPageSize(QPageSize(QSizeF(document.width_mm, document.height_mm), QPageSize::Millimeter,
                               QString(), QPageSize::ExactMatch));
  writer.setPageMargins(QMarginsF(0, 0, 0, 0));
  QPainter painter;
  if (!painter.begin(&writer)) file.Refuse();
  for (std::size_t page = 0; page < document.pages.size(); ++page) {
    TellProgress(progress, ReportStage::writing, page, document.pages.size());
    file.Check();
    if (page > 0) writer.newPage();
    painter.save();
    painter.scale(writer.resolution() / 25.4, writer.resolution() / 25.4);
    PaintReportPage(painter, document, page);
    painter.restore();
  }
  if (!painter.end()) file.Refuse();
  file.Finish();
}

void WriteCsv(const ReportRun& run, const std::string& path) {
  const std::string text = ReportToCsv(run);
  WholeFile file(path);
  file.write(text.data(), static_cast<qint64>(text.size()));
  file.Finish();
}

void WriteXlsx(const ReportRun& run, const std::string& path) { WriteXlsx(RowsOf(run), path); }

std::vector<Caption> RenderReport(const ReportJob& job, const std::string& pdf_path) {
  const ReportRun run = RunWholeReport(job, {}, MeasurePicture);
  WritePdf(run.document, pdf_path);
  if (!run.file.columns.empty()) {
    WriteCsv(run, std::filesystem::path(pdf_path).replace_extension(".csv").string());
    WriteXlsx(run, std::filesystem::path(pdf_path).replace_extension(".xlsx").string());
  }
  return run.document.left_out;
}

}  // namespace kaunter
