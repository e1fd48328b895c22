// The statement of account, by figures worked out by hand.
#include <gmock/gmock.h>

#include "tests/reporting/staged_office.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kAll = "recordid,s1,s2,c1,c2,d1,c7,c8,c9,c10,c11,c12,c13,c14";

StagedRun January() { return RunOf("StatementList.rpt", "01-01-2024", "31-01-2024"); }

TEST(StagedStatementTest, EachItemStandsInTheOpeningRowOrInARowOfItsOwn) {
  StagedOffice o;
  o.AddLoan("L1", "2023-12-10", "5000", "600");
  o.AddLoan("L2", "2024-01-05", "3000", "300");
  o.AddLoan("L3", "2023-11-01", "1000", "100", "KL");  // nothing moves on it in January
  o.AddLoan("L4", "2024-02-01", "1000", "100");        // made later
  o.AddDrawdown("D1", "L1", "2023-12-10", "5000");
  o.AddDrawdown("D2", "L1", "2024-01-01", "700.50");
  o.AddDrawdown("D3", "L2", "2024-01-05", "3000");
  o.AddDrawdown("D4", "L1", "2024-02-01", "999");
  o.AddPayment("P1", "L1", "2023-12-31",
               "PayAmt=500,IntPay=50,CapPay=450,IntAmt=10,ChargeAmt=5,CollectorAmt=77,DiscAmt=20,"
               "PayExtra=7");
  o.AddPayment("P2", "L1", "2024-01-01",
               "PayAmt=400,IntPay=40,CapPay=360,IntAmt=2,ChargeAmt=1.25,DiscAmt=3,PayExtra=6,"
               "CollectInfoID='CHEQUE',Bank='PBB',ChqNo='000123'");
  o.AddPayment("P3", "L2", "2024-01-31", "PayAmt=60,CollectInfoID='BANK'");
  o.AddPayment("P4", "L1", "2024-01-31 10:00:00", "PayAmt=999");
  o.AddCharge("INV1", "L1", "2023-12-20", "Invoice", "30", "search");
  o.AddCharge("CN1", "L1", "2023-12-21", "Credit Note", "-8", "mistake");
  o.AddCharge("INV2", "L1", "2024-01-10", "Invoice", "12", "stamp");
  o.AddCharge("CN2", "L1", "2024-01-11", "Credit Note", "-5", "goodwill");
  o.AddCharge("LI1", "L1", "2024-01-12", "Batch Loan Interest", "9", "not shown", "2024-02-29");
  o.AddCharge("TE1", "L1", "2024-01-13", "Batch Term End Interest", "11", "end of term");
  o.AddCharge("P2", "L1", "2024-01-01", "Payment", "-10", "Payment Received");
  o.AddCharge("B1", "L1", "2023-12-30", "Batch", "4");
  o.AddCharge("B2", "L1", "2024-01-02", "Batch", "1.10");
  o.AddCharge("B3", "L1", "2024-01-03", "Batch", "1.20");
  o.AddCharge("B4", "L1", "2024-01-04", "Batch", "0");  // waived
  o.AddCharge("B5", "L2", "2024-01-20", "Batch", "0.75");
  o.AddCharge("B6", "L3", "2024-01-20", "Batch", "0");

  ASSERT_TRUE(StageStatement(o.session(), o.desk, January()));
  EXPECT_THAT(o.desk.messages, IsEmpty());
  EXPECT_THAT(
      o.Rows(January(), kAll),
      ElementsAre(
          // 5000 + 600 + 30 - 8 + 4 owed; 500 + 10 + 5 paid, without the discount
          "#-L1 | Balance BF |  | 5626 | 515 | 2023-12-31 | 600 | 5000 | 50 | 450 | 26 | 10 | 7 | "
          "20",
          "#-L2 | Balance BF |  | 0 | 0 | 2023-12-31 | 0 | 0 | 0 | 0 | 0 | 0 | 0 | 0",
          "#-L3 | Balance BF |  | 100 | 0 | 2023-12-31 | 100 | 0 | 0 | 0 | 0 | 0 | 0 | 0",
          "12024L1 | Overdue Interest 02-01-2024 - 03-01-2024 |  | 2.3 | 0 | 2024-01-03 | 0 | 0 | 0"
          " | 0 | 2.3 | 0 | 0 | 0",
          "12024L2 | Overdue Interest for 20-01-2024 |  | 0.75 | 0 | 2024-01-20 | 0 | 0 | 0 | 0 | "
          "0.75 | 0 | 0 | 0",
          "CN2 | CN - goodwill |  | 0 | -5 | 2024-01-11 | 0 | 0 | 0 | 0 | -5 | 0 | 0 | 0",
          "INV2 | Invoice - stamp |  | 12 | 0 | 2024-01-10 | 0 | 0 | 0 | 0 | 12 | 0 | 0 | 0",
          "L1 | Loan Drawdown |  | 700.5 | 0 | 2024-01-01 | 0 | 700.5 | 0 | 0 | 0 | 0 | 0 | 0",
          "L2 | Loan Drawdown |  | 3000 | 0 | 2024-01-05 | 0 | 3000 | 0 | 0 | 0 | 0 | 0 | 0",
          "L2-i | Total Loan Interest |  | 300 | 0 | 2024-01-05 | 300 | 0 | 0 | 0 | 0 | 0 | 0 | 0",
          "LI1 | Loan Interest for February 2024 |  | 9 | 0 | 2024-01-12 | 0 | 0 | 0 | 0 | 9 | 0 | "
          "0 | 0",
          "P2 | Payment | Cheque PBB 000123 | 0 | 403.25 | 2024-01-01 | 0 | 0 | 40 | 360 | 0 | 2 | "
          "6 | 0",
          "P2* | Payment Discount | Cheque PBB 000123 | 0 | 3 | 2024-01-01 | 0 | 0 | 0 | 0 | 0 | 0 "
          "| 0 | 3",
          "P3 | Payment | BANK | 0 | 60 | 2024-01-31 | 0 | 0 | 0 | 0 | 0 | 0 | 0 | 0",
          "TE1 | TE - end of term |  | 11 | 0 | 2024-01-13 | 0 | 0 | 0 | 0 | 11 | 0 | 0 | 0"));
  // Each row knows its loan and the cut-off, the months of late interest their group.
  StagedRun of_l2 = January();
  of_l2.id_from = "L2";
  ASSERT_TRUE(StageStatement(o.session(), o.desk, of_l2));
  EXPECT_THAT(o.Rows(of_l2, "recordid,s10,s11,d2"),
              ElementsAre("#-L2 | L2 |  | 2024-01-31", "12024L2 | L2 | 12024 | 2024-01-31",
                          "L2 | L2 |  | 2024-01-31", "L2-i | L2 |  | 2024-01-31",
                          "P3 | L2 |  | 2024-01-31"));
}

