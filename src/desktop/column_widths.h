// How wide the columns of a table are: what their texts need, and how the room is shared.
#pragma once

#include <QFontMetrics>
#include <QString>
#include <array>
#include <string>
#include <vector>

namespace kaunter {

// A text of a table up to so wide is never cut: keys, codes, names. What is longer is prose.
int WholeTextWidth(const QFontMetrics& metrics);

// The widest of many texts. A font takes its time over each: it is asked only for those whose
// letters, summed, are wider than all before.
class WidestText {
 public:
  explicit WidestText(const QFontMetrics& metrics);
  void Add(const std::string& text);  // UTF-8
  int width() const { return width_; }
  int longest() const { return longest_; }  // characters
  void Restart() { sum_ = width_ = longest_ = 0; }

 private:
  QFontMetrics metrics_;
  std::array<int, 128> ascii_{};
  int other_ = 0;
  int sum_ = 0;
  int width_ = 0;
  int longest_ = 0;
};

// What a column asks for. Without a weight it has its least width, whatever room there is.
struct ColumnNeed {
  int weight = 0;
  int least = 0;
  int liked = 0;  // taken as long as that pushes nothing out of sight
};

// The width of each column; more than the room where the least widths ask for more.
std::vector<int> SharedWidths(int room, std::vector<ColumnNeed> needs);

// A heading in two lines of about the same width; as it is where it has no blank.
QString InTwoLines(const QString& heading, const QFontMetrics& metrics);

}  // namespace kaunter
