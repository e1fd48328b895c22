// What is due, late, outstanding and expected: each file's rows and sums against figures by hand
// and plain statements, today being 31-01-2024.
//
// Open and due by today are row 2 of L1 (1,966.67 of 05-01-2024), row 2 of L2 (900 of today) and
// rows 2 and 3 of L4 (360 and 7,040 of 01-08 and 01-09-2022).
#include <gtest/gtest.h>

#include "tests/reporting/report_rows.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using namespace report_rows;

const std::vector<std::string> kToday = {"RptID;False;True", "ToDay;date(2024,01,31);True"};

// The lists of the due date reports, each with a value of L2.
std::vector<StagedFilter> EveryDueList() {
  return {Picked("{LoanMast.CompCode}", {"HQ"}),
          Picked("{CustMast.CustRace}", {"MELAYU"}),
          Picked("{CustMast.AreaCode}", {"PERSONAL"}),
          Picked("{LoanMast.LoanTypeID}", {"MONTH"}),
          Picked("{LoanMast.LoanGroupID}", {"PINJAMAN SEMASA"}),
          Picked("{CustMast.CompCatCode}", {"FACT"}),
          Picked("{LoanMast.LoanType}", {"Secured"}),
          Picked("{LoanMast.Bank}", {"CIMB"}),
          Picked("{CustMast.AreaCode}", {"PERSONAL"}),
          Picked("{LoanMast.SalesmanID}", {"SUE"})};
}

std::string DueUpTo(const char* day, std::vector<StagedFilter> lists = {}) {
  return FormulaOf("{LoanMast.NextDueDate}", "", day, std::move(lists), "DueDate.rpt");
}

TEST(DueReports, InstalmentsThatAreDue) {
  ExpectAll({
      {.file = "DueDate.rpt",
       .formula = DueUpTo("31-01-2024"),
       .parameters = kToday,
       .sums = {{"DueAmt", "SELECT 1966.67 + 900 + 360 + 7040"},
                {"Payment", "SELECT 520"},
                {"LateDays", "SELECT 26 + 0 + 548 + 517"}},
       .count = "SELECT 4"},
      {.file = "DueDate.rpt",
       .formula = DueUpTo("31-01-2024", EveryDueList()),
       .parameters = kToday,
       .sums = {{"DueAmt", "SELECT 900"}},
       .count = "SELECT 1"},
      // Loans that fell due from L1's day on, with all that is due of them.
      {.file = "DueDate.rpt",
       .formula =
           FormulaOf("{LoanMast.NextDueDate}", "05-01-2024", "30-01-2024", {}, "DueDate.rpt"),
       .parameters = kToday,
       .sums = {{"DueAmt", "SELECT 1966.67"}},
       .count = "SELECT 1"},
      // A day ahead: L1's next and L5's first come to it.
      {.file = "DueDate3.rpt",
       .formula = DueUpTo("29-02-2024"),
       .parameters = {"RptID;False;True", "ToDay;date(2024,02,29);True"},
       .sums = {{"DueAmt", "SELECT 10266.67 + 1966.66 + 1100"}},
       .count = "SELECT 6"},
      {.file = "DueDate3.rpt",
       .formula = "",
       .parameters = kToday,
       .sums = {{"DueAmt",
                 "SELECT SUM(s.PayableAmt) - SUM(s.Payment) FROM SchMast s, LoanMast l WHERE "
                 "s.LoanID=l.LoanID AND l.LoanBal <> 0 AND s.DueDate <= '2024-01-31'"}},
       .count = "SELECT 4"},
  });
}

