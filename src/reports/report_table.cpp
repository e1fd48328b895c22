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
constexpr double kHeadHeight = 7;  // of headings of one line

TextAlign AlignOf(CellKind kind) {
  return kind == CellKind::text || kind == CellKind::date ? TextAlign::left : TextAlign::right;
}

}  // namespace

std::vector<double> ColumnRooms(const ReportFile& file, double width) {
  double weights = 0;
  for (const ReportColumn& column : file.columns) weights += column.weight;
  std::vector<double> rooms;
  for (const ReportColumn& column : file.columns) {
    rooms.push_back(width * column.weight / weights - 2 * ReportTable::kPad);
  }
  return rooms;
}

double HeadingShrink(const std::string& heading, double room) {
  const double needed = WidestWord(heading, kPoints, true);
  return needed > room ? std::max(kLeastPoints / kPoints, room / needed) : 1;
}

ReportTable::ReportTable(const ReportFile& file, const ReportTexts& texts, const Recordset& rows,
                         double x, double width)
    : file_(file), rows_(rows), x_(x), width_(width) {
  const std::vector<double> rooms = ColumnRooms(file, width);
  for (std::size_t i = 0; i < rooms.size(); ++i) {
    const ReportColumn& column = file.columns[i];
    Place place;
    place.x = x;
    place.width = rooms[i] + 2 * kPad;
    if (column.running.empty()) {
      place.field = texts.ColumnOf(column.field, column.line);
    } else {
      place.running = Running(column, texts);
    }
    x += place.width;
    places_.push_back(std::move(place));
  }
  SetHeadings();
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

// Before the sums of a summary stand the names of the groups, not the columns of the rows.
void ReportTable::SetHeadings() {
  const auto add = [this](const std::string& text, double x, double room, TextAlign align) {
    const double points = kPoints * HeadingShrink(text, room);
    headings_.push_back({x + kPad, room, points, align, WrapText(text, room, points, true)});
    if (headings_.back().lines.empty()) headings_.back().lines.emplace_back();
    const double more = static_cast<double>(headings_.back().lines.size()) - 1;
    head_height_ = std::max(head_height_, kHeadHeight + kNextLine * more);
  };
  head_height_ = kHeadHeight;
  std::size_t first = 0;
  if (file_.summary) {
    while (first < places_.size() && !ShownInTotal(first, true)) ++first;
    add(file_.summary_heading, x_, LabelWidth(true) - 2 * kPad, TextAlign::left);
  }
  for (std::size_t i = first; i < places_.size(); ++i) {
    if (file_.summary && !ShownInTotal(i, false)) continue;
    const ReportColumn& column = file_.columns[i];
    add(column.heading, places_[i].x, places_[i].width - 2 * kPad, AlignOf(column.kind));
  }
}

// The last lines of all headings stand on one line.
void ReportTable::Head(ReportPage& page, double y) const {
  page.areas.push_back({x_, y, width_, head_height_, Tone::accent});
  for (const Heading& heading : headings_) {
    double at = y + head_height_ - kHeadHeight;
    for (std::size_t i = heading.lines.size(); i-- > 0; at -= kNextLine) {
      page.texts.push_back({heading.x, at, heading.room, kHeadHeight, heading.lines[i],
                            heading.points, true, heading.align, Tone::shade});
    }
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
  const CellKind kind = file_.columns[column].kind;
  double points = kPoints;
  // Without its last digits a figure or a day would be another one: what is too long gets smaller.
  if (kind != CellKind::text) {
    const double needed = TextWidth(text, kPoints, bold);
    const double sure = width * (kind == CellKind::date ? 1 : kSureShare);
    if (needed > sure) points = std::max(kLeastPoints, kPoints * sure / needed);
  }
  page.texts.push_back({places_[column].x + kPad, y, width, kRowHeight, std::move(text), points,
                        bold, AlignOf(kind)});
}

double ReportTable::TotalHeight(const std::string& label, bool grand) const {
  const std::size_t lines = std::max<std::size_t>(LabelLines(label, grand).size(), 1);
  return kRowHeight + (grand ? 0.8 : 1.8) + kNextLine * static_cast<double>(lines - 1);
}

void ReportTable::Total(ReportPage& page, double y, const std::string& label, const Sums& sums,
                        bool grand) const {
  page.lines.push_back(
      {x_, y + 0.4, x_ + width_, y + 0.4, grand ? 0.5 : 0.25, grand ? Tone::accent : Tone::rule});
  y += 0.8;
  const double first = y;
  for (const std::string& line : LabelLines(label, grand)) {
    page.texts.push_back(
        {x_ + kPad, y, LabelWidth(grand) - 2 * kPad, kRowHeight, line, kPoints, true});
    y += kNextLine;
  }
  Figures(page, first, sums, grand, true);
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

std::vector<std::string> ReportTable::LabelLines(const std::string& label, bool grand) const {
  return WrapText(label, LabelWidth(grand) - 2 * kPad, kPoints, true);
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
