// The application: the order of its checks, who may decide, the write whole or not at all, and what
// two desktops and a loan do to it.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "loans/application.h"
#include "loans/loan_app_frm.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

class LoanApp : public ::testing::Test, protected LoanOffice {
 protected:
  LoanApp() { main().Execute("INSERT INTO CollateralMast (CollateralID) VALUES ('HOUSE')"); }

  std::unique_ptr<LoanAppFrm> Open(const std::string& id = "") {
    auto screen = std::make_unique<LoanAppFrm>(office.session, desk);
    screen->Load();
    if (!id.empty()) {
      screen->AppID.SetText(id);
      screen->AppID.onLeave();
    }
    return screen;
  }

  // A secured one of 100,000 over 12 months, with two lines of history and one of insurance.
  static void Fill(LoanAppFrm& screen) {
    screen.CustID.SetText("HQ0001");
    screen.CompCode.SetText("HQ");
    screen.LoanAmt2.SetText("150000");
    screen.LoanAmt.SetText("100000");
    screen.InsRate.SetText("6");
    screen.LoanTerm.SetText("12");
    screen.LoanTerm3.SetText("2");
    screen.NextDueDate.SetText("29-02-2024");
    screen.LoanType.SetText("Secured");
    screen.property.CollateralID.SetText("HOUSE");
    screen.property.Memo2.SetText("No. 5, Jalan 'Ros'");
    screen.property.Memo4.SetText("180000");
    screen.Command3.Click();
    screen.vsd.Edit(0, 1, "came in");
    screen.vsd.Edit(1, 1, "brought the title");
    screen.vsdd.Edit(0, 0, "Tan");
  }

  // As a face does it: a failure never leaves the screen.
  static void Save(LoanAppFrm& screen) {
    screen.Guard([&] { screen.SaveCmd.Click(); });
  }

  std::string New() {
    auto screen = Open();
    Fill(*screen);
    Save(*screen);
    desk.messages.clear();
    return screen->AppID.text();
  }

  std::string last() const {
    if (desk.messages.empty()) return "";
    const std::string& text = desk.messages.back();
    return text.substr(text.find(": ") + 2);
  }

  std::string StoredApplications() {
    std::string all;
    for (const char* table : {"AppMast", "AppMastLink", "AppHist", "MRTAMast", "NumberMast"}) {
      all += Lines(fmt::format("SELECT * FROM {} ORDER BY 1,2", table)) + "\n";
    }
    return all;
  }
  std::string Counts() {
    std::string all;
    for (const char* table : {"AppMast", "AppMastLink", "AppHist", "MRTAMast"}) {
      all += Scalar(fmt::format("SELECT COUNT(*) FROM {}", table)) + " ";
    }
    return all;
  }
};

// --- the checks

struct Check {
  const char* name;
  std::function<void(LoanAppFrm&)> break_it;
  std::string told;
  const char* focus;
};

template <class Box>
Check Blank(Box LoanAppFrm::*box, const char* name, std::string told) {
  return {name, [box](LoanAppFrm& screen) { (screen.*box).Clear(); }, std::move(told), name};
}

template <class Box>
Check Blank(Box PropertyBoxes::*box, const char* name, std::string told) {
  return {name, [box](LoanAppFrm& f) { (f.property.*box).Clear(); }, std::move(told), name};
}

TEST_F(LoanApp, EachCheckComesBeforeAllLaterOnes) {
  using F = LoanAppFrm;
  const std::vector<Check> checks = {
      Blank(&F::CompCode, "CompCode", "Company Code is required"),
      Blank(&F::TrxDate, "TrxDate", "Application Date is required"),
      Blank(&F::LoanAmt2, "LoanAmt2", "Property Amount is required"),
      Blank(&F::LoanAmt, "LoanAmt", "Loan Amount is required"),
      Blank(&F::InsRate, "InsRate", "Interest Rate % p.a. is required"),
      Blank(&F::LoanTerm, "LoanTerm", "Loan Tenure is required"),
      Blank(&F::InstallmentAmt, "InstallmentAmt", "Installment Amount is required"),
      Blank(&PropertyBoxes::CollateralID, "CollateralID", "Collateral Type is required"),
      Blank(&PropertyBoxes::Memo2, "Memo2", "Collateral Description is required"),
      Blank(&PropertyBoxes::Memo4, "Memo4", "Collateral Market Value is required"),
      {"four eyes",
       [](F& f) {
         f.ApprovedUser.SetText("AMY");
         f.ApprovedUser2.SetText("amy");
       },
       "Recommended User cannot same as Approval User", "AppStatus2"},
      {"figures", [](F& f) { f.property.SumInsured.SetText("much"); }, "Invalid Sum Insured",
       "SumInsured"},
  };
  const std::string id = New();
  const std::string before = StoredApplications();
  for (std::size_t k = 0; k < checks.size(); ++k) {
    SCOPED_TRACE(checks[k].name);
    auto screen = Open(id);
    screen->TopUpAmt.Clear();
    screen->TermInt.Clear();
    for (std::size_t i = k; i < checks.size(); ++i) checks[i].break_it(*screen);
    desk.messages.clear();
    desk.questions.clear();
    Save(*screen);
    ASSERT_EQ(desk.messages.size(), 1u);
    EXPECT_EQ(last(), checks[k].told);
    EXPECT_EQ(screen->focus()->name(), checks[k].focus);
    // The two that are filled stand between the third and the fourth, and the fourth and the fifth.
    EXPECT_EQ(screen->TopUpAmt.text(), k < 3 ? "" : "0.00");
    EXPECT_EQ(screen->TermInt.text(), k < 4 ? "" : "0.00");
    EXPECT_TRUE(desk.questions.empty());
    EXPECT_EQ(StoredApplications(), before);
  }
  // Without security nothing is asked of it, and No to the question writes nothing.
  auto screen = Open(id);
  screen->LoanType.SetText("Unsecured");
  for (TextBox* box : {&screen->property.Memo2, &screen->property.Memo4}) box->Clear();
  desk.agrees = false;
  Save(*screen);
  EXPECT_EQ(desk.questions, std::vector<std::string>{"Confirm to save application ?"});
  EXPECT_EQ(StoredApplications(), before);
}