TEST(DueReports, LoansByTheDaysLate) {
  Rows rows;
  for (const char* file : {"DueDate5.rpt", "DueDate2.rpt", "DueDate4.rpt"}) {
    // The last two take the day of the print, which is the same.
    for (const auto& parameters : {kToday, kPlain}) {
      rows.push_back({.file = file,
                      .formula = "",
                      .parameters = parameters,
                      .sums = {{"DueAmt", "SELECT 10266.67"},
                               {"Instalments", "SELECT 4"},
                               {"LoanBal", "SELECT SUM(LoanBal) FROM LoanMast"},
                               {"LateCharges", "SELECT 10 + 25 + 310.25"}},
                      .count = "SELECT COUNT(*) FROM LoanMast WHERE LoanBal > 0"});
    }
    rows.push_back({.file = file,
                    .formula = FormulaOf("{LoanMast.NextDueDate}", "31-01-2024", "31-01-2024",
                                         EveryDueList(), file),
                    .parameters = kToday,
                    .sums = {{"DueAmt", "SELECT 900"}},
                    .count = "SELECT 1"});
  }
  rows.push_back(
      {.file = "DueDate2.rpt",
       .formula = "",
       .parameters = kToday,
       .sums = {{"DueNow", "SELECT 900"}, {"Late1", "SELECT 1966.67"}, {"Late3", "SELECT 7400"}},
       .count = ""});
  rows.push_back({.file = "DueDate5.rpt",
                  .formula = "",
                  .parameters = kToday,
                  .sums = {{"LateDays", "SELECT 26 + 548"}},
                  .count = ""});
  ExpectAll(rows);
}

// L1's open instalment moved to a day stands in one column.
struct Aged {
  const char* due;
  const char* column;
};

void ExpectAged(const std::string& file, const std::vector<std::string>& columns,
                const std::vector<Aged>& cases) {
  ReportOffice office;
  ReportCheck check(office);
  office.Run("DELETE FROM SchMast WHERE LoanID='L1' AND SchID=3");
  for (const Aged& c : cases) {
    SCOPED_TRACE(c.due);
    office.Run(fmt::format("UPDATE SchMast SET DueDate={} WHERE LoanID='L1' AND SchID=2",
                           QuoteStr(c.due)));
    ReportExpectation expected = {.file = file,
                                  .formula = "{LoanMast.LoanID} = 'L1'",
                                  .parameters = kToday,
                                  .sums = {},
                                  .count = "SELECT 1"};
    for (const std::string& column : columns) {
      expected.sums.push_back({column, column == c.column ? "SELECT 1966.67" : "SELECT 0"});
    }
    check.Expect(expected);
  }
}

TEST(DueReports, EdgesOfTheDaysLate) {
  ExpectAged("DueDate2.rpt", {"DueNow", "Late1", "Late2", "Late3"},
             {{"2024-01-31", "DueNow"},
              {"2024-01-30", "Late1"},
              {"2024-01-01", "Late1"},
              {"2023-12-31", "Late2"},
              {"2023-11-02", "Late2"},
              {"2023-11-01", "Late3"}});
}

// A month before 31-01 is 31-12, two are 30-11.
TEST(DueReports, EdgesOfTheMonthsLate) {
  ExpectAged("AgingMonth.rpt", {"NotDue", "M1", "M2", "M3", "M6", "M12", "Over12"},
             {{"2024-02-01", "NotDue"},
              {"2024-01-31", "NotDue"},
              {"2024-01-30", "M1"},
              {"2023-12-31", "M1"},
              {"2023-12-30", "M2"},
              {"2023-11-30", "M2"},
              {"2023-11-29", "M3"},
              {"2023-10-31", "M3"},
              {"2023-10-30", "M6"},
              {"2023-07-31", "M6"},
              {"2023-07-30", "M12"},
              {"2023-01-31", "M12"},
              {"2023-01-30", "Over12"}});
}

