#include "platform/sql/odbc/odbc_source.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/sql/odbc/odbc_error.h"
#include "platform/sql/odbc/odbc_text.h"

namespace kaunter {
namespace {

using sql::AsNarrow;
using sql::OdbcHandle;

constexpr std::size_t kBuffer = 64 * 1024;

FieldType TypeOf(SQLSMALLINT type) {
  switch (type) {
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return FieldType::kMoney;
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return FieldType::kInteger;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return FieldType::kDouble;
    case SQL_DATETIME:
    case SQL_TIMESTAMP:
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return FieldType::kDate;
    default:
      return FieldType::kText;
  }
}

}  // namespace

OdbcSource::OdbcSource(const std::string& odbc_string)
    : environment_(OdbcHandle::Environment()),
      link_(SQL_HANDLE_DBC, environment_),
      buffer_(kBuffer, '\0') {
  std::string text = odbc_string;
  SQLSMALLINT length = 0;
  const SQLRETURN result = SQLDriverConnect(link_.get(), nullptr, AsNarrow(text.data()), SQL_NTS,
                                            nullptr, 0, &length, SQL_DRIVER_NOPROMPT);
  if (SQL_SUCCEEDED(result)) return;
  throw SqlError(sql::kCannotOpenNumber,
                 sql::ToSqlError(sql::ReadDiagnostics(link_, false), false).what());
}

OdbcSource::~OdbcSource() { SQLDisconnect(link_.get()); }

void OdbcSource::Check(SQLRETURN result, const OdbcHandle& handle) const {
  if (SQL_SUCCEEDED(result)) return;
  throw sql::ToSqlError(sql::ReadDiagnostics(handle, false), false);
}

OdbcHandle OdbcSource::Run(std::string_view statement_text) {
  OdbcHandle statement(SQL_HANDLE_STMT, link_);
  std::string text(statement_text);
  Check(SQLExecDirect(statement.get(), AsNarrow(text.data()), SQL_NTS), statement);
  return statement;
}

std::vector<std::string> OdbcSource::Tables() {
  constexpr SQLUSMALLINT kName = 3;
  constexpr SQLUSMALLINT kKind = 4;
  OdbcHandle statement(SQL_HANDLE_STMT, link_);
  Check(SQLTables(statement.get(), nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0), statement);
  std::vector<std::string> names;
  while (SQL_SUCCEEDED(SQLFetch(statement.get()))) {
    std::string name = Cell(statement, kName).value_or("");
    if (Cell(statement, kKind) == "TABLE") names.push_back(std::move(name));
  }
  return names;
}

std::int64_t OdbcSource::Count(std::string_view table) {
  const OdbcHandle statement = Run(fmt::format("SELECT COUNT(*) FROM {}", table));
  Check(SQLFetch(statement.get()), statement);
  return std::stoll(Cell(statement, 1).value_or("0"));
}

std::optional<std::string> OdbcSource::Cell(const OdbcHandle& statement, SQLUSMALLINT position) {
  std::string text;
  for (;;) {
    SQLLEN length = 0;
    const SQLRETURN result = SQLGetData(statement.get(), position, SQL_C_CHAR, buffer_.data(),
                                        static_cast<SQLLEN>(buffer_.size()), &length);
    if (result == SQL_NO_DATA) return text;
    Check(result, statement);
    if (length == SQL_NULL_DATA) return std::nullopt;
    text += buffer_.c_str();
    if (result == SQL_SUCCESS) return text;
  }
}

std::optional<std::string> OdbcSource::Bytes(const OdbcHandle& statement, SQLUSMALLINT position) {
  constexpr std::size_t kMost = 16U * 1024 * 1024;
  std::string bytes;
  while (bytes.size() < kMost) {
    SQLLEN length = 0;
    const SQLRETURN result = SQLGetData(statement.get(), position, SQL_C_BINARY, buffer_.data(),
                                        static_cast<SQLLEN>(buffer_.size()), &length);
    if (result == SQL_NO_DATA) return bytes;
    Check(result, statement);
    if (length == SQL_NULL_DATA) return std::nullopt;
    const bool last = result == SQL_SUCCESS && length >= 0;
    bytes.append(
        buffer_, 0,
        last ? std::min(static_cast<std::size_t>(length), buffer_.size()) : buffer_.size());
    if (last) return bytes;
  }
  return bytes;
}

void OdbcSource::Read(std::string_view table,
                      const std::function<bool(const std::vector<Column>&)>& take_columns,
                      const std::function<bool(const Cells&)>& take_row, bool pictures) {
  const OdbcHandle statement = Run(fmt::format("SELECT * FROM {}", table));
  SQLSMALLINT count = 0;
  Check(SQLNumResultCols(statement.get(), &count), statement);
  std::vector<Column> columns;
  std::vector<bool> binary;
  for (SQLUSMALLINT i = 1; i <= static_cast<SQLUSMALLINT>(count); ++i) {
    char name[512] = {};
    SQLSMALLINT length = 0;
    SQLSMALLINT type = 0;
    SQLULEN size = 0;
    SQLSMALLINT scale = 0;
    SQLSMALLINT nullable = 0;
    Check(SQLDescribeCol(statement.get(), i, AsNarrow(name), sizeof name, &length, &type, &size,
                         &scale, &nullable),
          statement);
    Column column;
    column.name = name;
    column.type = TypeOf(type);
    binary.push_back(type == SQL_BINARY || type == SQL_VARBINARY || type == SQL_LONGVARBINARY);
    columns.push_back(std::move(column));
  }
  if (!take_columns(columns)) return;
  for (;;) {
    const SQLRETURN result = SQLFetch(statement.get());
    if (result == SQL_NO_DATA) return;
    Check(result, statement);
    Cells cells;
    cells.reserve(columns.size());
    for (SQLUSMALLINT i = 1; i <= static_cast<SQLUSMALLINT>(count); ++i) {
      cells.push_back(pictures && binary[i - 1U] ? Bytes(statement, i) : Cell(statement, i));
    }
    if (!take_row(cells)) return;
  }
}

}  // namespace kaunter
