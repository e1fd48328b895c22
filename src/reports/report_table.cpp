#include "reports/report_table.h"

#include <algorithm>

#include "core/values.h"
#include "reports/text_width.h"

namespace kaunter {
namespace {

constexpr double kPoints = 9;
constexpr double kLeastPoints = 5;
// The printer's font may be a little wider than the table of widths says.
constexpr double kSureShare = 0.95;
constexpr std::size_t kMostLines = 20;
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
    Place place;
    place.x = x;
    place.width = width * column.weight / weights;
    if (column.running.empty()) {
      place.field = texts.ColumnOf(column.field, column.line);
    } else {
      place.running = Running(column, texts);
    }
    x += place.width;
    places_.push_back(std::move(place));
  }
}

// A letter's running figure begins anew with each letter.
std::vector<Money> ReportTable::Running(const ReportColumn& column,
                                        const ReportTexts& texts) const {
  std::vector<std::pair<std::size_t, bool>> terms;
  for (const RunningTerm& term : column.running) {
    terms.emplace_back(texts.ColumnOf(term.field, column.line), term.minus);
  }
  const std::string& key = column.restart.empty() ? file_.letter.key : column.restart;
  const std::size_t restart = key.empty() ? 0 : texts.ColumnOf(key, column.line);
  std::vector<Money> running;
  Money figure;
  for (std::size_t row = 0; row < rows_.RowCount(); ++row) {
    const auto& values = rows_.rows()[row];
    const bool anew =
        !key.empty() && row > 0 &&
        !SameText(NullToEmpty(values[restart]), NullToEmpty(rows_.rows()[row - 1][restart]));
    if (anew) figure = {};
    if (column.before) running.push_back(figure);
    for (const auto& [field, minus] : terms) {
      figure += minus ? -MoneyOf(values[field]) : MoneyOf(values[field]);
    }
    if (!column.before) running.push_back(figure);
  }
  return running;
}

Value ReportTable::CellValue(std::size_t column, std::size_t row) const {
  const Place& place = places_[column];
  return place.running.empty() ? rows_.rows()[row][place.field] : Value(place.running[row]);
}

std::string ReportTable::CellText(std::size_t column, std::size_t row) const {
  const ReportColumn& shown = file_.columns[column];
  const Value value = CellValue(column, row);
  const bool nothing = shown.blank_zero && value.AsText() == nullptr && value.AsDate() == nullptr &&
                       MoneyOf(value).IsZero();
  return nothing ? std::string() : ShowCell(value, shown.kind);
}

bool ReportTable::IsEmptyRow(std::size_t row) const {
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (places_[i].running.empty() && !CellText(i, row).empty()) return false;
  }
  return true;
}

void ReportTable::AddTo(Sums& sums, std::size_t row) const {
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (file_.columns[i].sum) {
      sums[i] += MoneyOf(rows_.rows()[row][places_[i].field]);
    } else if (file_.columns[i].last) {
      sums[i] = MoneyOf(CellValue(i, row));
    }
  }
}

void ReportTable::Head(ReportPage& page, double y) const {
  page.areas.push_back({x_, y, width_, kHeadHeight, Tone::accent});
  std::size_t first = 0;
  if (file_.summary) {
    // Before the sums stand the names of the groups, not the columns of the rows.
    while (first < places_.size() && !ShownInTotal(first, true)) ++first;
    page.texts.push_back({x_ + kPad, y, LabelWidth(true) - 2 * kPad, kHeadHeight,
                          file_.summary_heading, kPoints, true, TextAlign::left, Tone::shade});
  }
  for (std::size_t i = first; i < places_.size(); ++i) {
    const ReportColumn& column = file_.columns[i];
    if (file_.summary && !ShownInTotal(i, false)) continue;
    page.texts.push_back({places_[i].x + kPad, y, places_[i].width - 2 * kPad, kHeadHeight,
                          column.heading, kPoints, true, AlignOf(column.kind), Tone::shade});
  }
}

std::vector<std::string> ReportTable::LinesOf(std::size_t column, const std::string& text,
                                              bool may_grow) const {
  const ReportColumn& shown = file_.columns[column];
  if (!(may_grow || shown.wrap) || shown.kind != CellKind::text || text.empty()) return {text};
  std::vector<std::string> lines = WrapText(text, places_[column].width - 2 * kPad, kPoints, false);
  // A row stays within its page.
  if (lines.size() > kMostLines) {
    lines.resize(kMostLines);
    lines.back() += " ...";
  }
  return lines;
}

double ReportTable::RowHeight(std::size_t row, bool may_grow) const {
  std::size_t most = 1;
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (!may_grow && !file_.columns[i].wrap) continue;
    most = std::max(most, LinesOf(i, CellText(i, row), may_grow).size());
  }
  return kRowHeight + kNextLine * static_cast<double>(most - 1);
}

double ReportTable::Row(ReportPage& page, double y, std::size_t row, bool striped,
                        bool may_grow) const {
  std::size_t most = 1;
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const std::string text = CellText(i, row);
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
  const double width = places_[column].width - 2 * kPad;
  const TextAlign align = AlignOf(file_.columns[column].kind);
  double points = kPoints;
  // A figure without its last digits would be another figure: one that is too long gets smaller.
  if (align == TextAlign::right) {
    const double needed = TextWidth(text, kPoints, bold);
    const double sure = width * kSureShare;
    if (needed > sure) points = std::max(kLeastPoints, kPoints * sure / needed);
  }
  page.texts.push_back(
      {places_[column].x + kPad, y, width, kRowHeight, std::move(text), points, bold, align});
}

void ReportTable::Total(ReportPage& page, double y, const std::string& label, const Sums& sums,
                        bool grand) const {
  page.lines.push_back(
      {x_, y + 0.4, x_ + width_, y + 0.4, grand ? 0.5 : 0.25, grand ? Tone::accent : Tone::rule});
  y += 0.8;
  page.texts.push_back(
      {x_ + kPad, y, LabelWidth(grand) - 2 * kPad, kRowHeight, label, kPoints, true});
  Figures(page, y, sums, grand, true);
}

void ReportTable::SummaryRow(ReportPage& page, double y, const std::string& label, const Sums& sums,
                             bool striped) const {
  if (striped) page.areas.push_back({x_, y, width_, kRowHeight, Tone::shade});
  page.texts.push_back({x_ + kPad, y, LabelWidth(false) - 2 * kPad, kRowHeight, label, kPoints});
  Figures(page, y, sums, false, false);
}

// Where a figure that begins anew ends says nothing about the whole report.
bool ReportTable::ShownInTotal(std::size_t column, bool grand) const {
  const ReportColumn& shown = file_.columns[column];
  return shown.sum || (shown.last && !(grand && !shown.restart.empty()));
}

// The label takes all columns before the first figure.
double ReportTable::LabelWidth(bool grand) const {
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (ShownInTotal(i, grand)) return i > 0 ? places_[i].x - x_ : places_[0].width;
  }
  return width_;
}

void ReportTable::Figures(ReportPage& page, double y, const Sums& sums, bool grand,
                          bool bold) const {
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (!ShownInTotal(i, grand)) continue;
    // Of all rows together a 0 is worth telling, under each group it is noise.
    if (!grand && file_.columns[i].blank_zero && sums[i].IsZero()) continue;
    Cell(page, y, i, ShowCell(Value(sums[i]), file_.columns[i].kind), bold);
  }
}

}  // namespace kaunter
