// The papers of an application, and the calculation for a prospective customer.
#include <gtest/gtest.h>

#include "tests/reporting/report_office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

struct ApplicationOffice : ReportOffice {
  ApplicationOffice() {
    Rows(
        "AppMast (AppID,CompCode,CustID,TrxDate,LoanAmt,LoanAmt2,InsRate,LoanTerm,InstallmentAmt,"
        "LastPayment,NextDueDate,AppStatus,AppStatus2,ApprovalDate2,CollateralID)",
        {"'AP1','HQ','C1','2024-01-02',5000,6000,12,'3',1750,1750,'2024-02-05','Approved',"
         "'Approved','2024-01-10','CAR'",
         "'AP2','HQ','C2','2024-01-03',900,900,18,'2',463.50,463.51,'2024-03-01','Pending','',"
         "NULL,''"});
    Rows("AppMastLink (AppID,CustID,AppType,Relationship)",
         {"'AP1','C1','Applicant',''", "'AP1','C2','Guarantor','FRIEND'",
          "'AP1','C3','Chargor','OWNER'", "'AP2','C2','Applicant',''"});
  }
};

std::string Printed(ReportOffice& office, const std::string& file, const std::string& formula,
                    const std::vector<std::string>& parameters = {}) {
  ReportJob job;
  job.Connect = &office.main();
  job.SelectionFormula = formula;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    job.ParameterFields[static_cast<int>(i)] = parameters[i];
  }
  job.ReportFileName = test::SourceDir() + "/reports/" + file;
  std::string all = "|";
  const ReportDocument document = RunWholeReport(job).document;
  for (const ReportPage& page : document.pages) {
    for (const PageText& text : page.texts) all += text.text + "|";
  }
  return all;
}

void ExpectOn(const std::string& paper, std::initializer_list<const char*> texts) {
  for (const char* text : texts) EXPECT_NE(paper.find(text), std::string::npos) << text;
}

TEST(LetterReports, ApplicationInTheLanguageOfItsCustomer) {
  ApplicationOffice office;
  ReportCheck check(office);
  for (const char* file : {"ApplicationForm.rpt", "ApplicationForm2.rpt"}) {
    check.Expect(Row(file, {}, "SELECT COUNT(*) FROM AppMastLink WHERE AppID='AP1'",
                     "{AppMast.AppID} = 'AP1'", {}, "-"));
    ExpectOn(
        Printed(office, file, "{AppMast.AppID} = 'AP1'"),
        {"|AP1|", "|Tan Ah Kow|", "|RM 5,000.00|", "|RM 6,000.00|", "|RM 1,750.00|", "|05-02-2024|",
         "|CAR · Motor vehicle|", "|Syarikat Pembinaan Maju Jaya", "|Approved · 10-01-2024|"});
  }
  ExpectOn(Printed(office, "ApplicationForm.rpt", "{AppMast.AppID} = 'AP2'"),
           {"|LOAN APPLICATION|"});
  ExpectOn(Printed(office, "ApplicationForm2.rpt", "{AppMast.AppID} = 'AP2'"),
           {"|PERMOHONAN PINJAMAN|"});
}

TEST(LetterReports, OfferIsSignedByAllButTheChargor) {
  ApplicationOffice office;
  ReportCheck check(office);
  const std::string formula = "{AppMastLink.AppID} = 'AP1' AND {AppMastLink.AppType} <> 'Chargor'";
  const std::vector<std::string> parameters = {
      "Join;(AND OTHERS);True", "Chargor;Syarikat Pembinaan Maju Jaya Sdn Bhd;True",
      "Guarantor;Muhammad Hafizuddin bin Abdul Rahman @ Adam;True"};
  check.Expect(Row("LetterOffer.rpt", {}, "3 - 1", formula, parameters, "-"));
  ExpectOn(Printed(office, "LetterOffer.rpt", formula, parameters),
           {"|10 January 2024|", "|Tan Ah Kow (AND OTHERS)|", "|RM 5,000.00|", "|3 of RM 1,750.00|",
            "|5 February 2024|", "|Guarantor|"});
}

TEST(LetterReports, CalculationShowsTheCapitalThatIsLeft) {
  ReportOffice office;
  ReportCheck check(office);
  check.Expect(Row("LoanCalcList.rpt",
                   {{"PayableAmt", "5900"},
                    {"CapitalAmt", "5000"},
                    {"InterestAmt", "900"},
                    // After the first instalment 3,333.33, then 1,666.66, then nothing.
                    {"CapitalLeft", "4999.99"}},
                   "3", "{SchMast2.LoanID}='L1'", {"RptID;False;True", "CustName;Tan Ah Kow;True"},
                   "-"));
}

