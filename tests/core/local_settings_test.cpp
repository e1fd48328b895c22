#include "core/local_settings.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/regional.h"

namespace kaunter {
namespace {

TEST(LocalSettings, ReadsSettingsAndDataSources) {
  const LocalSettings settings = LocalSettings::Parse(
      "# the branch\r\nConnAccount = 2User\n\nconndatasource=Office\nConnLinkAcc = 1\n"
      "[Office]\nfile = /srv/office = main.db\ncreate = yes\n[Branch]\n"
      "odbc = Driver={ODBC Driver 18};Server=b\n",
      "settings.ini");
  EXPECT_EQ(settings.ConnAccount, "2User");
  EXPECT_EQ(settings.ConnDataSource, "Office");
  EXPECT_EQ(settings.ConnLinkAcc, "1");
  const auto office = settings.sources.Find("OFFICE");
  ASSERT_TRUE(office);
  EXPECT_EQ(office->target, "/srv/office = main.db");
  EXPECT_TRUE(settings.creatable.contains("office"));
  const auto branch = settings.sources.Find("branch");
  ASSERT_TRUE(branch);
  EXPECT_EQ(branch->kind, DataSource::Kind::kOdbc);
  EXPECT_EQ(branch->target, "Driver={ODBC Driver 18};Server=b");
}

TEST(LocalSettings, ABrokenFileNamesFileAndLine) {
  const struct {
    std::string text;
    std::string place;
  } cases[] = {
      {"ConnAccount MainUser", "s.ini, line 1"},
      {"\n\nConnAcount = MainUser", "s.ini, line 3: \"ConnAcount\" is not known here"},
      {"[Office", "line 1: a data source stands in brackets"},
      {"[]", "a data source needs a name"},
      {"[Office]\ncreate = yes\n[Other]\nfile = x",
       "s.ini, line 1: data source [Office] has neither"},
      {"[Office]\nConnAccount = MainUser", "line 2: \"ConnAccount\" is not known here"},
      {std::string("Conn\0Account = x", 16), "no text file"},
  };
  for (const auto& c : cases) {
    try {
      LocalSettings::Parse(c.text, "s.ini");
      ADD_FAILURE() << c.text;
    } catch (const std::runtime_error& error) {
      EXPECT_NE(std::string(error.what()).find(c.place), std::string::npos) << error.what();
    }
  }
  EXPECT_THROW(LocalSettings::Read("/nowhere/settings.ini"), std::runtime_error);
  EXPECT_THROW(LocalSettings::Read("/"), std::runtime_error);
}

TEST(Regional, OnlyAMonthFirstShortDateIsRefused) {
  const struct {
    std::string short_date;
    int day;
  } cases[] = {{"MM/dd/yyyy", 2}, {"M-d-yy", 2},     {"mm.dd.yyyy", 2},  {"dd/MM/yyyy", 1},
               {"d.M.yy", 1},     {"yyyy-MM-dd", 1}, {"dd MMM yyyy", 1}, {"", 1}};
  for (const auto& c : cases) EXPECT_EQ(DayOfTestDate(c.short_date), c.day) << c.short_date;
}

}  // namespace
}  // namespace kaunter
