// Draws the pages of a report: on the preview, on a printer, into a PDF.
#pragma once

#include <optional>
#include <string>

#include "reports/report_document.h"

class QPainter;

namespace kaunter {

// Draws one page (from 0) with its top left corner at the painter's origin; the painter's unit is
// the millimetre (scale it before).
void PaintReportPage(QPainter& painter, const ReportDocument& document, std::size_t page);

// Nothing for a file that PaintReportPage would leave out.
std::optional<PictureSize> MeasurePicture(const std::string& path);

}  // namespace kaunter
