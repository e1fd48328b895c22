// Close, open back, delete: whole or not at all, and what they leave in the totals.
#include "loans/loan_lifecycle.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

const LoanKey kKey{"HQ0001-001", "HQ0001"};
const std::string kId = kKey.LoanID;

class LoanLifecycleTest : public ::testing::Test, protected LoanOffice {
 protected:
  LoanLifecycleTest() {
    MakeLoan(kId, LoanScheme::kPersonal, "1000", "10");
    AddLoanTotals(main(), kKey.CustID, Figures(kId));
  }
  std::string Totals() {
    return Lines("SELECT TotLoan,TotLoanBal,TotTopUpAmt,TotLoanAmt2 FROM CustMast") +
           Lines("SELECT TotAccComm FROM SalesmanMast WHERE SalesmanID='SAM'");
  }
  std::string Standing() { return Lines("SELECT LoanStatus,LoanBal,CloseBal FROM LoanMast"); }
};

// What a delete takes with it, beside a loan of the same customer that must lose nothing.
void FillAround(LoanOffice& office, const std::string& id) {
  for (const char* sql :
       {"INSERT INTO ChargeMast (ChargeID,LoanID,PType,ChargeAmt) VALUES ({0}+'-C',{0},'Batch',3)",
        "INSERT INTO DrawDownMast (SID,LoanID,DrawDownAmt) VALUES ({0}+'-D',{0},100)",
        "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo) VALUES ({0},1,'123')",
        "INSERT INTO FollowUpMast (LoanID,HisRemarks) VALUES ({0},'called')",
        "INSERT INTO AppMast (AppID,LoanID) VALUES ({0}+'-A',{0})"}) {
    office.main().Execute(fmt::format(fmt::runtime(sql), QuoteStr(id)));
  }
}

std::string CountRows(LoanOffice& office, const std::string& id) {
  std::string counts;
  for (const char* table : {"LoanMast", "SchMast", "PaymentMast", "ChargeMast", "PaymentList",
                            "DrawDownMast", "ChqMast", "FollowUpMast", "AppMast"}) {
    counts +=
        office.Scalar(fmt::format("SELECT COUNT(*) FROM {} WHERE LoanID={}", table, QuoteStr(id))) +
        " ";
  }
  return counts + office.Scalar("SELECT COUNT(*) FROM NumberMast WHERE CustID=" + QuoteStr(id));
}

TEST_F(LoanLifecycleTest, DeleteTakesAllThatBelongsToTheLoanAndNothingElse) {
  const std::string other = "HQ0001-002";
  MakeLoan(other, LoanScheme::kFlexi, "500", "10");
  AddLoanTotals(main(), kKey.CustID, Figures(other));
  for (const std::string& id : {kId, other}) {
    FillAround(*this, id);
    Pay(id + "-001", id, "2024-02-01", "110");
  }
  const int payments = CountPayments(main(), kId);
  ASSERT_EQ(payments, 1);
  DeleteLoan(office.session, kKey, Figures(kId), payments, "HQ", "05-01-2024");
  EXPECT_EQ(CountRows(*this, kId), "0 0 0 0 0 0 0 0 0 0");
  EXPECT_EQ(CountRows(*this, other), "1 10 1 1 10 1 1 1 1 1");
  // The application is free again, not gone.
  EXPECT_EQ(Lines("SELECT LoanID FROM AppMast WHERE AppID='HQ0001-001-A'"), "\n");
  EXPECT_EQ(Totals(), "500 500 5 -1000\n7.5\n");
}

