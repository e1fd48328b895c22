// The lines of a text file of any size and origin, one at a time: however they end, and whatever
// mark of an encoding stands at the beginning of the file.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "bank/bank_layout.h"
#include "screen/caption_error.h"

namespace kaunter {

// The file cannot be a bank's.
struct BankFileRefused : CaptionError {
  using CaptionError::CaptionError;
};

class BankLines {
 public:
  // Throws BankFileRefused for a file that is not there, cannot be read or is empty.
  BankLines(const std::string& path, BankLayout::Encoding encoding);

  // The next line, without its end; false behind the last. Throws BankFileRefused for a line that
  // is longer than any of a bank, and for a file that is no text.
  bool Next();
  int number() const { return number_; }  // of the line, from 1
  const BankText& text() const { return text_; }
  const std::string& raw() const { return raw_; }    // its bytes, with those of its end
  const std::string& mark() const { return mark_; }  // what stands before the first line
  int percent() const;                               // read so far

 private:
  static constexpr int kEnd = -1;
  int Byte();  // kEnd behind the last; goes to next_bytes_
  int Read();  // a byte, or the two of UTF-16
  int Unit();  // next_, which goes to raw_ and is read anew
  void Decode(const std::vector<int>& units);

  std::ifstream file_;
  BankLayout::Encoding encoding_;
  int unit_bytes_ = 1;
  bool high_first_ = false;
  std::string mark_;
  int next_ = kEnd;  // the unit that comes next, and its bytes
  std::string next_bytes_;
  std::uintmax_t size_ = 0;
  std::uintmax_t done_ = 0;
  int number_ = 0;
  BankText text_;
  std::string raw_;
};

// A part of a line as the program keeps its texts, without blanks and tabs at its ends.
std::string BankPartOf(const BankText& text, const BankPlace& place);
std::string PlainBankText(const BankText& text);
bool IsBlankBankText(const BankText& text);
// The columns of a line; a column in double quotes keeps what is within, "" being one of them.
std::vector<BankText> BankColumns(const BankText& line, char32_t delimiter);

}  // namespace kaunter
