#include "movein/csv_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "movein/file_trouble.h"

namespace kaunter {
namespace {

constexpr std::size_t kLongestCell = 64 * 1024;

}  // namespace

CsvReader::CsvReader(TextSource& source, char separator) : source_(source), separator_(separator) {
  Peek();
  if (piece_.size() > 5 && piece_.starts_with("sep=") && (piece_[5] == '\r' || piece_[5] == '\n')) {
    if (separator_ == 0) separator_ = piece_[4];
    at_ = piece_.find('\n', 5) == std::string::npos ? 5 : piece_.find('\n', 5) + 1;
    line_ = 2;
  }
  if (separator_ == 0) separator_ = SeparatorInFront();
}

char CsvReader::SeparatorInFront() {
  constexpr std::string_view kSigns = ",;\t|";
  std::array<int, kSigns.size()> counts = {};
  bool quoted = false;
  bool something = false;
  for (std::size_t i = at_; i < piece_.size(); ++i) {
    const char sign = piece_[i];
    if (sign == '"') quoted = !quoted;
    if (quoted) continue;
    if ((sign == '\n' || sign == '\r') && something) break;
    something = something || (sign != '\n' && sign != '\r');
    if (const auto found = kSigns.find(sign); found != std::string_view::npos) ++counts[found];
  }
  const auto most = std::max_element(counts.begin(), counts.end());
  return kSigns[static_cast<std::size_t>(most - counts.begin())];
}

int CsvReader::Peek() {
  if (at_ >= piece_.size()) {
    piece_ = source_.Next();
    at_ = 0;
    if (piece_.empty()) return kEnd;
  }
  return static_cast<unsigned char>(piece_[at_]);
}

int CsvReader::Take() {
  const int sign = Peek();
  if (sign != kEnd) ++at_;
  return sign;
}

// The line of a "\r\n", "\n" or "\r" whose first sign is taken.
void CsvReader::EndLine(int sign) {
  if (sign == '\r' && Peek() == '\n') Take();
  ++line_;
}

void CsvReader::Grow(std::string* cell, int sign) const {
  if (cell->size() >= kLongestCell) {
    throw FileTrouble(
        {fmt::format("Line {}: a cell is longer than any text. Is a quote opened there that is not "
                     "closed, or the separator another one?",
                     record_line_),
         fmt::format("第 {} 行：单元格过长。是否有引号没有关闭，或分隔符不对？", record_line_)});
  }
  cell->push_back(static_cast<char>(sign));
}

void CsvReader::TakeQuoted(std::string* cell) {
  for (;;) {
    const int sign = Take();
    if (sign == kEnd) {
      throw FileTrouble(
          {fmt::format("Line {}: a quote is opened there and never closed", record_line_),
           fmt::format("第 {} 行：引号没有关闭", record_line_)});
    }
    if (sign == '"') {
      if (Peek() != '"') return;
      Take();
      Grow(cell, '"');
    } else if (sign == '\n' || sign == '\r') {
      EndLine(sign);
      Grow(cell, '\n');
    } else {
      Grow(cell, sign);
    }
  }
}

void CsvReader::TakeCell(std::string* cell) {
  if (Peek() == '"') {
    Take();
    TakeQuoted(cell);
  }
  for (int sign = Peek(); sign != kEnd && sign != '\n' && sign != '\r'; sign = Peek()) {
    if (static_cast<char>(sign) == separator_) return;
    Grow(cell, Take());
  }
}

bool CsvReader::Next(CsvRecord* record) {
  while (Peek() != kEnd) {
    record_line_ = record->line = line_;
    record->cells.clear();
    bool something = false;
    for (;;) {
      TakeCell(&record->cells.emplace_back());
      const std::string& cell = record->cells.back();
      something = something || cell.find_first_not_of(" \t") != std::string::npos;
      const int sign = Take();
      if (sign == kEnd) break;
      if (static_cast<char>(sign) == separator_ && sign != '\n' && sign != '\r') continue;
      EndLine(sign);
      break;
    }
    if (something) return true;
  }
  return false;
}

}  // namespace kaunter
