// Moving an office between engines: the embedded file into an empty database of a PostgreSQL
// server, or back into a new file.
//
// What decides is one commit, that of the old office's seal:
//   1. Nobody saves in the old office any more: its write locks are held, and go with this process.
//   2. All tables are copied into the target, which bears the mark of a copy; both are compared row
//      by row, and the ledger of both is checked.
//   3. The old office gets its seal: it names the new place, and every save is refused from then
//      on. Up to here the old office is in force, whatever happens; behind it, the new one.
//   4. The mark leaves the target, and the settings of this PC lead to it.
// A move that ended before 3 begins anew; one that ended between 3 and 4 is finished by the next.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/local_settings.h"
#include "platform/clock.h"
#include "upkeep/office_check.h"

namespace kaunter {

struct MoveRequest {
  LocalSettings local;        // with the target among its sources
  std::string settings_file;  // that leads to the target afterwards
  std::string to;             // the target's data source
  std::string to_database;    // where the data source does not name it
  bool write_source = false;  // the target is not in the file yet
  Clock clock;
  std::string user;
};

struct MoveLook {
  std::string from;  // places as people are told them, without a password
  std::string to;
  int tables = 0;
  std::int64_t rows = 0;
  bool logs = false;                // the audit database goes along
  bool only_finish = false;         // the copy stands; an earlier move was cut behind its seal
  std::vector<std::string> behind;  // views and triggers, which do not move
};

enum class MovePhase { copy, compare, ledger };

struct OfficeMoveProgress {
  MovePhase phase = MovePhase::copy;
  std::string what;  // a table, or a company
  std::int64_t done = 0;
  std::int64_t total = 0;
};

// Asked some times a second; false gives the move up. It is not asked once the seal is set.
using MoveGoOn = std::function<bool(const OfficeMoveProgress&)>;

struct MoveDone {
  MoveLook look;
  double copy_seconds = 0;
  double compare_seconds = 0;
  double seconds = 0;
  OfficeCheck ledger;  // the same on both sides
};

// The data sources of the settings to which an office can go, as they are written there.
std::vector<std::string> TargetsOf(const LocalSettings& local, const std::string& settings_file);

// All that can be known before anything is done. Throws CaptionError for what does not fit, and
// SqlError.
MoveLook LookAtMove(const MoveRequest& request);
// Throws CopyStopped (office_copy.h) when it was given up, CaptionError, SqlError, all three
// with the old office in force, and std::runtime_error behind the seal; what() tells what to do.
MoveDone MoveOffice(const MoveRequest& request, const MoveGoOn& go_on);
// The office goes back to where it was, as long as nothing was saved in the new place: `to` is the
// old data source. Throws CaptionError where both differ.
MoveDone UndoMove(const MoveRequest& request, const MoveGoOn& go_on);

}  // namespace kaunter
