#include "reports/report_rows.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>

#include "core/values.h"
#include "reports/report_groups.h"
#include "reports/report_table.h"

namespace kaunter {
namespace {

CellKind KindOf(const Column& column) {
  switch (column.type) {
    case FieldType::kMoney:
      return CellKind::money;
    case FieldType::kDate:
      return CellKind::date;
    case FieldType::kInteger:
      return CellKind::integer;
    default:
      return CellKind::text;
  }
}

// All that the query gives, for a letter without a table.
ReportFile WithColumns(const ReportRun& run) {
  ReportFile file = run.file;
  if (!file.columns.empty()) return file;
  for (const Column& column : run.rows.columns()) {
    ReportColumn shown;
    shown.heading = shown.field = column.name;
    shown.kind = KindOf(column);
    file.columns.push_back(shown);
  }
  return file;
}

// What the groups of most lists go by has no caption of its own in their files.
std::string Caption(const std::string& field, bool chinese) {
  static constexpr struct {
    std::string_view field, english, chinese;
  } kCaptions[] = {{"CompCode", "Company", "公司"},        {"CompDesc", "Company name", "公司名称"},
                   {"LoanID", "Loan", "贷款编号"},         {"Loan", "Loan", "贷款编号"},
                   {"CustID", "Customer no.", "顾客编号"}, {"CustName", "Customer", "顾客"}};
  for (const auto& caption : kCaptions) {
    if (SameText(caption.field, field)) {
      return std::string(chinese ? caption.chinese : caption.english);
    }
  }
  return field;
}

class RowsMaker {
 public:
  explicit RowsMaker(const ReportRun& run)
      : rows_(run.rows),
        file_(WithColumns(run)),
        texts_(file_.path, run.heading, rows_),
        table_(file_, texts_, rows_, 0, file_.width_mm),
        groups_(file_, texts_, rows_) {
    given_.title = texts_.Fill(file_.title, {0, rows_.RowCount()}, file_.title_line);
  }

  ReportRows Run() {
    if (file_.IsLetter()) AddKey(file_.letter.key, GroupBy::value, {});
    for (const ReportGroup& group : file_.groups) {
      AddKey(group.field, group.by, group.line);
      AddPlaces(group.heading, group.line);
      AddPlaces(group.label, group.line);
    }
    for (const Key& key : keys_) given_.columns.push_back({key.heading, key.kind});
    const bool counts =
        file_.summary && file_.groups.back().label.find("{count}") != std::string::npos;
    if (counts) given_.columns.push_back({file_.chinese ? "笔数" : "Count", CellKind::integer});
    for (std::size_t i = 0; i < file_.columns.size(); ++i) {
      const ReportColumn& column = file_.columns[i];
      const bool shown = file_.summary ? column.sum || column.last : !IsKey(column);
      if (!shown) continue;
      given_.columns.push_back({column.heading, column.kind});
      columns_.push_back(i);
    }
    for (std::size_t row = 0; row < rows_.RowCount();) {
      row = file_.summary ? AddGroup(row, counts) : AddRow(row);
    }
    DropBlankDates();
    return std::move(given_);
  }

 private:
  struct Key {
    std::string field;
    std::size_t place = 0;  // among the rows' columns
    GroupBy by = GroupBy::value;
    std::string heading;
    CellKind kind = CellKind::text;
  };

  // A column of the table whose place is among the keys already.
  bool IsKey(const ReportColumn& column) const {
    return column.running.empty() && !column.sum &&
           std::any_of(keys_.begin(), keys_.end(), [&](const Key& key) {
             return key.by == GroupBy::value && SameText(key.field, column.field);
           });
  }

  void AddKey(const std::string& field, GroupBy by, const FileLine& line) {
    for (const Key& key : keys_) {
      if (key.by == by && SameText(key.field, field)) return;
    }
    Key key{field, texts_.ColumnOf(field, line), by, Caption(field, file_.chinese), CellKind::text};
    key.kind = KindOf(rows_.columns()[key.place]);
    if (by == GroupBy::month) key.heading += file_.chinese ? "（月）" : " (month)";
    if (by == GroupBy::year) key.heading += file_.chinese ? "（年）" : " (year)";
    if (by != GroupBy::value) key.kind = CellKind::text;
    for (const ReportColumn& column : file_.columns) {
      const bool same = by == GroupBy::value && SameText(column.field, field);
      if (!same || column.running.size() > 0) continue;
      key.kind = column.kind;
      if (!column.heading.empty()) key.heading = column.heading;
    }
    keys_.push_back(std::move(key));
  }

  void AddPlaces(std::string_view text, const FileLine& line) {
    for (auto open = text.find('{'); open != text.npos; open = text.find('{', open + 1)) {
      const auto close = text.find('}', open);
      if (close == text.npos) return;
      const std::string place = Trim(text.substr(open + 1, close - open - 1));
      if (place.empty() || place[0] == '?' || place.find(':') != std::string::npos) continue;
      static constexpr std::string_view kOthers[] = {"count", "group", "copy", "today", "printed"};
      if (std::find(std::begin(kOthers), std::end(kOthers), place) != std::end(kOthers)) continue;
      AddKey(place, GroupBy::value, line);
    }
  }

  std::vector<Value> KeysOf(std::size_t row) const {
    std::vector<Value> values;
    for (const Key& key : keys_) {
      const Value& value = rows_.rows()[row][key.place];
      values.push_back(key.by == GroupBy::value ? value : Value(GroupValue(value, key.by)));
    }
    return values;
  }

  // A day that the paper shows as none, such as the first of 1900, is none here either.
  void DropBlankDates() {
    for (std::vector<Value>& row : given_.rows) {
      for (Value& value : row) {
        if (value.AsDate() != nullptr && ShowDate(value).empty()) value = {};
      }
    }
  }

  std::size_t AddRow(std::size_t row) {
    std::vector<Value> values = KeysOf(row);
    for (const std::size_t column : columns_) values.push_back(table_.CellValue(column, row));
    given_.rows.push_back(std::move(values));
    return row + 1;
  }

  // Gives the first row of the next group.
  std::size_t AddGroup(std::size_t first, bool counts) {
    ReportTable::Sums sums = table_.NoSums();
    std::size_t row = first;
    do {
      table_.AddTo(sums, row++);
    } while (row < rows_.RowCount() && groups_.FirstChanged(row) >= groups_.size());
    std::vector<Value> values = KeysOf(first);
    if (counts) values.emplace_back(static_cast<std::int64_t>(row - first));
    for (const std::size_t column : columns_) values.emplace_back(sums[column]);
    given_.rows.push_back(std::move(values));
    return row;
  }

  const Recordset& rows_;
  ReportFile file_;
  ReportTexts texts_;
  ReportTable table_;
  ReportGroups groups_;
  std::vector<Key> keys_;
  std::vector<std::size_t> columns_;  // of the table
  ReportRows given_;
};

}  // namespace

ReportRows RowsOf(const ReportRun& run) { return RowsMaker(run).Run(); }

}  // namespace kaunter
