#include "office_tool/move_command.h"

#include <fmt/format.h>

#include <chrono>

#include "core/places.h"
#include "office_tool/command.h"
#include "upkeep/office_copy.h"
#include "upkeep/office_move.h"

namespace kaunter {
namespace {

constexpr int kPercentOfALine = 10;

// A line each time another tenth of a phase is done.
class ProgressLines {
 public:
  bool operator()(const OfficeMoveProgress& progress) {
    const int step = progress.total == 0
                         ? 0
                         : static_cast<int>(progress.done * 100 / progress.total) / kPercentOfALine;
    if (progress.phase == phase_ && step == step_) return true;
    if (progress.phase != phase_) begun_ = std::chrono::steady_clock::now();
    phase_ = progress.phase;
    step_ = step;
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begun_).count();
    const char* names[] = {"copied", "compared", "ledger"};
    const char* name = names[static_cast<int>(progress.phase)];
    if (progress.phase == MovePhase::ledger) {
      OfficeRun::Say(fmt::format("{}: company {}", name, progress.what));
    } else {
      OfficeRun::Say(fmt::format("{} {:3}%, {} of {} rows, {:.0f} rows a second, at {}", name,
                                 step * kPercentOfALine, progress.done, progress.total,
                                 seconds > 0 ? static_cast<double>(progress.done) / seconds : 0.0,
                                 progress.what));
    }
    return true;
  }

 private:
  MovePhase phase_ = MovePhase::ledger;
  int step_ = -1;
  std::chrono::steady_clock::time_point begun_;
};

void Tell(const MoveLook& look) {
  OfficeRun::Say(fmt::format("from  {}\nto    {}\n{} tables, {} rows{}", look.from, look.to,
                             look.tables, look.rows,
                             look.logs ? ", the audit records among them" : ""));
  for (const std::string& thing : look.behind) {
    OfficeRun::Say(fmt::format("stays behind: {}", thing));
  }
  if (look.only_finish)
    OfficeRun::Say("an earlier move was cut near its end: only the rest is done");
}

}  // namespace

int RunMoveCommand(OfficeRun& run) {
  if (!run.reach.office.database.empty()) {
    throw CompanionRefused(
        "move goes from data source to data source of the settings; say --settings instead of "
        "--database");
  }
  MoveRequest request;
  request.local = run.local;
  request.settings_file =
      run.reach.office.settings.empty() ? SettingsFile() : run.reach.office.settings;
  request.to = run.Value("--to");
  request.to_database = run.Value("--to-database");
  request.clock = run.session.clock;
  request.user = run.session.CurrentUserID;
  if (!run.Has("--undo")) Tell(LookAtMove(request));
  if (!run.Has("--yes")) {
    OfficeRun::Say("Nothing was done. To do it, say --yes too.");
    return exit_status::kDone;
  }
  MoveDone done;
  try {
    done = run.Has("--undo") ? UndoMove(request, ProgressLines())
                             : MoveOffice(request, ProgressLines());
  } catch (const SqlError& failure) {
    throw SqlError(failure.number(),
                   fmt::format("Nothing was moved, the office is where it was. {}\nMend the cause "
                               "and do it again: what this left in the new place is cleared then.",
                               failure.what()));
  }
  run.Report(fmt::format(
      "The office is in {} now; {} {} rows in {:.1f} s (copied in {:.1f} s, compared in {:.1f} "
      "s), {} loans and {} receipts verified, {} figures that did not hold before either. The "
      "settings {} lead there; those of the other PCs have to be changed.",
      done.look.to, run.Has("--undo") ? "compared" : "moved", done.look.rows, done.seconds,
      done.copy_seconds, done.compare_seconds, done.ledger.loans, done.ledger.receipts,
      done.ledger.faults.size(), request.settings_file));
  return exit_status::kDone;
}

}  // namespace kaunter
