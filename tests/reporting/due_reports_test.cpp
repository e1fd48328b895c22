// What is due, late, outstanding and expected: each file's rows and sums against figures by hand
// and plain statements, today being 31-01-2024.
//
// Open and due by today are row 2 of L1 (1,966.67 of 05-01-2024), row 2 of L2 (900 of today) and
// rows 2 and 3 of L4 (360 and 7,040 of 01-08 and 01-09-2022).
#include <gtest/gtest.h>

#include "tests/reporting/report_office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

const std::vector<std::string> kToday = {"RptID;False;True", "ToDay;date(2024,01,31);True"};

// The lists of the due date reports, each with a value of L2.
const std::string kEveryDueList =
    "LoanMast.CompCode=HQ; CustMast.CustRace=MELAYU; CustMast.AreaCode=PERSONAL; "
    "LoanMast.LoanTypeID=MONTH; LoanMast.LoanGroupID=PINJAMAN SEMASA; CustMast.CompCatCode=FACT; "
    "LoanMast.LoanType=Secured; LoanMast.Bank=CIMB; CustMast.AreaCode=PERSONAL; "
    "LoanMast.SalesmanID=SUE";

std::string DueUpTo(const char* day, const std::string& lists = {}) {
  return FormulaOf("{LoanMast.NextDueDate}", "", day, lists, "DueDate.rpt");
}

TEST(DueReports, InstalmentsThatAreDue) {
  ExpectAll({
      Row("DueDate.rpt",
          {{"DueAmt", "1966.67 + 900 + 360 + 7040"},
           {"Payment", "520"},
           {"LateDays", "26 + 0 + 548 + 517"}},
          "4", DueUpTo("31-01-2024"), kToday),
      Row("DueDate.rpt", {{"DueAmt", "900"}}, "1", DueUpTo("31-01-2024", kEveryDueList), kToday),
      // Loans that fell due from L1's day on, with all that is due of them.
      Row("DueDate.rpt", {{"DueAmt", "1966.67"}}, "1",
          FormulaOf("{LoanMast.NextDueDate}", "05-01-2024", "30-01-2024", {}, "DueDate.rpt"),
          kToday),
      // A day ahead: L1's next and L5's first come to it.
      Row("DueDate3.rpt", {{"DueAmt", "10266.67 + 1966.66 + 1100"}}, "6", DueUpTo("29-02-2024"),
          {"RptID;False;True", "ToDay;date(2024,02,29);True"}),
      Row("DueDate3.rpt",
          {{"DueAmt",
            "SELECT SUM(s.PayableAmt) - SUM(s.Payment) FROM SchMast s, LoanMast l WHERE "
            "s.LoanID=l.LoanID AND l.LoanBal <> 0 AND s.DueDate <= '2024-01-31'"}},
          "4", "", kToday),
  });
}

