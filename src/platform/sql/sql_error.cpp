#include "platform/sql/sql_error.h"

#include <fmt/format.h>

#include <algorithm>

namespace kaunter::sql {
namespace {

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Part of the text, never cutting a character in two.
std::string_view Slice(std::string_view text, std::size_t begin, std::size_t length) {
  begin = std::min(begin, text.size());
  while (begin > 0 && begin < text.size() && IsContinuation(text[begin])) --begin;
  std::size_t end = std::min(text.size(), begin + length);
  while (end < text.size() && IsContinuation(text[end])) ++end;
  return text.substr(begin, end - begin);
}

}  // namespace

void Fail(int number, std::string_view words, std::string_view statement, std::size_t place) {
  constexpr std::size_t kNear = 24;
  constexpr std::size_t kWhole = 600;
  constexpr std::size_t kAround = 200;
  place = std::min(place, statement.size());
  const std::string_view near = Slice(statement, place, kNear);
  const std::string where = near.empty() ? fmt::format("at {}, at the end", place + 1)
                                         : fmt::format("at {}, near '{}'", place + 1, near);
  std::string shown;
  if (statement.size() <= kWhole) {
    shown = statement;
  } else {
    const std::size_t begin = place > kAround ? place - kAround : 0;
    shown = fmt::format("{}{}...", begin > 0 ? "..." : "", Slice(statement, begin, 2 * kAround));
  }
  throw SqlError(number, fmt::format("{} ({}) in: {}", words, where, shown));
}

std::string BeingMovedWords(const std::string& database) {
  return fmt::format(
      "Lock request time out period exceeded: the office in '{}' is being moved to "
      "another database, and nothing is saved meanwhile. Try again when that is "
      "done.",
      database);
}

std::string VerbOf(std::string_view statement) {
  constexpr std::size_t kLongest = 10;
  const std::size_t blank = statement.find(' ');
  return std::string(statement.substr(0, blank > kLongest ? 0 : blank));
}

}  // namespace kaunter::sql
