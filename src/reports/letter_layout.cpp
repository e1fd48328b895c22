#include "reports/letter_layout.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string>

#include "core/values.h"
#include "reports/letter_blocks.h"
#include "reports/letter_parts.h"
#include "reports/report_layout.h"
#include "reports/report_table.h"
#include "reports/text_width.h"

namespace kaunter {
namespace {

constexpr double kFootHeight = 6;
constexpr double kFootPoints = 7.5;
constexpr double kRoundingError = 0.001;

bool IsBlank(const LetterBlock& block) {
  return block.marks.texts.empty() && block.marks.lines.empty() && block.marks.pictures.empty() &&
         block.marks.codes.empty();
}

class LetterLayout {
 public:
  LetterLayout(const ReportFile& file, const ReportHeading& heading, const Recordset& rows,
               const ReportProgress& progress)
      : file_(file),
        heading_(heading),
        rows_(rows),
        progress_(progress),
        texts_(file.path, heading, rows),
        table_(file, texts_, rows, file.letter.margin, file.width_mm - 2 * file.letter.margin),
        pictures_(file, heading.measure, document_) {
    document_.title = texts_.Fill(file.title, {0, rows.RowCount()}, file.title_line);
    document_.width_mm = file.width_mm;
    document_.height_mm = file.height_mm;
  }

  ReportDocument Run() {
    const std::size_t key = texts_.ColumnOf(file_.letter.key);
    for (std::size_t first = 0; first < rows_.RowCount();) {
      TellProgress(progress_, ReportStage::laying_out, first, rows_.RowCount());
      std::size_t end = first + 1;
      while (end < rows_.RowCount() && SameRecord(key, first, end)) ++end;
      Letter({first, end - first});
      first = end;
    }
    if (rows_.RowCount() == 0) SayEmpty();
    return std::move(document_);
  }

 private:
  bool SameRecord(std::size_t key, std::size_t a, std::size_t b) const {
    return SameText(NullToEmpty(rows_.rows()[a][key]), NullToEmpty(rows_.rows()[b][key]));
  }

  void Letter(RowSpan span) {
    std::vector<std::vector<LetterBlock>> copies;
    if (file_.letter.copies.empty()) copies.push_back(Compose(span));
    for (const std::string& name : file_.letter.copies) {
      texts_.copy = name;
      copies.push_back(Compose(span));
    }
    if (copies.size() > 1 && FitBelowEachOther(copies)) {
      ShareASheet(copies, span);
      return;
    }
    for (std::size_t i = 0; i < copies.size(); ++i) {
      if (!file_.letter.copies.empty()) texts_.copy = file_.letter.copies[i];
      Flow(copies[i], span);
    }
  }

  std::vector<LetterBlock> Compose(RowSpan span) {
    return ComposeLetter(file_, texts_, table_, pictures_, span);
  }

  // --- several copies on one sheet

  double Slot(std::size_t copies) const { return file_.height_mm / static_cast<double>(copies); }

  bool FitBelowEachOther(const std::vector<std::vector<LetterBlock>>& copies) const {
    const double room = Slot(copies.size()) - 2 * file_.letter.margin - kFootHeight;
    for (const auto& copy : copies) {
      double height = 0;
      for (const LetterBlock& block : copy) {
        if (block.new_page) return false;
        height += block.height;
      }
      if (height > room) return false;
    }
    return true;
  }

  void ShareASheet(const std::vector<std::vector<LetterBlock>>& copies, RowSpan span) {
    NewPage();
    const double slot = Slot(copies.size());
    for (std::size_t i = 0; i < copies.size(); ++i) {
      const double top = slot * static_cast<double>(i);
      if (i > 0) CutLine(page(), top, file_.width_mm);
      y_ = top + file_.letter.margin;
      for (const LetterBlock& block : copies[i]) Place(block);
      texts_.copy = file_.letter.copies[i];
      Foot(page(), top + slot, span, "");
    }
  }

  // --- one after the other

