#include "reports/report_encoding.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string_view>

#include "reports/report_words.h"

namespace kaunter {
namespace {

using namespace std::string_view_literals;

[[noreturn]] void Refuse(const FileLine& line, std::string_view encoding) {
  throw std::runtime_error(
      fmt::format("{}: it is written in {}, and must be UTF-8. Open it in the editor and save it "
                  "as UTF-8.",
                  line.Told(), encoding));
}

unsigned char Byte(char c) { return static_cast<unsigned char>(c); }

// How many bytes the letter that begins here takes; 0 when none begins.
std::size_t LetterSize(std::string_view text) {
  const unsigned char first = Byte(text[0]);
  if (first < 0x80) return 1;
  const std::size_t size = first >= 0xF0 && first < 0xF5   ? 4
                           : first >= 0xE0 && first < 0xF0 ? 3
                           : first >= 0xC2 && first < 0xE0 ? 2
                                                           : 0;
  if (size == 0 || text.size() < size) return 0;
  for (std::size_t i = 1; i < size; ++i) {
    if ((Byte(text[i]) & 0xC0) != 0x80) return 0;
  }
  return size;
}

// A letter of Chinese Windows takes two bytes, the first of them beyond ASCII.
bool IsChinesePairs(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (Byte(text[i]) < 0x80) continue;
    if (++i == text.size() || Byte(text[i - 1]) == 0x80 || Byte(text[i]) < 0x40) return false;
  }
  return true;
}

}  // namespace

std::string Utf8Text(std::string bytes, const std::string& path) {
  static constexpr std::pair<std::string_view, std::string_view> kMarks[] = {
      {"\xFF\xFE\0\0"sv, "UTF-32"},
      {"\0\0\xFE\xFF"sv, "UTF-32"},
      {"\xFF\xFE"sv, "UTF-16"},
      {"\xFE\xFF"sv, "UTF-16"},
      {"\x2B\x2F\x76"sv, "UTF-7"}};
  for (const auto& [mark, encoding] : kMarks) {
    if (bytes.starts_with(mark)) Refuse({path, 0}, encoding);
  }
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.erase(0, 3);
  // Without its mark: letters of ASCII with a zero beside each.
  if (bytes.size() > 1 && (bytes[0] == '\0') != (bytes[1] == '\0')) Refuse({path, 0}, "UTF-16");
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t size = LetterSize(std::string_view(bytes).substr(at));
    if (size == 0) {
      const auto here = bytes.begin() + static_cast<std::ptrdiff_t>(at);
      Refuse({path, 1 + static_cast<int>(std::count(bytes.begin(), here, '\n'))},
             IsChinesePairs(bytes) ? "GB18030 (the ANSI of Chinese Windows)"
                                   : "Windows-1252 (ANSI) or another old encoding");
    }
    at += size;
  }
  return bytes;
}

}  // namespace kaunter
