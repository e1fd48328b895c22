#include "reports/report_layout.h"

#include <fmt/format.h>

#include "core/values.h"
#include "reports/letter_layout.h"
#include "reports/report_table.h"

namespace kaunter {
namespace {

constexpr double kMargin = 15;
constexpr double kRowHeight = ReportTable::kRowHeight;
constexpr double kFootHeight = 8;

class Layout {
 public:
  Layout(const ReportFile& file, const ReportHeading& heading, const Recordset& rows)
      : file_(file),
        heading_(heading),
        rows_(rows),
        texts_(file.path, heading, rows),
        table_(file, texts_, rows, kMargin, file.width_mm - 2 * kMargin) {
    document_.title = Fill(file.title);
    document_.width_mm = file.width_mm;
    document_.height_mm = file.height_mm;
    FindGroups();
  }

  ReportDocument Run() {
    NewPage();
    Heading();
    TableHead();
    sums_.assign(groups_.size() + 1, table_.NoSums());
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
  struct GroupPlace {
    const ReportGroup* group;
    std::size_t field;
    bool several = false;  // one value alone needs no subtotal: the total says it
  };

  void FindGroups() {
    for (const ReportGroup& group : file_.groups) {
      GroupPlace place{&group, texts_.ColumnOf(group.field)};
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

  std::string Fill(const std::string& text) const {
    return texts_.Fill(text, {0, rows_.RowCount()});
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
    table_.Head(page(), y_);
    y_ += ReportTable::kHeadHeight;
  }

  void Room(double height) {
    if (y_ + height <= file_.height_mm - kMargin - kFootHeight) return;
    NewPage();
    TableHead();
  }

  void TableRow(std::size_t row) {
    Room(kRowHeight);
    table_.Row(page(), y_, row, striped_, false);
    striped_ = !striped_;
    for (auto& level : sums_) table_.AddTo(level, row);
    y_ += kRowHeight;
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
      sums_[g + 1] = table_.NoSums();
    }
  }

  void TotalRow(const std::string& label, const ReportTable::Sums& sums, bool grand) {
    Room(kRowHeight + 2);
    table_.Total(page(), y_, label, sums, grand);
    y_ += ReportTable::TotalHeight(grand);
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
  ReportTexts texts_;
  ReportTable table_;
  ReportDocument document_;
  std::vector<GroupPlace> groups_;
  std::vector<ReportTable::Sums> sums_;  // [0] the whole report, then one a group
  double y_ = 0;
  bool striped_ = false;
};

}  // namespace

ReportDocument LayOut(const ReportFile& file, const ReportHeading& heading, const Recordset& rows) {
  return file.IsLetter() ? LayOutLetter(file, heading, rows) : Layout(file, heading, rows).Run();
}

}  // namespace kaunter
