#include "platform/sql/translator/lexer.h"

#include <algorithm>
#include <array>

#include "platform/sql/sql_error.h"
#include "platform/sql/text.h"

namespace kaunter::sql {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsHex(char c) { return IsDigit(c) || (LowerAscii(c) >= 'a' && LowerAscii(c) <= 'f'); }
// Bytes of UTF-8 beyond ASCII are letters of a name.
bool IsNameStart(char c) {
  return (LowerAscii(c) >= 'a' && LowerAscii(c) <= 'z') || c == '_' || c == '#' ||
         static_cast<unsigned char>(c) >= 0x80;
}
bool IsNamePart(char c) { return IsNameStart(c) || IsDigit(c) || c == '$' || c == '@'; }

struct KeywordEntry {
  std::string_view text;
  Keyword keyword;
};

constexpr KeywordEntry kKeywords[] = {
    {"add", Keyword::kAdd},
    {"all", Keyword::kAll},
    {"alter", Keyword::kAlter},
    {"and", Keyword::kAnd},
    {"as", Keyword::kAs},
    {"asc", Keyword::kAsc},
    {"begin", Keyword::kBegin},
    {"between", Keyword::kBetween},
    {"by", Keyword::kBy},
    {"case", Keyword::kCase},
    {"check", Keyword::kCheck},
    {"clustered", Keyword::kClustered},
    {"collate", Keyword::kCollate},
    {"column", Keyword::kColumn},
    {"commit", Keyword::kCommit},
    {"constraint", Keyword::kConstraint},
    {"create", Keyword::kCreate},
    {"cross", Keyword::kCross},
    {"declare", Keyword::kDeclare},
    {"default", Keyword::kDefault},
    {"delete", Keyword::kDelete},
    {"desc", Keyword::kDesc},
    {"distinct", Keyword::kDistinct},
    {"drop", Keyword::kDrop},
    {"else", Keyword::kElse},
    {"end", Keyword::kEnd},
    {"escape", Keyword::kEscape},
    {"except", Keyword::kExcept},
    {"exec", Keyword::kExec},
    {"execute", Keyword::kExecute},
    {"exists", Keyword::kExists},
    {"for", Keyword::kFor},
    {"foreign", Keyword::kForeign},
    {"from", Keyword::kFrom},
    {"full", Keyword::kFull},
    {"group", Keyword::kGroup},
    {"having", Keyword::kHaving},
    {"identity", Keyword::kIdentity},
    {"if", Keyword::kIf},
    {"in", Keyword::kIn},
    {"index", Keyword::kIndex},
    {"inner", Keyword::kInner},
    {"insert", Keyword::kInsert},
    {"intersect", Keyword::kIntersect},
    {"into", Keyword::kInto},
    {"is", Keyword::kIs},
    {"join", Keyword::kJoin},
    {"key", Keyword::kKey},
    {"left", Keyword::kLeft},
    {"like", Keyword::kLike},
    {"nonclustered", Keyword::kNonclustered},
    {"not", Keyword::kNot},
    {"null", Keyword::kNull},
    {"on", Keyword::kOn},
    {"option", Keyword::kOption},
    {"or", Keyword::kOr},
    {"order", Keyword::kOrder},
    {"outer", Keyword::kOuter},
    {"over", Keyword::kOver},
    {"percent", Keyword::kPercent},
    {"primary", Keyword::kPrimary},
    {"references", Keyword::kReferences},
    {"right", Keyword::kRight},
    {"rollback", Keyword::kRollback},
    {"select", Keyword::kSelect},
    {"set", Keyword::kSet},
    {"table", Keyword::kTable},
    {"then", Keyword::kThen},
    {"top", Keyword::kTop},
    {"tran", Keyword::kTran},
    {"transaction", Keyword::kTransaction},
    {"truncate", Keyword::kTruncate},
    {"union", Keyword::kUnion},
    {"unique", Keyword::kUnique},
    {"update", Keyword::kUpdate},
    {"use", Keyword::kUse},
    {"values", Keyword::kValues},
    {"view", Keyword::kView},
    {"when", Keyword::kWhen},
    {"where", Keyword::kWhere},
    {"with", Keyword::kWith},
};

constexpr std::size_t kLongestKeyword = 12;
constexpr std::size_t kSlots = 512;

constexpr std::size_t Slot(std::string_view text, char first, char second, char last) {
  return (text.size() * 67 + static_cast<unsigned char>(first) * 31 +
          static_cast<unsigned char>(second) * 7 + static_cast<unsigned char>(last)) %
         kSlots;
}

constexpr std::array<std::uint8_t, kSlots> MakeSlots() {
  std::array<std::uint8_t, kSlots> slots{};
  std::uint8_t number = 0;
  for (const KeywordEntry& entry : kKeywords) {
    ++number;
    std::size_t slot = Slot(entry.text, entry.text[0], entry.text[1], entry.text.back());
    while (slots[slot] != 0) slot = (slot + 1) % kSlots;
    slots[slot] = number;
  }
  return slots;
}
constexpr std::array<std::uint8_t, kSlots> kSlotTable = MakeSlots();

Keyword FindKeyword(std::string_view text) {
  if (text.size() < 2 || text.size() > kLongestKeyword) return Keyword::kNone;
  std::size_t slot = Slot(text, LowerAscii(text[0]), LowerAscii(text[1]), LowerAscii(text.back()));
  while (kSlotTable[slot] != 0) {
    const KeywordEntry& entry = kKeywords[kSlotTable[slot] - 1];
    if (SameName(entry.text, text)) return entry.keyword;
    slot = (slot + 1) % kSlots;
  }
  return Keyword::kNone;
}

// Types that carry a length or a scale in brackets.
bool IsSizedType(std::string_view name) {
  constexpr std::string_view kTypes[] = {
      "nvarchar",  "varchar", "decimal", "numeric", "char",      "nchar",     "dec",
      "varbinary", "binary",  "float",   "time",    "datetime2", "character", "datetimeoffset"};
  return std::any_of(std::begin(kTypes), std::end(kTypes),
                     [name](std::string_view type) { return SameName(type, name); });
}

}  // namespace

