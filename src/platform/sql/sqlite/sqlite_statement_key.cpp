#include "platform/sql/sqlite/sqlite_statement_key.h"

#include <array>
#include <cstdint>

namespace kaunter::sql {
namespace {

enum class Class : std::uint8_t {
  kPlain,
  kName,
  kDigit,
  kQuote,
  kBracket,
  kPoint,
  kDash,
  kSlash,
  kBad
};

constexpr std::array<Class, 256> MakeClasses() {
  std::array<Class, 256> classes{};
  for (std::size_t c = 0; c < classes.size(); ++c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80;
    classes[c] = letter || c == '_' || c == '#'                   ? Class::kName
                 : c >= '0' && c <= '9'                           ? Class::kDigit
                 : c < ' ' && c != '\t' && c != '\r' && c != '\n' ? Class::kBad
                                                                  : Class::kPlain;
  }
  classes['\''] = Class::kQuote;
  classes['"'] = classes['['] = Class::kBracket;
  classes['.'] = Class::kPoint;
  classes['-'] = Class::kDash;
  classes['/'] = Class::kSlash;
  classes['@'] = classes['$'] = Class::kBad;
  return classes;
}
constexpr auto kClasses = MakeClasses();

Class ClassOf(char c) { return kClasses[static_cast<unsigned char>(c)]; }

// Marks that no statement holds: characters below a blank end the quick look.
constexpr char kTextMark = '\x01';
constexpr char kIntegerMark = '\x02';
constexpr char kDecimalMark = '\x03';
constexpr std::size_t kMostDigits = 18;

}  // namespace

bool StatementKey::Read(std::string_view text) {
  key_.clear();
  literals_.clear();
  undoubled_.clear();
  if (text.find('\0') != std::string_view::npos) return false;
  std::size_t copied = 0;  // what stands before is in the key
  std::size_t at = 0;
  const auto copy = [&](std::size_t end) { key_.append(text, copied, end - copied); };
  while (at < text.size()) {
    const char next = at + 1 < text.size() ? text[at + 1] : '\0';
    switch (ClassOf(text[at])) {
      case Class::kPlain:
        ++at;
        break;
      case Class::kName:
        if (next == '\'' && (text[at] | 0x20) == 'n') {
          ++at;  // N'...': the letter stays in the key
          break;
        }
        do {
          ++at;
        } while (at < text.size() &&
                 (ClassOf(text[at]) == Class::kName || ClassOf(text[at]) == Class::kDigit));
        break;
      case Class::kBracket: {
        const char close = text[at] == '[' ? ']' : '"';
        at = text.find(close, at + 1);
        if (at == std::string_view::npos) return false;
        ++at;
        if (at < text.size() && text[at] == close) return false;  // a doubled mark
        break;
      }
      case Class::kDash:
      case Class::kSlash:
        if ((text[at] == '-' && next == '-') || (text[at] == '/' && next == '*')) return false;
        ++at;
        break;
      case Class::kPoint:
        if (ClassOf(next) != Class::kDigit) {
          ++at;
          break;
        }
        [[fallthrough]];
      case Class::kDigit:
        copy(at);
        if (!ReadNumber(text, &at)) return false;
        copied = at;
        break;
      case Class::kQuote:
        copy(at);
        if (!ReadText(text, &at)) return false;
        copied = at;
        break;
      case Class::kBad:
        return false;
    }
  }
  copy(at);
  return true;
}

bool StatementKey::ReadText(std::string_view text, std::size_t* at) {
  const std::size_t body = *at + 1;
  std::size_t end = text.find('\'', body);
  bool doubled = false;
  while (end != std::string_view::npos && end + 1 < text.size() && text[end + 1] == '\'') {
    doubled = true;
    end = text.find('\'', end + 2);
  }
  if (end == std::string_view::npos) return false;
  key_ += kTextMark;
  *at = end + 1;
  const std::string_view raw = text.substr(body, end - body);
  if (!doubled) {
    literals_.push_back(raw);
    return true;
  }
  std::string& plain = undoubled_.emplace_back();
  plain.reserve(raw.size());
  for (std::size_t i = 0; i < raw.size(); ++i) {
    plain += raw[i];
    if (raw[i] == '\'') ++i;
  }
  literals_.push_back(plain);
  return true;
}

bool StatementKey::ReadNumber(std::string_view text, std::size_t* at) {
  const std::size_t begin = *at;
  const auto digits = [&] {
    while (*at < text.size() && ClassOf(text[*at]) == Class::kDigit) ++*at;
  };
  digits();
  std::size_t decimals = 0;
  const bool point = *at < text.size() && text[*at] == '.';
  if (point) {
    const std::size_t first = ++*at;
    digits();
    decimals = *at - first;
  }
  // An exponent, a binary number or a name that clings to the digits.
  if (*at < text.size() && ClassOf(text[*at]) == Class::kName) return false;
  if (*at - begin > kMostDigits) return false;
  key_ += point ? kDecimalMark : kIntegerMark;
  if (point) key_ += static_cast<char>('0' + decimals);
  literals_.push_back(text.substr(begin, *at - begin));
  return true;
}

}  // namespace kaunter::sql
