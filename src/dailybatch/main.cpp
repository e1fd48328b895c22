// DailyBatch: posts late interest up to a date. The main menu starts it, or the machine's
// scheduler; docs/daily-batch.md tells both.
#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "collections/daily_batch.h"
#include "core/log.h"
#include "core/startup.h"
#include "core/trace.h"
#include "core/values.h"
#include "dailybatch/options.h"
#include "platform/process.h"

namespace kaunter {
namespace {

constexpr int kDone = 0;
constexpr int kRefused = 1;  // the date or the command line does not fit; nothing was done
constexpr int kFailed = 2;   // what was posted stays; another run goes on from there
constexpr int kPercentOfALine = 10;
constexpr const char* kUser = "DailyBatch";

std::string Shown(const DateTime& day) { return Format(day, "dd-MM-yyyy"); }

// The person at the terminal, if there is one; the log has it in any case.
void Say(std::FILE* stream, const std::string& text) {
  fmt::print(stream, "{}\n", text);
  std::fflush(stream);
}

void OpenOffice(Session& session, const BatchOptions& options) {
  const LocalSettings local = LocalSettings::Read(options.office.settings, options.office.database);
  ApplyLocalSettings(session, local);
  // The trace that the settings name belongs to the desktop, which may be running.
  if (!options.trace.empty()) session.trace = OpenTrace(options.trace);
  session.MainConn =
      OpenConnection("MainConn", OfficeConnectionString(session, session.ConnDatabase),
                     session.data_sources, session.clock);
  if (session.trace) session.MainConn->SetTrace(session.trace);
  if (!TableExists(session.Main(), "ChargeMast")) {
    throw BatchUsageError(fmt::format(
        "The data source {} holds no office yet: start Kaunter on it first", session.ConnDatabase));
  }
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
  try {
    WriteLog(session, LogLine(session, "Daily batch refused - " + why));
  } catch (const std::exception& error) {
    Say(stderr, std::string("DailyBatch: ") + error.what());
  }
  return kRefused;
}

int Run(const BatchOptions& options, Session& session) {
  try {
    MakeLogFolder(session);
    const bool set = !options.office.now.empty();
    if (set) {
      session.clock.Set(*DateTime::FromCanonical(options.office.now));
      LogSetClock(session);
    }
    BatchDate(options.date, session.clock.Now());  // before anything is opened
    OpenOffice(session, options);
    const DateTime date = BatchDate(options.date, ServerTime(session.Main()));
    const BatchOutcome outcome =
        RunDailyBatch(session.Main(), date, session.CurrentUserID, ProgressLines());
    Say(stdout, Told(outcome));
    WriteLog(session, LogLine(session, Told(outcome)));
    return kDone;
  } catch (const BatchUsageError& error) {
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
  OutliveFailedWrites();  // the desktop that started this program may be closed before it
  Session session;
  session.CurrentUserID = kUser;
  const CompanionOptions handed_on = HandedOn();
  // The program lies in a folder of its own below that of the others.
  session.AppPath = handed_on.app.empty()
                        ? std::filesystem::path(ProgramFolder(argv[0])).parent_path().string()
                        : handed_on.app;
  try {
    const BatchOptions options = ParseBatchOptions({argv + 1, argv + argc}, handed_on);
    if (options.help) {
      fmt::print("{}", BatchUsage());
      return kDone;
    }
    if (!options.office.app.empty()) {
      session.AppPath = std::filesystem::absolute(options.office.app).lexically_normal().string();
    }
    return Run(options, session);
  } catch (const BatchUsageError& error) {
    const int status = Refused(session, error.what());
    fmt::print(stderr, "{}", BatchUsage());
    return status;
  } catch (const std::exception& error) {
    Say(stderr, std::string("DailyBatch: ") + error.what());
    return kFailed;
  }
}
