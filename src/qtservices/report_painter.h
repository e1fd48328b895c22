// Draws the pages of a report: on the preview, on a printer, into a PDF.
#pragma once

#include <string>

#include "reports/report_document.h"

class QPainter;

namespace kaunter {

struct ReportJob;

// Draws one page (from 0) with its top left corner at the painter's origin; the painter's unit is
// the millimetre (scale it before).
void PaintReportPage(QPainter& painter, const ReportDocument& document, std::size_t page);

// Writes all pages as a PDF. Throws std::runtime_error when the file cannot be written. Needs a
// QGuiApplication.
void WritePdf(const ReportDocument& document, const std::string& path);

// Runs the report and writes its PDF.
void RenderReportToPdf(const ReportJob& job, const std::string& path);

}  // namespace kaunter
