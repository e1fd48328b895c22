#include "core/log.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "core/formats.h"
#include "core/session.h"
#include "platform/private_file.h"
#include "platform/sql/connection.h"

namespace kaunter {
namespace {

std::filesystem::path LogFolder(const Session& session) {
  return std::filesystem::path(session.AppPath) / "logs";
}

std::string OnOneLine(std::string_view text) {
  std::string line(text);
  for (char& c : line) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  return line;
}

void WriteLogOf(const Session& session, const DateTime& day, std::string_view line) {
  const auto path = LogFolder(session) / fmt::format("log{}.log", Format(day, "dd-MM-yyyy"));
  std::ofstream file = OpenPrivate(path, std::ios::app);
  if (!file) throw std::runtime_error(fmt::format("cannot open the log {}", path.string()));
  file << OnOneLine(line);
  if (session.RealTimeInLog) {
    file << " (real time " << Format(Clock().Now(), "dd-MM-yyyy hh:mm:ss AMPM") << ')';
  }
  file << '\n';
  file.close();
  if (!file) throw std::runtime_error(fmt::format("cannot write the log {}", path.string()));
}

}  // namespace

void MakeLogFolder(const Session& session) {
  std::filesystem::create_directories(LogFolder(session));
}

std::string LogLine(const Session& session, std::string_view text) {
  const DateTime now = session.clock.Now();
  return fmt::format("[{} {}] [{}] {}", Format(now, "dd-MM-yyyy"), Format(now, "hh:mm:ss AMPM"),
                     session.CurrentUserID, text);
}

void WriteLog(const Session& session, std::string_view line) {
  WriteLogOf(session, session.clock.Now(), line);
}

void LogSetClock(Session& session) {
  session.RealTimeInLog = true;
  const std::string line =
      LogLine(session, fmt::format("the clock of this program is set to {}",
                                   Format(session.clock.Now(), "dd-MM-yyyy hh:mm:ss AMPM")));
  const DateTime real = Clock().Now();
  WriteLog(session, line);
  if (real.DateOnly() != session.clock.Now().DateOnly()) WriteLogOf(session, real, line);
}

void LogRollback(const Session& session, std::string_view identifier, const std::exception& error) {
  const auto* sql = dynamic_cast<const SqlError*>(&error);
  try {
    WriteLog(session,
             LogLine(session, fmt::format("{} - error Rollback {} - {}", identifier,
                                          sql != nullptr ? sql->number() : 0, error.what())));
  } catch (const std::exception&) {
    // The caller tells the failure itself all the same.
  }
}

}  // namespace kaunter
