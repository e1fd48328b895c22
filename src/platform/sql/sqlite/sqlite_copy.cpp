#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "platform/private_file.h"
#include "platform/process.h"
#include "platform/sql/data_source.h"
#include "platform/sql/embedded_copy.h"
#include "platform/sql/sqlite/sqlite_connection.h"
#include "platform/sql/sqlite/sqlite_error.h"
#include "platform/sql/sqlite/sqlite_new_file.h"
#include "platform/whole_file.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;
using sql::SqliteHandle;

constexpr int kPortion = 256;  // pages

SqliteHandle OpenRaw(const std::string& path) {
  sqlite3* raw = nullptr;
  const int code =
      sqlite3_open_v2(path.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  SqliteHandle db(raw);
  if (code != SQLITE_OK) throw sql::SqliteFailure(raw, code, path, "");
  sqlite3_extended_result_codes(raw, 1);
  static const Clock clock;  // no statement here asks it; the functions do
  sql::RegisterSqliteFunctions(raw, clock);
  return db;
}

bool All(std::int64_t, std::int64_t) { return true; }

// False when it was ended; the target is then no database.
bool CopyPages(sqlite3* from, sqlite3* to, const std::string& path, const EmbeddedGoOn& go_on) {
  sqlite3_backup* const pages = sqlite3_backup_init(to, "main", from, "main");
  if (pages == nullptr) throw sql::SqliteFailure(to, sqlite3_extended_errcode(to), path, "");
  int code = SQLITE_OK;
  bool wanted = true;
  while (code == SQLITE_OK && wanted) {
    code = sqlite3_backup_step(pages, kPortion);
    const std::int64_t total = sqlite3_backup_pagecount(pages);
    wanted = go_on(total - sqlite3_backup_remaining(pages), total);
  }
  const int finished = sqlite3_backup_finish(pages);
  if (!wanted) return false;
  if (code != SQLITE_DONE) throw sql::SqliteFailure(to, code, path, "");
  if (finished != SQLITE_OK) throw sql::SqliteFailure(to, finished, path, "");
  return true;
}

// Into a new file. False when it was ended; no file is left then.
bool CopyAside(sqlite3* from, const fs::path& whole, const EmbeddedGoOn& go_on) {
  sql::RemoveWithItsLogs(whole);
  try {
    MakePrivateFile(whole);
    bool done = false;
    {
      const SqliteHandle target = OpenRaw(whole.string());
      done = CopyPages(from, target.get(), whole.string(), go_on);
    }
    if (done) {
      SyncFile(whole);
      return true;
    }
  } catch (...) {
    sql::RemoveWithItsLogs(whole);
    throw;
  }
  sql::RemoveWithItsLogs(whole);
  return false;
}

void CopyWhole(sqlite3* from, const std::string& copy) {
  const fs::path whole = copy + std::string(sql::kUnfinished) + std::to_string(ThisProcess());
  CopyAside(from, whole, All);
  try {
    sql::TakeItsName(whole, copy);
  } catch (...) {
    sql::RemoveWithItsLogs(whole);
    throw;
  }
  sql::RemoveWithItsLogs(whole);
  SyncFile(copy);
}

}  // namespace

void EmbeddedCloser::operator()(sqlite3* db) const { sqlite3_close_v2(db); }

