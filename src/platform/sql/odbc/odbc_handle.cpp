#include "platform/sql/odbc/odbc_handle.h"

#include <fmt/format.h>

#include <utility>

#include "platform/sql/connection.h"
#include "platform/sql/odbc/odbc_text.h"

namespace kaunter::sql {
namespace {

// One line: drivers break theirs, and a line of the log is one line.
std::string OneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    const bool blank = c == '\n' || c == '\r' || c == '\t' || c == ' ';
    if (!blank) {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

}  // namespace

OdbcHandle OdbcHandle::Environment() {
  OdbcHandle environment;
  environment.type_ = SQL_HANDLE_ENV;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment.handle_)) ||
      !SQL_SUCCEEDED(SQLSetEnvAttr(environment.handle_, SQL_ATTR_ODBC_VERSION,
                                   reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0))) {
    throw SqlError(4060, "The ODBC driver manager does not start.");
  }
  return environment;
}

OdbcHandle::OdbcHandle(SQLSMALLINT type, const OdbcHandle& parent) : type_(type) {
  if (!SQL_SUCCEEDED(SQLAllocHandle(type, parent.get(), &handle_))) {
    handle_ = SQL_NULL_HANDLE;
    throw SqlError(4060, JoinDiagnostics(ReadDiagnostics(parent, true)));
  }
}

OdbcHandle::~OdbcHandle() {
  if (handle_ != SQL_NULL_HANDLE) SQLFreeHandle(type_, handle_);
}

OdbcHandle::OdbcHandle(OdbcHandle&& other) noexcept
    : type_(other.type_), handle_(std::exchange(other.handle_, nullptr)) {}

OdbcHandle& OdbcHandle::operator=(OdbcHandle&& other) noexcept {
  std::swap(type_, other.type_);
  std::swap(handle_, other.handle_);
  return *this;
}

std::vector<OdbcDiagnostic> ReadDiagnostics(const OdbcHandle& handle, bool wide) {
  std::vector<OdbcDiagnostic> records;
  for (SQLSMALLINT number = 1; number < 100; ++number) {
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    OdbcDiagnostic record;
    // A text longer than the buffer arrives cut: enough for a message.
    if (wide) {
      char16_t state[6] = {};
      char16_t text[4096] = {};
      if (!SQL_SUCCEEDED(SQLGetDiagRecW(handle.type(), handle.get(), number, AsWide(state), &native,
                                        AsWide(text), 4096, &length))) {
        break;
      }
      record.state = ToUtf8(state);
      record.text = ToUtf8(text);
    } else {
      char state[6] = {};
      char text[8192] = {};
      if (!SQL_SUCCEEDED(SQLGetDiagRec(handle.type(), handle.get(), number, AsNarrow(state),
                                       &native, AsNarrow(text), sizeof text, &length))) {
        break;
      }
      record.state = state;
      record.text = text;
    }
    record.text = OneLine(record.text);
    record.native = static_cast<int>(native);
    records.push_back(std::move(record));
  }
  return records;
}

std::string JoinDiagnostics(const std::vector<OdbcDiagnostic>& records) {
  std::string joined;
  for (const OdbcDiagnostic& record : records) {
    joined += fmt::format("{}{} [{}]", joined.empty() ? "" : "; ", record.text, record.state);
  }
  return joined.empty() ? "The driver gives no reason." : joined;
}

}  // namespace kaunter::sql