TEST(DueReports, Aging) {
  ExpectAll({
      {.file = "AgingMonth.rpt",
       .formula = "",
       .parameters = kToday,
       .sums = {{"NotDue", "SELECT 1966.66 + 900 + 60900 + 3300"},
                {"M1", "SELECT 1966.67"},
                {"Over12", "SELECT 7400"},
                {"Late", "SELECT 1966.67 + 7400"},
                {"LoanBal", "SELECT SUM(LoanBal) FROM LoanMast"}},
       .count = "SELECT 4"},
      {.file = "AgingMonth.rpt",
       .formula = FormulaOf("{LoanMast.TrxDate}", "01-01-2023", "30-01-2024", EveryLoanList()),
       .parameters = {"RptID;False;True", "ToDay;date(2024,02,01);True"},
       .sums = {{"M1", "SELECT 900"}, {"NotDue", "SELECT 60900"}},
       .count = "SELECT 1"},
  });
}

// The bars of columns bear their headings and their sums.
TEST(DueReports, AgingIsDrawn) {
  ReportOffice office;
  ReportJob job;
  job.Connect = &office.main();
  job.ReportFileName = test::SourceDir() + "/reports/AgingMonth.rpt";
  const ReportRun run = RunWholeReport(job);
  const auto& texts = run.document.pages.front().texts;
  std::vector<std::string> bars;
  for (std::size_t i = 0; i + 1 < texts.size(); ++i) {
    const bool label = texts[i].tone == Tone::quiet && texts[i + 1].text.ends_with(".00");
    const bool other = texts[i].tone == Tone::quiet && texts[i + 1].text == "1,966.67";
    if (label || other) bars.push_back(texts[i].text + " " + texts[i + 1].text);
  }
  EXPECT_EQ(bars,
            (std::vector<std::string>{"1 month 1,966.67", "2 months 0.00", "3 months 0.00",
                                      "4-6 mths 0.00", "7-12 mths 0.00", "Over 12 7,400.00"}));
}

TEST(DueReports, Outstanding) {
  Rows rows;
  for (const auto& [file, twin] : {std::pair{"Outstanding.rpt", ""},
                                   {"Outstanding2.rpt", ""},
                                   {"Outstanding2S.rpt", "Outstanding2CS.rpt"}}) {
    rows.push_back({.file = file,
                    .formula = "",
                    .parameters = kPlain,
                    .sums = {{"LoanBal", "SELECT SUM(LoanBal) FROM LoanMast"},
                             {"Paid", "SELECT 1966.67 + 1800 + 1400"},
                             {"Owed", "SELECT SUM(LoanBal) + 345.25 FROM LoanMast"}},
                    .count = "SELECT COUNT(*) FROM LoanMast WHERE LoanBal <> 0",
                    .twin = twin});
    rows.push_back(
        {.file = file,
         .formula = FormulaOf(
             "{LoanMast.NextDueDate}", "01-01-2024", "31-01-2024",
             {Picked("{LoanMast.CompCode}", {"HQ"}), Picked("{LoanMast.LoanTypeID}", {"MONTH"}),
              Picked("{LoanMast.LoanGroupID}", {"PINJAMAN SEMASA"}),
              Picked("{CustMast.CompCatCode}", {"NIL", "FACT"}),
              Picked("{LoanMast.LoanType}", {"Unsecured"}), Picked("{LoanMast.Bank}", {"MBB"})}),
         .parameters = kSpecial,
         .sums = {{"LoanAmt", "SELECT LoanAmt2 FROM LoanMast WHERE LoanID='L1'"}},
         .count = "SELECT 1",
         .twin = twin});
  }
  ExpectAll(rows);
}

