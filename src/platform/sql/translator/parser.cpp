#include "platform/sql/translator/parser.h"

#include <array>

#include "platform/sql/sql_error.h"
#include "platform/sql/text.h"

namespace kaunter::sql {

namespace {
constexpr int kDeepest = 200;
}

Parser::Descent::Descent(Parser& parser) : parser_(parser) {
  if (++parser_.depth_ > kDeepest) {
    --parser_.depth_;
    Fail(191, "Some part of your SQL statement is nested too deeply.", parser_.statement_,
         parser_.token_.begin);
  }
}

void Parser::Advance() {
  token_ = next_;
  literal_ = next_literal_;
  next_ = lexer_.Next();
  next_literal_ = next_.parameter ? literals_++ : -1;
}

void Parser::SyntaxError() const {
  if (token_.kind == TokenKind::kEnd) {
    Fail(102, "Incorrect syntax at the end of the statement.", statement_, token_.begin);
  }
  const bool keyword = token_.keyword != Keyword::kNone;
  const std::string near(statement_.substr(token_.begin, token_.end - token_.begin));
  Fail(102,
       keyword ? "Incorrect syntax near the keyword '" + near + "'."
               : "Incorrect syntax near '" + near.substr(0, 60) + "'.",
       statement_, token_.begin);
}

void Parser::NotSupported(std::string_view what) const {
  Fail(102, "Incorrect syntax: the embedded database does not know " + std::string(what) + ".",
       statement_, token_.begin);
}

bool Parser::AtWord(std::string_view word) const {
  return token_.kind == TokenKind::kName && SameName(token_.text, word);
}

bool Parser::AtName() const {
  return token_.kind == TokenKind::kQuotedName ||
         (token_.kind == TokenKind::kName && token_.keyword == Keyword::kNone);
}

bool Parser::Accept(Keyword keyword) {
  if (!At(keyword)) return false;
  Advance();
  return true;
}

bool Parser::Accept(Symbol symbol) {
  if (!At(symbol)) return false;
  Advance();
  return true;
}

bool Parser::AcceptWord(std::string_view word) {
  if (!AtWord(word)) return false;
  Advance();
  return true;
}

void Parser::Expect(Keyword keyword) {
  if (!Accept(keyword)) SyntaxError();
}

void Parser::Expect(Symbol symbol) {
  if (!Accept(symbol)) SyntaxError();
}

std::string_view Parser::Name() {
  if (!AtName()) SyntaxError();
  const std::string_view name = token_.text;
  if (name.size() > 128) {
    Fail(103, "The identifier is too long. Maximum length is 128.", statement_, token_.begin);
  }
  Advance();
  return name;
}

std::string_view Parser::ObjectName(std::string_view* schema) {
  std::string_view name = Name();
  for (int parts = 1; At(Symbol::kDot); ++parts) {
    if (parts > 2) SyntaxError();
    Advance();
    *schema = name;
    if (At(Symbol::kDot)) {  // database..table
      Advance();
      ++parts;
      *schema = {};
    }
    name = Name();
  }
  return name;
}

std::vector<std::string_view> Parser::NameList() {
  std::vector<std::string_view> names;
  Expect(Symbol::kOpen);
  do {
    names.push_back(Name());
  } while (Accept(Symbol::kComma));
  Expect(Symbol::kClose);
  return names;
}

Statement Parser::Parse() {
  Statement statement;
  statement.text = statement_;
  switch (token_.keyword) {
    case Keyword::kSelect:
    case Keyword::kWith:
      statement.select = ParseSelect();
      break;
    case Keyword::kInsert:
      ParseInsert(statement);
      break;
    case Keyword::kUpdate:
      ParseUpdate(statement);
      break;
    case Keyword::kDelete:
      ParseDelete(statement);
      break;
    case Keyword::kTruncate:
      statement.kind = StatementKind::kTruncate;
      Advance();
      Expect(Keyword::kTable);
      statement.table_place = token_.begin;
      {
        std::string_view schema;
        statement.table = ObjectName(&schema);
      }
      break;
    case Keyword::kCreate:
      ParseCreate(statement);
      break;
    case Keyword::kDrop:
      ParseDrop(statement);
      break;
    case Keyword::kAlter:
      ParseAlter(statement);
      break;
    case Keyword::kBegin:
      ParseTransaction(statement, StatementKind::kBegin);
      break;
    case Keyword::kCommit:
      ParseTransaction(statement, StatementKind::kCommit);
      break;
    case Keyword::kRollback:
      ParseTransaction(statement, StatementKind::kRollback);
      break;
    case Keyword::kSet:
      ParseSet(statement);
      break;
    case Keyword::kExec:
    case Keyword::kExecute:
    case Keyword::kDeclare:
    case Keyword::kIf:
    case Keyword::kUse:
      NotSupported("procedures, variables and control of flow");
    default:
      if (At(Symbol::kOpen)) {
        statement.select = ParseSelect();
        break;
      }
      SyntaxError();
  }
  while (Accept(Symbol::kSemicolon)) {
  }
  if (token_.kind != TokenKind::kEnd) SyntaxError();
  return statement;
}

void Parser::ParseInsert(Statement& statement) {
  statement.kind = StatementKind::kInsert;
  Advance();
  if (At(Keyword::kTop)) NotSupported("TOP in an INSERT");
  Accept(Keyword::kInto);
  std::string_view schema;
  statement.table_place = token_.begin;
  statement.table = ObjectName(&schema);
  SkipTableHint();
  // A bracket begins the column list, or a bracketed select.
  if (At(Symbol::kOpen) && next_.keyword != Keyword::kSelect && next_.symbol != Symbol::kOpen) {
    Advance();
    do {
      statement.column_places.push_back(token_.begin);
      std::string_view qualifier;
      statement.columns.push_back(ObjectName(&qualifier));
    } while (Accept(Symbol::kComma));
    Expect(Symbol::kClose);
  }
  if (Accept(Keyword::kDefault)) {
    Expect(Keyword::kValues);
    statement.default_values = true;
  } else if (Accept(Keyword::kValues)) {
    do {
      Expect(Symbol::kOpen);
      std::vector<ExprPtr>& row = statement.rows.emplace_back();
      do {
        if (At(Keyword::kDefault)) NotSupported("DEFAULT among the values: leave the column out");
        row.push_back(ParseExpr());
      } while (Accept(Symbol::kComma));
      Expect(Symbol::kClose);
    } while (Accept(Symbol::kComma));
  } else if (At(Keyword::kSelect) || At(Symbol::kOpen) || At(Keyword::kWith)) {
    statement.select = ParseSelect();
  } else {
    SyntaxError();
  }
}

void Parser::ParseAssignments(Statement& statement) {
  Expect(Keyword::kSet);
  do {
    Assignment& assignment = statement.assignments.emplace_back();
    assignment.place = token_.begin;
    assignment.column = ObjectName(&assignment.qualifier);
    Op op = Op::kNone;
    switch (token_.symbol) {
      case Symbol::kEqual:
        break;
      case Symbol::kPlusAssign:
        op = Op::kAdd;
        break;
      case Symbol::kMinusAssign:
        op = Op::kSubtract;
        break;
      case Symbol::kStarAssign:
        op = Op::kMultiply;
        break;
      case Symbol::kSlashAssign:
        op = Op::kDivide;
        break;
      default:
        SyntaxError();
    }
    Advance();
    if (At(Keyword::kDefault)) NotSupported("DEFAULT as a value");
    assignment.value = ParseExpr();
    assignment.compound = op != Op::kNone;
    if (assignment.compound) {
      ExprPtr column = Make(ExprKind::kColumn, assignment.place);
      column->qualifier = assignment.qualifier;
      column->text = assignment.column;
      ExprPtr sum = Make(ExprKind::kBinary, assignment.place);
      sum->op = op;
      Give(*sum, std::move(column));
      Give(*sum, std::move(assignment.value));
      assignment.value = std::move(sum);
    }
  } while (Accept(Symbol::kComma));
}

void Parser::ParseUpdate(Statement& statement) {
  statement.kind = StatementKind::kUpdate;
  Advance();
  if (At(Keyword::kTop)) NotSupported("TOP in an UPDATE");
  std::string_view schema;
  statement.table_place = token_.begin;
  statement.table = ObjectName(&schema);
  SkipTableHint();
  ParseAssignments(statement);
  if (At(Keyword::kFrom)) statement.from = ParseFrom();
  if (Accept(Keyword::kWhere)) statement.where = ParseExpr();
}

void Parser::ParseDelete(Statement& statement) {
  statement.kind = StatementKind::kDelete;
  Advance();
  if (At(Keyword::kTop)) NotSupported("TOP in a DELETE");
  Accept(Keyword::kFrom);
  std::string_view schema;
  statement.table_place = token_.begin;
  statement.table = ObjectName(&schema);
  SkipTableHint();
  if (At(Keyword::kFrom)) statement.from = ParseFrom();
  if (Accept(Keyword::kWhere)) statement.where = ParseExpr();
}

void Parser::ParseTransaction(Statement& statement, StatementKind kind) {
  statement.kind = kind;
  Advance();
  const bool named = Accept(Keyword::kTran) || Accept(Keyword::kTransaction);
  if (!named && kind == StatementKind::kBegin) NotSupported("BEGIN ... END");
  if (!named) AcceptWord("work");
  if (named && AtName()) Advance();
}

void Parser::ParseSet(Statement& statement) {
  // Options that change nothing here: the embedded engine always behaves this way.
  constexpr std::array<std::string_view, 16> kHarmless = {"nocount",
                                                          "quoted_identifier",
                                                          "ansi_nulls",
                                                          "ansi_padding",
                                                          "ansi_warnings",
                                                          "ansi_null_dflt_on",
                                                          "arithabort",
                                                          "concat_null_yields_null",
                                                          "cursor_close_on_commit",
                                                          "implicit_transactions",
                                                          "numeric_roundabort",
                                                          "xact_abort",
                                                          "dateformat",
                                                          "language",
                                                          "lock_timeout",
                                                          "deadlock_priority"};
  statement.kind = StatementKind::kNoop;
  Advance();
  if (Accept(Keyword::kTran) || Accept(Keyword::kTransaction)) {
    while (token_.kind == TokenKind::kName) Advance();  // isolation level
    return;
  }
  bool known = false;
  for (const std::string_view option : kHarmless) known = known || AtWord(option);
  if (!known) NotSupported("this SET option");
  do {
    Name();
  } while (Accept(Symbol::kComma));
  Accept(Symbol::kMinus);
  if (token_.kind == TokenKind::kEnd || token_.kind == TokenKind::kSymbol) SyntaxError();
  Advance();
}

}  // namespace kaunter::sql
