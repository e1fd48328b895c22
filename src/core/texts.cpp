#include "core/texts.h"

#include <algorithm>
#include <filesystem>

#include "core/session.h"
#include "platform/sql/text.h"

namespace kaunter {
namespace {

char UpperCase(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

std::string Upper(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), UpperCase);
  return upper;
}

std::string Lower(std::string_view text) { return sql::LowerAscii(text); }

std::string Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

bool SameText(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return UpperCase(x) == UpperCase(y); });
}

std::string ApplyCapLock(const Session& session, std::string_view text) {
  return session.settings.CapLock ? Upper(text) : std::string(text);
}

int DaysInMonth(int month, int year) {
  switch (month) {
    case 2:
      return year % 4 == 0 ? 29 : 28;
    case 4:
    case 6:
    case 9:
    case 11:
      return 30;
    default:
      return 31;
  }
}

void EnsurePhotoFolder(const Session& session, std::string_view name) {
  std::filesystem::create_directories(std::filesystem::path(session.PhotoPath) / name);
}

}  // namespace kaunter
