// How wide the columns of a table are: what their texts need, and how the room is shared.
#pragma once

#include <QFontMetrics>
#include <QString>
#include <vector>

namespace kaunter {

// A text of a table up to so wide is never cut: keys, codes, names. What is longer is prose.
int WholeTextWidth(const QFontMetrics& metrics);

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
