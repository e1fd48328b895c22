// Writer of SQLite's dialect: what the embedded engine prepares. Everything that is SQLite's own
// (collations, rounding around money, rowid) is decided here.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/translator/writer.h"

namespace kaunter::sql {

class SqliteWriter : public Writer {
 public:
  using Writer::Writer;

 private:
  void Mark(std::size_t number, const Parameter& parameter) override;
  void Constant(const Expr& expr) override;
  std::string_view RowName() const override { return "rowid"; }
  void WriteSystemTable(const TableRef& table) override;
  std::vector<Translated> WriteTruncate() override;
  void Collated(const Expr& expr, bool collate) override;
  void OrderDirection(const Expr* key, bool text_position, bool descending) override;
  bool SumComparison(const Expr& expr) override;
  void OpenRound() override;
  void CloseRound(int scale, int from) override;
  void DivideBy(const Expr& divisor, bool integer) override;
  void Modulo(const Expr& expr) override;
  void Concatenation(const Expr& expr) override;
  void Like(const Expr& expr) override;
  void FunctionCall(const Expr& expr) override;
  void OpenSum(const Expr& expr) override;
  void SumCall(const Expr& expr) override;
  void CloseSum(const Expr& expr) override;
  void TextOf(const Expr& value) override;
  void ToDouble(const Expr& value) override;
  void Subquery(const Expr& expr) override;

  // writer_sqlite_ddl.cpp
  void WriteColumn(const ColumnDefinition& column, bool key) override;
  void WriteKey(const KeyConstraint& key, const ColumnDefinition* identity) override;
  void IndexDirection(const IndexColumn& column) override;
  std::vector<Translated> WriteAlterAdd() override;
  std::vector<Translated> WriteAlterColumn() override;
  std::vector<Translated> WriteDropColumns() override;
  static std::string Declaration(const ColumnDefinition& column);
};

}  // namespace kaunter::sql
