#include "qtservices/report_painter.h"

#include <fmt/format.h>

#include <QFont>
#include <QFontMetricsF>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <stdexcept>

#include "reports/run_report.h"

namespace kaunter {
namespace {

constexpr double kMillimetresPerPoint = 25.4 / 72.0;
// Fonts are laid out at this many units a millimetre, so that small sizes keep their widths.
constexpr double kTextScale = 20.0;

QColor Colour(Tone tone) {
  switch (tone) {
    case Tone::ink:
      return QColor(0x1f, 0x24, 0x2b);
    case Tone::quiet:
      return QColor(0x66, 0x6f, 0x7a);
    case Tone::accent:
      return QColor(0x1f, 0x5f, 0x5b);
    case Tone::shade:
      return QColor(0xf3, 0xf6, 0xf6);
    case Tone::rule:
      return QColor(0xb9, 0xc2, 0xc6);
  }
  return Qt::black;
}

void PaintText(QPainter& painter, const PageText& text) {
  QFont font("DejaVu Sans");
  font.setFamilies({"DejaVu Sans", "Noto Sans CJK SC"});
  font.setPixelSize(static_cast<int>(text.points * kMillimetresPerPoint * kTextScale + 0.5));
  font.setBold(text.bold);
  const QFontMetricsF metrics(font);
  const QString shown = metrics.elidedText(QString::fromStdString(text.text), Qt::ElideRight,
                                           text.width * kTextScale);
  int align = Qt::AlignVCenter | Qt::TextSingleLine;
  align |= text.align == TextAlign::right    ? Qt::AlignRight
           : text.align == TextAlign::center ? Qt::AlignHCenter
                                             : Qt::AlignLeft;
  painter.save();
  painter.scale(1 / kTextScale, 1 / kTextScale);
  painter.setFont(font);
  painter.setPen(Colour(text.tone));
  painter.drawText(QRectF(text.x * kTextScale, text.y * kTextScale, text.width * kTextScale,
                          text.height * kTextScale),
                   align, shown);
  painter.restore();
}

}  // namespace

void PaintReportPage(QPainter& painter, const ReportDocument& document, std::size_t page) {
  const ReportPage& content = document.pages.at(page);
  for (const PageArea& area : content.areas) {
    painter.fillRect(QRectF(area.x, area.y, area.width, area.height), Colour(area.tone));
  }
  for (const PageLine& line : content.lines) {
    painter.setPen(QPen(Colour(line.tone), line.width));
    painter.drawLine(QPointF(line.x1, line.y1), QPointF(line.x2, line.y2));
  }
  for (const PageText& text : content.texts) PaintText(painter, text);
}

void WritePdf(const ReportDocument& document, const std::string& path) {
  QPdfWriter writer(QString::fromStdString(path));
  writer.setTitle(QString::fromStdString(document.title));
  writer.setCreator("Kaunter");
  writer.setResolution(600);
  writer.setPageSize(QPageSize(QSizeF(document.width_mm, document.height_mm), QPageSize::Millimeter,
                               QString(), QPageSize::ExactMatch));
  writer.setPageMargins(QMarginsF(0, 0, 0, 0));
  QPainter painter;
  if (!painter.begin(&writer)) {
    throw std::runtime_error(
        fmt::format("The paper {} cannot be written: is the folder there, and is there "
                    "room on the disk?",
                    path));
  }
  for (std::size_t page = 0; page < document.pages.size(); ++page) {
    if (page > 0) writer.newPage();
    painter.save();
    painter.scale(writer.resolution() / 25.4, writer.resolution() / 25.4);
    PaintReportPage(painter, document, page);
    painter.restore();
  }
  if (!painter.end())
    throw std::runtime_error(fmt::format("The paper {} was not written to its end.", path));
}

void RenderReportToPdf(const ReportJob& job, const std::string& path) {
  WritePdf(RunReport(job), path);
}

}  // namespace kaunter
