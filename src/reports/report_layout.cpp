#include "reports/report_layout.h"

#include <fmt/format.h>

#include <functional>
#include <stdexcept>

#include "core/values.h"

namespace kaunter {
namespace {

constexpr double kMargin = 15;
constexpr double kRowHeight = 5.4;
constexpr double kHeadHeight = 7;
constexpr double kFootHeight = 8;
constexpr double kCellPad = 1.2;

Money ToMoney(const Value& value) {
  if (const Money* money = value.AsMoney()) return *money;
  if (const std::int64_t* integer = value.AsInteger()) return Money::FromInteger(*integer);
  if (const double* number = value.AsDouble()) return Money::FromDouble(*number);
  return {};
}

bool IsNumber(CellKind kind) { return kind != CellKind::text && kind != CellKind::date; }

class Layout {
 public:
  Layout(const ReportFile& file, const ReportHeading& heading, const Recordset& rows)
      : file_(file), heading_(heading), rows_(rows) {
    document_.title = Fill(file.title);
    document_.width_mm = file.width_mm;
    document_.height_mm = file.height_mm;
    FindColumns();
    FindGroups();
  }

  ReportDocument Run() {
    NewPage();
    Heading();
    TableHead();
    sums_.assign(groups_.size() + 1, std::vector<Money>(file_.columns.size()));
    for (std::size_t row = 0; row < rows_.RowCount(); ++row) {
      CloseGroups(row);
      TableRow(row);
    }
    CloseGroups(rows_.RowCount());
    if (!file_.total_label.empty()) TotalRow(Fill(file_.total_label), sums_[0], true);
    if (rows_.RowCount() == 0) Quiet("No rows for this selection.");
    if (!file_.note.empty()) Quiet(Fill(file_.note));
    Feet();
    return std::move(document_);
  }

 private:
  struct Place {
    std::size_t field = 0;
    double x = 0;
    double width = 0;
  };
  struct GroupPlace {
    const ReportGroup* group;
    std::size_t field;
    bool several = false;  // one value alone needs no subtotal: the total says it
  };

  std::size_t FieldOf(const std::string& name) const {
    const auto& columns = rows_.columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (SameText(columns[i].name, name)) return i;
    }
    throw std::runtime_error(
        fmt::format("Report file {}: the query gives no column \"{}\".", file_.path, name));
  }

  void FindColumns() {
    double weights = 0;
    for (const ReportColumn& column : file_.columns) weights += column.weight;
    const double width = file_.width_mm - 2 * kMargin;
    double x = kMargin;
    for (const ReportColumn& column : file_.columns) {
      const double share = width * column.weight / weights;
      places_.push_back({FieldOf(column.field), x, share});
      x += share;
    }
  }

  void FindGroups() {
    for (const ReportGroup& group : file_.groups) {
      GroupPlace place{&group, FieldOf(group.field)};
      for (std::size_t row = 1; row < rows_.RowCount(); ++row) {
        place.several = place.several || GroupValue(place, row) != GroupValue(place, 0);
      }
      groups_.push_back(place);
    }
  }

  std::string GroupValue(const GroupPlace& place, std::size_t row) const {
    const Value& value = rows_.rows()[row][place.field];
    const DateTime* date = value.AsDate();
    if (date != nullptr && place.group->by == ReportGroup::By::year)
      return std::to_string(date->year);
    if (date != nullptr && place.group->by == ReportGroup::By::month) {
      return fmt::format("{:02}-{}", date->month, date->year);
    }
    return date != nullptr ? ShowCell(value, CellKind::date) : NullToEmpty(value);
  }

  // {?Name} is a parameter; {count} the number of rows; {Field} a field of the first row.
  std::string Fill(const std::string& text) const {
    std::string filled;
    for (std::size_t i = 0; i < text.size();) {
      const auto open = text.find('{', i);
      const auto close = open == std::string::npos ? open : text.find('}', open);
      if (close == std::string::npos) return filled + text.substr(i);
      filled += text.substr(i, open - i) + Place_(text.substr(open + 1, close - open - 1));
      i = close + 1;
    }
    return filled;
  }

