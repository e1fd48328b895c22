#include "core/sign_in.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "core/company_access.h"
#include "core/menu.h"
#include "core/password.h"
#include "core/password_screens.h"
#include "core/session.h"
#include "platform/sql/waiting.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

// An office with one user a case, at 08:59 on a working day.
class SignIn : public ::testing::Test {
 protected:
  SignIn() : office(Office::State::patched), session(office.session) {
    session.clock.Set({2024, 1, 31, 8, 59, 0});
    office.Run("INSERT INTO Systemast (Param,Value) VALUES ('KEY','MainUser')");
  }

  void AddUser(const std::string& id, const std::string& columns, const std::string& values) {
    session.Main().Execute("INSERT INTO UserMast (UserID,UserDept,UserLevel,CompCode" + columns +
                           ") VALUES ('" + id + "','" + PasswordHash("secret1") + "'," + values +
                           ")");
  }

  std::string Try(const std::string& id, const std::string& password = "secret1") {
    const auto refusal = TrySignIn(session, id, password);
    return refusal ? refusal->english : "in";
  }

  Office office;
  Session& session;
};

TEST(PasswordHash, IsTheDigestInUpperCaseOfOneByteACharacter) {
  EXPECT_EQ(PasswordHash(""), "D41D8CD98F00B204E9800998ECF8427E");
  EXPECT_EQ(PasswordHash("abc"), "900150983CD24FB0D6963F7D28E17F72");
  // One byte for a letter of the Western page, however many the text has in UTF-8.
  EXPECT_EQ(PasswordHash("\xC3\xA9"), "3406877694691DDD1DFB0ACA54681407");
}

TEST_F(SignIn, RefusesInTheOrderUserPasswordWindow) {
  AddUser("AMINAH", ",TimeStart", "'Clerk','HQ','09:00'");
  AddUser("LATE", ",TimeEnd", "'Clerk','HQ','08:30'");
  EXPECT_EQ(Try("NOBODY"), "Invalid User ID, Please check");
  EXPECT_EQ(Try("O'BRIEN"), "Invalid User ID, Please check");
  EXPECT_EQ(Try("AMINAH", "Secret1"), "Invalid Password, Please check");
  EXPECT_EQ(Try("AMINAH"), "Sign in deny, please sign in after 9:00 am");
  EXPECT_EQ(Try("LATE"), "Sign in deny, please sign in before 8:30 am");
  EXPECT_EQ(session.CurrentUserID, "");
  EXPECT_EQ(session.CurrentLevel, 0);
  session.clock.Set({2024, 1, 31, 9, 0, 0});
  EXPECT_EQ(Try("aminah"), "in");
}

// Each prompt counts for the user it was typed for; a right password forgives, and so does a
// minute.
TEST_F(SignIn, AfterFiveWrongPasswordsWithinAMinuteEachTryWaitsLonger) {
  AddUser("AMINAH", "", "'Manager','HQ'");
  PasswordTries::Time now{};
  std::vector<int> waits;
  bool sleeps = false;
  int paints = 0;
  session.password_tries.now = [&] { return sleeps = false, now; };
  session.password_tries.sleep = [&](PasswordTries::Span span) {
    if (!std::exchange(sleeps, true)) waits.push_back(0);
    waits.back() += static_cast<int>(span.count());
  };
  SetWhileWaiting([&paints] { ++paints; });
  const auto approve = [&](const char* password) {
    frmUserSignIn prompt(session, office.desk, {"save loan X", "储存贷款 X"});
    prompt.Load();
    EXPECT_EQ(prompt.RequestLBL.Text(), session.CurrentUserID + " asks: save loan X");
    prompt.UserID.SetText("AMINAH");
    prompt.Password.SetText(password);
    prompt.OKCmd.Click();
    return session.OverrideOK;
  };
  for (int i = 0; i < 4; ++i) Try("aminah", "wrong");
  Try("NOBODY", "wrong");
  EXPECT_FALSE(approve("wrong"));
  EXPECT_TRUE(office.Log().back().ends_with(
      " - Manager Sign In: refused for user AMINAH, 5 within a minute"))
      << office.Log().back();
  EXPECT_TRUE(waits.empty());
  Try("AMINAH", "wrong");
  EXPECT_FALSE(approve("wrong"));
  EXPECT_TRUE(approve("secret1"));
  EXPECT_EQ(waits, (std::vector<int>{1000, 2000, 3000}));
  EXPECT_GE(paints, 100);
  SetWhileWaiting({});
  Try("AMINAH", "wrong");
  for (int i = 0; i < 20; ++i) Try("AMINAH", "wrong");
  EXPECT_EQ(waits.back(), 5000);
  now += std::chrono::minutes(1);
  waits.clear();
  EXPECT_EQ(Try("AMINAH"), "in");
  EXPECT_TRUE(waits.empty());
  AccessPasswordFrm own(session, office.desk, {"delete customer X", "删除顾客 X"});
  EXPECT_EQ(own.RequestLBL.Text(), "AMINAH asks: delete customer X");
  own.OKCmd.Click();
  EXPECT_TRUE(
      office.Log().back().ends_with(" - Password: refused for user AMINAH, 1 within a minute"));
}

