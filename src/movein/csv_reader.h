// Records of a file of separated values, as spreadsheets write them: cells in quotes keep their
// separators and line ends, a quote in them is doubled.
#pragma once

#include <string>
#include <vector>

#include "movein/text_source.h"

namespace kaunter {

struct CsvRecord {
  int line = 0;  // on which it begins
  std::vector<std::string> cells;
};

class CsvReader {
 public:
  // `separator` 0 is found in the first record: comma, semicolon, tab or bar, whichever stands
  // there most; a first line "sep=;" names it.
  CsvReader(TextSource& source, char separator);

  char separator() const { return separator_; }
  // The next record that has something in it; false at the end. Throws FileTrouble for a quote that
  // is not closed, a cell longer than any text, and what the source throws.
  bool Next(CsvRecord* record);

 private:
  static constexpr int kEnd = -1;
  int Peek();
  int Take();
  void TakeCell(std::string* cell);
  void TakeQuoted(std::string* cell);
  void EndLine(int sign);
  void Grow(std::string* cell, int sign) const;
  char SeparatorInFront();

  TextSource& source_;
  std::string piece_;
  std::size_t at_ = 0;
  char separator_;
  int line_ = 1;
  int record_line_ = 1;
};

}  // namespace kaunter
