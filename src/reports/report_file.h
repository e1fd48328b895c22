// A report file: which rows a report prints and how. A text file that an office can read and change
// without a compiler; docs/report-files.md describes it for them.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "reports/letter_file.h"
#include "reports/paper_words.h"
#include "reports/report_words.h"

namespace kaunter {

enum class CellKind { text, integer, money, rate, date };

// One column of the query added to, or taken from, a running figure.
struct RunningTerm {
  std::string field;
  bool minus = false;
};

struct ReportColumn {
  std::string heading;
  std::string field;  // name of a column of the query; "" for a running figure
  CellKind kind = CellKind::text;
  double weight = 10;       // share of the page's width
  bool sum = false;         // totals show its sum
  bool last = false;        // totals show the figure of their last row
  bool blank_zero = false;  // 0 is left out
  bool wrap = false;        // a long text takes several lines
  std::vector<RunningTerm> running;
  bool before = false;  // the running figure as it was before its row
  std::string restart;  // the running figure begins anew when this column changes; "" for never
  FileLine line;
};

// A line above the table: a label and a text with {?Parameter}, {field} and {count} places.
struct ReportField {
  std::string label;
  std::string text;
  FileLine line = {};
};

// How the values of a column are taken together.
enum class GroupBy { value, year, month };

struct ReportGroup {
  std::string field;
  GroupBy by = GroupBy::value;
  std::string label;    // of the subtotal; "{group}" is the value; "" for no subtotal
  std::string heading;  // above the group's rows; "" for none
  bool new_page = false;
  bool always = false;  // a subtotal even when there is one group only
  FileLine line;
};

// Bars of sums: one for each value of the label column, or one for each of `columns`.
struct ReportChart {
  std::string title;
  std::vector<std::string> columns;
  std::string label;
  GroupBy by = GroupBy::value;
  std::string value;
  bool below = false;  // the table; else above it
  FileLine line;
};

struct ReportPicture {
  std::string path;  // with places; beside the report file unless it is a full path
  double width = 0;
  double height = 0;
  FileLine line;
};

struct ReportFile {
  std::string path;
  std::string folder;    // where a screen asked for it; pictures may lie there, too
  bool chinese = false;  // the captions are the Chinese ones
  PaperLanguage language = PaperLanguage::english;  // of the words that no line of the file says
  double width_mm = 210;
  double height_mm = 297;
  std::string title;
  FileLine title_line;
  std::vector<ReportField> fields;
  std::vector<ReportPicture> pictures;  // beside the title
  bool logo = false;                    // beside the title of a list, the office's own
  std::string query;                    // with {selection} where the condition goes
  FileLine query_line;
  std::string order;
  FileLine order_line;
  std::map<std::string, std::string> defaults;  // of parameters, by name in lower case
  std::map<std::string, std::string> aliases;   // by what a formula says, in lower case
  std::vector<ReportColumn> columns;
  std::vector<ReportGroup> groups;  // outermost first
  std::vector<ReportChart> charts;
  std::string total_label;  // "" for no grand total
  FileLine total_line;
  std::string note;  // a closing sentence under the table
  FileLine note_line;
  std::string empty;     // why there may be no rows; "" says that there are none
  bool summary = false;  // subtotals without the rows
  std::string summary_heading;
  LetterFile letter;  // its key is empty in a list

  PaperWords words() const { return PaperWords(language); }
  std::string NoRows() const { return empty.empty() ? words().NoRows() : empty; }
  bool AsksForPictures() const {
    return logo || std::any_of(letter.items.begin(), letter.items.end(),
                               [](const LetterItem& item) { return item.logo; });
  }
  bool IsLetter() const { return !letter.key.empty(); }

  // Throws std::runtime_error naming file, line and what is wrong.
  static ReportFile Parse(std::string_view text, const std::string& path,
                          const ReportReading& reading = {});
  // The file, or the one that it is like, has Chinese captions beside the English ones.
  static bool SpeaksChinese(const std::string& path);
  // The path of the file that this one is "like"; "" for none.
  static std::string LikeOf(const std::string& path);
  static ReportFile Read(const std::string& path, const ReportReading& reading = {});
};

}  // namespace kaunter
