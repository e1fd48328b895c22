// DailyBatch: posts late interest up to a date. The main menu starts it, or the machine's
// scheduler; docs/daily-batch.md tells both.
#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "collections/daily_batch.h"
#include "core/companion_program.h"
#include "core/log.h"
#include "core/places.h"
#include "core/session.h"
#include "core/values.h"
#include "dailybatch/options.h"
#include "platform/installation.h"
#include "platform/process.h"

namespace kaunter {
namespace {

using namespace exit_status;
constexpr int kPercentOfALine = 10;
constexpr const char* kUser = "DailyBatch";

std::string Shown(const DateTime& day) { return Format(day, "dd-MM-yyyy"); }

// The person at the terminal, if there is one; the log has it in any case.
void Say(std::FILE* stream, const std::string& text) {
  fmt::print(stream, "{}\n", text);
  std::fflush(stream);
}

// A line each time another tenth is done, and at the end of each day.
class ProgressLines {
 public:
  void operator()(const BatchProgress& progress) {
    const int step = progress.percent / kPercentOfALine;
    if (step == step_) return;
    step_ = step;
    Say(stdout, fmt::format("{}  {:3}%  {} charges", Shown(progress.day), progress.percent,
                            progress.posted));
  }

 private:
  int step_ = -1;
};

std::string Told(const BatchOutcome& outcome) {
  const std::string days =
      outcome.first_day == outcome.last_day
          ? Shown(outcome.last_day)
          : fmt::format("{} to {}", Shown(outcome.first_day), Shown(outcome.last_day));
  return fmt::format("Daily batch {}: {} charges, {}", days, outcome.posted,
                     ShowMoney(outcome.amount));
}

int Refused(const Session& session, const std::string& why) {
  Say(stderr, "DailyBatch: " + why);
  WriteLog(session, LogLine(session, "Daily batch refused - " + why));
  return kRefused;
}

int Run(const BatchOptions& options, Session& session) {
  try {
    ReachOffice(session, options.reach);
    BatchDate(options.date, session.clock.Now());  // before anything is opened
    OpenReachedOffice(session, options.reach);
    const DateTime date = BatchDate(options.date, ServerTime(session.Main()));
    if (options.date == kBatchToday) RefuseUnlikelyToday(session.Main(), date);
    const BatchOutcome outcome =
        RunDailyBatch(session.Main(), date, session.CurrentUserID, ProgressLines());
    Say(stdout, Told(outcome));
    WriteLog(session, LogLine(session, Told(outcome)));
    return kDone;
  } catch (const CompanionRefused& error) {
    return Refused(session, error.what());
  } catch (const BatchRefused& error) {
    return Refused(session, error.what());
  } catch (const std::exception& error) {
    Say(stderr,
        fmt::format("DailyBatch: {}\nWhat was posted stays; once this is mended, run it again.",
                    error.what()));
    LogRollback(session, fmt::format("Daily batch {}", options.date), error);
    return kFailed;
  }
}

}  // namespace
}  // namespace kaunter

int main(int argc, char** argv) {
  using namespace kaunter;
  SettleProcess();  // the desktop that started this program may be closed before it
  Session session;
  session.CurrentUserID = kUser;
  // The program lies in a folder of its own below that of the others.
  SetInstallation(
      InstallationAt(std::filesystem::path(ProgramFolder(argv[0])).parent_path().string()));
  try {
    session.AppPath = AppFolder(HandedOn().app, {});  // until the settings are known
    const BatchOptions options = ParseBatchOptions({argv + 1, argv + argc}, HandedOn());
    if (options.help) {
      fmt::print("{}", BatchUsage());
      return kDone;
    }
    const int status = Run(options, session);
    if (const std::string why = LogTrouble(session); !why.empty()) {
      Say(stderr, "DailyBatch: The log is not written: " + why);
    }
    return status;
  } catch (const CompanionRefused& error) {
    const int status = Refused(session, error.what());
    fmt::print(stderr, "{}", BatchUsage());
    return status;
  } catch (const std::exception& error) {
    Say(stderr, std::string("DailyBatch: ") + error.what());
    return kFailed;
  }
}
