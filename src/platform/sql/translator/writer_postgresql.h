// Writer of PostgreSQL's dialect.
//
// Texts are of the type bpchar, whose comparisons ignore trailing blanks, under a collation of our
// own that ignores case: a column has it by its declaration, a literal by its mark, and functions
// hand it on, so nothing need be said where texts meet. Decimals are numeric and exact by
// themselves. What the server's functions do in their own way stands in the schema "kaunter_sql" of
// the database (postgresql_functions.cpp).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/translator/writer.h"

namespace kaunter::sql {

class PostgresWriter : public Writer {
 public:
  using Writer::Writer;

 private:
  void Mark(std::size_t number, const Parameter& parameter) override;
  void Constant(const Expr& expr) override;
  std::string_view RowName() const override { return "ctid"; }
  void WriteSystemTable(const TableRef& table) override;
  std::vector<Translated> WriteTruncate() override;
  void Collated(const Expr& expr, bool) override { Value(expr); }
  void OrderDirection(const Expr* key, bool text_position, bool descending) override;
  void OwnOrder(const Select& select) override;
  void OpenRound() override { out_ += "round(("; }
  void CloseRound(int scale, int from) override;
  void DivideBy(const Expr& divisor, bool integer) override;
  void Modulo(const Expr& expr) override;
  void Concatenation(const Expr& expr) override;
  void Like(const Expr& expr) override;
  void FunctionCall(const Expr& expr) override;
  void Argument(const Expr& expr) override;
  void OpenSum(const Expr& expr) override;
  void SumCall(const Expr& expr) override;
  void CloseSum(const Expr& expr) override;
  void TextOf(const Expr& value) override;
  void ToDouble(const Expr& value) override;
  void Subquery(const Expr& expr) override;

  // writer_postgresql_ddl.cpp
  void WriteColumn(const ColumnDefinition& column, bool key) override;
  void WriteKey(const KeyConstraint& key, const ColumnDefinition* identity) override;
  void IndexDirection(const IndexColumn& column) override;
  std::vector<Translated> WriteAlterAdd() override;
  std::vector<Translated> WriteAlterColumn() override;
  std::vector<Translated> WriteDropColumns() override;
  void WriteConversion(const CatalogueColumn& column, const Type& target);
  void WriteDefault(const ColumnDefinition& column);
  void WriteType(const Type& type);
  // The name of the column's check: "50:CustID". The catalogue reads the width out of it.
  void WriteCheckName(const Type& type, std::string_view column);
  void WriteCheck(const Type& type, std::string_view column);
  const CatalogueColumn* TargetColumn(std::string_view name) const;

  bool defaults_ = true;  // columns are written with their default
};

}  // namespace kaunter::sql
