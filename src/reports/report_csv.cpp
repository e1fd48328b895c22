#include "reports/report_csv.h"

#include <vector>

#include "core/values.h"
#include "reports/report_rows.h"
#include "reports/report_texts.h"

namespace kaunter {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";

void AddCell(std::string& csv, const std::string& text, bool first) {
  if (!first) csv += ',';
  if (text.find_first_of(",\"\r\n") == std::string::npos) {
    csv += text;
    return;
  }
  csv += '"';
  for (const char c : text) {
    if (c == '"') csv += '"';
    csv += c;
  }
  csv += '"';
}

std::string Shown(const Value& value, CellKind kind) {
  if (kind == CellKind::money) return Show2dp(value);
  if (kind == CellKind::rate && !value.IsNull()) return Format(MoneyOf(value), "0.0000");
  const std::string text = ShowCell(value, kind);
  return kind == CellKind::text ? Harmless(text) : text;
}

}  // namespace

std::string Harmless(const std::string& text) {
  const bool formula = text.size() > 1 &&
                       std::string_view("=+-@").find(text[0]) != std::string_view::npos &&
                       !(text[0] == '-' && IsNumeric(text));
  return formula ? "'" + text : text;
}

std::string ReportToCsv(const ReportRun& run) {
  const ReportRows given = RowsOf(run);
  std::string csv(kMark);
  for (std::size_t i = 0; i < given.columns.size(); ++i) {
    AddCell(csv, given.columns[i].heading, i == 0);
  }
  csv += "\r\n";
  for (const std::vector<Value>& row : given.rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      AddCell(csv, Shown(row[i], given.columns[i].kind), i == 0);
    }
    csv += "\r\n";
  }
  return csv;
}

}  // namespace kaunter
