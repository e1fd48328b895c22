// The agreement: one layout under two names, whose form the loan's security decides.
#include <gtest/gtest.h>

#include <algorithm>

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
  // What payments and extra capital made of the rows since does not change what was agreed.
  office.Run("UPDATE SchMast SET PayableAmt=1,CapitalAmt=0,InterestAmt=1 WHERE SchID=2");
  for (const char* file : {"AgreeJ.rpt", "AgreeK.rpt", "Agree1.rpt"}) {
    // All loans of the criteria's range, and the one that a screen prints.
    check.Expect(Row(file,
                     {{"PayableAmt", "SELECT SUM(PayableAmt) FROM SchMast2"},
                      {"CapitalAmt", "SELECT SUM(CapitalAmt) FROM SchMast2"},
                      {"InterestAmt", "SELECT SUM(InterestAmt) FROM SchMast2"}},
                     "SELECT COUNT(*) FROM SchMast2",
                     FormulaOf("{LoanMast.TrxDate}", "01-01-2022", "31-01-2024"),
                     {"RptID;False;True"}, "-"));
    // After each instalment of L1 is left: 3,933.33, 1,966.66, nothing.
    check.Expect(Row(file, {{"StillDue", "3933.33 + 1966.66"}}, "3", "{LoanMast.LoanID} = 'L1'",
                     kSpecial, "-"));
  }
}

TEST(AgreementReports, TheLoanDecidesWhichForm) {
  ReportOffice office;
  for (const char* file : {"AgreeJ.rpt", "AgreeK.rpt", "Agree1.rpt"}) {
    const std::string without = Printed(office, file, "L1");
    EXPECT_TRUE(Holds(without, "SCHEDULE J · JADUAL J|")) << file;
    EXPECT_TRUE(Holds(without, "FOR A LOAN WITHOUT SECURITY · BAGI PINJAMAN TIDAK BERCAGAR|"));
    EXPECT_TRUE(Holds(without, "|No security is given for this loan"));
    EXPECT_TRUE(Holds(without, "|Tiada cagaran diberikan"));
    EXPECT_FALSE(Holds(without, "gives the security"));
    EXPECT_FALSE(Holds(without, "Guarantor:"));

    const std::string secured = Printed(office, file, "L2");
    EXPECT_TRUE(Holds(secured, "SCHEDULE K · JADUAL K|")) << file;
    EXPECT_TRUE(Holds(secured, "|The Borrower gives the security"));
    EXPECT_TRUE(Holds(secured, "|Peminjam memberi cagaran"));
    EXPECT_TRUE(Holds(secured, "Motor vehicle · Toyota Vios WXY 1234|"));
    EXPECT_FALSE(Holds(secured, "No security"));
    // Both guarantors sign, each with the number that says who it is.
    EXPECT_TRUE(Holds(secured, "|Guarantor: Wong Siew Mei, "));
    EXPECT_TRUE(Holds(secured, "|Guarantor: Ganesan a/l"));
    EXPECT_TRUE(Holds(secured, "790909-08-5777|"));
    EXPECT_FALSE(Holds(secured, "Joint borrower"));
  }
}

