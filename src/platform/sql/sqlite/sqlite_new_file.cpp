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
#include "platform/sql/sqlite/sqlite_new_file.h"

namespace kaunter::sql {

namespace fs = std::filesystem;

void RemoveWithItsLogs(const fs::path& file) {
  std::error_code ignored;
  for (const char* ending : kFilesOfDatabase) fs::remove(file.string() + ending, ignored);
}

namespace {

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

}  // namespace

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

}  // namespace kaunter::sql

namespace kaunter {

void MakeSqlite(std::string_view name, const std::string& path, const Clock& clock,
                const std::function<void(Connection&)>& fill) {
  // What lies there, or stands in the way, is told as it is when a file is opened.
  sql::CheckSqliteFile(path, /*create=*/true);
  std::error_code none;
  if (std::filesystem::file_size(path, none) > 0 && !none) return;
  sql::RemoveUnfinished(path);
  const std::filesystem::path whole =
      path + std::string(sql::kUnfinished) + std::to_string(ThisProcess());
  sql::RemoveWithItsLogs(whole);
  try {
    {
      const auto database = OpenSqlite(name, whole.string(), /*create=*/true, clock);
      fill(*database);
    }
    SyncFile(whole);
    sql::TakeItsName(whole, path);
  } catch (...) {
    sql::RemoveWithItsLogs(whole);
    throw;
  }
  sql::RemoveWithItsLogs(whole);
  SyncFile(path);
}

}  // namespace kaunter
