// The desk for many payments: what it lists, what it takes for an amount, and that each row stands
// or falls alone.
#include "collections/special_rpt.h"

#include "tests/collections/charge_counter.h"

namespace kaunter {
namespace {

using Cells = std::vector<std::string>;
constexpr int kLoanCell = 0, kDue = 7, kBalance = 8, kLoanBal = 9, kAmount = 10, kPayID = 11,
              kRemarks = 12;

// Two personal loans of 12 per cent flat, drawn: 1200 over 12 months is 12 x 112, 600 over 6 is
// 5 x 106 and a last 106. Both fall due from 31-01-2024 on.
class SpecialRptTest : public ChargeCounter {
 protected:
  SpecialRptTest() {
    office.Run("UPDATE LoanMast SET PayOutAmt=LoanAmt,SalesmanComm=0");
    office.session.CurrentUserID = "AMY";
  }
  std::unique_ptr<SpecialRpt> Open(const std::string& from = "",
                                   const std::string& to = "29-02-2024") {
    auto screen = std::make_unique<SpecialRpt>(office.session, counter);
    screen->Load();
    screen->SortBy.Pick("Loan Code");
    screen->DateFrom.SetText(from);
    screen->DateTo.SetText(to);
    screen->Command1.Click();
    return screen;
  }
  // Loan and due date of each row.
  static std::string Listed(const SpecialRpt& screen) {
    std::string text;
    for (int row = 0; row < screen.DG.RowCount(); ++row) {
      text += screen.DG.Cell(row, kLoanCell).substr(7) + " " +
              screen.DG.Cell(row, kDue).substr(0, 5) + "; ";
    }
    return text;
  }
  static Cells Column(const SpecialRpt& screen, int column) {
    Cells cells;
    for (int row = 0; row < screen.DG.RowCount(); ++row) {
      cells.push_back(screen.DG.Cell(row, column));
    }
    return cells;
  }
  std::string Payments() {
    return Lines("SELECT PayID,SchID,PayDate,PayAmt,NewLoanBal FROM PaymentMast ORDER BY PayID");
  }
};

TEST_F(SpecialRptTest, ListsWhatIsOpenInTheRangeOfOneCompany) {
  EXPECT_EQ(Listed(*Open()), "001 31-01; 001 29-02; 002 31-01; 002 29-02; ");
  EXPECT_EQ(Listed(*Open("01-02-2024", "29-02-2024")), "001 29-02; 002 29-02; ");
  EXPECT_EQ(Listed(*Open("", "28-02-2024")), "001 31-01; 002 31-01; ");
  office.Run("UPDATE SchMast SET Payment=PayableAmt WHERE LoanID='HQ0001-001' AND SchID=1");
  office.Run("UPDATE LoanMast SET Bank='MBB' WHERE LoanID='HQ0001-002'");
  auto screen = Open();
  EXPECT_EQ(Listed(*screen), "001 29-02; 002 31-01; 002 29-02; ");
  EXPECT_EQ(screen->DG.Row(0), (Cells{kLoan, "", "Tan 'Ah' Kow", "", "MONTH", "0", "0.00",
                                      "29-02-2024", "112.00", "1,344.00", "", "", ""}));
  const auto again = [&] {
    screen->Command1.Click();
    return Listed(*screen);
  };
  screen->SortBy.Pick("Due Date");
  EXPECT_EQ(again().substr(0, 11), "002 31-01; ");
  screen->Bank.SetText("MBB");
  EXPECT_EQ(again(), "002 31-01; 002 29-02; ");
  screen->LoanGroupID.SetText("PINJAMAN SELESAI");
  EXPECT_EQ(again(), "");
  screen->LoanGroupID.SetText("PINJAMAN SEMASA");
  ASSERT_TRUE(screen->Bank.Pick(""));
  ASSERT_TRUE(screen->LoanGroupID.Pick(""));
  EXPECT_EQ(again(), "002 31-01; 001 29-02; 002 29-02; ");
  screen->CompCode.SetText("O'B");
  EXPECT_EQ(again(), "");
}

TEST_F(SpecialRptTest, ACellTakesAnAmountAndNothingElse) {
  auto screen = Open();
  screen->DG.Edit(0, kAmount, "1,00.5");
  EXPECT_EQ(screen->DG.Cell(0, kAmount), "100.50");
  for (const char* typed : {"abc", "10x", "-5", "1;DROP"}) {
    counter.messages.clear();
    screen->DG.Edit(0, kAmount, typed);
    EXPECT_EQ(LastMessage(), "Title: Invalid Amount") << typed;
    EXPECT_EQ(screen->DG.Cell(0, kAmount), "100.50");
  }
  EXPECT_EQ(screen->TotalLBL.Text(), "4 instalments, 1 payments to save, 100.50");
  for (const char* typed : {"", "0", "0.004"}) {
    screen->DG.Edit(0, kAmount, typed);
    EXPECT_EQ(screen->DG.Cell(0, kAmount), "") << typed;
  }
}

// Row k breaks check k and every later one.
TEST_F(SpecialRptTest, ChecksComeInTheirOrder) {
  auto screen = Open();
  for (const auto& [from, to, company, pay_date, told] :
       TextRows<5>{{"x", "", "", "", "Invalid Date"},
                   {"", "", "", "", "Date To is required"},
                   {"", "30-02-2024", "", "", "Invalid Date"},
                   {"", "29-02-2024", "", "", "Company Code To is required"},
                   {"", "29-02-2024", "HQ", "", "Payment Date is required"},
                   {"", "29-02-2024", "HQ", "31-04-2024", "Invalid Date"},
                   {"", "29-02-2024", "HQ", "31-01-2024", "No Payment, please check"}}) {
    screen->DateFrom.SetText(from);
    screen->DateTo.SetText(to);
    screen->CompCode.SetText(company);
    screen->PayDate.SetText(pay_date);
    screen->SaveCmd.Click();
    EXPECT_EQ(LastMessage(), "Title: " + std::string(told));
  }
  EXPECT_TRUE(counter.questions.empty());
  screen->DG.Edit(0, kAmount, "5");
  counter.refused = "Conform to proceed?";
  screen->SaveCmd.Click();
  EXPECT_EQ(LastQuestion(), counter.refused);
  EXPECT_EQ(Payments(), "");
}

TEST_F(SpecialRptTest, TwoRowsOfOneLoanAreTwoPaymentsOneAfterTheOther) {
  AddCharge("B1", "Batch", "2024-01-31", "2.50");
  auto screen = Open();
  screen->PayDate.SetText("01-02-2024");
  screen->DG.Edit(0, kAmount, "112");
  screen->DG.Edit(1, kAmount, "100");
  screen->SaveCmd.Click();
  EXPECT_EQ(counter.messages, Cells{"Title: Process completed"});
  EXPECT_EQ(Payments(),
            "HQ0001-001-001 1 2024-02-01 112 1232\n"
            "HQ0001-001-002 2 2024-02-01 100 1132\n");
  EXPECT_EQ(Lines("SELECT TOP 3 Payment FROM SchMast WHERE LoanID='HQ0001-001' ORDER BY SchID"),
            "112\n100\n0\n");
  EXPECT_EQ(Lines("SELECT LoanBal,TotPay,TotCollectorAmt FROM LoanMast WHERE LoanID='HQ0001-001'"),
            "1132 212 2.5\n");
  EXPECT_EQ(Column(*screen, kPayID), (Cells{"HQ0001-001-001", "HQ0001-001-002", "", ""}));
  EXPECT_EQ(Column(*screen, kBalance), (Cells{"0.00", "12.00", "106.00", "106.00"}));
  EXPECT_EQ(screen->DG.Cell(1, kLoanBal), "1,132.00");
  EXPECT_EQ(Lines("SELECT "
                  "CollectInfoID,Bank,SalesmanID,PaymentStatus,Settlement,InstalAmt,PayExtra,"
                  "IntAmt,PayableAmt,DragInt,IntChargeAmt,LastDueDate,NextDueDate,CompCode,UserID,"
                  "LampiranStatus,ReceiptNo FROM PaymentMast WHERE PayID='HQ0001-001-002'"),
            "CASH CASH NIL ACTIVE 0 100 0 0 112 100 12 2024-02-29 2024-03-31 HQ AMY PINJAMAN "
            "SEMASA 202402-0002\n");
  // A paid row is not paid again, and takes no other amount.
  screen->DG.Edit(0, kAmount, "999");
  EXPECT_EQ(screen->DG.Cell(0, kAmount), "112.00");
  screen->SaveCmd.Click();
  EXPECT_EQ(LastMessage(), "Title: No Payment, please check");
}

TEST_F(SpecialRptTest, ARowThatFailsKeepsItsAmountAndTheOthersGoOn) {
  MakeLoan("HQ0001-003", LoanScheme::kPersonal, "600", "6");
  MakeLoan("HQ0001-004", LoanScheme::kPersonal, "600", "6");
  MakeLoan("HQ0001-005", LoanScheme::kPersonal, "600", "6");
  MakeLoan("HQ0001-006", LoanScheme::kFlexi, "600", "6");
  office.Run(
      "UPDATE LoanMast SET PayOutAmt=LoanAmt WHERE LoanID<>'HQ0001-004';UPDATE LoanMast SET "
      "TrxDate='2024-02-02' WHERE LoanID='HQ0001-005'");
  auto screen = Open("", "31-01-2024");
  ASSERT_EQ(screen->DG.RowCount(), 6);
  screen->PayDate.SetText("01-02-2024");
  const Cells amounts = {"112.00", "636.01", "106.00", "1.00", "1.00", "90,000.00"};
  for (int row = 0; row < 6; ++row) {
    screen->DG.Edit(row, kAmount, amounts[static_cast<std::size_t>(row)]);
  }
  // The server refuses one in the middle.
  main().SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("Insert into PaymentMast") && sql.find("'HQ0001-003'") != sql.npos) {
      throw SqlError(1105, "the disk is full");
    }
  });
  screen->SaveCmd.Click();
  main().SetFaultHook({});
  ASSERT_EQ(counter.messages.size(), 2u);
  const Money limit = Money::FromText(
      Scalar("SELECT SUM(CapitalAmt+InterestAmt) FROM SchMast WHERE LoanID='HQ0001-006'"));
  EXPECT_EQ(
      counter.messages[0],
      "Title: 5 payments are not saved, please check\n"
      "\nHQ0001-002: Payment amount cannot more than loan balance amount\nHQ0001-003: An error "
      "occurs during saving payment - the disk is full\nNothing of it was kept. Mend the cause and "
      "do it again.\nHQ0001-004: Loan not fully drawdown cannot make payment\nHQ0001-005: Payment "
      "date cannot eariler than loan date\nHQ0001-006: Total payment cannot more than " +
          ShowMoney(limit));
  EXPECT_EQ(counter.messages[1], "Title: Process completed");
  EXPECT_EQ(Payments(), "HQ0001-001-001 1 2024-02-01 112 1232\n");
  EXPECT_EQ(Column(*screen, kAmount), amounts);
  EXPECT_EQ(screen->DG.Cell(3, kRemarks), "Loan not fully drawdown cannot make payment");
  EXPECT_FALSE(main().InTransaction());
  // Mended and saved again: only what was not saved yet. A loan closed meanwhile is refused.
  counter.messages.clear();
  office.Run("UPDATE LoanMast SET LoanStatus='CLOSED' WHERE LoanID='HQ0001-003'");
  screen->DG.Edit(1, kAmount, "636");
  for (const int row : {3, 4, 5}) screen->DG.Edit(row, kAmount, "");
  screen->SaveCmd.Click();
  EXPECT_EQ(
      counter.messages[0],
      "Title: 1 payments are not saved, please check\n\nHQ0001-003: No payment for CLOSED loan");
  EXPECT_EQ(Payments(),
            "HQ0001-001-001 1 2024-02-01 112 1232\nHQ0001-002-001 1 2024-02-01 636 0\n");
  EXPECT_EQ(Scalar("SELECT LampiranStatus FROM PaymentMast WHERE PayAmt=636"), "PINJAMAN SELESAI");
  counter.messages.clear();
  office.Run(
      "UPDATE LoanMast SET LoanStatus='ACTIVE' WHERE LoanID='HQ0001-003';DELETE FROM SchMast WHERE "
      "LoanID='HQ0001-003'");
  screen->SaveCmd.Click();
  EXPECT_EQ(counter.messages[0],
            "Title: 1 payments are not saved, please check\n\nHQ0001-003: An error occurs during "
            "saving payment - Loan HQ0001-003 has no schedule: delete its drawdown and save the "
            "loan again first");
}