Token Lexer::Next() {
  SkipBlanks();
  Token token;
  token.begin = at_;
  if (at_ >= text_.size()) {
    token.end = at_;
    return token;
  }
  const char c = text_[at_];
  const char next = at_ + 1 < text_.size() ? text_[at_ + 1] : '\0';
  if (c == '\'') {
    token.kind = TokenKind::kText;
    ReadQuoted(token, '\'', at_ + 1);
  } else if ((c == 'N' || c == 'n') && next == '\'') {
    token.kind = TokenKind::kText;
    ReadQuoted(token, '\'', at_ + 2);
  } else if (IsNameStart(c)) {
    ReadName(token);
  } else if (IsDigit(c) || (c == '.' && IsDigit(next))) {
    ReadNumber(token);
  } else if (c == '[' || c == '"') {
    token.kind = TokenKind::kQuotedName;
    ReadQuoted(token, c == '[' ? ']' : '"', at_ + 1);
  } else if (c == '@') {
    token.kind = TokenKind::kVariable;
    do {
      ++at_;
    } while (at_ < text_.size() && IsNamePart(text_[at_]));
  } else {
    ReadSymbol(token);
  }
  token.end = at_;
  if (token.kind == TokenKind::kName || token.kind == TokenKind::kSymbol ||
      token.kind == TokenKind::kVariable || token.text.data() == nullptr) {
    token.text = text_.substr(token.begin, token.end - token.begin);
  }
  DecideParameter(token);
  Remember(token);
  return token;
}

void Lexer::StartStatement(const Token& first) {
  previous_ = Previous{};
  brace_before_ = false;
  depth_ = 0;
  type_depth_ = -1;
  order_depth_ = -1;
  Remember(first);
}

