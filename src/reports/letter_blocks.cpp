#include "reports/letter_blocks.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "core/values.h"
#include "reports/report_picture.h"
#include "reports/text_width.h"

namespace kaunter {
namespace {

constexpr double kTextPoints = 10;
constexpr double kSmallPoints = 9;
constexpr double kHeadPoints = 14;
constexpr double kHeadingPoints = 15;
constexpr double kBoxPoints = 16;
constexpr double kLabelPoints = 8;
constexpr double kParagraphGap = 1.4;
constexpr double kHeadingGap = 2.4;
constexpr double kPairGap = 0.8;
constexpr double kColumnGap = 8;
constexpr double kBoxPad = 2.2;
constexpr double kUsualLabel = 34;
constexpr double kLetterheadHeight = 28;
constexpr double kLogoWidth = 24;
constexpr double kLogoHeight = 16;
constexpr double kSignGap = 10;
constexpr double kSignRoom = 15;  // for the hand, above the line
constexpr double kSigned = 25;    // of what is signed, on the page of the signature

bool IsNothing(const std::string& text) {
  const auto amount = Money::TryText(text);
  return text.empty() || (amount && amount->IsZero());
}

class Composer {
 public:
  Composer(const ReportFile& file, const ReportTexts& texts, const ReportTable& table,
           HeadPictures& pictures, RowSpan span)
      : file_(file), texts_(texts), table_(table), pictures_(pictures), span_(span) {
    WholeWidth();
  }

  std::vector<LetterBlock> Run() {
    for (const LetterItem& item : file_.letter.items) {
      item_ = &item;
      if (item.kind == LetterKind::when || item.kind == LetterKind::unless) {
        skipping_ = Filled(0).empty() == (item.kind == LetterKind::when);
      } else if (item.kind == LetterKind::done) {
        skipping_ = false;
      } else if (!skipping_) {
        Item(item);
      }
    }
    return std::move(blocks_);
  }

 private:
  struct Look {
    double points = kTextPoints;
    bool bold = false;
    TextAlign align = TextAlign::left;
    Tone tone = Tone::ink;
  };

  void WholeWidth() {
    x_ = file_.letter.margin;
    width_ = file_.width_mm - 2 * file_.letter.margin;
  }

  std::string Filled(std::size_t text) const {
    return texts_.FillLetter(item_->texts[text], span_, item_->line);
  }

  void Put(LetterBlock block) {
    block.line = item_->line;
    out_->push_back(std::move(block));
  }

  void Gap(double height) {
    LetterBlock block;
    block.height = height;
    Put(std::move(block));
  }

  // Adds the lines of a text at the given place of a block; gives the height that they take.
  static double Lines(LetterBlock& block, const std::string& text, double x, double y, double width,
                      const Look& look) {
    const double height = LineHeight(look.points);
    double at = y;
    for (const std::string& line : WrapText(text, width, look.points, look.bold)) {
      block.marks.texts.push_back(
          {x, at, width, height, line, look.points, look.bold, look.align, look.tone});
      at += height;
    }
    return at - y;
  }

  void Item(const LetterItem& item) {
    switch (item.kind) {
      case LetterKind::head:
        return Head(item);
      case LetterKind::heading:
        return Paragraph(
            {item.size > 0 ? item.size : kHeadingPoints, true, item.align, Tone::accent},
            kHeadingGap);
      case LetterKind::text:
        return Paragraph({item.size > 0 ? item.size : kTextPoints, item.bold, item.align,
                          item.quiet ? Tone::quiet : Tone::ink},
                         kParagraphGap);
      case LetterKind::lines:
        return Lines(item);
      case LetterKind::space:
        return Gap(item.numbers[0]);
      case LetterKind::rule:
        return Rule();
      case LetterKind::cut:
        return Cut();
      case LetterKind::picture:
        return Picture(item);
      case LetterKind::qr:
        return Code(item);
      case LetterKind::pair:
        return Pair(item);
      case LetterKind::amount:
        return Amount(item);
      case LetterKind::box:
        return Box(item);
      case LetterKind::items:
        return Items();
      case LetterKind::sign:
        return Sign(item);
      case LetterKind::labels:
        label_width_ = item.numbers[0];
        return;
      case LetterKind::together:
        return OpenStack();
      case LetterKind::columns:
        return OpenColumns(item);
      case LetterKind::beside:
        return TurnColumn();
      case LetterKind::across:
        return JoinColumns();
      case LetterKind::page:
        return BeginPage();
      case LetterKind::when:
      case LetterKind::unless:
      case LetterKind::done:
        return;
    }
  }

