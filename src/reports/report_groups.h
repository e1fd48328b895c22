// Where the groups of a listing begin and end among its rows.
#pragma once

#include <string>
#include <vector>

#include "platform/sql/connection.h"
#include "reports/report_file.h"
#include "reports/report_texts.h"

namespace kaunter {

// The value of a group's column as a paper shows it: a date, a year, "01-2024", a text.
std::string GroupValue(const Value& value, GroupBy by);

class ReportGroups {
 public:
  ReportGroups(const ReportFile& file, const ReportTexts& texts, const Recordset& rows);

  std::size_t size() const { return file_.groups.size(); }
  const ReportGroup& group(std::size_t g) const { return file_.groups[g]; }
  // The outermost group that begins with this row; size() when the row belongs to those before.
  std::size_t FirstChanged(std::size_t row) const { return changed_.empty() ? 0 : changed_[row]; }
  // Whether the report has more than one value of the group: one alone needs no subtotal.
  bool Several(std::size_t g) const { return several_[g]; }
  // A text of the group that this row belongs to, with its places filled.
  std::string Text(const std::string& text, std::size_t g, std::size_t row) const;

 private:
  const ReportFile& file_;
  const ReportTexts& texts_;
  const Recordset& rows_;
  RowSpan SpanOf(std::size_t g, std::size_t row) const;

  mutable std::vector<RowSpan> spans_;  // the group asked for last, by level
  std::vector<std::size_t> fields_;
  std::vector<bool> several_;
  std::vector<unsigned char> changed_;  // by row
};

}  // namespace kaunter
