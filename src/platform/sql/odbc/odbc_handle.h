// ODBC handles that free themselves, and what a driver says about a failure.
#pragma once

#include <string>
#include <vector>

#include "platform/sql/odbc/odbc_api.h"

namespace kaunter::sql {

// Owns one handle; frees it at the end of its life (a connection is the owner's to disconnect).
class OdbcHandle {
 public:
  OdbcHandle() = default;
  // A new environment that speaks ODBC 3. Throws SqlError when the driver manager gives none.
  static OdbcHandle Environment();
  // A new handle of `type` below `parent`. Throws SqlError with the parent's diagnostics.
  OdbcHandle(SQLSMALLINT type, const OdbcHandle& parent);
  ~OdbcHandle();
  OdbcHandle(OdbcHandle&& other) noexcept;
  OdbcHandle& operator=(OdbcHandle&& other) noexcept;

  SQLHANDLE get() const { return handle_; }
  SQLSMALLINT type() const { return type_; }

 private:
  SQLSMALLINT type_ = 0;
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

struct OdbcDiagnostic {
  std::string state;  // SQLSTATE, five characters
  int native = 0;     // the server's own number
  std::string text;   // as the driver gives it
};

// All records of the last call on `handle`; `wide` when the driver keeps Chinese in wide calls.
std::vector<OdbcDiagnostic> ReadDiagnostics(const OdbcHandle& handle, bool wide);

// All records in one line: "text [23000]; text [01000]".
std::string JoinDiagnostics(const std::vector<OdbcDiagnostic>& records);

}  // namespace kaunter::sql
