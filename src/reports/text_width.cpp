#include "reports/text_width.h"

#include <algorithm>
#include <array>

namespace kaunter {
namespace {

constexpr double kMillimetresPerPoint = 25.4 / 72.0;
// A face rounds its letters to its own dots: a line keeps this much of its width free.
constexpr double kSlack = 1.02;

// Thousandths of the letter size, from the blank to the tilde: what the paper's font measures.
constexpr std::array<short, 95> kPlain = {
    318,  401, 460, 838, 636, 950, 780, 275, 390, 390, 500, 838, 318, 361, 318, 337,  //
    636,  636, 636, 636, 636, 636, 636, 636, 636, 636, 337, 337, 838, 838, 838, 531,  //
    1000, 684, 686, 698, 770, 632, 575, 775, 752, 295, 295, 656, 557, 863, 748, 787,  //
    603,  787, 695, 635, 611, 732, 684, 989, 685, 611, 685, 390, 337, 390, 838, 500,  //
    500,  613, 635, 550, 635, 615, 352, 635, 634, 278, 278, 579, 278, 974, 634, 612,  //
    635,  635, 411, 521, 392, 634, 592, 818, 592, 592, 525, 636, 337, 636, 838};
constexpr std::array<short, 95> kBold = {
    348,  456, 521, 838, 696, 1002, 872, 306,  457, 457, 523, 838, 380, 415,  380, 365,  //
    696,  696, 696, 696, 696, 696,  696, 696,  696, 696, 400, 400, 838, 838,  838, 580,  //
    1000, 774, 762, 734, 830, 683,  683, 821,  837, 372, 372, 775, 637, 995,  837, 850,  //
    733,  850, 770, 720, 682, 812,  774, 1103, 771, 724, 725, 457, 365, 457,  838, 500,  //
    500,  675, 716, 593, 716, 678,  435, 716,  712, 343, 343, 665, 343, 1042, 712, 687,  //
    716,  716, 493, 595, 478, 712,  652, 924,  645, 652, 582, 712, 365, 712,  838};
constexpr double kOtherLatin = 720;  // letters with accents: no narrower than they are
constexpr double kFull = 1000;       // Chinese signs fill a square
constexpr double kJoined = 400;      // a vowel of Tamil stands above, below or beside its letter

struct Sign {
  std::string_view bytes;
  bool wide = false;  // one that a line may break behind
  double width = 0;   // of the letter size
};

// The signs of Tamil that belong to the letter before them: vowels, and the dot that takes one
// away.
std::size_t JoinedSize(std::string_view text, std::size_t at) {
  std::size_t size = 0;
  for (; text.size() >= at + size + 3; size += 3) {
    const std::string_view sign = text.substr(at + size, 3);
    const bool joined = (sign >= "\xE0\xAE\xBE" && sign <= "\xE0\xAF\x8D") ||
                        sign == "\xE0\xAF\x97" || sign == "\xE0\xAE\x82";
    if (!joined) break;
  }
  return size;
}

Sign Next(std::string_view text, std::size_t at, bool bold) {
  const auto lead = static_cast<unsigned char>(text[at]);
  if (lead < 0x80) {
    const bool shown = lead >= 32 && lead < 127;
    const auto& widths = bold ? kBold : kPlain;
    return {text.substr(at, 1), false, shown ? widths[lead - 32] / 1000.0 : 0};
  }
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  // From U+2E80 on stand the signs of East Asia.
  const bool wide = lead >= 0xE3 || (lead == 0xE2 && at + 1 < text.size() &&
                                     static_cast<unsigned char>(text[at + 1]) >= 0xBA);
  const std::size_t joined = JoinedSize(text, at + length);
  const double width =
      (length > 2 ? kFull : kOtherLatin) + kJoined * static_cast<double>(joined / 3);
  return {text.substr(at, length + joined), wide, width / 1000.0};
}

// Pieces between which a line may break; those of one word each with its blank before it.
struct Piece {
  std::string text;
  bool blank_before = false;
};

std::vector<Piece> Pieces(std::string_view line) {
  std::vector<Piece> pieces;
  bool blank = false;
  bool joined = false;  // the next sign belongs to the piece before
  for (std::size_t i = 0; i < line.size();) {
    if (line[i] == ' ' || line[i] == '\t' || line[i] == '\r') {
      blank = !pieces.empty();
      joined = false;
      ++i;
      continue;
    }
    const Sign sign = Next(line, i, false);
    if (joined && !sign.wide) {
      pieces.back().text += sign.bytes;
    } else {
      pieces.push_back({std::string(sign.bytes), blank});
    }
    joined = !sign.wide;
    blank = false;
    i += sign.bytes.size();
  }
  return pieces;
}

class Wrapper {
 public:
  Wrapper(double width, double points, bool bold)
      : width_(width / kSlack), points_(points), bold_(bold) {}

  void Line(std::string_view text) {
    line_.clear();
    for (const Piece& piece : Pieces(text)) Add(piece);
    lines_.push_back(line_);
  }
  std::vector<std::string> Take() { return std::move(lines_); }

 private:
  bool Fits(const std::string& text) const { return TextWidth(text, points_, bold_) <= width_; }

  void Add(const Piece& piece) {
    const std::string longer = line_ + (piece.blank_before ? " " : "") + piece.text;
    if (line_.empty() ? Fits(piece.text) : Fits(longer)) {
      line_ = line_.empty() ? piece.text : longer;
      return;
    }
    if (!line_.empty()) lines_.push_back(line_);
    line_.clear();
    for (std::size_t i = 0; i < piece.text.size();) {
      const Sign sign = Next(piece.text, i, bold_);
      if (!line_.empty() && !Fits(line_ + std::string(sign.bytes))) {
        lines_.push_back(line_);
        line_.clear();
      }
      line_ += sign.bytes;
      i += sign.bytes.size();
    }
  }

  double width_;
  double points_;
  bool bold_;
  std::string line_;
  std::vector<std::string> lines_;
};

}  // namespace

double TextWidth(std::string_view text, double points, bool bold) {
  double width = 0;
  for (std::size_t i = 0; i < text.size();) {
    const Sign sign = Next(text, i, bold);
    width += sign.width;
    i += sign.bytes.size();
  }
  return width * points * kMillimetresPerPoint;
}

double WidestWord(std::string_view text, double points, bool bold) {
  double widest = 0;
  for (const Piece& piece : Pieces(text)) {
    widest = std::max(widest, TextWidth(piece.text, points, bold) * kSlack);
  }
  return widest;
}

double LineHeight(double points) { return points * kMillimetresPerPoint * 1.42; }

std::vector<std::string> WrapText(std::string_view text, double width, double points, bool bold) {
  Wrapper wrapper(width, points, bold);
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    wrapper.Line(text.substr(0, end));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return wrapper.Take();
}

}  // namespace kaunter