  void Head(const LetterItem& item) {
    LetterBlock block;
    const CompanyPictures named = item.logo ? texts_.PicturesOf(Filled(0)) : CompanyPictures{};
    if (auto letterhead = pictures_.Find(named.letterhead, width_, kLetterheadHeight)) {
      letterhead->x = x_ + (width_ - letterhead->width) / 2;
      block.height = letterhead->height;
      block.marks.pictures.push_back(*std::move(letterhead));
    } else {
      HeadTexts(block, item, pictures_.Find(named.logo, kLogoWidth, kLogoHeight));
    }
    block.height += 1.5;
    block.marks.lines.push_back({x_, block.height, x_ + width_, block.height, 0.5, Tone::accent});
    block.height += 3;
    Put(std::move(block));
  }

  // With a logo at the left edge, and as much left free at the right of texts in the middle.
  void HeadTexts(LetterBlock& block, const LetterItem& item, std::optional<PagePicture> logo) {
    const double room = logo ? logo->width + 4 : 0;
    const double width = width_ - (item.align == TextAlign::center ? 2 : 1) * room;
    Look look{kHeadPoints, true, item.align, Tone::accent};
    for (std::size_t i = 0; i < item.texts.size(); ++i) {
      block.height += Lines(block, Filled(i), x_ + room, block.height, width, look);
      look = {kLabelPoints, false, item.align, Tone::quiet};
    }
    if (!logo) return;
    block.height = std::max(block.height, logo->height);
    logo->x = x_;
    block.marks.pictures.push_back(*std::move(logo));
  }

  // Line by line, so that a paragraph may go on on the next page.
  void Paragraph(const Look& look, double gap) {
    const std::vector<std::string> lines = WrapText(Filled(0), width_, look.points, look.bold);
    for (const std::string& line : lines) {
      LetterBlock block;
      block.height = LineHeight(look.points);
      block.marks.texts.push_back(
          {x_, 0, width_, block.height, line, look.points, look.bold, look.align, look.tone});
      Put(std::move(block));
    }
    if (!lines.empty()) Gap(gap);
  }

  void Lines(const LetterItem& item) {
    LetterBlock block;
    const Look look{item.size > 0 ? item.size : kTextPoints, item.bold, item.align,
                    item.quiet ? Tone::quiet : Tone::ink};
    for (std::size_t i = 0; i < item.texts.size(); ++i) {
      block.height += Lines(block, Filled(i), x_, block.height, width_, look);
    }
    if (block.height == 0) return;
    block.height += kParagraphGap;
    Put(std::move(block));
  }

  void Rule() {
    LetterBlock block;
    block.height = 3;
    block.marks.lines.push_back({x_, 1.5, x_ + width_, 1.5, 0.25, Tone::rule});
    Put(std::move(block));
  }

  void Cut() {
    LetterBlock block;
    block.height = 8;
    CutLine(block.marks, 4, file_.width_mm);
    Put(std::move(block));
  }

  // One that is not there leaves no gap.
  void Picture(const LetterItem& item) {
    const std::string path = PicturePath(file_, Filled(0));
    if (path.empty()) return;
    LetterBlock block;
    const double width = std::min(item.numbers[0], width_);
    block.marks.pictures.push_back(
        {x_ + LeftOf(item, width), 0, width, item.numbers[1], path, item.align});
    block.height = item.numbers[1] + kParagraphGap;
    Put(std::move(block));
  }

  // Without a text there is no code and no gap.
  void Code(const LetterItem& item) {
    std::optional<QrCode> code = EncodeQr(Filled(0));
    if (!code) return;
    LetterBlock block;
    const double side = std::min(item.numbers[0], width_);
    block.marks.codes.push_back({x_ + LeftOf(item, side), 0, side, *std::move(code)});
    block.height = side;
    Put(std::move(block));
  }

  double LeftOf(const LetterItem& item, double width) const {
    const double free = width_ - width;
    return item.align == TextAlign::right ? free : item.align == TextAlign::center ? free / 2 : 0;
  }

