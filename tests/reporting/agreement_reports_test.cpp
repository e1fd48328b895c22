// The agreement: one layout under two names, whose form the loan's security decides.
#include <gtest/gtest.h>

#include "tests/reporting/report_office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

std::string TextsOf(const ReportDocument& document) {
  std::string all;
  for (const ReportPage& page : document.pages) {
    for (const PageText& text : page.texts) all += text.text + "|";
  }
  return all;
}

std::string Printed(ReportOffice& office, const std::string& file, const std::string& loan,
                    const char* special = "False") {
  ReportJob job;
  job.Connect = &office.main();
  job.SelectionFormula = "{LoanMast.LoanID} = '" + loan + "'";
  job.ParameterFields[0] = std::string("RptID;") + special + ";True";
  job.ReportFileName = test::SourceDir() + "/reports/" + file;
  return TextsOf(RunWholeReport(job).document);
}

bool Holds(const std::string& texts, const std::string& part) {
  return texts.find(part) != std::string::npos;
}

TEST(AgreementReports, ScheduleOfInstalments) {
  ReportOffice office;
  ReportCheck check(office);
  for (const char* file : {"AgreeJ.rpt", "AgreeK.rpt", "Agree1.rpt"}) {
    // All loans of the criteria's range, and the one that a screen prints.
    check.Expect({.file = file,
                  .formula = FormulaOf("{LoanMast.TrxDate}", "01-01-2022", "31-01-2024"),
                  .parameters = {"RptID;False;True"},
                  .sums = {{"PayableAmt", "SELECT SUM(PayableAmt) FROM SchMast2"},
                           {"CapitalAmt", "SELECT SUM(CapitalAmt) FROM SchMast2"},
                           {"InterestAmt", "SELECT SUM(InterestAmt) FROM SchMast2"}},
                  .count = "SELECT COUNT(*) FROM SchMast2",
                  .twin = "-"});
    // After each instalment of L1 is left: 3,933.33, 1,966.66, nothing; what was paid since does
    // not change what was agreed.
    check.Expect({.file = file,
                  .formula = "{LoanMast.LoanID} = 'L1'",
                  .parameters = {"RptID;True;True"},
                  .sums = {{"StillDue", "SELECT 3933.33 + 1966.66"}},
                  .count = "SELECT 3",
                  .twin = "-"});
  }
}

TEST(AgreementReports, TheLoanDecidesWhichForm) {
  ReportOffice office;
  for (const char* file : {"AgreeJ.rpt", "AgreeK.rpt", "Agree1.rpt"}) {
    const std::string without = Printed(office, file, "L1");
    EXPECT_TRUE(Holds(without, "SCHEDULE J|")) << file;
    EXPECT_TRUE(Holds(without, "FOR A LOAN WITHOUT SECURITY|"));
    EXPECT_TRUE(Holds(without, "|No security is given for this loan"));
    EXPECT_FALSE(Holds(without, "gives the security"));
    EXPECT_FALSE(Holds(without, "DO NOT SIGN"));
    EXPECT_FALSE(Holds(without, "Guarantor:"));

    const std::string secured = Printed(office, file, "L2");
    EXPECT_TRUE(Holds(secured, "SCHEDULE K|")) << file;
    EXPECT_TRUE(Holds(secured, "FOR A LOAN WITH SECURITY|"));
    EXPECT_TRUE(Holds(secured, "|The Borrower gives the security"));
    EXPECT_TRUE(Holds(secured, "Motor vehicle · Toyota Vios WXY 1234|"));
    EXPECT_FALSE(Holds(secured, "No security"));
    // Both guarantors sign, each with the number that says who it is.
    EXPECT_TRUE(Holds(secured, "|Guarantor: Wong Siew Mei, "));
    EXPECT_TRUE(Holds(secured, "|Guarantor: Ganesan a/l"));
    EXPECT_TRUE(Holds(secured, "790909-08-5777|"));
    EXPECT_FALSE(Holds(secured, "Joint borrower"));
  }
}

// 18 per cent a year is the most without security, 12 with.
TEST(AgreementReports, RateAboveTheLawIsTold) {
  ReportOffice office;
  EXPECT_TRUE(Holds(Printed(office, "AgreeJ.rpt", "L2"), "DO NOT SIGN"));
  EXPECT_FALSE(Holds(Printed(office, "AgreeJ.rpt", "L4"), "DO NOT SIGN"));
  office.Run("UPDATE LoanMast SET InsRate=18 WHERE LoanID='L1'");
  EXPECT_FALSE(Holds(Printed(office, "AgreeK.rpt", "L1"), "DO NOT SIGN"));
  office.Run("UPDATE LoanMast SET InsRate=18.5 WHERE LoanID='L1'");
  EXPECT_TRUE(Holds(Printed(office, "AgreeK.rpt", "L1"), "DO NOT SIGN"));
  office.Run("UPDATE LoanMast SET InsRate=12.01 WHERE LoanID='L4'");
  EXPECT_TRUE(Holds(Printed(office, "AgreeK.rpt", "L4"), "DO NOT SIGN"));

  // On what is late the law allows 8, whatever secures the loan.
  office.Run("UPDATE LoanMast SET InsRate=12, LateChargePerDay=8");
  EXPECT_FALSE(Holds(Printed(office, "AgreeJ.rpt", "L1"), "DO NOT SIGN"));
  office.Run("UPDATE LoanMast SET LateChargePerDay=8.01");
  EXPECT_TRUE(Holds(Printed(office, "AgreeJ.rpt", "L1"), "charge 8.01 per cent a year"));
  office.Run("UPDATE LoanMast SET LateChargePerDay=8, InsRate=18.5 WHERE LoanID='L1'");

  // What a special user sees: the other amount, and 18 per cent on a loan without security.
  const std::string special = Printed(office, "AgreeK.rpt", "L1", "True");
  EXPECT_TRUE(Holds(special, "|RM 6,000.00|"));
  EXPECT_TRUE(Holds(special, "|18 per cent a year|") || Holds(special, "|18.00 per cent a year|"));
  EXPECT_FALSE(Holds(special, "DO NOT SIGN"));
}

}  // namespace
}  // namespace kaunter