// A loan of 1,200 over 12 months at 12 per cent: 144 of interest when it is counted on all of it,
// 84.18 on what is still owed. One that costs as much in twelve weeks has another rate.
TEST(AgreementReports, NothingIsPrintedThatTheLoanContradicts) {
  ReportOffice office;
  office.Run("DELETE FROM SchMast2 WHERE LoanID='L1'");
  for (int row = 1; row <= 12; ++row) {
    office.Run(fmt::format(
        "INSERT INTO SchMast2 (LoanID,SchID,DueDate,PayableAmt,CapitalAmt,InterestAmt) VALUES "
        "('L1',{},'2024-{:02}-05',112,100,12)",
        row, row));
  }
  office.Run(
      "UPDATE LoanMast SET LoanAmt=1200,LoanAmt2=1500,InsRate=12,LateChargePerDay=6,"
      "ProcessFee=0,DepositAmt=0 WHERE LoanID='L1'");
  const char* weekly =
      "UPDATE LoanMast SET LoanTypeID='WEEK' WHERE LoanID='L1'; UPDATE SchMast2 SET "
      "DueDate=dateadd(day, 7*SchID, '2024-01-05') WHERE LoanID='L1'";
  const struct {
    std::string change;
    std::vector<const char*> says;
    std::vector<const char*> not_said;
    const char* special = "False";
  } kCases[] = {
      {"",
       {"at 12.00 per cent", "kadar 12.00 peratus", "|12 monthly instalment(s) of RM 112.00|",
        "|RM 1,344.00|", "simple interest at 6.00", "WORDING NOT CONFIRMED"},
       {"DO NOT SIGN", "the last one", "Fees in all"}},
      {"UPDATE SchMast2 SET InterestAmt=7.015,PayableAmt=107.02 WHERE LoanID='L1'; UPDATE LoanMast "
       "SET DragLoan='1' WHERE LoanID='L1'",
       {"that is still owed", "at 12.00 per cent"},
       {"DO NOT SIGN"}},
      // The same interest on all of the capital would be 7 per cent.
      {"UPDATE SchMast2 SET InterestAmt=7.015,PayableAmt=107.02 WHERE LoanID='L1'",
       {"says 12.00 per cent a year, and its instalments come to 7.02."},
       {"at 12.00 per cent"}},
      // 365 / 84 times as much.
      {weekly, {"and its instalments come to 52.14."}, {"at 12.00 per cent"}},
      {"UPDATE LoanMast SET InsRate=12.5 WHERE LoanID='L1'", {"come to 12.00."}, {"at 12.50"}},
      // The law allows 18 without security, 12 with, and 8 on what is late.
      {"UPDATE LoanMast SET InsRate=18,LateChargePerDay=8",
       {},
       {"that the law allows", "on what is late; the law"}},
      {"UPDATE LoanMast SET InsRate=18.01",
       {"the rate of 18.01 per cent a year is above the 18 "},
       {}},
      {"UPDATE LoanMast SET LoanType='Secured',InsRate=12.01",
       {"the rate of 12.01 per cent a year is above the 12 "},
       {}},
      {"UPDATE LoanMast SET LateChargePerDay=8.01", {"charge 8.01 per cent"}, {}},
      {"UPDATE LoanMast SET LateChargePerDay=0", {"bears no late interest"}, {"simple interest"}},
      {"UPDATE SchMast2 SET PayableAmt=111.50 WHERE LoanID='L1' AND SchID=12",
       {"of RM 112.00, the last one of RM", "111.50"},
       {"of the amounts"}},
      {"UPDATE SchMast2 SET PayableAmt=150 WHERE LoanID='L1' AND SchID=3",
       {"of the amounts in the Second"},
       {"of RM 112.00"}},
      {"UPDATE LoanMast SET ProcessFee=30,LegalFee=12.50 WHERE LoanID='L1'",
       {"|RM 30.00|", "|RM 12.50|", "Jumlah fi|RM 42.50|", "come to RM"},
       {"Stamp fee"}},
      {"INSERT INTO Systemast (Param,Value) VALUES ('AgreementWording','KL, HQ')",
       {},
       {"not confirmed", "NOT CONFIRMED"}},
      {"INSERT INTO Systemast (Param,Value) VALUES ('AgreementWording','HQ2')",
       {"NOT CONFIRMED"},
       {}},
      // No contract over another principal than the instalments have.
      {"UPDATE LoanMast SET LoanAmt=1200.01 WHERE LoanID='L1'",
       {"NO AGREEMENT IS PRINTED|", "|RM 1,200.01|", "|RM 1,200.00|"},
       {"MONEYLENDING AGREEMENT", "Signature"}},
      {"DELETE FROM SchMast2", {"NO AGREEMENT IS PRINTED|", "no instalments are stored"}, {}},
      {"", {"NO AGREEMENT IS PRINTED|", "|RM 1,500.00|"}, {}, "True"},
      {"UPDATE LoanMast SET LoanAmt2=1200",
       {"says 18.00 per cent a year"},
       {"that the law"},
       "True"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.change);
    office.main().BeginTrans();
    if (!c.change.empty()) office.Run(c.change);
    std::string paper = Printed(office, "AgreeJ.rpt", "L1", c.special);
    std::string running = paper;  // as it is read, over the ends of its lines
    std::replace(running.begin(), running.end(), '|', ' ');
    paper += running;
    office.main().RollbackTrans();
    for (const char* text : c.says) EXPECT_TRUE(Holds(paper, text)) << text << "\n" << paper;
    for (const char* text : c.not_said) EXPECT_FALSE(Holds(paper, text)) << text << "\n" << paper;
  }
}

}  // namespace
}  // namespace kaunter
