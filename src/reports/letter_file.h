// The lines of a report file that make a letter: a page of text with places, one letter a record.
#pragma once

#include <string>
#include <vector>

#include "reports/report_document.h"
#include "reports/report_words.h"

namespace kaunter {

enum class LetterKind {
  head,     // the company
  heading,  // what the paper is
  text,
  lines,  // an address
  space,
  rule,
  cut,  // where scissors go
  picture,
  qr,
  pair,
  amount,  // a label and a figure at the right edge
  box,     // a large figure in a frame
  items,   // the table of the record's rows
  sign,
  labels,  // how wide the labels of pairs are
  together,
  columns,
  beside,
  across,
  page,
  when,    // what follows stands only where this column has a text,
  unless,  // or has none,
  done     // up to here
};

struct LetterItem {
  LetterKind kind;
  FileLine line;
  std::vector<std::string> texts;
  std::vector<double> numbers;
  double size = 0;  // of the letters, in points; 0 takes what is usual for the kind
  bool bold = false;
  bool quiet = false;
  bool logo = false;    // with the pictures of the company
  bool always = false;  // stands even when its figure is 0
  TextAlign align = TextAlign::left;
};

struct LetterFile {
  std::string key;  // one letter for each value of this column; "" in a list
  std::vector<LetterItem> items;
  std::vector<std::string> copies;
  std::string foot;
  FileLine foot_line;
  double margin = 15;
};

// Takes the lines of a letter one by one. What it refuses is thrown as std::invalid_argument that
// says what is wrong; file and line are the caller's.
class LetterParser {
 public:
  LetterParser() = default;
  // Begins with the letter of a file that is like this one: its lines hold until the first line of
  // the text is taken.
  explicit LetterParser(LetterFile like) : letter_(std::move(like)), inherited_(true) {}
  // False when no line of a letter begins with this word.
  bool Take(const std::vector<ReportWord>& words, const FileLine& line);
  // The file is at its end: what is still open is refused. `columns` tells whether it has a table.
  LetterFile Finish(bool has_columns);
  bool seen() const { return !letter_.key.empty(); }
  int first_item_line() const {
    return letter_.items.empty() ? 0 : letter_.items.front().line.number;
  }

 private:
  bool TakeSetting(const std::vector<ReportWord>& words, const FileLine& line);
  bool TakeCondition(const std::vector<ReportWord>& words, const FileLine& line);
  void TakeMore(const std::vector<ReportWord>& words);
  void CheckOrder(const LetterItem& item);

  void DropInherited();

  LetterFile letter_;
  bool inherited_ = false;                // the items are those of the other file
  bool conditional_ = false;              // within "when" or "unless"
  LetterKind open_ = LetterKind::across;  // together, columns, beside, or across when none is open
};

// The words that begin a line of a letter, for a message.
std::string LetterWords();

}  // namespace kaunter
