#include "platform/sql/text.h"

#include <algorithm>
#include <array>

namespace kaunter::sql {
namespace {

constexpr std::array<unsigned char, 128> MakeAsciiFold() {
  std::array<unsigned char, 128> table{};
  for (std::size_t c = 0; c < table.size(); ++c) {
    table[c] = static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
  }
  return table;
}
constexpr auto kAsciiFold = MakeAsciiFold();

std::string_view WithoutTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool OnlyBlanks(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

unsigned char Byte(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

char32_t NextFolded(std::string_view text, std::size_t* at) {
  const unsigned char byte = Byte(text, *at);
  if (byte < 0x80) {
    ++*at;
    return kAsciiFold[byte];
  }
  return Fold(NextChar(text, at));
}

int CompareFrom(std::string_view a, std::string_view b, std::size_t i, std::size_t j) {
  while (i < a.size() && j < b.size()) {
    const char32_t x = NextFolded(a, &i);
    const char32_t y = NextFolded(b, &j);
    if (x != y) return x < y ? -1 : 1;
  }
  if (i < a.size()) return 1;
  return j < b.size() ? -1 : 0;
}

}  // namespace

char32_t NextChar(std::string_view text, std::size_t* at) {
  constexpr char32_t kDamaged = 0xFFFD;
  const unsigned char lead = Byte(text, (*at)++);
  if (lead < 0x80) return lead;
  const std::size_t more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : 0;
  if (more == 0 || lead > 0xF4 || *at + more > text.size()) return kDamaged;
  char32_t c = lead & (0x3Fu >> more);
  for (std::size_t i = 0; i < more; ++i) {
    const unsigned char byte = Byte(text, *at + i);
    if ((byte & 0xC0) != 0x80) return kDamaged;
    c = c << 6 | (byte & 0x3Fu);
  }
  const bool overlong = (more == 2 && c < 0x800) || (more == 3 && c < 0x10000);
  if (overlong || (c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF) return kDamaged;
  *at += more;
  return c;
}

std::u32string Decode(std::string_view text) {
  std::u32string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) result.push_back(NextChar(text, &at));
  return result;
}

void AppendUtf8(std::string* to, char32_t c) {
  const auto put = [to](char32_t byte) { to->push_back(static_cast<char>(byte)); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6);
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

std::string Encode(std::u32string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char32_t c : text) AppendUtf8(&result, c);
  return result;
}

std::size_t CountChars(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++count) NextChar(text, &at);
  return count;
}

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = LowerAscii(c);
  return lower;
}

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && LowerAscii(a[i]) != LowerAscii(b[i])) return false;
  }
  return true;
}

int CompareText(std::string_view a, std::string_view b) {
  a = WithoutTrailingBlanks(a);
  b = WithoutTrailingBlanks(b);
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const unsigned char x = Byte(a, i);
    const unsigned char y = Byte(b, i);
    if ((x | y) & 0x80) return CompareFrom(a, b, i, i);
    const unsigned char folded_x = kAsciiFold[x];
    const unsigned char folded_y = kAsciiFold[y];
    if (folded_x != folded_y) return folded_x < folded_y ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

std::size_t FindText(std::u32string_view hay, std::u32string_view needle, std::size_t from) {
  if (needle.size() > hay.size()) return std::u32string_view::npos;
  for (std::size_t at = from; at + needle.size() <= hay.size(); ++at) {
    std::size_t i = 0;
    while (i < needle.size() && Fold(hay[at + i]) == Fold(needle[i])) ++i;
    if (i == needle.size()) return at;
  }
  return std::u32string_view::npos;
}

bool LikePattern::Set::Has(char32_t folded) const {
  const bool found = std::any_of(ranges.begin(), ranges.end(), [folded](const auto& range) {
    return folded >= range.first && folded <= range.second;
  });
  return found != negated;
}

LikePattern::LikePattern(std::string_view pattern, char32_t escape) {
  const std::u32string chars = Decode(pattern);
  tokens_.reserve(chars.size());
  for (std::size_t at = 0; at < chars.size(); ++at) {
    const char32_t c = chars[at];
    if (escape != 0 && c == escape && at + 1 < chars.size()) {
      tokens_.push_back({Kind::kChar, Fold(chars[++at])});
    } else if (c == '%') {
      if (tokens_.empty() || tokens_.back().kind != Kind::kRun) tokens_.push_back({Kind::kRun, 0});
    } else if (c == '_') {
      tokens_.push_back({Kind::kAny, 0});
    } else if (c == '[') {
      ReadSet(chars, &at, escape);
    } else {
      tokens_.push_back({Kind::kChar, Fold(c)});
    }
  }
}

// From the opening bracket at *at to the closing one. A set that is never closed, like an empty
// one, matches nothing.
void LikePattern::ReadSet(const std::u32string& pattern, std::size_t* at, char32_t escape) {
  Set set;
  std::size_t i = *at + 1;
  const bool negated = i < pattern.size() && pattern[i] == '^';
  if (negated) ++i;
  const auto next = [&]() {
    if (escape != 0 && pattern[i] == escape && i + 1 < pattern.size()) ++i;
    return Fold(pattern[i++]);
  };
  while (i < pattern.size() && pattern[i] != ']') {
    const char32_t first = next();
    char32_t last = first;
    if (i + 1 < pattern.size() && pattern[i] == '-' && pattern[i + 1] != ']') {
      ++i;
      last = next();
    }
    set.ranges.emplace_back(first, last);
  }
  const bool closed = i < pattern.size();
  if (!closed) set.ranges.clear();
  set.negated = negated && closed;
  *at = closed ? i : pattern.size();
  tokens_.push_back({Kind::kSet, static_cast<char32_t>(sets_.size())});
  sets_.push_back(std::move(set));
}

bool LikePattern::Matches(std::string_view text) const {
  // Where to take up again when a try behind the last % fails: one character further.
  constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::size_t token = 0, at = 0, run_token = kNone, run_at = 0;
  while (true) {
    if (token == tokens_.size()) {
      if (OnlyBlanks(text.substr(at))) return true;
    } else if (tokens_[token].kind == Kind::kRun) {
      run_token = ++token;
      run_at = at;
      if (token == tokens_.size()) return true;
      continue;
    } else if (at < text.size()) {
      const char32_t c = NextFolded(text, &at);
      const Token& wanted = tokens_[token];
      if (wanted.kind == Kind::kAny || (wanted.kind == Kind::kChar && wanted.value == c) ||
          (wanted.kind == Kind::kSet && sets_[wanted.value].Has(c))) {
        ++token;
        continue;
      }
    }
    if (run_token == kNone || run_at >= text.size()) return false;
    NextChar(text, &run_at);
    at = run_at;
    token = run_token;
  }
}

}  // namespace kaunter::sql
