#include "upkeep/move_end.h"

#include <fmt/format.h>

#include <filesystem>

#include "core/startup.h"
#include "platform/sql/data_source.h"
#include "platform/sql/odbc/odbc_string.h"
#include "platform/sql/text.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

std::string PlaceOf(const DataSources& sources, const std::string& name,
                    const std::string& database) {
  const auto source = sources.Find(name);
  if (!source) return fmt::format("{} (ODBC source {})", database, name);
  if (source->kind == DataSource::Kind::kEmbedded) {
    return std::filesystem::absolute(source->target).lexically_normal().string();
  }
  ConnectionString text;
  try {
    text = ConnectionString::Parse(source->target);
  } catch (const std::invalid_argument&) {  // told when it is opened
  }
  std::string place = text.Has("database") ? text.Get("database") : database;
  const std::string server = sql::FirstOf(text, {"server", "servername"});
  if (!server.empty()) place += fmt::format(" on the server {}", server);
  if (!text.Get("port").empty()) place += ':' + text.Get("port");
  if (!text.Get("dsn").empty()) place += fmt::format(" (ODBC source {})", text.Get("dsn"));
  return place;
}

}  // namespace

MoveDatabase::MoveDatabase(std::unique_ptr<Connection> opened)
    : connection(std::move(opened)), whole(sql::WholeDatabaseOf(*connection)) {}

void MoveDatabase::ReadTables() {
  tables = whole->Tables();
  std::erase_if(tables,
                [](const sql::WholeTable& table) { return sql::SameName(table.name, kMoveTable); });
}

void MoveDatabase::GiveUp() noexcept {
  if (!exists()) return;
  try {
    connection->RollbackTrans();
  } catch (const std::exception&) {  // the server rolls back with the connection
  }
}

void MoveDatabase::Seal(const MoveMark& mark) {
  WriteMoveMark(*connection, mark);
  whole->Seal(MovedWords(mark));
}

void MoveDatabase::Reopen() {
  if (!Mark()) return;
  LockOut();
  whole->Unseal();
  RemoveMoveMark(*connection);
  Commit();
}

MoveEnd::MoveEnd(const MoveRequest& request, std::string source, std::string database)
    : request_(request),
      source_(std::move(source)),
      database_(database.empty() ? source_ : std::move(database)),
      place_(PlaceOf(request.local.sources, source_, database_)) {}

std::string MoveEnd::Text(bool logs) const {
  return OfficeConnectionString(request_.local.ConnAccount, database_, source_,
                                logs ? database_ + "-Logs" : database_);
}

std::unique_ptr<Connection> MoveEnd::Open(std::string_view name, bool logs) const {
  return OpenConnection(name, Text(logs), request_.local.sources, request_.clock);
}

std::optional<std::string> MoveEnd::File(bool logs) const {
  return EmbeddedFile(Text(logs), request_.local.sources);
}

void MoveEnd::OpenMain() { main = MoveDatabase(Open("MainConn", /*logs=*/false)); }

void MoveEnd::OpenLogs(bool needed) {
  const auto file = File(/*logs=*/true);
  std::error_code missing;
  if (file && !needed && (std::filesystem::file_size(*file, missing) == 0 || missing)) return;
  try {
    logs = MoveDatabase(Open("LogsConn", /*logs=*/true));
  } catch (const SqlError&) {
    if (needed) throw;
    return;  // the office keeps no audit, and no such database was made
  }
  if (!needed && logs.whole->Contents().empty()) logs = {};
}

void MoveEnd::MakeFiles(const MoveMark& mark, bool with_logs) {
  for (const bool logs_file : {false, true}) {
    const auto file = File(logs_file);
    if (!file || (logs_file && !with_logs)) continue;
    MakeSqlite(source_, *file, request_.clock, [&](Connection& database) {
      Transaction transaction(database);
      WriteMoveMark(database, mark);
      transaction.Commit();
      made_.push_back(*file);
    });
  }
}

void MoveEnd::RemoveMadeFiles() {
  if (made_.empty()) return;
  main = {};
  logs = {};
  std::error_code stays;  // it bears the mark of a copy
  for (const std::string& file : made_) {
    for (const char* ending : {"", "-wal", "-shm"}) std::filesystem::remove(file + ending, stays);
  }
  made_.clear();
}

}  // namespace kaunter