TEST_F(SpecialRptTest, EachStatementThatFailsLeavesNoTrace) {
  auto screen = Open();
  screen->DG.Edit(0, kAmount, "112");
  EXPECT_GE(FailEverywhere(Click(*screen, screen->SaveCmd)), 12);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "1");
  EXPECT_EQ(screen->DG.Cell(0, kPayID), "HQ0001-001-001");
  EXPECT_EQ(Lines("SELECT LoanNo FROM NumberMast WHERE CustID='HQ0001-001'"), "002\n");
}

TEST_F(SpecialRptTest, ASundayIsAskedAboutOnce) {
  office.session.settings.CheckHoliday = true;
  auto screen = Open();
  screen->DG.Edit(0, kAmount, "1");
  counter.refused = "04-02-2024 is Sunday\nContinue make payment ?";
  Put(screen->PayDate, "04-02-2024");
  screen->SaveCmd.Click();
  EXPECT_EQ(counter.questions, (Cells{counter.refused, counter.refused}));
  counter.refused.clear();
  screen->SaveCmd.Click();
  EXPECT_EQ(LastQuestion(), "Conform to proceed?");
  EXPECT_EQ(counter.questions.size(), 4u);
  screen->DG.Edit(1, kAmount, "1");
  screen->SaveCmd.Click();
  EXPECT_EQ(counter.questions.size(), 5u);
}