  void Pair(const LetterItem& item) {
    LetterBlock block;
    const std::size_t count = item.texts.size() / 2;
    const double share = width_ / static_cast<double>(count);
    double x = x_;
    for (std::size_t i = 0; i < count; ++i) {
      const std::string text = Filled(2 * i + 1);
      if (text.empty()) continue;  // the second moves to its place
      const double label = std::min(label_width_, share * 0.45);
      const Look quiet{kSmallPoints, false, TextAlign::left, Tone::quiet};
      const double left = Lines(block, Filled(2 * i), x, 0, label - 1, quiet);
      const double right = Lines(block, text, x + label, 0, share - label - (count > 1 ? 3 : 0),
                                 {kSmallPoints, item.bold});
      block.height = std::max({block.height, left + kPairGap, right + kPairGap});
      x += share;
    }
    if (block.height > 0) Put(std::move(block));
  }

  void Amount(const LetterItem& item) {
    const std::string figure = Filled(1);
    if (figure.empty() || (!item.always && IsNothing(figure))) return;
    LetterBlock block;
    if (item.bold) {
      block.marks.lines.push_back({x_, 0.5, x_ + width_, 0.5, 0.25, Tone::rule});
      block.height = 1.2;
    }
    const double figure_width =
        std::min(width_ * 0.6, TextWidth(figure, kSmallPoints, item.bold) * 1.05 + 2);
    const double label_height =
        Lines(block, Filled(0), x_, block.height, width_ - figure_width - 2,
              {kSmallPoints, item.bold, TextAlign::left, item.bold ? Tone::ink : Tone::quiet});
    block.marks.texts.push_back({x_ + width_ - figure_width, block.height, figure_width,
                                 LineHeight(kSmallPoints), figure, kSmallPoints, item.bold,
                                 TextAlign::right, Tone::ink});
    block.height += std::max(label_height, LineHeight(kSmallPoints)) + kPairGap;
    Put(std::move(block));
  }

  void Box(const LetterItem& item) {
    const std::string text = Filled(1);
    if (text.empty()) return;
    LetterBlock block;
    const double inner = width_ - 2 * kBoxPad;
    double y = kBoxPad - 0.6;
    y += Lines(block, Filled(0), x_ + kBoxPad, y, inner,
               {kLabelPoints, false, TextAlign::left, Tone::quiet});
    y += Lines(block, text, x_ + kBoxPad, y, inner,
               {item.size > 0 ? item.size : kBoxPoints, true, TextAlign::left, Tone::accent});
    y += kBoxPad - 0.6;
    block.marks.areas.push_back({x_, 0, width_, y, Tone::shade});
    const double right = x_ + width_;
    for (const PageLine& line : {PageLine{x_, 0, right, 0}, PageLine{x_, y, right, y},
                                 PageLine{x_, 0, x_, y}, PageLine{right, 0, right, y}}) {
      block.marks.lines.push_back(line);
      block.marks.lines.back().width = 0.4;
      block.marks.lines.back().tone = Tone::accent;
    }
    block.height = y + 2.5;
    Put(std::move(block));
  }

  void Items() {
    const int head = static_cast<int>(out_->size());
    LetterBlock top;
    table_.Head(top.marks, 0);
    top.height = table_.HeadHeight();
    Put(std::move(top));
    ReportTable::Sums sums = table_.NoSums();
    for (std::size_t i = 0; i < span_.count; ++i) {
      if (table_.IsEmptyRow(span_.first + i)) continue;
      LetterBlock block;
      block.head = head;
      block.height = table_.Row(block.marks, 0, span_.first + i, i % 2 == 1, true);
      table_.AddTo(sums, span_.first + i);
      Put(std::move(block));
    }
    if (!file_.total_label.empty()) {
      if (out_->back().head >= 0) out_->back().keeps_next = true;
      LetterBlock block;
      block.head = head;
      const std::string label = texts_.FillLetter(file_.total_label, span_, file_.total_line);
      block.height = table_.TotalHeight(label, true);
      table_.Total(block.marks, 0, label, sums, true);
      Put(std::move(block));
    }
    Gap(3);
  }