TEST_F(SignIn, ASetClockIsForAdministratorsAndForPractice) {
  AddUser("CLERK", "", "'Manager','HQ'");
  AddUser("BOSS", "", "'Admin','HQ'");
  const struct {
    bool set;
    const char* kind;
    const char* user;
    bool in;
  } kCases[] = {{true, "", "CLERK", false},     {true, "", "BOSS", true},
                {false, "", "CLERK", true},     {true, "demo", "CLERK", true},
                {true, "Shop", "CLERK", false}, {true, "Training", "CLERK", true}};
  for (const auto& c : kCases) {
    session.SetClockNeedsRight = c.set;
    session.Main().Execute("DELETE FROM Systemast WHERE Param='OfficeKind'");
    session.Main().Execute(
        fmt::format("INSERT INTO Systemast (Param,Value) VALUES ('OfficeKind','{}')", c.kind));
    EXPECT_EQ(Try(c.user) == "in", c.in) << c.user << c.kind;
    EXPECT_EQ(session.CurrentLevel > 0, c.in);
  }
}

TEST_F(SignIn, TheBuiltInLogonNeedsTheKeyOfThisAccount) {
  EXPECT_EQ(Try("ADMIN", "wrong"), "Invalid User ID, Please check");
  EXPECT_EQ(Try("ADMIN", "zebrawindmill"), "in");
  EXPECT_EQ(session.CurrentLevel, 5);
  EXPECT_TRUE(session.AllowDelete);
  EXPECT_FALSE(session.Special);
  session.ConnAccount = "2User";
  EXPECT_EQ(Try("ADMIN", "zebrawindmill"), "Invalid User ID, Please check");
  EXPECT_EQ(session.CurrentLevel, 0);
}

TEST_F(SignIn, TakesTheRightsOfTheRowAndNoneOfThePersonBefore) {
  AddUser("BOSS", ",gcc2,AllowEdit,AllowCreditLimit,Special,AllowDisc,FollowUpFlag",
          "'Manager','HQ','AB\r\nCD',2,2,1,-1,1");
  AddUser("CLERK", "", "'Chief','AB'");
  ASSERT_EQ(Try("BOSS"), "in");
  EXPECT_EQ(session.CurrentLevel, 3);
  EXPECT_EQ(session.AllowedCompanies, "\"AB\",\"CD\"");
  EXPECT_TRUE(session.AllowEdit);          // any number but 0
  EXPECT_FALSE(session.AllowCreditLimit);  // exactly 1
  EXPECT_TRUE(session.Special);
  EXPECT_TRUE(session.AllowDisc);
  EXPECT_TRUE(session.FollowUpFlag);
  EXPECT_TRUE(CompanyAllowed(session, "ab"));
  EXPECT_FALSE(CompanyAllowed(session, "A"));
  EXPECT_EQ(CompanyFilter(session, "l.CompCode"), "WHERE l.CompCode in ('AB','CD') ");

  ASSERT_EQ(Try("CLERK"), "in");
  EXPECT_EQ(session.CurrentLevel, 0);  // a level outside the table
  EXPECT_EQ(session.AllowedCompanies, "");
  EXPECT_FALSE(session.AllowEdit || session.Special || session.AllowDisc || session.FollowUpFlag);
  EXPECT_FALSE(CompanyAllowed(session, "AB"));
  EXPECT_EQ(CompanyFilter(session, "l.CompCode"), "WHERE l.CompCode='AB' ");
}

