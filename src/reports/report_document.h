// A printed report as pages of texts, lines, areas and codes at places in millimetres: what the
// preview, the printer and the PDF draw alike.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "reports/qr_code.h"
#include "screen/caption.h"

namespace kaunter {

enum class TextAlign { left, right, center };
enum class Tone { ink, quiet, accent, shade, rule };

struct PageText {
  double x = 0;  // left edge of the box
  double y = 0;  // top edge of the box
  double width = 0;
  double height = 0;
  std::string text;  // shortened with an ellipsis when it is wider than the box
  double points = 9;
  bool bold = false;
  TextAlign align = TextAlign::left;
  Tone tone = Tone::ink;
};

struct PageLine {
  double x1 = 0;
  double y1 = 0;
  double x2 = 0;
  double y2 = 0;
  double width = 0.2;
  Tone tone = Tone::rule;
};

struct PageArea {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  Tone tone = Tone::shade;
};

// A picture file, as large as its place allows and in its own proportions.
struct PagePicture {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  std::string path;
  TextAlign align = TextAlign::left;  // within its place
};

// A QR code in a square, its quiet zone included.
struct PageCode {
  double x = 0;
  double y = 0;
  double side = 0;
  QrCode code;
};

struct ReportPage {
  std::vector<PageArea> areas;  // drawn first
  std::vector<PagePicture> pictures;
  std::vector<PageCode> codes;
  std::vector<PageLine> lines;
  std::vector<PageText> texts;
};

// How large a picture is, in dots; nothing for a file that cannot be drawn.
struct PictureSize {
  double width = 0;
  double height = 0;
};
using PictureMeasure = std::function<std::optional<PictureSize>(const std::string& path)>;

struct ReportDocument {
  std::string title;
  double width_mm = 210;
  double height_mm = 297;
  std::vector<ReportPage> pages;
  std::vector<Caption> left_out;  // what should stand on the pages and could not: for the person
};

}  // namespace kaunter