  void Flow(const std::vector<LetterBlock>& blocks, RowSpan span) {
    const std::size_t first = document_.pages.size();
    NewPage();
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      const LetterBlock& block = blocks[i];
      // The head of a table does not stay behind alone.
      const bool heads_next = i + 1 < blocks.size() && blocks[i + 1].head == static_cast<int>(i);
      double needed = block.height;
      for (std::size_t last = i;
           last + 1 < blocks.size() && (blocks[last].keeps_next || (heads_next && last == i));
           ++last) {
        needed += blocks[last + 1].height;
      }
      const bool fits_a_page = needed <= Bottom() - file_.letter.margin;
      if (block.new_page || (fits_a_page && y_ + needed > Bottom())) BreakBefore(block, blocks);
      PlaceOverPages(block);
    }
    const std::size_t count = document_.pages.size() - first;
    for (std::size_t i = 0; i < count; ++i) {
      Foot(document_.pages[first + i], file_.height_mm, span,
           count > 1 ? file_.words().PageOf(i + 1, count) : "");
    }
  }

  void BreakBefore(const LetterBlock& block, const std::vector<LetterBlock>& blocks) {
    // What is empty needs no page: a gap at the foot of one is simply dropped.
    if (!block.new_page && IsBlank(block)) {
      y_ = Bottom() - block.height;
      return;
    }
    NewPage();
    if (block.head >= 0) Place(blocks[static_cast<std::size_t>(block.head)]);
  }

  // What is higher than a page goes on on the next ones.
  void PlaceOverPages(LetterBlock rest) {
    while (y_ + rest.height > Bottom() + kRoundingError) {
      auto [first, later] = PartBlock(rest, Bottom() - y_);
      if (first.height <= 0) {
        throw std::runtime_error(
            fmt::format("{}: what stands up to here is higher than the page.", rest.line.Told()));
      }
      Place(first);
      rest = std::move(later);
      if (IsBlank(rest)) return;
      NewPage();
    }
    Place(rest);
  }

  double Bottom() const { return file_.height_mm - file_.letter.margin - kFootHeight; }

  ReportPage& page() { return document_.pages.back(); }

  void NewPage() {
    document_.pages.emplace_back();
    y_ = file_.letter.margin;
  }

  void Place(const LetterBlock& block) {
    PutMarks(block.marks, y_, page());
    y_ += block.height;
  }

  void Foot(ReportPage& at, double edge, RowSpan span, const std::string& page_of) {
    const double whole = file_.width_mm - 2 * file_.letter.margin;
    const double width =
        whole - (page_of.empty() ? 0 : TextWidth(page_of, kFootPoints, false) * 1.05 + 4);
    const double y = edge - file_.letter.margin - 4;
    const std::string foot = texts_.FillLetter(file_.letter.foot, span, file_.letter.foot_line);
    if (!foot.empty()) {
      at.texts.push_back({file_.letter.margin, y, width, 4, foot, kFootPoints, false,
                          TextAlign::left, Tone::quiet});
    }
    if (!page_of.empty()) {
      at.texts.push_back({file_.letter.margin + width, y, whole - width, 4, page_of, kFootPoints,
                          false, TextAlign::right, Tone::quiet});
    }
  }

  // Whose paper it would be, what was asked for, and that there is nothing.
  void SayEmpty() {
    NewPage();
    const auto put = [this](const std::string& text, double points, bool bold, Tone tone) {
      const double width = file_.width_mm - 2 * file_.letter.margin;
      for (const std::string& line : WrapText(text, width, points, bold)) {
        const double height = points * 0.5;
        page().texts.push_back(
            {file_.letter.margin, y_, width, height, line, points, bold, TextAlign::left, tone});
        y_ += height;
      }
      if (!text.empty()) y_ += 1.5;
    };
    put(heading_.company, 11, true, Tone::accent);
    put(Trim(document_.title), 15, true, Tone::accent);
    put(heading_.subtitle, 9, false, Tone::quiet);
    put(file_.NoRows(), 10, false, Tone::ink);
    put(heading_.printed_at, kFootPoints, false, Tone::quiet);
  }

  const ReportFile& file_;
  const ReportHeading& heading_;
  const Recordset& rows_;
  const ReportProgress& progress_;
  ReportTexts texts_;
  ReportTable table_;
  ReportDocument document_;
  HeadPictures pictures_;
  double y_ = 0;
};

}  // namespace

ReportDocument LayOutLetter(const ReportFile& file, const ReportHeading& heading,
                            const Recordset& rows, const ReportProgress& progress) {
  return LetterLayout(file, heading, rows, progress).Run();
}

}  // namespace kaunter