TEST_F(LoanLifecycleTest, EachStatementThatFailsLeavesNoTrace) {
  FillAround(*this, kId);
  Pay(kId + "-001", kId, "2024-02-01", "110");
  const auto attempt = [](const std::function<void()>& act) {
    return [act] {
      try {
        act();
      } catch (const SqlError&) {
      }
    };
  };
  // The figures, begin, whether they still hold, the row, two statements each for customer and
  // salesman of both steps, commit.
  EXPECT_EQ(FailEverywhere(attempt([this] { CloseLoan(office.session, kKey, Figures(kId)); })), 13);
  EXPECT_EQ(Standing(), "CLOSED 0 1100\n");
  EXPECT_GE(FailEverywhere(attempt([this] { OpenLoan(office.session, kKey, Figures(kId)); })), 12);
  EXPECT_EQ(Standing(), "ACTIVE 1100 0\n");
  EXPECT_GE(FailEverywhere(attempt(
                [this] { DeleteLoan(office.session, kKey, Figures(kId), 1, "HQ", "05-01-2024"); })),
            15);
  EXPECT_EQ(CountRows(*this, kId), "0 0 0 0 0 0 0 0 0 0");
}

TEST_F(LoanLifecycleTest, ALoanChangedByAnotherDesktopIsRefused) {
  const LoanFigures old = Figures(kId);
  const std::string before = Stored();
  EXPECT_THROW(CloseLoan(office.session, {"HQ0001-009", "HQ0001"}, old), SqlError);
  EXPECT_THROW(OpenLoan(office.session, {"HQ0001-009", "HQ0001"}, old), SqlError);
  EXPECT_THROW(DeleteLoan(office.session, {"HQ0001-009", "HQ0001"}, old, 0, "HQ", ""), SqlError);
  EXPECT_EQ(Stored(), before);
  // A payment taken since the person was asked.
  Pay(kId + "-001", kId, "2024-02-01", "110");
  EXPECT_THROW(DeleteLoan(office.session, kKey, old, 0, "HQ", ""), std::runtime_error);
  EXPECT_EQ(CountRows(*this, kId), "1 10 1 0 10 0 0 0 0 1");
  EXPECT_FALSE(main().InTransaction());
  // Closed, and opened back, a second time: the balance would be gone.
  CloseLoan(office.session, kKey, old);
  EXPECT_THROW(CloseLoan(office.session, kKey, old), std::runtime_error);
  const LoanFigures closed = Figures(kId);
  OpenLoan(office.session, kKey, closed);
  EXPECT_THROW(OpenLoan(office.session, kKey, closed), std::runtime_error);
  EXPECT_EQ(Standing(), "ACTIVE 1100 0\n");
}

TEST_F(LoanLifecycleTest, TheDeleteIsAuditedWithTheValuesItHad) {
  office.OpenAudit();
  DeleteLoan(office.session, kKey, Figures(kId), 0, "HQ", "05-01-2024");
  EXPECT_EQ(
      ScalarQuery(*office.session.LogsConn,
                  "SELECT Type+' '+Module+' '+TrxID+' '+ConmpCode+' '+Remarks FROM TransLogs"),
      "Delete Loan HQ0001-001 HQ Date 05-01-2024/05-01-2024, Loan Amount 1,000.00/1,000.00, "
      "Capital 0.00/0.00");
}

TEST_F(LoanLifecycleTest, CustomersAndSalesmenWhoAreGoneArePassedOver) {
  office.Run("DELETE FROM CustMast;DELETE FROM SalesmanMast");
  LoanFigures figures = Figures(kId);
  ReverseLoanTotals(main(), kKey.CustID, figures);
  AddLoanTotals(main(), kKey.CustID, figures);
  CloseLoan(office.session, kKey, figures);
  EXPECT_EQ(Standing(), "CLOSED 0 1100\n");
  // Totals that were never set count as nothing.
  office.Run("INSERT INTO CustMast (CustID,TotLoan,TotLoanBal) VALUES ('HQ0001',null,null)");
  AddLoanTotals(main(), kKey.CustID, figures);
  EXPECT_EQ(Lines("SELECT TotLoan,TotLoanBal FROM CustMast"), "1000 1100\n");
}

}  // namespace
}  // namespace kaunter
