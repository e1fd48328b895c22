// One open ODBC connection at the level of its driver: plain statements, rows, transactions and
// failures. It knows no dialect; whatever text it is given goes to the driver as it stands.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/sql/connection.h"
#include "platform/sql/odbc/odbc_handle.h"
#include "platform/sql/odbc/odbc_worker.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

struct OdbcOutcome {
  std::int64_t affected = 0;      // rows touched by the last statement that tells
  std::optional<Recordset> rows;  // of the last statement that gives rows, when they were wanted
};

inline constexpr int kLoginSeconds = 15;  // where the connection text names no time of its own

class OdbcSession {
 public:
  // Connects within `login_seconds`. Throws SqlError 4060 (18456 for a refused account) that names
  // connection and source, never the password; also when the driver passes Chinese neither through
  // wide nor through narrow calls.
  OdbcSession(std::string name, const std::string& odbc_string, int login_seconds = kLoginSeconds);
  ~OdbcSession();
  OdbcSession(const OdbcSession&) = delete;
  OdbcSession& operator=(const OdbcSession&) = delete;

  // Runs a statement or, where the driver takes one, a batch; all results are read or passed over,
  // as later failures of a batch show only there. `known` types the columns (see ReadRows).
  OdbcOutcome Run(std::string_view sql, bool want_rows,
                  const std::vector<ResultColumn>& known = {});

  void Begin();
  void Commit();
  // Bears a server that has ended the transaction by itself, and a lost connection. When the server
  // refuses for another reason, the connection is given up: it then rolls back for certain.
  void Rollback();
  bool InTransaction() const { return in_transaction_; }
  void OnSilence(std::function<void()> silence) { worker_.OnSilence(std::move(silence)); }

  // True once the connection is known to be gone; every later call throws 10054 and says so. A
  // transaction that was open counts as open until it is rolled back.
  bool Lost() const { return lost_; }
  const std::string& dbms() const { return dbms_; }
  const std::string& dbms_version() const { return dbms_version_; }
  const std::string& source() const { return source_; }  // for messages
  bool IsSqlServer() const;

 private:
  void Connect(const std::string& odbc_string, int login_seconds);
  void ReadDbms();
  void ProbeTexts();
  bool ComesBack(std::string_view probe);
  SQLRETURN Execute(const OdbcHandle& statement, std::string_view sql);
  SQLRETURN MoreResults(const OdbcHandle& statement);
  SQLRETURN EndTransaction(SQLSMALLINT how);
  OdbcOutcome Drain(const OdbcHandle& statement, SQLRETURN result, bool want_rows,
                    const std::vector<ResultColumn>& known);
  SQLRETURN SetAutocommit(bool on);
  void RequireAlive() const;
  bool IsDead(const std::vector<OdbcDiagnostic>& records) const;
  void GiveUp();
  [[noreturn]] void Leave(OdbcHandle statement);
  [[noreturn]] void ThrowLost(std::string_view when, const std::string& reason,
                              bool nothing_stored);
  // Throws for SQL_ERROR and the like; success with information passes.
  void Check(SQLRETURN result, const OdbcHandle& handle);

  std::string name_;
  std::string source_;  // for messages
  OdbcWorker worker_;
  OdbcHandle environment_;
  OdbcHandle link_;
  OdbcHandle spare_;  // a statement between two runs; none at first and behind a failure
  std::string dbms_;
  std::string dbms_version_;
  bool connected_ = false;
  bool wide_ = true;
  bool in_transaction_ = false;
  bool lost_ = false;
  int ended_by_ = 0;  // number of the failure after which the server gave the transaction up
};

}  // namespace kaunter::sql
