// Daily collection, summaries, Rekod Transaksi and the account report, by figures worked out by
// hand.
#include <gmock/gmock.h>

#include "core/values.h"
#include "tests/reporting/staged_office.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(DailyCollectionTest, RowsNameTheirLoanAndADateThatIsNotGivenDoesNotLimit) {
  StagedOffice o;
  o.AddLoan("L1", "2023-12-31", "100");
  o.AddLoan("L2", "2024-02-01", "100", "0", "KL");
  o.AddPayment("P1", "L1", "2024-01-15", "PayAmt=1");
  const auto rows = [&](const char* from, const char* to) {
    const StagedRun run = RunOf("DailyCollection.rpt", from, to);
    EXPECT_TRUE(StageDailyCollection(o.session(), o.desk, run));
    return o.Rows(run, "recordid,s1,s10,d1");
  };
  EXPECT_THAT(rows("01-01-2024", ""),
              ElementsAre("L2 | L2 | KL | 2024-02-01", "P1 | L1 | HQ | 2024-01-15"));
  EXPECT_THAT(rows("", "14-01-2024"), ElementsAre("L1 | L1 | HQ | 2023-12-31"));
}

TEST(StagedSummaryTest, LoansStandUnderTheKindOfTheirCustomer) {
  StagedOffice o;
  o.AddLoan("L1", "2023-06-01", "1200");
  o.AddLoan("L2", "2024-03-31", "600", "0", "KL");
  o.AddLoan("L3", "2024-01-01", "50", "0", "HQ", "gone");  // its customer is gone
  StagedRun run = RunOf("SummaryPnL.rpt", "01-03-2024", "31-03-2024");
  run.filters = {Companies({"HQ", "KL"})};
  SummaryHead head;
  ASSERT_TRUE(StageSummary(o.session(), o.desk, run, head));
  EXPECT_THAT(o.Rows(run, "recordid,s2"), ElementsAre("L1 | PERSONAL", "L2 | PERSONAL"));
  EXPECT_EQ(head.title, " (Company Code - HQ or KL) ");
}

TEST(RekodTransTest, FiltersOfTheCustomer) {
  StagedOffice o;
  o.AddCustomer("C2", "HQ", "Siti");
  o.Run("UPDATE CustMast SET CompCatCode='SDN''BHD' WHERE CustID='C2'");
  o.AddLoan("L1", "2024-01-01", "100");
  o.AddLoan("L2", "2024-01-01", "100", "0", "HQ", "C2");
  StagedRun run = RunOf("RekodTrans.rpt", "01-01-2024", "31-01-2024");
  run.filters = {Companies({"HQ", "KL"}),
                 {"Company Category", "{CustMast.CompCatCode}", {"SDN'BHD", "OTHER"}}};
  ASSERT_TRUE(StageRekodTrans(o.session(), o.desk, run));
  EXPECT_THAT(o.Rows(run, "recordid"), ElementsAre("L2"));
  EXPECT_THAT(o.desk.messages, ElementsAre("Cash Book Report: Process Complete"));
}

// Without a company nothing runs, whatever else is picked; the rows of an earlier run stay.
TEST(RekodTransTest, DemandsACompany) {
  StagedOffice o;
  o.AddLoan("L1", "2024-01-01", "100");
  StagedRun run = RunOf("RekodTrans.rpt", "01-01-2024", "31-01-2024");
  run.filters = {Companies({"HQ"})};
  ASSERT_TRUE(StageRekodTrans(o.session(), o.desk, run));
  o.desk.messages.clear();
  run.filters = {Companies({}), {"Loan Type", "{LoanMast.LoanTypeID}", {"MONTH"}}};
  EXPECT_FALSE(StageRekodTrans(o.session(), o.desk, run));
  EXPECT_THAT(o.desk.messages,
              ElementsAre("Cash Book Report: Company Code is require, please check"));
  EXPECT_THAT(o.Rows(run, "recordid"), ElementsAre("L1"));
}

