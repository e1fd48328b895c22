// Two places for an office, and what an independent reader sees in an embedded one.
#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "core/local_settings.h"
#include "core/local_settings_write.h"
#include "core/moved_office.h"
#include "platform/sql/sqlite/sqlite_functions.h"
#include "tests/core/office.h"
#include "upkeep/move_end.h"
#include "upkeep/office_copy.h"
#include "upkeep/office_move.h"

namespace kaunter {

// Every declaration and every row as SQLite itself prints them.
inline std::multiset<std::string> Dump(const std::string& file) {
  std::multiset<std::string> lines;
  sqlite3* db = nullptr;
  sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
  const auto each = [db](const std::string& sql, const auto& take) {
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr), SQLITE_OK) << sql;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      std::vector<std::string> row;
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const auto* text = sqlite3_column_text(statement, i);
        row.emplace_back(text == nullptr ? "" : reinterpret_cast<const char*>(text));
      }
      take(row);
    }
    sqlite3_finalize(statement);
  };
  std::vector<std::string> tables;
  each(
      "SELECT type, name, sql FROM sqlite_schema WHERE name <> 'OfficeMove' AND tbl_name <> "
      "'OfficeMove' AND type <> 'trigger'",
      [&](const auto& row) {
        lines.insert(row[1] + " " + row[2]);
        if (row[0] == "table") tables.push_back(row[1]);
      });
  for (const std::string& table : tables) {
    std::string fields;
    each("SELECT name FROM pragma_table_info('" + table + "')", [&](const auto& row) {
      fields += (fields.empty() ? "quote(\"" : "||','||quote(\"") + row[0] + "\")";
    });
    each("SELECT " + fields + " FROM \"" + table + "\"",
         [&](const auto& row) { lines.insert(table + " " + row[0]); });
  }
  sqlite3_close(db);
  return lines;
}

// What one has and the other has not.
inline std::string Unlike(const std::multiset<std::string>& a,
                          const std::multiset<std::string>& b) {
  std::vector<std::string> only;
  std::set_symmetric_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(only));
  return fmt::format("{}", fmt::join(only, "\n"));
}

// A statement that the dialect would refuse.
inline bool RunRaw(const std::string& file, const std::string& sql) {
  const Clock clock;
  sqlite3* db = nullptr;
  sqlite3_open(file.c_str(), &db);
  sql::RegisterSqliteFunctions(db, clock);
  const bool done = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
  sqlite3_close(db);
  return done;
}

// An embedded office "Old" and a place for it, "New": a file, or databases of the server that
// script/with-postgresql has started.
class TwoPlaces : public ::testing::Test {
 protected:
  void Use(bool server) {
    place_ += "x";  // each time offices of their own
    std::filesystem::create_directory(folder_.File(place_));
    request_ = {};
    request_.local.ConnDataSource = "Old";
    request_.local.sources.Add("Old", {DataSource::Kind::kEmbedded, File("old.db")});
    request_.settings_file = File("settings.ini");
    std::string text =
        fmt::format("# mine\nConnDataSource = Old\n[Old]\nfile = {}\n[New]\n", File("old.db"));
    const char* odbc = std::getenv("KAUNTER_POSTGRESQL");
    if (server) {
      if (odbc == nullptr) GTEST_SKIP() << "no PostgreSQL server to play on";
      NewServerDatabases();
      const std::string target = std::string(odbc) + ";Database=moved";
      request_.local.sources.Add("New", {DataSource::Kind::kOdbc, target});
      text += "odbc = " + target + "\n";
    } else {
      request_.local.sources.Add("New", {DataSource::Kind::kEmbedded, File("new.db")});
      text += "file = " + File("new.db") + "\n";
    }
    request_.local.sources.Add("Back", {DataSource::Kind::kEmbedded, File("back.db")});
    std::ofstream(request_.settings_file) << text << "[Back]\nfile = " << File("back.db") << "\n";
    request_.to = "New";
    request_.user = "aminah";
    MakeSqlite("MainConn", File("old.db"), request_.clock,
               [](Connection& main) { CreateEmptyOffice(main, "MainUser"); });
  }

  static void NewServerDatabases() {
    ASSERT_EQ(std::system("for d in moved moved-Logs; do dropdb --if-exists --force $d "
                          "2>/dev/null; createdb -T template0 -E UTF8 $d || exit 1; done"),
              0);
  }

