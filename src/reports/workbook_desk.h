// A desk that can write rows as a workbook, as its previews do. Not every desk can: it says so by
// being one.
#pragma once

#include <string>

#include "reports/report_rows.h"

namespace kaunter {

class WorkbookDesk {
 public:
  virtual ~WorkbookDesk() = default;
  // Throws std::runtime_error that names the file and says why it cannot be written; what was there
  // before then stays as it was.
  virtual void WriteWorkbook(const ReportRows& rows, const std::string& path) = 0;
};

}  // namespace kaunter
