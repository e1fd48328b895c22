// A new database file comes whole or not at all: it is filled under another name, and takes its own
// when it lies on the disk. A start that is cut or killed on the way leaves nothing that the next
// one would take for an office.
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>

#include "platform/private_file.h"
#include "platform/sql/data_source.h"
#include "platform/sql/sqlite/sqlite_connection.h"
#include "platform/sql/sqlite/sqlite_error.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kUnfinished = ".new-";

void RemoveWithItsLogs(const fs::path& file) {
  std::error_code ignored;
  for (const char* ending : {"", "-wal", "-shm", "-journal"}) {
    fs::remove(file.string() + ending, ignored);
  }
}

// What starts left behind that were killed while they made this file.
void RemoveUnfinished(const fs::path& path) {
  const std::string beginning = path.filename().string() + std::string(kUnfinished);
  std::error_code error;
  for (const auto& entry :
       fs::directory_iterator(path.has_parent_path() ? path.parent_path() : ".", error)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(beginning)) continue;
    const std::string process = name.substr(beginning.size());
    if (process.empty() || process.find_first_not_of("0123456789") != std::string::npos) continue;
    if (kill(static_cast<pid_t>(std::stol(process)), 0) != 0 && errno == ESRCH) {
      RemoveWithItsLogs(entry.path());
    }
  }
}

// An empty file of that name gives way; the lock makes starts at the same moment take turns.
void TakeEmptyPlace(const fs::path& whole, const fs::path& path) {
  const int fd = open(path.c_str(), O_RDWR | O_CLOEXEC);
  if (fd < 0) return;
  struct stat held {
  }, named{};
  if (flock(fd, LOCK_EX) == 0 && fstat(fd, &held) == 0 && held.st_size == 0 &&
      stat(path.c_str(), &named) == 0 && named.st_ino == held.st_ino &&
      named.st_dev == held.st_dev) {
    std::error_code stays;  // the empty file is told when it is opened
    fs::rename(whole, path, stays);
  }
  close(fd);
}

// Gives the file its name; what has come meanwhile from another start stays.
void TakeItsName(const fs::path& whole, const fs::path& path) {
  std::error_code error;
  fs::create_hard_link(whole, path, error);
  if (!error) return;
  if (fs::exists(path)) return TakeEmptyPlace(whole, path);
  fs::rename(whole, path, error);  // a disk that knows no second names
  if (error) {
    throw SqlError(4060, fmt::format("Cannot make the database '{}': {}. Check the right to write "
                                     "its folder.",
                                     path.string(), error.message()));
  }
}

sql::SqliteHandle OpenRaw(const std::string& path) {
  sqlite3* raw = nullptr;
  const int code =
      sqlite3_open_v2(path.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  sql::SqliteHandle db(raw);
  if (code != SQLITE_OK) throw sql::SqliteFailure(raw, code, path, "");
  return db;
}

void CopyPages(const std::string& from, const std::string& to) {
  const sql::SqliteHandle source = OpenRaw(from);
  const sql::SqliteHandle target = OpenRaw(to);
  if (sqlite3_backup* const pages =
          sqlite3_backup_init(target.get(), "main", source.get(), "main")) {
    sqlite3_backup_step(pages, -1);
    if (sqlite3_backup_finish(pages) == SQLITE_OK) return;
  }
  throw sql::SqliteFailure(target.get(), sqlite3_extended_errcode(target.get()), to, "");
}

}  // namespace

void CopySqlite(const std::string& path, const std::string& copy) {
  const fs::path whole = copy + std::string(kUnfinished) + std::to_string(getpid());
  RemoveWithItsLogs(whole);
  try {
    MakePrivateFile(whole);
    CopyPages(path, whole.string());
    SyncFile(whole);
    TakeItsName(whole, copy);
  } catch (...) {
    RemoveWithItsLogs(whole);
    throw;
  }
  RemoveWithItsLogs(whole);
  SyncFile(copy);
}

void MakeSqlite(std::string_view name, const std::string& path, const Clock& clock,
                const std::function<void(Connection&)>& fill) {
  // What lies there, or stands in the way, is told as it is when a file is opened.
  sql::CheckSqliteFile(path, /*create=*/true);
  std::error_code none;
  if (fs::file_size(path, none) > 0 && !none) return;
  RemoveUnfinished(path);
  const fs::path whole = path + std::string(kUnfinished) + std::to_string(getpid());
  RemoveWithItsLogs(whole);
  try {
    {
      const auto database = OpenSqlite(name, whole.string(), /*create=*/true, clock);
      fill(*database);
    }
    SyncFile(whole);
    TakeItsName(whole, path);
  } catch (...) {
    RemoveWithItsLogs(whole);
    throw;
  }
  RemoveWithItsLogs(whole);
  SyncFile(path);
}

}  // namespace kaunter