TEST(StagedStatementTest, WithoutAnEndTheCutOffIsTheServersToday) {
  StagedOffice o;  // where it is 31 January 2024
  o.AddLoan("L1", "2024-01-31", "100");
  o.AddLoan("L2", "2024-02-01", "100");
  const StagedRun run = RunOf("StatementList.rpt", "01-01-2024", "");
  ASSERT_TRUE(StageStatement(o.session(), o.desk, run));
  EXPECT_THAT(o.Rows(run, "recordid,d2"), ElementsAre("#-L1 | 2024-01-31", "L1-i | 2024-01-31"));
}

// Two months of late interest, the batch of the last day run a day late; days of another kind of
// text; the longest texts that the tables hold.
TEST(StagedStatementTest, MonthsAndTexts) {
  StagedOffice o;
  o.AddLoan("借'1", "2023-06-01", "100");
  o.AddCharge("B1", "借'1", "2023-12-31", "Batch", "1", "", "2023-12-31", "2024-01-01");
  o.AddCharge("B2", "借'1", "2024-01-01", "Batch", "2", "", "2023-12-31", "2024-01-01");
  std::string longest;
  for (int i = 0; i < 300; ++i) longest += "利";
  o.AddCharge("V1", "借'1", "2024-01-02", "Invoice", "5", longest);
  o.AddCharge("V2", "借'1", "2024-01-03", "INVOICE", "6", "It's 50% [off]; -- no");
  o.AddCharge("V3", "借'1", "2024-01-04", "Storage", "7", "of another program");
  o.AddPayment("收'1", "借'1", "2024-01-05", "PayAmt=1,CollectInfoID='现金''s'");
  const StagedRun run = RunOf("StatementList.rpt", "01-12-2023", "31-01-2024");
  ASSERT_TRUE(StageStatement(o.session(), o.desk, run));
  EXPECT_THAT(o.Rows(run, "recordid,s1,s2,c1,s10"),
              ::testing::UnorderedElementsAre(
                  "#-借'1 | Balance BF |  | 0 | 借'1",
                  "122023借'1 | Overdue Interest for 01-01-2024 |  | 1 | 借'1",
                  "12024借'1 | Overdue Interest for 01-01-2024 |  | 2 | 借'1",
                  "V1 | Invoice - " + longest + " |  | 5 | 借'1",
                  "V2 | Invoice - It's 50% [off]; -- no |  | 6 | 借'1",
                  "V3 | of another program |  | 7 | 借'1", "收'1 | Payment | 现金's | 0 | 借'1"));
}

// A long statement is read and composed outside of the transaction that writes it: on the embedded
// database the others wait for its writing only.
TEST(StagedStatementTest, WhatIsWrittenIsReadBefore) {
  StagedOffice o;
  o.AddLoan("L1", "2023-12-10", "5000", "600");
  o.AddDrawdown("D1", "L1", "2024-01-10", "5000");
  o.AddPayment("P1", "L1", "2023-12-31", "PayAmt=500");
  std::string trace;
  o.main().SetTrace([&](std::string_view, std::string_view sql) {
    trace += sql.substr(0, sql.find(' '));
    trace += ' ';
  });
  ASSERT_TRUE(StageStatement(o.session(), o.desk, January()));
  o.main().SetTrace({});
  EXPECT_EQ(trace,
            "BEGIN SELECT SELECT SELECT SELECT SELECT SELECT SELECT SELECT COMMIT "
            "BEGIN DELETE INSERT INSERT UPDATE UPDATE COMMIT ");
}

}  // namespace
}  // namespace kaunter
