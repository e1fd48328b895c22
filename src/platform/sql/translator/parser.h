// Parser: the tokens of one statement to its tree. Recursive descent with a limit on the depth, so
// that no text can exhaust the stack.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "platform/sql/translator/ast.h"
#include "platform/sql/translator/lexer.h"

namespace kaunter::sql {

class Parser {
 public:
  explicit Parser(std::string_view statement) : lexer_(statement), statement_(statement) {
    Advance();
    Advance();
  }

  // Throws SqlError: 102 for what the grammar does not know, 191 for a statement nested too deeply.
  Statement Parse();
  // How many literals of the statement may become parameters.
  int literal_count() const { return literals_; }

 private:
  // parser.cpp: tokens
  void Advance();
  [[noreturn]] void SyntaxError() const;
  [[noreturn]] void NotSupported(std::string_view what) const;
  bool At(Keyword keyword) const { return token_.keyword == keyword; }
  bool At(Symbol symbol) const { return token_.symbol == symbol; }
  bool AtWord(std::string_view word) const;  // a name that is no reserved word
  bool AtName() const;
  bool Accept(Keyword keyword);
  bool Accept(Symbol symbol);
  bool AcceptWord(std::string_view word);
  void Expect(Keyword keyword);
  void Expect(Symbol symbol);
  std::string_view Name();
  // table, schema.table or database.schema.table; the schema goes to `schema`.
  std::string_view ObjectName(std::string_view* schema);
  std::vector<std::string_view> NameList();  // (a, b)

  // parser.cpp: statements
  void ParseInsert(Statement& statement);
  void ParseUpdate(Statement& statement);
  void ParseDelete(Statement& statement);
  void ParseAssignments(Statement& statement);
  void ParseTransaction(Statement& statement, StatementKind kind);
  void ParseSet(Statement& statement);

  // parser_ddl.cpp
  void ParseCreate(Statement& statement);
  void ParseCreateTable(Statement& statement);
  void ParseCreateIndex(Statement& statement);
  void ParseDrop(Statement& statement);
  void ParseAlter(Statement& statement);
  ColumnDefinition ParseColumnDefinition();
  bool ParseTableConstraint(Statement& statement);
  void ParseKeyColumns(KeyConstraint& key);
  void SkipStorage();  // WITH (...), ON [PRIMARY], TEXTIMAGE_ON [PRIMARY]
  std::string TypeName();

  // parser_select.cpp
  std::unique_ptr<Select> ParseSelect();
  SelectCore ParseCore();
  SelectItem ParseItem();
  std::string_view ParseAlias();
  std::vector<TableRefPtr> ParseFrom();
  TableRefPtr ParseJoined();
  TableRefPtr ParseTable();
  void ParseTableAlias(TableRef& table);
  void SkipTableHint();
  std::vector<OrderItem> ParseOrderBy();

  // parser_expr.cpp
  ExprPtr ParseExpr();  // OR
  ExprPtr ParseAnd();
  ExprPtr ParseNot();
  ExprPtr ParsePredicate();
  ExprPtr ParseSum();
  ExprPtr ParseProduct();
  ExprPtr ParseUnary();
  ExprPtr ParsePrimary();
  ExprPtr ParseLiteral();
  ExprPtr ParseCase();
  ExprPtr ParseNamed();
  ExprPtr ParseCall(std::string_view name, std::size_t place);
  ExprPtr ParseConvert(bool cast, std::size_t place);
  ExprPtr ParseWindow(ExprPtr call);
  ExprPtr ParseBrace();
  ExprPtr Make(ExprKind kind, std::size_t place) const;
  // Adds an argument, or the subquery, and counts the depth.
  void Give(Expr& expr, ExprPtr argument);
  void GiveSelect(Expr& expr);
  void CountDepth(int depth);

  // Stands at every way down; counts and refuses.
  class Descent {
   public:
    explicit Descent(Parser& parser);
    ~Descent() { --parser_.depth_; }
    Descent(const Descent&) = delete;
    Descent& operator=(const Descent&) = delete;

   private:
    Parser& parser_;
  };

  Lexer lexer_;
  std::string_view statement_;
  Token token_;
  Token next_;
  int depth_ = 0;
  int deepest_ = 0;        // expression of the select that is being read
  int literals_ = 0;       // handed out so far
  int literal_ = -1;       // number of token_, when it is a parameter
  int next_literal_ = -1;  // number of next_
};

}  // namespace kaunter::sql
