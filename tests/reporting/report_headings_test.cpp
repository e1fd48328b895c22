// Which papers speak the language of the session.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/reporting/report_office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

// A file with texts in both languages follows the session, whatever its name; the letters and forms
// that have one language only stay as they are.
TEST(ReportHeadings, APaperSpeaksTheLanguageOfTheSession) {
  const std::string kOneLanguage =
      "|ARCreditNote|ARInvoice|Agree1|AgreeJ|AgreeK|ApplicationForm|ApplicationForm2|CashVoucher|"
      "FilecoverJadualBayaranAkaun|LejarAkuan|LejarAkuan60|LetterOffer|LoanCalcList|Payment "
      "Receipt Old|Payment "
      "Receipt|RekodTrans|RekodTrans2|Reminder|Reminder2|SettlementLetter|YearlyLoan|"
      "filecovercagaran|";
  ReportOffice office;
  std::size_t one = 0;
  for (const auto& entry : fs::directory_iterator(test::SourceDir() + "/reports")) {
    if (entry.path().extension() != ".rpt") continue;
    const std::string name = entry.path().stem().string();
    const bool of_one = kOneLanguage.find("|" + name + "|") != std::string::npos;
    ReportJob job;
    job.Connect = &office.Of(name);
    job.ReportFileName = entry.path().string();
    job.ParameterFields = {{0, "SettleAmt;0;True"}, {1, "SettleDate;;True"}};
    for (const bool chinese : {false, true}) {
      job.Chinese = chinese;
      const ReportRun run = RunWholeReport(job);
      EXPECT_EQ(run.heading.printed_at.starts_with("打印于"),
                name == "CashBookC" || (chinese && !of_one))
          << name;
    }
    if (of_one) ++one;
  }
  EXPECT_EQ(one, 22u);
}

}  // namespace
}  // namespace kaunter
