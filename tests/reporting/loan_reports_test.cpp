// The listings of codes, customers, loans and cheques: each file's rows and sums against plain
// statements.
#include <gtest/gtest.h>

#include "tests/reporting/report_rows.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using namespace report_rows;

TEST(LoanReports, CodesAsTheMenuStartsThem) {
  struct Case {
    const char *file, *table;
    std::vector<ReportSum> sums;
  };
  for (const Case& c : std::vector<Case>{
           {"AdvertisementList.rpt", "AdvertiseMast", {{"Used", "SELECT 5"}}},
           {"AreaCodeList.rpt", "AreaMast", {{"Used", "SELECT COUNT(*) FROM CustMast"}}},
           {"BankCode.rpt", "BankMast", {{"Used", "SELECT 4"}}},
           {"CompanyCategoryList.rpt", "CampanyCategory", {{"Used", "SELECT 3"}}},
           {"CompCodeList.rpt", "CompMast", {{"Used", "SELECT COUNT(*) FROM LoanMast"}}},
           {"CollectInfoList.rpt", "CollectInfoMast", {{"Used", "SELECT 6"}}},
           {"LoanGroupList.rpt", "LoanGroupMast", {{"Used", "SELECT 5"}}},
           {"LoanTypeList.rpt", "LoanTypeMast", {{"Used", "SELECT 5"}}},
           // The salesman of L4 has left, and L5 has none.
           {"SalesmanList.rpt",
            "SalesmanMast",
            {{"Used", "SELECT 3"}, {"TotAccComm", "SELECT 395.50"}, {"CommLeft", "SELECT 295.50"}}},
       }) {
    ExpectAll({{.file = c.file,
                .formula = "",
                .parameters = {},
                .sums = c.sums,
                .count = fmt::format("SELECT COUNT(*) FROM {}", c.table)}});
  }
}

TEST(LoanReports, Customers) {
  ExpectAll({
      {.file = "CustMastList.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"LoanAmt", "SELECT SUM(LoanAmt) FROM LoanMast"},
                {"LoanBal", "SELECT SUM(LoanBal) FROM LoanMast"},
                {"Loans", "SELECT 5"}},
       .count = "SELECT COUNT(*) FROM CustMast"},
      {.file = "CustMastList.rpt",
       .formula = "",
       .parameters = kSpecial,
       .sums = {{"LoanAmt", "SELECT SUM(LoanAmt2) FROM LoanMast"}},
       .count = "SELECT 4"},
      // A customer with two loans stands there once, with both.
      {.file = "CustMastList.rpt",
       .formula = FormulaOf(
           "{CustMast.TrxDate}", "01-05-2023", "31-12-2023",
           {Picked("{CustMast.CompCode}", {"HQ", "KL"}), Picked("{CustMast.CompCatCode}", {"FACT"}),
            Picked("{LoanMast.SalesmanID}", {"SAM", "GONE", "SUE"})}),
       .parameters = kPlain,
       .sums = {{"LoanAmt", "SELECT SUM(LoanAmt) FROM LoanMast WHERE CustID IN ('C2','C3')"}},
       .count = "SELECT 2"},
      {.file = "RefererList.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"RefererCompIncome", "SELECT SUM(RefererCompIncome) FROM RefererMast"}},
       .count = "SELECT COUNT(*) FROM RefererMast"},
      {.file = "RefererList.rpt",
       .formula = FormulaOf("{CustMast.TrxDate}", "31-12-2023", "31-12-2023",
                            {Picked("{CustMast.CustRace}", {"LAIN-LAIN"}),
                             Picked("{CustMast.AreaCode}", {"COMPANY"}),
                             Picked("{CustMast.CustStatus}", {"BAD DEBT"}),
                             Picked("{LoanMast.SalesmanID}", {"SAM"})}),
       .parameters = kPlain,
       .sums = {{"RefererCompIncome", "SELECT 9800"}},
       .count = "SELECT 1"},
      // A customer without one gets a line with a dash.
      {.file = "RefererList2.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {},
       .count = "SELECT 3 + 2"},
      {.file = "RefererList2.rpt",
       .formula = "{CustMast.CustID} = 'C1'",
       .parameters = kPlain,
       .sums = {},
       .count = "SELECT COUNT(*) FROM RefererMast WHERE CustID='C1'"},
      {.file = "MyKadList.rpt",
       .formula = "{CustMast.CustID} = 'C2'",
       .parameters = {},
       .sums = {},
       .count = "SELECT 1",
       .twin = "-"},
  });
}

const std::string kTwoYears = "TrxDate >= '2023-01-01' AND TrxDate < '2024-01-31'";
std::string TwoYears(std::vector<StagedFilter> filters = {}) {
  return FormulaOf("{LoanMast.TrxDate}", "01-01-2023", "30-01-2024", std::move(filters));
}

