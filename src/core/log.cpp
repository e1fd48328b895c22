#include "core/log.h"

#include <fmt/format.h>

#include <deque>
#include <filesystem>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "core/formats.h"
#include "core/log_files.h"
#include "core/secrets.h"
#include "core/session.h"
#include "platform/private_file.h"
#include "platform/rolling_file.h"
#include "platform/sql/connection.h"

namespace kaunter {
namespace {

// A failure that comes again and again must not fill the disk.
constexpr std::uintmax_t kLargest = 16UL << 20U;
constexpr int kFullOnesKept = 4;
// More than a year: a return or an inspection asks for the year before.
constexpr std::size_t kDaysKept = 400;
constexpr std::size_t kMostUnwritten = 1000;

struct DayFile {
  std::string kind;  // "log"
  std::string day;   // "yyyyMMdd"
};

// Of "log26-11-2026.log" and "log26-11-2026.log.1"; an empty kind for a file of another name.
DayFile DayFileOf(std::string_view name) {
  constexpr std::string_view kShape = "dd-dd-dddd.log";
  const std::size_t at = name.find_first_of("0123456789");
  if (at == std::string_view::npos || at == 0 || name.size() < at + kShape.size()) return {};
  for (std::size_t i = 0; i < kShape.size(); ++i) {
    const char c = name[at + i];
    if (kShape[i] == 'd' ? c < '0' || c > '9' : c != kShape[i]) return {};
  }
  const std::string_view day = name.substr(at);
  return {std::string(name.substr(0, at)),
          fmt::format("{}{}{}", day.substr(6, 4), day.substr(3, 2), day.substr(0, 2))};
}

// Counted, never by the clock: one that jumps must not cost the logs of the year.
void RemoveOldDays(const std::filesystem::path& folder) {
  std::map<std::string, std::map<std::string, std::vector<std::filesystem::path>>> kinds;
  std::error_code ignored;  // another desktop may be doing the same
  for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
    const DayFile file = DayFileOf(entry.path().filename().string());
    if (!file.kind.empty()) kinds[file.kind][file.day].push_back(entry.path());
  }
  for (auto& [kind, days] : kinds) {
    for (; days.size() > kDaysKept; days.erase(days.begin())) {
      for (const auto& path : days.begin()->second) std::filesystem::remove(path, ignored);
    }
  }
}

std::string OnOneLine(std::string_view text) {
  std::string line(text);
  for (char& c : line) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  return line;
}

// Lines that could not be written yet into a folder, by this process.
struct Unwritten {
  struct Line {
    std::filesystem::path file;
    std::string text;
  };
  std::deque<Line> lines;
  std::size_t lost = 0;  // there were too many
  std::string why;
  bool to_raise = false;
};

std::mutex unwritten_mutex;

Unwritten& UnwrittenOf(const Session& session) {
  static std::map<std::filesystem::path, Unwritten> folders;
  return folders[LogFolder(session)];
}

void Append(const std::filesystem::path& file, const std::string& text) {
  RollingFile(file, kLargest, kFullOnesKept).Add(text);
}

// False where the line is kept for later.
bool WriteLogOf(const Session& session, const DateTime& day, std::string_view line) {
  std::string text = OnOneLine(WithoutPasswords(line));
  if (session.RealTimeInLog) {
    text += fmt::format(" (real time {})", Format(Clock().Now(), "dd-MM-yyyy hh:mm:ss AMPM"));
  }
  const std::lock_guard lock(unwritten_mutex);
  Unwritten& unwritten = UnwrittenOf(session);
  auto& lines = unwritten.lines;
  lines.push_back({DayFilePath(LogFolder(session), "log", day), text + '\n'});
  try {
    if (!std::filesystem::exists(LogFolder(session))) MakeLogFolder(session);
    if (unwritten.lost > 0) {
      Append(lines.front().file, fmt::format("{} lines could not be written\n", unwritten.lost));
    }
    unwritten.lost = 0;
    for (; !lines.empty(); lines.pop_front()) Append(lines.front().file, lines.front().text);
    unwritten.why.clear();
    unwritten.to_raise = false;
    return true;
  } catch (const std::exception& failure) {
    unwritten.why = failure.what();
    if (lines.size() > kMostUnwritten) {
      lines.pop_front();
      ++unwritten.lost;
    }
    return false;
  }
}

}  // namespace

std::filesystem::path LogFolder(const Session& session) {
  return std::filesystem::path(session.AppPath) / "logs";
}

std::filesystem::path DayFilePath(const std::filesystem::path& folder, std::string_view kind,
                                  const DateTime& day) {
  return folder / fmt::format("{}{}.log", kind, Format(day, "dd-MM-yyyy"));
}

void MakeLogFolder(const Session& session) {
  const std::filesystem::path folder = LogFolder(session);
  std::error_code failed;
  std::filesystem::create_directories(folder, failed);
  KeepFolderPrivate(folder);
  RemoveOldDays(folder);
}

std::string LogLine(const Session& session, std::string_view text) {
  const DateTime now = session.clock.Now();
  return fmt::format("[{} {}] [{}] {}", Format(now, "dd-MM-yyyy"), Format(now, "hh:mm:ss AMPM"),
                     session.CurrentUserID, text);
}

void WriteLog(const Session& session, std::string_view line) {
  if (WriteLogOf(session, session.clock.Now(), line)) return;
  const std::lock_guard lock(unwritten_mutex);
  UnwrittenOf(session).to_raise = true;
}

void RaiseLogTrouble(const Session& session) {
  const std::lock_guard lock(unwritten_mutex);
  Unwritten& unwritten = UnwrittenOf(session);
  if (std::exchange(unwritten.to_raise, false)) throw std::runtime_error(unwritten.why);
}

std::string LogTrouble(const Session& session) {
  const std::lock_guard lock(unwritten_mutex);
  return UnwrittenOf(session).why;
}

void LogSetClock(Session& session) {
  session.RealTimeInLog = true;
  const std::string line =
      LogLine(session, fmt::format("the clock of this program is set to {}",
                                   Format(session.clock.Now(), "dd-MM-yyyy hh:mm:ss AMPM")));
  const DateTime real = Clock().Now();
  WriteLog(session, line);
  if (real.DateOnly() != session.clock.Now().DateOnly()) WriteLogOf(session, real, line);
  if (const std::string why = LogTrouble(session); !why.empty()) throw std::runtime_error(why);
}

void LogRollback(const Session& session, std::string_view identifier, const std::exception& error) {
  const auto* sql = dynamic_cast<const SqlError*>(&error);
  WriteLogOf(session, session.clock.Now(),
             LogLine(session, fmt::format("{} - error Rollback {} - {}", identifier,
                                          sql != nullptr ? sql->number() : 0, error.what())));
}

}  // namespace kaunter
