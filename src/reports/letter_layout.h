// From the rows of a letter file to its pages: each record begins a page of its own, and the rows
// of a record are the items of its letter.
#pragma once

#include "reports/report_document.h"
#include "reports/report_file.h"
#include "reports/report_progress.h"
#include "reports/report_texts.h"

namespace kaunter {

// Throws std::runtime_error when the file names a column that the rows do not have, or when what
// stands in columns is higher than a page.
ReportDocument LayOutLetter(const ReportFile& file, const ReportHeading& heading,
                            const Recordset& rows, const ReportProgress& progress = {});

}  // namespace kaunter
