#include "core/local_settings_write.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "core/local_settings.h"
#include "core/values.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;
constexpr auto kOwner = fs::perms::owner_read | fs::perms::owner_write;

// The lines but the blank ones and those that give `key` a value.
std::string OtherLines(const std::string& text, const std::string& key) {
  std::istringstream lines(text);
  std::string kept;
  for (std::string line; std::getline(lines, line);) {
    const std::string trimmed = Trim(line);
    if (!trimmed.empty() && trimmed != "\r" && !Lower(trimmed).starts_with(Lower(key)))
      kept += line + '\n';
  }
  return kept;
}

TEST(LocalSettingsWrite, AChangeReadsBackAndLeavesEveryOtherLine) {
  std::mt19937 random(7);
  const auto one_of = [&](const std::vector<std::string>& texts) {
    return texts[random() % texts.size()];
  };
  for (int round = 0; round < 2000; ++round) {
    const std::string end = one_of({"\n", "\r\n"});
    std::string text;
    for (int i = 0; i < 4; ++i) {
      text += one_of({"# ConnLinkAcc = 9", "", "ConnLinkAcc=1", " connlinkacc = 0", "Trace = [x]"});
      text += end;
    }
    for (int i = 0; i < 3; ++i) {
      text += one_of({"[Office]", "[ OFFICE ]", "[Branch]"}) + end + "file = /srv/a.db" + end +
              one_of({"", "# [Office]" + end, "create = yes" + end + "Create = no" + end});
    }
    const std::string value = one_of({"", "1", "[1] = #"});
    const std::string top = ChangedSettings(text, {{"", "ConnLinkAcc", value}}, "settings.ini");
    EXPECT_EQ(LocalSettings::Parse(top, "").ConnLinkAcc, value) << text;
    EXPECT_EQ(OtherLines(top, "connlinkacc"), OtherLines(text, "connlinkacc"));

    const bool create = random() % 2 == 0;
    const LocalSettings office = LocalSettings::Parse(
        ChangedSettings(
            text,
            {{"Office", "file", {}},
             {"Office", "odbc", "DSN=o"},
             {"office", "create", create ? std::optional<std::string>("yes") : std::nullopt}},
            "settings.ini"),
        "");
    EXPECT_EQ(office.sources.Find("Office")->target, "DSN=o") << text;
    EXPECT_TRUE(!create || office.creatable.contains("office")) << text;
    EXPECT_EQ(office.sources.Find("Branch").has_value(), text.find("[Branch]") != text.npos);
  }
}

TEST(LocalSettingsWrite, WhatCannotBeReadBackIsRefusedAndTheFileStays) {
  const TempFolder folder;
  const std::string file = folder.File("settings.ini");
  std::ofstream(file) << "[Office]\nfile = a.db\n";
  const std::vector<SettingChange> refused[] = {{{"", "Colour", "red"}},
                                                {{"Office", "file", "a\nodbc = DSN=x"}},
                                                {{"Office", "file", {}}},
                                                {{"", "Trace", " x"}},
                                                {{"No]file", "create", "yes"}}};
  for (const auto& changes : refused) {
    EXPECT_THROW(ChangeSettingsFile(file, changes), std::runtime_error) << changes[0].key;
    EXPECT_EQ(LocalSettings::Read(file).sources.Find("Office")->target, "a.db");
  }
  EXPECT_THROW(ChangeSettingsFile("/proc/none/settings.ini", {}), std::runtime_error);
}

TEST(LocalSettingsWrite, APasswordIsForTheOwnerAloneAndALinkIsFollowed) {
  const TempFolder folder;
  const std::string file = folder.File("new/settings.ini"), link = folder.File("link.ini");
  ChangeSettingsFile(file, {{"Office", "file", "a.db"}});
  EXPECT_EQ(fs::status(file).permissions(), kOwner);
  fs::permissions(file, kOwner | fs::perms::others_read);
  fs::permissions(folder.File("new"), fs::perms::owner_all | fs::perms::group_all);
  fs::create_symlink(file, link);
  ChangeSettingsFile(link, {{"", "ConnDataSource", "Office"}});
  EXPECT_EQ(fs::status(file).permissions(), kOwner | fs::perms::others_read);
  ChangeSettingsFile(link, {{"Server", "odbc", "DSN=x;pwd=s"}});
  EXPECT_EQ(fs::status(file).permissions(), kOwner);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(LocalSettings::Read(file).ConnDataSource, "Office");
}

}  // namespace
}  // namespace kaunter
