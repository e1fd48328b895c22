// What is played on the embedded engine and on a PostgreSQL server leaves the same rows in each
// table: the demo office with a day's work, and the scripts that take and charge money.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "platform/sql/data_source.h"
#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

// With its kind: a number is not the text of it, and nothing stored is not an empty text.
std::string Told(const Value& value) {
  const char* kind = value.IsNull()      ? "null"
                     : value.AsText()    ? "text"
                     : value.AsInteger() ? "integer"
                     : value.AsMoney()   ? "money"
                     : value.AsDate()    ? "date"
                                         : "double";
  return fmt::format("{}<{}>", kind, value.ToText());
}

std::vector<std::string> TablesOf(Connection& connection) {
  std::vector<std::string> tables;
  const Recordset rows =
      connection.Query("SELECT TABLE_NAME FROM INFORMATION_SCHEMA.TABLES ORDER BY TABLE_NAME");
  for (const auto& row : rows.rows()) tables.push_back(row.front().ToText());
  return tables;
}

// Each row in one line, "Column=kind<value> ...", in an order of their own.
std::multiset<std::string> RowsOf(Connection& connection, const std::string& table) {
  const Recordset rows = connection.Query("SELECT * FROM [" + table + "]");
  std::multiset<std::string> told;
  for (const auto& row : rows.rows()) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += fmt::format("{}={} ", rows.columns()[i].name, Told(row[i]));
    }
    told.insert(std::move(line));
  }
  return told;
}

std::string Missing(const std::multiset<std::string>& from, const std::multiset<std::string>& in) {
  constexpr std::size_t kShown = 3;
  std::vector<std::string> missing;
  std::set_difference(from.begin(), from.end(), in.begin(), in.end(), std::back_inserter(missing));
  std::string text;
  for (std::size_t i = 0; i < std::min(kShown, missing.size()); ++i) text += "\n  " + missing[i];
  return fmt::format("{}{}", missing.size(), text);
}

class PostgresqlOffice : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::getenv("KAUNTER_POSTGRESQL") == nullptr) {
      GTEST_SKIP() << "no PostgreSQL server to play on";
    }
  }

  // An office on each engine that nothing has been played on.
  void Begin(const std::string& name) {
    ASSERT_EQ(std::system(fmt::format("for name in same_{0} same_{0}-Logs; do "
                                      "dropdb --if-exists --force $name 2>/dev/null; "
                                      "createdb -T template0 -E UTF8 $name || exit 1; done",
                                      name)
                              .c_str()),
              0);
    odbc = fmt::format("{};Database=same_{}", std::getenv("KAUNTER_POSTGRESQL"), name);
    WriteSettings("embedded", "file = " + folder.File("embedded/" + name + ".db"));
    WriteSettings("server", "odbc = " + odbc);
  }

  void WriteSettings(const std::string& engine, const std::string& place) {
    std::filesystem::create_directories(folder.File(engine));
    std::ofstream(folder.File(engine + "/settings.ini"))
        << "ConnAccount = MainUser\nConnDataSource = Demo\nConnLinkAcc = 1\nShortDate = "
           "dd-MM-yyyy\n"
           "[Demo]\ncreate = yes\n"
        << place << "\n";
  }

  // {0} the source, {1} the programs, {2} the folder of the engine.
  void PlayOnBoth(const std::string& command) {
    for (const char* engine : {"embedded", "server"}) {
      const std::string place = folder.File(engine);
      const std::string said = place + "/said.txt";
      const std::string words =
          fmt::format(fmt::runtime(command), test::SourceDir(), test::BinaryDir() + "/bin", place);
      ASSERT_EQ(std::system(fmt::format("{{ {}; }} >'{}' 2>&1", words, said).c_str()), 0)
          << TextOf(said);
    }
  }

  static std::string TextOf(const std::string& path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  void ExpectTheSameRows(const std::string& name) {
    const auto embedded =
        OpenSqlite("Embedded", folder.File("embedded/" + name + ".db"), false, clock);
    const auto server = OpenOdbc("Server", odbc, clock);
    const std::vector<std::string> tables = TablesOf(*embedded);
    EXPECT_EQ(tables, TablesOf(*server));
    EXPECT_GT(tables.size(), 60U);
    for (const std::string& table : tables) {
      if (table == "SaveMark") continue;  // an engine that is never lost leaves no marks
      const auto here = RowsOf(*embedded, table);
      const auto there = RowsOf(*server, table);
      rows += here.size();
      EXPECT_TRUE(here == there) << table << ": only on the embedded engine "
                                 << Missing(here, there) << "\nonly on the server "
                                 << Missing(there, here);
    }
  }

  // Lists that were printed, and receipts written into a file.
  void ExpectTheSamePapers() {
    std::size_t papers = 0;
    for (const auto& paper : std::filesystem::directory_iterator(folder.File("embedded/paper"))) {
      if (paper.path().extension() != ".csv") continue;
      ++papers;
      EXPECT_EQ(TextOf(paper.path()),
                TextOf(folder.File("server/paper/" + paper.path().filename().string())))
          << paper.path();
    }
    EXPECT_GT(papers, 0U);
  }

  Clock clock;
  TempFolder folder;
  std::string odbc;
  std::size_t rows = 0;
};

TEST_F(PostgresqlOffice, OfTheDemoIsTheEmbeddedOne) {
  Begin("demo");
  PlayOnBoth("'{0}/script/demo' '{1}' '{2}' make day --");
  ExpectTheSameRows("demo");
  ExpectTheSamePapers();
  EXPECT_GT(rows, 1000U);
}

class PostgresqlScript : public PostgresqlOffice,
                         public ::testing::WithParamInterface<std::string> {};

TEST_P(PostgresqlScript, LeavesTheSameRows) {
  Begin("script");
  PlayOnBoth(
      "cp -r '{0}/reports' '{2}/app' && '{1}/kaunter-play' --app '{2}/app' --settings "
      "'{2}/settings.ini' --out '{2}/paper' "
      "--now '2024-01-31 09:00:00' '{0}/tests/play/" +
      GetParam() + ".play'");
  ExpectTheSameRows("script");
}

INSTANTIATE_TEST_SUITE_P(OfMoney, PostgresqlScript,
                         ::testing::Values("payment-life", "receipt-numbers", "settlement",
                                           "charges", "follow-up", "verify-ledger",
                                           "schedule-changes", "loan-life", "drawdowns", "cheques"),
                         [](const auto& info) {
                           std::string name = info.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace kaunter