struct AccountOffice : StagedOffice {
  AccountOffice() {
    AddLoan("L1", "2023-12-01", "1000");
    AddLoan("L2", "2024-01-10", "2000", "0", "KL");
    Run("UPDATE LoanMast SET Memo1='new customer' WHERE LoanID='L2'");
    AddDrawdown("D1", "L1", "2023-12-01", "1000", "HQ", "PBB");
    AddDrawdown("D2", "L1", "2024-01-02", "300", "HQ", "MBB", "000123");
    AddDrawdown("D3", "L2", "2024-01-10", "2000", "KL", "PBB", "77");
    AddPayment(
        "P1", "L1", "2023-12-31",
        "PayAmt=100,IntAmt=5,ChargeAmt=2,CollectorAmt=1,DiscAmt=0.50,TopUpAmt=40,Bank='PBB'");
    AddPayment("P2", "L1", "2024-01-01",
               "PayAmt=200,IntAmt=6,ChargeAmt=3,CollectorAmt=2,DiscAmt=1.25,TopUpAmt=30,Bank='MBB',"
               "Memo1='brought by his son'");
    AddExpense("2023-11-30", "0", "60", "Rental");
    AddExpense("2023-12-30", "5", "0", "Refund");
    AddExpense("2024-01-31", "0", "12.30", "Stamps", "HQ", "PBB", "9");
    AddExpense("2024-02-01", "0", "1", "later");
  }
};

constexpr const char* kAccountColumns = "recordid,s2,s3,s4,c1,c2,c3,c4,c5,c6,c7,c8,d1,s5,s6";

TEST(AccountReportTest, MovementsAndOpeningLines) {
  AccountOffice o;
  const StagedRun run = RunOf("AccountReport.rpt", "01-01-2024", "31-01-2024");
  ASSERT_TRUE(StageAccountReport(o.session(), o.desk, run));
  EXPECT_THAT(
      o.Rows(run, kAccountColumns),
      ElementsAre(
          // taken in 100 + 5 + 1 + 2 - 0.50; rent 60 less a refund of 5
          "#-HQ |  | HQ | OPEN BALANCE | 0 | 1000 | 107.5 | -55 | -40 | 0 | 0 | 0 | 2023-12-31 |  "
          "| ",
          "#-KL |  | KL | OPEN BALANCE | 0 | 0 | 0 | 0 | 0 | 0 | 0 | 0 | 2023-12-31 |  | ",
          "3 | EVE | HQ | Stamps (PBB 9) | 0 | 0 | 0 | -12.3 | 0 | 0 | 0 | 0 | 2024-01-31 |  | ",
          "L1 | AMY | HQ | Tan Ah Kow (MBB 000123) | 0 | 300 | 0 | 0 | 0 | 0 | 300 | 0 | "
          "2024-01-02 "
          "| Unsecured | oldL1",
          "L2 | AMY | KL | Tan Ah Kow (PBB 77) - new customer | 0 | 2000 | 0 | 0 | 0 | 0 | 2000 | "
          "0 "
          "| 2024-01-10 | Unsecured | oldL2",
          "P2 | BOB | HQ | Tan Ah Kow - brought by his son | 0 | 0 | 209.75 | 0 | -30 | 0 | 0 | 0 "
          "| "
          "2024-01-01 |  | oldL1"));
  EXPECT_THAT(o.desk.messages, IsEmpty());
}

// A name, a cheque and a memo of full length: more than any other text of these reports.
TEST(AccountReportTest, TheLongestDescription) {
  StagedOffice o;
  const auto repeated = [](const char* text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
  };
  const std::string name = repeated("陈", 299) + "'";
  const std::string memo = repeated("息", 1000);
  const std::string bank = repeated("B", 50);
  const std::string cheque = repeated("7", 50);
  o.AddCustomer("C2", "HQ", name);
  o.AddLoan("L1", "2023-01-01", "1", "0", "HQ", "C2");
  o.AddPayment("P1", "L1", "2024-01-01",
               fmt::format("CustID='C2',Bank={},ChqNo={},Memo1={}", QuoteStr(bank),
                           QuoteStr(cheque), QuoteStr(memo)));
  const StagedRun run = RunOf("AccountReport.rpt", "01-01-2024", "31-01-2024");
  ASSERT_TRUE(StageAccountReport(o.session(), o.desk, run));
  EXPECT_EQ(o.Rows(run, "recordid,s4").back(),
            "P1 | " + name + " (" + bank + " " + cheque + ") - " + memo);
}

}  // namespace
}  // namespace kaunter
