#include "core/password.h"

#include <array>
#include <cstdint>

#include "core/texts.h"
#include "platform/digest.h"

namespace kaunter {
namespace {

// The characters of the Western ANSI page between 0x80 and 0x9F, by byte; 0 where the page has
// none.
constexpr std::array<char32_t, 32> kAnsiUpperControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// What the page does not know, it shows as a question mark, and that is what is hashed.
char AnsiByte(char32_t code) {
  if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) return static_cast<char>(code);
  for (std::size_t i = 0; i < kAnsiUpperControls.size(); ++i) {
    if (kAnsiUpperControls[i] == code) return static_cast<char>(0x80 + i);
  }
  return '?';
}

std::string ToAnsi(std::string_view utf8) {
  std::string bytes;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t code = length == 1 ? lead : lead & (0xFFu >> (length + 1));
    for (std::size_t k = 1; k < length && i + k < utf8.size(); ++k) {
      code = (code << 6) | (static_cast<unsigned char>(utf8[i + k]) & 0x3Fu);
    }
    bytes += AnsiByte(code);
    i += length;
  }
  return bytes;
}

}  // namespace

std::string PasswordHash(std::string_view typed) {
  return Upper(DigestOf(Digest::Kind::md5, ToAnsi(typed)));
}

}  // namespace kaunter
