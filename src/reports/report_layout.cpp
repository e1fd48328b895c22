#include "reports/report_layout.h"

#include "core/values.h"
#include "reports/letter_layout.h"
#include "reports/report_chart.h"
#include "reports/report_groups.h"
#include "reports/report_picture.h"
#include "reports/report_table.h"
#include "reports/text_width.h"

namespace kaunter {
namespace {

constexpr double kLogoWidth = 36;
constexpr double kLogoHeight = 16;
constexpr double kMargin = kListMargin;
constexpr double kRowHeight = ReportTable::kRowHeight;
constexpr double kGroupHeadHeight = kRowHeight + 0.8;
constexpr double kFootHeight = 8;
constexpr double kSmallPoints = 9;
constexpr std::size_t kRowsBetweenReports = 500;

class Layout {
 public:
  Layout(const ReportFile& file, const ReportHeading& heading, const Recordset& rows,
         const ReportProgress& progress)
      : file_(file),
        heading_(heading),
        rows_(rows),
        progress_(progress),
        texts_(file.path, heading, rows),
        table_(file, texts_, rows, kMargin, file.width_mm - 2 * kMargin),
        groups_(file, texts_, rows) {
    document_.title = Fill(file.title, file.title_line);
    document_.width_mm = file.width_mm;
    document_.height_mm = file.height_mm;
  }

  ReportDocument Run() {
    document_.pages.emplace_back();
    y_ = kMargin;
    Heading();
    Charts(false);
    TableHead();
    sums_.assign(groups_.size() + 1, table_.NoSums());
    for (std::size_t row = 0; row < rows_.RowCount(); ++row) {
      if (row % kRowsBetweenReports == 0) {
        TellProgress(progress_, ReportStage::laying_out, row, rows_.RowCount());
      }
      CloseGroups(row);
      OpenGroups(row);
      TableRow(row);
    }
    CloseGroups(rows_.RowCount());
    if (rows_.RowCount() == 0) {
      Quiet(file_.NoRows());
    } else if (!file_.total_label.empty()) {
      TotalRow(Fill(file_.total_label, file_.total_line), sums_[0], true);
    }
    Charts(true);
    if (!file_.note.empty()) Quiet(Fill(file_.note, file_.note_line));
    Feet();
    return std::move(document_);
  }

 private:
  double Width() const { return file_.width_mm - 2 * kMargin; }
  double Bottom() const { return file_.height_mm - kMargin - kFootHeight; }

  std::string Fill(const std::string& text, const FileLine& line) const {
    return texts_.Fill(text, {0, rows_.RowCount()}, line);
  }

  ReportPage& page() { return document_.pages.back(); }

  void Text(double x, double width, std::string text, double points, bool bold = false,
            TextAlign align = TextAlign::left, Tone tone = Tone::ink, double height = kRowHeight) {
    page().texts.push_back({x, y_, width, height, std::move(text), points, bold, align, tone});
  }

  // --- the head of the pages

  void Heading() {
    double picture_bottom = y_;
    double width = Width();
    const auto put = [&](const std::string& path, double picture_width, double height) {
      if (path.empty()) return;
      width -= picture_width + 3;
      page().pictures.push_back(
          {kMargin + width + 3, kMargin, picture_width, height, path, TextAlign::right});
      picture_bottom = std::max(picture_bottom, kMargin + height + 2);
    };
    if (file_.logo) {
      HeadPictures pictures(file_, heading_.measure, document_);
      const auto logo = pictures.Find(heading_.logo, kLogoWidth, kLogoHeight);
      if (logo) put(logo->path, logo->width, logo->height);
    }
    for (const ReportPicture& picture : file_.pictures) {
      put(PicturePath(file_, Fill(picture.path, picture.line)), picture.width, picture.height);
    }
    if (!heading_.company.empty()) {
      Text(kMargin, width, heading_.company, kSmallPoints, false, TextAlign::left, Tone::quiet);
      y_ += kRowHeight;
    }
    std::vector<std::string> title = WrapText(document_.title, width, 16, true);
    if (title.empty()) title.emplace_back();
    for (const std::string& line : title) {
      Text(kMargin, width, line, 16, true, TextAlign::left, Tone::accent, 9);
      y_ += 9;
    }
    y_ += 1;
    // What was selected stands there in full, on as many pages as it takes.
    for (const std::string& line : WrapText(heading_.subtitle, width - 1, kSmallPoints, false)) {
      PageFor(kRowHeight);
      Text(kMargin, width, line, kSmallPoints, false, TextAlign::left, Tone::quiet);
      y_ += kRowHeight - 1;
    }
    if (!heading_.subtitle.empty()) y_ += 2;
    if (document_.pages.size() == 1) y_ = std::max(y_, picture_bottom);
    Fields();
    y_ += 4;
  }