  std::string File(std::string_view name) const {
    return fmt::format("{}/{}", folder_.File(place_), name);
  }
  std::unique_ptr<Connection> Open(const std::string& source, bool logs = false) {
    if (logs) return OpenSqlite("LogsConn", File("old-Logs.db"), true, request_.clock);
    MoveEnd end(request_, source, "");
    end.OpenMain();
    return std::move(end.main.connection);
  }
  // The settings of the PC as they stand in the file.
  void ReadSettings() { request_.local = LocalSettings::Read(request_.settings_file); }
  std::string SourceInForce() const {
    return LocalSettings::Read(request_.settings_file).ConnDataSource;
  }
  static bool All(const OfficeMoveProgress&) { return true; }

  TempFolder folder_;
  std::string place_;
  MoveRequest request_;
};

// A table of every type, one without a key, and rows of both that are hard to carry.
inline void FillAtRandom(Connection& main, unsigned seed, int rows) {
  std::mt19937 random(seed);
  const auto pick = [&](int from, int to) {
    return std::uniform_int_distribution<>(from, to)(random);
  };
  const char* pieces[] = {"",   " ",    "''",   "\\",  "\"",  ",",  "(", ")",
                          "{}", "\r\n", "\t",   "Tan", "ß",   "陈", "é", "😀",
                          "%s", "$1",   "NULL", "?",   "[x]", "--", ";"};
  const auto text = [&](int longest) -> std::string {
    if (pick(0, 9) == 0) return "NULL";
    std::string made;
    for (int i = pick(0, longest); i > 0; --i) made += pieces[pick(0, std::size(pieces) - 1)];
    return "'" + made + (pick(0, 3) == 0 ? "  '" : "'");
  };
  const auto amount = [&] {
    return fmt::format("{}{}.{:02}", pick(0, 1) == 0 ? "-" : "",
                       pick(0, 4) == 0 ? 0 : pick(0, 2'000'000'000), pick(0, 99));
  };
  const auto day = [&] {
    if (pick(0, 5) == 0) return std::string("NULL");
    return fmt::format(
        "'{:04}-{:02}-{:02}{}'", pick(1753, 9999), pick(1, 12), pick(1, 28),
        pick(0, 1) == 0 ? "" : fmt::format(" {:02}:{:02}:59", pick(0, 23), pick(0, 59)));
  };
  main.Execute(
      "CREATE TABLE [Own Table] (Code nvarchar(60) NOT NULL, N smallint NOT NULL, B bit NULL "
      "DEFAULT "
      "0, T tinyint NULL, Big bigint NULL, Rate decimal(18,4) NULL DEFAULT 0.5, Amt decimal(18,2) "
      "NULL, Whole decimal(9,0) NULL, F float NULL, D date NULL, At datetime NULL DEFAULT "
      "getdate(), Memo nvarchar(max) NULL DEFAULT 'it''s', Bin varbinary(max) NULL, Copy AS Code, "
      "PRIMARY KEY (Code,N))");
  main.Execute("CREATE INDEX IX_Own ON [Own Table] (At DESC,N)");
  main.Execute("CREATE UNIQUE INDEX IX_Big ON [Own Table] (Big)");
  main.Execute(
      "CREATE TABLE Loose (Memo nvarchar(300) NULL, Amt decimal(18,2) NULL, At datetime NULL)");
  main.Execute("CREATE TABLE Counted (ID int IDENTITY(1,1) PRIMARY KEY, Name nvarchar(20) NULL)");
  for (int i = 0; i < rows; ++i) {
    const std::string date = day();
    main.Execute(fmt::format(
        "INSERT INTO [Own Table] (Code,N,B,T,Big,Rate,Amt,Whole,F,D,At,Memo,Bin) VALUES "
        "('{}{}',{},{},{},{},{},{},{},{},{},{},{},NULL)",
        i % 3 == 0 ? "陈" : "k", i, pick(-32768, 32767), pick(0, 1), pick(0, 255),
        i * 1'000'000'007LL - 5'000'000'000LL, "0.0001", amount(), pick(-999, 999), "1.5e-7",
        date.substr(0, std::min<std::size_t>(date.size(), 11)) + (date == "NULL" ? "" : "'"), date,
        text(12)));
    main.Execute(fmt::format("INSERT INTO Loose VALUES ({},{},{})", text(3), pick(0, 3), day()));
    main.Execute("INSERT INTO Counted (Name) VALUES ('x')");
  }
  main.Execute("INSERT INTO Loose SELECT * FROM Loose");                   // each row twice
  main.Execute(fmt::format("DELETE FROM Counted WHERE ID>{}", rows / 2));  // numbers that are spent
}

}  // namespace kaunter
