// The embedded engine's own functions and collation (functions.h tells what each one does), for a
// SQLite handle: the engine's own, or one that a driver has opened and that loads them as an
// extension.
#pragma once

#include <sqlite3.h>

#include <optional>
#include <stdexcept>
#include <string>

#include "platform/clock.h"

namespace kaunter::sql {

// The clock as one statement sees it: read once, however often the statement asks.
class StatementClock {
 public:
  explicit StatementClock(const Clock& clock) : clock_(clock) {}
  void NextStatement() { now_.reset(); }
  const std::string& Now() {
    if (!now_) now_ = clock_.Now().ToCanonical();
    return *now_;
  }

 private:
  const Clock& clock_;
  std::optional<std::string> now_;
};

// Registers everything; `clock` must outlive the handle. The caller says when a statement begins.
// Throws std::logic_error when the handle refuses (a fault of ours).
void RegisterSqliteFunctions(sqlite3* db, StatementClock* clock);
// The same for a handle whose statements others run: the beginning of each is watched.
void RegisterSqliteFunctions(sqlite3* db, const Clock& clock);

// A function refuses with SQL Server's number; it stands in brackets before the message of the
// handle ("[8114] Error converting ..."). This takes it off again; 0 when there is none.
int TakeErrorNumber(std::string* message);

}  // namespace kaunter::sql
