#include "reports/letter_parts.h"

#include <algorithm>

namespace kaunter {
namespace {

// Where the marks part that cannot be cut themselves.
double WholeMarks(const ReportPage& marks, double room) {
  double cut = room;
  for (const PageText& text : marks.texts) {
    if (text.y + text.height > room) cut = std::min(cut, text.y);
  }
  for (const PagePicture& picture : marks.pictures) {
    if (picture.y + picture.height > room) cut = std::min(cut, picture.y);
  }
  for (const PageCode& code : marks.codes) {
    if (code.y + code.side > room) cut = std::min(cut, code.y);
  }
  return cut;
}

// A frame or its ground goes on across the edge of the page.
void PartArea(const PageArea& area, double cut, ReportPage& above, ReportPage& below) {
  if (area.y < cut) {
    above.areas.push_back(area);
    above.areas.back().height = std::min(area.height, cut - area.y);
  }
  if (area.y + area.height > cut) {
    below.areas.push_back(area);
    below.areas.back().y = std::max(area.y - cut, 0.0);
    below.areas.back().height = area.y + area.height - std::max(area.y, cut);
  }
}

void PartLine(const PageLine& line, double cut, ReportPage& above, ReportPage& below) {
  if (line.y1 < cut) {
    above.lines.push_back(line);
    above.lines.back().y2 = std::min(line.y2, cut);
  }
  if (line.y2 >= cut) {
    below.lines.push_back(line);
    below.lines.back().y1 = std::max(line.y1 - cut, 0.0);
    below.lines.back().y2 = line.y2 - cut;
  }
}

}  // namespace

std::pair<LetterBlock, LetterBlock> PartBlock(const LetterBlock& block, double room) {
  const double cut = WholeMarks(block.marks, room);
  LetterBlock above;
  LetterBlock below;
  above.line = below.line = block.line;
  above.height = std::max(cut, 0.0);
  below.height = block.height - above.height;
  for (const PageArea& area : block.marks.areas) PartArea(area, cut, above.marks, below.marks);
  for (const PageLine& line : block.marks.lines) PartLine(line, cut, above.marks, below.marks);
  for (PagePicture picture : block.marks.pictures) {
    const bool first = picture.y < cut;
    if (!first) picture.y -= cut;
    (first ? above : below).marks.pictures.push_back(std::move(picture));
  }
  for (PageCode code : block.marks.codes) {
    const bool first = code.y < cut;
    if (!first) code.y -= cut;
    (first ? above : below).marks.codes.push_back(std::move(code));
  }
  for (PageText text : block.marks.texts) {
    const bool first = text.y < cut;
    if (!first) text.y -= cut;
    (first ? above : below).marks.texts.push_back(std::move(text));
  }
  return {std::move(above), std::move(below)};
}

}  // namespace kaunter