  std::string Place_(const std::string& name) const {
    if (!name.empty() && name[0] == '?') {
      const auto found = heading_.parameters.find(Lower(name.substr(1)));
      return found == heading_.parameters.end() ? std::string() : found->second;
    }
    if (name == "count") return std::to_string(rows_.RowCount());
    if (name == "group") return "{group}";
    if (rows_.RowCount() == 0) return {};
    const Value& value = rows_.rows()[0][FieldOf(name)];
    if (value.AsDate() != nullptr) return ShowDate(value);
    // A rate keeps the decimals past the second, an amount has none.
    const Money* amount = value.AsMoney();
    const bool whole_sen = amount != nullptr && Round2(*amount) == *amount;
    return whole_sen ? ShowMoney(value) : NullToEmpty(value);
  }

  ReportPage& page() { return document_.pages.back(); }

  void NewPage() {
    document_.pages.emplace_back();
    y_ = kMargin;
    striped_ = false;
  }

  void Text(double x, double width, std::string text, double points, bool bold = false,
            TextAlign align = TextAlign::left, Tone tone = Tone::ink, double height = kRowHeight) {
    page().texts.push_back({x, y_, width, height, std::move(text), points, bold, align, tone});
  }

  void Heading() {
    const double width = file_.width_mm - 2 * kMargin;
    if (!heading_.company.empty()) {
      Text(kMargin, width, heading_.company, 9, false, TextAlign::left, Tone::quiet);
      y_ += kRowHeight;
    }
    Text(kMargin, width, document_.title, 16, true, TextAlign::left, Tone::accent, 9);
    y_ += 10;
    if (!heading_.subtitle.empty()) {
      Text(kMargin, width, heading_.subtitle, 9, false, TextAlign::left, Tone::quiet);
      y_ += kRowHeight + 1;
    }
    // Fields stand in two columns, read across.
    const double half = width / 2;
    for (std::size_t i = 0; i < file_.fields.size(); ++i) {
      const double x = kMargin + (i % 2 == 0 ? 0 : half);
      Text(x, 34, Fill(file_.fields[i].label), 9, false, TextAlign::left, Tone::quiet);
      Text(x + 34, half - 36, Fill(file_.fields[i].text), 9, true);
      if (i % 2 == 1 || i + 1 == file_.fields.size()) y_ += kRowHeight + 0.4;
    }
    y_ += 4;
  }

  void TableHead() {
    page().areas.push_back({kMargin, y_, file_.width_mm - 2 * kMargin, kHeadHeight, Tone::accent});
    for (std::size_t i = 0; i < places_.size(); ++i) {
      const TextAlign align = IsNumber(file_.columns[i].kind) ? TextAlign::right : TextAlign::left;
      page().texts.push_back({places_[i].x + kCellPad, y_, places_[i].width - 2 * kCellPad,
                              kHeadHeight, file_.columns[i].heading, 9, true, align, Tone::shade});
    }
    y_ += kHeadHeight;
  }

  void Room(double height) {
    if (y_ + height <= file_.height_mm - kMargin - kFootHeight) return;
    NewPage();
    TableHead();
  }

  void TableRow(std::size_t row) {
    Room(kRowHeight);
    if (striped_) {
      page().areas.push_back({kMargin, y_, file_.width_mm - 2 * kMargin, kRowHeight, Tone::shade});
    }
    striped_ = !striped_;
    for (std::size_t i = 0; i < places_.size(); ++i) {
      const ReportColumn& column = file_.columns[i];
      const Value& value = rows_.rows()[row][places_[i].field];
      Cell(i, ShowCell(value, column.kind), false);
      if (!column.sum) continue;
      for (auto& level : sums_) level[i] += ToMoney(value);
    }
    y_ += kRowHeight;
  }

  void Cell(std::size_t column, std::string text, bool bold) {
    const TextAlign align =
        IsNumber(file_.columns[column].kind) ? TextAlign::right : TextAlign::left;
    Text(places_[column].x + kCellPad, places_[column].width - 2 * kCellPad, std::move(text), 9,
         bold, align);
  }