  // In two columns, read across.
  void Fields() {
    const double half = Width() / 2;
    for (std::size_t i = 0; i < file_.fields.size(); ++i) {
      const ReportField& field = file_.fields[i];
      const double x = kMargin + (i % 2 == 0 ? 0 : half);
      if (i % 2 == 0) PageFor(kRowHeight);
      Text(x, kFieldLabelWidth, Fill(field.label, field.line), kFieldPoints, false, TextAlign::left,
           Tone::quiet);
      Text(x + kFieldLabelWidth, half - kFieldLabelWidth - 2, Fill(field.text, field.line),
           kFieldPoints, true);
      if (i % 2 == 1 || i + 1 == file_.fields.size()) y_ += kRowHeight + 0.4;
    }
  }

  void NewPage() {
    PageHead();
    TableHead();
  }

  void PageHead() {
    document_.pages.emplace_back();
    y_ = kMargin;
    striped_ = false;
    const double half = Width() / 2;
    Text(kMargin, half, document_.title, 10, true, TextAlign::left, Tone::accent);
    if (!heading_.company.empty()) {
      Text(kMargin + half, half, heading_.company, 8, false, TextAlign::right, Tone::quiet);
    }
    y_ += kRowHeight;
    if (!heading_.subtitle.empty()) {
      Text(kMargin, Width(), heading_.subtitle, 8, false, TextAlign::left, Tone::quiet);
      y_ += kRowHeight;
    }
    y_ += 1;
  }

  void TableHead() {
    table_.Head(page(), y_);
    y_ += table_.HeadHeight();
  }

  // Above and below the table: a page that begins there has no table head.
  void PageFor(double height) {
    if (y_ + height > Bottom()) PageHead();
  }

  // True when a new page was begun for it.
  bool Room(double height) {
    if (y_ + height <= Bottom()) return false;
    NewPage();
    return true;
  }

  void Charts(bool below) {
    for (const ReportChart& chart : file_.charts) {
      if (chart.below != below || rows_.RowCount() == 0) continue;
      const std::vector<ChartBar> bars = ChartBars(chart, file_, texts_, rows_);
      const double height = ChartHeight(bars.size());
      if (below) y_ += 4;
      PageFor(height);
      DrawChart(page(), kMargin, y_, Width(), Fill(chart.title, chart.line), bars);
      y_ += height;
    }
    if (!below) PageFor(40);
  }

  // --- the rows

  void TableRow(std::size_t row) {
    for (auto& level : sums_) table_.AddTo(level, row);
    if (file_.summary) return;
    if (Room(RowRoom(row))) RepeatHeadings(row);
    y_ += table_.Row(page(), y_, row, striped_, false);
    striped_ = !striped_;
  }

  // With the sums that end behind it: they do not begin a page. A row that is higher than a page
  // has room for begins on a page of its own.
  double RowRoom(std::size_t row) const {
    if (file_.summary) return kRowHeight;
    double sums = 0;
    for (std::size_t g = groups_.size(); g-- > FirstClosed(row + 1);) {
      if (HasSubtotal(g)) sums += table_.TotalHeight("", false);
    }
    if (row + 1 == rows_.RowCount() && !file_.total_label.empty()) {
      sums += table_.TotalHeight("", true);
    }
    return std::min(table_.RowHeight(row, false) + sums, Bottom() - kMargin - 40);
  }

  std::size_t FirstClosed(std::size_t row) const {
    return row == rows_.RowCount() ? 0 : groups_.FirstChanged(row);
  }

  bool HasSubtotal(std::size_t g) const {
    const ReportGroup& group = groups_.group(g);
    return !group.label.empty() && (groups_.Several(g) || group.always || file_.summary);
  }

  bool HasHeading(std::size_t g) const {
    // In a summary the subtotal is the line of the innermost group.
    return !groups_.group(g).heading.empty() && !(file_.summary && g + 1 == groups_.size());
  }

