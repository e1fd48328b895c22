#include "screen/text.h"

#include <algorithm>
#include <cctype>

namespace kaunter {
namespace {

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The place behind the character that begins at `at`.
std::size_t EndOfCharacter(std::string_view utf8, std::size_t at) {
  const auto byte = static_cast<unsigned char>(utf8[at]);
  std::size_t rest = byte >= 0xF0U ? 3 : byte >= 0xE0U ? 2 : byte >= 0xC0U ? 1 : 0;
  for (++at; rest > 0 && at < utf8.size(); --rest, ++at) {
    if ((static_cast<unsigned char>(utf8[at]) & 0xC0U) != 0x80U) break;
  }
  return at;
}

}  // namespace

std::size_t CharacterCount(std::string_view utf8) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < utf8.size(); at = EndOfCharacter(utf8, at)) ++count;
  return count;
}

std::string_view FirstCharacters(std::string_view utf8, std::size_t count) {
  std::size_t at = 0;
  for (; count > 0 && at < utf8.size(); --count) at = EndOfCharacter(utf8, at);
  return utf8.substr(0, at);
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