void Lexer::SkipBlanks() {
  while (at_ < text_.size()) {
    const char c = text_[at_];
    const char next = at_ + 1 < text_.size() ? text_[at_ + 1] : '\0';
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v') {
      ++at_;
    } else if (c == '-' && next == '-') {
      const std::size_t end = text_.find('\n', at_);
      at_ = end == std::string_view::npos ? text_.size() : end + 1;
    } else if (c == '/' && next == '*') {
      const std::size_t start = at_;
      int nested = 0;  // the server nests comments
      do {
        const std::string_view pair = text_.substr(at_, 2);
        if (pair == "/*") {
          ++nested;
          at_ += 2;
        } else if (pair == "*/") {
          --nested;
          at_ += 2;
        } else {
          ++at_;
        }
      } while (nested > 0 && at_ < text_.size());
      if (nested > 0) Fail(113, "Missing end comment mark '*/'.", text_, start);
    } else {
      return;
    }
  }
}

void Lexer::ReadQuoted(Token& token, char close, std::size_t body) {
  std::size_t at = body;
  bool doubled = false;
  for (;;) {
    at = text_.find(close, at);
    if (at == std::string_view::npos) {
      Fail(105, "Unclosed quotation mark after the character string.", text_, token.begin);
    }
    if (at + 1 >= text_.size() || text_[at + 1] != close) break;
    doubled = true;
    at += 2;
  }
  token.text = text_.substr(body, at - body);
  at_ = at + 1;
  if (doubled && token.kind == TokenKind::kQuotedName) {
    std::string& name = unescaped_.emplace_front();
    for (std::size_t i = 0; i < token.text.size(); ++i) {
      name += token.text[i];
      if (token.text[i] == close) ++i;
    }
    token.text = name;
  }
  if (token.kind == TokenKind::kQuotedName && token.text.empty()) {
    Fail(1038, "An object or column name is missing or empty.", text_, token.begin);
  }
}

void Lexer::ReadNumber(Token& token) {
  const auto digits = [this] {
    while (at_ < text_.size() && IsDigit(text_[at_])) ++at_;
  };
  if (text_[at_] == '0' && at_ + 1 < text_.size() && LowerAscii(text_[at_ + 1]) == 'x') {
    token.kind = TokenKind::kBinary;
    at_ += 2;
    while (at_ < text_.size() && IsHex(text_[at_])) ++at_;
    return;
  }
  token.kind = TokenKind::kInteger;
  digits();
  if (at_ - token.begin > 18) token.kind = TokenKind::kDecimal;
  if (at_ < text_.size() && text_[at_] == '.') {
    token.kind = TokenKind::kDecimal;
    const std::size_t point = at_++;
    digits();
    token.decimals = static_cast<int>(std::min<std::size_t>(at_ - point - 1, 38));
  }
  if (at_ < text_.size() && LowerAscii(text_[at_]) == 'e') {
    std::size_t exponent = at_ + 1;
    if (exponent < text_.size() && (text_[exponent] == '+' || text_[exponent] == '-')) ++exponent;
    if (exponent < text_.size() && IsDigit(text_[exponent])) {
      token.kind = TokenKind::kFloat;
      at_ = exponent;
      digits();
    }
  }
  token.text = text_.substr(token.begin, at_ - token.begin);
}

void Lexer::ReadName(Token& token) {
  token.kind = TokenKind::kName;
  while (at_ < text_.size() && IsNamePart(text_[at_])) ++at_;
  token.keyword = FindKeyword(text_.substr(token.begin, at_ - token.begin));
}