  // The headings stand together with the first row below them.
  void OpenGroups(std::size_t row) {
    const std::size_t first = groups_.FirstChanged(row);
    bool new_page = false;
    double height = 0;
    for (std::size_t g = first; g < groups_.size(); ++g) {
      new_page = new_page || (groups_.group(g).new_page && row > 0);
      if (HasHeading(g)) height += kGroupHeadHeight;
    }
    if (new_page) NewPage();
    if ((height > 0 && Room(height + RowRoom(row))) || new_page) RepeatHeadings(row);
    for (std::size_t g = first; g < groups_.size(); ++g) {
      if (HasHeading(g)) GroupHeading(g, row, "");
    }
  }

  void GroupHeading(std::size_t g, std::size_t row, const std::string& behind) {
    const double indent = 4 * static_cast<double>(g);
    y_ += kGroupHeadHeight - kRowHeight;
    Text(kMargin + ReportTable::kPad + indent, Width() - indent - 2 * ReportTable::kPad,
         groups_.Text(groups_.group(g).heading, g, row) + behind, kSmallPoints, true,
         TextAlign::left, Tone::accent);
    y_ += kRowHeight;
    striped_ = false;
  }

  // A page that begins within a group says in which.
  void RepeatHeadings(std::size_t row) { RepeatHeadings(row, groups_.FirstChanged(row)); }

  void RepeatHeadings(std::size_t row, std::size_t groups) {
    for (std::size_t g = 0; g < groups; ++g) {
      if (HasHeading(g)) GroupHeading(g, row, file_.words().Continued());
    }
  }

  // Prints the subtotals of the groups that end before this row, innermost first.
  void CloseGroups(std::size_t row) {
    if (row == 0) return;
    for (std::size_t g = groups_.size(); g-- > FirstClosed(row);) {
      if (HasSubtotal(g)) SubTotal(groups_.Text(groups_.group(g).label, g, row - 1), g, row - 1);
      sums_[g + 1] = table_.NoSums();
    }
  }

  void SubTotal(const std::string& label, std::size_t g, std::size_t last_row) {
    if (!file_.summary || g + 1 < groups_.size()) return TotalRow(label, sums_[g + 1], false);
    if (Room(kRowHeight)) RepeatHeadings(last_row, g);
    table_.SummaryRow(page(), y_, label, sums_[g + 1], striped_);
    striped_ = !striped_;
    y_ += kRowHeight;
  }

  void TotalRow(const std::string& label, const ReportTable::Sums& sums, bool grand) {
    const double height = table_.TotalHeight(label, grand);
    Room(height);
    table_.Total(page(), y_, label, sums, grand);
    y_ += height;
    striped_ = false;
  }

  void Quiet(const std::string& text) {
    for (const std::string& line : WrapText(text, Width() - 1, 8.5, false)) {
      PageFor(kRowHeight * 2);
      y_ += kRowHeight / 2;
      Text(kMargin, Width(), line, 8.5, false, TextAlign::left, Tone::quiet);
      y_ += kRowHeight / 2;
    }
    y_ += kRowHeight / 2;
  }

  void Feet() {
    const double y = file_.height_mm - kMargin;
    for (std::size_t i = 0; i < document_.pages.size(); ++i) {
      ReportPage& at = document_.pages[i];
      at.lines.push_back({kMargin, y - 1, file_.width_mm - kMargin, y - 1, 0.2, Tone::rule});
      at.texts.push_back({kMargin, y, Width() * 0.6, kRowHeight, heading_.printed_at, 8, false,
                          TextAlign::left, Tone::quiet});
      at.texts.push_back({kMargin + Width() * 0.6, y, Width() * 0.4, kRowHeight,
                          file_.words().PageOf(i + 1, document_.pages.size()), 8, false,
                          TextAlign::right, Tone::quiet});
    }
  }

  const ReportFile& file_;
  const ReportHeading& heading_;
  const Recordset& rows_;
  const ReportProgress& progress_;
  ReportTexts texts_;
  ReportTable table_;
  ReportGroups groups_;
  ReportDocument document_;
  std::vector<ReportTable::Sums> sums_;  // [0] the whole report, then one a group
  double y_ = 0;
  bool striped_ = false;
};

}  // namespace

ReportDocument LayOut(const ReportFile& file, const ReportHeading& heading, const Recordset& rows,
                      const ReportProgress& progress) {
  return file.IsLetter() ? LayOutLetter(file, heading, rows, progress)
                         : Layout(file, heading, rows, progress).Run();
}

}  // namespace kaunter
