// A file of another program that is read table by table through a driver that can do little else:
// one statement at a time, cells as texts, no transactions. Nothing is ever written to it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/connection.h"
#include "platform/sql/odbc/odbc_handle.h"

namespace kaunter {

class OdbcSource {
 public:
  // What SQLDriverConnect takes. Throws SqlError 4060 with the driver's words.
  explicit OdbcSource(const std::string& odbc_string);
  ~OdbcSource();
  OdbcSource(const OdbcSource&) = delete;
  OdbcSource& operator=(const OdbcSource&) = delete;

  // The names of the tables of the user. Throws SqlError.
  std::vector<std::string> Tables();
  std::int64_t Count(std::string_view table);

  // A row: its cells, nothing for Null.
  using Cells = std::vector<std::optional<std::string>>;
  // The rows of a table one after the other, columns first, until one of the two says no. A date is
  // "yyyy-mm-dd hh:mm:ss". Throws SqlError.
  // The bytes of pictures and the like come with `pictures`, else nothing of them.
  void Read(std::string_view table, const std::function<bool(const std::vector<Column>&)>& columns,
            const std::function<bool(const Cells&)>& row, bool pictures = false);

 private:
  sql::OdbcHandle Run(std::string_view sql);
  void Check(SQLRETURN result, const sql::OdbcHandle& handle) const;
  std::optional<std::string> Cell(const sql::OdbcHandle& statement, SQLUSMALLINT position);
  std::optional<std::string> Bytes(const sql::OdbcHandle& statement, SQLUSMALLINT position);

  sql::OdbcHandle environment_;
  sql::OdbcHandle link_;
  std::string buffer_;
};

}  // namespace kaunter
