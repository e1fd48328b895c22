// A report file: which rows a report prints and how. A text file that an office can read and change
// without a compiler; docs/report-files.md describes it for them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "reports/letter_file.h"

namespace kaunter {

enum class CellKind { text, integer, money, rate, date };

struct ReportColumn {
  std::string heading;
  std::string field;  // name of a column of the query
  CellKind kind = CellKind::text;
  double weight = 10;  // share of the page's width
  bool sum = false;    // totals show its sum
};

// A line above the table: a label and a text with {?Parameter}, {field} and {count} places.
struct ReportField {
  std::string label;
  std::string text;
};

struct ReportGroup {
  enum class By { value, year, month };
  std::string field;
  By by = By::value;
  std::string label;  // of the subtotal; "{group}" is the value
};

struct ReportFile {
  std::string path;
  double width_mm = 210;
  double height_mm = 297;
  std::string title;
  std::vector<ReportField> fields;
  std::string query;  // with {selection} where the condition goes
  std::string order;
  std::vector<ReportColumn> columns;
  std::vector<ReportGroup>
      groups;               // outermost first; subtotals show when a group has more than one value
  std::string total_label;  // "" for no grand total
  std::string note;         // a closing sentence under the table
  LetterFile letter;        // its key is empty in a list

  bool IsLetter() const { return !letter.key.empty(); }

  // Throws std::runtime_error naming file, line and what is wrong.
  static ReportFile Parse(std::string_view text, const std::string& path);
  static ReportFile Read(const std::string& path);
};

}  // namespace kaunter
