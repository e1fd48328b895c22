// The save of a loan: written whole or not at all, the totals with their asymmetries, and what two
// desktops do to each other.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "core/file_store.h"
#include "tests/loans/loan_counter.h"

namespace kaunter {
namespace {

// --- the write

TEST_F(LoanSave, AFailureAtAnyStatementIsMendedByTheNextSave) {
  std::string whole;
  {
    auto screen = Open("New Loan");
    Fill(*screen);
    Save(*screen);
    ASSERT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
    EXPECT_EQ(desk.titles.back(), "New Loan");
    EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast"), "12");
    whole = StoredButOne();
  }
  for (const bool stays : {false, true}) {
    bool hit = true;
    int before_commit = 0;
    for (int at = 1; hit; ++at) {
      SCOPED_TRACE(at);
      desk.said.clear();
      ASSERT_LT(at, 400);
      for (const char* table : {"LoanMast", "SchMast", "SchMast2", "PaymentList", "NumberMast"}) {
        office.Run(std::string("DELETE FROM ") + table);
      }
      office.Run("INSERT INTO NumberMast VALUES ('HQ0001','000','000')");
      office.Run("UPDATE CustMast SET TotLoan=0,TotLoanBal=0,TotLoanAmt2=0,TotTopUpAmt=0");
      office.Run("UPDATE SalesmanMast SET TotAccComm=0");
      const std::string before = Stored();
      auto screen = Open("New Loan");
      Fill(*screen);
      hit = office.FailAt(at, stays ? Failure::stays : Failure::passes, [&] { Save(*screen); });
      ASSERT_FALSE(office.session.Main().InTransaction());
      if (Stored() == before) {
        ++before_commit;
        EXPECT_EQ(screen->LoanID.text(), "");
        EXPECT_EQ(screen->LoanLBL.Text(), "New Loan");
      } else {
        EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM LoanMast") +
                      office.Scalar("SELECT COUNT(*) FROM SchMast"),
                  "112");
      }
      EXPECT_EQ(screen->LoanAmt.text(), "10,000.00");
      if (hit) Save(*screen);
      EXPECT_EQ(StoredButOne(), whole) << desk.last();
    }
    // Some eight statements, and the two schedules with some sixteen each.
    EXPECT_GT(before_commit, 40);
  }
}

// An older loan has it under a name that its row does not tell.
TEST_F(LoanSave, AGuarantorsPhotoComesWithHimUnderANewName) {
  Session& session = office.session;
  session.PhotoPath = office.folder.File("Photo");
  const auto lay = [&](const char* loan, const char* file, const char* bytes) {
    std::filesystem::create_directories(session.PhotoPath + "/" + loan);
    std::ofstream(KeptPath(session, loan, file)) << bytes;
  };
  auto old_loan = Open("New Loan");
  Fill(*old_loan);
  Save(*old_loan);
  office.Run("UPDATE LoanMast SET GuarantorNIC2='700101-14-5555',Pic2=''");
  lay("HQ0001-001", "guarantor1.jpg", "his face");
  lay("HQ0001-002", "guarantor0.jpg", "nobody");
  for (const char* loan : {"HQ0001-002", "HQ0001-003"}) {
    auto screen = Open("New Loan");
    Fill(*screen);
    screen->guarantors[0].GuarantorNIC.SetText("700101-14-5555");
    screen->guarantors[0].CmdGetGuarantor.Click();
    Save(*screen);
    const std::string file =
        office.Scalar(std::string("SELECT Pic1 FROM LoanMast WHERE LoanID='") + loan + "'");
    EXPECT_TRUE(file.starts_with("guarantor0-20")) << file << desk.last();
    std::ifstream kept(KeptPath(session, loan, file));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), "his face");
  }
}

TEST_F(LoanSave, AFailedEditLeavesWhatWasStored) {
  NewLoan();
  const std::string before = Stored();
  bool hit = true;
  int failed = 0;
  for (int at = 1; hit; ++at) {
    ASSERT_LT(at, 200);
    auto screen = Open("Edit Loan", kLoan);
    screen->LoanAmt.SetText("12,000.00");
    screen->SalesmanID.SetText("SLM2");
    screen->Command3.Click();
    hit = office.FailAt(at, Failure::stays, [&] { Save(*screen); });
    ASSERT_FALSE(office.session.Main().InTransaction()) << at;
    if (Stored() != before) break;
    ++failed;
    EXPECT_EQ(screen->LoanAmt.text(), "12,000.00") << at;
  }
  EXPECT_GT(failed, 8);
  EXPECT_EQ(Totals(), "12000|14160|100|-10000|\n");
  EXPECT_EQ(Commissions(), "0|\n50|\n");
}

