#include "desktop/column_widths.h"

#include <QStringList>
#include <algorithm>
#include <numeric>

namespace kaunter {
namespace {

constexpr int kWholeCharacters = 40;

int WidestLine(const QString& text, const QFontMetrics& metrics) {
  int width = 0;
  for (const QString& line : text.split('\n')) {
    width = std::max(width, metrics.horizontalAdvance(line));
  }
  return width;
}

}  // namespace

WidestText::WidestText(const QFontMetrics& metrics) : metrics_(metrics) {
  for (std::size_t c = ' '; c < ascii_.size(); ++c) {
    ascii_[c] = metrics.horizontalAdvance(QChar(static_cast<char16_t>(c)));
  }
  other_ = metrics.horizontalAdvance(QChar(u'\u9f98'));
}

void WidestText::Add(const std::string& text) {
  int sum = 0;
  int characters = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0U) == 0x80U) continue;  // within a character
    ++characters;
    sum += byte < ascii_.size() ? ascii_[byte] : other_;
  }
  longest_ = std::max(longest_, characters);
  if (sum <= sum_) return;
  sum_ = sum;
  width_ = std::max(width_, metrics_.horizontalAdvance(QString::fromStdString(text).simplified()));
}

int WholeTextWidth(const QFontMetrics& metrics) {
  return kWholeCharacters * metrics.averageCharWidth();
}

std::vector<int> SharedWidths(int room, std::vector<ColumnNeed> needs) {
  const int wish = std::accumulate(needs.begin(), needs.end(), 0,
                                   [](int sum, const ColumnNeed& n) { return sum + n.liked; });
  int weights = 0;
  for (ColumnNeed& need : needs) {
    if (wish <= room) need.least = need.liked;
    weights += need.weight;
    if (need.weight == 0) room -= need.least;
  }
  // Columns whose share is too small for their contents take what they need, the rest is shared
  // by those that are left, until all fit.
  for (bool again = true; again && weights > 0;) {
    again = false;
    for (ColumnNeed& need : needs) {
      if (need.weight == 0 || room * need.weight / weights >= need.least) continue;
      room -= need.least;
      weights -= need.weight;
      need.weight = 0;
      again = true;
    }
  }
  std::vector<int> widths;
  for (const ColumnNeed& need : needs) {
    widths.push_back(need.weight > 0 ? room * need.weight / weights : need.least);
  }
  return widths;
}

QString InTwoLines(const QString& heading, const QFontMetrics& metrics) {
  QString best = heading;
  for (qsizetype at = heading.indexOf(' '); at >= 0; at = heading.indexOf(' ', at + 1)) {
    QString broken = heading;
    broken[at] = '\n';
    if (WidestLine(broken, metrics) < WidestLine(best, metrics)) best = broken;
  }
  return best;
}

}  // namespace kaunter