TEST_F(LoanApp, ANewOneStartsUndecidedAndBelongsToACustomer) {
  auto screen = Open();
  Fill(*screen);
  screen->CustID.Clear();
  screen->AppStatus.Pick("Approved");
  screen->AppStatus2.Pick("Approved");
  Save(*screen);
  EXPECT_EQ(last(), "Customer Code is requried");
  screen->CustID.SetText("NOBODY");
  Save(*screen);
  EXPECT_EQ(last(), "Customer ID NOBODY not found");
  EXPECT_EQ(Counts(), "0 0 0 0 ");
  screen->CustID.SetText("HQ0001");
  Save(*screen);
  EXPECT_EQ(Lines("SELECT AppID,AppStatus,AppStatus2,ApprovedUser,ApprovedUser2,LoanID,CompCode "
                  "FROM AppMast"),
            "AP0001 Pending     HQ\n");
  EXPECT_EQ(Lines("SELECT AppID,CustID,AppType,Relationship FROM AppMastLink"),
            "AP0001 HQ0001 Applicant \n");
}

// --- the two levels

TEST_F(LoanApp, WhoMayDecideFollowsLevelAndFirstHand) {
  struct Case {
    const char* name;
    int level;
    const char *status, *user, *status2, *user2, *loan;
    bool first, final, terms, save;
  };
  const Case cases[] = {
      {"clerk", 1, "Pending", "", "", "", "", false, false, true, true},
      {"supervisor", 2, "Pending", "", "", "", "", true, false, true, true},
      {"manager", 3, "Pending", "", "", "", "", true, true, true, true},
      {"admin", 4, "Processing", "", "", "", "", true, true, true, true},
      {"built-in", 5, "Pending", "", "", "", "", true, true, true, true},
      {"own recommendation", 2, "Approved", "Amy", "", "", "", true, false, false, true},
      {"another's", 3, "Approved", "BOB", "", "", "", false, true, false, true},
      {"another's, open", 3, "Processing", "BOB", "", "", "", false, true, true, true},
      {"cancelled", 3, "Cancel", "AMY", "", "", "", true, true, true, true},
      {"rejected", 3, "Rejected", "AMY", "", "", "", true, true, false, true},
      {"own approval", 3, "Approved", "BOB", "Approved", "AMY", "", false, true, false, true},
      {"final binds the first", 3, "Approved", "AMY", "Approved", "BOB", "", false, false, false,
       true},
      {"finally rejected", 3, "Pending", "", "Rejected", "AMY", "", false, true, true, true},
      {"taken up", 4, "Approved", "AMY", "Approved", "AMY", "HQ0001-001", false, false, false,
       false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    main().Execute("DELETE FROM AppMast");
    main().Execute(
        fmt::format("INSERT INTO AppMast (AppID,CompCode,CustID,AppStatus,ApprovedUser,AppStatus2,"
                    "ApprovedUser2,LoanID) VALUES ('AP1','HQ','HQ0001','{}','{}','{}','{}','{}')",
                    c.status, c.user, c.status2, c.user2, c.loan));
    office.session.CurrentLevel = c.level;
    auto screen = Open("AP1");
    EXPECT_EQ(screen->AppStatus.Editable(), c.first);
    EXPECT_EQ(screen->AppStatus2.Editable(), c.final);
    EXPECT_EQ(screen->LoanAmt.Active(), c.terms);
    EXPECT_EQ(screen->property.Memo2.Active(), c.terms);
    EXPECT_EQ(screen->vsd.Active(), c.save);
    EXPECT_EQ(screen->SaveCmd.Active(), c.save);
  }
}

TEST_F(LoanApp, ADecisionOfAnotherDesktopIsNotUndone) {
  const std::string id = New();
  auto mine = Open(id);
  auto theirs = Open(id);
  theirs->AppStatus.Pick("Approved");
  Save(*theirs);
  ASSERT_EQ(last(), "Application saved");
  const std::string before = StoredApplications();
  mine->LoanAmt.SetText("999999");
  Save(*mine);
  EXPECT_NE(last().find("was changed meanwhile, Please load it again"), std::string::npos);
  EXPECT_EQ(StoredApplications(), before);
  EXPECT_EQ(mine->LoanAmt.text(), "999,999.00");
  // Deleted meanwhile: no line is written for what is gone.
  main().Execute("DELETE FROM AppMast; DELETE FROM AppHist; DELETE FROM MRTAMast");
  Save(*mine);
  EXPECT_NE(last().find(id + " not found"), std::string::npos) << last();
  EXPECT_EQ(Counts(), "0 1 0 0 ");
}

// --- the write

TEST_F(LoanApp, AFailureAtAnyStatementLeavesNothingOrAll) {
  for (const bool is_new : {true, false}) {
    SCOPED_TRACE(is_new ? "new" : "edited");
    const std::string id = is_new ? "" : New();
    const std::string before = StoredApplications();
    const std::string counts = Counts();
    int rolled_back = 0;
    bool done = false;
    for (int at = 1; at < 200 && !done; ++at) {
      SCOPED_TRACE(at);
      auto screen = Open(id);
      if (is_new) {
        Fill(*screen);
      } else {
        screen->vsd.Edit(2, 1, "once more");
        screen->property.Memo2.SetText("No. 6");
      }
      const bool hit = FailAt(at, [&] { Save(*screen); });
      ASSERT_FALSE(main().InTransaction());
      if (StoredApplications() == before) {
        ASSERT_TRUE(hit);
        ASSERT_FALSE(desk.messages.empty());
        EXPECT_NE(last().find("the disk is full"), std::string::npos);
        EXPECT_EQ(screen->AppID.text(), id);
        EXPECT_EQ(screen->property.Memo2.text(), is_new ? "No. 5, Jalan 'Ros'" : "No. 6");
        ++rolled_back;
        continue;
      }
      // From the commit on it stands whole.
      EXPECT_EQ(Counts(), is_new ? "1 1 2 1 " : "1 1 3 1 ");
      EXPECT_NE(Counts(), counts);
      done = true;
    }
    EXPECT_TRUE(done);
    // Begin, the row, three or more lines, their two deletes and the commit at the least.
    EXPECT_GE(rolled_back, 8);
    main().Execute(
        "DELETE FROM AppMast; DELETE FROM AppMastLink; DELETE FROM AppHist; "
        "DELETE FROM MRTAMast");
  }
}

TEST_F(LoanApp, APersonIsLinkedWholeOrNotAtAll) {
  const std::string id = New();
  const std::string before = StoredApplications();
  for (int at = 1; at < 50; ++at) {
    auto screen = Open(id);
    screen->LinkDG.Select(0);
    screen->LinkType.SetText("Chargor");
    screen->LinkRelation.SetText("self");
    const bool hit = FailAt(at, [&] { screen->Guard([&] { screen->Command1.Click(); }); });
    ASSERT_FALSE(main().InTransaction());
    if (StoredApplications() == before) {
      ASSERT_TRUE(hit);
      continue;
    }
    EXPECT_GT(at, 4);
    EXPECT_EQ(Lines("SELECT CustID,AppType,Relationship FROM AppMastLink"),
              "HQ0001 Chargor self\n");
    return;
  }
  FAIL() << "never linked";
}

// --- the loan

TEST_F(LoanApp, OneLoanTakesItUpAndTheSecondApplicantIsAnother) {
  const std::string id = New();
  main().Execute(
      "INSERT INTO AppMastLink (AppID,CustID,AppType) SELECT 'AP0001','HQ0009','Applicant' UNION "
      "SELECT 'AP0001','HQ0003','Applicant' UNION SELECT 'AP0001','HQ0002','Guarantor'");
  const auto application = ReadApplication(main(), id, "HQ0001");
  ASSERT_TRUE(application);
  EXPECT_EQ(application->row.Field("LoanTerm3").ToText(), "2");
  EXPECT_EQ(application->second_applicant, "HQ0003");
  EXPECT_FALSE(ReadApplication(main(), "AP0002", "HQ0001"));
  EXPECT_TRUE(MarkTakenUp(main(), "HQ0001-001", id));
  EXPECT_FALSE(MarkTakenUp(main(), "HQ0001-002", id));
  EXPECT_EQ(Scalar("SELECT LoanID FROM AppMast"), "HQ0001-001");
}

}  // namespace
}  // namespace kaunter
