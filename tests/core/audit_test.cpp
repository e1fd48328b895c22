#include "core/audit.h"

#include "gtest/gtest.h"
#include "platform/host.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

class AuditTest : public ::testing::Test {
 protected:
  void SetUp() override {
    office.Run("INSERT INTO Systemast (Param,Value) VALUES ('TransLogs','1')");
    office.Connect();
  }
  // The remarks of the newest row; the row is taken away.
  std::string Remarks() {
    Connection& logs = *office.session.LogsConn;
    const std::string remarks = ScalarQuery(logs, "SELECT Remarks FROM TransLogs");
    EXPECT_EQ(ScalarQuery(logs, "SELECT COUNT(*) FROM TransLogs"), "1");
    logs.Execute("DELETE FROM TransLogs");
    return remarks;
  }

  Office office{Office::State::patched};
};

const DateTime kDay{2024, 1, 31};
const DateTime kDayAfter{2024, 2, 1};

TEST_F(AuditTest, RowSaysWhoDidWhatToWhichRecord) {
  WriteAudit(office.session, "Modify", "Something Else", "O'B", "K-1", {});
  Recordset row = office.session.LogsConn->Query("SELECT * FROM TransLogs");
  EXPECT_EQ(ShowDateTime(row.Field("TrxDate")), "31-01-2024 14:05:09");
  EXPECT_EQ(row.Field("UserID").ToText(), "AMY");
  EXPECT_EQ(row.Field("UserName").ToText(), "");
  EXPECT_EQ(row.Field("ConmpCode").ToText(), "O'B");
  EXPECT_EQ(row.Field("Type").ToText(), "Modify");
  EXPECT_EQ(row.Field("Module").ToText(), "Something Else");
  EXPECT_EQ(row.Field("TrxID").ToText(), "K-1");
  EXPECT_EQ(row.Field("Remarks").ToText(), "");
}

TEST_F(AuditTest, EveryModulePairsOldWithNew) {
  office.Run(
      "INSERT INTO LoanMast (LoanID,LoanAmt,PayOutAmt,TrxDate) VALUES "
      "('L1',1500,1400.5,'2024-02-01')");
  office.Run(
      "INSERT INTO PaymentMast (PayID,PayAmt,CollectorAmt,IntAmt,DiscAmt,PayDate) VALUES "
      "('P1',10,20,30,40,'2024-02-01')");
  office.Run(
      "INSERT INTO CustMast (CustID,CustName,CustNIC,CustOIC,CustOthIC,TrxDate) VALUES "
      "('C1','O''Brien','900101-01-0001','A1','X1','2024-02-01')");
  office.Run(
      "INSERT INTO PersonalExp (TrxDesc,DebitAmt,CreditAmt,TrxDate) VALUES "
      "('Rent',1,2,'2024-02-01')");
  office.Run(
      "INSERT INTO GoldTransMast (LoanID,TotEstAmt,TotAmt,OtherAmt,PayAmt,TrxDate) VALUES "
      "('B1',1,2,3,4,'2024-02-01')");
  office.Run(
      "INSERT INTO DrawDownMast (SID,TrxDate,DrawDownAmt,Payee) VALUES "
      "('D1','2024-02-01',100,'Ali')");
  office.Run("INSERT INTO ChargeMast (ChargeID,TrxDate,ChargeAmt) VALUES ('I1','2024-02-01',5)");
  const Money one = Money::FromInteger(1);
  const struct {
    const char* module;
    std::string trx_id;
    std::vector<Value> before;
    const char* remarks;
  } kCases[] = {
      {"Loan",
       "L1",
       {"1,000.00", "900.00", "31-01-2024"},  // from the boxes of a screen
       "Date 31-01-2024/01-02-2024, Loan Amount 1,000.00/1,500.00, Capital 900.00/1,400.50"},
      {"Payment",
       "P1",
       {one, one, Value(), one, kDay},
       "Date 31-01-2024/01-02-2024, Payment Amount 1.00/10.00, Flexi Interest 1.00/20.00, Late "
       "Charge 0.00/30.00, Discount 1.00/40.00"},
      {"Customer",
       "C1",
       {"Brien", "900101-01-0001", "", "", kDayAfter},
       "Date 01-02-2024/01-02-2024, Customer Name Brien/O'Brien, New IC "
       "900101-01-0001/900101-01-0001, Old IC /A1, Other IC /X1"},
      {"Expenses",
       office.Scalar("SELECT TrxID FROM PersonalExp"),
       {"Rent", one, one, kDayAfter},
       "Date 01-02-2024/01-02-2024, Desc Rent/Rent, Debit 1.00/1.00, Credit 1.00/2.00"},
      {"Buy Gold",
       "B1",
       {},  // a new record has no old values
       "Date /01-02-2024, Estimate 0.00/1.00, Tot Amt 0.00/2.00, Other 0.00/3.00, Pay Amt "
       "0.00/4.00"},
      {"Drawdown",
       "D1",
       {kDay, one, "Abu"},
       "Date 31-01-2024/01-02-2024, Amt 1.00/100.00, Payee Abu/Ali"},
      {"Invoice", "I1", {kDay, one}, "Date 31-01-2024/01-02-2024, Amt 1.00/5.00"},
      {"Credit Note", "I1", {kDay, one}, "Date 31-01-2024/01-02-2024, Amt 1.00/5.00"},
      {"Batch", "gone", {kDay, one}, "Date 31-01-2024/31-01-2024, Amt 1.00/1.00"},
      {"Customer",
       "gone",
       {"O'Brien", "N", "O", "X", kDay},
       "Date 31-01-2024/31-01-2024, Customer Name O'Brien/O'Brien, New IC N/N, Old IC O/O, Other "
       "IC X/X"},
  };
  for (const auto& c : kCases) {
    WriteAudit(office.session, "Modify", c.module, "HQ", c.trx_id, c.before);
    EXPECT_EQ(Remarks(), c.remarks) << c.module << " " << c.trx_id;
  }
}

TEST_F(AuditTest, SignInNamesThePC) {
  WriteAudit(office.session, "Log In", "User", "HQ", "AMY", {});
  EXPECT_EQ(Remarks(), ThisHost().name + " - " + ThisHost().address + " / 31-01-2024 14:05:09");
}

TEST_F(AuditTest, FailuresAreSilentAndOffIsOff) {
  office.session.LogsConn->SetFaultHook(
      [](std::string_view) { throw SqlError(3906, "read-only"); });
  EXPECT_NO_THROW(WriteAudit(office.session, "Create", "User", "HQ", "AMY", {}));
  office.session.LogsConn->SetFaultHook(nullptr);
  office.session.settings.TransLogs = false;
  WriteAudit(office.session, "Create", "User", "HQ", "AMY", {});
  EXPECT_EQ(ScalarQuery(*office.session.LogsConn, "SELECT COUNT(*) FROM TransLogs"), "0");
}

}  // namespace
}  // namespace kaunter
