// Writer of SQLite's dialect: a bound tree to the text that the embedded engine prepares.
// Everything that is SQLite's own (collations, rounding around money, rowid, LIMIT) is decided
// here.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/ast.h"
#include "platform/sql/translate.h"

namespace kaunter::sql {

class SqliteWriter {
 public:
  explicit SqliteWriter(const Statement& statement) : statement_(statement) {}

  std::vector<Translated> Write();

 private:
  using TableRefs = std::vector<const TableRef*>;

  // writer_sqlite.cpp
  void WriteInsert();
  void WriteUpdate();
  void WriteUpdateByRow(const TableRef* own);
  void WriteDelete();
  void WriteSelect(const Select& select, const std::vector<std::string_view>* names, bool derived,
                   bool single = false);
  void WriteCore(const SelectCore& core, const std::vector<std::string_view>* names, bool derived,
                 bool collate, bool single);
  void WriteItem(const SelectItem& item, std::string_view name, bool derived, bool collate,
                 bool single);
  void WriteOrder(const Select& select);
  void WriteLimit(const SelectCore& core);
  void WriteFrom(const std::vector<TableRefPtr>& from, const TableRef* own);
  void WriteTable(const TableRef& table);
  void WriteSystemTable(const TableRef& table);
  void WriteConditions(const std::vector<const Expr*>& conditions);
  void Name(std::string_view name);
  Translated Take();

  // writer_sqlite_ddl.cpp
  std::vector<Translated> WriteDdl();
  void WriteCreateTable();
  void WriteColumn(const ColumnDefinition& column, bool key);
  void WriteKey(const KeyConstraint& key, const ColumnDefinition* identity);
  void WriteCreateIndex();
  void WriteIndexName(std::string_view table, std::string_view index);
  std::vector<Translated> WriteAlterAdd();
  static std::string Declaration(const ColumnDefinition& column);

  // writer_sqlite_expr.cpp
  void Value(const Expr& expr);
  void Collated(const Expr& expr, bool collate);
  void Condition(const Expr& expr);
  void Comparison(const Expr& left, std::string_view op, const Expr& right);
  void Literal(const Expr& expr);
  void Binary(const Expr& expr);
  void Chain(const Expr& expr);
  void Operand(const Expr& expr);
  void Negated(const Expr& expr);
  void Case(const Expr& expr);
  void Call(std::string_view function, const Expr& expr);
  void FunctionCall(const Expr& expr);
  void DatePart(std::string_view part, const Expr& date);
  void Concat(const Expr& expr);
  void Aggregate(const Expr& expr);
  void Window(const Expr& expr);
  void Coercion(const Expr& value, const Type& target);
  void Converted(const Expr& expr);
  void TextOf(const Expr& value);
  void Subquery(const Expr& expr);
  void Text(std::string_view text);  // as a constant in quotes

  const Statement& statement_;
  std::string out_;
  std::vector<Parameter> parameters_;
  bool constants_ = false;         // literals stand in the text: DDL takes no parameters
  bool bare_columns_ = false;      // without the table's name: computed columns
  bool keep_table_order_ = false;  // of FROM: the select list has a *
};

}  // namespace kaunter::sql
