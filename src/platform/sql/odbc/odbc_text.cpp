#include "platform/sql/odbc/odbc_text.h"

#include <algorithm>

namespace kaunter::sql {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Takes one character from `utf8` at `at`, which moves behind it.
char32_t NextCharacter(std::string_view utf8, std::size_t& at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(utf8[i]); };
  const unsigned char first = byte(at++);
  if (first < 0x80) return first;
  const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC2 ? 1 : 0;
  if (more == 0 || first > 0xF4) return kReplacement;
  char32_t character = first & (0x3Fu >> more);
  for (int i = 0; i < more; ++i) {
    if (at >= utf8.size() || (byte(at) & 0xC0) != 0x80) return kReplacement;
    character = (character << 6) | (byte(at++) & 0x3Fu);
  }
  constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  return character < kSmallest[more] || character > 0x10FFFF || surrogate ? kReplacement
                                                                          : character;
}

void AppendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

bool IsNameByte(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '@' || c == '#' || c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

// Past the end of a quoted stretch that begins at `at`; a doubled closing mark belongs to it.
std::size_t EndOfQuoted(std::string_view sql, std::size_t at, char close) {
  for (++at; at < sql.size(); ++at) {
    if (sql[at] != close) continue;
    if (at + 1 >= sql.size() || sql[at + 1] != close) return at + 1;
    ++at;
  }
  return sql.size();
}

// Past the end of a block comment; they nest.
std::size_t EndOfComment(std::string_view sql, std::size_t at) {
  int depth = 0;
  while (at < sql.size()) {
    const std::string_view two = sql.substr(at, 2);
    if (two == "/*") {
      ++depth;
      at += 2;
    } else if (two == "*/") {
      at += 2;
      if (--depth == 0) return at;
    } else {
      ++at;
    }
  }
  return at;
}

// Past the end of the token at `at`, a run of blanks and signs being one character a token.
std::size_t EndOfToken(std::string_view sql, std::size_t at) {
  switch (sql[at]) {
    case '\'':
    case '"':
      return EndOfQuoted(sql, at, sql[at]);
    case '[':
      return EndOfQuoted(sql, at, ']');
    default:
      break;
  }
  const std::string_view two = sql.substr(at, 2);
  if (two == "--") return std::min(sql.find('\n', at), sql.size());
  if (two == "/*") return EndOfComment(sql, at);
  std::size_t end = at;
  while (end < sql.size() && IsNameByte(sql[end])) ++end;
  return std::max(end, at + 1);
}

bool HasNonAscii(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

}  // namespace

std::u16string ToUtf16(std::string_view utf8) {
  std::u16string out;
  out.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    char32_t c = NextCharacter(utf8, at);
    if (c >= 0x10000) {
      c -= 0x10000;
      out += static_cast<char16_t>(0xD800 + (c >> 10));
      out += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
    } else {
      out += static_cast<char16_t>(c);
    }
  }
  return out;
}

std::string ToUtf8(std::u16string_view utf16) {
  std::string out;
  out.reserve(utf16.size());
  for (std::size_t i = 0; i < utf16.size(); ++i) {
    char32_t c = utf16[i];
    const bool high = c >= 0xD800 && c < 0xDC00;
    if (high && i + 1 < utf16.size() && utf16[i + 1] >= 0xDC00 && utf16[i + 1] < 0xE000) {
      c = 0x10000 + ((c - 0xD800) << 10) + (utf16[++i] - 0xDC00u);
    } else if (c >= 0xD800 && c < 0xE000) {
      c = kReplacement;
    }
    AppendUtf8(out, c);
  }
  return out;
}

std::string MarkUnicodeTexts(std::string_view sql) {
  if (!HasNonAscii(sql)) return std::string(sql);
  std::string out;
  out.reserve(sql.size() + 16);
  std::string_view before;  // the token in front, when it touches
  for (std::size_t at = 0; at < sql.size();) {
    const std::size_t end = EndOfToken(sql, at);
    const std::string_view token = sql.substr(at, end - at);
    if (token.front() == '\'' && HasNonAscii(token) && before != "N" && before != "n") {
      // A word that touches the text must not swallow the mark: LIKE'x' is LIKE N'x'.
      out += !before.empty() && IsNameByte(before.front()) ? " N" : "N";
    }
    out += token;
    before = token;
    at = end;
  }
  return out;
}

std::string WithParameters(
    std::string_view sql, char mark,
    const std::function<void(std::size_t number, std::string& out)>& append) {
  std::string out;
  out.reserve(sql.size() + 64);
  for (std::size_t at = 0; at < sql.size();) {
    if (sql[at] == '\'' || sql[at] == '"') {
      const std::size_t end = EndOfQuoted(sql, at, sql[at]);
      out += sql.substr(at, end - at);
      at = end;
    } else if (sql[at] == mark) {
      std::size_t number = 0;
      for (++at; at < sql.size() && sql[at] >= '0' && sql[at] <= '9'; ++at) {
        number = number * 10 + static_cast<std::size_t>(sql[at] - '0');
      }
      append(number, out);
    } else {
      out += sql[at++];
    }
  }
  return out;
}

}  // namespace kaunter::sql
