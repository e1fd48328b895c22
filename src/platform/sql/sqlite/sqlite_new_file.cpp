// A new database file comes whole or not at all: it is filled under another name, and takes its own
// when it lies on the disk. A start that is cut or killed on the way leaves nothing that the next
// one would take for an office.
#include <fmt/format.h>

#include <filesystem>
#include <string>

#include "platform/disk.h"
#include "platform/private_file.h"
#include "platform/process.h"
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
    if (!ProcessRuns(std::stol(process))) RemoveWithItsLogs(entry.path());
  }
}

// Gives the file its name; what has come meanwhile from another start stays.
void TakeItsName(const fs::path& whole, const fs::path& path) {
  std::error_code error;
  fs::create_hard_link(whole, path, error);
  if (!error) return;
  // An empty file of that name gives way; starts at the same moment take turns.
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
  const fs::path whole = copy + std::string(kUnfinished) + std::to_string(ThisProcess());
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
  const fs::path whole = path + std::string(kUnfinished) + std::to_string(ThisProcess());
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
