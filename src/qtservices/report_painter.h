// Draws the pages of a report: on the preview, on a printer, into a PDF.
#pragma once

#include "reports/report_document.h"

class QPainter;

namespace kaunter {

// Draws one page (from 0) with its top left corner at the painter's origin; the painter's unit is
// the millimetre (scale it before).
void PaintReportPage(QPainter& painter, const ReportDocument& document, std::size_t page);

}  // namespace kaunter
