// Opening a database file of the embedded engine, and refusing one that is none of ours.
#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "platform/disk.h"
#include "platform/private_file.h"
#include "platform/sql/data_source.h"
#include "platform/sql/sqlite/sqlite_connection.h"
#include "platform/sql/sqlite/sqlite_error.h"
#include "platform/sql/waiting.h"

namespace kaunter::sql {
namespace {

constexpr int kApplicationId = 0x4B41554E;  // "KAUN", in the file's header
constexpr int kFormatVersion = 1;           // of the way we use a file: collation, dates, decimals
constexpr int kBusyMilliseconds = 10'000;
constexpr char kFileHeader[] = "SQLite format 3";

[[noreturn]] void Refuse(const std::string& path, const std::string& why, const std::string& what) {
  throw SqlError(4060, fmt::format("Cannot open the database '{}': {}. {}.", path, why, what));
}

// The log of a database holds the last saves. Opened beside a missing or an empty file it would be
// thrown away.
void RefuseLogWithout(const std::string& path, std::string_view state) {
  std::error_code none;
  const std::string log = path + "-wal";
  if (std::filesystem::file_size(log, none) == 0 || none) return;
  Refuse(
      path,
      fmt::format("the file {}, but its log '{}' with the last saves lies beside it", state, log),
      "Put the file back to which the log belongs; if it is lost, move the log elsewhere, keep "
      "it, and put the last backup in its place");
}

}  // namespace

void CheckSqliteFile(const std::string& path, bool create) {
  const std::filesystem::path file(path);
  const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
  std::error_code error;
  const auto status = std::filesystem::status(file, error);
  if (path.empty()) Refuse(path, "no file is named", "Name one in the data sources");
  if (!std::filesystem::is_directory(folder, error)) {
    Refuse(path, fmt::format("there is no folder '{}'", folder.string()),
           "Check the path in the data sources");
  }
  // WAL needs all desktops on one machine: shared memory does not reach across a network.
  if (IsOnNetwork(folder)) {
    Refuse(path, "it lies on a network folder, where several desktops would damage it",
           "Move it to a disk of this machine, or use a database server");
  }
  if (status.type() == std::filesystem::file_type::not_found) {
    RefuseLogWithout(path, "is missing");
    if (!create) {
      Refuse(path, "there is no such file", "Check the path in the data sources");
    }
    return;
  }
  if (std::filesystem::is_directory(status)) {
    Refuse(path, "it is a folder", "Name the database file itself");
  }
  errno = 0;
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    Refuse(path, std::strerror(errno == 0 ? EACCES : errno),
           "Ask for the right to read and write the file and its folder");
  }
  char header[sizeof kFileHeader] = {};
  in.read(header, sizeof header);
  if (in.gcount() == 0) {
    RefuseLogWithout(path, "is empty");
    if (!create) {
      Refuse(
          path, "the file is empty",
          "Put the last backup in its place. Only where a new office is wanted, write create=yes "
          "under its data source");
    }
    return;
  }
  if (in.gcount() < static_cast<std::streamsize>(sizeof header) ||
      std::memcmp(header, kFileHeader, sizeof header) != 0) {
    Refuse(path, "the file is no database", "Name another file; this one was left untouched");
  }
}

namespace {

void CheckOwner(sqlite3* db, const std::string& path) {
  const std::int64_t owner = PlainInteger(db, "PRAGMA application_id", path);
  const std::int64_t version = PlainInteger(db, "PRAGMA user_version", path);
  if (owner != 0 && owner != kApplicationId) {
    Refuse(path, "it is the database of another program",
           "Name another file; this one was left untouched");
  }
  if (owner == kApplicationId && version > kFormatVersion) {
    Refuse(path,
           fmt::format("it was written by a newer Kaunter (format {}, this one knows {})", version,
                       kFormatVersion),
           "Install the newer Kaunter on this machine too");
  }
}

// Asks again after a short while of drawn length. Waits that grow, as the engine's own do, let the
// desktop that came first starve: those that save without a pause take each turn before it wakes.
int WaitForTurn(void*, int tries) {
  using Clock = std::chrono::steady_clock;
  thread_local Clock::time_point began;
  thread_local std::minstd_rand random{std::random_device{}()};
  if (tries == 0) began = Clock::now();
  if (Clock::now() - began > std::chrono::milliseconds(kBusyMilliseconds)) return 0;
  ActWhileWaiting();
  if (StopAsked()) return 0;
  std::this_thread::sleep_for(
      std::chrono::milliseconds(std::uniform_int_distribution<>(1, 10)(random)));
  return 1;
}

// Switching a file to WAL needs it for itself and does not wait by its own: two first starts at the
// same moment take turns here.
void SwitchToWal(sqlite3* db, const std::string& path) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::milliseconds(kBusyMilliseconds);
  while (true) {
    try {
      const std::string mode = PlainText(db, "PRAGMA journal_mode = WAL", path);
      if (mode == "wal" || sqlite3_db_readonly(db, "main") == 1) return;
      Refuse(path, fmt::format("its disk allows no write-ahead log (mode '{}')", mode),
             "Move it to another disk of this machine");
    } catch (const SqlError& error) {
      if (error.number() != 1222 || Clock::now() > end) throw;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  }
}

// Marks a new file as ours; whoever comes second finds it marked.
void MarkNew(sqlite3* db, const std::string& path) {
  if (PlainInteger(db, "PRAGMA application_id", path) != 0) return;
  RunPlain(db, "BEGIN IMMEDIATE", path);
  try {
    if (PlainInteger(db, "SELECT count(*) FROM sqlite_schema", path) == 0) {
      RunPlain(db, fmt::format("PRAGMA application_id = {}", kApplicationId).c_str(), path);
      RunPlain(db, fmt::format("PRAGMA user_version = {}", kFormatVersion).c_str(), path);
    }
    RunPlain(db, "COMMIT", path);
  } catch (...) {
    sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
}

void SetUp(sqlite3* db, const std::string& path) {
  sqlite3_extended_result_codes(db, 1);
  sqlite3_busy_handler(db, WaitForTurn, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  CheckOwner(db, path);
  SwitchToWal(db, path);
  // FULL: a committed save survives a pulled plug.
  RunPlain(db, "PRAGMA synchronous = FULL", path);
  RunPlain(db, "PRAGMA temp_store = MEMORY", path);
  RunPlain(db, "PRAGMA cache_size = -16000", path);
  if (sqlite3_db_readonly(db, "main") == 0) MarkNew(db, path);
}

}  // namespace
}  // namespace kaunter::sql

namespace kaunter {

std::unique_ptr<Connection> OpenSqlite(std::string_view name, const std::string& path, bool create,
                                       const Clock& clock) {
  sql::CheckSqliteFile(path, create);
  // The log and its index take the rights of the file.
  if (!create || !MakePrivateFile(path)) KeepPrivate(path);
  sqlite3* raw = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (create ? SQLITE_OPEN_CREATE : 0);
  const int code = sqlite3_open_v2(path.c_str(), &raw, flags, nullptr);
  sql::SqliteHandle db(raw);
  if (code != SQLITE_OK) throw sql::SqliteFailure(raw, code, path, "");
  sql::SetUp(raw, path);
  return std::make_unique<sql::SqliteConnection>(std::string(name), path, std::move(db), clock);
}

}  // namespace kaunter
