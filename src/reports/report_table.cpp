#include "reports/report_table.h"

#include <algorithm>

#include "reports/text_width.h"

namespace kaunter {
namespace {

constexpr double kPoints = 9;
constexpr double kNextLine = 4.2;  // from one line of a row to the next

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
                          column.heading, kPoints, true, AlignOf(column.kind), Tone::shade});
  }
}

std::vector<std::string> ReportTable::LinesOf(std::size_t column, const std::string& text,
                                              bool may_grow) const {
  if (!may_grow || file_.columns[column].kind != CellKind::text || text.empty()) return {text};
  return WrapText(text, places_[column].width - 2 * kPad, kPoints, false);
}

double ReportTable::Row(ReportPage& page, double y, std::size_t row, bool striped,
                        bool may_grow) const {
  std::size_t most = 1;
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const std::string text = ShowCell(rows_.rows()[row][places_[i].field], file_.columns[i].kind);
    const std::vector<std::string> lines = LinesOf(i, text, may_grow);
    for (std::size_t line = 0; line < lines.size(); ++line) {
      Cell(page, y + kNextLine * static_cast<double>(line), i, lines[line], false);
    }
    most = std::max(most, lines.size());
  }
  const double height = kRowHeight + kNextLine * static_cast<double>(most - 1);
  if (striped) page.areas.push_back({x_, y, width_, height, Tone::shade});
  return height;
}

void ReportTable::Cell(ReportPage& page, double y, std::size_t column, std::string text,
                       bool bold) const {
  page.texts.push_back({places_[column].x + kPad, y, places_[column].width - 2 * kPad, kRowHeight,
                        std::move(text), kPoints, bold, AlignOf(file_.columns[column].kind)});
}

void ReportTable::Total(ReportPage& page, double y, const std::string& label, const Sums& sums,
                        bool grand) const {
  page.lines.push_back(
      {x_, y + 0.4, x_ + width_, y + 0.4, grand ? 0.5 : 0.25, grand ? Tone::accent : Tone::rule});
  y += 0.8;
  // The label takes all columns before the first sum.
  double label_width = width_;
  for (std::size_t i = file_.columns.size(); i-- > 0;) {
    if (file_.columns[i].sum) label_width = places_[i].x - x_;
  }
  page.texts.push_back({x_ + kPad, y, label_width - 2 * kPad, kRowHeight, label, kPoints, true});
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (!file_.columns[i].sum) continue;
    Cell(page, y, i, ShowCell(Value(sums[i]), file_.columns[i].kind), true);
  }
}

}  // namespace kaunter
