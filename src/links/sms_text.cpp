#include "links/sms_text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "platform/sql/text.h"

namespace kaunter {
namespace {

// The basic alphabet beside ASCII's letters, figures and common signs; the escape to the second
// table is none of its letters.
constexpr std::u32string_view kLetters =
    U"@£$¥èéùìòÇ\nØø\rÅåΔ_ΦΓΛΩΠΨΣΘΞÆæßÉ !\"#¤%&'()*+,-./0123456789:;<=>?¡"
    U"ABCDEFGHIJKLMNOPQRSTUVWXYZÄÖÑÜ§¿abcdefghijklmnopqrstuvwxyzäöñüà";
constexpr std::u32string_view kOfTwoPlaces = U"\f^{}\\[~]|€";

constexpr int kSingle = 160;
constexpr int kPart = 153;
constexpr int kUnicodeSingle = 70;
constexpr int kUnicodePart = 67;

// The places of each letter; nothing when one of them is not in the alphabet.
std::vector<int> Places(std::u32string_view text) {
  std::vector<int> places;
  for (const char32_t letter : text) {
    if (kLetters.find(letter) != kLetters.npos) {
      places.push_back(1);
    } else if (kOfTwoPlaces.find(letter) != kOfTwoPlaces.npos) {
      places.push_back(2);
    } else {
      return {};
    }
  }
  return places;
}

std::vector<int> UnicodePlaces(std::u32string_view text) {
  constexpr char32_t kFirstOfTwo = 0x10000;
  std::vector<int> places;
  for (const char32_t letter : text) places.push_back(letter < kFirstOfTwo ? 1 : 2);
  return places;
}

int PartsOf(const std::vector<int>& letters, int part) {
  int parts = 1;
  int used = 0;
  for (const int places : letters) {
    if (used + places > part) {
      ++parts;
      used = 0;
    }
    used += places;
  }
  return parts;
}

bool IsKnown(std::string_view placeholder) {
  return std::find(kSmsPlaceholders.begin(), kSmsPlaceholders.end(), placeholder) !=
         kSmsPlaceholders.end();
}

}  // namespace

std::string FillSms(std::string text, const SmsValues& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::string_view placeholder = kSmsPlaceholders[i];
    for (std::size_t at = text.find(placeholder); at != std::string::npos;
         at = text.find(placeholder, at + values[i].size())) {
      text.replace(at, placeholder.size(), values[i]);
    }
  }
  return text;
}

std::vector<std::string> UnknownPlaceholders(std::string_view text) {
  std::vector<std::string> unknown;
  for (std::size_t open = text.find('{'); open != text.npos; open = text.find('{', open + 1)) {
    const std::size_t end = text.find_first_of("{}", open + 1);
    if (end == text.npos || text[end] == '{') continue;
    std::string one(text.substr(open, end - open + 1));
    if (IsKnown(one) || std::find(unknown.begin(), unknown.end(), one) != unknown.end()) continue;
    unknown.push_back(std::move(one));
  }
  return unknown;
}

SmsSize MeasureSms(std::string_view text) {
  if (text.empty()) return {};
  const std::u32string letters = sql::Decode(text);
  SmsSize size;
  std::vector<int> places = Places(letters);
  size.unicode = places.empty();
  if (size.unicode) places = UnicodePlaces(letters);
  for (const int one : places) size.places += one;
  const int single = size.unicode ? kUnicodeSingle : kSingle;
  size.messages = size.places <= single ? 1 : PartsOf(places, size.unicode ? kUnicodePart : kPart);
  return size;
}

Caption ShowSmsSize(const SmsSize& size) {
  return {fmt::format("{} character{}, {} message{}{}", size.places, size.places == 1 ? "" : "s",
                      size.messages, size.messages == 1 ? "" : "s",
                      size.unicode ? " (Unicode: 70 a message)" : ""),
          fmt::format("{} 个字符，{} 则短讯{}", size.places, size.messages,
                      size.unicode ? "（万国码：每则 70 个）" : "")};
}

Caption SmsTemplateNotFound(std::string_view id) {
  return {fmt::format("SMS Template ID {} not found", id), fmt::format("找不到短讯范本 {}", id)};
}

Caption ShowUnknown(std::string_view text) {
  const std::vector<std::string> unknown = UnknownPlaceholders(text);
  if (unknown.empty()) return {};
  const bool one = unknown.size() == 1;
  return {fmt::format("{} {} not known and {} as {}", fmt::join(unknown, ", "), one ? "is" : "are",
                      one ? "stays" : "stay", one ? "it is" : "they are"),
          fmt::format("无法识别 {}，将原样保留", fmt::join(unknown, "、"))};
}

}  // namespace kaunter
