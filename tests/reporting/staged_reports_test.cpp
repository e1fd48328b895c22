// Daily collection, Rekod Transaksi, summaries and the account report, by figures worked out by
// hand.
#include <gmock/gmock.h>

#include "core/values.h"
#include "tests/reporting/staged_office.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(DailyCollectionTest, LoansAndPaymentsOfTheDays) {
  StagedOffice o;
  o.AddLoan("L0", "2023-12-31", "100");
  o.AddLoan("L1", "2024-01-01", "100.50");
  o.AddLoan("L2", "2024-01-31", "200", "0", "KL");
  o.AddLoan("L3", "2024-01-31 09:00:00", "300");  // the last day counts up to its first moment
  o.AddPayment(
      "P1", "L0", "2024-01-15",
      "PayAmt=50,IntAmt=4,ChargeAmt=3,CollectorAmt=2,DiscAmt=0.50,TopUpAmt=10,NewLoanBal=88");
  o.AddPayment("P2", "L0", "2024-02-01", "PayAmt=1");
  StagedRun run = RunOf("DailyCollection.rpt", "01-01-2024", "31-01-2024");
  const char* columns = "recordid,s1,c1,c2,c3,c4,c5,d1,s10";
  ASSERT_TRUE(StageDailyCollection(o.session(), o.desk, run));
  EXPECT_THAT(o.Rows(run, columns),
              ElementsAre("L1 | L1 | 100.5 | 98.5 | 0 | 0 | 0 | 2024-01-01 | HQ",
                          "L2 | L2 | 200 | 198 | 0 | 0 | 0 | 2024-01-31 | KL",
                          // 50 + 4 + 3 + 2 - (10 + 0.50)
                          "P1 | L0 | 0 | 0 | 48.5 | 88 | 50 | 2024-01-15 | HQ"));
  EXPECT_THAT(o.desk.messages, IsEmpty());

  o.session().Special = true;
  run.date_to = "";  // a date that is not given does not limit
  ASSERT_TRUE(StageDailyCollection(o.session(), o.desk, run));
  EXPECT_THAT(o.Rows(run, "recordid,c1,c2"),
              ElementsAre("L1 | 101.5 | 101.5", "L2 | 201 | 201", "L3 | 301 | 301", "P1 | 0 | 0",
                          "P2 | 0 | 0"));
}

