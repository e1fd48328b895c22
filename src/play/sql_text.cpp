#include "play/sql_text.h"

#include <cstddef>

#include "platform/sql/text.h"
#include "platform/sql/translator/lexer.h"

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

bool Writes(std::string_view text) {
  using sql::Keyword;
  try {
    sql::Lexer lexer(text);
    bool first = true;
    for (auto token = lexer.Next(); token.kind != sql::TokenKind::kEnd; token = lexer.Next()) {
      if (token.symbol == sql::Symbol::kSemicolon) {
        first = true;
        continue;
      }
      const bool reads = token.keyword == Keyword::kSelect || token.keyword == Keyword::kWith;
      if (first && !reads) return true;
      first = false;
      switch (token.keyword) {
        case Keyword::kAlter:
        case Keyword::kBegin:
        case Keyword::kCommit:
        case Keyword::kCreate:
        case Keyword::kDelete:
        case Keyword::kExec:
        case Keyword::kExecute:
        case Keyword::kInsert:
        case Keyword::kInto:
        case Keyword::kRollback:
        case Keyword::kTruncate:
        case Keyword::kUpdate:
          return true;
        default:
          if (token.kind == sql::TokenKind::kName && sql::SameName(token.text, "drop")) return true;
      }
    }
    return false;
  } catch (const SqlError&) {
    return true;
  }
}

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