TEST_F(LoanSave, ACustomerWithoutACounterIsToldWithoutATextOfTheDatabase) {
  office.Run("DELETE FROM NumberMast");
  auto screen = Open("New Loan");
  Fill(*screen);
  const std::string before = Stored();
  Save(*screen);
  EXPECT_EQ(desk.last(), "An error occurs during saving loan\n\n");
  EXPECT_EQ(Stored(), before);
  EXPECT_EQ(screen->LoanID.text(), "");
  ASSERT_FALSE(office.Log().empty());
  EXPECT_NE(office.Log().back().find("New Loan - error Rollback 0 - "), std::string::npos);
}

TEST_F(LoanSave, ALetterInANumberNobodyChecksIsToldUnderItsName) {
  auto screen = Open("New Loan");
  Fill(*screen);
  screen->SIBankAmt.SetText("1; DROP TABLE LoanMast");
  Save(*screen);
  EXPECT_NE(desk.last().find("An error occurs during saving loan\nSI Amount: "), std::string::npos)
      << desk.last();
  EXPECT_EQ(screen->focus(), &screen->SIBankAmt);
  screen->SIBankAmt.SetText("1,000.50");
  Save(*screen);
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(office.Scalar("SELECT SIBankAmt FROM LoanMast"), "1000.5");
}

TEST_F(LoanSave, AnApplicationIsTakenUpWithItsLoanAndFreeAgainWithout) {
  office.Run(
      "INSERT INTO AppMast (AppID,CompCode,CustID,NextDueDate,LoanAmt,LoanAmt2,TopUpAmt,LoanTypeID,"
      "LoanType,DragLoan,LoanPurpose,InsRate,LoanTerm,LoanTerm3,TermInt,LoanID) VALUES ('AP0001',"
      "'HQ','HQ0001','2024-02-29',10000,10000,0,'MONTH','Unsecured','0','FLAT',18,'12','0',0,'')");
  const auto taken_by = [&] { return office.Scalar("SELECT LoanID FROM AppMast"); };
  auto screen = Open("New Loan");
  Fill(*screen);
  desk.picked = "AP0001";
  screen->SSCommand3.Click();
  office.session.Main().SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("COMMIT")) throw SqlError(1105, "the disk is full");
  });
  Save(*screen);
  office.session.Main().SetFaultHook({});
  EXPECT_EQ(desk.last(),
            "An error occurs during saving loan\nthe disk is full\nNothing of it was kept. "
            "Mend the cause and do it again.");
  EXPECT_EQ(taken_by(), "");
  Save(*screen);
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(taken_by(), kLoan);
  // The next loan from the same screen has nothing to do with it.
  screen->CmdNew.Click();
  Fill(*screen);
  Save(*screen);
  EXPECT_EQ(taken_by(), kLoan);
  Save(*Open("Delete Loan", kLoan));
  EXPECT_EQ(taken_by(), "");
}

TEST_F(LoanSave, AnApplicationIsTakenByThoseWhoHaveAPartInIt) {
  office.Run(
      "INSERT INTO CustMast (CustID,CustName,CompCode,CustStatus) VALUES ('HQ0002','Wong','HQ',"
      "'ACTIVE');"
      "INSERT INTO AppMast (AppID,CompCode,CustID,NextDueDate,LoanAmt,LoanTypeID,LoanType,DragLoan,"
      "InsRate,LoanTerm,LoanID) VALUES ('AP0002','HQ','HQ0002','2024-02-29',777,'MONTH',"
      "'Unsecured','0',18,'12','')");
  const char* refused =
      "Application AP0002 belongs to Wong (HQ0002), and customer HQ0001 has no part in it. Choose "
      "an application of this customer.";
  desk.picked = "AP0002";
  auto screen = Open("New Loan");
  Fill(*screen);
  screen->SSCommand3.Click();
  EXPECT_EQ(desk.last(), refused);
  EXPECT_EQ(screen->LoanAmt.text(), "10,000.00");
  // Another customer in the place of the one who had a part.
  office.Run(
      "INSERT INTO AppMastLink (AppID,CustID,AppType) VALUES ('AP0002','HQ0001','Guarantor')");
  screen->SSCommand3.Click();
  EXPECT_EQ(screen->LoanAmt.text(), "777.00");
  office.Run("DELETE FROM AppMastLink");
  Save(*screen);
  EXPECT_EQ(desk.last(), refused);
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM LoanMast"), "0");
}

// --- the schedule that follows

