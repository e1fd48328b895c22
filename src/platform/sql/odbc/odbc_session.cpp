#include "platform/sql/odbc/odbc_session.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "platform/sql/odbc/odbc_error.h"
#include "platform/sql/odbc/odbc_rows.h"
#include "platform/sql/odbc/odbc_string.h"
#include "platform/sql/odbc/odbc_text.h"

namespace kaunter::sql {
namespace {

// With a character of two UTF-16 units: under some locales the driver manager carries the first
// through an ANSI driver, and breaks the second. A server that knows no such characters may do.
constexpr std::string_view kProbes[] = {"陈😀", "陈"};

SQLPOINTER AsPointer(std::uintptr_t number) { return reinterpret_cast<SQLPOINTER>(number); }

// The driver manager does not let go of a connection inside a transaction.
void Disconnect(const OdbcHandle& link) {
  if (SQL_SUCCEEDED(SQLDisconnect(link.get()))) return;
  SQLEndTran(SQL_HANDLE_DBC, link.get(), SQL_ROLLBACK);
  SQLDisconnect(link.get());
}

// What a driver works on that nobody waits for any more.
struct Held {
  OdbcHandle environment, link, statement;
  ~Held() {
    statement = OdbcHandle();
    Disconnect(link);
  }
};

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

SQLRETURN ConnectNarrow(SQLHANDLE link, std::string text) {
  SQLSMALLINT length = 0;
  return SQLDriverConnect(link, nullptr, AsNarrow(text.data()), SQL_NTS, nullptr, 0, &length,
                          SQL_DRIVER_NOPROMPT);
}

SQLRETURN ConnectWide(SQLHANDLE link, std::u16string text) {
  SQLSMALLINT length = 0;
  return SQLDriverConnectW(link, nullptr, AsWide(text.data()), SQL_NTS, nullptr, 0, &length,
                           SQL_DRIVER_NOPROMPT);
}

}  // namespace

OdbcSession::OdbcSession(std::string name, const std::string& odbc_string, int login_seconds)
    : name_(std::move(name)),
      source_(OdbcSourceName(odbc_string)),
      environment_(OdbcHandle::Environment()),
      link_(SQL_HANDLE_DBC, environment_) {
  Connect(odbc_string, login_seconds);
  try {
    ReadDbms();
    ProbeTexts();
    if (IsSqlServer()) {
      // Dates are written year first and month names in English, whatever the account's language.
      Run("SET LANGUAGE us_english; SET DATEFORMAT ymd", false);
    }
  } catch (...) {
    GiveUp();
    throw;
  }
}

OdbcSession::~OdbcSession() {
  if (in_transaction_ && connected_ && !lost_) EndTransaction(SQL_ROLLBACK);
  GiveUp();
}

void OdbcSession::Connect(const std::string& odbc_string, int login_seconds) {
  SQLSetConnectAttr(link_.get(), SQL_ATTR_LOGIN_TIMEOUT,
                    AsPointer(static_cast<std::uintptr_t>(login_seconds)), SQL_IS_UINTEGER);
  // Which calls the driver understands is not known yet. Narrow goes first: an ANSI driver that is
  // asked through wide calls would open, or make, a file with a garbled name.
  SQLRETURN result = worker_.Run([&] { return ConnectNarrow(link_.get(), odbc_string); });
  if (!SQL_SUCCEEDED(result) && !IsAscii(odbc_string)) {
    result = worker_.Run([&] { return ConnectWide(link_.get(), ToUtf16(odbc_string)); });
  }
  if (SQL_SUCCEEDED(result)) {
    connected_ = true;
    return;
  }
  const std::vector<OdbcDiagnostic> records = ReadDiagnostics(link_, true);
  const SqlError error = ToSqlError(records, true);
  const bool refused = error.number() == kLoginRefusedNumber ||
                       std::any_of(records.begin(), records.end(), [](const auto& record) {
                         return record.state.starts_with("28");
                       });
  throw SqlError(
      refused ? kLoginRefusedNumber : kCannotOpenNumber,
      fmt::format("Cannot open {} ({}): {}. Check the data source in the local settings, and that "
                  "the server runs and is reached from this PC.",
                  name_, source_, error.what()));
}

void OdbcSession::ReadDbms() {
  char told[256] = {};
  SQLSMALLINT length = 0;
  Check(SQLGetInfo(link_.get(), SQL_DBMS_NAME, told, sizeof told, &length), link_);
  dbms_ = told;
  if (SQL_SUCCEEDED(SQLGetInfo(link_.get(), SQL_DBMS_VER, told, sizeof told, &length))) {
    dbms_version_ = told;
  }
}

bool OdbcSession::IsSqlServer() const { return dbms_ == "Microsoft SQL Server"; }

// The driver manager widens bytes blindly between an ANSI driver and wide calls, and back: nothing
// fails, but Chinese is garbled. So what comes back right is kept.
void OdbcSession::ProbeTexts() {
  for (const std::string_view probe : kProbes) {
    for (const bool wide : {true, false}) {
      wide_ = wide;
      if (ComesBack(probe)) return;
    }
  }
  throw SqlError(kCannotOpenNumber,
                 fmt::format("Cannot use {} ({}): its driver or its character set loses Chinese "
                             "texts. Use the driver's Unicode variant, or set its character set to "
                             "UTF-8.",
                             name_, source_));
}

bool OdbcSession::ComesBack(std::string_view probe) {
  try {
    const OdbcOutcome outcome =
        Run(fmt::format("SELECT {}'{}'", IsSqlServer() ? "N" : "", probe), true);
    if (!outcome.rows || outcome.rows->Eof()) return false;
    const std::string* text = outcome.rows->Field(0).AsText();
    return text != nullptr && *text == probe;
  } catch (const SqlError&) {
    if (lost_) throw;
    return false;  // the driver cannot read its own garbled text
  }
}

SQLRETURN OdbcSession::Execute(const OdbcHandle& statement, std::string_view sql) {
  if (wide_) {
    return worker_.Run(
        [handle = statement.get(), text = ToUtf16(sql)]() mutable {
          return SQLExecDirectW(handle, AsWide(text.data()), SQL_NTS);
        },
        statement.get());
  }
  return worker_.Run(
      [handle = statement.get(), text = std::string(sql)]() mutable {
        return SQLExecDirect(handle, AsNarrow(text.data()), SQL_NTS);
      },
      statement.get());
}

// Where a server runs a batch statement by statement, the rest of it runs here.
SQLRETURN OdbcSession::MoreResults(const OdbcHandle& statement) {
  if (!IsSqlServer()) return SQLMoreResults(statement.get());
  return worker_.Run([handle = statement.get()] { return SQLMoreResults(handle); },
                     statement.get());
}

// Another machine may have to say that it has written, and a dead one is waited for.
SQLRETURN OdbcSession::EndTransaction(SQLSMALLINT how) {
  return worker_.Run([&] { return SQLEndTran(SQL_HANDLE_DBC, link_.get(), how); });
}

OdbcOutcome OdbcSession::Run(std::string_view sql, bool want_rows,
                             const std::vector<ResultColumn>& known) {
  RequireAlive();
  if (ended_by_ != 0) {
    throw SqlError(3930, fmt::format("The transaction on {} was ended by error {} and cannot be "
                                     "carried on; it has to be rolled back.",
                                     name_, ended_by_));
  }
  if (sql.find('\0') != std::string_view::npos) {
    throw SqlError(102, "The statement holds a zero byte; the rest of it would not be run.");
  }
  // A handle serves again while nothing fails on it: a new one costs as much as a short query.
  OdbcHandle statement =
      spare_.get() != SQL_NULL_HANDLE ? std::move(spare_) : OdbcHandle(SQL_HANDLE_STMT, link_);
  try {
    OdbcOutcome outcome = Drain(statement, Execute(statement, sql), want_rows, known);
    if (SQL_SUCCEEDED(SQLFreeStmt(statement.get(), SQL_CLOSE))) spare_ = std::move(statement);
    return outcome;
  } catch (const OdbcWorker::Unheard&) {
    Leave(std::move(statement));
  }
}

OdbcOutcome OdbcSession::Drain(const OdbcHandle& statement, SQLRETURN result, bool want_rows,
                               const std::vector<ResultColumn>& known) {
  const OdbcCheck check = [&](SQLRETURN code) { Check(code, statement); };
  OdbcOutcome outcome;
  for (;;) {
    // SQL_NO_DATA of an execution: an update that touched nothing.
    if (result != SQL_NO_DATA) check(result);
    SQLSMALLINT columns = 0;
    check(SQLNumResultCols(statement.get(), &columns));
    if (columns == 0) {
      SQLLEN rows = 0;
      check(SQLRowCount(statement.get(), &rows));
      outcome.affected = std::max<std::int64_t>(rows, 0);
    } else if (want_rows) {
      outcome.rows = ReadRows(statement, wide_, known, check);
    } else {
      SkipRows(statement, check);
    }
    result = MoreResults(statement);
    if (result == SQL_NO_DATA) return outcome;
  }
}

SQLRETURN OdbcSession::SetAutocommit(bool on) {
  return SQLSetConnectAttr(link_.get(), SQL_ATTR_AUTOCOMMIT,
                           AsPointer(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER);
}

void OdbcSession::Begin() {
  RequireAlive();
  Check(SetAutocommit(false), link_);
  in_transaction_ = true;
  ended_by_ = 0;
}

void OdbcSession::Commit() {
  RequireAlive();
  if (ended_by_ != 0) {
    throw SqlError(3930, fmt::format("The transaction on {} was ended by error {} and cannot be "
                                     "committed; it has to be rolled back.",
                                     name_, ended_by_));
  }
  if (!SQL_SUCCEEDED(EndTransaction(SQL_COMMIT))) {
    const std::vector<OdbcDiagnostic> records = ReadDiagnostics(link_, wide_);
    if (IsDead(records)) {
      ThrowLost(
          "while the save was being committed. Whether it was stored is not known: look before it "
          "is entered again",
          JoinDiagnostics(records), false);
    }
    throw ToSqlError(records, IsSqlServer());
  }
  in_transaction_ = false;
  // The save is stored. If the connection has died since, the next call tells.
  if (!SQL_SUCCEEDED(SetAutocommit(true))) GiveUp();
}

void OdbcSession::Rollback() {
  if (!in_transaction_) return;
  in_transaction_ = false;
  ended_by_ = 0;
  if (!connected_) return;
  if (!SQL_SUCCEEDED(EndTransaction(SQL_ROLLBACK))) {
    constexpr int kNothingToRollBack = 3903;
    const SqlError error = ToSqlError(ReadDiagnostics(link_, wide_), IsSqlServer());
    if (error.number() != kNothingToRollBack) {
      // Turning autocommit on now would commit what is still open; the end of the connection rolls
      // it back.
      GiveUp();
      return;
    }
  }
  if (!SQL_SUCCEEDED(SetAutocommit(true))) GiveUp();
}

void OdbcSession::RequireAlive() const {
  if (!lost_) return;
  if (!in_transaction_) {
    throw SqlError(kLostNumber, fmt::format("The connection {} to {} is lost.", name_, source_));
  }
  throw ServerLost(ServerLost::Stored::nothing, kLostNumber,
                   fmt::format("The connection {} to {} is lost, and with it the open transaction; "
                               "it has to be rolled back.",
                               name_, source_));
}

bool OdbcSession::IsDead(const std::vector<OdbcDiagnostic>& records) const {
  if (TellsLost(records)) return true;
  SQLUINTEGER dead = SQL_CD_FALSE;
  const SQLRETURN result =
      SQLGetConnectAttr(link_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, SQL_IS_UINTEGER, nullptr);
  return SQL_SUCCEEDED(result) && dead == SQL_CD_TRUE;
}

void OdbcSession::GiveUp() {
  lost_ = true;
  in_transaction_ = false;
  ended_by_ = 0;
  spare_ = OdbcHandle();
  if (connected_) Disconnect(link_);
  connected_ = false;
}

// The server stands still, and a person does not want to wait: what is under way there is left to
// itself, and ends with the connection should the server wake up.
void OdbcSession::Leave(OdbcHandle statement) {
  auto held = std::make_shared<Held>();
  held->environment = std::move(environment_);
  held->link = std::move(link_);
  held->statement = std::move(statement);
  worker_.LeaveBehind(std::move(held));
  connected_ = false;
  lost_ = true;
  ended_by_ = 0;
  const std::string told = fmt::format(
      "The server of the connection {} to {} does not answer, and the wait for it was ended. The "
      "next try opens the connection anew.",
      name_, source_);
  if (in_transaction_) throw ServerLost(ServerLost::Stored::nothing, kLostNumber, told);
  throw SqlError(kLostNumber, told);
}

// A transaction stays open until it is rolled back: what follows in it must not pass by itself.
void OdbcSession::ThrowLost(std::string_view when, const std::string& reason, bool nothing_stored) {
  lost_ = true;
  ended_by_ = 0;
  const std::string told = fmt::format(
      "The connection {} to {} was lost {}. The next try opens it anew. The server's words: {}",
      name_, source_, when, reason);
  if (nothing_stored) throw ServerLost(ServerLost::Stored::nothing, kLostNumber, told);
  throw SqlError(kLostNumber, told);
}

void OdbcSession::Check(SQLRETURN result, const OdbcHandle& handle) {
  if (SQL_SUCCEEDED(result)) return;
  const std::vector<OdbcDiagnostic> records = ReadDiagnostics(handle, wide_);
  if (IsDead(records)) {
    ThrowLost(in_transaction_
                  ? "while it stored something; nothing of that is kept"
                  : "at a statement; if it was to change something, look whether it did",
              JoinDiagnostics(records), in_transaction_);
  }
  SqlError error = ToSqlError(records, IsSqlServer());
  if (in_transaction_ && EndsTransaction(error.number())) ended_by_ = error.number();
  throw error;
}

}  // namespace kaunter::sql
