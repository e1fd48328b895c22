// The files of docs/reports.md, as an office would copy them from the page.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "tests/reporting/report_office.h"
#include "tests/reports/list_rows.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using testing::Contains;

std::string TextOf(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct Guide : ReportOffice {
  Guide() {
    const std::string page = TextOf(test::SourceDir() + "/docs/reports.md");
    std::filesystem::create_directory(files.File("OwnReports"));
    for (const char* name : {"OwnReports/LoanMastList.rpt", "OwnReports/WithTelephone.rpt",
                             "OwnReports/ThankYou.rpt"}) {
      const std::string head = std::string("```\n# ") + name + "\n";
      const auto begin = page.find(head) + 4;
      std::ofstream(files.File(name)) << page.substr(begin, page.find("\n```", begin) - begin);
    }
    std::filesystem::copy_file(test::SourceDir() + "/reports/LoanMastList.rpt",
                               files.File("LoanMastList.rpt"));
  }
  std::vector<std::string> Print(const std::string& name, const std::string& formula) {
    ReportJob job;
    job.ReportFileName = files.File(name);
    job.SelectionFormula = formula;
    job.Connect = &session().Main();
    return LinesOf(RunWholeReport(job).document);
  }
  TempFolder files;
};

// Loans L1 to L5 of the office, added up by hand.
TEST(ReportGuide, TheListing) {
  Guide guide;
  const std::vector<std::string> lines =
      guide.Print("LoanMastList.rpt", "{LoanMast.TrxDate} >= Date(2023,1,1)");
  EXPECT_THAT(lines, Contains("Loans by Month"));
  EXPECT_THAT(lines,
              Contains("15-12-2023|L2|Muhammad Hafizuddin bin|019-3345566|60,000.00|60,000.00"));
  EXPECT_THAT(lines, Contains("11-2023: 1 loans|5,000.00|3,933.33"));
  EXPECT_THAT(lines, Contains("All 4 loans|69,200.00|67,233.33"));
  EXPECT_THAT(guide.Print("LoanMastListC.rpt", ""), Contains("总共 5 笔|77,200.00|74,633.33"));
  // Beside the office's own listing it would be like that one.
  std::filesystem::remove(guide.files.File("OwnReports/LoanMastList.rpt"));
  EXPECT_THAT(
      guide.Print("WithTelephone.rpt", ""),
      Contains("Date|Loan|Customer|Telephone|I.C. No.|Terms|Amount|Rate %|Paid|Balance|Next due"));
}

TEST(ReportGuide, TheLetter) {
  Guide guide;
  const std::vector<std::string> lines = guide.Print("ThankYou.rpt", "{LoanMast.LoanID} = 'L3'");
  EXPECT_THAT(lines, Contains("Thank you"));
  EXPECT_THAT(lines, Contains("08-02-2023|660.00"));
  EXPECT_THAT(lines, Contains("In all|1,320.00"));
  // Without payments it is still a letter.
  EXPECT_THAT(guide.Print("ThankYou.rpt", "{LoanMast.LoanID} = 'L5'"), Contains("陈美玲"));
}

}  // namespace
}  // namespace kaunter
