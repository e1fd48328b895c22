// Who may give what to whom in User Management.
#include "core/user_frm.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "core/menu_list.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

class AgreeingDesk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view) override { return true; }
};

MenuEntry Entry(const char* name, const char* caption) {
  MenuEntry entry;
  entry.name = name;
  entry.caption = caption;
  return entry;
}

TEST(UserFrm, GivesNothingThatTheGiverLacksAndTouchesNobodyAbove) {
  const auto tick = [](UserFrm& users, int row) { users.LS1.SetTicked(row, true); };
  const auto password = [](UserFrm& users) {
    users.UserDept.SetText("new1");
    users.UserDept2.SetText("new1");
  };
  const struct {
    const char* user;
    std::function<void(UserFrm&)> edit;
    const char* told;
  } cases[] = {
      {"CHIEF", [](UserFrm& u) { u.UserName.SetText("Siti"); },
       "You cannot change or delete a user whose level is above your own"},
      {"CHIEF",
       [&](UserFrm& u) {
         u.UserLevel.SetText("Clerk");
         password(u);
       },
       "You cannot change or delete a user whose level is above your own"},
      {"CHIEF", [](UserFrm& u) { u.CmdDelete.Click(); },
       "You cannot change or delete a user whose level is above your own"},
      {"CLERK", [](UserFrm& u) { u.UserLevel.SetText("Manager"); },
       "You cannot give a level above your own"},
      {"SUPER", [](UserFrm& u) { u.gcc2.SetText("HQ\r\nCD"); },
       "You cannot give \"company CD\", since you do not have it yourself"},
      {"CLERK", [](UserFrm& u) { u.CompCode.SetText("CD"); },
       "You cannot give \"company CD\", since you do not have it yourself"},
      {"SUPER", [](UserFrm& u) { u.AllowDelete.SetChecked(true); },
       "You cannot give \"Delete records\", since you do not have it yourself"},
      {"CLERK", [&](UserFrm& u) { tick(u, 1); },
       "You cannot give \"New Loan\", since you do not have it yourself"},
      {"SUPER", [](UserFrm& u) { u.TimeEnd.SetText("23:59"); }, "You cannot change your own hours"},
      {"RICH", password,
       "You cannot set the password of a user who has \"Delete records\", since you do not have it "
       "yourself"},
      {"RICH", [](UserFrm& u) { u.UserName.SetText("Rich"); }, "User ID updated"},
      {"SUPER", password, "User ID updated"},
      {"CLERK",
       [&](UserFrm& u) {
         u.UserLevel.SetText("Supervisor");
         u.AllowEdit.SetChecked(true);
         tick(u, 0);
         password(u);
       },
       "User ID updated"},
  };
  for (const int level : {2, 4}) {
    for (const auto& c : cases) {
      Office office(Office::State::patched);
      office.Run(
          "INSERT INTO CompMast (CompCode,CompDesc) VALUES ('CD','Other');"
          "INSERT INTO UserMast (UserID,UserLevel,CompCode,UserDept,AllowEdit) VALUES "
          "('SUPER','Supervisor','HQ','X',1);"
          "INSERT INTO UserMast (UserID,UserLevel,CompCode,UserDept) VALUES "
          "('CLERK','Clerk','HQ','X');"
          "INSERT INTO UserMast (UserID,UserLevel,CompCode,UserDept) VALUES "
          "('CHIEF','Manager','HQ','X');"
          "INSERT INTO UserMast (UserID,UserLevel,CompCode,UserDept,AllowDelete) VALUES "
          "('RICH','Clerk','HQ','X',1);"
          "INSERT INTO UserAccess (UserID,MenuList,MenuNo) VALUES ('SUPER','NewCustMnu',1)");
      if (level == 4) office.Run("UPDATE UserMast SET UserLevel='Admin' WHERE UserID='SUPER'");
      office.session.CurrentUserID = "SUPER";
      office.session.CurrentLevel = level;
      office.session.CurrentCompCode = "HQ";
      AgreeingDesk desk;
      UserFrm users(office.session, desk,
                    {Entry("NewCustMnu", "&New Customer"), Entry("NewLoanMnu", "&New Loan")});
      users.Load();
      users.UserID.SetText(c.user);
      users.UserID.onLeave();
      c.edit(users);
      if (desk.messages.empty()) users.SaveCmd.Click();
      ASSERT_EQ(desk.messages.size(), 1u) << c.told;
      const std::string told = desk.messages[0].substr(desk.messages[0].find(": ") + 2);
      if (level == 2) {
        EXPECT_EQ(told, c.told) << c.user;
      } else {
        EXPECT_TRUE(told == "User ID updated" || told == "User ID CHIEF deleted") << told;
      }
      if (&c != &cases[std::size(cases) - 1]) continue;
      EXPECT_TRUE(office.Log().back().ends_with(
          " - SUPER changed user CLERK: level Clerk -> Supervisor, +AllowEdit, +NEWCUSTMNU, "
          "password"))
          << office.Log().back();
    }
  }
}

// The files of an older version and lines of the office's own.
TEST(RightsList, OffersWhatTheProgramHasAndWhatTheOfficeAdded) {
  TempFolder folder;
  std::ofstream(folder.File("MenuList.ini"))
      << "NewCustMnu,1,Pelanggan Baru\nOwnPaperMnu,900,Own Paper\n[end],,\n";
  std::string list;
  for (const MenuListEntry& entry : RightsList(folder.path(), {Entry("NewCustMnu", "&New Customer"),
                                                               Entry("NewLoanMnu", "&New Loan")})) {
    list += fmt::format("{},{},{};", entry.name, entry.number, entry.caption);
  }
  EXPECT_EQ(list, "NewCustMnu,1,Pelanggan Baru;NewLoanMnu,2,New Loan;OwnPaperMnu,900,Own Paper;");
}

}  // namespace
}  // namespace kaunter
