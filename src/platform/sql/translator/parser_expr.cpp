// The parser's expressions.
#include <algorithm>
#include <array>

#include "platform/sql/sql_error.h"
#include "platform/sql/text.h"
#include "platform/sql/translator/parser.h"

namespace kaunter::sql {
namespace {

constexpr int kTallest = 400;  // levels of a tree that grows without brackets: a+b+c...

Op CompareOp(Symbol symbol) {
  switch (symbol) {
    case Symbol::kEqual:
      return Op::kEqual;
    case Symbol::kNotEqual:
      return Op::kNotEqual;
    case Symbol::kLess:
      return Op::kLess;
    case Symbol::kLessEqual:
      return Op::kLessEqual;
    case Symbol::kGreater:
      return Op::kGreater;
    case Symbol::kGreaterEqual:
      return Op::kGreaterEqual;
    default:
      return Op::kNone;
  }
}

bool IsAggregate(std::string_view name) {
  constexpr std::array<std::string_view, 6> kAggregates = {"count", "sum", "avg",
                                                           "min",   "max", "count_big"};
  return std::any_of(kAggregates.begin(), kAggregates.end(),
                     [name](std::string_view known) { return SameName(known, name); });
}

bool IsRanking(std::string_view name) {
  return SameName(name, "row_number") || SameName(name, "rank") || SameName(name, "dense_rank") ||
         SameName(name, "ntile");
}

}  // namespace

ExprPtr Parser::Make(ExprKind kind, std::size_t place) const {
  ExprPtr expr = std::make_unique<Expr>();
  expr->kind = kind;
  expr->place = place;
  return expr;
}

void Parser::CountDepth(int depth) {
  if (depth > kTallest) {
    Fail(191, "Some part of your SQL statement is nested too deeply.", statement_, token_.begin);
  }
  deepest_ = std::max(deepest_, depth);
}

void Parser::Give(Expr& expr, ExprPtr argument) {
  expr.depth = std::max(expr.depth, static_cast<std::uint16_t>(argument->depth + 1));
  CountDepth(expr.depth);
  expr.args.push_back(std::move(argument));
}

void Parser::GiveSelect(Expr& expr) {
  expr.select = ParseSelect();
  expr.depth = std::max(expr.depth, static_cast<std::uint16_t>(expr.select->depth + 1));
  CountDepth(expr.depth);
}

ExprPtr Parser::ParseExpr() {
  const Descent descent(*this);
  ExprPtr first = ParseAnd();
  if (!At(Keyword::kOr)) return first;
  ExprPtr expr = Make(ExprKind::kOr, first->place);
  Give(*expr, std::move(first));
  while (Accept(Keyword::kOr)) Give(*expr, ParseAnd());
  return expr;
}

ExprPtr Parser::ParseAnd() {
  ExprPtr first = ParseNot();
  if (!At(Keyword::kAnd)) return first;
  ExprPtr expr = Make(ExprKind::kAnd, first->place);
  Give(*expr, std::move(first));
  while (Accept(Keyword::kAnd)) Give(*expr, ParseNot());
  return expr;
}

ExprPtr Parser::ParseNot() {
  if (!At(Keyword::kNot)) return ParsePredicate();
  const Descent descent(*this);
  ExprPtr expr = Make(ExprKind::kNot, token_.begin);
  Advance();
  Give(*expr, ParseNot());
  return expr;
}

ExprPtr Parser::ParsePredicate() {
  ExprPtr left = ParseSum();
  for (;;) {
    const std::size_t place = token_.begin;
    const Op compare = token_.kind == TokenKind::kSymbol ? CompareOp(token_.symbol) : Op::kNone;
    if (compare != Op::kNone) {
      Advance();
      if (At(Keyword::kAll) || AtWord("any") || AtWord("some")) {
        NotSupported("ALL, ANY and SOME");
      }
      ExprPtr expr = Make(ExprKind::kCompare, place);
      expr->op = compare;
      Give(*expr, std::move(left));
      Give(*expr, ParseSum());
      left = std::move(expr);
      continue;
    }
    if (At(Keyword::kIs)) {
      Advance();
      ExprPtr expr = Make(ExprKind::kIsNull, place);
      expr->negated = Accept(Keyword::kNot);
      Expect(Keyword::kNull);
      Give(*expr, std::move(left));
      left = std::move(expr);
      continue;
    }
    const bool negated =
        At(Keyword::kNot) && (next_.keyword == Keyword::kIn || next_.keyword == Keyword::kLike ||
                              next_.keyword == Keyword::kBetween);
    if (negated) Advance();
    if (Accept(Keyword::kLike)) {
      ExprPtr expr = Make(ExprKind::kLike, place);
      expr->negated = negated;
      Give(*expr, std::move(left));
      Give(*expr, ParseSum());
      if (Accept(Keyword::kEscape)) Give(*expr, ParseSum());
      left = std::move(expr);
    } else if (Accept(Keyword::kBetween)) {
      ExprPtr expr = Make(ExprKind::kBetween, place);
      expr->negated = negated;
      Give(*expr, std::move(left));
      Give(*expr, ParseSum());
      Expect(Keyword::kAnd);
      Give(*expr, ParseSum());
      left = std::move(expr);
    } else if (Accept(Keyword::kIn)) {
      const bool select = At(Symbol::kOpen) && next_.keyword == Keyword::kSelect;
      ExprPtr expr = Make(select ? ExprKind::kInSelect : ExprKind::kInList, place);
      expr->negated = negated;
      Give(*expr, std::move(left));
      Expect(Symbol::kOpen);
      if (select) {
        GiveSelect(*expr);
      } else {
        do {
          Give(*expr, ParseExpr());
        } while (Accept(Symbol::kComma));
      }
      Expect(Symbol::kClose);
      left = std::move(expr);
    } else {
      return left;
    }
  }
}

ExprPtr Parser::ParseSum() {
  ExprPtr left = ParseProduct();
  for (;;) {
    Op op = Op::kNone;
    if (At(Symbol::kPlus)) op = Op::kAdd;
    if (At(Symbol::kMinus)) op = Op::kSubtract;
    if (At(Symbol::kAmpersand) || At(Symbol::kPipe) || At(Symbol::kCaret)) {
      NotSupported("operators on bits");
    }
    if (op == Op::kNone) return left;
    ExprPtr expr = Make(ExprKind::kBinary, token_.begin);
    Advance();
    expr->op = op;
    Give(*expr, std::move(left));
    Give(*expr, ParseProduct());
    left = std::move(expr);
  }
}

ExprPtr Parser::ParseProduct() {
  ExprPtr left = ParseUnary();
  for (;;) {
    Op op = Op::kNone;
    if (At(Symbol::kStar)) op = Op::kMultiply;
    if (At(Symbol::kSlash)) op = Op::kDivide;
    if (At(Symbol::kPercent)) op = Op::kModulo;
    if (op == Op::kNone) return left;
    ExprPtr expr = Make(ExprKind::kBinary, token_.begin);
    Advance();
    expr->op = op;
    Give(*expr, std::move(left));
    Give(*expr, ParseUnary());
    left = std::move(expr);
  }
}

ExprPtr Parser::ParseUnary() {
  if (At(Symbol::kMinus) || At(Symbol::kPlus)) {
    const Descent descent(*this);
    ExprPtr expr = Make(At(Symbol::kMinus) ? ExprKind::kNegate : ExprKind::kPlus, token_.begin);
    Advance();
    Give(*expr, ParseUnary());
    return expr;
  }
  if (At(Symbol::kTilde)) NotSupported("operators on bits");
  ExprPtr expr = ParsePrimary();
  if (Accept(Keyword::kCollate)) Name();  // texts always compare by the one collation
  return expr;
}

ExprPtr Parser::ParsePrimary() {
  switch (token_.kind) {
    case TokenKind::kText:
    case TokenKind::kInteger:
    case TokenKind::kDecimal:
    case TokenKind::kFloat:
    case TokenKind::kBinary:
      return ParseLiteral();
    case TokenKind::kVariable: {
      ExprPtr expr = Make(ExprKind::kFunction, token_.begin);
      if (!SameName(token_.text, "@@identity") && !SameName(token_.text, "@@rowcount")) {
        Fail(137, "Must declare the scalar variable \"" + std::string(token_.text) + "\".",
             statement_, token_.begin);
      }
      expr->text = token_.text;
      Advance();
      return expr;
    }
    case TokenKind::kQuotedName:
      return ParseNamed();
    case TokenKind::kSymbol:
      if (At(Symbol::kBraceOpen)) return ParseBrace();
      if (At(Symbol::kOpen)) {
        const Descent descent(*this);
        const std::size_t place = token_.begin;
        Advance();
        ExprPtr expr;
        if (At(Keyword::kSelect)) {
          expr = Make(ExprKind::kSubquery, place);
          GiveSelect(*expr);
        } else {
          expr = ParseExpr();
        }
        Expect(Symbol::kClose);
        return expr;
      }
      SyntaxError();
    case TokenKind::kName:
      break;
    case TokenKind::kEnd:
      SyntaxError();
  }
  const std::size_t place = token_.begin;
  switch (token_.keyword) {
    case Keyword::kNone:
      return ParseNamed();
    case Keyword::kNull:
      Advance();
      return Make(ExprKind::kNull, place);
    case Keyword::kCase:
      return ParseCase();
    case Keyword::kExists: {
      Advance();
      ExprPtr expr = Make(ExprKind::kExists, place);
      Expect(Symbol::kOpen);
      GiveSelect(*expr);
      Expect(Symbol::kClose);
      return expr;
    }
    case Keyword::kLeft:
    case Keyword::kRight: {
      if (next_.symbol != Symbol::kOpen) SyntaxError();
      const std::string_view name = token_.text;
      Advance();
      return ParseCall(name, place);
    }
    default:
      SyntaxError();
  }
}

ExprPtr Parser::ParseLiteral() {
  ExprPtr expr = Make(ExprKind::kLiteral, token_.begin);
  expr->literal_kind = token_.kind;
  expr->literal = literal_;
  expr->text = token_.text;
  expr->scale = token_.decimals;
  Advance();
  return expr;
}

ExprPtr Parser::ParseCase() {
  const Descent descent(*this);
  ExprPtr expr = Make(ExprKind::kCase, token_.begin);
  Advance();
  if (!At(Keyword::kWhen)) {
    expr->has_operand = true;
    Give(*expr, ParseExpr());
  }
  if (!At(Keyword::kWhen)) SyntaxError();
  while (Accept(Keyword::kWhen)) {
    Give(*expr, ParseExpr());
    Expect(Keyword::kThen);
    Give(*expr, ParseExpr());
  }
  if (Accept(Keyword::kElse)) {
    expr->has_else = true;
    Give(*expr, ParseExpr());
  }
  Expect(Keyword::kEnd);
  return expr;
}

// A column (name, t.name, dbo.t.name) or a call.
ExprPtr Parser::ParseNamed() {
  const std::size_t place = token_.begin;
  const bool quoted = token_.kind == TokenKind::kQuotedName;
  std::string_view name = Name();
  if (At(Symbol::kOpen) && !quoted) return ParseCall(name, place);
  if (!quoted && !At(Symbol::kDot) && SameName(name, "current_timestamp")) {
    ExprPtr expr = Make(ExprKind::kFunction, place);
    expr->text = "getdate";
    return expr;
  }
  ExprPtr expr = Make(ExprKind::kColumn, place);
  for (int parts = 1; At(Symbol::kDot); ++parts) {
    if (parts > 3) SyntaxError();
    Advance();
    expr->qualifier = name;
    if (At(Symbol::kStar)) {
      Advance();
      expr->kind = ExprKind::kStar;
      return expr;
    }
    name = Name();
    if (At(Symbol::kOpen)) NotSupported("functions of a schema");
  }
  expr->text = name;
  return expr;
}

ExprPtr Parser::ParseCall(std::string_view name, std::size_t place) {
  const Descent descent(*this);
  Expect(Symbol::kOpen);
  if (SameName(name, "convert")) return ParseConvert(false, place);
  if (SameName(name, "cast")) return ParseConvert(true, place);
  const bool aggregate = IsAggregate(name);
  ExprPtr expr = Make(aggregate ? ExprKind::kAggregate : ExprKind::kFunction, place);
  expr->text = name;
  if (aggregate && At(Symbol::kStar)) {
    Advance();
    if (!SameName(name, "count") && !SameName(name, "count_big")) SyntaxError();
  } else if (!At(Symbol::kClose)) {
    if (aggregate) {
      expr->distinct = Accept(Keyword::kDistinct);
      if (!expr->distinct) Accept(Keyword::kAll);
    }
    do {
      Give(*expr, ParseExpr());
    } while (Accept(Symbol::kComma));
  }
  Expect(Symbol::kClose);
  if (aggregate && expr->args.size() > 1) {
    Fail(174, "The " + std::string(name) + " function requires 1 argument(s).", statement_, place);
  }
  if (At(Keyword::kOver)) return ParseWindow(std::move(expr));
  if (IsRanking(name)) {
    Fail(10753, "The function '" + std::string(name) + "' must have an OVER clause.", statement_,
         place);
  }
  return expr;
}

ExprPtr Parser::ParseConvert(bool cast, std::size_t place) {
  ExprPtr expr = Make(ExprKind::kConvert, place);
  if (cast) {
    Give(*expr, ParseExpr());
    Expect(Keyword::kAs);
  }
  const std::size_t type_place = token_.begin;
  const std::string type = TypeName();
  expr->target = ParseType(type);
  if (expr->target.kind == TypeKind::kUnknown) {
    Fail(243, "Type " + type + " is not a defined system type.", statement_, type_place);
  }
  // Without a length a converted text has 30 characters.
  if (expr->target.kind == TypeKind::kText && type.find('(') == std::string::npos &&
      type.find("text") == std::string::npos) {
    expr->target.width = 30;
  }
  if (!cast) {
    Expect(Symbol::kComma);
    Give(*expr, ParseExpr());
    if (Accept(Symbol::kComma)) Give(*expr, ParseExpr());
  }
  Expect(Symbol::kClose);
  return expr;
}

ExprPtr Parser::ParseWindow(ExprPtr call) {
  Expect(Keyword::kOver);
  Expect(Symbol::kOpen);
  call->own_args = call->args.size();
  if (call->distinct) NotSupported("DISTINCT with OVER");
  if (call->kind == ExprKind::kFunction && !IsRanking(call->text)) {
    Fail(195, "'" + std::string(call->text) + "' is not a recognized function name.", statement_,
         call->place);
  }
  call->kind = ExprKind::kWindow;
  if (AcceptWord("partition")) {
    Expect(Keyword::kBy);
    do {
      Give(*call, ParseExpr());
      ++call->partition_args;
    } while (Accept(Symbol::kComma));
  }
  if (Accept(Keyword::kOrder)) {
    Expect(Keyword::kBy);
    do {
      Give(*call, ParseExpr());
      call->descending.push_back(At(Keyword::kDesc));
      if (!Accept(Keyword::kDesc)) Accept(Keyword::kAsc);
    } while (Accept(Symbol::kComma));
  }
  Expect(Symbol::kClose);
  return call;
}

// { ts '...' }, { d '...' }, { t '...' }, { fn name(...) }
ExprPtr Parser::ParseBrace() {
  const Descent descent(*this);
  const std::size_t place = token_.begin;
  Advance();
  if (AcceptWord("fn")) {
    ExprPtr expr = ParsePrimary();
    Expect(Symbol::kBraceClose);
    return expr;
  }
  const bool date_only = AtWord("d");
  if (!date_only && !AtWord("ts") && !AtWord("t")) SyntaxError();
  Advance();
  if (token_.kind != TokenKind::kText) SyntaxError();
  ExprPtr expr = Make(ExprKind::kConvert, place);
  expr->target.kind = TypeKind::kDateTime;
  Give(*expr, ParseLiteral());
  Expect(Symbol::kBraceClose);
  return expr;
}

}  // namespace kaunter::sql
