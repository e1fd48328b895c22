#include "reports/report_groups.h"

#include <fmt/format.h>

#include "core/values.h"

namespace kaunter {

std::string GroupValue(const Value& value, GroupBy by) {
  const DateTime* date = value.AsDate();
  if (date == nullptr) return NullToEmpty(value);
  if (by == GroupBy::year) return std::to_string(date->year);
  if (by == GroupBy::month) return fmt::format("{:02}-{}", date->month, date->year);
  return ShowCell(value, CellKind::date);
}

ReportGroups::ReportGroups(const ReportFile& file, const ReportTexts& texts, const Recordset& rows)
    : file_(file), texts_(texts), rows_(rows), several_(file.groups.size(), false) {
  if (file.groups.empty()) return;
  for (const ReportGroup& group : file.groups) {
    fields_.push_back(texts.ColumnOf(group.field, group.line));
  }
  spans_.resize(fields_.size());
  changed_.assign(rows.RowCount(), 0);
  std::vector<std::string> before(fields_.size());
  for (std::size_t row = 0; row < rows.RowCount(); ++row) {
    std::size_t first = fields_.size();
    for (std::size_t g = fields_.size(); g-- > 0;) {
      std::string value = Trim(GroupValue(rows.rows()[row][fields_[g]], file.groups[g].by));
      if (row == 0 || !SameText(value, before[g])) {
        first = g;
        several_[g] = several_[g] || row > 0;
      }
      before[g] = std::move(value);
    }
    changed_[row] = static_cast<unsigned char>(first);
  }
}

RowSpan ReportGroups::SpanOf(std::size_t g, std::size_t row) const {
  RowSpan& span = spans_[g];
  if (row >= span.first && row < span.first + span.count) return span;
  std::size_t begin = row;
  while (begin > 0 && changed_[begin] > g) --begin;
  std::size_t end = row + 1;
  while (end < rows_.RowCount() && changed_[end] > g) ++end;
  span = {begin, end - begin};
  return span;
}

std::string ReportGroups::Text(const std::string& text, std::size_t g, std::size_t row) const {
  const RowSpan span = SpanOf(g, row);
  std::string filled = texts_.Fill(text, span, group(g).line);
  std::string value = GroupValue(rows_.rows()[span.first][fields_[g]], file_.groups[g].by);
  // What nobody filled in gets a dash: a line of the total needs a name.
  if (Trim(value).empty()) value = "-";
  const auto place = filled.find("{group}");
  if (place != std::string::npos) filled.replace(place, 7, value);
  return Trim(filled).empty() ? "-" : filled;
}

}  // namespace kaunter
