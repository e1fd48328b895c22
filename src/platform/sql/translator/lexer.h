// Lexer: T-SQL text to tokens, one at a time, without copying the text.
//
// It also decides which literals of a statement may become bound parameters, since the splitter of
// batches and the parser must agree on their numbering: everything but the text of an alias, the
// length of a type and a position in ORDER BY.
#pragma once

#include <cstdint>
#include <forward_list>
#include <string>
#include <string_view>

namespace kaunter::sql {

enum class TokenKind : std::uint8_t {
  kEnd,
  kName,        // bare; `keyword` tells whether it is a reserved word
  kQuotedName,  // [..] or ".."
  kText,        // '..' or N'..'; text is what stands between the quotes, quotes still doubled
  kInteger,
  kDecimal,
  kFloat,
  kBinary,    // 0x..
  kVariable,  // @name, @@name
  kSymbol
};

// The reserved words that the grammar knows.
enum class Keyword : std::uint8_t {
  kNone,
  kAdd,
  kAll,
  kAlter,
  kAnd,
  kAs,
  kAsc,
  kBegin,
  kBetween,
  kBy,
  kCase,
  kCheck,
  kClustered,
  kCollate,
  kColumn,
  kCommit,
  kConstraint,
  kCreate,
  kCross,
  kDeclare,
  kDefault,
  kDelete,
  kDesc,
  kDistinct,
  kDrop,
  kElse,
  kEnd,
  kEscape,
  kExcept,
  kExec,
  kExecute,
  kExists,
  kFor,
  kForeign,
  kFrom,
  kFull,
  kGroup,
  kHaving,
  kIdentity,
  kIf,
  kIn,
  kIndex,
  kInner,
  kInsert,
  kIntersect,
  kInto,
  kIs,
  kJoin,
  kKey,
  kLeft,
  kLike,
  kNonclustered,
  kNot,
  kNull,
  kOn,
  kOption,
  kOr,
  kOrder,
  kOuter,
  kOver,
  kPercent,
  kPrimary,
  kReferences,
  kRight,
  kRollback,
  kSelect,
  kSet,
  kTable,
  kThen,
  kTop,
  kTran,
  kTransaction,
  kTruncate,
  kUnion,
  kUnique,
  kUpdate,
  kUse,
  kValues,
  kView,
  kWhen,
  kWhere,
  kWith
};

enum class Symbol : std::uint8_t {
  kNone,
  kOpen,   // (
  kClose,  // )
  kComma,
  kDot,
  kSemicolon,
  kPlus,
  kMinus,
  kStar,
  kSlash,
  kPercent,
  kEqual,
  kNotEqual,  // <> and !=
  kLess,
  kLessEqual,
  kGreater,
  kGreaterEqual,
  kPlusAssign,  // +=
  kMinusAssign,
  kStarAssign,
  kSlashAssign,
  kBraceOpen,
  kBraceClose,
  kAmpersand,
  kPipe,
  kCaret,
  kTilde
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  Keyword keyword = Keyword::kNone;
  Symbol symbol = Symbol::kNone;
  bool parameter = false;  // a literal that may be bound
  int decimals = 0;        // kDecimal: digits behind the point
  std::size_t begin = 0;   // place in the text, and one past the end
  std::size_t end = 0;
  std::string_view text;  // the token without its quotes, brackets or N
};

class Lexer {
 public:
  explicit Lexer(std::string_view text) : text_(text) {}

  // Throws SqlError 105 for a text, a name or a comment without its end, 102 for a character that
  // begins no token.
  Token Next();
  // Begins a new statement: what was seen before no longer decides about parameters. `first` is the
  // token that the statement begins with.
  void StartStatement(const Token& first);
  std::string_view text() const { return text_; }

 private:
  void SkipBlanks();
  void ReadQuoted(Token& token, char close, std::size_t body);
  void ReadNumber(Token& token);
  void ReadName(Token& token);
  void ReadSymbol(Token& token);
  void DecideParameter(Token& token) const;
  void Remember(const Token& token);

  std::string_view text_;
  std::size_t at_ = 0;
  std::forward_list<std::string> unescaped_;  // names that hold a doubled bracket or quote

  // What is remembered of the token before.
  struct Previous {
    TokenKind kind = TokenKind::kEnd;
    Keyword keyword = Keyword::kNone;
    Symbol symbol = Symbol::kNone;
    std::string_view text;
  };
  Previous previous_;
  bool brace_before_ = false;  // the token before the previous one was {
  int depth_ = 0;
  int type_depth_ = -1;   // inside the brackets of a type's length, at this depth
  int order_depth_ = -1;  // inside an ORDER BY at this depth
};

}  // namespace kaunter::sql
