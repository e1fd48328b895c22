#include "tests/upkeep/old_offices.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "core/local_settings.h"
#include "core/startup.h"
#include "platform/sql/sqlite/sqlite_functions.h"
#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter::test {
namespace {

using Rows = std::vector<std::vector<std::string>>;

void Run(const std::string& command) {
  if (std::system((command + " >/dev/null").c_str()) != 0) throw std::runtime_error(command);
}

Rows AskFile(const std::string& file, const std::string& sql) {
  sqlite3* raw = nullptr;
  Rows rows;
  if (sqlite3_open_v2(file.c_str(), &raw, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
    sqlite3_close(raw);
    throw std::runtime_error(file);
  }
  const Clock clock;
  sql::RegisterSqliteFunctions(raw, clock);
  const auto add = [](void* to, int fields, char** texts, char**) {
    auto& row = static_cast<Rows*>(to)->emplace_back();
    for (int i = 0; i < fields; ++i) row.emplace_back(texts[i] == nullptr ? "<null>" : texts[i]);
    return 0;
  };
  const int status = sqlite3_exec(raw, sql.c_str(), add, &rows, nullptr);
  const std::string why = sqlite3_errmsg(raw);
  sqlite3_close(raw);
  if (status != SQLITE_OK) throw std::runtime_error(why + ": " + sql);
  return rows;
}

Rows AskServer(const std::string& database, const std::string& sql) {
  const std::string command =
      fmt::format("psql -qAtX -F '\t' -v ON_ERROR_STOP=1 -d '{}' <<'END'\n{}\nEND", database, sql);
  std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string text;
  std::array<char, 4096> part{};
  for (std::size_t n = 0; (n = fread(part.data(), 1, part.size(), pipe.get())) > 0;) {
    text.append(part.data(), n);
  }
  if (pclose(pipe.release()) != 0) throw std::runtime_error("psql: " + sql);
  Rows rows;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    auto& row = rows.emplace_back();
    std::istringstream fields(line);
    for (std::string field; std::getline(fields, field, '\t');) row.push_back(field);
  }
  return rows;
}

}  // namespace

