#include "bank/bank_lines.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/sql/text.h"

namespace kaunter {
namespace {

constexpr std::size_t kLongest = 64 * 1024;  // units of a line
constexpr char32_t kUnknown = 0xFFFD;
// The second place of a letter that takes two.
constexpr char32_t kFiller = 0;

bool IsBlank(char32_t c) { return c == U' ' || c == U'\t' || c == 0xA0 || c == 0x3000; }

BankText FromUtf16(const std::vector<int>& units) {
  BankText text;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto unit = static_cast<char32_t>(units[i]);
    const bool pair = unit >= 0xD800 && unit < 0xDC00 && i + 1 < units.size() &&
                      units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000;
    if (pair) {
      text += 0x10000 + ((unit - 0xD800) << 10) + (static_cast<char32_t>(units[++i]) - 0xDC00);
    } else {
      text += unit >= 0xD800 && unit < 0xE000 ? kUnknown : unit;
    }
  }
  return text;
}

// A Chinese letter keeps its two places; which letter it is nobody asks.
BankText FromGbk(const std::vector<int>& bytes) {
  BankText text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] < 0x81 || i + 1 == bytes.size()) {
      text += bytes[i] < 0x80 ? static_cast<char32_t>(bytes[i]) : kUnknown;
    } else {
      text += kUnknown;
      text += kFiller;
      ++i;
    }
  }
  return text;
}

[[noreturn]] void RefuseFile(const std::string& path, const std::string& why) {
  throw BankFileRefused(
      {fmt::format("{} cannot be read: {}", path, why), fmt::format("无法读取 {}：{}", path, why)});
}

}  // namespace

BankLines::BankLines(const std::string& path, BankLayout::Encoding encoding) : encoding_(encoding) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) RefuseFile(path, "it is a folder");
  size_ = std::filesystem::file_size(path, error);
  if (error) RefuseFile(path, error.message());
  if (size_ == 0) {
    throw BankFileRefused({fmt::format("{} is empty: ask the bank for it again", path),
                           fmt::format("{} 是空的：请向银行重新索取", path)});
  }
  file_.open(path, std::ios::binary);
  if (!file_) RefuseFile(path, "is it open elsewhere, and may you read it?");
  std::string begin(3, '\0');
  file_.read(begin.data(), 3);
  begin.resize(static_cast<std::size_t>(file_.gcount()));
  file_.clear();
  if (begin.starts_with("\xEF\xBB\xBF")) {
    mark_ = begin;
    encoding_ = BankLayout::Encoding::utf8;
  } else if (begin.starts_with("\xFF\xFE") || begin.starts_with("\xFE\xFF")) {
    mark_ = begin.substr(0, 2);
    unit_bytes_ = 2;
    high_first_ = begin.starts_with("\xFE\xFF");
  }
  file_.seekg(static_cast<std::streamoff>(mark_.size()));
  done_ = mark_.size();
  next_ = Read();
}

int BankLines::percent() const {
  return static_cast<int>(std::min<std::uintmax_t>(100, done_ * 100 / size_));
}

int BankLines::Byte() {
  const int byte = file_.get();
  if (file_.bad()) throw BankFileRefused({"The file cannot be read to its end", "文件无法读完"});
  if (byte == std::ifstream::traits_type::eof()) return kEnd;
  ++done_;
  next_bytes_ += static_cast<char>(byte);
  return byte;
}

int BankLines::Read() {
  next_bytes_.clear();
  const int first = Byte();
  if (first == kEnd || unit_bytes_ == 1) return first;
  const int second = Byte();
  if (second == kEnd) return kEnd;
  return high_first_ ? first * 256 + second : second * 256 + first;
}

int BankLines::Unit() {
  raw_ += next_bytes_;
  return std::exchange(next_, Read());
}

bool BankLines::Next() {
  raw_.clear();
  std::vector<int> units;
  int unit = Unit();
  if (unit == kEnd) return false;
  ++number_;
  for (; unit != kEnd && unit != '\n' && unit != '\r'; unit = Unit()) {
    if (unit == 0) {
      throw BankFileRefused(
          {fmt::format("Line {} is no text: save the file as text and read it again", number_),
           fmt::format("第 {} 行不是文本：请另存为文本文件再读取", number_)});
    }
    if (units.size() == kLongest) {
      throw BankFileRefused(
          {fmt::format("Line {} is longer than any line of a bank: is it a bank's text file?",
                       number_),
           fmt::format("第 {} 行太长：这是银行的文本文件吗？", number_)});
    }
    units.push_back(unit);
  }
  if (unit == '\r' && next_ == '\n') Unit();
  Decode(units);
  return true;
}

void BankLines::Decode(const std::vector<int>& units) {
  if (unit_bytes_ == 2) {
    text_ = FromUtf16(units);
  } else if (encoding_ == BankLayout::Encoding::utf8) {
    text_ = sql::Decode(std::string(units.begin(), units.end()));
  } else if (encoding_ == BankLayout::Encoding::gbk) {
    text_ = FromGbk(units);
  } else {
    text_.assign(units.begin(), units.end());
  }
}

std::string PlainBankText(const BankText& text) {
  std::size_t begin = 0;
  std::size_t end = text.size();
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
  std::string plain;
  for (std::size_t i = begin; i < end; ++i) {
    if (text[i] != kFiller) sql::AppendUtf8(&plain, text[i]);
  }
  return plain;
}

bool IsBlankBankText(const BankText& text) { return std::ranges::all_of(text, IsBlank); }

std::string BankPartOf(const BankText& text, const BankPlace& place) {
  const auto start = static_cast<std::size_t>(place.start - 1);
  if (start >= text.size()) return {};
  return PlainBankText(text.substr(start, static_cast<std::size_t>(place.length)));
}

std::vector<BankText> BankColumns(const BankText& line, char32_t delimiter) {
  std::vector<BankText> columns(1);
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char32_t c = line[i];
    if (c == U'"' && quoted && i + 1 < line.size() && line[i + 1] == U'"') {
      columns.back() += c;
      ++i;
    } else if (c == U'"' && (quoted || columns.back().empty())) {
      quoted = !quoted;
    } else if (c == delimiter && !quoted) {
      columns.emplace_back();
    } else {
      columns.back() += c;
    }
  }
  return columns;
}

}  // namespace kaunter
