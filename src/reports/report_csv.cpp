#include "reports/report_csv.h"

#include <vector>

#include "core/values.h"
#include "reports/report_table.h"

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

ReportColumn CsvColumn(const Column& column) {
  ReportColumn shown;
  shown.heading = shown.field = column.name;
  if (column.type == FieldType::kMoney) shown.kind = CellKind::money;
  if (column.type == FieldType::kDate) shown.kind = CellKind::date;
  return shown;
}

std::string Shown(const Value& value, CellKind kind) {
  if (kind == CellKind::money) return Show2dp(value);
  if (kind == CellKind::rate && !value.IsNull()) return Format(MoneyOf(value), "0.0000");
  const std::string text = ShowCell(value, kind);
  // A spreadsheet would reckon "+60123456789" or "=..." instead of showing what was typed.
  const bool formula = kind == CellKind::text && text.size() > 1 &&
                       std::string_view("=+-@").find(text[0]) != std::string_view::npos &&
                       !(text[0] == '-' && IsNumeric(text));
  return formula ? "'" + text : text;
}

}  // namespace

std::string ReportToCsv(const ReportRun& run) {
  ReportFile file = run.file;
  // A letter without a table still has its rows: all that the query gives.
  if (file.columns.empty()) {
    for (const Column& column : run.rows.columns()) file.columns.push_back(CsvColumn(column));
  }
  const ReportTexts texts(file.path, run.heading, run.rows);
  const ReportTable table(file, texts, run.rows, 0, file.width_mm);
  std::string csv(kMark);
  for (std::size_t i = 0; i < file.columns.size(); ++i) {
    AddCell(csv, file.columns[i].heading, i == 0);
  }
  csv += "\r\n";
  for (std::size_t row = 0; row < run.rows.RowCount(); ++row) {
    for (std::size_t i = 0; i < file.columns.size(); ++i) {
      AddCell(csv, Shown(table.CellValue(i, row), file.columns[i].kind), i == 0);
    }
    csv += "\r\n";
  }
  return csv;
}

}  // namespace kaunter