std::vector<std::string> OldOffices(const std::string& ending) {
  static const TempFolder folder;
  static const bool unpacked = [] {
    Run(fmt::format("cd '{}' && cmake -E tar xf '{}/tests/upkeep/offices.tar.xz'", folder.path(),
                    SourceDir()));
    return true;
  }();
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
    if (unpacked && entry.path().extension() == ending) files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

Shape EmbeddedPlace::ShapeOf() const {
  Shape shape;
  for (const auto& table : AskFile(file_, "SELECT name FROM sqlite_master WHERE type='table'")) {
    for (const auto& column : AskFile(file_, fmt::format("PRAGMA table_info(\"{}\")", table[0]))) {
      const bool refuses = column[3] == "1" && column[4] == "<null>" && column[5] == "0";
      shape.tables[table[0]][column[1]] = {column[2], refuses};
    }
    for (const auto& index : AskFile(file_, fmt::format("PRAGMA index_list(\"{}\")", table[0]))) {
      std::string columns;
      for (const auto& column : AskFile(file_, fmt::format("PRAGMA index_info(\"{}\")", index[1])))
        columns += (columns.empty() ? "" : ",") + column[2];
      shape.indexes.insert(fmt::format("{}({})", table[0], columns));
    }
  }
  return shape;
}

std::string EmbeddedPlace::Everything() const {
  std::string all;
  for (const auto& made : AskFile(file_, "SELECT type,name,sql FROM sqlite_master ORDER BY 1,2")) {
    all += fmt::format("{}\n", fmt::join(made, "\t"));
    if (made[0] != "table") continue;
    for (const auto& row : AskFile(file_, fmt::format("SELECT * FROM \"{}\"", made[1]))) {
      all += fmt::format("{}\n", fmt::join(row, "\t"));
    }
  }
  return all;
}

void ServerPlace::Make() const {
  Run(fmt::format(
      "dropdb --if-exists --force '{0}' 2>/dev/null; createdb -T template0 -E UTF8 '{0}'", name_));
}

void ServerPlace::Load(const std::string& dump) const {
  Make();
  Run(fmt::format("psql -qX -v ON_ERROR_STOP=1 -d '{}' -f '{}'", name_, dump));
}

void ServerPlace::CopyFrom(const ServerPlace& other) const {
  Run(fmt::format("dropdb --if-exists --force '{0}' 2>/dev/null; createdb -T '{1}' '{0}'", name_,
                  other.name_));
}

std::string ServerPlace::Settings() const {
  std::string server = std::getenv("KAUNTER_POSTGRESQL");
  if (!port_.empty()) server.replace(server.find("Port=") + 5, 5, port_);
  return fmt::format("odbc = {};Database={}", server, name_);
}

Shape ServerPlace::ShapeOf() const {
  Shape shape;
  const auto columns = AskServer(
      name_,
      "SELECT table_name,column_name,data_type||coalesce(numeric_precision||','||numeric_scale,''),"
      "is_nullable='NO' AND column_default IS NULL FROM information_schema.columns "
      "WHERE table_schema='public'");
  for (const auto& column : columns) {
    shape.tables[column[0]][column[1]] = {column[2], column[3] == "t"};
  }
  for (const auto& index :
       AskServer(name_,
                 "SELECT tablename,regexp_replace(substring(indexdef from '\\((.*)\\)'),"
                 "'\\s+',' ','g') FROM pg_indexes "
                 "WHERE schemaname='public'")) {
    shape.indexes.insert(fmt::format("{}({})", index[0], index[1]));
  }
  return shape;
}

std::string ServerPlace::Everything() const {
  const Shape shape = ShapeOf();
  std::string digests;
  std::string all;
  for (const auto& [table, columns] : shape.tables) {
    digests += fmt::format(
        "{}SELECT '{}',md5(coalesce(string_agg(t::text,'|' ORDER BY t::text),'')) FROM \"{}\" t",
        digests.empty() ? "" : " UNION ALL ", table, table);
    for (const auto& [name, column] : columns) all += table + "." + name + " " + column.type + "\n";
  }
  for (const auto& table : AskServer(name_, digests)) all += table[0] + " " + table[1] + "\n";
  for (const std::string& index : shape.indexes) all += index + "\n";
  return all;
}

void StartOn(const OfficePlace& place, const std::function<void(Connection&)>& look,
             const std::function<void(std::string_view)>& fault) {
  const TempFolder folder;
  Session session;
  SilentDesk desk;
  session.AppPath = folder.path();
  session.CurrentUserID = "AMY";
  session.clock.Set({2024, 2, 1, 9, 0, 0});
  MakeLogFolder(session);
  const LocalSettings local = LocalSettings::Parse(
      "ConnAccount = MainUser\nConnDataSource = Office\n[Office]\n" + place.Settings() +
          "\n[SMS]\nfile = " + folder.File("sms.db") + "\ncreate = yes\n",
      "settings.ini");
  ApplyLocalSettings(session, local);
  OpenMainConnection(session, local);
  if (fault) session.Main().SetFaultHook(fault);
  Connect(session, desk);
  if (!desk.messages.empty()) throw std::runtime_error(desk.messages.front());
  if (look) look(session.Main());
}

std::string Lacks(const Shape& newer, const Shape& older) {
  std::string lacks;
  for (const auto& [table, columns] : older.tables) {
    const auto found = newer.tables.find(table);
    for (const auto& [name, column] : columns) {
      if (found == newer.tables.end() || !found->second.contains(name)) {
        lacks += fmt::format(" {}.{}", table, name);
      }
    }
  }
  for (const std::string& index : older.indexes) {
    if (!newer.indexes.contains(index)) lacks += " " + index;
  }
  return lacks;
}

}  // namespace kaunter::test