TEST_F(SpecialRptTest, ARowOpensItsPaymentByItself) {
  auto screen = Open();
  screen->DG.Open(0, kLoanCell);
  EXPECT_EQ(LastMessage(), "Title: No Payment, please check");
  EXPECT_TRUE(counter.shown.empty());
  screen->DG.Edit(0, kAmount, "112");
  Session& session = office.session;
  std::string handed;
  counter.on_show = [&] {
    handed = session.CallerTag + "|" + session.HandOverLoanID + "|" + session.PickerExtra;
    session.MsgTitle = session.CallerTag;
  };
  // Nothing was saved there: the amount waits on.
  screen->DG.Open(0, kLoanCell);
  EXPECT_EQ(handed, "New Payment|HQ0001-001|");
  EXPECT_EQ(session.MsgTitle + session.CallerTag + session.HandOverLoanID, "Title");
  EXPECT_EQ(screen->DG.Cell(0, kAmount), "112.00");
  // Saved there: saving the row too would take the money twice.
  counter.on_show = [&] {
    office.Run("UPDATE SchMast SET Payment=112 WHERE LoanID='HQ0001-001' AND SchID=1");
    session.PaymentsChanged = true;
  };
  screen->DG.Open(0, kLoanCell);
  EXPECT_EQ(screen->DG.Cell(0, kAmount) + screen->DG.Cell(0, kBalance), "0.00");
  // A saved row opens its own payment, and shows what became of it.
  screen->DG.Edit(2, kAmount, "106");
  screen->SaveCmd.Click();
  counter.on_show = [&] {
    handed = session.CallerTag + "|" + session.HandOverLoanID + "|" + session.PickerExtra;
    office.Run("UPDATE PaymentMast SET PayAmt=50");
    session.PaymentsChanged = true;
  };
  screen->DG.Open(2, kLoanCell);
  EXPECT_EQ(handed, "Edit Payment|HQ0001-002|HQ0001-002-001");
  EXPECT_EQ(screen->DG.Cell(2, kAmount), "50.00");
  counter.on_show = [&] {
    office.Run("DELETE FROM PaymentMast");
    session.PaymentsChanged = true;
  };
  screen->DG.Open(2, kLoanCell);
  EXPECT_EQ(screen->DG.Cell(2, kAmount) + screen->DG.Cell(2, kPayID), "");
}

}  // namespace
}  // namespace kaunter