  void Sign(const LetterItem& item) {
    LetterBlock block;
    const auto count = static_cast<double>(item.texts.size());
    // A single signature does not take the whole width.
    const double share = std::min((width_ - kSignGap * (count - 1)) / count, 75.0);
    double x = x_;
    for (std::size_t i = 0; i < item.texts.size(); ++i) {
      const std::string who = Filled(i);
      if (who.empty() && !item.texts[i].empty()) continue;  // nobody signs there
      block.marks.lines.push_back({x, kSignRoom, x + share, kSignRoom, 0.3, Tone::ink});
      const double under = Lines(block, who, x, kSignRoom + 0.8, share,
                                 {kLabelPoints, false, TextAlign::left, Tone::quiet});
      block.height = std::max(block.height, kSignRoom + 1.5 + under);
      x += share + kSignGap;
    }
    if (block.height <= 0) return;
    KeepWhatIsSigned();
    signed_ = in_columns_;
    Put(std::move(block));
  }

  // A signature on a page of its own would sign nothing: the last lines before it go with it, or
  // the last row of a table.
  void KeepWhatIsSigned() {
    double height = 0;
    for (std::size_t i = out_->size(); i-- > 0 && height < kSigned;) {
      LetterBlock& before = (*out_)[i];
      if (before.new_page) return;
      before.keeps_next = true;
      height += before.height;
      if (before.head >= 0 && (i == 0 || !(*out_)[i - 1].keeps_next)) return;
    }
  }

  void BeginPage() {
    LetterBlock block;
    block.new_page = true;
    Put(std::move(block));
  }

  // --- stacks of blocks that become one: for columns two, which stay side by side

  void OpenStack() {
    in_columns_ = signed_ = false;
    stack_.clear();
    out_ = &stack_;
  }

  void OpenColumns(const LetterItem& item) {
    const double sum = item.numbers[0] + item.numbers[1];
    const double room = width_ - kColumnGap;
    second_x_ = x_ + room * item.numbers[0] / sum + kColumnGap;
    second_width_ = room * item.numbers[1] / sum;
    width_ = room * item.numbers[0] / sum;
    OpenStack();
    in_columns_ = true;
  }

  void TurnColumn() {
    joined_ = Stacked();
    x_ = second_x_;
    width_ = second_width_;
    stack_.clear();
  }

  void JoinColumns() {
    const LetterBlock second = Stacked();
    PutMarks(second.marks, 0, joined_.marks);
    joined_.height = std::max(joined_.height, second.height);
    out_ = &blocks_;
    WholeWidth();
    if (signed_) KeepWhatIsSigned();
    if (joined_.height > 0) Put(std::move(joined_));
    joined_ = {};
  }

  LetterBlock Stacked() const {
    LetterBlock all;
    for (const LetterBlock& block : stack_) {
      PutMarks(block.marks, all.height, all.marks);
      all.height += block.height;
    }
    return all;
  }

  const ReportFile& file_;
  const ReportTexts& texts_;
  const ReportTable& table_;
  HeadPictures& pictures_;
  RowSpan span_;
  const LetterItem* item_ = nullptr;
  bool skipping_ = false;  // a condition does not hold
  bool in_columns_ = false;
  bool signed_ = false;  // in one of the columns
  double x_ = 0;
  double width_ = 0;
  double label_width_ = kUsualLabel;
  std::vector<LetterBlock> blocks_;
  std::vector<LetterBlock> stack_;
  std::vector<LetterBlock>* out_ = &blocks_;
  LetterBlock joined_;
  double second_x_ = 0;
  double second_width_ = 0;
};

}  // namespace

void PutMarks(const ReportPage& marks, double down, ReportPage& page) {
  for (PageArea area : marks.areas) {
    area.y += down;
    page.areas.push_back(area);
  }
  for (PagePicture picture : marks.pictures) {
    picture.y += down;
    page.pictures.push_back(std::move(picture));
  }
  for (PageCode code : marks.codes) {
    code.y += down;
    page.codes.push_back(std::move(code));
  }
  for (PageLine line : marks.lines) {
    line.y1 += down;
    line.y2 += down;
    page.lines.push_back(line);
  }
  for (PageText text : marks.texts) {
    text.y += down;
    page.texts.push_back(std::move(text));
  }
}

void CutLine(ReportPage& page, double y, double sheet_width) {
  constexpr double kDash = 2.5;
  for (double x = kDash; x + kDash <= sheet_width; x += 2 * kDash) {
    page.lines.push_back({x, y, x + kDash, y, 0.2, Tone::quiet});
  }
}

std::vector<LetterBlock> ComposeLetter(const ReportFile& file, const ReportTexts& texts,
                                       const ReportTable& table, HeadPictures& pictures,
                                       RowSpan span) {
  return Composer(file, texts, table, pictures, span).Run();
}

}  // namespace kaunter