TEST_F(SignIn, ACompanyWithAQuoteStaysInsideItsLiteral) {
  session.CurrentLevel = 1;
  session.AllowedCompanies = "\"O'B\",\"C\"";
  EXPECT_EQ(CompanyCondition(session, "CompCode"), "CompCode in ('O''B','C')");
  session.AllowedCompanies.clear();
  session.CurrentCompCode = "O'B";
  EXPECT_EQ(CompanyCondition(session, "CompCode"), "CompCode='O''B'");
  session.CurrentLevel = 4;
  EXPECT_EQ(CompanyFilter(session, "CompCode"), "");
}

TEST_F(SignIn, UserFlagIsReadAfreshAndOnlyExactlyOneCounts) {
  AddUser("CLERK", ",AccessLoan,AccessPayment", "'Clerk','HQ',2,1");
  ASSERT_EQ(Try("CLERK"), "in");
  EXPECT_FALSE(UserFlag(session, "AccessLoan"));
  EXPECT_TRUE(UserFlag(session, "AccessPayment"));
  session.Main().Execute("UPDATE UserMast SET AccessLoan=1 WHERE UserID='CLERK'");
  EXPECT_TRUE(UserFlag(session, "AccessLoan"));
  ASSERT_EQ(Try("ADMIN", "zebrawindmill"), "in");
  EXPECT_FALSE(UserFlag(session, "AccessPayment"));
}

MenuEntry Entry(const std::string& name, const std::string& parent = "LoanMnu") {
  MenuEntry entry;
  entry.name = name;
  entry.parent = parent;
  return entry;
}

TEST_F(SignIn, TheMenuFollowsTheRightsRowsWithTheSettledExceptions) {
  MenuEntry system = Entry("System2Mnu", "");
  MenuEntry always = Entry("ExitMnu", "");
  always.needs_right = system.needs_right = false;
  MainMenu menu({system, Entry("LoanMnu", ""), Entry("NewLoanMnu"), Entry("EditLoanMnu"),
                 Entry("SellGoldRptMnu"), Entry("LinkDBMnu"), Entry("AMLADescMnu"),
                 Entry("CDDLoanMnu"), Entry("PaymentReaderMnu"), always});
  AddUser("CLERK", "", "'Clerk','HQ'");
  session.Main().Execute(
      "INSERT INTO UserAccess (UserID,MenuList,MenuNo) VALUES ('CLERK','LoanMnu',1);"
      "INSERT INTO UserAccess (UserID,MenuList,MenuNo) VALUES ('CLERK','newloanmnu',2);"
      "INSERT INTO UserAccess (UserID,MenuList,MenuNo) VALUES ('CLERK','SellGoldRptMnu',3);"
      "INSERT INTO UserAccess (UserID,MenuList,MenuNo) VALUES ('CLERK','LinkDBMnu',4)");
  const auto visible = [&] {
    std::string names;
    for (const MenuEntry& entry : menu.entries()) {
      if (menu.Reachable(entry)) names += entry.name + " ";
    }
    return names;
  };
  menu.HideAll();
  EXPECT_EQ(visible(), "System2Mnu ");
  ASSERT_EQ(Try("CLERK"), "in");
  menu.ApplyRights(session);
  EXPECT_EQ(visible(), "LoanMnu NewLoanMnu ExitMnu ");
  session.settings.PaymentReader = true;
  session.CurrentLevel = 3;
  menu.ApplyRights(session);
  EXPECT_EQ(visible(), "LoanMnu NewLoanMnu AMLADescMnu CDDLoanMnu PaymentReaderMnu ExitMnu ");
  ASSERT_EQ(Try("ADMIN", "zebrawindmill"), "in");
  menu.ApplyRights(session);
  EXPECT_EQ(visible(),
            "LoanMnu NewLoanMnu EditLoanMnu SellGoldRptMnu LinkDBMnu AMLADescMnu CDDLoanMnu "
            "PaymentReaderMnu ExitMnu ");
}

}  // namespace
}  // namespace kaunter
