#include "platform/sql/odbc/odbc_connection.h"

#include <optional>
#include <utility>

#include "platform/sql/data_source.h"
#include "platform/sql/odbc/odbc_silence.h"
#include "platform/sql/odbc/odbc_string.h"
#include "platform/sql/waiting.h"

namespace kaunter {
namespace sql {
namespace {

constexpr int kBusyNumber = 1222;

}  // namespace

OdbcConnection::Link::Link(const std::string& name, const std::string& odbc_string,
                           const Clock& clock, int login_seconds)
    : session(name, odbc_string, login_seconds) {
  if (session.dbms() == "PostgreSQL") {
    const auto silence = std::make_shared<OdbcSilence>(session, odbc_string);
    session.OnSilence([silence] { silence->Ask(); });
  }
  dialect = DialectFor(session, clock);
}

OdbcOutcome OdbcConnection::Link::Send(const Asked& asked) {
  if (asked.kind == Asked::Kind::kQueryOnly) return dialect->RunReading(session, asked.sql);
  return dialect->Run(session, asked.sql, asked.kind == Asked::Kind::kQuery);
}

OdbcConnection::OdbcConnection(std::string name, const std::string& odbc_string, const Clock& clock,
                               int login_seconds)
    : Connection(std::move(name)),
      odbc_string_(odbc_string),
      clock_(clock),
      login_seconds_(login_seconds),
      link_(NewLink()) {}

std::unique_ptr<OdbcConnection::Link> OdbcConnection::NewLink() const {
  std::unique_ptr<Link> link;
  OpenOneOf(odbc_string_, [&](const std::string& text) {
    link = std::make_unique<Link>(name(), text, clock_, login_seconds_);
  });
  return link;
}

OdbcConnection::Link& OdbcConnection::Open() {
  if (!Lost() || InTransaction()) return *link_;
  std::optional<SqlError> refused;
  const auto attempt = [&] {
    try {
      link_ = NewLink();
    } catch (const SqlError& failure) {
      refused = failure;
      throw;
    }
  };
  if (!Patiently(attempt)) throw *refused;  // no other try: whoever has waited is told now
  return *link_;
}

OdbcOutcome OdbcConnection::Ask(const Asked& asked) {
  constexpr int kMostTimes = 3;
  for (int times = 1;; ++times) {
    Link& link = Open();
    const bool within = InTransaction();
    try {
      OdbcOutcome outcome = link.Send(asked);
      if (within) record_.Keep(asked, outcome);
      return outcome;
    } catch (const SqlError& failure) {
      if (!Lost()) {
        if (within) record_.Keep(asked, failure);
        throw;
      }
      const bool goes_on = Outlives() && times < kMostTimes && !StopAsked() &&
                           (within ? TakeUp() : asked.OnlyReads());
      if (!goes_on) throw;
    }
  }
}

std::int64_t OdbcConnection::DoExecute(std::string_view sql) {
  return Ask({Asked::Kind::kExecute, sql}).affected;
}

Recordset OdbcConnection::DoQuery(std::string_view sql) {
  OdbcOutcome outcome = Ask({Asked::Kind::kQuery, sql});
  return outcome.rows ? std::move(*outcome.rows) : Recordset();
}

Recordset OdbcConnection::DoQueryOnly(std::string_view sql) {
  OdbcOutcome outcome = Ask({Asked::Kind::kQueryOnly, sql});
  return outcome.rows ? std::move(*outcome.rows) : Recordset();
}

void OdbcConnection::DoBegin() {
  Settle();
  // Nothing was asked yet: a connection that died while nobody used it, and a desktop that holds
  // the lock of the saves until the standby has taken over, or until the server has noticed that
  // its line is dead, are waited for.
  auto begin = std::chrono::steady_clock::now();
  for (bool again = false;; again = true) {
    const bool was_lost = Lost();
    Link& link = Open();
    if (was_lost) begin = std::chrono::steady_clock::now();
    try {
      link.dialect->Begin(link.session);
      break;
    } catch (const SqlError& failure) {
      const bool waits = failure.number() == kBusyNumber &&
                         std::chrono::steady_clock::now() - begin < patience_ / 3;
      if (!Outlives() || (!waits && (again || !Lost()))) throw;
    }
  }
  if (Outlives()) record_.Start();
}

void OdbcConnection::DoBeginReading() {
  for (bool again = false;; again = true) {
    Link& link = Open();
    try {
      return link.dialect->BeginReading(link.session);
    } catch (const SqlError&) {
      if (again || !Outlives() || !Lost() || StopAsked()) throw;
    }
  }
}

void OdbcConnection::DoRollback() {
  record_.End();
  mark_.clear();
  link_->session.Rollback();
  link_->dialect->Forget();
  if (!Lost()) link_->dialect->EndReading(link_->session);
}

}  // namespace sql

std::unique_ptr<Connection> OpenOdbc(std::string_view name, const std::string& odbc_string,
                                     const Clock& clock) {
  return std::make_unique<sql::OdbcConnection>(std::string(name), odbc_string, clock);
}

}  // namespace kaunter
