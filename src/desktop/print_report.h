// Reports on the desktop: preview, printer, PDF.
#pragma once

class QWidget;

namespace kaunter {

struct ReportJob;

// Runs the report and brings it where the job wants it: to the preview, or through the dialog of
// the printer or of the PDF file. Failures of the report go through as exceptions.
void PrintReport(QWidget* parent, const ReportJob& job, bool chinese);

}  // namespace kaunter