  // Prints the subtotals of the groups that end before this row, innermost first.
  void CloseGroups(std::size_t row) {
    if (row == 0) return;
    std::size_t first = groups_.size();
    for (std::size_t g = 0; g < groups_.size(); ++g) {
      if (row == rows_.RowCount() ||
          GroupValue(groups_[g], row) != GroupValue(groups_[g], row - 1)) {
        first = g;
        break;
      }
    }
    for (std::size_t g = groups_.size(); g-- > first;) {
      if (groups_[g].several) {
        std::string label = groups_[g].group->label;
        const auto place = label.find("{group}");
        if (place != std::string::npos) label.replace(place, 7, GroupValue(groups_[g], row - 1));
        TotalRow(label, sums_[g + 1], false);
      }
      sums_[g + 1].assign(file_.columns.size(), Money());
    }
  }

  void TotalRow(const std::string& label, const std::vector<Money>& sums, bool grand) {
    Room(kRowHeight + 2);
    const double right = file_.width_mm - kMargin;
    page().lines.push_back({kMargin, y_ + 0.4, right, y_ + 0.4, grand ? 0.5 : 0.25,
                            grand ? Tone::accent : Tone::rule});
    y_ += 0.8;
    // The label takes all columns before the first sum.
    double label_width = right - kMargin;
    for (std::size_t i = file_.columns.size(); i-- > 0;) {
      if (file_.columns[i].sum) label_width = places_[i].x - kMargin;
    }
    Text(kMargin + kCellPad, label_width - 2 * kCellPad, label, 9, true);
    for (std::size_t i = 0; i < places_.size(); ++i) {
      if (file_.columns[i].sum) Cell(i, ShowCell(sums[i], file_.columns[i].kind), true);
    }
    y_ += kRowHeight + (grand ? 0 : 1);
    striped_ = false;
  }

  void Quiet(const std::string& text) {
    Room(kRowHeight * 2);
    y_ += kRowHeight / 2;
    Text(kMargin, file_.width_mm - 2 * kMargin, text, 8.5, false, TextAlign::left, Tone::quiet);
    y_ += kRowHeight;
  }

  void Feet() {
    const double width = file_.width_mm - 2 * kMargin;
    const double y = file_.height_mm - kMargin;
    for (std::size_t i = 0; i < document_.pages.size(); ++i) {
      ReportPage& at = document_.pages[i];
      at.lines.push_back({kMargin, y - 1, file_.width_mm - kMargin, y - 1, 0.2, Tone::rule});
      at.texts.push_back({kMargin, y, width / 2, kRowHeight, heading_.printed_at, 8, false,
                          TextAlign::left, Tone::quiet});
      at.texts.push_back({kMargin + width / 2, y, width / 2, kRowHeight,
                          fmt::format("Page {} of {}", i + 1, document_.pages.size()), 8, false,
                          TextAlign::right, Tone::quiet});
    }
  }

  const ReportFile& file_;
  const ReportHeading& heading_;
  const Recordset& rows_;
  ReportDocument document_;
  std::vector<Place> places_;
  std::vector<GroupPlace> groups_;
  std::vector<std::vector<Money>> sums_;  // [0] the whole report, then one a group
  double y_ = 0;
  bool striped_ = false;
};

}  // namespace

std::string ShowCell(const Value& value, CellKind kind) {
  if (value.IsNull()) return {};
  switch (kind) {
    case CellKind::integer:
      return ShowInt(value);
    case CellKind::money:
      return ShowMoney(value);
    case CellKind::rate:
      return Show4dp(value);
    case CellKind::date:
      return ShowDate(value);
    case CellKind::text:
      return NullToEmpty(value);
  }
  return {};
}

ReportDocument LayOut(const ReportFile& file, const ReportHeading& heading, const Recordset& rows) {
  return Layout(file, heading, rows).Run();
}

}  // namespace kaunter