void Lexer::ReadSymbol(Token& token) {
  token.kind = TokenKind::kSymbol;
  const char c = text_[at_++];
  const char next = at_ < text_.size() ? text_[at_] : '\0';
  const auto pair = [&](char wanted, Symbol both, Symbol alone) {
    if (next != wanted) return alone;
    ++at_;
    return both;
  };
  switch (c) {
    case '(':
      token.symbol = Symbol::kOpen;
      return;
    case ')':
      token.symbol = Symbol::kClose;
      return;
    case ',':
      token.symbol = Symbol::kComma;
      return;
    case '.':
      token.symbol = Symbol::kDot;
      return;
    case ';':
      token.symbol = Symbol::kSemicolon;
      return;
    case '+':
      token.symbol = pair('=', Symbol::kPlusAssign, Symbol::kPlus);
      return;
    case '-':
      token.symbol = pair('=', Symbol::kMinusAssign, Symbol::kMinus);
      return;
    case '*':
      token.symbol = pair('=', Symbol::kStarAssign, Symbol::kStar);
      return;
    case '/':
      token.symbol = pair('=', Symbol::kSlashAssign, Symbol::kSlash);
      return;
    case '%':
      token.symbol = Symbol::kPercent;
      return;
    case '=':
      token.symbol = Symbol::kEqual;
      return;
    case '<':
      token.symbol = next == '>' ? pair('>', Symbol::kNotEqual, Symbol::kLess)
                                 : pair('=', Symbol::kLessEqual, Symbol::kLess);
      return;
    case '>':
      token.symbol = pair('=', Symbol::kGreaterEqual, Symbol::kGreater);
      return;
    case '!':
      if (next == '<') {  // "not less": greater or equal
        token.symbol = pair('<', Symbol::kGreaterEqual, Symbol::kNone);
      } else if (next == '>') {
        token.symbol = pair('>', Symbol::kLessEqual, Symbol::kNone);
      } else {
        token.symbol = pair('=', Symbol::kNotEqual, Symbol::kNone);
      }
      break;
    case '{':
      token.symbol = Symbol::kBraceOpen;
      return;
    case '}':
      token.symbol = Symbol::kBraceClose;
      return;
    case '&':
      token.symbol = Symbol::kAmpersand;
      return;
    case '|':
      token.symbol = Symbol::kPipe;
      return;
    case '^':
      token.symbol = Symbol::kCaret;
      return;
    case '~':
      token.symbol = Symbol::kTilde;
      return;
    default:
      break;
  }
  if (token.symbol == Symbol::kNone) {
    Fail(102, "Incorrect syntax near '" + std::string(1, c) + "'.", text_, token.begin);
  }
}

void Lexer::DecideParameter(Token& token) const {
  switch (token.kind) {
    case TokenKind::kText:
      // Behind a name, a bracket, another literal, END or AS stands the text of an alias.
      switch (previous_.kind) {
        case TokenKind::kName:
          token.parameter = previous_.keyword == Keyword::kNone
                                ? brace_before_
                                : previous_.keyword != Keyword::kAs &&
                                      previous_.keyword != Keyword::kEnd &&
                                      previous_.keyword != Keyword::kNull;
          return;
        case TokenKind::kSymbol:
          token.parameter =
              previous_.symbol != Symbol::kClose && previous_.symbol != Symbol::kBraceClose;
          return;
        case TokenKind::kEnd:
          token.parameter = true;
          return;
        default:
          return;
      }
    case TokenKind::kInteger:
      token.parameter =
          type_depth_ < 0 && !(order_depth_ == depth_ && (previous_.keyword == Keyword::kBy ||
                                                          previous_.symbol == Symbol::kComma));
      return;
    case TokenKind::kDecimal:
    case TokenKind::kFloat:
      token.parameter = true;
      return;
    default:
      return;
  }
}

void Lexer::Remember(const Token& token) {
  if (token.symbol == Symbol::kOpen) {
    ++depth_;
    if (type_depth_ < 0 && previous_.kind == TokenKind::kName && IsSizedType(previous_.text)) {
      type_depth_ = depth_;
    }
  } else if (token.symbol == Symbol::kClose) {
    if (type_depth_ == depth_) type_depth_ = -1;
    if (order_depth_ == depth_) order_depth_ = -1;
    --depth_;
  } else if (token.keyword == Keyword::kBy && previous_.keyword == Keyword::kOrder) {
    order_depth_ = depth_;
  } else if (token.keyword == Keyword::kSelect) {
    if (order_depth_ == depth_) order_depth_ = -1;
  }
  brace_before_ = previous_.symbol == Symbol::kBraceOpen;
  previous_ = {token.kind, token.keyword, token.symbol, token.text};
}

}  // namespace kaunter::sql
