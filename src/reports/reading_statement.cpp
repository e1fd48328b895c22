#include "reports/reading_statement.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "core/values.h"
#include "platform/sql/connection.h"
#include "platform/sql/translator/lexer.h"

namespace kaunter {
namespace {

using sql::Keyword;
using sql::Symbol;
using sql::Token;
using sql::TokenKind;

// All are reserved: a column of such a name stands in square brackets and is none of them.
constexpr std::string_view kNotForReading[] = {
    "ALTER",          "BACKUP",    "BEGIN",      "BULK",    "CHECKPOINT",
    "CLOSE",          "COMMIT",    "CREATE",     "DBCC",    "DEALLOCATE",
    "DECLARE",        "DELETE",    "DENY",       "DROP",    "DUMP",
    "EXEC",           "EXECUTE",   "GOTO",       "GRANT",   "IF",
    "INSERT",         "INTO",      "KILL",       "LOAD",    "OPEN",
    "OPENDATASOURCE", "OPENQUERY", "OPENROWSET", "PRINT",   "RAISERROR",
    "RECONFIGURE",    "RESTORE",   "RETURN",     "REVERT",  "REVOKE",
    "ROLLBACK",       "SAVE",      "SET",        "SETUSER", "SHUTDOWN",
    "TRUNCATE",       "UPDATE",    "UPDATETEXT", "USE",     "WAITFOR",
    "WHILE",          "WRITETEXT"};

bool NotForReading(std::string_view word) {
  return std::any_of(std::begin(kNotForReading), std::end(kNotForReading),
                     [&](std::string_view one) { return SameText(one, word); });
}

// A server may take a sign beyond ASCII for a blank: each part of such a name is looked at.
std::optional<std::string> ForbiddenPart(std::string_view name) {
  for (std::size_t begin = 0; begin < name.size();) {
    std::size_t end = begin;
    while (end < name.size() && static_cast<unsigned char>(name[end]) < 0x80) ++end;
    const std::string_view part = name.substr(begin, end - begin);
    if (NotForReading(part)) return std::string(part);
    begin = end + 1;
  }
  return std::nullopt;
}

class Reader {
 public:
  explicit Reader(std::string_view statement) : lexer_(statement) {}

  std::optional<StatementFault> Run() {
    // An engine may take one for the end of a comment.
    const std::size_t lone = LoneReturn();
    if (lone != std::string_view::npos)
      return StatementFault{lone, "a line break of another system"};
    try {
      for (Token token = lexer_.Next(); token.kind != TokenKind::kEnd; token = lexer_.Next()) {
        if (auto fault = Look(token)) return StatementFault{token.begin, *fault};
        before_ = token;
      }
    } catch (const SqlError& error) {
      return StatementFault{before_.end, error.what()};
    }
    if (before_.kind == TokenKind::kEnd) return StatementFault{0, kBegins};
    return std::nullopt;
  }

 private:
  std::size_t LoneReturn() const {
    const std::string_view text = lexer_.text();
    std::size_t at = text.find('\r');
    while (at != std::string_view::npos && text.substr(at + 1, 1) == "\n")
      at = text.find('\r', at + 1);
    return at;
  }

  static constexpr const char* kBegins =
      "a report only reads: its query is one statement that begins with SELECT or WITH";

  std::optional<std::string> Look(const Token& token) {
    const bool first = before_.kind == TokenKind::kEnd;
    if (first) {
      with_ = token.keyword == Keyword::kWith;
      if (!with_ && token.keyword != Keyword::kSelect) return kBegins;
    }
    if (ended_ || (token.keyword == Keyword::kSelect && depth_ == 0 && !first && !GoesOn())) {
      return "a report only reads, by one statement: a second one begins here";
    }
    ended_ = token.symbol == Symbol::kSemicolon;
    if (token.symbol == Symbol::kOpen) ++depth_;
    if (token.symbol == Symbol::kClose) --depth_;
    if (token.keyword == Keyword::kSelect && depth_ == 0) with_ = false;
    if (token.kind != TokenKind::kName) return std::nullopt;
    // "1eDELETE" is a number and a word to a server, and may be another word here.
    if (IsNumber(before_) && before_.end == token.begin)
      return "a blank is missing behind a number";
    const auto part = ForbiddenPart(token.text);
    if (!part) return std::nullopt;
    return fmt::format("a report only reads, and {} is no word of a statement that does", *part);
  }

  static bool IsNumber(const Token& token) {
    return token.kind == TokenKind::kInteger || token.kind == TokenKind::kDecimal ||
           token.kind == TokenKind::kFloat || token.kind == TokenKind::kBinary;
  }

  // A SELECT that belongs to the statement before it: the next part of a union, or what the tables
  // of a WITH are for.
  bool GoesOn() const {
    switch (before_.keyword) {
      case Keyword::kUnion:
      case Keyword::kAll:
      case Keyword::kExcept:
      case Keyword::kIntersect:
        return true;
      default:
        return with_ && before_.symbol == Symbol::kClose;
    }
  }

  sql::Lexer lexer_;
  Token before_;
  int depth_ = 0;
  bool with_ = false;   // the SELECT of a WITH is still to come
  bool ended_ = false;  // by a semicolon
};

// Behind the first SELECT that stands in no brackets, and what belongs to it.
std::size_t PlaceOfValues(std::string_view statement) {
  sql::Lexer lexer(statement);
  int depth = 0;
  Token token = lexer.Next();
  for (; token.kind != TokenKind::kEnd; token = lexer.Next()) {
    if (token.symbol == Symbol::kOpen) ++depth;
    if (token.symbol == Symbol::kClose) --depth;
    if (depth == 0 && token.keyword == Keyword::kSelect) break;
  }
  std::size_t place = token.end;
  for (token = lexer.Next(); token.kind != TokenKind::kEnd; token = lexer.Next()) {
    if (token.keyword == Keyword::kTop) {
      place = lexer.Next().end;
    } else if (token.keyword == Keyword::kDistinct || token.keyword == Keyword::kAll) {
      place = token.end;
    } else {
      break;
    }
  }
  return place;
}

}  // namespace

std::string WithMoreRead(std::string_view statement, std::string_view value) {
  const std::size_t place = PlaceOfValues(statement);
  std::string more(statement.substr(0, place));
  more.append(" ").append(value).append(",").append(statement.substr(place));
  return more;
}

std::optional<StatementFault> FaultOfReading(std::string_view statement) {
  return Reader(statement).Run();
}

}  // namespace kaunter
