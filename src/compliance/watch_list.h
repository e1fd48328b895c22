// The office's own copy of the central watch list. It is taken when somebody asks for it, serves
// while the line is down where the office has switched that on, and is what all customers are
// screened against.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/date_time.h"
#include "platform/sql/connection.h"

namespace kaunter {

class Session;

// A row of the list.
struct WatchEntry {
  std::string RefNo;
  std::string Name;
  std::string NRIC;
  std::string PassportNo;
  std::string OtherInformation;
  auto operator<=>(const WatchEntry&) const = default;
};

struct WatchCopy {
  int CopyID = 0;
  DateTime CopyDate;  // when the list was read
  int entries = 0;
  std::string UserID;  // who took it
};

// The newest copy that is whole; nothing before the first. Throws SqlError.
std::optional<WatchCopy> CopyInUse(Connection& main);
// Its rows. Throws SqlError, and std::runtime_error in the language in force when some are missing.
std::vector<WatchEntry> ReadCopy(const Session& session, const WatchCopy& copy);

// The copy serves while the central database is away: a setting, off at first.
bool UsesCopy(Connection& main);
void SetUsesCopy(Connection& main, bool on);

// The central list. Ends within a moment when a stop is asked for (platform/sql/waiting.h). Throws
// SqlError, and std::runtime_error in the language in force when it is empty: a list without a name
// must not take the place of a good one.
std::vector<WatchEntry> FetchWatchList(const Session& session);
// Keeps the list as a new copy, in small transactions; until the last one the copy before it is in
// use, and two desktops that copy at once disturb neither each other nor the counters. `progress`
// gives false to end it: then, as after a failure, what was written is never in use and goes with
// the next copy. True when it is in use. Throws SqlError.
bool StoreCopy(Session& session, const std::vector<WatchEntry>& entries,
               const std::function<bool(int done)>& progress);

}  // namespace kaunter
