#include "platform/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <stdexcept>

#include "platform/text_converter.h"

namespace kaunter {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// Whole letters of UTF-8 up to the end, where one may be cut.
bool IsUtf8(std::string_view bytes) {
  std::size_t at = 0;
  while (at < bytes.size()) {
    const auto lead = static_cast<unsigned char>(bytes[at]);
    const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead >= 0x80 && (lead < 0xC2 || lead > 0xF4)) return false;
    for (std::size_t i = 1; i < length && at + i < bytes.size(); ++i) {
      if ((static_cast<unsigned char>(bytes[at + i]) & 0xC0) != 0x80) return false;
    }
    at += length;
  }
  return true;
}

// Letters beyond ASCII come in pairs, and most pairs are of the common characters. A Western text
// has single ones between letters of ASCII.
bool IsGbk(std::string_view bytes) {
  std::size_t pairs = 0;
  std::size_t common = 0;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const auto lead = static_cast<unsigned char>(bytes[at]);
    if (lead < 0x80) continue;
    if (at + 1 == bytes.size()) break;
    const auto trail = static_cast<unsigned char>(bytes[++at]);
    if (lead == 0x80 || lead == 0xFF || trail < 0x40 || trail == 0x7F || trail == 0xFF)
      return false;
    ++pairs;
    if (lead >= 0xB0 && lead <= 0xF7 && trail >= 0xA1) ++common;
  }
  return pairs > 0 && 2 * common >= pairs;
}

// A text without Chinese has a zero in every second byte.
std::optional<Encoding> WideBySight(std::string_view bytes) {
  std::array<std::size_t, 2> zeros = {};
  for (std::size_t at = 0; at < bytes.size(); ++at) zeros[at % 2] += bytes[at] == '\0' ? 1U : 0U;
  if (4 * std::max(zeros[0], zeros[1]) <= bytes.size() / 2) return std::nullopt;
  return zeros[1] > zeros[0] ? Encoding::utf16le : Encoding::utf16be;
}

}  // namespace

Encoding EncodingOf(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) return Encoding::utf8;
  if (bytes.starts_with("\xFF\xFE")) return Encoding::utf16le;
  if (bytes.starts_with("\xFE\xFF")) return Encoding::utf16be;
  if (const auto wide = WideBySight(bytes)) return *wide;
  if (IsUtf8(bytes)) return Encoding::utf8;
  return IsGbk(bytes) ? Encoding::gbk : Encoding::latin1;
}

std::optional<std::string> TextOfBytes(std::string bytes) {
  try {
    auto [text, broken] = TextConverter(EncodingOf(bytes)).Take(bytes);
    if (broken || !bytes.empty()) return std::nullopt;
    if (text.starts_with(kUtf8Mark)) text.erase(0, kUtf8Mark.size());
    return text;
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

}  // namespace kaunter