// All loans; those of a time; the one that every list finds; and what a special user sees.
Rows OfLoans(const std::string& file, const std::string& twin,
             const std::string& amount = "LoanAmt", const std::string& balance = "LoanBal") {
  return {{.file = file,
           .formula = "",
           .parameters = kPlain,
           .sums = {{amount, "SELECT SUM(LoanAmt) FROM LoanMast"},
                    {balance, "SELECT SUM(LoanBal) FROM LoanMast"}},
           .count = "SELECT COUNT(*) FROM LoanMast",
           .twin = twin},
          {.file = file,
           .formula = TwoYears() + " and {LoanMast.LoanBal} > 0",
           .parameters = kPlain,
           .sums = {{amount, "SELECT 65000"}, {balance, "SELECT 63933.33"}},
           .count = "SELECT COUNT(*) FROM LoanMast WHERE LoanBal > 0 AND " + kTwoYears,
           .twin = twin},
          {.file = file,
           .formula = TwoYears(EveryLoanList()),
           .parameters = kPlain,
           .sums = {{amount, "SELECT LoanAmt FROM LoanMast WHERE LoanID='L2'"}},
           .count = "SELECT 1",
           .twin = twin},
          {.file = file,
           .formula = "",
           .parameters = kSpecial,
           .sums = {{amount, "SELECT SUM(LoanAmt2) FROM LoanMast"}},
           .count = "SELECT COUNT(*) FROM LoanMast",
           .twin = twin}};
}

TEST(LoanReports, LoansOneALine) {
  ExpectAll(OfLoans("LoanMastList.rpt", ""));
  ExpectAll(OfLoans("LoanMastList2.rpt", ""));
  ExpectAll(OfLoans("LoanMastList2S.rpt", "LoanMastList2CS.rpt"));
  ExpectAll(OfLoans("CustLoanList.rpt", ""));
  ExpectAll(OfLoans("CustLoanMastList.rpt", ""));
  ExpectAll(OfLoans("LoanCreatedDate.rpt", ""));
  ExpectAll({{.file = "LoanMastList.rpt",
              .formula = "",
              .parameters = kSpecial,
              .sums = {{"InsRate", "SELECT 90"}, {"Paid", "SELECT SUM(PayAmt) FROM PaymentMast"}},
              .count = ""},
             {.file = "CustLoanMastList.rpt",
              .formula = FormulaOf("{CustMast.TrxDate}", "01-01-2023", "10-01-2023",
                                   {Picked("{CustMast.CustRace}", {"CINA"})}),
              .parameters = kPlain,
              .sums = {{"LoanBal", "SELECT LoanBal FROM LoanMast WHERE LoanID='L1'"}},
              .count = "SELECT 1"},
             // The day of entry counts to its last second.
             {.file = "LoanCreatedDate.rpt",
              .formula = FormulaOf("{LoanMast.DateCreated}", "06-11-2023", "15-12-2023"),
              .parameters = kPlain,
              .sums = {{"LoanAmt", "SELECT 65000"}},
              .count = "SELECT 2"}});
}

// 3,933.33 is what L1 owes today; on 04-12-2023 nothing had been paid.
TEST(LoanReports, LoansAsAtADay) {
  ExpectAll({{.file = "LoanMastList3.rpt",
              .formula = "",
              .parameters = {"RptID;False;True", "ToDate;date(2023,12,04);True"},
              .sums = {{"BalThen", "SELECT 5900.00 + 0 + 7400"},
                       {"PaidThen", "SELECT 1260.00 + 1400 + 60"},
                       {"LoanAmt", "SELECT 5000 + 1200 + 8000"}},
              .count = "SELECT 3"},
             {.file = "LoanMastList3.rpt",
              .formula = "",
              .parameters = {"RptID;False;True", "ToDate;date(2023,02,14);True"},
              .sums = {{"BalThen", "SELECT 660 + 7400"}, {"PaidThen", "SELECT 660 + 1400"}},
              .count = "SELECT 2"},
             // Without a day it is today's.
             {.file = "LoanMastList3.rpt",
              .formula = "",
              .parameters = kPlain,
              .sums = {{"BalThen", "SELECT SUM(LoanBal) FROM LoanMast"},
                       {"PaidThen", "SELECT SUM(PayAmt) FROM PaymentMast"}},
              .count = "SELECT 5"}});
}

