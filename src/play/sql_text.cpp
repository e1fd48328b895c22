#include "play/sql_text.h"

#include <cstddef>

namespace kaunter {
namespace {

std::string MoneyText(Money money) {
  std::string text = money.ToText();
  const std::size_t point = text.find('.');
  if (point == std::string::npos) return text + ".00";
  if (text.size() - point - 1 < 2) text += '0';
  return text;
}

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '\t':
        escaped += "\\t";
        break;
      case '\r':
        escaped += "\\r";
        break;
      case '\n':
        escaped += "\\n";
        break;
      case '\\':
        escaped += "\\\\";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

}  // namespace

std::string SqlText(const Value& value) {
  if (const Money* money = value.AsMoney()) return MoneyText(*money);
  return value.ToText();
}

std::string SqlRowLine(const std::vector<Value>& row) {
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (i > 0) line += '\t';
    line += Escaped(SqlText(row[i]));
  }
  return line;
}

}  // namespace kaunter