TEST(RekodTransTest, LoansOfThePeriodWithWhatWasPaidOnThem) {
  StagedOffice o;
  o.AddLoan("L1", "2024-01-01", "100");
  o.AddLoan("L2", "2024-01-20", "100");  // nothing paid
  o.AddLoan("L3", "2024-01-20", "100", "0", "KL");
  o.AddLoan("L4", "2023-12-31", "100");
  o.AddPayment("P1", "L1", "2023-12-01", "PayAmt=5,IntAmt=9");
  o.AddPayment("P2", "L1", "2024-01-31", "PayAmt=10,DiscAmt=0.25");
  o.AddPayment("P3", "L1", "2024-02-01", "PayAmt=100");
  StagedRun run = RunOf("RekodTrans.rpt", "01-01-2024", "31-01-2024");
  run.filters = {Companies({"HQ"}), {"Loan Type", "{LoanMast.LoanTypeID}", {"MONTH", "WEEK"}}};
  ASSERT_TRUE(StageRekodTrans(o.session(), o.desk, run));
  EXPECT_THAT(o.Rows(run, "recordid,s20,c1"), ElementsAre("L1 | L1 | 14.75", "L2 | L2 | 0"));
  EXPECT_THAT(o.desk.messages, ElementsAre("Cash Book Report: Process Complete"));
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

TEST(StagedSummaryTest, PeriodAndYear) {
  StagedOffice o;
  o.AddLoan("L1", "2023-06-01", "1200");
  o.AddLoan("L2", "2024-03-31", "600", "0", "KL");
  o.AddLoan("L3", "2024-04-01", "600");                    // made after DateTo
  o.AddLoan("L4", "2024-01-01", "50", "0", "HQ", "gone");  // its customer is gone
  o.AddScheduleRow("L1", 1, "2023-12-31", "100", "11");
  o.AddScheduleRow("L1", 2, "2024-01-01", "100", "12");
  o.AddScheduleRow("L1", 3, "2024-03-01", "100", "13.10");
  o.AddScheduleRow("L1", 4, "2024-03-31", "100", "14.20");
  o.AddScheduleRow("L1", 5, "2024-04-01", "100", "15");
  o.AddScheduleRow("L3", 1, "2024-03-15", "600", "99");
  o.AddScheduleRow("L4", 1, "2024-03-15", "50", "99");
  o.AddCharge("B1", "L1", "2024-01-01", "Batch", "1.10");
  o.AddCharge("B2", "L1", "2024-03-01", "Batch", "2.20");
  o.AddCharge("B3", "L1", "2023-12-31", "Batch", "4");
  o.AddCharge("V1", "L1", "2024-03-01", "Invoice", "8");
  o.AddPayment("P1", "L1", "2022-01-01", "CapPay=70");
  o.AddPayment("P2", "L1", "2024-03-31", "CapPay=0.70");
  o.AddPayment("P3", "L1", "2024-04-01", "CapPay=7");
  StagedRun run = RunOf("SummaryPnL.rpt", "01-03-2024", "31-03-2024");
  SummaryHead head;
  ASSERT_TRUE(StageSummary(o.session(), o.desk, run, head));
  const char* columns = "recordid,s2,c1,c2,c3,c4,c5,c6,c7";
  EXPECT_THAT(o.Rows(run, columns),
              // interest 13.10 + 14.20, of the year 12 more; all capital of the schedule is due
              ElementsAre("L1 | PERSONAL | 1200 | 27.3 | 39.3 | 2.2 | 3.3 | 500 | 70.7",
                          "L2 | PERSONAL | 600 | 0 | 0 | 0 | 0 | 0 | 0"));
  EXPECT_EQ(head.to_date, "Todate;31-03-2024;True");
  EXPECT_EQ(head.year_end, "YearEnd;31-12-2024;True");
  EXPECT_EQ(head.title, "");

  run.filters = {Companies({"KL", "JB"})};
  ASSERT_TRUE(StageSummary(o.session(), o.desk, run, head));
  EXPECT_THAT(o.Rows(run, "recordid"), ElementsAre("L2"));
  EXPECT_EQ(head.title, " (Company Code - KL or JB) ");
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

// The bank narrows movements and opening sums; the opening lines of the companies are all there.
TEST(AccountReportTest, CompaniesAndBanks) {
  AccountOffice o;
  StagedRun run = RunOf("AccountReportC.rpt", "01-01-2024", "31-01-2024");
  run.filters = {Companies({"HQ"}), {"Bank", "{LoanMast.Bank}", {"PBB"}}};
  ASSERT_TRUE(StageAccountReport(o.session(), o.desk, run));
  EXPECT_THAT(o.Rows(run, "recordid,c2,c3,c4,c5"),
              ElementsAre("#-HQ | 1000 | 107.5 | 0 | -40", "3 | 0 | 0 | -12.3 | 0"));
  run.filters = {Companies({}), {"Bank", "{LoanMast.Bank}", {"MBB", "CIMB"}}};
  ASSERT_TRUE(StageAccountReport(o.session(), o.desk, run));
  EXPECT_THAT(o.Rows(run, "recordid,c2,c3,c4,c5"),
              ElementsAre("#-HQ | 0 | 0 | 0 | 0", "#-KL | 0 | 0 | 0 | 0", "L1 | 300 | 0 | 0 | 0",
                          "P2 | 0 | 209.75 | 0 | -30"));
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
