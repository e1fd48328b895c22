#include "reports/report_chart.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "core/values.h"
#include "reports/report_groups.h"

namespace kaunter {
namespace {

constexpr std::size_t kMostBars = 12;
constexpr double kTitleHeight = 7;
constexpr double kBarHeight = 4.8;
constexpr double kFigureWidth = 28;
constexpr double kPoints = 8;

// Sorts as the calendar does; other values keep the order in which they come.
int CalendarPlace(const Value& value, GroupBy by) {
  const DateTime* date = value.AsDate();
  if (date == nullptr || by == GroupBy::value) return 0;
  return date->year * 12 + (by == GroupBy::month ? date->month : 0);
}

struct OpenBar {
  ChartBar bar;
  int place = 0;
};

Money Size(Money value) { return value < Money() ? -value : value; }

// The largest bars, in the order in which they came, and the sum of the others.
std::vector<ChartBar> Largest(const std::vector<ChartBar>& bars, const PaperWords& words) {
  std::vector<std::size_t> by_size(bars.size());
  for (std::size_t i = 0; i < bars.size(); ++i) by_size[i] = i;
  std::stable_sort(by_size.begin(), by_size.end(), [&](std::size_t a, std::size_t b) {
    return Size(bars[a].value) > Size(bars[b].value);
  });
  std::vector<std::size_t> kept(by_size.begin(), by_size.begin() + kMostBars - 1);
  std::sort(kept.begin(), kept.end());
  std::vector<ChartBar> few;
  Money all;
  Money shown;
  for (const ChartBar& bar : bars) all += bar.value;
  for (const std::size_t i : kept) {
    few.push_back(bars[i]);
    shown += bars[i].value;
  }
  few.push_back({words.Others(), all - shown});
  return few;
}

std::string HeadingOf(const ReportFile& file, const std::string& field) {
  for (const ReportColumn& column : file.columns) {
    if (SameText(column.field, field)) return column.heading;
  }
  return field;
}

std::vector<ChartBar> ColumnBars(const ReportChart& chart, const ReportFile& file,
                                 const ReportTexts& texts, const Recordset& rows) {
  std::vector<ChartBar> bars;
  for (const std::string& field : chart.columns) {
    ChartBar& bar = bars.emplace_back(ChartBar{HeadingOf(file, field), {}});
    const std::size_t value = texts.ColumnOf(field, chart.line);
    for (const auto& row : rows.rows()) bar.value += MoneyOf(row[value]);
  }
  return bars;
}

}  // namespace

std::vector<ChartBar> ChartBars(const ReportChart& chart, const ReportFile& file,
                                const ReportTexts& texts, const Recordset& rows) {
  if (!chart.columns.empty()) return ColumnBars(chart, file, texts, rows);
  const std::size_t label = texts.ColumnOf(chart.label, chart.line);
  const std::size_t value = texts.ColumnOf(chart.value, chart.line);
  std::vector<OpenBar> bars;
  std::map<std::string, std::size_t> known;
  for (const auto& row : rows.rows()) {
    const std::string name = GroupValue(row[label], chart.by);
    const auto [found, added] = known.try_emplace(Lower(name), bars.size());
    // What nobody filled in bears a dash, as its subtotal does.
    if (added)
      bars.push_back({{Trim(name).empty() ? "-" : name, {}}, CalendarPlace(row[label], chart.by)});
    bars[found->second].bar.value += MoneyOf(row[value]);
  }
  std::stable_sort(bars.begin(), bars.end(),
                   [](const OpenBar& a, const OpenBar& b) { return a.place < b.place; });
  // Of months and years the latest are the ones that matter.
  if (chart.by != GroupBy::value && bars.size() > kMostBars) {
    bars.erase(bars.begin(), bars.end() - static_cast<std::ptrdiff_t>(kMostBars));
  }
  std::vector<ChartBar> drawn;
  for (OpenBar& bar : bars) drawn.push_back(std::move(bar.bar));
  return drawn.size() > kMostBars ? Largest(drawn, file.words()) : drawn;
}

double ChartHeight(std::size_t bars) {
  return kTitleHeight + kBarHeight * static_cast<double>(bars) + 4;
}

void DrawChart(ReportPage& page, double x, double y, double width, const std::string& title,
               const std::vector<ChartBar>& bars) {
  page.texts.push_back({x, y, width, kTitleHeight - 1, title, 9, true});
  Money most;
  Money least;
  for (const ChartBar& bar : bars) {
    most = std::max(most, bar.value);
    least = std::min(least, bar.value);
  }
  const double label_width = width * 0.24;
  const double room = width - label_width - kFigureWidth - 4;
  const double all = (most - least).ToDouble();
  const double scale = all > 0 ? room / all : 0;
  // What is below 0 goes to the left of the axis.
  const double axis = x + label_width + 2 - least.ToDouble() * scale;
  y += kTitleHeight;
  const double top = y;
  for (const ChartBar& bar : bars) {
    page.texts.push_back(
        {x, y, label_width, kBarHeight, bar.label, kPoints, false, TextAlign::left, Tone::quiet});
    const double length = bar.value.ToDouble() * scale;
    const double right = axis + std::max(length, 0.0);
    if (length != 0) {
      page.areas.push_back({axis + std::min(length, 0.0), y + 0.7, std::abs(length),
                            kBarHeight - 1.4, length < 0 ? Tone::rule : Tone::accent});
    }
    page.texts.push_back(
        {right + 1, y, kFigureWidth, kBarHeight, ShowMoney(Value(bar.value)), kPoints});
    y += kBarHeight;
  }
  page.lines.push_back({axis, top, axis, y, 0.3, Tone::rule});
}

}  // namespace kaunter
