#include "core/companion_program.h"

#include <fmt/format.h>

#include "core/connect_sequence.h"
#include "core/log.h"
#include "core/moved_office.h"
#include "core/places.h"
#include "core/session.h"
#include "core/slow_statements.h"
#include "core/startup.h"
#include "core/trace.h"
#include "core/values.h"

namespace kaunter {
namespace {

// Settings that cannot be read are told by the log, too, where it lies without them.
LocalSettings ReadForLog(Session& session, const CompanionOptions& office) {
  try {
    return LocalSettings::Read(office.settings, office.database);
  } catch (const std::exception&) {
    session.AppPath = AppFolder(office.app, {});
    MakeLogFolder(session);
    throw;
  }
}

}  // namespace

bool TakeReachOption(const std::vector<std::string>& arguments, std::size_t* i,
                     CompanionReach* reach) {
  const std::pair<std::string_view, std::string*> options[] = {
      {"--app", &reach->office.app},
      {"--database", &reach->office.database},
      {"--settings", &reach->office.settings},
      {"--now", &reach->office.now},
      {"--trace", &reach->trace},
  };
  for (const auto& [name, value] : options) {
    if (arguments[*i] != name) continue;
    if (*i + 1 >= arguments.size()) {
      throw CompanionRefused(fmt::format("{} needs a value", name));
    }
    *value = arguments[++*i];
    if (name == "--now" && !DateTime::FromCanonical(*value)) {
      throw CompanionRefused(fmt::format("--now takes yyyy-mm-dd hh:mm:ss, not \"{}\"", *value));
    }
    return true;
  }
  return false;
}

LocalSettings ReachOffice(Session& session, const CompanionReach& reach) {
  LocalSettings local = ReadForLog(session, reach.office);
  session.AppPath = AppFolder(reach.office.app, local);
  MakeLogFolder(session);
  const std::string& now = reach.office.now.empty() ? local.Now : reach.office.now;
  if (!now.empty()) {
    session.clock.Set(*DateTime::FromCanonical(now));
    LogSetClock(session);
  }
  ApplyLocalSettings(session, local);
  return local;
}

void OpenReachedOffice(Session& session, const CompanionReach& reach) {
  // The trace that the settings name belongs to the desktop, which may be running.
  if (!reach.trace.empty()) session.trace = OpenTrace(reach.trace);
  NoteSlowStatements(session);
  session.MainConn =
      OpenConnection("MainConn", OfficeConnectionString(session, session.ConnDatabase),
                     session.data_sources, session.clock);
  if (session.trace) session.MainConn->SetTrace(session.trace);
  RefuseMovedOffice(session.Main());
  if (!TableExists(session.Main(), "ChargeMast")) {
    throw CompanionRefused(fmt::format(
        "The data source {} holds no office yet: start Kaunter on it first", session.ConnDatabase));
  }
  if (const auto too_old = TooOldFor(session.Main())) throw CompanionRefused(too_old->english);
}

void OpenReachedTrail(Session& session) {
  session.settings.TransLogs = ReadSetting(session.Main(), "TransLogs") == "1";
  if (!session.settings.TransLogs) return;
  session.LogsConn =
      OpenConnection("LogsConn", OfficeConnectionString(session, session.ConnDatabase + "-Logs"),
                     session.data_sources, session.clock);
}

}  // namespace kaunter