TEST_F(LoanSave, OpenTermsAreGeneratedAnewAndTakeTheLinesEditedByHand) {
  NewLoan();
  auto screen = Open("Edit Loan", kLoan);
  // 100 of capital from the second instalment to the first.
  const auto edit = [&](int row, const char* payable) {
    ASSERT_TRUE(screen->vsd3.Edit(row, 2, payable));
  };
  edit(0, "1083.33");
  edit(1, "883.33");
  screen->SchChanged.SetChecked(true);
  Save(*screen);
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(desk.titles.back(), "Edit Loan");
  EXPECT_EQ(
      Lines("SELECT PayableAmt,CapitalAmt,InterestAmt FROM SchMast WHERE SchID<4 ORDER BY SchID"),
      "1083.33|933.33|150|\n883.33|733.33|150|\n983.33|833.33|150|\n");
}

TEST_F(LoanSave, LockedTermsLeaveTheScheduleAlone) {
  NewLoan();
  office.Run("UPDATE LoanMast SET PayOutAmt=0.01");
  office.Run("UPDATE SchMast SET DueDate='2024-03-05' WHERE SchID=1");
  const std::string before = Lines("SELECT * FROM SchMast ORDER BY SchID");
  auto screen = Open("Edit Loan", kLoan);
  EXPECT_FALSE(screen->LoanAmt.enabled());
  screen->SchChanged.SetChecked(true);
  screen->Memo1.SetText("called");
  screen->DragLoan.SetIndex(1);
  Save(*screen);
  EXPECT_EQ(desk.last(), "Money was drawn on this loan, its scheme cannot be changed");
  screen->DragLoan.SetIndex(0);
  Save(*screen);
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(Lines("SELECT * FROM SchMast ORDER BY SchID"), before);
  EXPECT_EQ(office.Scalar("SELECT Memo1 FROM LoanMast"), "called");
}

TEST_F(LoanSave, OpenTermsOfALoanWithPaymentsKeepWhatWasPaid) {
  NewLoan();
  office.Run(
      "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,SchID,PayAmt,"
      "InstalAmt) VALUES "
      "('HQ0001-001-001','HQ0001-001','HQ0001','HQ','2024-02-29',1,983.33,983.33)");
  auto screen = Open("Edit Loan", kLoan);
  Save(*screen);
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(Lines("SELECT Payment FROM SchMast WHERE SchID<3 ORDER BY SchID"), "983.33|\n0|\n");
  EXPECT_EQ(office.Scalar("SELECT LoanBal FROM LoanMast"), "10816.67");
  EXPECT_EQ(office.Scalar("SELECT TotLoanBal FROM CustMast"), "10816.67");
}

// --- totals

TEST_F(LoanSave, ALoanWithPaymentsIsAskedForTwice) {
  NewLoan();
  office.Run(
      "INSERT INTO PaymentMast (PayID,LoanID,PayAmt) VALUES ('HQ0001-001-001','HQ0001-001',1)");
  const std::string question = "Warning! 1 payment record(s)\nwill be deleted\n Proceed on ?";
  auto screen = Open("Delete Loan", kLoan);
  desk.refused_question = question;
  const std::string before = Stored();
  Save(*screen);
  EXPECT_EQ(desk.last(), question);
  EXPECT_EQ(Stored(), before);
  EXPECT_EQ(screen->LoanID.text(), kLoan);
  // A failure keeps everything too, and says so.
  desk.refused_question.clear();
  for (int at = 1; at < 40; ++at) {
    desk.said.clear();
    if (!office.FailAt(at, Failure::passes, [&] { Save(*screen); })) break;
    const bool committed = std::find(desk.said.begin(), desk.said.end(),
                                     "Loan ID HQ0001-001 deleted") != desk.said.end();
    if (committed) break;
    EXPECT_EQ(Stored(), before) << at << desk.last();
  }
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM PaymentMast"), "0");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast"), "0");
}

// --- audit and accounting

TEST_F(LoanSave, TheAuditShowsTheScreenAgainstWhatIsStored) {
  office.OpenAudit();
  NewLoan();
  auto screen = Open("Edit Loan", kLoan);
  screen->LoanAmt.SetText("12,000.00");
  screen->Command3.Click();
  Save(*screen);
  const Recordset rows = office.session.LogsConn->Query(
      "SELECT Type,Module,ConmpCode,TrxID,Remarks FROM TransLogs ORDER BY Type");
  EXPECT_EQ(LinesOf(rows, "|"),
            "Create|Loan|HQ|HQ0001-001|Date 31-01-2024/31-01-2024, Loan Amount "
            "10,000.00/10,000.00, Capital 0.00/0.00|\n"
            "Modify|Loan|HQ|HQ0001-001|Date 31-01-2024/31-01-2024, Loan Amount "
            "12,000.00/10,000.00, Capital 0.00/0.00|\n");
}

