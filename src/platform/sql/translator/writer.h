// A bound tree to the text of an engine's own dialect. What the dialects share is written here; the
// hooks below are what they decide for themselves (parameters, collations, rounding, rows by their
// physical place, CREATE and ALTER).
//
// Both dialects call functions of our own (k_round, k_like ...) for what the server's functions do
// in their own way. functions.h is their contract; an engine that brings one along uses it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/translator/ast.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

class Writer {
 public:
  explicit Writer(const Statement& statement) : statement_(statement) {}
  virtual ~Writer() = default;
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  std::vector<Translated> Write();

 protected:
  // --- what a dialect decides

  // The mark of parameter `number` (from 1).
  virtual void Mark(std::size_t number, const Parameter& parameter) = 0;
  // A literal that stands in the text itself.
  virtual void Constant(const Expr& expr) = 0;
  // The hidden column that names a row.
  virtual std::string_view RowName() const = 0;
  virtual void WriteSystemTable(const TableRef& table) = 0;
  virtual std::vector<Translated> WriteTruncate() = 0;
  virtual std::vector<Translated> WriteAlterAdd() = 0;
  virtual std::vector<Translated> WriteAlterColumn() = 0;
  virtual std::vector<Translated> WriteDropColumns() = 0;
  // A text where it is compared, grouped or ordered. `collate`: it may have lost its collation.
  virtual void Collated(const Expr& expr, bool collate) = 0;
  // Behind a sort key; `key` is null for a column of a UNION.
  virtual void OrderDirection(const Expr* key, bool text_position, bool descending) = 0;
  // Behind the order that a select names, or where it names none.
  virtual void OwnOrder(const Select&) {}
  // Writes a comparison with a sum or difference in a way of its own; false: it has none.
  virtual bool SumComparison(const Expr&) { return false; }
  // Around a number that is brought to the scale of a decimal; `from`: the places that it has.
  virtual void OpenRound() = 0;
  virtual void CloseRound(int scale, int from) = 0;
  virtual void DivideBy(const Expr& divisor, bool integer) = 0;
  virtual void Modulo(const Expr& expr) = 0;
  virtual void Concatenation(const Expr& expr) = 0;
  virtual void Like(const Expr& expr) = 0;
  virtual void FunctionCall(const Expr& expr);
  virtual void Argument(const Expr& expr) { Value(expr); }  // of a function
  // SUM and AVG: the call itself, behind which OVER may stand, and what stands around it.
  virtual void OpenSum(const Expr& expr) = 0;
  virtual void SumCall(const Expr& expr) = 0;
  virtual void CloseSum(const Expr& expr) = 0;
  virtual void TextOf(const Expr& value) = 0;    // anything to text
  virtual void ToDouble(const Expr& value) = 0;  // of a number
  virtual void Subquery(const Expr& expr) = 0;

  // --- what they share

  using TableRefs = std::vector<const TableRef*>;

  // writer.cpp
  void WriteInsert();
  void WriteUpdate();
  void WriteUpdateByRow(const TableRef* own);
  void WriteDelete();
  void WriteSelect(const Select& select, const std::vector<std::string_view>* names, bool derived,
                   bool single = false);
  void WriteCore(const SelectCore& core, const std::vector<std::string_view>* names, bool derived,
                 bool collate, bool single);
  void WriteItem(const SelectItem& item, std::string_view name, bool derived, bool collate,
                 bool single, bool group);
  void WriteOrder(const Select& select);
  void WriteLimit(const SelectCore& core);
  void WriteFrom(const std::vector<TableRefPtr>& from, const TableRef* own);
  void WriteTable(const TableRef& table);
  // An outer join fills their columns with Null where it finds no row.
  void MayBeFilled(const TableRef& table);
  void WriteConditions(const std::vector<const Expr*>& conditions);
  void Name(std::string_view name);
  Translated Take();

  // writer_ddl.cpp
  std::vector<Translated> WriteDdl();
  void WriteCreateTable();
  virtual void WriteColumn(const ColumnDefinition& column, bool key) = 0;
  virtual void WriteKey(const KeyConstraint& key, const ColumnDefinition* identity) = 0;
  void WriteCreateIndex();
  virtual void IndexDirection(const IndexColumn& column) = 0;
  // "LoanMast.CompCode": both engines know an index by its name alone, and the server's indexes are
  // named within their table.
  void WriteIndexName(std::string_view table, std::string_view index);
  void WriteNames(const std::vector<std::string_view>& names);  // (a, b)
  // "decimal(38, 2)": what a computed column would be declared as.
  static std::string DeclaredAs(const Type& type);

  // writer_expr.cpp
  void Value(const Expr& expr);
  void Condition(const Expr& expr);
  void Comparison(const Expr& left, std::string_view op, const Expr& right);
  void Literal(const Expr& expr);
  void Binary(const Expr& expr);
  void Chain(const Expr& expr);
  void Operand(const Expr& expr);
  void Negated(const Expr& expr);
  void Case(const Expr& expr);
  void Text(std::string_view text);  // as a constant in quotes

  // writer_functions.cpp
  void Call(std::string_view function, const Expr& expr);
  void CallWithPart(std::string_view function, const Expr& expr);
  void DatePart(std::string_view part, const Expr& date);
  void ValueOr(const Expr& expr, std::size_t at, std::string_view otherwise);  // argument `at`
  void WrittenOut(const Expr& expr);
  void Aggregate(const Expr& expr);
  void Window(const Expr& expr);

  // writer_convert.cpp
  void ToInteger(const Expr& value, int digits);
  void Coercion(const Expr& value, const Type& target);
  void ConvertedToText(const Expr& value, const Expr* style, int width);
  void Converted(const Expr& expr);

  const Statement& statement_;
  std::string out_;
  std::vector<Parameter> parameters_;
  bool constants_ = false;             // literals stand in the text: DDL takes no parameters
  bool bare_columns_ = false;          // without the table's name: computed columns
  bool keep_table_order_ = false;      // of FROM: the select list has a *
  std::vector<const Source*> filled_;  // by an outer join with Null, of those written so far
};

bool IsText(const Expr& expr);
bool IsDecimal(const Expr& expr);
bool IsDate(const Type& type);
bool IsNumber(const Type& type);
// A plain column has the collation of its declaration; anything else has lost it.
bool LacksCollation(const Expr& expr);

}  // namespace kaunter::sql
