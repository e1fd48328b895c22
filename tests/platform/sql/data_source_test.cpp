#include "platform/sql/data_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

namespace kaunter {
namespace {

using ::testing::HasSubstr;

TEST(ConnectionString, ReadsKeysWithoutRegardToCaseAndQuotedValues) {
  const ConnectionString read = ConnectionString::Parse(
      "Provider=MSDASQL.1;Password=\"a;b\"\"c\";Persist Security Info=True; User ID = Kaunter ;"
      "Data Source={My}}Source};;Initial Catalog=");
  EXPECT_EQ(read.Get("provider"), "MSDASQL.1");
  EXPECT_EQ(read.Get("PASSWORD"), "a;b\"c");
  EXPECT_EQ(read.Get("user id"), "Kaunter");
  EXPECT_EQ(read.Get("Data Source"), "My}Source");
  EXPECT_TRUE(read.Has("Initial Catalog"));
  EXPECT_EQ(read.Get("Initial Catalog"), "");
  EXPECT_FALSE(read.Has("Server"));
}

TEST(ConnectionString, NamesThePlaceOfWhatDoesNotParse) {
  const struct {
    const char* text;
    const char* place;
  } kCases[] = {
      {"Provider=x;nonsense", "character 12"},
      {"a=1;=2", "character 5"},
      {"a=\"open", "character 3"},
      {"a={x} y;b=1", "character 7"},
  };
  for (const auto& c : kCases) {
    try {
      ConnectionString::Parse(c.text);
      FAIL() << c.text;
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), HasSubstr(c.place)) << c.text;
    }
  }
}

class OpenConnectionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::temp_directory_path() /
              ("kaunter-source-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)));
    std::filesystem::create_directories(folder_);
    sources_.Add("Office", {DataSource::Kind::kEmbedded, (folder_ / "office.v2.db").string()});
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::filesystem::path folder_;
  DataSources sources_;
  Clock clock_;
};

TEST_F(OpenConnectionTest, TheAuditCatalogIsTheFileBesideTheSource) {
  OpenSqlite("x", (folder_ / "office.v2.db").string(), true, clock_)
      ->Execute("create table InMain (A int)");
  OpenSqlite("x", (folder_ / "office.v2-Logs.db").string(), true, clock_)
      ->Execute("create table InLogs (A int)");
  const struct {
    const char* catalog;
    const char* table;
  } kCases[] = {
      {"Kaunter", "InMain"}, {"", "InMain"}, {"Kaunter-Logs", "InLogs"}, {"office-LOGS", "InLogs"}};
  for (const auto& c : kCases) {
    const auto connection = OpenConnection(
        "MainConn",
        std::string("Provider=MSDASQL.1;Data Source=OFFICE;Initial Catalog=") + c.catalog, sources_,
        clock_);
    EXPECT_EQ(connection->name(), "MainConn");
    EXPECT_NO_THROW(connection->Query(std::string("select * from ") + c.table)) << c.catalog;
  }
}

TEST_F(OpenConnectionTest, RefusalsSayWhatWasAskedFor) {
  const struct {
    const char* text;
    const char* said;
  } kCases[] = {
      {"Data Source=office", "office.v2.db"},  // no such file yet: opening never makes one
      {"Provider=MSDASQL.1;Initial Catalog=Kaunter", "names no data source"},
      {"Data Source", "character 1"},
  };
  for (const auto& c : kCases) {
    try {
      OpenConnection("MainConn", c.text, sources_, clock_);
      FAIL() << c.text;
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number(), 4060);
      EXPECT_THAT(error.what(), HasSubstr(c.said));
    }
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder_));
}

}  // namespace
}  // namespace kaunter
