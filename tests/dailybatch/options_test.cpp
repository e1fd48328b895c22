#include "dailybatch/options.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace kaunter {
namespace {

TEST(BatchOptionsTest, WhatIsGivenComesBeforeWhatIsHandedOn) {
  const CompanionOptions handed_on{.app = "/app", .database = "/a.db", .settings = {}, .now = {}};
  const BatchOptions options = ParseBatchOptions({"--database", "b.db", "31-01-2024"}, handed_on);
  EXPECT_EQ(options.reach.office.database, "b.db");
  EXPECT_EQ(options.reach.office.app, "/app");
  EXPECT_EQ(options.date, "31-01-2024");
}

TEST(BatchOptionsTest, WhatDoesNotFitIsNamed) {
  const struct {
    std::vector<std::string> arguments;
    const char* told;
  } cases[] = {
      {{}, "no date is given"},
      {{"--now", "noon", "today"}, "noon"},
      {{"--database"}, "--database needs a value"},
      {{"--fast", "today"}, "unknown option --fast"},
      {{"31-01-2024", "01-02-2024"}, "one date at a time"},
  };
  for (const auto& c : cases) {
    try {
      ParseBatchOptions(c.arguments, {});
      ADD_FAILURE() << c.told;
    } catch (const CompanionRefused& error) {
      EXPECT_THAT(error.what(), ::testing::HasSubstr(c.told));
    }
  }
}

TEST(BatchOptionsTest, Dates) {
  const DateTime today{2024, 1, 31, 14, 5, 9};
  EXPECT_EQ(BatchDate("29-02-2024", today), (DateTime{2024, 2, 29}));
  EXPECT_EQ(BatchDate("2024-02-29", today), (DateTime{2024, 2, 29}));
  EXPECT_EQ(BatchDate("today", today), (DateTime{2024, 1, 31}));
  for (const char* text :
       {"30-02-2024", "31/01/2024", "01-31-2024", "1-1-24", "letters", "", "31-01-2024 10:00:00"}) {
    EXPECT_THROW(BatchDate(text, today), CompanionRefused) << text;
  }
}

}  // namespace
}  // namespace kaunter
