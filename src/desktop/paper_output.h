// A report on its way out of the program: onto a printer, into a PDF, a CSV, a workbook.
#pragma once

#include <QPageLayout>

#include "reports/report_document.h"

class QPrinter;
class QWidget;

namespace kaunter {

struct ReportRun;

// The sheet as printers know it: A5 turned round, not a paper of its own size, which few printers
// take.
QPageLayout SheetOf(const ReportDocument& document);

// All ask where to, and are false when the person thought better of it or stopped the work. They
// throw std::runtime_error for a printer that does not answer or a file that cannot be written.
bool PrintDocument(const ReportDocument& document, QWidget* parent, bool chinese);
// Onto a printer that is chosen; the pages between its fromPage and toPage.
bool PrintOn(QPrinter& printer, const ReportDocument& document, QWidget* parent, bool chinese);
bool SaveDocumentAsPdf(const ReportDocument& document, QWidget* parent, bool chinese);
bool SaveRowsAsCsv(const ReportRun& run, QWidget* parent, bool chinese);
bool SaveRowsAsExcel(const ReportRun& run, QWidget* parent, bool chinese);

}  // namespace kaunter