EmbeddedSnapshot::EmbeddedSnapshot(const std::string& path) : path_(path) {
  sql::CheckSqliteFile(path, /*create=*/false);
  db_.reset(OpenRaw(path).release());
  sqlite3_busy_timeout(db_.get(), 10'000);
  // A transaction that has read keeps its state; the copy in portions then never begins anew.
  sql::RunPlain(db_.get(), "BEGIN", path);
  sql::PlainInteger(db_.get(), "SELECT count(*) FROM sqlite_schema", path);
}

std::map<std::string, std::int64_t> EmbeddedSnapshot::Rows() const {
  std::map<std::string, std::int64_t> rows;
  const std::string tables = sql::PlainText(
      db_.get(), "SELECT group_concat(name, char(10)) FROM sqlite_schema WHERE type = 'table'",
      path_);
  for (std::size_t at = 0; at < tables.size();) {
    const std::size_t end = std::min(tables.find('\n', at), tables.size());
    const std::string table = tables.substr(at, end - at);
    rows[table] = sql::PlainInteger(
        db_.get(), ("SELECT count(*) FROM " + sql::QuotedName(table)).c_str(), path_);
    at = end + 1;
  }
  return rows;
}

bool EmbeddedSnapshot::CopyTo(const std::string& path, const EmbeddedGoOn& go_on) const {
  return CopyAside(db_.get(), path, go_on);
}

std::vector<std::string> FaultsOfEmbedded(const std::string& path, const EmbeddedGoOn& go_on) {
  constexpr int kInstructions = 100'000;  // between two questions
  constexpr int kMost = 20;
  sql::CheckSqliteFile(path, /*create=*/false);
  const SqliteHandle db = OpenRaw(path);
  EmbeddedGoOn ask = go_on;
  sqlite3_progress_handler(
      db.get(), kInstructions,
      [](void* question) { return (*static_cast<EmbeddedGoOn*>(question))(0, 0) ? 0 : 1; }, &ask);
  std::vector<std::string> faults;
  sqlite3_stmt* raw = nullptr;
  int code = sqlite3_prepare_v2(db.get(), fmt::format("PRAGMA integrity_check({})", kMost).c_str(),
                                -1, &raw, nullptr);
  while (code == SQLITE_OK || code == SQLITE_ROW) {
    code = sqlite3_step(raw);
    if (code != SQLITE_ROW) break;
    const unsigned char* text = sqlite3_column_text(raw, 0);
    faults.emplace_back(text == nullptr ? "" : reinterpret_cast<const char*>(text));
  }
  sqlite3_finalize(raw);
  if (code != SQLITE_DONE) {
    const int kind = code & 0xFF;
    if (kind != SQLITE_CORRUPT && kind != SQLITE_NOTADB) {
      throw sql::SqliteFailure(db.get(), code, path, "");
    }
    faults.emplace_back(sqlite3_errmsg(db.get()));
  }
  if (faults.size() == 1 && faults.front() == "ok") faults.clear();
  return faults;
}

void CopySqlite(const std::string& path, const std::string& copy) {
  CopyWhole(OpenRaw(path).get(), copy);
}

EmbeddedAlone::EmbeddedAlone(const std::string& path) : path_(path) {
  sql::CheckSqliteFile(path, /*create=*/false);
  db_.reset(OpenRaw(path).release());
  // Each connection to a file with a write-ahead log holds a lock for as long as it is open; only
  // the last one can leave that log.
  sql::RunPlain(db_.get(), "PRAGMA locking_mode = EXCLUSIVE", path);
  sql::RunPlain(db_.get(), "PRAGMA synchronous = FULL", path);
  if (sql::PlainText(db_.get(), "PRAGMA journal_mode = DELETE", path) != "delete") {
    throw SqlError(1222, fmt::format("The database '{}' is in use", path));
  }
  sql::RunPlain(db_.get(), "BEGIN EXCLUSIVE", path);
  sql::RunPlain(db_.get(), "COMMIT", path);
}

void EmbeddedAlone::CopyTo(const std::string& copy) const { CopyWhole(db_.get(), copy); }

void EmbeddedAlone::Become(const std::string& other) const {
  CopyPages(OpenRaw(other).get(), db_.get(), path_, All);
}

void PutInPlace(const std::string& copy, const std::string& path, const std::string& kept) {
  const fs::path whole = path + std::string(sql::kUnfinished) + std::to_string(ThisProcess());
  CopyAside(OpenRaw(copy).get(), whole, All);
  try {
    std::error_code none;
    if (fs::file_size(path, none) > 0 && !none) {
      std::error_code no_links;
      fs::create_hard_link(path, kept, no_links);
      if (no_links) fs::copy_file(path, kept);
    } else if (fs::exists(path + "-wal")) {
      // Without its log a missing or an empty file would be taken for the place of a new office.
      WriteWholeFile(path, [](std::ostream& file) {
        file << "A restore was cut here. Run it again: kaunter-office restore\n";
      });
    }
    for (const char* ending : sql::kFilesOfDatabase) {
      if (*ending != '\0' && fs::exists(path + ending)) fs::rename(path + ending, kept + ending);
    }
    fs::rename(whole, path);
  } catch (const std::exception& error) {
    sql::RemoveWithItsLogs(whole);
    throw SqlError(4060, fmt::format("'{}' could not be put in its place: {}", path, error.what()));
  }
  SyncFile(path);
}

}  // namespace kaunter
