// The table of a report, drawn row by row: a list puts it on its pages, a letter between its
// paragraphs.
#pragma once

#include <string>
#include <vector>

#include "reports/report_document.h"
#include "reports/report_file.h"
#include "reports/report_texts.h"

namespace kaunter {

// What a column has for its heading and its rows, on a page of this width.
std::vector<double> ColumnRooms(const ReportFile& file, double width);
// By how much the letters of a heading must shrink to keep the words in its column whole; 1 when
// they fit.
double HeadingShrink(const std::string& heading, double room);

class ReportTable {
 public:
  static constexpr double kRowHeight = 5.4;
  static constexpr double kPad = 1.2;

  // Throws std::runtime_error when a column of the file is not among the rows' columns.
  ReportTable(const ReportFile& file, const ReportTexts& texts, const Recordset& rows, double x,
              double width);

  // Of a column of the table: a value of the rows, or a running figure.
  Value CellValue(std::size_t column, std::size_t row) const;
  std::string CellText(std::size_t column, std::size_t row) const;
  // No column has anything: what a joined table gives for a record without partners.
  bool IsEmptyRow(std::size_t row) const;

  using Sums = std::vector<Money>;  // one a column
  Sums NoSums() const { return Sums(file_.columns.size()); }
  void AddTo(Sums& sums, std::size_t row) const;

  // A heading that is wider than its column takes several lines.
  double HeadHeight() const { return head_height_; }
  void Head(ReportPage& page, double y) const;
  double RowHeight(std::size_t row, bool may_grow) const;
  // Gives the row's height. A text that is wider than its column is shortened, or, where the row or
  // the column may grow, broken into lines.
  double Row(ReportPage& page, double y, std::size_t row, bool striped, bool may_grow) const;
  void Total(ReportPage& page, double y, const std::string& label, const Sums& sums,
             bool grand) const;
  // The line of a group whose rows are not printed.
  void SummaryRow(ReportPage& page, double y, const std::string& label, const Sums& sums,
                  bool striped) const;
  double TotalHeight(const std::string& label, bool grand) const;

 private:
  struct Place {
    std::size_t field = 0;       // of the rows; of none for a running figure
    std::vector<Money> running;  // a running figure, by row
    double x = 0;
    double width = 0;
  };
  struct Heading {
    double x = 0;
    double room = 0;
    double points = 0;
    TextAlign align = TextAlign::left;
    std::vector<std::string> lines;
  };
  std::vector<Money> Running(const ReportColumn& column, const ReportTexts& texts) const;
  bool ShownInTotal(std::size_t column, bool grand) const;
  double LabelWidth(bool grand) const;
  std::vector<std::string> LabelLines(const std::string& label, bool grand) const;
  void SetHeadings();
  void Figures(ReportPage& page, double y, const Sums& sums, bool grand, bool bold) const;
  void Cell(ReportPage& page, double y, std::size_t column, std::string text, bool bold) const;
  std::vector<std::string> LinesOf(std::size_t column, const std::string& text,
                                   bool may_grow) const;

  const ReportFile& file_;
  const Recordset& rows_;
  double x_;
  double width_;
  std::vector<Place> places_;
  std::vector<Heading> headings_;
  double head_height_ = 0;
};

}  // namespace kaunter