TEST(LoanReports, LoansOfAKind) {
  ExpectAll({
      {.file = "BadDebtListing.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"LoanBal", "SELECT 7400"}, {"LateAmt", "SELECT 310.25"}},
       .count = "SELECT 1"},
      {.file = "BadDebtListing.rpt",
       .formula = TwoYears(
           {Picked("{LoanMast.CompCode}", {"KL"}), Picked("{CustMast.CustStatus}", {"BAD DEBT"})}),
       .parameters = kPlain,
       .sums = {},
       .count = "SELECT 0"},
      {.file = "LoanCollateral.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"Memo4", "SELECT 45000"}, {"LoanBal", "SELECT 67400"}},
       .count = "SELECT COUNT(*) FROM LoanMast WHERE LoanID IN ('L2','L4')"},
      {.file = "LoanCollateral.rpt",
       .formula = TwoYears(EveryLoanList()) + " and {LoanMast.LoanBal} > 0",
       .parameters = kSpecial,
       .sums = {{"LoanAmt", "SELECT 60000"}},
       .count = "SELECT 1"},
      // Both guarantors of L2, the one of L4.
      {.file = "LoanGuarantorList.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"Place", "SELECT 1 + 2 + 1"}},
       .count = "SELECT 3"},
      {.file = "LoanGuarantorList.rpt",
       .formula = TwoYears(EveryLoanList()),
       .parameters = kPlain,
       .sums = {},
       .count = "SELECT 2"},
      {.file = "LoanExceedThreshold.rpt",
       .formula = "",
       .parameters = {"RptID;False;True", "Threshold;5000.00;True"},
       .sums = {{"LoanAmt", "SELECT SUM(LoanAmt) FROM LoanMast WHERE LoanID IN ('L2','L4')"},
                {"Excess", "SELECT 55000 + 3000"}},
       .count = "SELECT 2"},
      {.file = "LoanExceedThreshold.rpt",
       .formula = TwoYears(EveryLoanList()) + " and {LoanMast.AMLACode} <> '' ",
       .parameters = {"RptID;True;True", "Threshold;4999.99;True"},
       .sums = {{"Excess", "SELECT 55000.01"}},
       .count = "SELECT 1"},
      // L4's salesman is known by his code alone.
      {.file = "LoanCommList.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"SalesmanComm", "SELECT SUM(SalesmanComm) FROM LoanMast"}},
       .count = "SELECT COUNT(*) FROM LoanMast WHERE SalesmanID <> ''"},
      {.file = "LoanCommList.rpt",
       .formula = TwoYears({Picked("{LoanMast.SalesmanID}", {"SAM", "SUE"})}),
       .parameters = kPlain,
       .sums = {{"SalesmanComm", "SELECT 170.50"}},
       .count = "SELECT 3"},
  });
}

TEST(LoanReports, InterestThatDoesNotMatch) {
  ReportOffice office;
  ReportCheck check(office);
  // L2's schedule bears 2,700 of its 3,600; L4's 800 and L5's 300 match.
  const ReportExpectation all = {.file = "Loan Interest Report.rpt",
                                 .formula = "",
                                 .parameters = kPlain,
                                 .sums = {{"Difference", "SELECT 900"}},
                                 .count = "SELECT 1"};
  check.Expect(all);
  office.Run("UPDATE SchMast SET InterestAmt=InterestAmt+300 WHERE LoanID='L2'");
  office.Run("UPDATE LoanMast SET TotLoanInt=119.99 WHERE LoanID='L3'");
  check.Expect({.file = all.file,
                .formula = TwoYears({Picked("{LoanMast.CompCode}", {"KL"})}),
                .parameters = kPlain,
                .sums = {{"Difference", "SELECT -0.01"}},
                .count = "SELECT 1"});
}