TEST(DueReports, LoansByTheDaysLate) {
  Rows rows;
  for (const char* file : {"DueDate5.rpt", "DueDate2.rpt", "DueDate4.rpt"}) {
    // The last two take the day of the print, which is the same.
    for (const auto& parameters : {kToday, kPlain}) {
      rows.push_back(Row(file,
                         {{"DueAmt", "10266.67"},
                          {"Instalments", "4"},
                          {"LoanBal", "SELECT SUM(LoanBal) FROM LoanMast"},
                          {"LateCharges", "10 + 25 + 310.25"}},
                         "SELECT COUNT(*) FROM LoanMast WHERE LoanBal > 0", "", parameters));
    }
    rows.push_back(
        Row(file, {{"DueAmt", "900"}}, "1",
            FormulaOf("{LoanMast.NextDueDate}", "31-01-2024", "31-01-2024", kEveryDueList, file),
            kToday));
  }
  rows.push_back(Row("DueDate2.rpt", {{"DueNow", "900"}, {"Late1", "1966.67"}, {"Late3", "7400"}},
                     "", "", kToday));
  rows.push_back(Row("DueDate5.rpt", {{"LateDays", "26 + 548"}}, "", "", kToday));
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
    ReportExpectation expected = Row(file, {}, "1", "{LoanMast.LoanID} = 'L1'", kToday);
    for (const std::string& column : columns) {
      expected.sums.push_back({column, column == c.column ? "1966.67" : "0"});
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
      Row("AgingMonth.rpt",
          {{"NotDue", "1966.66 + 900 + 60900 + 3300"},
           {"M1", "1966.67"},
           {"Over12", "7400"},
           {"Late", "1966.67 + 7400"},
           {"LoanBal", "SELECT SUM(LoanBal) FROM LoanMast"}},
          "4", "", kToday),
      Row("AgingMonth.rpt", {{"M1", "900"}, {"NotDue", "60900"}}, "1",
          FormulaOf("{LoanMast.TrxDate}", "01-01-2023", "30-01-2024", kEveryLoanList),
          {"RptID;False;True", "ToDay;date(2024,02,01);True"}),
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
  EXPECT_EQ(bars, (std::vector<std::string>{"1 month 1,966.67", "2 months 0.00", "3 months 0.00",
                                            "4-6 months 0.00", "7-12 months 0.00",
                                            "Over 12 months 7,400.00"}));
}

TEST(DueReports, Outstanding) {
  Rows rows;
  for (const auto& [file, twin] : {std::pair{"Outstanding.rpt", ""},
                                   {"Outstanding2.rpt", ""},
                                   {"Outstanding2S.rpt", "Outstanding2CS.rpt"}}) {
    rows.push_back(Row(file,
                       {{"LoanBal", "SELECT SUM(LoanBal) FROM LoanMast"},
                        {"Paid", "1966.67 + 1800 + 1400"},
                        {"Owed", "SELECT SUM(LoanBal) + 345.25 FROM LoanMast"}},
                       "SELECT COUNT(*) FROM LoanMast WHERE LoanBal <> 0", "", kPlain, twin));
    rows.push_back(
        Row(file, {{"LoanAmt", "SELECT LoanAmt2 FROM LoanMast WHERE LoanID='L1'"}}, "1",
            FormulaOf("{LoanMast.NextDueDate}", "01-01-2024", "31-01-2024",
                      "LoanMast.CompCode=HQ; LoanMast.LoanTypeID=MONTH; "
                      "LoanMast.LoanGroupID=PINJAMAN SEMASA; CustMast.CompCatCode=NIL|FACT; "
                      "LoanMast.LoanType=Unsecured; LoanMast.Bank=MBB"),
            kSpecial, twin));
  }
  ExpectAll(rows);
}

TEST(DueReports, UnsettledInterest) {
  ReportOffice office;
  ReportCheck check(office);
  // L4: 40 and 640 of two instalments; L5 owes none yet.
  check.Expect(Row("OustandingInt.rpt",
                   {{"DueInt", "300 + 900 + 680"},
                    {"FutureInt", "300 + 900"},
                    {"LateCharges", "35 + 310.25"},
                    {"Unsettled", "2225.25"},
                    {"InsRate", "12 + 18 + 10"}},
                   "3"));
  check.Expect(Row("OustandingInt.rpt", {{"Unsettled", "900"}, {"InsRate", "18"}}, "1",
                   FormulaOf("{LoanMast.TrxDate}", "01-01-2023", "30-01-2024",
                             "LoanMast.CompCode=HQ; LoanMast.LoanTypeID=MONTH; "
                             "LoanMast.LoanGroupID=PINJAMAN SEMASA; CustMast.CompCatCode=FACT"),
                   kSpecial));
  // A loan without balance owes its late interest, and none of an instalment that was left open.
  office.Run("UPDATE LoanMast SET TotCollectorAmt=7.50 WHERE LoanID='L3'");
  office.Run("UPDATE SchMast SET InterestPayment=10 WHERE LoanID='L3' AND SchID=2");
  check.Expect(Row("OustandingInt.rpt", {{"DueInt", "0"}, {"Unsettled", "7.50"}}, "1",
                   "{LoanMast.LoanID} = 'L3'"));
}

TEST(DueReports, ExpectedCollection) {
  ReportOffice office;
  ReportCheck check(office);
  check.Expect(Row("ExpectedCollection.rpt",
                   {{"Expected", "SELECT SUM(CapitalAmt) + SUM(InterestAmt) FROM SchMast"},
                    {"Collected", "SELECT SUM(Payment) FROM SchMast"}},
                   "SELECT COUNT(*) FROM SchMast"));
  check.Expect(Row("ExpectedCollection.rpt",
                   {{"Expected", "1966.67 + 900 + 900"}, {"ToCome", "2866.67"}}, "3",
                   FormulaOf("{SchMast.DueDate}", "01-01-2024", "31-01-2024")));
  check.Expect(Row("ExpectedCollection.rpt", {{"Expected", "62700"}, {"Collected", "900"}}, "3",
                   FormulaOf("{SchMast.DueDate}", "01-01-2024", "31-03-2024", kEveryLoanList)));
  // Closed: what is open of it will not come, what came stays.
  office.Run("UPDATE LoanMast SET LoanBal=0 WHERE LoanID='L4'");
  check.Expect(Row("ExpectedCollection.rpt", {{"Expected", "880 + 520"}, {"ToCome", "0"}}, "2",
                   "{LoanMast.LoanID} = 'L4'"));
}

TEST(DueReports, FollowUps) {
  ExpectAll({
      Row("FollowUpDetList.rpt", {}, "SELECT COUNT(*) FROM FollowUpMast"),
      Row("FollowUpDetList.rpt", {}, "1",
          FormulaOf(
              "{FollowUpMast.HisDate}", "01-01-2024", "31-01-2024",
              "LoanMast.CompCode=HQ; LoanMast.LoanTypeID=MONTH; LoanMast.AdvertiseID=FRIEND; "
              "LoanMast.LoanGroupID=PINJAMAN SEMASA; CustMast.CompCatCode=NIL; "
              "HisStatusMast.HisStatusID=PROMISE; LoanMast.Bank=MBB; LoanMast.SalesmanID=SAM")),
  });
}

}  // namespace
}  // namespace kaunter
