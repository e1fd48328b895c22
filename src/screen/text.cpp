#include "screen/text.h"

#include <algorithm>
#include <cctype>

namespace kaunter {
namespace {

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::size_t CharacterCount(std::string_view utf8) {
  std::size_t count = 0;
  std::size_t rest = 0;  // continuation bytes that still belong to the last character
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    const bool continuation = (byte & 0xC0U) == 0x80U;
    if (continuation && rest > 0) {
      --rest;
      continue;
    }
    ++count;
    rest = byte >= 0xF0U ? 3 : byte >= 0xE0U ? 2 : byte >= 0xC0U ? 1 : 0;
  }
  return count;
}

bool SameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

std::string WithoutMnemonic(std::string_view caption) {
  std::string plain;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&') {
      if (i + 1 >= caption.size() || caption[i + 1] != '&') continue;
      ++i;
    }
    plain += caption[i];
  }
  return plain;
}

std::string ApplyMask(std::string_view mask, std::string text) {
  const auto places = std::count(mask.begin(), mask.end(), '#');
  if (places == 0 || static_cast<std::size_t>(places) != text.size() ||
      !std::all_of(text.begin(), text.end(), IsDigit)) {
    return text;
  }
  std::string masked;
  std::size_t next = 0;
  for (const char c : mask) masked += c == '#' ? text[next++] : c;
  return masked;
}

}  // namespace kaunter