TEST_F(LoanSave, TheFeesGoToTheAccountsAndAFailedLinkKeepsTheLoan) {
  Session& session = office.session;
  session.settings.LinkAcc = "1";
  office.Run("UPDATE LinkAccMast SET LinkAccCode='500-0000'");
  session.AED = OpenSqlite("AED", office.folder.File("aed.db"), true, session.clock);
  const auto save = [&] {
    auto screen = Open("New Loan");
    Fill(*screen);
    screen->TermInt.SetText("1,200.00");
    screen->DepositAmt.SetText("50.10");
    screen->DepositAmt2.SetText("7");  // no fee
    Save(*screen);
  };
  save();
  const auto alert = std::find(desk.said.begin(), desk.said.end(),
                               "Alert !!\nLoan ID HQ0001-001 from O'Brien not linked");
  EXPECT_NE(alert, desk.said.end());
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast"), "12");

  session.AED->Execute(
      "CREATE TABLE TM_ARInvoice (DocNo nvarchar(50), DocDate datetime, DebtorCode nvarchar(50), "
      "Total decimal(18, 2))");
  session.AED->Execute(
      "CREATE TABLE TM_ARInvoiceDTL (DocNo nvarchar(50), SalesAccountNo nvarchar(50), Description "
      "nvarchar(50), Amount decimal(18, 2))");
  session.AED->Execute(
      "CREATE TABLE TM_ARPayment (DocNo nvarchar(50), DocDate datetime, DebtorCode nvarchar(50), "
      "Description nvarchar(50), PaymentMethod nvarchar(50), ChequeNo nvarchar(50), PaymentAmount "
      "decimal(18, 2))");
  save();
  EXPECT_EQ(ScalarQuery(*session.AED, "SELECT Total FROM TM_ARInvoice"), "1250.1");
  EXPECT_EQ(ScalarQuery(*session.AED, "SELECT COUNT(*) FROM TM_ARInvoiceDTL"), "7");
  EXPECT_EQ(ScalarQuery(*session.AED, "SELECT SUM(Amount) FROM TM_ARInvoiceDTL"), "1250.1");
  EXPECT_EQ(ScalarQuery(*session.AED,
                        "SELECT Amount FROM TM_ARInvoiceDTL WHERE Description='Loan for O''Brien'"),
            "0");
  EXPECT_EQ(ScalarQuery(*session.AED, "SELECT Description FROM TM_ARPayment"),
            "Loan Charges for O'Brien");
}

// --- two desktops

class TwoDesktops : public LoanSave {
 protected:
  TwoDesktops() : desk2(session2) {
    session2.AppPath = office.session.AppPath;
    session2.CurrentUserID = "BEN";
    session2.clock.Set({2024, 1, 31, 14, 5, 9});
    session2.MainConn =
        OpenSqlite("MainConn", office.folder.File("office.db"), false, session2.clock);
    Prepare(session2);
  }
  Session session2;
  TalkingDesk desk2;
};

TEST_F(TwoDesktops, TwoNewLoansOfOneCustomerGetTwoNumbers) {
  auto a = Open("New Loan");
  auto b = Open(session2, desk2, "New Loan", "");
  Fill(*a);
  Fill(*b);
  Save(*a);
  Save(*b);
  EXPECT_EQ(desk.last(), "Loan ID HQ0001-001 saved");
  EXPECT_EQ(desk2.last(), "Loan ID HQ0001-002 saved");
  EXPECT_EQ(Totals(), "20000|23600|200|0|\n");
}

TEST_F(TwoDesktops, AnEditOfFiguresThatHaveChangedSinceIsRefused) {
  NewLoan();
  auto a = Open("Edit Loan", kLoan);
  auto b = Open(session2, desk2, "Edit Loan", kLoan);
  a->LoanAmt.SetText("12,000.00");
  a->Command3.Click();
  Save(*a);
  const std::string before = Stored();
  b->Memo1.SetText("my remark");
  Save(*b);
  EXPECT_EQ(desk2.last(),
            "An error occurs during saving loan\nLoan HQ0001-001 was changed meanwhile, Please "
            "load it again\n");
  EXPECT_EQ(Stored(), before);
  EXPECT_EQ(b->Memo1.text(), "my remark");
  // A loan that is gone is told by its number.
  auto c = Open("Delete Loan", kLoan);
  Save(*c);
  Save(*b);
  EXPECT_EQ(desk2.last(), "An error occurs during saving loan\nHQ0001-001 not found\n");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast"), "0");
}

}  // namespace
}  // namespace kaunter
