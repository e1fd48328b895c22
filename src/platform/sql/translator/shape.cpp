// Cutting a batch into statements and taking the literals out of each.
#include "platform/sql/sql_error.h"
#include "platform/sql/translator/lexer.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {
namespace {

bool BeginsStatement(Keyword keyword) {
  switch (keyword) {
    case Keyword::kSelect:
    case Keyword::kInsert:
    case Keyword::kUpdate:
    case Keyword::kDelete:
    case Keyword::kCreate:
    case Keyword::kAlter:
    case Keyword::kDrop:
    case Keyword::kTruncate:
    case Keyword::kBegin:
    case Keyword::kCommit:
    case Keyword::kRollback:
    case Keyword::kSet:
    case Keyword::kExec:
    case Keyword::kExecute:
    case Keyword::kDeclare:
    case Keyword::kIf:
    case Keyword::kUse:
      return true;
    default:
      return false;
  }
}

// Decides, keyword by keyword, whether a word that can begin a statement does begin the next one.
class Boundary {
 public:
  void Start(Keyword first) {
    first_ = first;
    tail_taken_ = false;
  }

  bool Begins(Keyword keyword, Keyword previous) {
    if (!BeginsStatement(keyword)) return false;
    switch (keyword) {
      case Keyword::kSelect:
        if (previous == Keyword::kUnion || previous == Keyword::kAll ||
            previous == Keyword::kExcept || previous == Keyword::kIntersect ||
            previous == Keyword::kAs) {
          return false;
        }
        return !TakeTail(first_ == Keyword::kInsert || first_ == Keyword::kWith);
      case Keyword::kSet:
        if (previous == Keyword::kDelete || previous == Keyword::kUpdate) return false;
        return !TakeTail(first_ == Keyword::kUpdate || first_ == Keyword::kWith);
      case Keyword::kInsert:
        return !TakeTail(first_ == Keyword::kWith);
      case Keyword::kUpdate:
      case Keyword::kDelete:
        // ON DELETE CASCADE, FOR UPDATE
        if (previous == Keyword::kOn || previous == Keyword::kFor) return false;
        return !TakeTail(first_ == Keyword::kWith);
      case Keyword::kAlter:
      case Keyword::kDrop:
        return !TakeTail(first_ == Keyword::kAlter);
      default:
        return true;
    }
  }
  // VALUES closes an INSERT against a following SELECT.
  void SawValues() { tail_taken_ = true; }

 private:
  bool TakeTail(bool possible) {
    if (!possible || tail_taken_) return false;
    tail_taken_ = true;
    return true;
  }

  Keyword first_ = Keyword::kNone;
  bool tail_taken_ = false;
};

void AppendLiteral(const Token& token, Shape& shape) {
  switch (token.kind) {
    case TokenKind::kText: {
      shape.key += '\'';
      std::string& value = shape.literals.emplace_back();
      std::size_t at = 0;
      for (;;) {
        const std::size_t quote = token.text.find('\'', at);
        if (quote == std::string_view::npos) break;
        value.append(token.text, at, quote + 1 - at);
        at = quote + 2;
      }
      value.append(token.text, at);
      return;
    }
    case TokenKind::kInteger:
      shape.key += '0';
      break;
    case TokenKind::kDecimal:
      shape.key += "0.";
      if (token.decimals > 9) shape.key += static_cast<char>('0' + token.decimals / 10);
      shape.key += static_cast<char>('0' + token.decimals % 10);
      break;
    default:
      shape.key += "0e";
      break;
  }
  shape.literals.emplace_back(token.text);
}

}  // namespace

std::vector<Shape> SplitBatch(std::string_view batch, std::vector<std::string>* statements) {
  // SQLite would read a statement up to it only.
  if (batch.find('\0') != std::string_view::npos) {
    throw SqlError(102, "Incorrect syntax: the statement holds a character of the value zero.");
  }
  std::vector<Shape> shapes;
  Lexer lexer(batch);
  Boundary boundary;
  std::size_t begin = 0;     // of the current statement
  std::size_t last_end = 0;  // of the token before
  Keyword previous = Keyword::kNone;
  int depth = 0;
  bool open = false;
  const auto close = [&] {
    if (!open) return;
    open = false;
    shapes.back().begin = begin;
    shapes.back().end = last_end;
    if (statements != nullptr) statements->emplace_back(batch.substr(begin, last_end - begin));
  };
  for (;;) {
    const Token token = lexer.Next();
    if (token.kind == TokenKind::kEnd) break;
    if (token.symbol == Symbol::kSemicolon && depth == 0) {
      close();
      continue;
    }
    if (token.symbol == Symbol::kOpen) ++depth;
    if (token.symbol == Symbol::kClose && depth > 0) --depth;
    if (open && depth == 0 && token.keyword != Keyword::kNone) {
      if (boundary.Begins(token.keyword, previous)) {
        close();
      } else if (token.keyword == Keyword::kValues) {
        boundary.SawValues();
      }
    }
    if (!open) {
      open = true;
      begin = token.begin;
      depth = token.symbol == Symbol::kOpen ? 1 : 0;
      boundary.Start(token.keyword);
      lexer.StartStatement(token);
      shapes.emplace_back().key.reserve(std::min<std::size_t>(batch.size() - begin, 512));
    }
    Shape& shape = shapes.back();
    if (token.begin != last_end && !shape.key.empty()) shape.key += ' ';
    if (token.parameter) {
      AppendLiteral(token, shape);
    } else {
      shape.key.append(batch, token.begin, token.end - token.begin);
    }
    last_end = token.end;
    previous = token.keyword;
  }
  close();
  return shapes;
}

}  // namespace kaunter::sql
