// A database of PostgreSQL as a whole (whole_database.h). Rows come and go as texts of the server's
// own for a whole row ("(AB0001,150.00,)"), many in one statement.
#pragma once

#include <string>
#include <vector>

#include "platform/sql/odbc/odbc_connection.h"
#include "platform/sql/whole_database.h"

namespace kaunter::sql {

class PostgresWhole final : public WholeDatabase {
 public:
  explicit PostgresWhole(OdbcConnection& connection) : connection_(connection) {}

  std::vector<std::string> Contents() override;
  std::vector<WholeTable> Tables() override;
  void LockOut() override;
  std::unique_ptr<RowReader> Rows(const WholeTable& table, bool in_order) override;
  void Create(const WholeTable& table) override;
  void Fill(const WholeTable& table, std::span<const WholeRow> rows) override;
  void Complete(const WholeTable& table) override;
  void Settle() override;
  void Seal(std::string_view words) override;
  void Unseal() override;
  void DropTables() override;

 private:
  using Lines = std::vector<std::vector<std::string>>;

  void Run(const std::string& sql);
  Lines Ask(const std::string& sql, std::size_t fields);
  std::vector<std::string> TableNames();
  void ReadColumns(std::vector<WholeTable>* tables);
  void ReadKeys(std::vector<WholeTable>* tables);
  void ReadCounters(std::vector<WholeTable>* tables);
  void FillAtOnce(const WholeTable& table, std::span<const WholeRow> rows);
  void RefuseDoubles(const WholeTable& table, const std::vector<std::string>& key);

  OdbcConnection& connection_;
};

// The fields of a row as the server writes one: "(a,\"b \"\"c\"\"\",,\"\")".
void ReadRowText(std::string_view text, WholeRow* row);
// A literal of rows for `unnest('...'::"T"[])`; a field of a computed column is null.
std::string RowsLiteral(const WholeTable& table, std::span<const WholeRow> rows);

}  // namespace kaunter::sql