// A letterhead takes the place of the texts; a picture that is not there or cannot be drawn leaves
// the head in letters, and is told. A name that two companies have brings nobody's picture.
TEST(LetterReports, TheHeadHasThePicturesOfItsCompany) {
  ReportOffice office;
  const std::string logo = test::SourceDir() + "/docs/pictures/home.png";
  const std::string broken = test::SourceDir() + "/README.md";
  const struct {
    std::string logo, letterhead;
    bool named;  // the company, in letters
    std::size_t pictures, told;
    const char* second = "Other";
  } kCases[] = {{"", "", true, 0, 0},          {logo, "", true, 1, 0},
                {logo, logo, false, 1, 0},     {"nowhere.png", broken, true, 0, 2},
                {broken, logo, false, 1, 0},   {logo, "nowhere.png", true, 1, 1},
                {logo, logo, true, 0, 0, "HQ"}};
  office.Run("UPDATE CompMast SET CompDesc='Second' WHERE CompCode<>'HQ'");
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.logo + "|" + c.letterhead + "|" + c.second);
    office.Run("UPDATE CompMast SET CompDesc='HQ',LogoFile=" + QuoteStr(c.logo) +
               ",Letterhead=" + QuoteStr(c.letterhead) + " WHERE CompCode='HQ'");
    office.Run("DELETE FROM CompMast WHERE CompCode='ZZ'");
    office.Run("INSERT INTO CompMast (CompCode,CompDesc) VALUES ('ZZ','" + std::string(c.second) +
               "')");
    ReportJob job;
    job.Connect = &office.main();
    job.SelectionFormula = "{LoanMast.LoanID}='L1'";
    job.ReportFileName = test::SourceDir() + "/reports/LejarAkuan.rpt";
    const ReportDocument document =
        RunWholeReport(job, {}, [&](const std::string& path) -> std::optional<PictureSize> {
          if (path == broken) return std::nullopt;
          return PictureSize{3000, 1000};
        }).document;
    const ReportPage& page = document.pages.at(0);
    EXPECT_EQ(std::count_if(page.texts.begin(), page.texts.end(),
                            [](const PageText& text) { return text.text == "HQ"; }),
              c.named ? 1 : 0);
    ASSERT_EQ(page.pictures.size(), c.pictures);
    EXPECT_EQ(document.left_out.size(), c.told);
    if (c.pictures == 0) continue;
    EXPECT_NEAR(page.pictures[0].width, 3 * page.pictures[0].height, 0.01);
    for (const PageText& text : page.texts) {
      EXPECT_TRUE(text.x >= page.pictures[0].x + page.pictures[0].width ||
                  text.y >= page.pictures[0].y + page.pictures[0].height)
          << text.text;
    }
  }
}

// The modules of the code that stands on a receipt, "" for none; a code is drawn where the
// e-invoice of that payment is valid and still stands.
TEST(LetterReports, TheReceiptHasTheCodeOfAValidEInvoice) {
  const struct {
    const char* rows;  // eInvID, SeqNo, LHDNStatus, Canceluuid, LHDNQR
    const char* code;
  } cases[] = {
      {"", ""},
      {"'P1',1,'Valid',NULL,'https://a/1'", "https://a/1"},
      {"'P1',1,'Valid','','https://a/1'", "https://a/1"},
      {"'P1',1,'Valid','C0','https://a/1'", ""},
      {"'P1',1,'Invalid',NULL,'https://a/1'", ""},
      {"'P1',1,NULL,NULL,'https://a/1'", ""},
      {"'P1',1,'Valid',NULL,NULL", ""},
      {"'P1',1,'Valid',NULL,''", ""},
      {"'P2',1,'Valid',NULL,'https://a/2'", ""},
      // A second line of the same document has no code of its own.
      {"'P1',1,'Valid',NULL,'https://a/1'),('P1',2,'Valid',NULL,NULL", "https://a/1"},
  };
  ReportOffice office;
  for (const auto& c : cases) {
    office.Run("DELETE FROM EInvMast");
    if (*c.rows != 0) {
      office.Run(fmt::format(
          "INSERT INTO EInvMast (eInvID,SeqNo,LHDNStatus,Canceluuid,LHDNQR) VALUES ({})", c.rows));
    }
    for (const char* file : {"Payment Receipt.rpt", "Payment Receipt Old.rpt"}) {
      ReportJob job;
      job.Connect = &office.main();
      job.SelectionFormula = "{PaymentMast.PayID} = 'P1'";
      job.ReportFileName = test::SourceDir() + "/reports/" + file;
      const ReportDocument document = RunWholeReport(job).document;
      std::vector<PageCode> codes;
      for (const ReportPage& page : document.pages) {
        codes.insert(codes.end(), page.codes.begin(), page.codes.end());
      }
      const std::size_t copies = std::string(file) == "Payment Receipt.rpt" ? 1 : 2;
      const std::optional<QrCode> wanted = EncodeQr(c.code);
      EXPECT_EQ(codes.size(), wanted ? copies : 0) << c.rows;
      for (const PageCode& code : codes) EXPECT_EQ(code.code.dark, wanted->dark) << c.rows;
    }
  }
}

}  // namespace
}  // namespace kaunter