TEST(LoanReports, RowsOfALoan) {
  Rows rows;
  for (const auto& [file, twin] :
       {std::pair{"LoanSchList.rpt", ""}, std::pair{"LoanSchList2.rpt", "LoanSchListC2.rpt"}}) {
    rows.push_back(
        {.file = file,
         .formula = "",
         .parameters = kPlain,
         .sums = {{"PayableAmt", "SELECT SUM(CapitalAmt+InterestAmt) FROM SchMast"},
                  {"Payment", "SELECT SUM(CapitalPayment+InterestPayment) FROM SchMast"}},
         .count = "SELECT COUNT(*) FROM SchMast",
         .twin = twin});
    rows.push_back({.file = file,
                    .formula = TwoYears(EveryLoanList()),
                    .parameters = kSpecial,
                    .sums = {{"PayableAmt", "SELECT 62700"}, {"Payment", "SELECT 900"}},
                    .count = "SELECT 3",
                    .twin = twin});
  }
  rows.push_back(
      {.file = "LoanSchList2.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"CapitalLeft", "SELECT SUM(CapitalAmt)-SUM(CapitalPayment) FROM SchMast"},
                {"InterestLeft",
                 "SELECT SUM(InterestAmt)-SUM(InterestPayment) FROM "
                 "SchMast"}},
       .count = "",
       .twin = "LoanSchListC2.rpt"});
  // L5 has no payment and its own line.
  rows.push_back({.file = "LoanPaymentList.rpt",
                  .formula = "",
                  .parameters = kPlain,
                  .sums = {{"PayAmt", "SELECT SUM(PayAmt) FROM PaymentMast"},
                           {"Received",
                            "SELECT SUM(PayAmt)+SUM(IntAmt)+SUM(ChargeAmt)+SUM(CollectorAmt)-"
                            "SUM(DiscAmt) FROM PaymentMast"}},
                  .count = "SELECT COUNT(*) + 1 FROM PaymentMast"});
  rows.push_back({.file = "LoanPaymentList.rpt",
                  .formula = TwoYears({Picked("{LoanMast.CompCode}", {"KL"}),
                                       Picked("{CustMast.CompCatCode}", {"FACT"}),
                                       Picked("{CustMast.AreaCode}", {"COMPANY"})}),
                  .parameters = kPlain,
                  .sums = {{"Received", "SELECT 1315"}},
                  .count = "SELECT 2"});
  for (const char* file : {"ChqMastList.rpt", "LoanChqMastList.rpt"}) {
    rows.push_back({.file = file,
                    .formula = "",
                    .parameters = kPlain,
                    .sums = {{"ChqAmt", "SELECT SUM(ChqAmt) FROM ChqMast"}},
                    .count = "SELECT COUNT(*) FROM ChqMast"});
    rows.push_back({.file = file,
                    .formula = FormulaOf("{Chqmast.ChqDate}", "31-01-2024", "29-02-2024",
                                         {Picked("{LoanMast.CompCode}", {"HQ"}),
                                          Picked("{CustMast.CompCatCode}", {"FACT"})}),
                    .parameters = kPlain,
                    .sums = {{"ChqAmt", "SELECT ChqAmt FROM ChqMast WHERE ChqNo='123457'"}},
                    .count = "SELECT 1"});
  }
  ExpectAll(rows);
}

TEST(LoanReports, PapersOfOneLoan) {
  Rows rows;
  for (const char* file : {"CDD.rpt", "filecovercagaran.rpt", "FilecoverJadualBayaranAkaun.rpt"}) {
    const bool of_schedule = std::string(file).starts_with("FilecoverJadual");
    rows.push_back({.file = file,
                    .formula = "{LoanMast.LoanID} = 'L2'",
                    .parameters = {"RptID;;True"},
                    .sums = {},
                    .count = of_schedule ? "SELECT 3" : "SELECT 1",
                    .twin = "-"});
    rows.push_back({.file = file,
                    .formula = TwoYears(EveryLoanList()),
                    .parameters = kSpecial,
                    .sums = {},
                    .count = of_schedule ? "SELECT 3" : "SELECT 1",
                    .twin = "-"});
    rows.push_back(
        {.file = file,
         .formula = "",
         .parameters = {},
         .sums = {},
         .count = of_schedule ? "SELECT COUNT(*) FROM SchMast" : "SELECT COUNT(*) FROM LoanMast",
         .twin = "-"});
  }
  ExpectAll(rows);
}

TEST(LoanReports, AChequeThatAPaymentTookIsNotNew) {
  ReportOffice office;
  office.main().Execute(
      "UPDATE ChqMast SET ChqStatus='NEW' WHERE ChqNo='123456' OR ChqNo='123458'");
  ReportJob job;
  job.Connect = &office.main();
  for (const char* file : {"ChqMastList.rpt", "LoanChqMastList.rpt"}) {
    job.ReportFileName = std::string(test::SourceDir() + "/reports/") + file;
    std::string statuses;
    for (const auto& page : RunWholeReport(job).document.pages) {
      for (const auto& text : page.texts) {
        if (text.text == "USED" || text.text == "NEW" || text.text == "RETURN") {
          statuses += text.text + " ";
        }
      }
    }
    EXPECT_EQ(statuses, "USED RETURN NEW ") << file;
  }
}

TEST(LoanReports, AuditFromItsOwnDatabase) {
  ReportOffice office;
  ReportCheck check(office);
  check.Over(office.logs());
  check.Expect({.file = "AuditLogs.rpt",
                .formula = "",
                .parameters = kPlain,
                .sums = {},
                .count = "SELECT COUNT(*) FROM TransLogs"});
  check.Expect(
      {.file = "AuditLogs.rpt",
       .formula = FormulaOf(
           "{TransLogs.TrxDate}", "30-01-2024", "30-01-2024",
           {Picked("{TransLogs.ConmpCode}", {"KL", "HQ"}), Picked("{TransLogs.UserID}", {"BOB"}),
            Picked("{TransLogs.Type}", {"Delete"}), Picked("{TransLogs.Module}", {"Payment"})}),
       .parameters = kPlain,
       .sums = {},
       .count = "SELECT 1"});
}

}  // namespace
}  // namespace kaunter
