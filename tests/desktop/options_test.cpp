#include "desktop/options.h"

#include <gtest/gtest.h>

namespace kaunter {
namespace {

TEST(OptionsTest, EachOptionReachesItsPlace) {
  const DesktopOptions options = ParseOptions(
      {"--app", "/opt/kaunter", "--database", "o.db", "--now", "2026-03-02 09:30:00", "--theme",
       "dark", "--language", "zh", "--set", "CustName=A=B", "--size", "1366x720"});
  EXPECT_EQ(options.error, "");
  EXPECT_EQ(options.application.app_path, "/opt/kaunter");
  EXPECT_EQ(options.application.database, "o.db");
  EXPECT_EQ(options.application.now, "2026-03-02 09:30:00");
  EXPECT_EQ(options.theme, ThemeChoice::dark);
  EXPECT_TRUE(options.chinese);
  ASSERT_EQ(options.values.size(), 1U);
  EXPECT_EQ(options.values[0].second, "A=B");
  EXPECT_EQ(options.width, 1366);
}

TEST(OptionsTest, AWrongLineSaysWhatIsWrongWithIt) {
  struct Case {
    std::vector<std::string> line;
    const char* error;
  };
  const Case cases[] = {
      {{"--databse", "x"}, "--databse: unknown option; --help lists them"},
      {{"--database"}, "--database: its value is missing"},
      {{"--theme", "pink"}, "--theme: \"pink\" is no value for it"},
      {{"--set", "CustName"}, "--set: \"CustName\" is no value for it"},
      {{"--size", "wide"}, "--size: \"wide\" is no value for it"},
  };
  for (const Case& c : cases) EXPECT_EQ(ParseOptions(c.line).error, c.error);
}

}  // namespace
}  // namespace kaunter