TEST(DueReports, UnsettledInterest) {
  ReportOffice office;
  ReportCheck check(office);
  // L4: 40 and 640 of two instalments; L5 owes none yet.
  check.Expect({.file = "OustandingInt.rpt",
                .formula = "",
                .parameters = kPlain,
                .sums = {{"DueInt", "SELECT 300 + 900 + 680"},
                         {"FutureInt", "SELECT 300 + 900"},
                         {"LateCharges", "SELECT 35 + 310.25"},
                         {"Unsettled", "SELECT 2225.25"},
                         {"InsRate", "SELECT 12 + 18 + 10"}},
                .count = "SELECT 3"});
  check.Expect({.file = "OustandingInt.rpt",
                .formula = FormulaOf("{LoanMast.TrxDate}", "01-01-2023", "30-01-2024",
                                     {Picked("{LoanMast.CompCode}", {"HQ"}),
                                      Picked("{LoanMast.LoanTypeID}", {"MONTH"}),
                                      Picked("{LoanMast.LoanGroupID}", {"PINJAMAN SEMASA"}),
                                      Picked("{CustMast.CompCatCode}", {"FACT"})}),
                .parameters = kSpecial,
                .sums = {{"Unsettled", "SELECT 900"}, {"InsRate", "SELECT 18"}},
                .count = "SELECT 1"});
  // A loan without balance owes its late interest, and none of an instalment that was left open.
  office.Run("UPDATE LoanMast SET TotCollectorAmt=7.50 WHERE LoanID='L3'");
  office.Run("UPDATE SchMast SET InterestPayment=10 WHERE LoanID='L3' AND SchID=2");
  check.Expect({.file = "OustandingInt.rpt",
                .formula = "{LoanMast.LoanID} = 'L3'",
                .parameters = kPlain,
                .sums = {{"DueInt", "SELECT 0"}, {"Unsettled", "SELECT 7.50"}},
                .count = "SELECT 1"});
}

TEST(DueReports, ExpectedCollection) {
  ReportOffice office;
  ReportCheck check(office);
  check.Expect({.file = "ExpectedCollection.rpt",
                .formula = "",
                .parameters = kPlain,
                .sums = {{"Expected", "SELECT SUM(CapitalAmt) + SUM(InterestAmt) FROM SchMast"},
                         {"Collected", "SELECT SUM(Payment) FROM SchMast"}},
                .count = "SELECT COUNT(*) FROM SchMast"});
  check.Expect({.file = "ExpectedCollection.rpt",
                .formula = FormulaOf("{SchMast.DueDate}", "01-01-2024", "31-01-2024"),
                .parameters = kPlain,
                .sums = {{"Expected", "SELECT 1966.67 + 900 + 900"}, {"ToCome", "SELECT 2866.67"}},
                .count = "SELECT 3"});
  check.Expect(
      {.file = "ExpectedCollection.rpt",
       .formula = FormulaOf("{SchMast.DueDate}", "01-01-2024", "31-03-2024", EveryLoanList()),
       .parameters = kPlain,
       .sums = {{"Expected", "SELECT 62700"}, {"Collected", "SELECT 900"}},
       .count = "SELECT 3"});
  // Closed: what is open of it will not come, what came stays.
  office.Run("UPDATE LoanMast SET LoanBal=0 WHERE LoanID='L4'");
  check.Expect({.file = "ExpectedCollection.rpt",
                .formula = "{LoanMast.LoanID} = 'L4'",
                .parameters = kPlain,
                .sums = {{"Expected", "SELECT 880 + 520"}, {"ToCome", "SELECT 0"}},
                .count = "SELECT 2"});
}

TEST(DueReports, FollowUps) {
  ExpectAll({
      {.file = "FollowUpDetList.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {},
       .count = "SELECT COUNT(*) FROM FollowUpMast"},
      {.file = "FollowUpDetList.rpt",
       .formula = FormulaOf(
           "{FollowUpMast.HisDate}", "01-01-2024", "31-01-2024",
           {Picked("{LoanMast.CompCode}", {"HQ"}), Picked("{LoanMast.LoanTypeID}", {"MONTH"}),
            Picked("{LoanMast.AdvertiseID}", {"FRIEND"}),
            Picked("{LoanMast.LoanGroupID}", {"PINJAMAN SEMASA"}),
            Picked("{CustMast.CompCatCode}", {"NIL"}),
            Picked("{HisStatusMast.HisStatusID}", {"PROMISE"}), Picked("{LoanMast.Bank}", {"MBB"}),
            Picked("{LoanMast.SalesmanID}", {"SAM"})}),
       .parameters = kPlain,
       .sums = {},
       .count = "SELECT 1"},
  });
}

}  // namespace
}  // namespace kaunter
