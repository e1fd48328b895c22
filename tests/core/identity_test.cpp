#include "core/identity.h"

#include <gtest/gtest.h>

#include <fstream>

#include "core/code_tables.h"
#include "core/menu_list.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

TEST(Identity, ANewIcTellsTheDateOfBirth) {
  const struct {
    const char* ic;
    const char* birth;  // "" for none
  } cases[] = {{"800131-10-5555", "31-01-1980"},
               {"000229-10-5555", "29-02-2000"},
               {"290131-10-5555", "31-01-2029"},
               {"300131-10-5555", "31-01-1930"},
               {"801331-10-5555", ""},
               {"801301-10-5555", ""},
               {"810229-10-5555", ""},
               {"8001311-0-5555", ""},
               {"800131105555", ""},
               {"", ""}};
  for (const auto& c : cases) EXPECT_EQ(BirthDateOfIc(c.ic).value_or(""), c.birth) << c.ic;
  EXPECT_EQ(MaskNewIc("800131105555"), "800131-10-5555");
  EXPECT_EQ(MaskNewIc("80013110555"), "80013110555");
  EXPECT_EQ(MaskNewIc("A1234567"), "A1234567");
}

TEST(Identity, MobileNumbersComeToOneForm) {
  EXPECT_EQ(NormaliseMobile("+6012 3456789"), "60123456789");
  EXPECT_EQ(NormaliseMobile("012-345 6789"), "60123456789");
  EXPECT_EQ(NormaliseMobile("12A"), "");
  EXPECT_EQ(NormaliseMobile(""), "");
}

TEST(MenuList, AFileEndsWithItsMarkOrIsRefusedWithItsName) {
  TempFolder folder;
  std::vector<MenuEntry> entries(150);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    entries[i].name = "Entry" + std::to_string(i) + "Mnu";
    entries[i].caption = Caption("&Caption, with a comma " + std::to_string(i));
  }
  WriteMenuList(folder.path(), entries);
  const auto read = ReadMenuList(folder.path());
  ASSERT_EQ(read.size(), 150u);
  EXPECT_EQ(read[149].name, "Entry149Mnu");
  EXPECT_EQ(read[149].number, 150);
  EXPECT_EQ(read[149].caption, "Caption, with a comma 149");
  // In Chinese the menu's caption, yet not in the place of words that the office wrote.
  entries[149].caption.chinese = "名称(&C)...";
  EXPECT_EQ(ShownCaption(read[149], entries, true), "名称...");
  EXPECT_EQ(ShownCaption(read[149], entries, false), "Caption, with a comma 149");
  EXPECT_EQ(ShownCaption({"entry149MNU", 150, "Own words"}, entries, true), "Own words");
  EXPECT_EQ(ShownCaption({"Gone", 151, "Gone"}, entries, true), "Gone");
  for (const char* broken :
       {"NewCustMnu,1,New\nEditCustMnu,2\n[end],,\n", "NewCustMnu,1,New Customer\n",
        "NewCustMnu,-19999999999999999999999,New\n[end],,\n", ""}) {
    std::ofstream(folder.File("MenuList2.ini")) << broken;
    try {
      ReadMenuList(folder.path());
      ADD_FAILURE() << broken;
    } catch (const std::runtime_error& error) {
      EXPECT_NE(std::string(error.what()).find("MenuList2.ini"), std::string::npos) << error.what();
    }
  }
}

TEST(CodeTables, ACodeInUseOrKnownByNameStays) {
  Office office(Office::State::patched);
  Connection& main = office.session.Main();
  office.Run("INSERT INTO DrawDownMast (SID,Bank) VALUES ('D1','MBB')");
  const auto may = [&](const char* title, const char* code) {
    return MayDeleteCode(main, *FindCodeTable(title), code);
  };
  EXPECT_FALSE(may("Bank Setup", "MBB"));  // used on a drawdown only
  EXPECT_TRUE(may("Bank Setup", "CIMB"));
  EXPECT_FALSE(may("Bank Setup", "nil"));
  EXPECT_FALSE(may("Area Code", "COMPANY"));
  EXPECT_FALSE(may("Races Setup", "CINA"));
  // Every table of the list is there, with its columns, and every count runs.
  for (const CodeTable& table : CodeTables())
    EXPECT_TRUE(MayDeleteCode(main, table, "O'X")) << table.title;
}

}  // namespace
}  // namespace kaunter
