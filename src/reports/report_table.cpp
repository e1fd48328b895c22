#include "reports/report_table.h"

namespace kaunter {
namespace {

TextAlign AlignOf(CellKind kind) {
  return kind == CellKind::text || kind == CellKind::date ? TextAlign::left : TextAlign::right;
}

}  // namespace

ReportTable::ReportTable(const ReportFile& file, const ReportTexts& texts, const Recordset& rows,
                         double x, double width)
    : file_(file), rows_(rows), x_(x), width_(width) {
  double weights = 0;
  for (const ReportColumn& column : file.columns) weights += column.weight;
  for (const ReportColumn& column : file.columns) {
    const double share = width * column.weight / weights;
    places_.push_back({texts.ColumnOf(column.field), x, share});
    x += share;
  }
}

void ReportTable::AddTo(Sums& sums, std::size_t row) const {
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (file_.columns[i].sum) sums[i] += MoneyOf(rows_.rows()[row][places_[i].field]);
  }
}

void ReportTable::Head(ReportPage& page, double y) const {
  page.areas.push_back({x_, y, width_, kHeadHeight, Tone::accent});
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const ReportColumn& column = file_.columns[i];
    page.texts.push_back({places_[i].x + kPad, y, places_[i].width - 2 * kPad, kHeadHeight,
                          column.heading, 9, true, AlignOf(column.kind), Tone::shade});
  }
}

void ReportTable::Row(ReportPage& page, double y, std::size_t row, bool striped) const {
  if (striped) page.areas.push_back({x_, y, width_, kRowHeight, Tone::shade});
  for (std::size_t i = 0; i < places_.size(); ++i) {
    Cell(page, y, i, ShowCell(rows_.rows()[row][places_[i].field], file_.columns[i].kind), false);
  }
}

void ReportTable::Cell(ReportPage& page, double y, std::size_t column, std::string text,
                       bool bold) const {
  page.texts.push_back({places_[column].x + kPad, y, places_[column].width - 2 * kPad, kRowHeight,
                        std::move(text), 9, bold, AlignOf(file_.columns[column].kind)});
}

void ReportTable::Total(ReportPage& page, double y, const std::string& label, const Sums& sums,
                        bool grand) const {
  page.lines.push_back({x_, y + 0.4, x_ + width_, y + 0.4, grand ? 0.5 : 0.25,
                        grand ? Tone::accent : Tone::rule});
  y += 0.8;
  // The label takes all columns before the first sum.
  double label_width = width_;
  for (std::size_t i = file_.columns.size(); i-- > 0;) {
    if (file_.columns[i].sum) label_width = places_[i].x - x_;
  }
  page.texts.push_back({x_ + kPad, y, label_width - 2 * kPad, kRowHeight, label, 9, true});
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (!file_.columns[i].sum) continue;
    Cell(page, y, i, ShowCell(Value(sums[i]), file_.columns[i].kind), true);
  }
}

}  // namespace kaunter
