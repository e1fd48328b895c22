// The texts of a report with their places filled: {Column}, {?Parameter}, {count}, {today},
// {printed}, and a form behind a colon, {PayAmt:words}. In a letter, what stands in [ ] is left out
// when one of its places is empty.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/money.h"
#include "platform/sql/connection.h"
#include "reports/report_document.h"
#include "reports/report_words.h"

namespace kaunter {

enum class CellKind;

// The pictures of a company, as its record names them; "" for none.
struct CompanyPictures {
  std::string logo;
  std::string letterhead;  // takes the place of its name and address
};

struct ReportHeading {
  std::string company;                              // above the title; may be empty
  std::string subtitle;                             // what was selected; may be empty
  std::string logo;                                 // of the office, for a list that asks for it
  std::map<std::string, CompanyPictures> pictures;  // by the company's name, for such letters
  PictureMeasure measure;
  std::string printed_at;                         // foot of each page
  std::string today;                              // date of the print, as dates are shown
  std::map<std::string, std::string> parameters;  // by name without regard to case, lower case
};

// The rows that a text speaks of: all of a list, those of one record in a letter.
struct RowSpan {
  std::size_t first = 0;
  std::size_t count = 0;
};

class ReportTexts {
 public:
  ReportTexts(std::string path, const ReportHeading& heading, const Recordset& rows)
      : path_(std::move(path)), heading_(heading), rows_(rows) {}

  // Of the first row of the span. `line` is told when a column is missing; 0 for none.
  std::string Fill(std::string_view text, RowSpan span, const FileLine& line = {}) const;
  // The same, and what stands in [ ] goes when one of its places is empty.
  std::string FillLetter(std::string_view text, RowSpan span, const FileLine& line) const;
  // Place of a column among the rows' columns. Throws std::runtime_error when there is none.
  std::size_t ColumnOf(std::string_view name, const FileLine& line = {}) const;

  // Of the company of this name; none of a name that is not known.
  CompanyPictures PicturesOf(const std::string& company) const;

  std::string copy;  // {copy}: which of several copies of a letter this is

 private:
  std::string PlaceText(const std::string& place, RowSpan span, const FileLine& line) const;
  std::string ValueText(const std::string& name, RowSpan span, const FileLine& line) const;
  Money Sum(const std::string& name, RowSpan span, const FileLine& line) const;
  std::string FillPlaces(std::string_view text, RowSpan span, const FileLine& line,
                         bool& empty_place) const;

  std::string path_;
  const ReportHeading& heading_;
  const Recordset& rows_;
};

// What is wrong with the braces and brackets of a letter's text; "" when nothing is.
std::string PlaceFault(std::string_view text);

// A value as money; 0 for a text or a date.
Money MoneyOf(const Value& value);
// The text of a value as a column of this kind shows it.
std::string ShowCell(const Value& value, CellKind kind);

}  // namespace kaunter
