#include "reports/run_report.h"

#include <fmt/format.h>

#include <stdexcept>
#include <vector>

#include "core/report_path.h"
#include "core/values.h"
#include "platform/sql/connection.h"
#include "reports/report_file.h"
#include "reports/report_layout.h"
#include "reports/selection_formula.h"

namespace kaunter {
namespace {

Recordset ReadRows(const ReportFile& file, const ReportJob& job) {
  if (job.Connect == nullptr)
    throw std::runtime_error("The report has no connection to read from.");
  std::string condition = FormulaToCondition(job.SelectionFormula);
  if (condition.empty()) condition = "1=1";
  std::string query = file.query;
  const std::string_view place = "{selection}";
  for (auto at = query.find(place); at != std::string::npos; at = query.find(place)) {
    query.replace(at, place.size(), "(" + condition + ")");
  }
  if (!file.order.empty()) query += " ORDER BY " + file.order;
  return job.Connect->Query(query);
}

ReportHeading HeadingOf(const ReportJob& job) {
  ReportHeading heading;
  heading.subtitle = job.ReportTitle;
  heading.company = ScalarQuery(*job.Connect, "SELECT CompanyName FROM CompanyProfile");
  heading.printed_at = "Printed " + ServerNow(*job.Connect, true);
  heading.today = ServerNow(*job.Connect, false);
  for (const auto& [number, field] : job.ParameterFields) {
    const auto [name, value] = SplitParameter(field);
    heading.parameters[Lower(name)] = value;
  }
  return heading;
}

std::string CsvCell(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string cell = "\"";
  for (char c : text) cell += c == '"' ? std::string("\"\"") : std::string(1, c);
  return cell + "\"";
}

ReportColumn CsvColumn(const Column& column) {
  ReportColumn shown;
  shown.heading = shown.field = column.name;
  if (column.type == FieldType::kMoney) shown.kind = CellKind::money;
  if (column.type == FieldType::kDate) shown.kind = CellKind::date;
  return shown;
}

}  // namespace

std::pair<std::string, std::string> SplitParameter(const std::string& field) {
  const auto first = field.find(';');
  if (first == std::string::npos) return {field, {}};
  // The value may hold semicolons itself; the flag behind the last one is not part of it.
  const auto last = field.rfind(';');
  return {field.substr(0, first),
          last == first ? field.substr(first + 1) : field.substr(first + 1, last - first - 1)};
}

ReportDocument RunReport(const ReportJob& job) {
  const ReportFile file = ReportFile::Read(FindReportFile(job.ReportFileName).path);
  const Recordset rows = ReadRows(file, job);
  return LayOut(file, HeadingOf(job), rows);
}

std::string ReportToCsv(const ReportJob& job) {
  const ReportFile file = ReportFile::Read(FindReportFile(job.ReportFileName).path);
  Recordset rows = ReadRows(file, job);
  std::vector<ReportColumn> columns = file.columns;
  // A letter without a table still has its rows: all that the query gives.
  if (columns.empty()) {
    for (const Column& column : rows.columns()) columns.push_back(CsvColumn(column));
  }
  std::string csv;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    csv += (i == 0 ? "" : ",") + CsvCell(columns[i].heading);
  }
  csv += "\r\n";
  for (; !rows.Eof(); rows.MoveNext()) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const Value& value = rows.Field(columns[i].field);
      const std::string cell =
          columns[i].kind == CellKind::money ? Show2dp(value) : ShowCell(value, columns[i].kind);
      csv += (i == 0 ? "" : ",") + CsvCell(cell);
    }
    csv += "\r\n";
  }
  return csv;
}

}  // namespace kaunter
