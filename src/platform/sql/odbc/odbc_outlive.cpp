// OdbcConnection: how the loss of a server is borne.
//
// A transaction that the loss meets before its commit is stored nowhere for certain, and is asked
// anew. A commit whose answer was lost may be stored. So each leaves a mark, a row with a key of
// its own, and another row with that key is tried afterwards: the server lets it wait for a
// transaction that is still on its way, refuses it where that was stored and takes it where not.
// Neither a number of the server nor a look at the saved rows could tell: a server that takes over
// draws the numbers of lost transactions again, and two equal payments of one day are nothing rare.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <utility>

#include "platform/digest.h"
#include "platform/sql/odbc/odbc_connection.h"
#include "platform/sql/odbc/odbc_error.h"
#include "platform/sql/odbc/odbc_string.h"
#include "platform/sql/retry.h"
#include "platform/sql/standby.h"
#include "platform/sql/waiting.h"

namespace kaunter::sql {
namespace {

using Time = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBetweenAttempts(500);
constexpr int kMostCommits = 3;
constexpr int kLoginSecondsAgain = 5;  // a server that does not take the call may be the dead one

// What passes: no server, one that starts or only reads yet, a lock of the transaction that was
// lost.
bool Passes(int number) {
  constexpr int kPassing[] = {kLostNumber, kCannotOpenNumber, 1222, 1205, 3906};
  return std::find(std::begin(kPassing), std::end(kPassing), number) != std::end(kPassing);
}

std::string RandomName() {
  std::array<unsigned char, 16> bytes{};
  FillWithRandom(bytes);
  return fmt::format("{:02x}", fmt::join(bytes, ""));
}

std::string TimeOfDay(const DateTime& time) {
  return fmt::format("{:02}:{:02}:{:02}", time.hour, time.minute, time.second);
}

std::string InsertOf(const std::string& mark) {
  return fmt::format("INSERT INTO SaveMark (Mark,SavedAt) VALUES ('{}',getdate())", mark);
}

}  // namespace

void OdbcConnection::OutliveServer(std::chrono::milliseconds patience) {
  const bool server = link_->session.IsSqlServer() || link_->session.dbms() == "PostgreSQL";
  if (!server) return;
  Query("SELECT Mark FROM SaveMark WHERE 1=0");
  patience_ = patience;
  login_seconds_ = std::min(login_seconds_, kLoginSecondsAgain);
  marks_ = RandomName();
}

bool OdbcConnection::NamesSeveral() const {
  return link_->session.dbms() == "PostgreSQL" && NamesSeveralServers(odbc_string_);
}

OdbcSession& OdbcConnection::LendSession() {
  patience_ = {};
  record_.End();
  return link_->session;
}

bool OdbcConnection::Patiently(const std::function<void()>& attempt) {
  const auto begin = Time::now();
  const auto longest = tired_ ? std::chrono::milliseconds(0) : patience_;
  EndOfWait asked;
  for (;;) {
    try {
      attempt();
      tired_ = false;
      return true;
    } catch (const SqlError& failure) {
      if (!Passes(failure.number())) throw;
    }
    const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(Time::now() - begin);
    if (!asked) asked = ServerIsAway();
    if (since >= longest || EndsWait(asked, since, longest) || !SleepActing(kBetweenAttempts)) {
      tired_ = true;
      return false;
    }
  }
}

// Where others have changed meanwhile what it has read, it is not the same transaction any more.
bool OdbcConnection::TakeUp() {
  bool same = false;
  std::unique_ptr<Link> fresh;
  const auto repeat = [&] {
    fresh = NewLink();
    fresh->dialect->Begin(fresh->session);
    same = record_.Repeat([&](const Asked& asked) { return fresh->Send(asked); },
                          [&] { return fresh->session.Lost(); });
  };
  if (record_.Whole() && Patiently(repeat) && same) {
    link_ = std::move(fresh);
    return true;
  }
  record_.End();
  return false;
}

// One row for each connection, so that the table stays small.
void OdbcConnection::BeforeCommit() {
  if (!Outlives()) return;
  const std::string mark = fmt::format("{}-{}", marks_, ++marks_left_);
  if (stored_mark_.empty() ||
      Execute(fmt::format("UPDATE SaveMark SET Mark='{}',SavedAt=getdate() WHERE Mark='{}'", mark,
                          stored_mark_)) == 0) {
    // The last ones stay whatever the clock of this server says: somebody may still ask for his.
    Execute(
        "DELETE FROM SaveMark WHERE SavedAt < dateadd(month,-1,getdate()) AND Mark NOT IN "
        "(SELECT TOP 1000 Mark FROM SaveMark ORDER BY SavedAt DESC)");
    Execute(InsertOf(mark));
  }
  mark_ = mark;
}

void OdbcConnection::DoCommit() {
  for (int times = 1;; ++times) {
    try {
      link_->session.Commit();
      break;
    } catch (const SqlError& lost) {
      if (mark_.empty() || !Lost()) throw;
      const Fate fate = FateOf(mark_);
      if (fate == Fate::kStored) break;
      if (fate == Fate::kUnknown) {
        unsettled_ = mark_;
        unsettled_since_ = TimeOfDay(clock_.Now());
        throw ServerLost(ServerLost::Stored::unknown, kLostNumber, lost.what());
      }
      if (times >= kMostCommits || !TakeUp()) {
        throw ServerLost(ServerLost::Stored::nothing, kLostNumber,
                         fmt::format("The connection {} to {} was lost while the save was being "
                                     "committed; nothing of it is stored.",
                                     name(), link_->session.source()));
      }
    }
  }
  if (!mark_.empty()) stored_mark_ = std::exchange(mark_, {});
  record_.End();
}

OdbcConnection::Fate OdbcConnection::FateOf(const std::string& mark) {
  Fate fate = Fate::kUnknown;
  Patiently([&] {
    auto fresh = NewLink();
    fate = IsStored(*fresh, mark) ? Fate::kStored : Fate::kNotStored;
    // Of a transaction that was not stored the rest may come; none of it may pass by itself.
    if (fate == Fate::kStored) link_ = std::move(fresh);
  });
  return fate;
}

bool OdbcConnection::IsStored(Link& link, const std::string& mark) const {
  link.dialect->Begin(link.session);
  try {
    link.Send({Asked::Kind::kExecute, InsertOf(mark)});
  } catch (const SqlError& failure) {
    if (failure.number() != kDuplicateKeyNumber) throw;
    // A server that was to wait for its standby and could not may show what no other has. A commit
    // behind it takes all before it along.
    link.Send({Asked::Kind::kExecute,
               fmt::format("UPDATE SaveMark SET SavedAt=getdate() WHERE Mark='{}'", mark)});
    link.session.Commit();
    return true;
  }
  link.session.Rollback();
  link.dialect->Forget();
  return false;
}

// Before anything else is stored: whoever was told that it is not known will try again.
void OdbcConnection::Settle() {
  if (unsettled_.empty()) return;
  const std::string at = unsettled_since_;
  switch (FateOf(unsettled_)) {
    case Fate::kUnknown:
      throw ServerLost(ServerLost::Stored::unknown, kLostNumber,
                       fmt::format("The server is not reached, and what became of the save of {} "
                                   "is not known yet.",
                                   at));
    case Fate::kStored:
      stored_mark_ = std::exchange(unsettled_, {});
      throw ServerLost(
          ServerLost::Stored::earlier, kLostNumber,
          fmt::format("The save of {}, whose answer was lost with the connection, is stored.", at));
    case Fate::kNotStored:
      unsettled_.clear();
  }
}

// Where the manager of the servers has no standby left, it empties the list of those that a commit
// waits for, so that the work goes on.
bool OdbcConnection::StandbyIsMissing() {
  if (!NamesSeveral() || InTransaction()) return false;
  try {
    const OdbcOutcome names = Open().session.Run("SHOW synchronous_standby_names", true);
    return names.rows && !names.rows->Eof() && names.rows->Field(0).ToText().empty();
  } catch (const SqlError&) {
    return false;  // whoever asks for more is told
  }
}

}  // namespace kaunter::sql

namespace kaunter {

bool StandbyIsMissing(Connection& connection) {
  auto* odbc = dynamic_cast<sql::OdbcConnection*>(&connection);
  return odbc != nullptr && odbc->StandbyIsMissing();
}

}  // namespace kaunter
